// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/objectreader.h"
#include "backend/scenario.h"

#include <QDir>
#include <QHash>

namespace backend {

struct ReadingProgress;

constexpr int longestDescription = 180; ///< of scenarios, modes and presets [bytes]

/// Reads motions, and each trajectory file that they name once.
class MotionReader {
public:
    /// Trajectory files are looked for in \a folder. \a warnings outlives the reader, and so does \a progress, unless
    /// it is null.
    MotionReader(const QDir &folder, QStringList &warnings, ReadingProgress *progress);

    /// The member "motion" of \a owner; at rest in the origin when it is not there.
    Motion read(ObjectReader &owner);

private:
    void readOrbit(ObjectReader &reader, Motion &motion) const;
    void readRecording(ObjectReader &reader, Motion &motion);

    QDir folder;
    QStringList &warnings;
    ReadingProgress *progress;
    QHash<QString, std::shared_ptr<const Trajectory>> recordings;
};

/// The member "dropouts" of \a owner; never lost when it is not there.
Dropouts readDropouts(ObjectReader &owner);

// Each reads one part of a scenario from the outermost object.
void readFilterOffer(ObjectReader &reader, FilterOffer &filter);
void readBodies(ObjectReader &reader, MotionReader &motions, Scenario &scenario); ///< after the filter offer
void readWandors(ObjectReader &reader, MotionReader &motions, Scenario &scenario); ///< after the filter offer
void readSensors(ObjectReader &reader, Scenario &scenario); ///< after the bodies
void readMarkers(ObjectReader &reader, MarkerCloud &markers);

/// The member "filter" of the body \a body ("standard b01"); the first preset that it is offered when there is none.
FilterSettings readFilterSettings(ObjectReader &owner, const FilterOffer &filter, const QByteArray &body);

/// Notes a fault when presets or modes are offered to bodies that don't exist.
void checkFilterBodies(ObjectReader &reader, const Scenario &scenario);

} // namespace backend
