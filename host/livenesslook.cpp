// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/livenesslook.h"

#include <QPainter>
#include <QtMath>

namespace host {

namespace {

using Level = Liveness::Level;
using Shape = LivenessLook::Shape;

/// In a square from -1 to 1.
void drawShape(QPainter &painter, Shape shape)
{
    switch (shape) {
    case Shape::Play:
        painter.drawPolygon(QPolygonF({{-0.6, -0.8}, {0.8, 0.0}, {-0.6, 0.8}}));
        break;
    case Shape::Ring:
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QPointF(0.0, 0.0), 0.65, 0.65);
        break;
    case Shape::Bars:
        painter.drawRect(QRectF(-0.65, -0.75, 0.35, 1.5));
        painter.drawRect(QRectF(0.3, -0.75, 0.35, 1.5));
        break;
    case Shape::Cross:
        painter.drawLine(QPointF(-0.65, -0.65), QPointF(0.65, 0.65));
        painter.drawLine(QPointF(-0.65, 0.65), QPointF(0.65, -0.65));
        break;
    case Shape::Square:
        painter.drawRect(QRectF(-0.6, -0.6, 1.2, 1.2));
        break;
    case Shape::Snowflake:
        for (int arm = 0; arm < 3; ++arm) {
            const QPointF end(0.8 * qCos(arm * M_PI / 3), 0.8 * qSin(arm * M_PI / 3));
            painter.drawLine(-end, end);
        }
        break;
    }
}

} // namespace

LivenessLook lookOf(Level level)
{
    switch (level) {
    case Level::Live:
        return {QColor(0xd8, 0xf0, 0xd8), QColor(0x00, 0x48, 0x00), Shape::Play};
    case Level::Frozen:
        return {QColor(0xff, 0xc1, 0x07), Qt::black, Shape::Bars};
    case Level::Gone:
        return {QColor(0xb0, 0x00, 0x20), Qt::white, Shape::Cross};
    case Level::Ended:
        return {QColor(0x37, 0x47, 0x4f), Qt::white, Shape::Square};
    case Level::Disconnected:
    case Level::Waiting:
    case Level::Unwanted:
        break;
    }
    return {QColor(0xcf, 0xd8, 0xdc), Qt::black, Shape::Ring};
}

LivenessLook lookOfFrozenPicture()
{
    return {QColor(0x0d, 0x47, 0xa1), Qt::white, Shape::Snowflake};
}

QPixmap iconOf(Shape shape, const QColor &color, int size, qreal devicePixelRatio)
{
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(size / 2.0, size / 2.0);
    painter.scale(size / 2.0, size / 2.0);
    painter.setBrush(color);
    painter.setPen(QPen(color, 0.25, Qt::SolidLine, Qt::RoundCap));
    drawShape(painter, shape);
    return pixmap;
}

} // namespace host
