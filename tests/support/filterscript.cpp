// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/filterscript.h"

#include "filter/filterdialog.h"

#include <QPointer>
#include <QScopeGuard>
#include <QTimer>

namespace {

const QByteArrayList presetIds{"preset6d_default", "preset6d_med_pred", "preset6d_custom", "preset6d_hybrid_custom"};
const QByteArrayList presetTexts{"\"Default\"", "\"Medium prediction\"", "\"Custom\"", "\"Hybrid custom\""};
const QByteArrayList modeIds{"mode6d_static", "mode6d_fast"};
const QByteArrayList modeTexts{"\"Static\"", "\"Fast\""};

/// "t01" for the first entry.
QByteArray listNumber(int index)
{
    return "t0" + QByteArray::number(index + 1);
}

} // namespace

BackendVersions backendVersion(int major, int minor, int patch)
{
    BackendVersions versions;
    versions.backendMajor = major;
    versions.backendMinor = minor;
    versions.backendPatch = patch;
    return versions;
}

void scriptBody(ScriptedHost &host, const QByteArray &body, const QByteArray &preset, const QByteArray &strength,
                const QByteArray &prediction, const QByteArray &mode)
{
    host.answers.insert("body filter6d_enabled " + body, "yes");
    host.answers.insert("body filter6d_preset " + body, preset);
    host.answers.insert("body filter6d_strength " + body, strength);
    host.answers.insert("body filter6d_prediction " + body, prediction);
    host.answers.insert("body filter6d_mode " + body, mode);
    for (const QByteArray &id : presetIds)
        host.answers.insert("body filter6d_preset_available " + body + ' ' + id, "true");
    for (const QByteArray &id : modeIds)
        host.answers.insert("body filter6d_mode_available " + body + ' ' + id, "true");
}

void scriptFilters(ScriptedHost &host)
{
    host.answers = {
        {"config is_changeable", "yes"},
        {"filter6d available standard", "yes"},
        {"filter6d available wandor", "yes"},
        {"filter6d limit strength_min", "0.01"},
        {"filter6d limit strength_max", "0.99"},
        {"filter6d limit prediction_min", "-0.066"},
        {"filter6d limit prediction_max", "0.066"},
        {"filter6d number_of_presets", QByteArray::number(presetIds.size())},
        {"filter6d number_of_modes", QByteArray::number(modeIds.size())},
        {"body number_of_bodies standard", "3"},
        {"body calibrated standard b01", "yes"},
        {"body calibrated standard b02", "no"},
        {"body calibrated standard b03", "yes"},
        {"body inertial_sensor standard b01", "none"},
        {"body inertial_sensor standard b02", "none"},
        {"body inertial_sensor standard b03", "d01 '4711'"},
        {"body desc standard b01", "\"Left \"hand\"\""},
        {"body desc standard b02", "Table"},
        {"body desc standard b03", ""},
        {"wandor number_of_devices", "2"},
        {"body calibrated wandor b01", "no"},
        {"body calibrated wandor b02", "yes"},
        {"body inertial_sensor wandor b01", "none"},
        {"body inertial_sensor wandor b02", "none"},
    };
    for (int i = 0; i < presetIds.size(); ++i) {
        host.answers.insert("filter6d preset_id " + listNumber(i), presetIds[i]);
        host.answers.insert("filter6d preset_desc " + presetIds[i], presetTexts[i]);
    }
    for (int i = 0; i < modeIds.size(); ++i) {
        host.answers.insert("filter6d mode_id " + listNumber(i), modeIds[i]);
        host.answers.insert("filter6d mode_desc " + modeIds[i], modeTexts[i]);
    }
    scriptBody(host, "standard b01", "preset6d_custom", "0.25", "0.012", "mode6d_fast");
    scriptBody(host, "standard b02", "preset6d_custom", "0.50", "0.020", "mode6d_static");
    scriptBody(host, "standard b03", "preset6d_med_pred", "0.75", "-0.030", "mode6d_static");
    scriptBody(host, "wandor b01", "preset6d_custom", "0.30", "0.001", "mode6d_fast");
    scriptBody(host, "wandor b02", "preset6d_custom", "0.40", "0.002", "mode6d_fast");
}

int runDialog(FilterDialog &dialog, int tab, int body, const std::function<void()> &drive)
{
    const QPointer<FilterDialog> guarded(&dialog);
    QTimer::singleShot(0, &dialog, [guarded, drive] {
        const auto close = qScopeGuard([guarded] {
            if (FilterDialog *open = guarded)
                open->reject();
        });
        QVERIFY(QTest::qWaitForWindowActive(guarded));
        drive();
    });
    return dialog.update_and_exec(tab, body);
}

void pressAlt(QWidget *window, Qt::Key key)
{
    QTest::keyClick(window, key, Qt::AltModifier);
}

QByteArrayList presetListLines()
{
    QByteArrayList lines{"requestInt filter6d number_of_presets"};
    for (int i = 0; i < presetIds.size(); ++i) {
        lines << "requestString filter6d preset_id " + listNumber(i);
        lines << "requestString filter6d preset_desc " + presetIds[i];
    }
    return lines;
}

QByteArrayList limitLines()
{
    return {"requestDouble filter6d limit strength_min", "requestDouble filter6d limit strength_max",
            "requestDouble filter6d limit prediction_min", "requestDouble filter6d limit prediction_max"};
}

QByteArrayList modeListLines()
{
    QByteArrayList lines{"requestInt filter6d number_of_modes"};
    for (int i = 0; i < modeIds.size(); ++i) {
        lines << "requestString filter6d mode_id " + listNumber(i);
        lines << "requestString filter6d mode_desc " + modeIds[i];
    }
    return lines;
}

QByteArrayList presetLines(const QByteArray &body)
{
    QByteArrayList lines{"requestInt filter6d number_of_presets"};
    for (int i = 0; i < presetIds.size(); ++i) {
        lines << "requestString filter6d preset_id " + listNumber(i);
        lines << "requestBool body filter6d_preset_available " + body + ' ' + presetIds[i];
        lines << "requestString filter6d preset_desc " + presetIds[i];
    }
    return lines;
}

QByteArrayList modeLines(const QByteArray &body)
{
    QByteArrayList lines{"requestInt filter6d number_of_modes"};
    for (int i = 0; i < modeIds.size(); ++i) {
        lines << "requestString filter6d mode_id " + listNumber(i);
        lines << "requestBool body filter6d_mode_available " + body + ' ' + modeIds[i];
        lines << "requestString filter6d mode_desc " + modeIds[i];
    }
    return lines;
}

QByteArrayList settingLinesFromStrength(const QByteArray &body, bool perBody)
{
    QByteArrayList lines{"requestDouble body filter6d_strength " + body,
                         "requestDouble body filter6d_prediction " + body};
    if (perBody)
        lines += modeLines(body);
    lines << "requestString body filter6d_mode " + body;
    return lines;
}

QByteArrayList settingLinesFromPreset(const QByteArray &body, bool perBody)
{
    QByteArrayList lines;
    if (perBody)
        lines += presetLines(body);
    lines << "requestString body filter6d_preset " + body;
    return lines + settingLinesFromStrength(body, perBody);
}

QByteArrayList settingLines(const QByteArray &body, bool perBody)
{
    const QByteArrayList lines{"requestString body filter6d_enabled " + body,
                               "requestString body inertial_sensor " + body};
    return lines + settingLinesFromPreset(body, perBody);
}
