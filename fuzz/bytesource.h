// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

/// Hands out the bytes of an input one after the other. The input outlives it.
class ByteSource {
public:
    ByteSource(const std::uint8_t *bytes, std::size_t size)
        : next(bytes)
        , left(size)
    {
    }

    bool atEnd() const { return left == 0; }
    /// The next byte; 0 at the end.
    std::uint8_t byte()
    {
        if (left == 0)
            return 0;
        --left;
        return *next++;
    }
    /// A number from 0 to \a count - 1.
    int below(int count) { return byte() % count; }
    /// What follows, up to a line feed, which is taken but not part of it.
    QByteArray line()
    {
        QByteArray text;
        while (!atEnd()) {
            const char character = static_cast<char>(byte());
            if (character == '\n')
                break;
            text += character;
        }
        return text;
    }

private:
    const std::uint8_t *next;
    std::size_t left;
};
