// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendchoice.h"

namespace host {

struct HostOptions;

/// What the program starts with.
struct StartBackend {
    BackendChoice choice;
    BackendResult made;
};

/// The backend that the options name; where they name none, the last one that the operator chose in the window, or the
/// default scenario if that can't be had, with its reason among the warnings. It may be a placeholder, so that the
/// window need not wait for long recordings. A run that saves a picture or tables shows the same on every machine: it
/// waits, and knows of no last backend.
StartBackend startBackend(const HostOptions &options);

} // namespace host
