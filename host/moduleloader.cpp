// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/moduleloader.h"

#include "host/hostlog.h"
#include "host/outputsubscriptions.h"
#include "interface/iomanager.h"
#include "interface/moduleinterface.h"

#include <QDir>
#include <QJsonObject>
#include <QLibrary>
#include <QVariant>
#include <QWidget>

#include <algorithm>
#include <exception>
#include <iterator>
#include <tuple>

namespace host {

namespace {

const QLatin1String iidPrefix("com.zel.Vornak2.");

bool comesFirst(const ModuleEntry *left, const ModuleEntry *right)
{
    return std::tie(left->primaryOrder, left->secondaryOrder) < std::tie(right->primaryOrder, right->secondaryOrder);
}

void setProperties(ModuleInterface &module, const HostObjects &objects)
{
    module.setModuleProperty(QStringLiteral("CommandManager"), QVariant::fromValue(objects.commandManager));
    module.setModuleProperty(QStringLiteral("ModuleParent"), QVariant::fromValue(objects.moduleParent));
    module.setModuleProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(objects.backendVersions));
    module.setModuleProperty(QStringLiteral("ObserverMode"), objects.observerMode);
}

} // namespace

ModuleLoader::ModuleLoader(HostLog &log)
    : log(log)
{
}

ModuleLoader::~ModuleLoader()
{
    aboutToUnload();
    unload();
}

QStringList ModuleLoader::folders(const QString &firstFolder)
{
    QStringList result;
    if (!firstFolder.isEmpty())
        result << firstFolder;
    // Both from the program on, so that an installation can be moved as a whole.
    const QString folder = QCoreApplication::applicationDirPath();
    result << folder + QStringLiteral("/../modules") << folder + QStringLiteral("/../" VORNAK_MODULE_FOLDER);
    return result;
}

void ModuleLoader::load(const QStringList &searchedFolders, const HostObjects &objects)
{
    subscriptions = objects.subscriptions;
    for (const QString &folder : searchedFolders) {
        const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
        for (const QFileInfo &file : files) {
            if (QLibrary::isLibrary(file.fileName()))
                loadFile(file.canonicalFilePath(), objects);
        }
    }
    std::stable_sort(sortedEntries.begin(), sortedEntries.end(), comesFirst);
    if (modules.empty()) {
        log.warning(
            tr("There is no module in any of these folders: %1.").arg(searchedFolders.join(QStringLiteral(", "))));
    }
}

std::optional<PanelLineCounts> ModuleLoader::lineCounts() const
{
    std::optional<PanelLineCounts> total;
    for (const Module &module : modules) {
        std::optional<PanelLineCounts> counts = panelLineCounts(module.entries);
        if (!counts)
            continue;
        if (subscriptions) {
            const auto handed = subscriptions->deliveredTo(module.firstRegistration, module.endRegistration);
            counts->taken = handed.sent - handed.refused;
        }
        total = total.value_or(PanelLineCounts()) + *counts;
    }
    return total;
}

void ModuleLoader::aboutToUnload()
{
    if (warned)
        return;
    warned = true;
    for (const Module &module : modules)
        attempt(module.loader->fileName(), [&] { module.interface->aboutToUnload(); });
}

void ModuleLoader::unload()
{
    sortedEntries.clear();
    for (const Module &module : modules)
        attempt(module.loader->fileName(), [&] { module.interface->releaseWidgets(); });
    for (const Module &module : modules) {
        if (!module.loader->unload())
            log.warning(
                tr("%1 could not be unloaded: %2.").arg(module.loader->fileName(), module.loader->errorString()));
    }
    modules.clear();
    warned = false;
}

void ModuleLoader::loadFile(const QString &path, const HostObjects &objects)
{
    auto loader = std::make_unique<QPluginLoader>(path);
    QString iid;
    if (!isWanted(*loader, &iid))
        return;
    // The instance is destroyed by unload(), its code stays: Qt's caches may hold texts that lie in the library.
    loader->setLoadHints(QLibrary::PreventUnloadHint);
    QObject *instance = nullptr;
    if (!attempt(path, [&] { instance = loader->instance(); })) {
        loader->unload();
        return;
    }
    auto *module = qobject_cast<ModuleInterface *>(instance);
    if (!module) {
        const QString reason =
            loader->isLoaded() ? tr("it does not have the interface of a module") : loader->errorString();
        log.warning(tr("The module %1 is not used: %2.").arg(path, reason));
        loader->unload();
        return;
    }
    // Whatever fails from here on, the module stays until all are unloaded: the host may be holding what it has given.
    modules.push_back({std::move(loader), module, iid, {}, registrations(), 0});
    attempt(path, [&] {
        setProperties(*module, objects);
        const QList<ModuleEntry *> entries = module->moduleEntries();
        log.info(tr("Loaded %1 %2 from %3.").arg(module->moduleName(), module->moduleVersion(), path));
        std::copy_if(entries.begin(), entries.end(), std::back_inserter(modules.back().entries),
                     [](const ModuleEntry *entry) { return entry != nullptr; });
    });
    modules.back().endRegistration = registrations();
    sortedEntries += modules.back().entries;
}

int ModuleLoader::registrations() const
{
    return subscriptions ? subscriptions->registrations() : 0;
}

bool ModuleLoader::attempt(const QString &path, const std::function<void()> &call)
{
    try {
        call();
        return true;
    } catch (const std::exception &fault) {
        log.warning(tr("The module %1 failed: %2.").arg(path, QString::fromLocal8Bit(fault.what())));
    } catch (...) {
        log.warning(tr("The module %1 failed.").arg(path));
    }
    return false;
}

bool ModuleLoader::isWanted(const QPluginLoader &loader, QString *iid)
{
    const QString path = loader.fileName();
    *iid = loader.metaData().value(QLatin1String("IID")).toString();
    if (iid->isEmpty()) {
        log.warning(tr("%1 is not a module: it has no plug-in metadata that this program can read.").arg(path));
        return false;
    }
    if (!iid->startsWith(iidPrefix)) {
        log.info(tr("%1 is not one of our modules: its identifier is \"%2\".").arg(path, *iid));
        return false;
    }
    const bool known =
        std::any_of(modules.begin(), modules.end(), [&](const Module &module) { return module.iid == *iid; });
    if (known)
        log.info(tr("%1 is left alone: a module of its kind is loaded already.").arg(path));
    return !known;
}

} // namespace host
