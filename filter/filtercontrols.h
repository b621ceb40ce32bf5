// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Which controls of the filter dialog are shown and enabled.
struct FilterControls {
    bool strengthShown = false;
    bool strengthEnabled = false;
    bool predictionEnabled = false;
    bool modeEnabled = false;
};

/// The controls for a body whose preset has the identifier \a preset (empty: none) and whose filter is \a active.
/// The settings of a custom preset are the operator's; a hybrid preset has no strength.
FilterControls controlsFor(const QByteArray &preset, bool active);
