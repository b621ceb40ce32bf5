// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

namespace backend {
struct Scenario;
} // namespace backend

/// Requires of a backend made from \a scenario that it answers as it promises (UTF-8 texts of one line, and the same
/// frame for the same time), that its lines read without a fault, and that commands do not end that.
void checkBackend(const backend::Scenario &scenario);

/// As checkBackend(), without the answers: for scenarios that differ in their lines only.
void checkBackendLines(const backend::Scenario &scenario);
