// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/support/filterscript.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QSpinBox>
#include <QTest>

#include <limits>
#include <memory>

namespace {

QString itemsOf(const QComboBox *comboBox)
{
    QStringList items;
    for (int i = 0; i < comboBox->count(); ++i)
        items << comboBox->itemText(i) + QLatin1Char('=') + comboBox->itemData(i).toString();
    return items.join(QLatin1String("; "));
}

} // namespace

class TestFilterDialogValues : public QObject {
    Q_OBJECT

private slots:
    void init();
    void settingsAreShown();
    void limitsReplaceThePlaceholders_data();
    void limitsReplaceThePlaceholders();
    void controlsFollowThePreset_data();
    void controlsFollowThePreset();
    void presetsOfAnOldBackend_data();
    void presetsOfAnOldBackend();
    void activeSwitchIsForBodiesWithoutSensor_data();
    void activeSwitchIsForBodiesWithoutSensor();
    void oddNumbersAreShown_data();
    void oddNumbersAreShown();
    void longTextsLeaveTheDialogOnTheScreen();
    void backendTextsAreShownAsTheyAre();

private:
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    void open(
        int tab, int body, const std::function<void()> &drive = [] {})
    {
        if (!dialog)
            dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions);
        runDialog(*dialog, tab, body, drive);
    }

    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<FilterDialog> dialog;
};

void TestFilterDialogValues::init()
{
    dialog.reset();
    host = ScriptedHost();
    scriptFilters(host);
    versions = backendVersion(2, 0);
}

void TestFilterDialogValues::settingsAreShown()
{
    open(0, 0, [this] {
        QVERIFY(child<QCheckBox>("checkBox_active")->isChecked());
        QVERIFY(child<QCheckBox>("checkBox_active")->isVisible());
        QCOMPARE(child<QComboBox>("comboBox_preset")->currentText(), QStringLiteral("Custom"));
        QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), 0.25);
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), 12);
        QCOMPARE(child<QComboBox>("comboBox_mode")->currentText(), QStringLiteral("Fast"));
        QVERIFY(dialog->isModal());
    });
    QCOMPARE(itemsOf(child<QComboBox>("comboBox_preset")),
             QStringLiteral("Custom=preset6d_custom; Default=preset6d_default; Hybrid custom=preset6d_hybrid_custom; "
                            "Medium prediction=preset6d_med_pred"));
    QCOMPARE(itemsOf(child<QComboBox>("comboBox_mode")), QStringLiteral("Fast=mode6d_fast; Static=mode6d_static"));
    QVERIFY(host.callsOf("log").isEmpty());
    QVERIFY(host.callsOf("sendCommand").isEmpty());
}

void TestFilterDialogValues::limitsReplaceThePlaceholders_data()
{
    QTest::addColumn<QByteArray>("min");
    QTest::addColumn<QByteArray>("max");
    QTest::addColumn<double>("strengthMin");
    QTest::addColumn<double>("strengthMax");
    QTest::addColumn<int>("predictionMin");
    QTest::addColumn<int>("predictionMax");
    QTest::newRow("numbers within reason") << QByteArray("-0.5") << QByteArray("0.25") << -0.5 << 0.25 << -500 << 250;
    QTest::newRow("no answers are 0 to 0") << QByteArray() << QByteArray() << 0.0 << 0.0 << 0 << 0;
    QTest::newRow("milliseconds are cut, not rounded")
        << QByteArray("-0.0999") << QByteArray("0.0999") << -0.1 << 0.1 << -99 << 99;
    QTest::newRow("NaN is 0") << QByteArray("nan") << QByteArray("nan") << 0.0 << 0.0 << 0 << 0;
    QTest::newRow("what no int holds saturates") << QByteArray("-1e10") << QByteArray("1e10") << -1e10 << 1e10
                                                 << std::numeric_limits<int>::min() << std::numeric_limits<int>::max();
    QTest::newRow("infinity is the largest number")
        << QByteArray("-inf") << QByteArray("inf") << -std::numeric_limits<double>::max()
        << std::numeric_limits<double>::max() << std::numeric_limits<int>::min() << std::numeric_limits<int>::max();
}

void TestFilterDialogValues::limitsReplaceThePlaceholders()
{
    QFETCH(QByteArray, min);
    QFETCH(QByteArray, max);
    for (const char *kind : {"strength", "prediction"}) {
        host.answers.insert(QByteArray("filter6d limit ") + kind + "_min", min);
        host.answers.insert(QByteArray("filter6d limit ") + kind + "_max", max);
    }
    open(0, 0);
    QTEST(child<QDoubleSpinBox>("doubleSpinBox_strength")->minimum(), "strengthMin");
    QTEST(child<QDoubleSpinBox>("doubleSpinBox_strength")->maximum(), "strengthMax");
    QTEST(child<QSpinBox>("spinBox_prediction")->minimum(), "predictionMin");
    QTEST(child<QSpinBox>("spinBox_prediction")->maximum(), "predictionMax");
    QVERIFY(host.callsOf("log").isEmpty());
}

void TestFilterDialogValues::controlsFollowThePreset_data()
{
    QTest::addColumn<QByteArray>("preset");
    QTest::addColumn<QByteArray>("enabled");
    QTest::addColumn<QByteArray>("open"); // the controls that are enabled
    QTest::addColumn<bool>("strengthShown");
    QTest::newRow("a custom preset opens all")
        << QByteArray("preset6d_custom") << QByteArray("yes") << QByteArray("preset strength prediction mode") << true;
    QTest::newRow("a fixed preset opens the presets only")
        << QByteArray("preset6d_default") << QByteArray("yes") << QByteArray("preset") << true;
    QTest::newRow("a hybrid custom preset hides the strength")
        << QByteArray("preset6d_hybrid_custom") << QByteArray("yes") << QByteArray("preset prediction mode") << false;
    QTest::newRow("an unlisted preset is none")
        << QByteArray("preset6d_other_custom") << QByteArray("yes") << QByteArray("preset") << true;
    QTest::newRow("a preset in other letters is none")
        << QByteArray("PRESET6D_custom") << QByteArray("yes") << QByteArray("preset") << true;
    QTest::newRow("an inactive filter opens nothing")
        << QByteArray("preset6d_custom") << QByteArray("no") << QByteArray("") << true;
    QTest::newRow("an inactive hybrid preset hides the strength")
        << QByteArray("preset6d_hybrid_custom") << QByteArray("no") << QByteArray("") << false;
}

void TestFilterDialogValues::controlsFollowThePreset()
{
    QFETCH(QByteArray, preset);
    QFETCH(QByteArray, enabled);
    QFETCH(QByteArray, open);
    QFETCH(bool, strengthShown);
    host.answers["body filter6d_preset standard b01"] = preset;
    host.answers["body filter6d_enabled standard b01"] = enabled;
    this->open(0, 0, [this, open, strengthShown] {
        QByteArrayList found;
        for (const char *name : {"comboBox_preset", "doubleSpinBox_strength", "spinBox_prediction", "comboBox_mode"}) {
            if (child<QWidget>(name)->isEnabled())
                found << QByteArray(name).split('_')[1];
        }
        QCOMPARE(found.join(' '), open);
        QCOMPARE(child<QWidget>("label_strength")->isVisible(), strengthShown);
        QCOMPARE(child<QWidget>("doubleSpinBox_strength")->isVisible(), strengthShown);
        QVERIFY(child<QWidget>("spinBox_prediction")->isVisible());
    });
}

void TestFilterDialogValues::presetsOfAnOldBackend_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("body");
    QTest::addColumn<QString>("items");
    const QString all = QStringLiteral("Default=preset6d_default; Medium prediction=preset6d_med_pred; "
                                       "Custom=preset6d_custom; Longer=preset6d_default_custom");
    QTest::newRow("a body without sensor has all, in the backend's order") << 0 << 0 << all;
    QTest::newRow("a body with a sensor has exactly two")
        << 0 << 2 << QStringLiteral("Default=preset6d_default; Medium prediction=preset6d_med_pred");
    QTest::newRow("a wandor has no sensor") << 1 << 1 << all;
}

void TestFilterDialogValues::presetsOfAnOldBackend()
{
    QFETCH(int, tab);
    QFETCH(int, body);
    versions = backendVersion(1, 20);
    host.answers["filter6d preset_id t04"] = "preset6d_default_custom";
    host.answers["filter6d preset_desc preset6d_default_custom"] = "Longer";
    open(tab, body);
    QTEST(itemsOf(child<QComboBox>("comboBox_preset")), "items");
}

void TestFilterDialogValues::activeSwitchIsForBodiesWithoutSensor_data()
{
    QTest::addColumn<QByteArray>("sensor");
    QTest::addColumn<bool>("shown");
    QTest::newRow("none shows the switch") << QByteArray("none") << true;
    QTest::newRow("a sensor hides it") << QByteArray("d01 '4711'") << false;
    QTest::newRow("an empty answer is a sensor") << QByteArray("") << false;
    QTest::newRow("None in capitals is a sensor") << QByteArray("None") << false;
}

void TestFilterDialogValues::activeSwitchIsForBodiesWithoutSensor()
{
    QFETCH(QByteArray, sensor);
    QFETCH(bool, shown);
    host.answers["body inertial_sensor standard b01"] = sensor;
    open(0, 0, [this, shown] { QCOMPARE(child<QWidget>("checkBox_active")->isVisible(), shown); });
}

void TestFilterDialogValues::oddNumbersAreShown_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<double>("strength");
    QTest::addColumn<int>("prediction");
    QTest::newRow("a number above the range is the maximum") << QByteArray("7") << 0.99 << 66;
    QTest::newRow("a number below the range is the minimum") << QByteArray("-7") << 0.01 << -66;
    QTest::newRow("a huge number is the maximum") << QByteArray("1e300") << 0.99 << 66;
    QTest::newRow("infinity is the maximum") << QByteArray("inf") << 0.99 << 66;
    QTest::newRow("minus infinity is the minimum") << QByteArray("-inf") << 0.01 << -66;
    QTest::newRow("NaN is 0, in the range") << QByteArray("nan") << 0.01 << 0;
    QTest::newRow("milliseconds are cut") << QByteArray("0.0259") << 0.03 << 25;
    QTest::newRow("negative milliseconds are cut towards 0") << QByteArray("-0.0259") << 0.01 << -25;
}

void TestFilterDialogValues::oddNumbersAreShown()
{
    QFETCH(QByteArray, answer);
    host.answers["body filter6d_strength standard b01"] = answer;
    host.answers["body filter6d_prediction standard b01"] = answer;
    open(0, 0);
    QTEST(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), "strength");
    QTEST(child<QSpinBox>("spinBox_prediction")->value(), "prediction");
}

void TestFilterDialogValues::longTextsLeaveTheDialogOnTheScreen()
{
    host.answers["body desc standard b01"] = QByteArray(199, 'W');
    host.answers["filter6d preset_desc preset6d_custom"] = QByteArray(199, 'W');
    host.answers["filter6d mode_desc mode6d_fast"] = QByteArray(199, 'W');
    open(0, 0, [this] { QVERIFY(dialog->width() < 800); });
    QVERIFY(child<QComboBox>("comboBox_mode")->currentText().size() == 199);
}

void TestFilterDialogValues::backendTextsAreShownAsTheyAre()
{
    host.answers["body desc standard b01"] = "<b>%1 %s%n & \"x\"</b>";
    host.answers["filter6d preset_desc preset6d_custom"] = "R&D <i>\xC3\xA4\xFF</i> %d";
    host.answers["filter6d mode_id t01"] = "mode%n%s%1";
    host.answers["filter6d mode_desc mode%n%s%1"] = "A & B";
    host.answers["body filter6d_mode_available standard b01 mode%n%s%1"] = "true";
    host.answers["body filter6d_mode standard b01"] = "mode%n%s%1";
    open(0, 0);
    QCOMPARE(child<QComboBox>("comboBox_body")->currentText(), QStringLiteral("standard body 01 (<b>%1 %s%n & x</b>)"));
    QCOMPARE(child<QComboBox>("comboBox_preset")->currentText(), QStringLiteral("R&D <i>\u00E4\uFFFD</i> %d"));
    QCOMPARE(child<QComboBox>("comboBox_mode")->currentText(), QStringLiteral("A & B"));
    QVERIFY(host.callsOf("log").isEmpty());
}

QTEST_MAIN(TestFilterDialogValues)
#include "tst_filterdialog_values.moc"
