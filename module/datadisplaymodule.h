// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "interface/moduleinterface.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

class IOManager;
struct BackendVersions;

/// The module as the host's plug-in loader sees it: one dock with the panel, and its entry in the "&View" menu.
/// GUI thread. No call throws, whatever memory or the host does: what fails leaves things as they were, and a name or
/// version that can't be had is empty. The host may destroy the dock or its own window before aboutToUnload(): the
/// panel then unregisters, the entry's pointers become null, and the next moduleEntries() builds a new dock. While a
/// panel asks the backend in moduleEntries(), a nested moduleEntries() returns no entry, and a nested aboutToUnload()
/// or releaseWidgets() discards that panel.
/// Not supported: a parent window that is destroyed within the first moduleEntries().
class DataDisplayModule : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zel.Vornak2.DataDisplayModule")
    Q_INTERFACES(ModuleInterface)

public:
    DataDisplayModule();

    void aboutToUnload() noexcept override;
    void releaseWidgets() noexcept override;
    QString moduleName() const noexcept override;
    QString moduleVersion() const noexcept override;
    QList<ModuleEntry *> moduleEntries() noexcept override;
    void setModuleProperty(QString name, QVariant value) noexcept override;

private:
    void createEntry();
    void forgetEntry() noexcept;

    // The host delivers its objects before it asks for the entries; until then there are none to speak of.
    QPointer<QWidget> moduleParent;
    QList<ModuleEntry *> entries;
    ModuleEntry entry;
    IOManager *commandManager;
    BackendVersions *backendVersions;
    bool observerMode = false;
    bool isUnloading = false; ///< aboutToUnload() was called since the entry was created
    bool isCreating = false; ///< createEntry() runs, and nobody has released its panel
};
