// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"

#include "backend/plainfile.h"
#include "backend/texts.h"

#include <QDir>
#include <QFile>

/// Registers the files compiled into this library, which a linker would leave out otherwise. Has to stand outside of
/// any namespace.
static void registerFiles()
{
    Q_INIT_RESOURCE(backend);
}

namespace backend {

namespace {

constexpr qint64 largestFile = 16777216; // [bytes]

QString pathOf(const QString &name)
{
    return QStringLiteral(":/backend/scenarios/%1.json").arg(name);
}

ScenarioResult loadFile(const QString &fileName, ReadingProgress *progress = nullptr)
{
    ScenarioResult result;
    QFile file(fileName);
    if (isPipeOrDevice(fileName))
        result.error = Backend::tr("%1 cannot be read: it is a pipe or a device.").arg(fileName);
    else if (file.size() > largestFile)
        result.error = Backend::tr("%1 is larger than 16 MiB.").arg(fileName);
    else if (file.open(QIODevice::ReadOnly))
        result = readScenario(file.readAll(), fileName, progress);
    else
        result.error = Backend::tr("%1 cannot be read: %2.").arg(fileName, file.errorString());
    return result;
}

} // namespace

QStringList scenarioNames()
{
    registerFiles();
    const QString defaultName = QStringLiteral("default");
    QStringList names;
    const QFileInfoList files = QDir(QStringLiteral(":/backend/scenarios")).entryInfoList({QStringLiteral("*.json")});
    for (const QFileInfo &file : files)
        names += file.completeBaseName();
    names.sort();
    names.removeAll(defaultName);
    names.prepend(defaultName);
    return names;
}

QString scenarioDescription(const QString &name)
{
    if (!scenarioNames().contains(name))
        return {};
    const ScenarioResult result = loadFile(pathOf(name));
    return result.scenario ? result.scenario->description : QString();
}

ScenarioResult loadScenario(const QString &nameOrPath, ReadingProgress *progress)
{
    const QStringList names = scenarioNames();
    if (names.contains(nameOrPath))
        return loadFile(pathOf(nameOrPath));
    if (QFile::exists(nameOrPath))
        return loadFile(nameOrPath, progress);
    ScenarioResult result;
    result.error = Backend::tr("%1 is neither a file nor one of the scenarios %2.")
                       .arg(nameOrPath, names.join(QStringLiteral(", ")));
    return result;
}

} // namespace backend
