// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/contract/guestsession.h"

#include <QAction>

#include <memory>

/// A session whose main window can be deleted before the module is told anything, as when a host quits.
struct WindowedSession : GuestSession {
    using GuestSession::GuestSession;

    std::unique_ptr<QMainWindow> mainWindow;
    void *record = nullptr; ///< of the entry

    /// Loads the plug-in, where it isn't loaded yet, and docks its panel in a new main window.
    bool startInMainWindow(bool shown)
    {
        if (!module && !load())
            return false;
        mainWindow = std::make_unique<QMainWindow>();
        setProperties();
        setProperty("ModuleParent", QVariant::fromValue(static_cast<QWidget *>(mainWindow.get())));
        record = moduleEntries().value(0);
        if (!record)
            return false;
        entry = MenuEntry::readFrom(record);
        dock = qobject_cast<QDockWidget *>(entry.widget);
        mainWindow->addDockWidget(Qt::LeftDockWidgetArea, dock);
        if (shown)
            mainWindow->show();
        return true;
    }

    /// Does what \a step says: one call of the host, or a widget that is deleted.
    void take(const QByteArray &step)
    {
        if (step == "window")
            mainWindow.reset();
        else if (step == "dock")
            delete dock;
        else if (step == "aboutToUnload")
            callEntry<void>(module, AboutToUnload);
        else if (step == "releaseWidgets")
            callEntry<void>(module, ReleaseWidgets);
        else if (step == "clearData")
            clearData();
        else if (step == "configurationChanged")
            configurationChanged();
        else
            qFatal("There is no step %s", step.constData());
    }

    bool isEntryNull() const
    {
        const MenuEntry now = MenuEntry::readFrom(record);
        return !now.widget && !now.action;
    }
};
