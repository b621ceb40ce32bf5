// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "module/datadisplaymodule.h"

#include "display/datadisplay.h"
#include "interface/backendversions.h"
#include "interface/iomanager.h"

#include <QAction>
#include <QDockWidget>
#include <QKeySequence>
#include <QScopeGuard>

#include <memory>

namespace {

DataDisplay *panelIn(QWidget *widget)
{
    const auto *dock = qobject_cast<QDockWidget *>(widget);
    return dock ? dock->findChild<DataDisplay *>() : nullptr;
}

QString versionText()
{
    constexpr int major = 2;
    constexpr int minor = 2;
    constexpr int patch = 6;
    return QStringLiteral("v%1.%2.%3")
        .arg(major, 0, 10, QLatin1Char(' '))
        .arg(minor, 0, 10, QLatin1Char(' '))
        .arg(patch, 0, 10, QLatin1Char(' '));
}

} // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the host's objects are the host's to deliver
DataDisplayModule::DataDisplayModule() = default;

void DataDisplayModule::aboutToUnload() noexcept
try {
    isCreating = false;
    isUnloading = true;
    if (auto *panel = panelIn(entry.widget))
        panel->prepareShutdown();
} catch (...) {
    return; // out of memory, or thrown by the host, which has no handler for either
}

void DataDisplayModule::releaseWidgets() noexcept
try {
    isCreating = false;
    // Forgotten first: the panel may stop its output while it is destroyed, and the host may call in from there.
    QWidget *const dock = entry.widget;
    auto *panel = panelIn(dock);
    if (panel && !isUnloading)
        panel->setUnregisteredWhenDestroyed(false); // left to aboutToUnload, which the host has not called
    forgetEntry();
    delete dock;
} catch (...) {
    return; // as in aboutToUnload
}

QString DataDisplayModule::moduleName() const noexcept
try {
    return tr("GUI Data Display");
} catch (...) {
    return {}; // as in aboutToUnload; no literal, which would go with the library while the host keeps the text
}

QString DataDisplayModule::moduleVersion() const noexcept
try {
    return versionText();
} catch (...) {
    return {}; // as in moduleName
}

QList<ModuleEntry *> DataDisplayModule::moduleEntries() noexcept
try {
    if (entries.isEmpty() && !isCreating)
        createEntry();
    return entries;
} catch (...) {
    return {}; // as in aboutToUnload; the host may ask again
}

void DataDisplayModule::createEntry()
{
    isCreating = true;
    const auto created = qScopeGuard([this] { isCreating = false; });
    std::unique_ptr<QDockWidget> dock; // destroyed after the panel, be it the parent by then or not
    auto panel = std::make_unique<DataDisplay>(commandManager, moduleParent, backendVersions, versionText());
    panel->setUnregisteredWhenDestroyed(true);
    if (!isCreating)
        return; // released while the panel asked the backend: what the host did then counts

    dock = std::make_unique<QDockWidget>(tr("Data Display"), moduleParent);
    dock->setWidget(panel.get());
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

    const QObject *const current = dock.get();
    connect(dock.get(), &QObject::destroyed, this, [this, current] {
        if (entry.widget == current) // destroyed by others, and the action with it
            forgetEntry();
    });
    entries.append(&entry);
    isUnloading = false;
    entry.action = action;
    entry.widget = dock.release();
    static_cast<void>(panel.release()); // the dock's
}

void DataDisplayModule::forgetEntry() noexcept
{
    entry.widget = nullptr;
    entry.action = nullptr;
    entries.clear();
}

void DataDisplayModule::setModuleProperty(QString name, QVariant value) noexcept
try {
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
} catch (...) {
    return; // as in aboutToUnload; the property stays as it was
}
