// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filtercontrols.h"

#include <QTest>

class TestFilterControls : public QObject {
    Q_OBJECT

private slots:
    void presetDecides_data();
    void presetDecides();
};

void TestFilterControls::presetDecides_data()
{
    QTest::addColumn<QByteArray>("preset");
    QTest::addColumn<bool>("active");
    QTest::addColumn<bool>("strengthShown");
    QTest::addColumn<bool>("strengthEnabled");
    QTest::addColumn<bool>("predictionAndModeEnabled");

    const auto row = [](const char *name, const char *preset, bool active, bool shown, bool strength, bool others) {
        QTest::newRow(name) << QByteArray(preset) << active << shown << strength << others;
    };
    row("a custom preset opens everything", "preset6d_custom", true, true, true, true);
    row("an inactive filter closes everything", "preset6d_custom", false, true, false, false);
    row("a fixed preset closes everything", "preset6d_default", true, true, false, false);
    row("no preset closes everything", "", true, true, false, false);
    row("a hybrid custom preset has no strength", "preset6d_hybrid_custom", true, false, false, true);
    row("an inactive hybrid custom preset has no strength either", "preset6d_hybrid_custom", false, false, false,
        false);
    row("a hybrid preset closes the rest", "preset6d_hybrid", true, false, false, false);
    row("hybrid counts without the other words", "something hybrid", true, false, false, false);
    row("the words may stand anywhere", "my_custom.preset6d_x", true, true, true, true);
    row("custom needs its underscore", "preset6d_.custom", true, true, false, false);
    row("custom needs the preset's prefix", "preset_custom", true, true, false, false);
    row("Custom in capitals is not custom", "preset6d_CUSTOM", true, true, false, false);
    row("Hybrid in capitals is not hybrid", "preset6d_Hybrid_custom", true, true, true, true);
}

void TestFilterControls::presetDecides()
{
    QFETCH(QByteArray, preset);
    QFETCH(bool, active);
    const FilterControls controls = controlsFor(preset, active);
    QTEST(controls.strengthShown, "strengthShown");
    QTEST(controls.strengthEnabled, "strengthEnabled");
    QTEST(controls.predictionEnabled, "predictionAndModeEnabled");
    QTEST(controls.modeEnabled, "predictionAndModeEnabled");
}

QTEST_APPLESS_MAIN(TestFilterControls)
#include "tst_filtercontrols.moc"
