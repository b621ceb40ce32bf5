// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

namespace host {

/// Texts that can be read, where the desktop's colours have a contrast below 4.5:1, as some of Qt's own style do:
/// selected text becomes black or white, whichever is better, and hints in empty fields become less pale. Follows the
/// desktop when its colours change.
class ReadableTexts : public QObject {
    Q_OBJECT

public:
    /// For the views, fields and menus that \a root has now, and for no later ones: modules bring their own.
    explicit ReadableTexts(QWidget *root);

    /// The menu of what does not fit into a bar is made later.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void choose();

    QList<QPointer<QWidget>> widgets;
};

} // namespace host
