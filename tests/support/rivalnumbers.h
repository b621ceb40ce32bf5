// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/numberreader.h"

/// strtol with base 0 in the C locale, whatever the locale of the process, cut to 32 bits. No end where nothing was
/// consumed. A "0b" prefix is a zero that ends at the "b", also where the C library reads binary numbers.
ReadNumber<qint32> rivalInteger(const char *text);

/// strtod in the C locale, whatever the locale of the process, narrowed to float. No end where nothing was consumed.
ReadNumber<float> rivalFloat(const char *text);
