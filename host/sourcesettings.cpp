// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/sourcesettings.h"

#include "backend/scenarios.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace host::sourcesettings {

namespace {

const QLatin1String recentKey("source/recent");
const QLatin1String lastKey("source/last");
const QLatin1String folderKey("source/folder");
const QLatin1String scenarioKey("scenario");
const QLatin1String filesKey("files");

bool isSame(const BackendChoice &one, const BackendChoice &other)
{
    return one.scenario == other.scenario && one.replayFiles == other.replayFiles;
}

/// The same with whole paths, since the next run may start in another folder.
BackendChoice withWholePaths(const BackendChoice &choice)
{
    BackendChoice whole;
    for (const QString &file : choice.replayFiles)
        whole.replayFiles += QFileInfo(file).absoluteFilePath();
    if (!choice.replayFiles.isEmpty())
        return whole;
    const bool isShipped = backend::scenarioNames().contains(choice.scenario);
    whole.scenario = isShipped ? choice.scenario : QFileInfo(choice.scenario).absoluteFilePath();
    return whole;
}

void write(QSettings &settings, const BackendChoice &choice)
{
    settings.setValue(scenarioKey, choice.scenario);
    settings.setValue(filesKey, choice.replayFiles);
}

BackendChoice read(const QSettings &settings)
{
    BackendChoice choice;
    choice.scenario = settings.value(scenarioKey).toString();
    choice.replayFiles = settings.value(filesKey).toStringList();
    return choice;
}

void writeRecent(const QVector<BackendChoice> &choices)
{
    QSettings settings;
    settings.remove(recentKey);
    settings.beginWriteArray(recentKey, choices.size());
    for (int i = 0; i < choices.size(); ++i) {
        settings.setArrayIndex(i);
        write(settings, choices[i]);
    }
    settings.endArray();
}

QVector<BackendChoice> without(QVector<BackendChoice> choices, const BackendChoice &choice)
{
    choices.erase(std::remove_if(choices.begin(), choices.end(),
                                 [&choice](const BackendChoice &each) { return isSame(each, choice); }),
                  choices.end());
    return choices;
}

} // namespace

void remember(const BackendChoice &choice)
{
    if (choice.standardInput)
        return;
    const BackendChoice whole = withWholePaths(choice);
    QSettings settings;
    settings.beginGroup(lastKey);
    write(settings, whole);
    settings.endGroup();
    const bool isShipped = whole.replayFiles.isEmpty() && backend::scenarioNames().contains(whole.scenario);
    if (isShipped)
        return;
    settings.setValue(folderKey, QFileInfo(whole.replayFiles.value(0, whole.scenario)).absolutePath());
    QVector<BackendChoice> recent = without(recentFiles(), whole);
    recent.prepend(whole);
    writeRecent(recent.mid(0, mostRecent));
}

std::optional<BackendChoice> lastBackend()
{
    QSettings settings;
    settings.beginGroup(lastKey);
    const BackendChoice choice = read(settings);
    if (choice.scenario.isEmpty() && choice.replayFiles.isEmpty())
        return std::nullopt;
    return choice;
}

QVector<BackendChoice> recentFiles()
{
    QSettings settings;
    QVector<BackendChoice> choices;
    const int size = std::min(settings.beginReadArray(recentKey), mostRecent); // the file is the user's
    for (int i = 0; i < size; ++i) {
        settings.setArrayIndex(i);
        const BackendChoice choice = read(settings);
        if (!choice.scenario.isEmpty() || !choice.replayFiles.isEmpty())
            choices += choice;
    }
    settings.endArray();
    return choices;
}

QString lastFolder()
{
    return QSettings().value(folderKey).toString();
}

void forget(const BackendChoice &choice)
{
    writeRecent(without(recentFiles(), choice));
}

void forgetRecentFiles()
{
    writeRecent({});
}

} // namespace host::sourcesettings
