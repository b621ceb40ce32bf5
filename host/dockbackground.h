// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

class QMainWindow;

namespace host {

/// The central widget of a window that consists of docks. Beside docks it has no width and takes all the height, so
/// that the docks at its sides grow with the window while those above and below keep their heights. Where every panel
/// is hidden it says how to get them back. Where they are all above or below it leaves the room to them.
class DockBackground : public QLabel {
    Q_OBJECT

public:
    /// Becomes the central widget of \a window. A dock of the name \a nameOfLog is no panel.
    DockBackground(QMainWindow &window, QString nameOfLog);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followDocks();

    QMainWindow &window;
    const QString nameOfLog;
};

} // namespace host
