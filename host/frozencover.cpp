// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/frozencover.h"

#include "host/livenesslook.h"

#include <QAction>
#include <QDockWidget>
#include <QEvent>
#include <QPainter>

namespace host {

namespace {

constexpr int frameWidth = 4; // [pixels], like the next two
constexpr int stripeDistance = 28;
constexpr int textMargin = 6;

/// Stripes over the whole picture: each piece that is cut out of it is marked.
void drawStripes(QPainter &painter, const QRect &area, QColor color)
{
    color.setAlpha(70);
    painter.setPen(QPen(color, 3.0));
    for (int x = area.left() - area.height(); x < area.right(); x += stripeDistance)
        painter.drawLine(x, area.bottom(), x + area.height(), area.top());
}

} // namespace

FrozenCover::FrozenCover(QDockWidget &dock, const QString &text)
    : QWidget(&dock)
    , dock(dock)
    , text(text)
{
    setObjectName(QStringLiteral("frozenCover"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAutoFillBackground(true);
    setAccessibleName(text);
    setWhatsThis(tr("A picture of this panel from the moment when it was frozen. The data go on beneath it."));
    if (dock.toggleViewAction()->isChecked())
        picture = dock.grab();
    dock.installEventFilter(this);
    setGeometry(dock.rect());
    show();
    raise();
}

bool FrozenCover::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &dock && (event->type() == QEvent::Resize || event->type() == QEvent::Show)) {
        setGeometry(dock.rect());
        raise();
    }
    return QWidget::eventFilter(watched, event);
}

bool FrozenCover::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
        event->accept();
        return true;
    default:
        return QWidget::event(event);
    }
}

void FrozenCover::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.drawPixmap(0, 0, picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const LivenessLook look = lookOfFrozenPicture();
    drawStripes(painter, rect(), look.background);
    painter.fillRect(0, 0, width(), frameWidth, look.background);
    painter.fillRect(0, height() - frameWidth, width(), frameWidth, look.background);
    painter.fillRect(0, 0, frameWidth, height(), look.background);
    painter.fillRect(width() - frameWidth, 0, frameWidth, height(), look.background);

    // In the lower right corner, where tables are seldom full.
    const int iconSize = fontMetrics().ascent();
    const int textHeight = fontMetrics().height() + 2 * textMargin;
    const int textWidth = fontMetrics().horizontalAdvance(text) + iconSize + 3 * textMargin;
    const QRect box(qMax(0, width() - textWidth), height() - textHeight, qMin(textWidth, width()), textHeight);
    painter.fillRect(box, look.background);
    painter.drawPixmap(box.left() + textMargin, box.top() + textMargin + (fontMetrics().height() - iconSize) / 2,
                       iconOf(look.shape, look.text, iconSize, devicePixelRatioF()));
    painter.setPen(look.text);
    painter.drawText(box.adjusted(iconSize + 2 * textMargin, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, text);
}

} // namespace host
