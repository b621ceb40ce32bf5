// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "interface/moduleinterface.h"
#include "interface/requester.h"

#include <QSize>
#include <QWidget>

#include <array>
#include <atomic>

class IOManager;

/// A display that takes every line, leaves out every tenth as one does that is drawing, and counts both. Once told to,
/// it refuses all lines as malformed.
class CountingPanel : public QWidget, public Requester {
    Q_OBJECT
    Q_PROPERTY(quint64 storedLines READ storedLines)
    Q_PROPERTY(quint64 droppedLines READ droppedLines)
    Q_PROPERTY(quint64 ignoredLines READ ignoredLines)
    Q_PROPERTY(bool refusing READ isRefusing WRITE setRefusing)
    Q_PROPERTY(bool awaitingLine MEMBER awaitingLine)

public:
    explicit CountingPanel(IOManager *manager);

    QSize sizeHint() const override { return {800, 200}; }

    quint64 storedLines() const { return stored; }
    quint64 droppedLines() const { return dropped; }
    quint64 ignoredLines() const { return 0; }
    bool isRefusing() const { return refusing; }
    void setRefusing(bool all) { refusing = all; }
    /// Waits up to five seconds for a line. Returns whether one came.
    bool awaitLine() const;

    int processOutput(const char *tag, const char *line) override;
    void configurationChanged() override;
    void clearData() override;

private:
    IOManager *ioManager;
    std::atomic<quint64> stored{0}; // the data thread writes both
    std::atomic<quint64> dropped{0};
    std::atomic<bool> refusing{false}; // the data thread reads it
    bool awaitingLine = false;
};

/// A module with three entries in another order than they are to be shown in. It notes what the host does to it in the
/// application's property "moduleCalls", a list of texts. Of its other properties, "closedPanel" has the module hide
/// its dock, and "staysRegistered" forget to unregister.
class TestModule : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zel.Vornak2.TestModule")
    Q_INTERFACES(ModuleInterface)

public:
    TestModule();
    ~TestModule() override;

    void aboutToUnload() override;
    void releaseWidgets() override;
    QString moduleName() const override;
    QString moduleVersion() const override;
    QList<ModuleEntry *> moduleEntries() override;
    void setModuleProperty(QString name, QVariant value) override;

private:
    IOManager *ioManager = nullptr;
    QWidget *moduleParent = nullptr;
    CountingPanel *panel = nullptr;
    std::array<ModuleEntry, 3> entries;
};
