// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/angles.h"
#include "data/records.h"
#include "numbers/samebits.h"

#include <algorithm>
#include <array>

/// What a row of the 6DOF table has shown of its body last: bodies stand still more often than they move.
struct ShownRow {
    enum class Kind {
        Unknown, ///< the cells may have become others since
        Inactive,
        Lost,
        Tracked ///< with the state and the pose below
    };

    Kind kind = Kind::Unknown;
    qint32 state = 0;
    std::array<float, 3> position{}; ///< [mm]
    std::array<float, 9> rotation{};
    std::array<float, 3> angles = anglesOfRotation(rotation); ///< [deg], of the rotation, whatever the kind

    /// Shows \a record as tracked from now on, and tells whether anything is another than before.
    bool take(const BodyRecord &record) noexcept
    {
        const bool turned = !std::equal(rotation.begin(), rotation.end(), record.rotation.begin(), sameBits);
        if (turned) {
            rotation = record.rotation;
            angles = anglesOfRotation(rotation);
        }
        const bool isNew = turned || kind != Kind::Tracked || state != record.state
            || !std::equal(position.begin(), position.end(), record.position.begin(), sameBits);
        kind = Kind::Tracked;
        state = record.state;
        position = record.position;
        return isNew;
    }
};
