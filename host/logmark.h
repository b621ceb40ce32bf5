// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QToolButton>

namespace host {

struct LogEntry;

/// A mark in the status bar that says how many warnings came since the operator last looked. Nothing is to be seen
/// of it while there are none.
class LogMark : public QToolButton {
    Q_OBJECT

public:
    explicit LogMark(QWidget *parent = nullptr);

    void count(const LogEntry &entry);
    /// Starts again from none.
    void reset();

private:
    void showCount();

    int warnings = 0;
};

} // namespace host
