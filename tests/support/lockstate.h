// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/trackingdata.h"

/// Whether nobody holds the lock of \a data: a line without a count is malformed then, and changes nothing.
inline bool isLockFree(TrackingData &data)
{
    return data.receive(data.useInertialFormat ? "6di" : "6d", "") == LineOutcome::Malformed;
}
