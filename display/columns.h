// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

/// Columns of the 6DOF table.
enum Column6d {
    BodyIdColumn,
    NameColumn,
    FilterColumn,
    SensorColumn,
    XColumn,
    YColumn,
    ZColumn,
    RxColumn,
    RyColumn,
    RzColumn,
    BatteryColumn,
    TemperatureColumn,
    StretchColumn,
    Column6dCount
};

/// Columns of the 3DOF table.
enum Column3d { MarkerIdColumn, MarkerXColumn, MarkerYColumn, MarkerZColumn, Column3dCount };

// Of both tables [px].
constexpr int headerHeight = 28;
constexpr int rowHeight = 20;
constexpr int columnMargin = 20; ///< what a column is wider than its contents
