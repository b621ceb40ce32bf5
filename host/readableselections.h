// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

namespace host {

/// Selected text that can be read: where the desktop's colours for it have a contrast below 4.5:1, as those of Qt's own
/// style do, it becomes black or white, whichever is better. Follows the desktop when its colours change.
class ReadableSelections : public QObject {
    Q_OBJECT

public:
    /// For the views, fields and menus that \a root has now, and for no later ones: modules bring their own.
    explicit ReadableSelections(QWidget *root);

    /// The menu of what does not fit into a bar is made later.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void choose();

    QList<QPointer<QWidget>> widgets;
};

} // namespace host
