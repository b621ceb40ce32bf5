// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "interface/iomanager.h"
#include "interface/moduleinterface.h"
#include "interface/requester.h"

#include <QObject>

/// A module without a window that listens to "3d" lines, refuses each third of them, and keeps no count.
class ListeningModule : public QObject, public ModuleInterface, public Requester {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zel.Vornak2.ListeningModule")
    Q_INTERFACES(ModuleInterface)

public:
    void aboutToUnload() override { ioManager->unregisterRequester(this); }
    void releaseWidgets() override { }
    QString moduleName() const override { return QStringLiteral("Listening Module"); }
    QString moduleVersion() const override { return QStringLiteral("v1"); }
    QList<ModuleEntry *> moduleEntries() override
    {
        ioManager->registerRequester(this);
        ioManager->startOutput("3d", this);
        return {};
    }
    void setModuleProperty(QString name, QVariant value) override
    {
        if (name == QLatin1String("CommandManager"))
            ioManager = value.value<IOManager *>();
    }

    int processOutput(const char * /*tag*/, const char * /*line*/) override { return ++lines % 3 == 0 ? -1 : 0; }
    void configurationChanged() override { }
    void clearData() override { }

private:
    IOManager *ioManager = nullptr;
    int lines = 0; // the data thread
};

#include "listeningmodule.moc"
