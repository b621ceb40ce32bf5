// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class FilterDialog;

/// Changes one setting in the open \a dialog by key or mouse, on the backend of scriptFilters(): "active" switches,
/// "preset" chooses the hybrid one, "strength" enters 0.6, "prediction" 25 ms, "mode" chooses Static, "body" and "next
/// body" go up and down the list of bodies. GUI thread.
void changeSetting(const FilterDialog &dialog, const QByteArray &setting);
