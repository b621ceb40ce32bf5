// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/fuzztarget.h"

// Beside libFuzzer's own main().
bool isReplay()
{
    return false;
}
