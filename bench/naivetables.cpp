// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/naivetables.h"

#include "data/angles.h"
#include "display/columns.h"

#include <QHBoxLayout>
#include <QHeaderView>

#include <algorithm>

namespace {

constexpr int right = Qt::AlignRight | Qt::AlignVCenter;
constexpr int centre = Qt::AlignHCenter | Qt::AlignVCenter;

QString coordinateText(float value)
{
    return QString::number(static_cast<double>(value), 'f', 2);
}

template<typename Item> Item *newItem(const QString &text, int alignment)
{
    auto *item = new Item(text);
    item->setTextAlignment(static_cast<Qt::AlignmentFlag>(alignment)); // which suits both kinds of items
    return item;
}

template<typename Item> void setColours(Item *item, Qt::GlobalColor text, Qt::GlobalColor background)
{
    item->setForeground(QBrush(text));
    item->setBackground(QBrush(background));
}

/// One row of the bodies; \a itemAt gives the item of a column.
template<typename ItemAt> void showBody(std::vector<BodyRecord> &records, int row, ItemAt itemAt)
{
    const auto record =
        std::find_if(records.begin(), records.end(), [row](const BodyRecord &body) { return body.id == row; });
    if (record == records.end() || record->quality < 0.0F) {
        setColours(itemAt(BodyIdColumn), Qt::black, Qt::red);
    } else {
        setColours(itemAt(BodyIdColumn), Qt::black,
                   record->state >= 2 ? Qt::green : (record->state == 1 ? Qt::yellow : Qt::red));
        record->angles = anglesOfRotation(record->rotation);
        for (int i = 0; i < 3; ++i) {
            const auto axis = static_cast<std::size_t>(i);
            itemAt(XColumn + i)->setText(coordinateText(record->position[axis]));
            itemAt(RxColumn + i)->setText(coordinateText(record->angles[axis]));
        }
    }
    itemAt(NameColumn)->setBackground(QBrush(Qt::transparent));
}

void dress(QTableView &view, const QTableWidget &pattern)
{
    view.horizontalHeader()->setMinimumHeight(pattern.horizontalHeader()->minimumHeight());
    view.horizontalHeader()->setSectionResizeMode(pattern.columnCount() - 1, QHeaderView::Stretch);
    view.verticalHeader()->setDefaultSectionSize(pattern.verticalHeader()->defaultSectionSize());
    view.verticalHeader()->hide();
    view.setMaximumWidth(pattern.maximumWidth());
    for (int column = 0; column < pattern.columnCount(); ++column) {
        view.setColumnWidth(column, pattern.columnWidth(column));
        view.setColumnHidden(column, pattern.isColumnHidden(column));
    }
}

QStringList headersOf(const QTableWidget &pattern)
{
    QStringList headers;
    for (int column = 0; column < pattern.columnCount(); ++column)
        headers << pattern.horizontalHeaderItem(column)->text();
    return headers;
}

/// Gives \a setItem a plain copy of each item of \a pattern.
template<typename Item, typename SetItem> void copyItems(const QTableWidget &pattern, SetItem setItem)
{
    for (int row = 0; row < pattern.rowCount(); ++row) {
        for (int column = 0; column < pattern.columnCount(); ++column) {
            if (const QTableWidgetItem *const original = pattern.item(row, column))
                setItem(row, column, newItem<Item>(original->text(), original->textAlignment()));
        }
    }
}

} // namespace

NaiveTables::NaiveTables(const QTableWidget &panelBodies, const QTableWidget &panelMarkers)
{
    setupUi(this);
    tableWidget6d->setColumnCount(Column6dCount);
    tableWidget6d->setRowCount(panelBodies.rowCount());
    tableWidget6d->setHorizontalHeaderLabels(headersOf(panelBodies));
    copyItems<QTableWidgetItem>(panelBodies, [this](int row, int column, QTableWidgetItem *item) {
        tableWidget6d->setItem(row, column, item);
    });
    dress(*tableWidget6d, panelBodies);
    tableWidget3d->setColumnCount(Column3dCount);
    tableWidget3d->setHorizontalHeaderLabels(headersOf(panelMarkers));
    dress(*tableWidget3d, panelMarkers);
    connect(&viewTimer, &QTimer::timeout, this, &NaiveTables::updateView6d);
    connect(&viewTimer, &QTimer::timeout, this, &NaiveTables::updateView3d);
}

void NaiveTables::startTicks()
{
    viewTimer.start(200);
}

void NaiveTables::updateView6d()
{
    const TrackingData::Locked stores = data.lock();
    for (int row = 0; row < tableWidget6d->rowCount(); ++row)
        showBody(stores->bodyRecords, row, [&](int column) { return tableWidget6d->item(row, column); });
}

void NaiveTables::updateView3d()
{
    const TrackingData::Locked stores = data.lock();
    tableWidget3d->setRowCount(static_cast<int>(stores->markerRecords.size()));
    tableWidget3d->clearContents();
    int row = 0;
    for (const std::unique_ptr<MarkerRecord> &record : stores->markerRecords) {
        tableWidget3d->setItem(row, MarkerIdColumn,
                               newItem<QTableWidgetItem>(tr("%1").arg(record->id, 0, 10, QLatin1Char(' ')), centre));
        for (int i = 0; i < 3; ++i) {
            const float number = record->position[static_cast<std::size_t>(i)];
            tableWidget3d->setItem(row, MarkerXColumn + i, newItem<QTableWidgetItem>(coordinateText(number), right));
        }
        ++row;
    }
}

ModelTables::ModelTables(const QTableWidget &panelBodies, const QTableWidget &panelMarkers)
    : bodies(panelBodies.rowCount(), Column6dCount)
    , markers(0, Column3dCount)
{
    auto *layout = new QHBoxLayout(this);
    bodies.setHorizontalHeaderLabels(headersOf(panelBodies));
    markers.setHorizontalHeaderLabels(headersOf(panelMarkers));
    copyItems<QStandardItem>(panelBodies,
                             [this](int row, int column, QStandardItem *item) { bodies.setItem(row, column, item); });
    layout->addWidget(addView(bodies, panelBodies));
    layout->addWidget(addView(markers, panelMarkers));
}

QTableView *ModelTables::addView(QStandardItemModel &model, const QTableWidget &pattern)
{
    auto *view = new QTableView(this);
    view->setModel(&model);
    view->setFont(pattern.font());
    view->setStyleSheet(pattern.styleSheet());
    view->setFrameShape(QFrame::NoFrame);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setSelectionMode(QAbstractItemView::NoSelection);
    view->setShowGrid(false);
    view->setWordWrap(false);
    dress(*view, pattern);
    return view;
}

void ModelTables::updateView6d()
{
    const TrackingData::Locked stores = data.lock();
    for (int row = 0; row < bodies.rowCount(); ++row)
        showBody(stores->bodyRecords, row, [&](int column) { return bodies.item(row, column); });
}

void ModelTables::updateView3d()
{
    const TrackingData::Locked stores = data.lock();
    markers.setRowCount(0);
    markers.setRowCount(static_cast<int>(stores->markerRecords.size()));
    int row = 0;
    for (const std::unique_ptr<MarkerRecord> &record : stores->markerRecords) {
        markers.setItem(row, MarkerIdColumn, newItem<QStandardItem>(QString::number(record->id), centre));
        for (int i = 0; i < 3; ++i) {
            const float number = record->position[static_cast<std::size_t>(i)];
            markers.setItem(row, MarkerXColumn + i, newItem<QStandardItem>(coordinateText(number), right));
        }
        ++row;
    }
}
