// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/bodiesdock.h"

#include "host/bodynames.h"

#include <QAccessible>
#include <QAction>
#include <QListWidget>

namespace host {

namespace {

constexpr int usualLine = 30; // [characters]; "12 Left hand: lost for 59 s"
constexpr int idRole = Qt::UserRole;
constexpr int kindRole = Qt::UserRole + 1;

qint32 idOf(const QListWidgetItem &item)
{
    return item.data(idRole).toInt();
}

} // namespace

BodiesDock::BodiesDock(const BodyNames &names, QWidget *parent)
    : QDockWidget(tr("Bodies"), parent)
    , names(names)
    , list(new QListWidget)
{
    setObjectName(QStringLiteral("bodiesDock"));
    list->setObjectName(QStringLiteral("bodyList"));
    list->setAccessibleName(tr("States of the bodies"));
    list->setUniformItemSizes(true);
    list->setMinimumWidth(list->fontMetrics().averageCharWidth() * usualLine);
    list->setWhatsThis(tr("Whether each body is tracked now, and for how long it has not been."));
    setWidget(list);
    toggleViewAction()->setText(tr("&Bodies"));
    toggleViewAction()->setStatusTip(tr("Show the state of each body in words"));
}

void BodiesDock::refresh(const HealthSnapshot &snapshot, const Liveness &liveness)
{
    if (!isVisible())
        return;
    const QVector<BodyState> states = bodyStates(snapshot, liveness);
    adapt(states);
    for (int row = 0; row < states.size(); ++row)
        showState(row, states.at(row));
}

void BodiesDock::adapt(const QVector<BodyState> &states)
{
    int row = 0;
    for (const BodyState &state : states) {
        while (row < list->count() && idOf(*list->item(row)) < state.id)
            delete list->takeItem(row);
        if (row == list->count() || idOf(*list->item(row)) != state.id) {
            auto *item = new QListWidgetItem;
            item->setData(idRole, state.id);
            list->insertItem(row, item);
        }
        ++row;
    }
    while (list->count() > row)
        delete list->takeItem(row);
}

void BodiesDock::showState(int row, const BodyState &state)
{
    QListWidgetItem *item = list->item(row);
    const QString text = tr("%1: %2").arg(names.label(state.id), state.words());
    if (item->text() == text)
        return;
    item->setText(text);
    const int kind = static_cast<int>(state.kind);
    const QVariant before = item->data(kindRole);
    item->setData(kindRole, kind);
    if (!before.isValid() || before.toInt() == kind)
        return;
    QAccessibleEvent event(list, QAccessible::NameChanged);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

} // namespace host
