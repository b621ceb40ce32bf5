// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendmenu.h"

#include "backend/scenarios.h"
#include "host/backendreader.h"
#include "host/backendsession.h"
#include "host/hostlog.h"
#include "host/sourcesettings.h"

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
    , reader(new BackendReader(this))
{
    setObjectName(QStringLiteral("backendMenu"));
    setToolTipsVisible(true);
    disconnectAction = addAction(tr("&Disconnect"), &session, &BackendSession::disconnectBackend);
    disconnectAction->setObjectName(QStringLiteral("disconnectAction"));
    connectAction = addAction(tr("&Connect"), this, &BackendMenu::reconnect);
    connectAction->setObjectName(QStringLiteral("connectAction"));
    reconnectAction = addAction(tr("&Reconnect"), this, &BackendMenu::reconnect);
    reconnectAction->setObjectName(QStringLiteral("reconnectAction"));
    reconnectAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    reconnectAction->setStatusTip(tr("Disconnect, if connected, and connect to the same backend again"));
    addSeparator();
    addScenarios();
    connect(&session, &BackendSession::connectionChanged, this, &BackendMenu::updateActions);
    connect(reader, &BackendReader::finished, this, &BackendMenu::take);
    connect(reader, &BackendReader::cancelled, this, [this](const BackendChoice &choice) {
        const QString text = tr("The reading of %1 was cancelled.").arg(filesText(choice));
        this->log.info(text);
        giveUp(text);
    });
    updateActions();
}

void BackendMenu::showChoice(const BackendChoice &choice)
{
    current = choice;
    updateActions();
}

bool BackendMenu::choose(const BackendChoice &choice)
{
    if (hasFilesToRead(choice)) {
        reader->start(choice, settings);
        updateActions(); // the click has ticked what is not connected yet
        return true;
    }
    reader->stop();
    return take(choice, makeBackend(choice, settings));
}

void BackendMenu::replacePlaceholder(const BackendChoice &choice)
{
    hasPlaceholder = true;
    choose(choice);
}

bool BackendMenu::take(const BackendChoice &choice, const BackendResult &made)
{
    for (const QString &warning : made.warnings)
        log.warning(warning);
    if (!made.backend) {
        log.warning(made.error);
        giveUp(made.error);
        return false;
    }
    const bool isOfTheStart = std::exchange(hasPlaceholder, false);
    current = choice;
    session.change(made.backend);
    if (!isOfTheStart)
        emit chosen(choice);
    return true;
}

void BackendMenu::giveUp(const QString &text)
{
    emit failed(text);
    if (hasPlaceholder)
        session.disconnectBackend();
    updateActions(); // the click has ticked what is not connected
}

void BackendMenu::reconnect()
{
    if (hasPlaceholder) {
        choose(current);
        return;
    }
    session.disconnectBackend();
    session.reconnect();
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
    auto *dialog = new QFileDialog(parentWidget(), tr("Choose a Scenario"), sourcesettings::lastFolder(),
                                   tr("Scenarios (*.json);;All files (*)"));
    dialog->setObjectName(QStringLiteral("scenarioDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &file) { choose({file, {}}); });
    dialog->open();
}

void BackendMenu::updateActions()
{
    disconnectAction->setEnabled(session.isConnected());
    connectAction->setEnabled(!session.isConnected() && !session.backendName().isEmpty());
    reconnectAction->setEnabled(!session.backendName().isEmpty());
    const QList<QAction *> actions = scenarios->actions();
    for (QAction *action : actions)
        action->setChecked(current.replayFiles.isEmpty() && action->data() == current.scenario);
}

} // namespace host
