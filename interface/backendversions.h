// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QtGlobal>

#include <cstddef>

/// The host's record of versions, property "BackendVersions". The host owns it and keeps it alive while modules live.
/// A patch of -1 is an unspecified patch level.
struct BackendVersions {
    qint32 hostMajor = 0;
    qint32 hostMinor = 0;
    qint32 hostPatch = 0;
    qint32 backendMajor = 0; ///< of the connected backend, as are the next two
    qint32 backendMinor = 0;
    qint32 backendPatch = 0;
};

static_assert(sizeof(BackendVersions) == 6 * sizeof(qint32), "hosts hand over six 32-bit integers");
static_assert(offsetof(BackendVersions, backendMajor) == 3 * sizeof(qint32),
              "the backend's version is in the fourth to sixth");

Q_DECLARE_METATYPE(BackendVersions *)
