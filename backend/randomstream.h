// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

namespace backend {

/// What is drawn at random, each from a sequence of its own.
enum class RandomStream : quint64 { Body, Head, Sensor, MarkerLoss, MarkerPlace, Fault };

/// A number from 0 to below 1, evenly distributed, that depends on its arguments only.
double uniform(quint32 seed, RandomStream stream, int which, quint64 index);

/// The start [s] of the loss that \a seconds lies in; nothing: it is not lost then.
std::optional<double> lostSince(const Dropouts &dropouts, quint32 seed, RandomStream stream, int which, double seconds);

} // namespace backend
