// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QWidget>

class QDockWidget;

namespace host {

/// Lies over a dock and shows a picture of it, marked as such from edge to edge. Takes all of the mouse, so that
/// nothing reaches the dock beneath.
class FrozenCover : public QWidget {
    Q_OBJECT

public:
    /// Takes the picture of \a dock, its parent; none of one that is closed. \a text says what it is.
    FrozenCover(QDockWidget &dock, const QString &text);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QDockWidget &dock;
    const QString text;
    QPixmap picture;
};

} // namespace host
