// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <clocale>
#include <cstdlib>

/// For strtod_l: the files and lines have decimal points, whatever the locale that a test runs in.
inline locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}
