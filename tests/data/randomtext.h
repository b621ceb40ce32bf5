// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <random>
#include <string>

/// Texts by chance; the same seed gives the same texts.
class RandomText {
public:
    explicit RandomText(quint64 seed)
        : engine(seed)
    {
    }

    /// A number from 0 to \a count - 1.
    int below(int count);
    /// True once in \a count times.
    bool oneIn(int count) { return below(count) == 0; }
    /// Random digits, \a count of them.
    std::string digits(int count);
    /// A decimal number in one of many shapes, plain coordinates and exponents of hundreds included.
    std::string decimal();
    /// A number exactly between two neighbouring floats or a few digits beside it, written in full.
    std::string nearFloatMidpoint();
    /// An integer, decimal, hexadecimal or octal, small ones most of all.
    std::string integer();
    /// Up to \a maxLength characters of what numbers are made of, in any order.
    std::string numberSoup(int maxLength);
    /// A line of type \a tag that reads without a fault, with up to \a maxItems bodies or markers.
    std::string goodLine(const std::string &tag, int maxItems);
    /// \a line with one to four random injuries; may hold zero bytes.
    std::string injured(std::string line);

private:
    std::string block(const char *format);
    void injure(std::string &line);

    std::mt19937_64 engine;
};

/// \a usual, or \a many where the environment asks for long runs with VORNAK_LONG=1, or a tenth of the usual one where
/// VORNAK_SLOW=1 says that the program is slowed down.
int sweepSize(int usual, int many);
