// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/lineaccount.h"
#include "interface/backendversions.h"

#include <QCoreApplication>
#include <QList>
#include <QPluginLoader>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class IOManager;
class ModuleInterface;
class QWidget;
struct ModuleEntry;

namespace host {

class HostLog;
class OutputSubscriptions;

/// The host's objects that modules are given. They outlive the modules.
struct HostObjects {
    IOManager *commandManager = nullptr;
    QWidget *moduleParent = nullptr;
    BackendVersions *backendVersions = nullptr;
    bool observerMode = false;
    const OutputSubscriptions *subscriptions = nullptr; ///< of the command manager; may be null
};

/// Finds modules, loads and unloads them. What can't be used is logged and left alone: a faulty
/// module is no reason for the operator to lose the others. GUI thread.
class ModuleLoader {
    Q_DECLARE_TR_FUNCTIONS(ModuleLoader)

public:
    explicit ModuleLoader(HostLog &log);
    /// Unloads what is still loaded.
    ~ModuleLoader();

    /// Where modules are looked for: \a firstFolder unless it is empty, beside the program, and where they are
    /// installed.
    static QStringList folders(const QString &firstFolder);

    /// Loads the modules found in \a searchedFolders, each kind of module once, the first that is found. A library is
    /// loaded only when its metadata says that it is one of our modules.
    void load(const QStringList &searchedFolders, const HostObjects &objects);
    int count() const { return static_cast<int>(modules.size()); }
    /// The entries of all modules, by their primary and then their secondary order.
    QList<ModuleEntry *> entries() const { return sortedEntries; }

    /// What the panels of all modules report about their lines, and what was handed to them; nothing when none does. A
    /// module is known by the registrations that it makes while it is loaded.
    std::optional<PanelLineCounts> lineCounts() const;

    /// Tells all modules that they will be unloaded.
    void aboutToUnload();
    /// Lets the modules delete their widgets and destroys the modules. The host has forgotten the entries by then.
    void unload();

private:
    Q_DISABLE_COPY(ModuleLoader)

    struct Module {
        std::unique_ptr<QPluginLoader> loader;
        ModuleInterface *interface = nullptr; // owned by the loader
        QString iid;
        QList<ModuleEntry *> entries; // owned by the module
        int firstRegistration = 0; // of those that it made while it was loaded
        int endRegistration = 0;
    };

    void loadFile(const QString &path, const HostObjects &objects);
    int registrations() const;
    /// Calls a function of the module in the file \a path. Returns false, with a log entry, when it throws: a
    /// stranger's module must not end the host.
    bool attempt(const QString &path, const std::function<void()> &call);
    /// Decides by the metadata, which are read without running any code of the library.
    bool isWanted(const QPluginLoader &loader, QString *iid);

    HostLog &log;
    const OutputSubscriptions *subscriptions = nullptr;
    std::vector<Module> modules;
    QList<ModuleEntry *> sortedEntries; // owned by the modules
    bool warned = false; // aboutToUnload() was called
};

} // namespace host
