// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logview.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextBlock>

namespace host {

namespace {

constexpr int warningState = 1; // of a block; others have none
constexpr int gap = 2; // around an icon [pixels]

} // namespace

LogView::LogView(int maximumLines, QWidget *parent)
    : QPlainTextEdit(parent)
    , margin(new QWidget(this))
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setMaximumBlockCount(maximumLines);
    setLineWrapMode(NoWrap);
    // The cursor shows where the keyboard reads.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    margin->setObjectName(QStringLiteral("logIcons"));
    margin->installEventFilter(this);
    connect(this, &QPlainTextEdit::updateRequest, margin, QOverload<>::of(&QWidget::update));
    placeMargin();
}

void LogView::appendLine(const QString &line, bool isWarning)
{
    appendPlainText(line);
    document()->lastBlock().setUserState(isWarning ? warningState : -1);
}

void LogView::showLastWarning()
{
    QTextBlock block = document()->lastBlock();
    while (block.isValid() && block.userState() != warningState)
        block = block.previous();
    if (block.isValid())
        setTextCursor(QTextCursor(block));
    ensureCursorVisible();
}

bool LogView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == margin && event->type() == QEvent::Paint) {
        paintMargin();
        return true;
    }
    return QPlainTextEdit::eventFilter(watched, event);
}

void LogView::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    placeMargin();
}

void LogView::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (margin && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        placeMargin();
}

void LogView::placeMargin()
{
    const int side = fontMetrics().height();
    icon = style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(side, side);
    const int width = side + 2 * gap;
    setViewportMargins(width, 0, 0, 0);
    const QRect inside = contentsRect();
    margin->setGeometry(inside.left(), inside.top(), width, viewport()->height());
}

void LogView::paintMargin()
{
    QPainter painter(margin);
    painter.fillRect(margin->rect(), palette().base());
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF area = blockBoundingGeometry(block).translated(contentOffset());
        if (area.top() > margin->height())
            return;
        if (block.userState() == warningState)
            painter.drawPixmap(QPointF(gap, area.top()), icon);
    }
}

} // namespace host
