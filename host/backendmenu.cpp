// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendmenu.h"

#include "backend/scenarios.h"
#include "host/backendsession.h"
#include "host/hostlog.h"

#include <QAction>
#include <QActionGroup>
#include <QFileDialog>

#include <utility>

namespace host {

BackendMenu::BackendMenu(BackendSession &session, HostLog &log, BackendSettings settings, QWidget *parent)
    : QMenu(tr("&Backend"), parent)
    , session(session)
    , log(log)
    , settings(std::move(settings))
{
    setObjectName(QStringLiteral("backendMenu"));
    setToolTipsVisible(true);
    disconnectAction = addAction(tr("&Disconnect"), &session, &BackendSession::disconnectBackend);
    disconnectAction->setObjectName(QStringLiteral("disconnectAction"));
    connectAction = addAction(tr("&Connect"), &session, &BackendSession::reconnect);
    connectAction->setObjectName(QStringLiteral("connectAction"));
    addSeparator();
    addScenarios();
    addAction(tr("&Replay Files..."), this, &BackendMenu::chooseReplayFiles)
        ->setObjectName(QStringLiteral("replayAction"));
    connect(&session, &BackendSession::connectionChanged, this, &BackendMenu::updateActions);
    updateActions();
}

void BackendMenu::showChoice(const BackendChoice &choice)
{
    current = choice;
    updateActions();
}

bool BackendMenu::choose(const BackendChoice &choice)
{
    const BackendResult made = makeBackend(choice, settings);
    for (const QString &warning : made.warnings)
        log.warning(warning);
    if (!made.backend) {
        log.warning(made.error);
        emit failed(made.error);
        updateActions(); // the click has ticked what is not connected
        return false;
    }
    current = choice;
    session.change(made.backend);
    return true;
}

void BackendMenu::addScenarios()
{
    QMenu *menu = addMenu(tr("&Scenario"));
    menu->setObjectName(QStringLiteral("scenarioMenu"));
    menu->setToolTipsVisible(true);
    scenarios = new QActionGroup(this);
    scenarios->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    const QStringList names = backend::scenarioNames();
    for (const QString &name : names) {
        QAction *action = menu->addAction(name);
        action->setCheckable(true);
        action->setData(name);
        action->setToolTip(backend::scenarioDescription(name));
        action->setStatusTip(backend::scenarioDescription(name));
        scenarios->addAction(action);
        connect(action, &QAction::triggered, this, [this, name] { choose({name, {}}); });
    }
    menu->addSeparator();
    menu->addAction(tr("From &File..."), this, &BackendMenu::chooseScenarioFile)
        ->setObjectName(QStringLiteral("scenarioFileAction"));
}

void BackendMenu::chooseScenarioFile()
{
    const QString file = QFileDialog::getOpenFileName(parentWidget(), tr("Choose a Scenario"), QString(),
                                                      tr("Scenarios (*.json);;All files (*)"));
    if (!file.isEmpty())
        choose({file, {}});
}

void BackendMenu::chooseReplayFiles()
{
    const QStringList files =
        QFileDialog::getOpenFileNames(parentWidget(), tr("Choose Trajectories to Replay, One for Each Body"), QString(),
                                      tr("Trajectories (*.txt *.tum);;All files (*)"));
    if (!files.isEmpty())
        choose({QString(), files});
}

void BackendMenu::updateActions()
{
    disconnectAction->setEnabled(session.isConnected());
    connectAction->setEnabled(!session.isConnected() && !session.backendName().isEmpty());
    const QList<QAction *> actions = scenarios->actions();
    for (QAction *action : actions)
        action->setChecked(current.replayFiles.isEmpty() && action->data() == current.scenario);
}

} // namespace host
