// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <array>

/// The blocks of the heap that are allocated and not released, by whatever means. The C library's own figures count
/// what it keeps for the next allocations, too, and that differs from run to run.
class HeapSnapshot {
public:
    /// The figures of now. Under a sanitizer, which has a heap of its own, only the bytes.
    static HeapSnapshot now();

    qint64 bytes() const { return liveBytes; }
    qint64 blocks() const { return liveBlocks; }
    /// The sizes of which there are more or fewer blocks than in \a earlier: "+2 of 64 bytes, -1 of 32 bytes".
    QString changesSince(const HeapSnapshot &earlier) const;

    static constexpr std::size_t stepOfSize = 16; ///< [byte]
    static constexpr std::size_t sizeCount = 1024; ///< the last one is of all larger blocks

private:
    qint64 liveBytes = 0;
    qint64 liveBlocks = 0;
    std::array<qint64, sizeCount> blocksOfSize{};
};
