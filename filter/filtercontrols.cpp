// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filtercontrols.h"

FilterControls controlsFor(const QByteArray &preset, bool active)
{
    const bool custom = preset.contains("preset6d_") && preset.contains("_custom");
    const bool hybrid = preset.contains("hybrid");
    FilterControls controls;
    controls.strengthShown = !hybrid;
    controls.strengthEnabled = active && custom && !hybrid;
    controls.predictionEnabled = active && custom;
    controls.modeEnabled = active && custom;
    return controls;
}
