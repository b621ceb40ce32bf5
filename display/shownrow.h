// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/angles.h"
#include "data/records.h"
#include "numbers/samebits.h"

#include <algorithm>
#include <array>

/// What a row of the 6DOF table last showed of its body: bodies stand still more often than they move.
struct ShownRow {
    enum class Kind {
        Stale, ///< somebody else may have changed the cells
        Inactive,
        Lost,
        Tracked ///< with the state and the pose below
    };

    Kind kind = Kind::Stale;
    qint32 state = 0;
    std::array<float, 3> position{}; ///< [mm]
    std::array<float, 9> rotation{};
    std::array<float, 3> angles = anglesOfRotation(rotation); ///< [deg], of the rotation, whatever the kind

    /// Whether the cells have the colours of a tracked body with the state of \a record.
    bool hasColoursOf(const BodyRecord &record) const { return kind == Kind::Tracked && state == record.state; }
    /// Whether the row shows a body, tracked or lost.
    bool showsBody() const { return kind == Kind::Lost || kind == Kind::Tracked; }

    /// Takes over what \a record says of a tracked body. Returns whether anything changed.
    bool update(const BodyRecord &record) noexcept
    {
        const bool turned = !std::equal(rotation.begin(), rotation.end(), record.rotation.begin(), sameBits);
        if (turned) {
            rotation = record.rotation;
            angles = anglesOfRotation(rotation);
        }
        const bool changed = turned || !hasColoursOf(record)
            || !std::equal(position.begin(), position.end(), record.position.begin(), sameBits);
        kind = Kind::Tracked;
        state = record.state;
        position = record.position;
        return changed;
    }
};
