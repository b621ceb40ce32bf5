// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

/// Things that happen by chance, each with a sequence of its own.
enum class ChanceStream : quint64 { Body, Head, Sensor, MarkerLoss, MarkerPlace, Fault };

/// A number from 0 to below 1 that depends on its arguments only.
double chance(quint32 seed, ChanceStream stream, int which, quint64 index);

/// When the loss began [s] during which \a seconds lies; nothing: it is not lost then.
std::optional<double> lostSince(const Dropouts &dropouts, quint32 seed, ChanceStream stream, int which, double seconds);
