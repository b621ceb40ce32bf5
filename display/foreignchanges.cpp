// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/foreignchanges.h"

#include <QAbstractItemModel>

ForeignChanges::ForeignChanges(const QAbstractItemModel &model)
{
    // Every signal that says that cells changed.
    connect(&model, &QAbstractItemModel::dataChanged, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::modelReset, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::layoutChanged, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::rowsMoved, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::columnsInserted, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::columnsRemoved, this, &ForeignChanges::count);
    connect(&model, &QAbstractItemModel::columnsMoved, this, &ForeignChanges::count);
}
