// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The number of blocks that this process has allocated from the heap so far, by whatever means.
quint64 allocationCount();
