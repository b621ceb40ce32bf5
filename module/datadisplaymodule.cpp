// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "module/datadisplaymodule.h"

#include "display/datadisplay.h"
#include "interface/backendversions.h"
#include "interface/iomanager.h"

#include <QAction>
#include <QDockWidget>
#include <QKeySequence>

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the host's objects are the host's to deliver
DataDisplayModule::DataDisplayModule() = default;

void DataDisplayModule::aboutToUnload() noexcept
try {
    const auto *dock = qobject_cast<QDockWidget *>(entry.widget);
    if (!dock)
        return;
    if (auto *panel = dock->findChild<DataDisplay *>())
        panel->prepareShutdown();
} catch (...) {
    return; // out of memory: the host has no handler for us
}

void DataDisplayModule::releaseWidgets()
{
    delete entry.widget;
    entry.widget = nullptr;
    entry.action = nullptr; // it went with the dock
    entries.clear();
}

QString DataDisplayModule::moduleName() const
{
    return tr("GUI Data Display");
}

QString DataDisplayModule::moduleVersion() const
{
    constexpr int major = 2;
    constexpr int minor = 2;
    constexpr int patch = 6;
    return QStringLiteral("v%1.%2.%3")
        .arg(major, 0, 10, QLatin1Char(' '))
        .arg(minor, 0, 10, QLatin1Char(' '))
        .arg(patch, 0, 10, QLatin1Char(' '));
}

QList<ModuleEntry *> DataDisplayModule::moduleEntries() noexcept
try {
    if (entries.isEmpty())
        createEntry();
    return entries;
} catch (...) {
    return {}; // out of memory: the host has no handler for us, and may ask again
}

void DataDisplayModule::createEntry()
{
    auto *panel = new DataDisplay(commandManager, moduleParent, backendVersions, moduleVersion());
    auto *dock = new QDockWidget(tr("Data Display"), moduleParent);
    dock->setWidget(panel);
    entry.widget = dock;
    entry.menuName = tr("&View");
    entry.secondaryOrder = 400;
    entry.primaryOrder = 240;
    entry.dockArea = Qt::LeftDockWidgetArea;

    QAction *action = dock->toggleViewAction();
    action->setShortcut(QKeySequence(tr("F10")));
    action->setText(tr("&Data"));
    const QString description = tr("Show tracking data of the 6DOF standard bodies and the 3DOF markers");
    action->setStatusTip(description);
    action->setWhatsThis(description);
    entry.action = action;
    entries.append(&entry);
}

void DataDisplayModule::setModuleProperty(QString name, QVariant value)
{
    // QVariant::value converts as a property needs it: the wrong type ends as null or false, and a QObject that is
    // no widget as null.
    if (name == QLatin1String("CommandManager"))
        commandManager = value.value<IOManager *>();
    else if (name == QLatin1String("ModuleParent"))
        moduleParent = value.value<QWidget *>();
    else if (name == QLatin1String("BackendVersions"))
        backendVersions = value.value<BackendVersions *>();
    else if (name == QLatin1String("ObserverMode"))
        observerMode = value.value<bool>();
}
