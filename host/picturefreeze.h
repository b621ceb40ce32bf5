// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTime>

class QAction;
class QDockWidget;
class QKeyEvent;
class QMainWindow;
class QWidget;

namespace host {

class FrozenCover;

/// Freezes the picture of a window: covers its docks, floating ones too, with pictures of themselves, and keeps mouse
/// and keys from what lies beneath, where everything goes on. Space freezes it and makes it live again, unless a
/// control has taken the key; tables are none. Ctrl+Space always does.
class PictureFreeze : public QObject {
    Q_OBJECT

public:
    explicit PictureFreeze(QMainWindow &window);

    /// Checkable; for a menu.
    QAction *action() const { return toggle; }
    bool isFrozen() const { return frozenSince.isValid(); }
    /// "10:32:07"; empty while the picture is live.
    QString since() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void changed();

private:
    void setFrozen(bool frozen);
    void cover(QDockWidget &dock);
    /// Whether \a widget belongs to the window or to one of its docks; dialogs don't.
    bool isOurs(const QWidget &widget) const;
    bool isCovered(const QWidget &widget) const;
    /// Whether the key is ours, now that it has come to \a widget.
    bool isToggledBy(const QWidget &widget, const QKeyEvent &key) const;

    QMainWindow &window;
    QAction *toggle = nullptr;
    QTime frozenSince;
    QList<QPointer<FrozenCover>> covers;
};

} // namespace host
