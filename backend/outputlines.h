// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/frame.h"

namespace backend {

/// "6d" line: only bodies that the cameras see are tracked.
QByteArray line6d(const QVector<BodySample> &bodies);
/// "6di" line with the states 0 (not tracked), 1 (sensor only), 2 (cameras only) and 3 (both).
QByteArray line6di(const QVector<BodySample> &bodies);
/// "3d" line.
QByteArray line3d(const QVector<MarkerSample> &markers);

} // namespace backend
