// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/datamutex.h"
#include "data/records.h"

#include <QVector>

#include <atomic>
#include <memory>
#include <vector>

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

/// Everything that the host's data thread and the GUI thread share: the stores, their lock, and the flags.
class TrackingData {
public:
    /// Reads one output line of type \a tag into its store, on the data thread. \a line is zero-terminated, and nobody
    /// writes to it meanwhile. Never waits. Throws when a store can't grow to the count of the line; the lock is free
    /// then, the bodies are as they were, and markers made by then stay.
    LineOutcome receive(const char *tag, const char *line);

    /// Empties both stores. GUI thread; waits for the lock.
    void clear();
    /// Empties the body store. GUI thread; waits for the lock.
    void clearBodies();
    /// Forgets the rows whose sensors are absent. GUI thread; waits for the lock.
    void clearAbsentSensorRows();
    /// Adds a row whose sensor is absent. GUI thread; waits for the lock.
    void addAbsentSensorRow(qint32 row);

    DataMutex dataMutex; ///< guards the members of the next group; nobody calls into the host while holding it

    std::vector<BodyRecord> bodyRecords;
    std::vector<std::unique_ptr<MarkerRecord>> markerRecords;
    QVector<qint32> absentSensorRows; ///< table rows whose inertial sensor is absent

    LineCounts lineCounts; ///< data thread writes

    std::atomic<bool> useInertialFormat{false}; ///< "6di" is read instead of "6d"; GUI thread writes
    std::atomic<bool> configured{false}; ///< GUI thread sets, data thread takes at the next 6DOF line
    std::atomic<bool> sensorScheduleReset{false}; ///< data thread sets: an absent sensor is back; GUI thread takes

private:
    LineOutcome parse(const char *tag, const char *line);
    LineOutcome bodiesStored();
    LineOutcome receive6d(const char *line);
    LineOutcome receive6di(const char *line);
    LineOutcome receive3d(const char *line);
    void resizeBodies(qint32 count);
};
