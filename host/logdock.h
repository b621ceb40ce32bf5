// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostlog.h"

#include <QDockWidget>

#include <deque>

class QComboBox;
class QLineEdit;

namespace host {

class LogView;

/// The host's log as plain text, one line per entry; the oldest ones are dropped when there are too many. What is shown
/// can be narrowed down, what is kept be saved and cleared.
class LogDock : public QDockWidget {
    Q_OBJECT

public:
    static constexpr int maximumLines = 2000;

    explicit LogDock(QWidget *parent = nullptr);

    void append(const LogEntry &entry);
    /// Makes the dock and the newest warning in it visible.
    void showNewestWarning();
    /// Writes the entries that are kept, whatever is shown, in the form of a log file. Returns what failed, or nothing.
    QString save(const QString &fileName) const;

signals:
    void cleared();
    void saved(const QString &text); ///< what came of saving

private:
    QWidget *makeTools();
    bool isShown(const LogEntry &entry) const;
    void showEntry(const LogEntry &entry);
    void showAll();
    void chooseFile();
    void clear();

    std::deque<LogEntry> entries; // the last maximumLines
    LogView *view = nullptr;
    QComboBox *levelFilter = nullptr;
    QLineEdit *textFilter = nullptr;
};

} // namespace host
