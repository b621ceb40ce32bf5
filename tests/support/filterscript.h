// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "interface/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QRegularExpression>
#include <QTest>

#include <functional>

class FilterDialog;

Q_DECLARE_METATYPE(BackendVersions)

/// The record of a backend of version \a major . \a minor . \a patch.
BackendVersions backendVersion(int major, int minor, int patch = -1);

/// Scripts a backend with a filter: four presets (default, medium prediction, custom, hybrid custom), two modes,
/// limits, and the following bodies and wandors, all with an active filter and the custom preset, but for b03:
/// b01 calibrated, "Left "hand""; b02 not calibrated; b03 calibrated, with an inertial sensor, the medium prediction
/// preset and no description; wandor b01 not calibrated, wandor b02 calibrated.
void scriptFilters(ScriptedHost &host);

/// Scripts what holds for one body ("standard b01"): its settings, with every preset and mode available to it.
void scriptBody(ScriptedHost &host, const QByteArray &body, const QByteArray &preset, const QByteArray &strength,
                const QByteArray &prediction, const QByteArray &mode);

/// Runs \a dialog for \a tab and \a body; \a drive acts in its event loop once its window is active. The dialog is
/// closed afterwards unless it is gone. Returns what update_and_exec() returned.
int runDialog(FilterDialog &dialog, int tab, int body, const std::function<void()> &drive);

/// Clicks the key that the mnemonic \a key stands for, with Alt.
void pressAlt(QWidget *window, Qt::Key key);

// The lines of the channel for the parts of an opening, as the backend of scriptFilters() answers.
QByteArrayList presetListLines();
QByteArrayList limitLines();
QByteArrayList modeListLines();
QByteArrayList presetLines(const QByteArray &body); ///< which presets \a body may use, backend 1.21 and later
QByteArrayList modeLines(const QByteArray &body); ///< likewise
/// The five settings of \a body, on a backend that answers per body or not.
QByteArrayList settingLines(const QByteArray &body, bool perBody);
/// The same without the active state, and without the preset as well.
QByteArrayList settingLinesFromPreset(const QByteArray &body, bool perBody);
QByteArrayList settingLinesFromStrength(const QByteArray &body, bool perBody);
