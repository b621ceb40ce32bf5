// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/sanitizers.h"

// WITHOUT_LEAK_SEARCH; lets the leak sanitizer forget what is allocated until the end of the block. For libraries that
// are built without frame pointers, so that a suppression by the name of a function would not meet them.
#if UNDER_ADDRESS_SANITIZER
#include <sanitizer/lsan_interface.h>
#define WITHOUT_LEAK_SEARCH const __lsan::ScopedDisabler disabler
#else
#define WITHOUT_LEAK_SEARCH static_cast<void>(0)
#endif
