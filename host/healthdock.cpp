// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/healthdock.h"

#include "host/livenessmonitor.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

#include <utility>

namespace host {

namespace {

using Time = std::chrono::nanoseconds;

constexpr int rowMargin = 6; // [pixels]
constexpr int leastRows = 5; // shown

Figure textFigure(const QString &text)
{
    return {text, text};
}

Figure countFigure(quint64 count)
{
    return {QString::number(count), count};
}

Figure numberFigure(std::optional<double> number, int decimals)
{
    return number ? Figure{QString::number(*number, 'f', decimals), *number} : Figure{};
}

Figure secondsFigure(std::optional<Time> time, int decimals)
{
    return numberFigure(time ? std::optional<double>(std::chrono::duration<double>(*time).count()) : std::nullopt,
                        decimals);
}

FigureTable::Row rowOf(const QString &name, const StreamFigures &stream)
{
    const bool hasLines = stream.lines > 0;
    return {textFigure(name),
            countFigure(stream.lines),
            numberFigure(stream.rate1, 1),
            numberFigure(stream.rate10, 1),
            secondsFigure(hasLines ? std::optional<Time>(stream.age) : std::nullopt, 1),
            secondsFigure(hasLines ? std::optional<Time>(stream.longestGap) : std::nullopt, 3)};
}

} // namespace

HealthDock::HealthDock(const LivenessMonitor &monitor, QWidget *parent)
    : QDockWidget(tr("Stream Health"), parent)
    , monitor(monitor)
{
    setObjectName(QStringLiteral("healthDock"));
    auto *contents = new QWidget;
    contents->setLayout(new QHBoxLayout);
    setWidget(contents);
    streams =
        addTable("healthStreams", tr("Streams"),
                 {tr("Stream"), tr("Lines"), tr("Rate over 1 s [1/s]"), tr("Rate over 10 s [1/s]"), tr("Age [s]"),
                  tr("Longest gap [s]"), tr("Unreadable"), tr("Dropped by panels"), tr("Lost on the way"), tr("Late")});
    streams.view->setWhatsThis(
        tr("What has come since the source was opened. What a module could not read, what panels "
           "dropped while they were drawing, and what was lost or late is counted for all "
           "streams together, since the start of the program."));
    bodies = addTable("healthBodies", tr("Bodies"),
                      {tr("Stream"), tr("Body"), tr("Tracked"), tr("Lost of 60 s [%]"), tr("Longest gap [s]"),
                       tr("Last tracked [s ago]")});
    bodies.view->setWhatsThis(tr("How well each body is tracked, by its ID in the lines."));
    toggleViewAction()->setText(tr("Stream &Health"));
    toggleViewAction()->setShortcut(Qt::Key_F9);
    toggleViewAction()->setStatusTip(tr("Show how many lines come, how old they are, and what is lost"));
    // Tabbed with another dock it would open behind it.
    connect(toggleViewAction(), &QAction::triggered, this, [this](bool shown) {
        if (shown)
            raise();
    });
}

void HealthDock::refresh()
{
    QElapsedTimer clock;
    clock.start();
    const qint64 second = clock.msecsSinceReference() / 1000;
    if (isVisible() && second != shownSecond) {
        shownSecond = second;
        showFigures();
    }
}

bool HealthDock::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
        copy(*static_cast<QTableView *>(watched)->model());
        return true;
    }
    return QDockWidget::eventFilter(watched, event);
}

void HealthDock::showEvent(QShowEvent *event)
{
    QDockWidget::showEvent(event);
    showFigures();
    for (const Table &table : {streams, bodies})
        table.view->resizeColumnsToContents();
}

HealthDock::Table HealthDock::addTable(const char *name, const QString &title, const QStringList &columns)
{
    Table table;
    table.view = new QTableView;
    table.view->setObjectName(QLatin1String(name));
    table.model = new FigureTable(columns, table.view);
    auto *sorted = new QSortFilterProxyModel(table.view);
    sorted->setSourceModel(table.model);
    sorted->setSortRole(Qt::UserRole);
    table.view->setModel(sorted);
    table.view->setAccessibleName(title);
    table.view->setTabKeyNavigation(false); // Tab leaves the table
    table.view->setSelectionBehavior(QAbstractItemView::SelectRows);
    table.view->setSortingEnabled(true);
    table.view->sortByColumn(-1, Qt::AscendingOrder);
    table.view->verticalHeader()->hide();
    table.view->verticalHeader()->setDefaultSectionSize(table.view->fontMetrics().height() + rowMargin);
    table.view->setMinimumHeight(leastRows * table.view->verticalHeader()->defaultSectionSize());
    table.view->installEventFilter(this);

    auto *label = new QLabel(title);
    label->setBuddy(table.view);
    auto *copyButton = new QPushButton(tr("Copy %1 as CSV").arg(title));
    copyButton->setObjectName(QLatin1String(name) + QLatin1String("Copy"));
    connect(copyButton, &QPushButton::clicked, this, [sorted] { copy(*sorted); });
    auto *top = new QHBoxLayout;
    top->addWidget(label, 1);
    top->addWidget(copyButton);
    auto *column = new QVBoxLayout;
    column->addLayout(top);
    column->addWidget(table.view);
    static_cast<QHBoxLayout *>(widget()->layout())->addLayout(column, columns.size());
    return table;
}

void HealthDock::copy(const QAbstractItemModel &model)
{
    QApplication::clipboard()->setText(QString::fromUtf8(csvOf(model)));
}

void HealthDock::showFigures()
{
    const HealthSnapshot &snapshot = monitor.snapshot();
    const SourceFacts &facts = monitor.facts();
    FigureTable::Row all = rowOf(tr("all"), snapshot.all);
    all.push_back(countFigure(facts.unreadable));
    all.push_back(facts.dropped ? countFigure(*facts.dropped) : Figure{tr("not told"), QVariant()});
    all.push_back(countFigure(monitor.lostOnTheWay()));
    all.push_back(countFigure(monitor.late()));
    const std::size_t columns = all.size();
    std::vector<FigureTable::Row> streamRows{std::move(all)};
    for (const StreamFigures &stream : snapshot.streams) {
        streamRows.push_back(rowOf(QString::fromUtf8(stream.tag), stream));
        streamRows.back().resize(columns);
    }
    streams.model->setRows(std::move(streamRows));

    std::vector<FigureTable::Row> bodyRows;
    for (const BodyFigures &body : snapshot.bodies) {
        bodyRows.push_back({textFigure(QString::fromUtf8(body.tag)),
                            {QString::number(body.id), body.id},
                            textFigure(body.tracked ? tr("yes") : tr("no")),
                            numberFigure(body.lossPercent, 1),
                            secondsFigure(body.longestGap, 3),
                            secondsFigure(body.sinceTracked, 1)});
    }
    bodies.model->setRows(std::move(bodyRows));
}

} // namespace host
