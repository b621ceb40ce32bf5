// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filtercontrols.h"

FilterControls controlsFor(const QString &preset, bool active)
{
    const bool custom = preset.contains(QLatin1String("preset6d_")) && preset.contains(QLatin1String("_custom"));
    const bool hybrid = preset.contains(QLatin1String("hybrid"));
    FilterControls controls;
    controls.strengthShown = !hybrid;
    controls.strengthEnabled = active && custom && !hybrid;
    controls.predictionEnabled = active && custom;
    controls.modeEnabled = active && custom;
    return controls;
}
