// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <cstring>

/// Whether two numbers are the same to the bit: 0 and -0 compare equal but are shown otherwise, and nan equals nothing.
inline bool sameBits(float a, float b) noexcept
{
    quint32 bitsOfA = 0;
    quint32 bitsOfB = 0;
    std::memcpy(&bitsOfA, &a, sizeof a);
    std::memcpy(&bitsOfB, &b, sizeof b);
    return bitsOfA == bitsOfB;
}
