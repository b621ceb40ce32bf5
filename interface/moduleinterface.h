// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QtPlugin>

class QAction;
class QWidget;

/// What a module adds to the host's menus and dock areas. The module owns the record, the action and the widget. The
/// host may delete the widget, or the parent window with it, before it unloads the module: action and widget are then
/// null here, and the module is unregistered from the command channel.
struct ModuleEntry {
    QAction *action = nullptr;
    qint32 primaryOrder = 0;
    QString menuName; ///< translated, with its mnemonic: "&View"
    qint32 secondaryOrder = 0;
    QWidget *widget = nullptr; ///< a QDockWidget
    qint32 dockArea = 0; ///< a Qt::DockWidgetArea
};

/// The interface of a module, found by the plug-in loader. The order of the operations is a contract with hosts and
/// modules that are built apart; under the Itanium C++ ABI the destructor takes the first two entries of the table.
class ModuleInterface {
public:
    ModuleInterface() = default;
    virtual ~ModuleInterface() = default;

    /// The host is about to unload the module: it unregisters from the command channel and saves its settings.
    virtual void aboutToUnload() = 0;
    /// Deletes the widgets of the entries, which the host no longer uses. Without aboutToUnload() before it, the module
    /// stays registered with the command channel.
    virtual void releaseWidgets() = 0;
    virtual QString moduleName() const = 0;
    virtual QString moduleVersion() const = 0; ///< such as "v2.2.6"
    /// The module's entries, created at the first call. All properties must have been set by then.
    virtual QList<ModuleEntry *> moduleEntries() = 0;
    /// Hands over one of the host's objects ("CommandManager", "ModuleParent", "BackendVersions": never owned by the
    /// module) or settings ("ObserverMode"). An unknown name is ignored.
    virtual void setModuleProperty(QString name, QVariant value) = 0;

private:
    Q_DISABLE_COPY(ModuleInterface)
};

#define ModuleInterface_iid "com.zel.vornak2.gui.Module/0.2.0"
Q_DECLARE_INTERFACE(ModuleInterface, ModuleInterface_iid)
