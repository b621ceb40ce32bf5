// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// Reads the next "[...]" at or after \a text (zero-terminated), one number per character of \a format: 'i' like strtol
/// with base 0, cut to 32 bits, into the next of \a ints; 'f' like strtod, narrowed to float, into the next of
/// \a floats; both in the C locale, and as if the text ended at "]". Numbers left over are skipped; an empty format
/// reads none.
/// Returns the place after "]", or nullptr: no block, a number too few, or another character in the format. Values read
/// before the fault stay.
const char *parseBlock(const char *text, const char *format, qint32 *ints, float *floats) noexcept;
