// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

/// For how long this thread has held locks of QMutex [s] since the last call; one inside another counts once, a lock
/// got by trying not at all. Known by taking the place of QMutex's functions in this program.
double takeLockedSeconds() noexcept;
