// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/livenessline.h"

#include "host/elidedlabel.h"

#include <QHBoxLayout>

namespace host {

LivenessLine::LivenessLine(const QString &name, QWidget *parent)
    : QWidget(parent)
    , icon(new QLabel)
    , label(new ElidedLabel)
{
    label->setObjectName(name);
    setBackgroundRole(QPalette::Window); // whatever a tool bar takes for its own
    setForegroundRole(QPalette::WindowText);
    icon->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred); // all the room is for the text
    icon->setAccessibleName(tr("Icon of the state")); // the words beside it say the same
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    layout->setSpacing(6);
    layout->addWidget(icon);
    layout->addWidget(label);
}

void LivenessLine::setText(const QString &text)
{
    if (label->text() != text)
        label->setText(text);
}

void LivenessLine::setLook(const LivenessLook &look, bool fills)
{
    QPalette colors;
    if (fills) {
        colors.setColor(QPalette::Window, look.background);
        colors.setColor(QPalette::WindowText, look.text);
    }
    setAutoFillBackground(fills);
    setPalette(colors);
    const QColor color = fills ? look.text : palette().color(QPalette::WindowText);
    icon->setPixmap(iconOf(look.shape, color, fontMetrics().ascent(), devicePixelRatioF()));
}

QString LivenessLine::text() const
{
    return label->text();
}

} // namespace host
