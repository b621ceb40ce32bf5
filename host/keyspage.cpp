// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/keyspage.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QShortcut>
#include <QTableWidget>
#include <QVBoxLayout>

namespace host {

namespace {

/// Without the marks of keys and the dots that announce a dialog.
QString plainText(const QString &text)
{
    QString plain;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        plain += text.at(i);
    }
    while (plain.endsWith(QLatin1Char('.')) || plain.endsWith(QChar(0x2026)))
        plain.chop(1);
    return plain;
}

QString keysText(const QList<QKeySequence> &keys)
{
    return QKeySequence::listToString(keys, QKeySequence::NativeText);
}

/// Collects each action once.
class KeyCollector {
public:
    void addMenu(const QList<QAction *> &actions, const QString &path)
    {
        for (const QAction *action : actions) {
            const QString text = path + plainText(action->text());
            if (action->menu())
                addMenu(action->menu()->actions(), text + QStringLiteral(" > "));
            else
                add(*action, text);
        }
    }

    void add(const QAction &action, const QString &text)
    {
        if (known.contains(&action))
            return;
        known.insert(&action);
        if (!action.shortcuts().isEmpty())
            entries.append({keysText(action.shortcuts()), text});
    }

    QVector<KeyEntry> entries;

private:
    QSet<const QAction *> known;
};

} // namespace

QVector<KeyEntry> keysOf(const QMainWindow &window)
{
    KeyCollector collector;
    const QList<QMenuBar *> bars = window.findChildren<QMenuBar *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QMenuBar *bar : bars)
        collector.addMenu(bar->actions(), QString());
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    const QList<QAction *> ownActions = window.actions();
    for (const QAction *action : ownActions)
        collector.add(*action, plainText(action->text()));
    for (const QWidget *widget : widgets) {
        if (widget->window() != &window) // a dialog has keys of its own
            continue;
        const QList<QAction *> actions = widget->actions();
        for (const QAction *action : actions)
            collector.add(*action, plainText(action->text()));
    }
    const QList<QShortcut *> shortcuts = window.findChildren<QShortcut *>();
    for (const QShortcut *shortcut : shortcuts) {
        if (!shortcut->whatsThis().isEmpty())
            collector.entries.append({keysText({shortcut->key()}), shortcut->whatsThis()});
    }
    return collector.entries;
}

KeysPage::KeysPage(QMainWindow *window)
    : QDialog(window)
    , window(*window)
    , table(new QTableWidget(0, 2))
{
    setObjectName(QStringLiteral("keysPage"));
    setWindowTitle(tr("Keys"));
    resize(460, 380);
    table->setObjectName(QStringLiteral("keysTable"));
    table->setAccessibleName(tr("Keys and what they do"));
    table->setHorizontalHeaderLabels({tr("Key"), tr("What it does")});
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table);
    layout->addWidget(buttons);
}

void KeysPage::showEvent(QShowEvent *event)
{
    const QVector<KeyEntry> entries = keysOf(window);
    table->setRowCount(entries.size());
    for (int row = 0; row < entries.size(); ++row) {
        table->setItem(row, 0, new QTableWidgetItem(entries[row].keys));
        table->setItem(row, 1, new QTableWidgetItem(entries[row].text));
    }
    table->resizeColumnToContents(0);
    QDialog::showEvent(event);
}

} // namespace host
