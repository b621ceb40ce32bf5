// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/slowquestions.h"

#include "backend/exchangetimes.h"
#include "host/slowexchanges.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace host {

namespace {

constexpr int refreshInterval = 1000; // [ms]
constexpr int shownRows = 500; // no operator reads more, and a screen reader would have to pass them all

QString wholeMilliseconds(std::chrono::nanoseconds duration)
{
    return QLocale(QLocale::English).toString(std::chrono::duration<double, std::milli>(duration).count(), 'f', 0);
}

} // namespace

SlowQuestions::SlowQuestions(const backend::ExchangeTimes &times, QWidget *parent)
    : QDialog(parent)
    , times(times)
    , summary(new QLabel)
    , table(new QTableWidget(0, ColumnCount))
    , timer(this)
{
    setObjectName(QStringLiteral("slowQuestions"));
    setWindowTitle(tr("Slow Questions"));
    summary->setObjectName(QStringLiteral("slowSummary"));
    summary->setWordWrap(true);
    table->setObjectName(QStringLiteral("slowTable"));
    table->setAccessibleName(tr("Questions and commands that took long"));
    table->setHorizontalHeaderLabels({tr("Question or command"), tr("Count"), tr("Median [ms]"), tr("Worst [ms]")});
    table->horizontalHeader()->setSectionResizeMode(TextColumn, QHeaderView::Stretch);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(summary);
    layout->addWidget(table);
    layout->addWidget(buttons);
    resize(760, 320);
    timer.setInterval(refreshInterval);
    connect(&timer, &QTimer::timeout, this, &SlowQuestions::refresh);
}

void SlowQuestions::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    refresh();
    timer.start();
}

void SlowQuestions::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    timer.stop();
}

void SlowQuestions::refresh()
{
    const QVector<backend::TextTimes> slow = times.slowerThan(slowExchange);
    const QString asked = QLocale(QLocale::English).toString(times.count());
    summary->setText(
        slow.isEmpty()
            ? tr("None of %1 questions and commands has taken more than 100 ms.").arg(asked)
            : tr("Of %1 questions and commands, these took the backend more than 100 ms at least once. The window "
                 "stands still while it waits.")
                  .arg(asked));
    const int rows = qMin<int>(slow.size(), shownRows);
    table->setRowCount(rows);
    for (int row = 0; row < rows; ++row) {
        const backend::TextTimes &text = slow.at(row);
        setCell(row, TextColumn, QString::fromUtf8(text.text).simplified());
        setCell(row, CountColumn, QLocale(QLocale::English).toString(text.count));
        setCell(row, MedianColumn, wholeMilliseconds(text.median));
        setCell(row, WorstColumn, wholeMilliseconds(text.worst));
    }
}

/// Keeps the item, and with it the selection and what a screen reader reads.
void SlowQuestions::setCell(int row, int column, const QString &text)
{
    QTableWidgetItem *item = table->item(row, column);
    if (!item) {
        item = new QTableWidgetItem;
        if (column != TextColumn)
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table->setItem(row, column, item);
    }
    if (item->text() != text)
        item->setText(text);
}

} // namespace host
