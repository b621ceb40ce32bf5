// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/lineaccount.h"
#include "host/moduleloader.h"
#include "interface/backendversions.h"

#include <QByteArray>

namespace backend {
struct ProtocolVersion;
} // namespace backend

namespace host {

class MainWindow;
class OutputSubscriptions;

/// The modules in the window: loaded, unloaded, and loaded anew for a backend whose version they can't follow, with
/// the docks where they were. GUI thread.
class ModuleSet {
    Q_DECLARE_TR_FUNCTIONS(ModuleSet)

public:
    /// All outlive this object.
    ModuleSet(HostLog &log, MainWindow &window, OutputSubscriptions &subscriptions);

    /// Loads what is in \a searchedFolders and adds it to the window.
    void load(const QStringList &searchedFolders, const HostObjects &hostObjects);
    /// Unloads the modules if they were made for a version that is too different from \a next. To be called while the
    /// backend that they know is still connected. No line is delivered to them once it returns.
    void unloadUnlessFit(const backend::ProtocolVersion &next);
    /// Loads again what unloadUnlessFit() has unloaded. To be called when questions are answered again.
    void loadAgain();
    /// Tells all modules that they will be unloaded.
    void aboutToUnload();
    /// Takes the modules out of the window and unloads them.
    void unload();

    int count() const { return loader.count(); }
    QList<ModuleEntry *> entries() const { return loader.entries(); }
    /// What the panels report about their lines, those that are unloaded included.
    std::optional<PanelLineCounts> lineCounts() const;

private:
    HostLog &log;
    MainWindow &window;
    OutputSubscriptions &subscriptions;
    QStringList folders;
    HostObjects objects;
    BackendVersions madeFor; // the versions as the modules were made
    QByteArray layout; // of the window, while the modules are unloaded
    bool isLoaded = false;
    std::optional<PanelLineCounts> earlierCounts; // of the panels that are unloaded
    ModuleLoader loader;
};

} // namespace host
