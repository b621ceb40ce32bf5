// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/trackingdata.h"

#include <QByteArray>

/// Readers of the three lines to compare ours with, into the same stores and with the same private copy and lock.
/// They return false where ours would find a fault.
/// @{
/// The naive one: strchr for the brackets, strtol and strtod for each number.
bool readNaively(TrackingData &data, const QByteArray &tag, const QByteArray &line);
/// With fast_float for each number, told where the block ends; strtod in the C locale for what is unusual.
bool readWithFastFloat(TrackingData &data, const QByteArray &tag, const QByteArray &line);
/// @}

/// The least that any reader has to do: the private copy, and one search for brackets through the whole of it. Returns
/// the number of brackets.
int readNothing(const QByteArray &line);
