// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDockWidget>

#include <optional>

class QLabel;
class QPushButton;
class QTableView;

namespace host {

class BackendSession;
class BackendWatch;
struct JournalEntry;

/// Whether the old value of an entry can be put back.
struct PutBackState {
    bool isPossible = false;
    QString reason; ///< why not

    /// \a connection is the number of the backend that is connected; 0: none.
    static PutBackState of(const JournalEntry &entry, bool isObserver, int connection);
};

/// The journal of commands as a table, with a button that puts the old value of the current row back. A value that has
/// changed since takes a second click, and the button says so.
class JournalDock : public QDockWidget {
    Q_OBJECT

public:
    /// \a watch and \a session outlive the dock.
    JournalDock(BackendWatch &watch, const BackendSession &session, bool isObserver, QWidget *parent = nullptr);

signals:
    void putBack(const QString &setting); ///< the backend has accepted the old value of "enabled", "strength" ...

private:
    void addWidgets();
    void showState();
    void putBackCurrent();
    void forgetQuestion();
    void followNewest();
    int connection() const;

    BackendWatch &watch;
    const BackendSession &session;
    const bool isObserver;
    QTableView *view = nullptr;
    QLabel *reason = nullptr;
    QPushButton *button = nullptr;
    bool isAsking = false; // the button asks whether to replace a value that has changed
    std::optional<QByteArray> askedValue; // that value; nothing: the backend does not say
    bool wasAtEnd = true; // the newest row was in sight before the rows that are added
};

} // namespace host
