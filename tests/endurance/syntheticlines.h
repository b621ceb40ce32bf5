// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Bodies and markers on their way, whose numbers are others in every frame; now and then one is lost. The same frame
/// gives the same lines.
namespace SyntheticLines {

constexpr int framesPerSecond = 60;
constexpr int mostMarkers = 40;

/// The "6di" line of \a frame with \a bodies bodies, one of which is not seen in some seconds.
QByteArray bodyLine(qint64 frame, int bodies);
/// The "3d" line of \a frame with as many markers as \a frame has of them, at most mostMarkers.
QByteArray markerLine(qint64 frame);

} // namespace SyntheticLines
