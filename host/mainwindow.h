// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendchoice.h"

#include <QList>
#include <QMainWindow>
#include <QPointer>

struct ModuleEntry;

namespace host {

class BackendMenu;
class BackendSession;
class FileMenu;
class HostLog;
class LogDock;

/// The main window: menus, status bar, log, and the docks of the modules. Its title is that of the source.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow(BackendSession &session, HostLog &log, const BackendSettings &settings);

    /// Puts the modules' entries into the menus and dock areas, in the order given; "&View" ends with the log.
    void addEntries(const QList<ModuleEntry *> &entries);
    /// Takes the entries out of menus and docks; the modules delete them afterwards.
    void removeEntries(const QList<ModuleEntry *> &entries);

    /// Restores the size and the place that the window had at the last saveLayout(), or gives it a size that the screen
    /// has room for. Before it is shown.
    void restorePlace();
    /// Restores the docks likewise. After addEntries().
    void restoreLayout();
    void saveLayout() const;

    BackendMenu *backendMenu() const { return backend; }
    /// For entries of other parts of the program, each with an object name.
    QMenu *helpMenu() const { return help; }
    /// Adds \a action to "&View", between the modules' entries and the log.
    void addViewAction(QAction *action);
    /// Adds \a action to "&File", before "&Quit".
    void addFileAction(QAction *action);
    /// Puts \a state, such as "(frozen 3 s) ", in front of the title; empty: nothing.
    void setStateInTitle(const QString &state);

protected:
    // Recordings and scenarios may be dropped anywhere.
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void addLog();
    void divideRoom();
    void addHelpMenu();
    void addMenus(const BackendSettings &settings);
    /// The menu with this title, made in front of "&Help" if there is none.
    QMenu *menuNamed(const QString &title);
    void addDock(const ModuleEntry &entry, int number);
    void showTitle();
    void showAbout();

    BackendSession &session;
    HostLog &log;
    LogDock *logDock = nullptr;
    FileMenu *file = nullptr;
    QMenu *view = nullptr;
    QMenu *help = nullptr;
    QAction *firstOwnView = nullptr; // of "&View": where the modules' entries end
    BackendMenu *backend = nullptr;
    QList<QPointer<QMenu>> moduleMenus; // made for the menu names of entries that were not there yet
    QString stateInTitle;
    bool hasLayout = false; // restored, or given to the first docks
};

} // namespace host
