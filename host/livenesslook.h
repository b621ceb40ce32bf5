// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/liveness.h"

#include <QColor>
#include <QPixmap>

namespace host {

/// How a level looks, beside its words: a shape, and colours whose text can be read on their background.
struct LivenessLook {
    enum class Shape { Play, Ring, Bars, Cross, Square, Snowflake };

    QColor background;
    QColor text;
    Shape shape = Shape::Ring;
};

LivenessLook lookOf(Liveness::Level level);
/// Of a picture that the operator has frozen.
LivenessLook lookOfFrozenPicture();

/// The shape, \a size pixels wide and high in the coordinates of widgets.
QPixmap iconOf(LivenessLook::Shape shape, const QColor &color, int size, qreal devicePixelRatio);

} // namespace host
