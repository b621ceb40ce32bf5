// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/support/filterscript.h"
#include "tests/support/typing.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QSpinBox>
#include <QTest>

#include <memory>

class TestFilterDialogActions : public QObject {
    Q_OBJECT

private slots:
    void init();
    void activeIsSwitchedOff_data() { versionRows(); }
    void activeIsSwitchedOff();
    void activeIsSwitchedOn_data() { versionRows(); }
    void activeIsSwitchedOn();
    void partlyCheckedIsNo();
    void presetIsChosen_data() { versionRows(); }
    void presetIsChosen();
    void modeIsChosen_data() { versionRows(); }
    void modeIsChosen();
    void strengthIsTyped_data();
    void strengthIsTyped();
    void predictionIsTyped_data();
    void predictionIsTyped();
    void steppingSendsAtTheEndOfTheEdit();
    void otherBodyIsRead_data() { versionRows(); }
    void otherBodyIsRead();
    void activeSwitchComesBack_data() { versionRows(); }
    void activeSwitchComesBack();
    void strengthComesBack_data() { versionRows(); }
    void strengthComesBack();
    void otherActiveStateIsSentBack();
    void unlistedPresetIsSentBackAsNone();
    void samePresetsStayAsTheyAre();
    void otherPresetsAreSorted();

private:
    static void versionRows();
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    /// Opens the dialog for standard body \a body, forgets the calls so far and lets \a drive act.
    void open(int body, const std::function<void()> &drive)
    {
        dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions);
        runDialog(*dialog, 0, body, [this, drive] {
            host.takeCalls();
            drive();
        });
    }
    /// Opens for a row of versionRows() and compares all calls of \a drive with the row's way of asking.
    void compareCalls(int body, const std::function<void()> &drive,
                      const std::function<QByteArrayList(bool perBody)> &expected)
    {
        QFETCH(BackendVersions, version);
        QFETCH(bool, perBody);
        versions = version;
        bool compared = false;
        open(body, [&] {
            drive();
            QCOMPARE(host.takeCalls(), expected(perBody));
            compared = true;
        });
        QVERIFY(compared);
    }

    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<FilterDialog> dialog;
};

void TestFilterDialogActions::versionRows()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<bool>("perBody");
    QTest::newRow("1.12") << backendVersion(1, 12) << false;
    QTest::newRow("1.20") << backendVersion(1, 20) << false;
    QTest::newRow("1.21") << backendVersion(1, 21) << true;
    QTest::newRow("2.0") << backendVersion(2, 0) << true;
}

void TestFilterDialogActions::init()
{
    dialog.reset();
    host = ScriptedHost();
    scriptFilters(host);
    versions = backendVersion(2, 0);
}

void TestFilterDialogActions::activeIsSwitchedOff()
{
    const auto click = [this] {
        QTest::mouseClick(child<QCheckBox>("checkBox_active"), Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(!child<QCheckBox>("checkBox_active")->isChecked());
        for (const char *name : {"comboBox_preset", "doubleSpinBox_strength", "spinBox_prediction", "comboBox_mode"})
            QVERIFY2(!child<QWidget>(name)->isEnabled(), name);
        QVERIFY(child<QWidget>("comboBox_body")->isEnabled());
    };
    compareCalls(-1, click, [](bool perBody) {
        const QByteArray body("standard b01");
        QByteArrayList lines{"sendCommand body filter6d_enabled standard b01 no"};
        if (perBody)
            return lines + settingLinesFromPreset(body, true);
        // The list of presets is built anew, with its first entry current: the preset just read is a change then.
        lines << "requestString body filter6d_preset standard b01"
              << "sendCommand body filter6d_preset standard b01 preset6d_custom";
        return lines + settingLinesFromStrength(body, false) + settingLinesFromStrength(body, false);
    });
}

void TestFilterDialogActions::activeIsSwitchedOn()
{
    host.answers["body filter6d_enabled standard b01"] = "no";
    host.answers["body filter6d_preset standard b01"] = "preset6d_default";
    const auto click = [this] {
        QTest::mouseClick(child<QCheckBox>("checkBox_active"), Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(child<QWidget>("comboBox_preset")->isEnabled());
        QVERIFY(!child<QWidget>("comboBox_mode")->isEnabled());
    };
    compareCalls(0, click, [](bool perBody) {
        return QByteArrayList{"sendCommand body filter6d_enabled standard b01 yes"}
        + settingLinesFromPreset("standard b01", perBody);
    });
}

void TestFilterDialogActions::partlyCheckedIsNo()
{
    open(0, [this] {
        child<QCheckBox>("checkBox_active")->setCheckState(Qt::PartiallyChecked);
        QCOMPARE(host.callsOf("sendCommand"), QByteArrayList{"body filter6d_enabled standard b01 no"});
    });
}

void TestFilterDialogActions::presetIsChosen()
{
    host.answers["body filter6d_preset standard b01"] = "preset6d_custom";
    const auto choose = [this] {
        auto *preset = child<QComboBox>("comboBox_preset");
        preset->setFocus();
        QTest::keyClicks(preset, QStringLiteral("Hybrid"));
        QCOMPARE(preset->currentText(), QStringLiteral("Hybrid custom"));
        QVERIFY(!child<QWidget>("doubleSpinBox_strength")->isVisible());
        QVERIFY(!child<QWidget>("label_strength")->isVisible());
        QVERIFY(child<QWidget>("spinBox_prediction")->isEnabled());
        QVERIFY(child<QWidget>("comboBox_mode")->isEnabled());
    };
    compareCalls(0, choose, [](bool perBody) {
        return QByteArrayList{"sendCommand body filter6d_preset standard b01 preset6d_hybrid_custom"}
        + settingLinesFromStrength("standard b01", perBody);
    });
}

void TestFilterDialogActions::modeIsChosen()
{
    const auto choose = [this] {
        auto *mode = child<QComboBox>("comboBox_mode");
        mode->setFocus();
        QTest::keyClick(mode, Qt::Key_Space);
        QTRY_VERIFY(mode->view()->isVisible());
        QTest::keyClick(mode->view(), mode->currentIndex() == 0 ? Qt::Key_Down : Qt::Key_Up);
        QTest::keyClick(mode->view(), Qt::Key_Return);
        QTRY_COMPARE(mode->currentText(), QStringLiteral("Static"));
    };
    compareCalls(0, choose,
                 [](bool) { return QByteArrayList{"sendCommand body filter6d_mode standard b01 mode6d_static"}; });
}

void TestFilterDialogActions::strengthIsTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("a number in the range") << QStringLiteral("0.75") << QByteArray("0.750000");
    QTest::newRow("a number with one digit") << QStringLiteral("0.5") << QByteArray("0.500000");
    QTest::newRow("the value that was there is sent as well") << QStringLiteral("0.25") << QByteArray("0.250000");
    QTest::newRow("further decimals are not accepted") << QStringLiteral("0.1299") << QByteArray("0.120000");
}

void TestFilterDialogActions::strengthIsTyped()
{
    QFETCH(QString, typed);
    QFETCH(QByteArray, sent);
    open(0, [this, typed, sent] {
        auto *strength = child<QDoubleSpinBox>("doubleSpinBox_strength");
        replaceNumber(strength, typed);
        QVERIFY(host.calls.isEmpty());
        QTest::keyClick(strength, Qt::Key_Tab);
        QCOMPARE(dialog->focusWidget(), child<QWidget>("spinBox_prediction"));
        QCOMPARE(host.takeCalls(), QByteArrayList{"sendCommand body filter6d_strength standard b01 " + sent});
        QCOMPARE(host.answers.value("body filter6d_strength standard b01"), sent);
    });
}

void TestFilterDialogActions::predictionIsTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("25 ms are 0.025 s") << QStringLiteral("25") << QByteArray("0.025000");
    QTest::newRow("negative times are sent") << QStringLiteral("-33") << QByteArray("-0.033000");
    QTest::newRow("0 ms") << QStringLiteral("0") << QByteArray("0.000000");
}

void TestFilterDialogActions::predictionIsTyped()
{
    QFETCH(QString, typed);
    QFETCH(QByteArray, sent);
    open(0, [this, typed, sent] {
        auto *prediction = child<QSpinBox>("spinBox_prediction");
        replaceNumber(prediction, typed);
        QTest::keyClick(prediction, Qt::Key_Tab);
        QCOMPARE(host.takeCalls(), QByteArrayList{"sendCommand body filter6d_prediction standard b01 " + sent});
    });
}

void TestFilterDialogActions::steppingSendsAtTheEndOfTheEdit()
{
    open(0, [this] {
        auto *strength = child<QDoubleSpinBox>("doubleSpinBox_strength");
        strength->setFocus();
        QTest::keyClick(strength, Qt::Key_Up);
        QTest::keyClick(strength, Qt::Key_Up);
        QCOMPARE(strength->value(), 0.27);
        QVERIFY(host.calls.isEmpty());
        QTest::mouseClick(child<QComboBox>("comboBox_body"), Qt::LeftButton); // takes no focus: it is disabled
        QVERIFY(host.calls.isEmpty());
        child<QComboBox>("comboBox_mode")->setFocus(Qt::MouseFocusReason);
        QCOMPARE(host.takeCalls(), QByteArrayList{"sendCommand body filter6d_strength standard b01 0.270000"});
    });
}

void TestFilterDialogActions::otherBodyIsRead()
{
    const auto choose = [this] {
        auto *body = child<QComboBox>("comboBox_body");
        body->setFocus();
        QTest::keyClick(body, Qt::Key_Down);
        QCOMPARE(body->currentData().toString(), QStringLiteral("standard b03"));
        QVERIFY(!child<QWidget>("checkBox_active")->isVisible());
        QCOMPARE(child<QComboBox>("comboBox_preset")->currentText(), QStringLiteral("Medium prediction"));
        QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), 0.75);
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), -30);
        QVERIFY(!child<QWidget>("comboBox_mode")->isEnabled());
        QFETCH(bool, perBody);
        QCOMPARE(child<QComboBox>("comboBox_preset")->count(), perBody ? 4 : 2);
    };
    compareCalls(-1, choose, [](bool perBody) {
        const QByteArray body("standard b03");
        QByteArrayList lines{"requestString body filter6d_enabled standard b03",
                             "requestString body inertial_sensor standard b03"};
        if (perBody)
            lines += presetLines(body);
        lines << "requestString body filter6d_preset standard b03"
              << "sendCommand body filter6d_preset standard b03 preset6d_med_pred";
        return lines + settingLinesFromStrength(body, perBody) + settingLinesFromStrength(body, perBody);
    });
}

void TestFilterDialogActions::activeSwitchComesBack()
{
    QFETCH(BackendVersions, version);
    versions = version;
    open(-1, [this] {
        auto *body = child<QComboBox>("comboBox_body");
        QTest::keyClick(body, Qt::Key_Down); // to the body with an inertial sensor
        QVERIFY(!child<QWidget>("checkBox_active")->isVisible());
        QTest::keyClick(body, Qt::Key_Up);
        QVERIFY(child<QWidget>("checkBox_active")->isVisible());
        QVERIFY(child<QWidget>("checkBox_active")->isEnabled());
    });
}

void TestFilterDialogActions::strengthComesBack()
{
    QFETCH(BackendVersions, version);
    versions = version;
    open(0, [this] {
        auto *preset = child<QComboBox>("comboBox_preset");
        preset->setFocus();
        QTest::keyClicks(preset, QStringLiteral("Hybrid"));
        QVERIFY(!child<QWidget>("label_strength")->isVisible());
        QVERIFY(!child<QWidget>("doubleSpinBox_strength")->isVisible());
        preset->setCurrentIndex(preset->findText(QStringLiteral("Custom")));
        for (const char *name : {"label_strength", "doubleSpinBox_strength"}) {
            QVERIFY2(child<QWidget>(name)->isVisible(), name);
            QVERIFY2(child<QWidget>(name)->isEnabled(), name);
        }
    });
}

void TestFilterDialogActions::otherActiveStateIsSentBack()
{
    host.answers["body filter6d_enabled standard b03"] = "no";
    host.answers["body filter6d_preset standard b03"] = "preset6d_custom";
    open(-1, [this] {
        QTest::keyClick(child<QComboBox>("comboBox_body"), Qt::Key_Down);
        const QByteArray body("standard b03");
        const QByteArrayList expected = QByteArrayList{"requestString body filter6d_enabled standard b03",
                                                       "sendCommand body filter6d_enabled standard b03 no"}
            + settingLinesFromPreset(body, true) + QByteArrayList{"requestString body inertial_sensor standard b03"}
            + settingLinesFromPreset(body, true);
        QCOMPARE(host.takeCalls(), expected);
    });
}

void TestFilterDialogActions::unlistedPresetIsSentBackAsNone()
{
    host.answers["body filter6d_preset standard b03"] = "preset6d_unlisted_custom";
    open(-1, [this] {
        QTest::keyClick(child<QComboBox>("comboBox_body"), Qt::Key_Down);
        QCOMPARE(child<QComboBox>("comboBox_preset")->currentIndex(), -1);
        QCOMPARE(host.callsOf("sendCommand"), QByteArrayList{"body filter6d_preset standard b03 "});
        for (const char *name : {"doubleSpinBox_strength", "spinBox_prediction", "comboBox_mode"})
            QVERIFY2(!child<QWidget>(name)->isEnabled(), name);
    });
}

void TestFilterDialogActions::samePresetsStayAsTheyAre()
{
    open(-1, [this] {
        auto *preset = child<QComboBox>("comboBox_preset");
        preset->setItemData(0, 1, Qt::UserRole + 1); // survives as long as the item does
        QTest::keyClick(child<QComboBox>("comboBox_body"), Qt::Key_Down);
        QCOMPARE(preset->itemData(0, Qt::UserRole + 1).toInt(), 1);
        QCOMPARE(preset->count(), 4);
    });
}

void TestFilterDialogActions::otherPresetsAreSorted()
{
    host.answers["body filter6d_preset_available standard b03 preset6d_default"] = "false";
    host.answers["filter6d preset_id t04"] = "Preset6d_x_custom"; // capitals stand before the others
    host.answers["filter6d preset_desc Preset6d_x_custom"] = "X";
    host.answers["body filter6d_preset_available standard b01 Preset6d_x_custom"] = "true";
    host.answers["body filter6d_preset_available standard b03 Preset6d_x_custom"] = "true";
    open(-1, [this] {
        auto *preset = child<QComboBox>("comboBox_preset");
        preset->setItemData(0, 1, Qt::UserRole + 1);
        QTest::keyClick(child<QComboBox>("comboBox_body"), Qt::Key_Down);
        QVERIFY(!preset->itemData(0, Qt::UserRole + 1).isValid());
        QStringList ids;
        for (int i = 0; i < preset->count(); ++i)
            ids << preset->itemData(i).toString();
        QCOMPARE(ids.join(QLatin1Char(' ')), QStringLiteral("Preset6d_x_custom preset6d_custom preset6d_med_pred"));
        // Only the preset that was read is a change to be sent, not those that were current while the list grew.
        QCOMPARE(host.callsOf("sendCommand"), QByteArrayList{"body filter6d_preset standard b03 preset6d_med_pred"});
    });
}

QTEST_MAIN(TestFilterDialogActions)
#include "tst_filterdialog_actions.moc"
