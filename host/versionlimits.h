// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

struct BackendVersions;

namespace backend {
struct ProtocolVersion;
} // namespace backend

namespace host {

/// Whether a backend of version \a next needs modules that are made anew, where they were made for \a present.
///
/// A panel may decide once, as it is made, what it shows for a backend of the version that it finds. So the data
/// display has its column "Filter" from backend 1.12 on, and keeps it or does without it for its life. Versions are
/// compared as modules compare them: a patch of -1 belongs to its minor version. A disconnection, which leaves the
/// version 0.0.0, is no change. Whoever writes a module with such a limit of its own adds it to the list.
bool needsNewModules(const BackendVersions &present, const backend::ProtocolVersion &next);

} // namespace host
