// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <atomic>

namespace backend {

/// How far files have been read, and whether to go on: for those who wait on another thread. Any thread.
struct ReadingProgress {
    std::atomic<qint64> read{0}; ///< [bytes]
    std::atomic<qint64> total{0}; ///< [bytes] of the files that are known by now
    std::atomic<bool> cancelled{false}; ///< set by whoever no longer waits
};

} // namespace backend
