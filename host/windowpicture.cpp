// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/windowpicture.h"

#include <QDockWidget>
#include <QFileInfo>
#include <QImageWriter>
#include <QMainWindow>
#include <QPainter>

namespace host {

QByteArray pictureFormat(const QString &fileName)
{
    const QByteArray suffix = QFileInfo(fileName).suffix().toLatin1().toLower();
    if (suffix.isEmpty())
        return QByteArrayLiteral("png");
    return QImageWriter::supportedImageFormats().contains(suffix) ? suffix : QByteArray();
}

QPixmap pictureOf(QMainWindow &window)
{
    QPixmap picture = window.grab();
    QList<QDockWidget *> floating;
    QRect area(window.mapToGlobal(QPoint()), window.size());
    const QRect windowArea = area;
    const QList<QDockWidget *> docks = window.findChildren<QDockWidget *>();
    for (QDockWidget *dock : docks) {
        if (!dock->isFloating() || !dock->isVisible())
            continue;
        floating << dock;
        area |= QRect(dock->mapToGlobal(QPoint()), dock->size());
    }
    if (floating.isEmpty())
        return picture;
    const qreal ratio = picture.devicePixelRatio();
    QPixmap result(area.size() * ratio);
    result.setDevicePixelRatio(ratio);
    result.fill(window.palette().color(QPalette::Mid)); // the desktop between them
    QPainter painter(&result);
    painter.drawPixmap(windowArea.topLeft() - area.topLeft(), picture);
    for (QDockWidget *dock : qAsConst(floating))
        painter.drawPixmap(dock->mapToGlobal(QPoint()) - area.topLeft(), dock->grab());
    return result;
}

} // namespace host
