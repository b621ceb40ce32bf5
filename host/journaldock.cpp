// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/journaldock.h"

#include "host/backendsession.h"
#include "host/backendwatch.h"
#include "host/journaledbackend.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include <array>

namespace host {

namespace {

constexpr std::array<int, CommandJournal::ColumnCount> columnCharacters{15, 14, 12, 22, 11, 10};

/// \a text on a button, where an ampersand would mark a key.
QString onButton(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

PutBackState PutBackState::of(const JournalEntry &entry, bool isObserver, int connection)
{
    const auto because = [](const QString &text) { return PutBackState{false, text}; };
    if (isObserver)
        return because(JournalDock::tr("An observer changes nothing."));
    if (!entry.accepted)
        return because(JournalDock::tr("The backend refused this command: there is nothing to put back."));
    if (entry.oldValueState == JournalEntry::OldValue::NotAsked)
        return because(JournalDock::tr("The old value was not asked for, because the backend was slow."));
    if (entry.oldValueState == JournalEntry::OldValue::NotAnswered)
        return because(JournalDock::tr("The backend did not say what the old value was."));
    if (connection == 0)
        return because(JournalDock::tr("No backend is connected."));
    if (entry.connection != connection)
        return because(JournalDock::tr("This was sent to another backend."));
    return {true, {}};
}

JournalDock::JournalDock(BackendWatch &watch, const BackendSession &session, bool isObserver, QWidget *parent)
    : QDockWidget(tr("Command Journal"), parent)
    , watch(watch)
    , session(session)
    , isObserver(isObserver)
    , view(new QTableView)
    , reason(new QLabel)
    , button(new QPushButton)
{
    setObjectName(QStringLiteral("journalDock"));
    toggleViewAction()->setText(tr("&Command Journal"));
    toggleViewAction()->setStatusTip(tr("Show the settings that were changed, and put old values back"));
    addWidgets();
    const CommandJournal &journal = watch.journal();
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &JournalDock::forgetQuestion);
    connect(&journal, &QAbstractItemModel::rowsAboutToBeInserted, this, [this] {
        const QScrollBar *bar = view->verticalScrollBar();
        wasAtEnd = bar->value() == bar->maximum();
    });
    connect(&journal, &QAbstractItemModel::rowsInserted, this, &JournalDock::followNewest);
    connect(&session, &BackendSession::connectionChanged, this, &JournalDock::forgetQuestion);
    connect(button, &QPushButton::clicked, this, &JournalDock::putBackCurrent);
    forgetQuestion();
}

void JournalDock::addWidgets()
{
    view->setObjectName(QStringLiteral("journalTable"));
    view->setAccessibleName(tr("Settings that were changed"));
    view->setModel(&watch.journal());
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setTabKeyNavigation(false);
    view->setWordWrap(false);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    view->horizontalHeader()->setStretchLastSection(true);
    for (int column = 0; column < CommandJournal::ColumnCount; ++column)
        view->setColumnWidth(
            column, view->fontMetrics().averageCharWidth() * columnCharacters.at(static_cast<std::size_t>(column)));
    view->setWhatsThis(
        tr("Each command that changed a setting: when, of which body, from which value to which, whether "
           "the backend accepted it, and who sent it."));
    reason->setObjectName(QStringLiteral("putBackReason"));
    reason->setTextFormat(Qt::PlainText);
    button->setObjectName(QStringLiteral("putBackButton"));
    button->setAutoDefault(false);
    auto *row = new QHBoxLayout;
    row->addWidget(reason, 1);
    row->addWidget(button);
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
    layout->addLayout(row);
    setWidget(content);
}

void JournalDock::forgetQuestion()
{
    isAsking = false;
    askedValue.reset();
    showState();
}

void JournalDock::showState()
{
    const QModelIndex current = view->currentIndex();
    const PutBackState state = current.isValid()
        ? PutBackState::of(watch.journal().entry(current.row()), isObserver, connection())
        : PutBackState{false, tr("Choose a row to put its old value back.")};
    button->setEnabled(state.isPossible);
    reason->setText(state.reason);
    if (!isAsking) {
        button->setText(tr("&Put Back"));
        return;
    }
    const QString sent = shownValue(watch.journal().entry(current.row()).setting.value);
    button->setText(onButton(askedValue ? tr("is now %1, not %2; put back anyway?").arg(shownValue(*askedValue), sent)
                                        : tr("is not known now; put back anyway?")));
}

void JournalDock::putBackCurrent()
{
    const QModelIndex current = view->currentIndex();
    const std::shared_ptr<JournaledBackend> backend = watch.newestBackend();
    if (!current.isValid() || !backend)
        return;
    const JournalEntry entry = watch.journal().entry(current.row()); // a copy: the row may go meanwhile
    const std::optional<QByteArray> present = backend->request(entry.setting.question);
    const bool isAsSent = present && isSameValue(*present, entry.setting.value);
    const bool isConfirmed = isAsking && present == askedValue;
    if (!isAsSent && !isConfirmed) {
        isAsking = true;
        askedValue = present;
        showState();
        return;
    }
    const bool accepted = backend->putBack(entry.setting.question, entry.oldValue, present);
    forgetQuestion();
    if (accepted)
        emit putBack(entry.setting.name());
    else
        reason->setText(tr("The backend refused the old value."));
}

void JournalDock::followNewest()
{
    if (wasAtEnd)
        view->scrollToBottom();
}

int JournalDock::connection() const
{
    return session.isConnected() ? watch.newestConnection() : 0;
}

} // namespace host
