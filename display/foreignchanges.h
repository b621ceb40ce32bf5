// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QAbstractItemModel;

/// Counts how often a table's model has signalled that cells changed: where somebody else has changed them, what a
/// redraw remembers of its cells is stale. GUI thread.
class ForeignChanges : public QObject {
    Q_OBJECT

public:
    /// Watches \a model, which may outlive the watch.
    explicit ForeignChanges(const QAbstractItemModel &model);

    /// How many changes have been signalled since the last accept().
    quint64 sinceLast() const { return changes - accepted; }
    /// Takes note of all changes so far.
    void accept() { accepted = changes; }

private:
    void count() { ++changes; }

    quint64 changes = 0;
    quint64 accepted = 0;
};
