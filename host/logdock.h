// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDockWidget>

class QPlainTextEdit;

namespace host {

struct LogEntry;

/// The host's log as plain text, one line per entry; the oldest lines are dropped when there are too many.
class LogDock : public QDockWidget {
    Q_OBJECT

public:
    static constexpr int maximumLines = 2000;

    explicit LogDock(QWidget *parent = nullptr);

    void append(const LogEntry &entry);

private:
    QPlainTextEdit *view = nullptr;
};

} // namespace host
