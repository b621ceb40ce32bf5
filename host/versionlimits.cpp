// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/versionlimits.h"

#include "backend/trackingbackend.h"
#include "interface/backendversions.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace host {

namespace {

using Version = std::tuple<int, int, int>;

const std::array<Version, 1> limits{
    Version{1, 12, -1}, // the data display's column "Filter"
};

} // namespace

bool needsNewModules(const BackendVersions &present, const backend::ProtocolVersion &next)
{
    const Version before{present.backendMajor, present.backendMinor, present.backendPatch};
    const Version after{next.major, next.minor, next.patch};
    return std::any_of(limits.begin(), limits.end(),
                       [&](const Version &limit) { return (before >= limit) != (after >= limit); });
}

} // namespace host
