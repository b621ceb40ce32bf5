// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/picturefreeze.h"

#include "host/frozencover.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QKeyEvent>
#include <QMainWindow>

namespace host {

namespace {

/// What the keyboard sends to a widget.
bool isOfKeyboard(QEvent::Type type)
{
    return type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::ShortcutOverride
        || type == QEvent::Shortcut || type == QEvent::InputMethod || type == QEvent::ContextMenu;
}

} // namespace

PictureFreeze::PictureFreeze(QMainWindow &window)
    : QObject(&window)
    , window(window)
    , toggle(new QAction(tr("Free&ze"), this))
{
    toggle->setObjectName(QStringLiteral("freezeAction"));
    toggle->setCheckable(true);
    toggle->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_Space));
    toggle->setShortcutContext(Qt::ApplicationShortcut);
    toggle->setStatusTip(tr("Keep the picture as it is now, while the data go on; Space does so, too"));
    window.addAction(toggle);
    connect(toggle, &QAction::toggled, this, &PictureFreeze::setFrozen);
    qApp->installEventFilter(this);
}

QString PictureFreeze::since() const
{
    return isFrozen() ? frozenSince.toString(QStringLiteral("HH:mm:ss")) : QString();
}

bool PictureFreeze::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::Show && isFrozen()) {
        auto *dock = qobject_cast<QDockWidget *>(watched);
        if (dock && dock->parent() == &window && !dock->findChild<FrozenCover *>(QString(), Qt::FindDirectChildrenOnly))
            cover(*dock); // made while the picture is frozen
    }
    if (!isOfKeyboard(type) || !watched->isWidgetType())
        return false;
    const auto &widget = static_cast<const QWidget &>(*watched);
    if (type == QEvent::KeyPress && isToggledBy(widget, *static_cast<QKeyEvent *>(event))) {
        toggle->toggle();
        return true;
    }
    return isFrozen() && isCovered(widget);
}

void PictureFreeze::setFrozen(bool frozen)
{
    if (frozen == isFrozen())
        return;
    if (frozen) {
        frozenSince = QTime::currentTime();
        const QList<QDockWidget *> docks = window.findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (QDockWidget *dock : docks)
            cover(*dock);
    } else {
        frozenSince = QTime();
        for (const QPointer<FrozenCover> &cover : qAsConst(covers))
            delete cover;
        covers.clear();
    }
    emit changed();
}

void PictureFreeze::cover(QDockWidget &dock)
{
    covers.append(new FrozenCover(dock, tr("Picture frozen since %1").arg(since())));
}

bool PictureFreeze::isOurs(const QWidget &widget) const
{
    const QWidget *top = widget.window();
    return top == &window || (qobject_cast<const QDockWidget *>(top) && top->parent() == &window);
}

bool PictureFreeze::isCovered(const QWidget &widget) const
{
    for (const QPointer<FrozenCover> &each : covers) {
        const FrozenCover *const cover = each.data();
        const QWidget *const dock = cover ? cover->parentWidget() : nullptr;
        if (dock && (dock == &widget || dock->isAncestorOf(&widget)))
            return true;
    }
    return false;
}

bool PictureFreeze::isToggledBy(const QWidget &widget, const QKeyEvent &key) const
{

    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (key.key() != Qt::Key_Space || key.isAutoRepeat())
        return false;
    if (modifiers == Qt::ControlModifier)
        return true; // a dialog keeps shortcuts from the window, but not this
    if (modifiers != Qt::NoModifier || !isOurs(widget))
        return false;
    // A key that nobody has taken comes to the window at last.
    return widget.isWindow() || isCovered(widget) || qobject_cast<const QAbstractItemView *>(&widget);
}

} // namespace host
