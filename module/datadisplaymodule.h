// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "interface/moduleinterface.h"

#include <QObject>

class IOManager;
struct BackendVersions;

/// The module as the host's plug-in loader sees it: one dock with the panel, and its entry in the "&View" menu.
class DataDisplayModule : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zel.Vornak2.DataDisplayModule")
    Q_INTERFACES(ModuleInterface)

public:
    DataDisplayModule();

    void aboutToUnload() noexcept override;
    void releaseWidgets() override;
    QString moduleName() const override;
    QString moduleVersion() const override;
    QList<ModuleEntry *> moduleEntries() noexcept override;
    void setModuleProperty(QString name, QVariant value) override;

private:
    void createEntry();

    // The host delivers its objects before it asks for the entries; until then there are none to speak of.
    QWidget *moduleParent;
    QList<ModuleEntry *> entries;
    ModuleEntry entry;
    IOManager *commandManager;
    BackendVersions *backendVersions;
    bool observerMode = false;
};
