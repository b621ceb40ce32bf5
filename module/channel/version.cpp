// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "module/channel/version.h"

#include "module/interface/backendversions.h"

#include <tuple>

bool versionAtLeast(const BackendVersions &versions, int major, int minor) noexcept
{
    return std::tuple(versions.backendMajor, versions.backendMinor, versions.backendPatch)
        >= std::tuple(major, minor, -1);
}
