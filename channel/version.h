// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

struct BackendVersions;

/// Whether the backend's version is at least \a major . \a minor, compared in lexicographic order with a patch of -1:
/// an unspecified patch level passes, one below -1 does not.
bool versionAtLeast(const BackendVersions &versions, int major, int minor) noexcept;
