// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QList>

#include <functional>

class QMainWindow;
struct ModuleEntry;

namespace host {

class HostLog;

/// "Save Tables…": asks for a folder and saves in it what the modules' tables show. The status bar tells what came of
/// it, and the log what failed. GUI thread.
class SaveTablesAction : public QAction {
    Q_OBJECT

public:
    /// \a window owns it; \a log outlives it.
    SaveTablesAction(std::function<QList<ModuleEntry *>()> entries, HostLog &log, QMainWindow &window);

private:
    void chooseFolder();
    void save(const QString &folder);

    const std::function<QList<ModuleEntry *>()> entries;
    HostLog &log;
    QMainWindow &window;
};

} // namespace host
