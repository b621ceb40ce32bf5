// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/readabletexts.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double leastContrast = 4.5;

/// How bright a colour of sRGB is, from 0 to 1.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

/// \a text, through which \a background may shine.
QColor blended(const QColor &text, const QColor &background)
{
    const auto mixed = [part = text.alphaF()](double top, double bottom) { return part * top + (1.0 - part) * bottom; };
    return QColor::fromRgbF(mixed(text.redF(), background.redF()), mixed(text.greenF(), background.greenF()),
                            mixed(text.blueF(), background.blueF()));
}

/// \a text with as much of \a background shining through as leaves it readable.
QColor readable(QColor text, const QColor &background)
{
    while (text.alpha() < 255 && contrast(blended(text, background), background) < leastContrast)
        text.setAlpha(text.alpha() + 1);
    return text;
}

} // namespace

ReadableTexts::ReadableTexts(QWidget *root)
    : QObject(root)
{
    const QList<QWidget *> all = root->findChildren<QWidget *>();
    for (QWidget *widget : all) {
        if (qobject_cast<QAbstractScrollArea *>(widget) || qobject_cast<QLineEdit *>(widget)
            || qobject_cast<QMenu *>(widget))
            widgets.append(widget);
        else if (qobject_cast<QMenuBar *>(widget))
            widget->installEventFilter(this);
    }
    connect(qApp, &QGuiApplication::paletteChanged, this, &ReadableTexts::choose);
    choose();
}

bool ReadableTexts::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ChildPolished) {
        const QList<QMenu *> menus = watched->findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
        for (QMenu *menu : menus) {
            if (!widgets.contains(menu))
                widgets.append(menu);
        }
        choose();
    }
    return QObject::eventFilter(watched, event);
}

void ReadableTexts::choose()
{
    QPalette palette; // what is not set here follows the desktop
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const QColor hint = palette.color(group, QPalette::PlaceholderText);
        const QColor readableHint = readable(hint, palette.color(group, QPalette::Base));
        if (hint != readableHint)
            palette.setColor(group, QPalette::PlaceholderText, readableHint);
        const QColor background = palette.color(group, QPalette::Highlight);
        if (contrast(palette.color(group, QPalette::HighlightedText), background) >= leastContrast)
            continue;
        const bool isDark = contrast(Qt::white, background) > contrast(Qt::black, background);
        palette.setColor(group, QPalette::HighlightedText, isDark ? Qt::white : Qt::black);
    }
    for (const QPointer<QWidget> &widget : qAsConst(widgets)) {
        if (widget)
            widget->setPalette(palette);
    }
}

} // namespace host
