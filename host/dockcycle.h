// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

class QDockWidget;
class QMainWindow;

namespace host {

/// The keys that carry the focus from dock to dock, for whoever has no mouse: F6, and Shift+F6 the other way. In the
/// order in which docks are read, line by line; tabs by their names, floating ones last. A dock is entered where it was
/// left. Not supported: docks inside docks, and docks in which nothing can be reached with Tab. They are passed over.
class DockCycle : public QObject {
    Q_OBJECT

public:
    /// Adds its two actions to \a window, which also owns this object.
    explicit DockCycle(QMainWindow *window);

private:
    void addStep(const QString &name, const QString &text, const QKeySequence &key, int direction);
    /// Focuses the next dock in this direction, 1 or -1, that takes the focus.
    void step(int direction);
    QList<QDockWidget *> docksInOrder() const;

    QMainWindow *const window;
};

} // namespace host
