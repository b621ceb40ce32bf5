// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/bodystates.h"

#include <QDockWidget>

class QListWidget;

namespace host {

class BodyNames;

/// The bodies as a list for the ear: one line each, "2 L hand: lost for 4 s". A line keeps its item while its body is
/// known, so that a screen reader keeps its place; it is told of a change when the state changes, not of each second.
class BodiesDock : public QDockWidget {
    Q_OBJECT

public:
    /// \a names outlives the dock.
    explicit BodiesDock(const BodyNames &names, QWidget *parent = nullptr);

    /// Renews the lines, unless nobody sees them.
    void refresh(const HealthSnapshot &snapshot, const Liveness &liveness);

private:
    /// Makes the items those of the bodies, by their ids; those that stay are not touched.
    void adapt(const QVector<BodyState> &states);
    void showState(int row, const BodyState &state);

    const BodyNames &names;
    QListWidget *list = nullptr;
};

} // namespace host
