// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

namespace backend {

/// The translation context of the texts for people.
class Backend {
    Q_DECLARE_TR_FUNCTIONS(Backend)
};

} // namespace backend
