// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/datamutex.h"
#include "data/stores.h"

#include <QtGlobal>

#include <atomic>
#include <mutex>
#include <optional>

enum class LineFormat;

/// What became of a line of output.
enum class LineOutcome {
    Stored,
    StoredFirstBodies, ///< stored, the first 6DOF line since \a configured was set
    Malformed, ///< what was stored before the fault stays
    Dropped, ///< the lock was held: the next line brings newer values anyway
    Ignored ///< not of a type that is read at present
};

/// Lines by outcome. Both threads.
struct LineCounts {
    std::atomic<quint64> stored{0};
    std::atomic<quint64> dropped{0}; ///< for the held lock, or a store that could not grow
    std::atomic<quint64> ignored{0};
};

/// Everything that the host's data thread and the GUI thread share: the stores behind their lock, and the flags.
/// Not supported: frames other than the last one; telling a malformed frame, half of it new, from a whole one;
/// locking twice in one thread, which waits for ever; lock() on the data thread, which would make the host wait.
class TrackingData {
public:
    /// The stores, locked as long as this lives. To be held briefly, as lines are dropped meanwhile, and without a call
    /// into the host, which has locks as well. No pointer into the stores stays valid after it.
    class [[nodiscard]] Locked {
    public:
        Stores *operator->() const noexcept { return stores; }
        Stores &operator*() const noexcept { return *stores; }

    private:
        friend class TrackingData;
        Locked(std::unique_lock<DataMutex> heldLock, Stores &guarded) noexcept
            : lock(std::move(heldLock))
            , stores(&guarded)
        {
        }

        std::unique_lock<DataMutex> lock;
        Stores *stores;
    };

    /// Waits for the lock. GUI thread.
    Locked lock();

    /// Reads one output line of type \a tag into its store, on the data thread. \a line is zero-terminated, and nobody
    /// writes to it meanwhile. Never waits. Throws when a store can't grow to the count of the line; the lock is free
    /// then, the bodies are as they were, and markers made by then stay.
    LineOutcome receive(const char *tag, const char *line);

    /// Empties the stores of bodies and markers, and frees their memory. GUI thread; waits for the lock.
    void clear();
    /// Empties the body store, and frees its memory. GUI thread; waits for the lock.
    void clearBodies();

    LineCounts lineCounts; ///< data thread writes, both read

    std::atomic<bool> useInertialFormat{false}; ///< "6di" is read instead of "6d"; GUI thread writes, both read
    std::atomic<bool> configured{false}; ///< GUI thread sets, data thread takes at the next 6DOF line
    std::atomic<bool> sensorScheduleReset{false}; ///< data thread sets: an absent sensor is back; GUI thread takes

private:
    std::optional<LineFormat> formatOf(const char *tag) const;
    LineOutcome store(const char *tag, const char *line);

    DataMutex dataMutex; // both threads: the GUI thread waits for it, the data thread tries
    Stores stores; // both threads, under dataMutex
};
