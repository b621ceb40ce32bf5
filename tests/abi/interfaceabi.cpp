// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "interface/backendversions.h"
#include "interface/iomanager.h"
#include "interface/moduleinterface.h"
#include "interface/requester.h"

/// Names each type of the host's interface, so that the record of this library's interface has them all.
extern "C" void hostInterface(ModuleInterface &, ModuleEntry &, IOManager &, Requester &, BackendVersions &) { }
