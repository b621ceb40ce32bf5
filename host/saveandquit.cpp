// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/saveandquit.h"

#include "host/oncetimer.h"
#include "host/tablewriter.h"
#include "host/windowpicture.h"

#include <QMainWindow>

#include <algorithm>
#include <utility>

namespace host {

SaveAndQuit::SaveAndQuit(const HostOptions &options, QMainWindow &window, std::function<QList<ModuleEntry *>()> entries)
    : options(options)
    , window(window)
    , entries(std::move(entries))
{
}

void SaveAndQuit::schedule()
{
    if (!options.savesAndQuits())
        return;
    using std::chrono::milliseconds;
    const auto passed = std::chrono::duration_cast<milliseconds>(HostOptions::Clock::now() - options.start);
    QTimer *timer = startOnce(&window, std::max(milliseconds(0), options.saveAfter - passed));
    QObject::connect(timer, &QTimer::timeout, &window, [this] { save(); });
}

QStringList SaveAndQuit::failures() const
{
    if (done)
        return complaints;
    QStringList result; // the run ended before
    if (!options.screenshotFile.isEmpty())
        result
            << tr("The picture could not be saved in %1: the run ended before its time.").arg(options.screenshotFile);
    if (!options.tablesFolder.isEmpty())
        result << tr("The tables could not be saved in %1: the run ended before their time.").arg(options.tablesFolder);
    return result;
}

void SaveAndQuit::save()
{
    done = true;
    if (!options.screenshotFile.isEmpty()
        && !pictureOf(window).save(options.screenshotFile, pictureFormat(options.screenshotFile).constData()))
        complaints << tr("The picture could not be saved in %1.").arg(options.screenshotFile);
    if (!options.tablesFolder.isEmpty()) {
        const QString complaint = TableWriter(entries()).write(options.tablesFolder);
        if (!complaint.isEmpty())
            complaints << complaint;
    }
    QCoreApplication::quit();
}

} // namespace host
