// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "channel/version.h"

#include "interface/backendversions.h"

#include <tuple>

bool versionAtLeast(const BackendVersions &versions, int major, int minor) noexcept
{
    return std::tuple(versions.backendMajor, versions.backendMinor, versions.backendPatch)
        >= std::tuple(major, minor, -1);
}
