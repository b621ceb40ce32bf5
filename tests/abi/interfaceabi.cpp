// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "module/interface/backendversions.h"
#include "module/interface/iomanager.h"
#include "module/interface/moduleinterface.h"
#include "module/interface/requester.h"

/// Names each type of the host's interface, so that the record of this library's interface has them all.
extern "C" void hostInterface(ModuleInterface &, ModuleEntry &, IOManager &, Requester &, BackendVersions &) { }
