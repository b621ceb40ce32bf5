// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/moduleset.h"

#include "host/hostlog.h"
#include "host/mainwindow.h"
#include "host/outputsubscriptions.h"
#include "host/versionlimits.h"

#include <utility>

namespace host {

ModuleSet::ModuleSet(HostLog &log, MainWindow &window, OutputSubscriptions &subscriptions)
    : log(log)
    , window(window)
    , subscriptions(subscriptions)
    , loader(log)
{
}

void ModuleSet::load(const QStringList &searchedFolders, const HostObjects &hostObjects)
{
    folders = searchedFolders;
    objects = hostObjects;
    madeFor = *objects.backendVersions;
    isLoaded = true;
    loader.load(folders, objects);
    window.addEntries(loader.entries());
}

void ModuleSet::unloadUnlessFit(const backend::ProtocolVersion &next)
{
    if (!isLoaded || loader.count() == 0 || !needsNewModules(madeFor, next))
        return;
    log.info(tr("The modules are loaded anew: they were made for a backend of another version."));
    layout = window.saveState();
    loader.aboutToUnload();
    // One that has not unregistered would be called when it is gone: unlike at the end, lines go on.
    for (Requester *requester : subscriptions.all())
        subscriptions.remove(requester);
    earlierCounts = lineCounts();
    unload();
}

void ModuleSet::loadAgain()
{
    if (isLoaded || layout.isEmpty())
        return;
    load(folders, objects);
    window.restoreState(std::exchange(layout, {}));
}

void ModuleSet::aboutToUnload()
{
    loader.aboutToUnload();
}

void ModuleSet::unload()
{
    isLoaded = false;
    window.removeEntries(loader.entries());
    loader.unload();
}

std::optional<PanelLineCounts> ModuleSet::lineCounts() const
{
    const std::optional<PanelLineCounts> present = loader.lineCounts();
    if (!present || !earlierCounts)
        return present ? present : earlierCounts;
    return *earlierCounts + *present;
}

} // namespace host
