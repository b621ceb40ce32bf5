// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/trackingdata.h"

#include <QByteArray>

/// The body store in words: "id quality state reserved | position | angles | rotation", and "; " between bodies.
QByteArray bodiesText(TrackingData &data);
/// The marker store in words: "id quality | position", and "; " between markers.
QByteArray markersText(TrackingData &data);

/// Passes a copy of \a line to \a data. Throws std::logic_error if the copy is not as it was afterwards, or if the
/// lock is not free.
LineOutcome receiveCopy(TrackingData &data, const char *tag, const QByteArray &line);
