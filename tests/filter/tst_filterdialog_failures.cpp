// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/support/dialogactions.h"
#include "tests/support/filterscript.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QSpinBox>
#include <QTest>

#include <memory>

namespace {

/// What is logged when the query or command \a call fails while a body is shown; empty where that is silent.
QByteArray messageFor(const QByteArray &call)
{
    static const QVector<std::pair<QByteArray, QByteArray>> messages{
        {"requestInt filter6d number_of_presets", "get number of filter 6d presets"},
        {"requestString filter6d preset_id ", "get filter 6d preset id"},
        {"requestBool body filter6d_preset_available ", "get filter 6d preset id available"},
        {"requestString filter6d preset_desc ", "get filter 6d preset description"},
        {"requestInt filter6d number_of_modes", "get number of filter 6d modes"},
        {"requestString filter6d mode_id ", "get filter 6d mode id"},
        {"requestBool body filter6d_mode_available ", "get filter 6d mode id available"},
        {"requestString filter6d mode_desc ", "get filter 6d mode description"},
        {"requestString body filter6d_preset ", "get filter 6d preset for body standard b01"},
        {"requestDouble body filter6d_strength ", "get filter 6d strength for body standard b01"},
        {"requestDouble body filter6d_prediction ", "get filter 6d prediction for body standard b01"},
        {"requestString body filter6d_mode ", "get filter 6d mode for body standard b01"},
        {"sendCommand body filter6d_enabled ", "activate/deactivate filter 6d for body standard b01"},
        {"sendCommand body filter6d_preset ", "set filter 6d preset for body standard b01"},
        {"sendCommand body filter6d_strength ", "set filter 6d strength for body standard b01"},
        {"sendCommand body filter6d_prediction ", "set filter 6d prediction for body standard b01"},
        {"sendCommand body filter6d_mode ", "set filter 6d mode for body standard b01"},
    };
    for (const auto &[begin, action] : messages) {
        if (call.startsWith(begin))
            return "log Error: Unable to " + action;
    }
    return {};
}

} // namespace

class TestFilterDialogFailures : public QObject {
    Q_OBJECT

private slots:
    void init();
    void anyCallOfAnOpeningMayFail_data();
    void anyCallOfAnOpeningMayFail();
    void anyCallOfAnActionMayFail_data();
    void anyCallOfAnActionMayFail();
    void everythingMayFail_data();
    void everythingMayFail();
    void failedReadsFallBack_data();
    void failedReadsFallBack();
    void failedCommandsLeaveTheControl();
    void failedListEntriesAreSkipped();
    void failedDescriptionsAreReplacedByIdentifiers();
    void countsAreBounded();

private:
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    void makeDialog() { dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions); }
    void act(const QByteArray &action) { changeSetting(*dialog, action); }
    /// Checks that the dialog reads and sends as ever when the backend answers again.
    void compareUsable();

    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<FilterDialog> dialog;
};

void TestFilterDialogFailures::init()
{
    dialog.reset();
    host = ScriptedHost();
    scriptFilters(host);
    versions = backendVersion(2, 0);
}

void TestFilterDialogFailures::compareUsable()
{
    host = ScriptedHost();
    scriptFilters(host);
    bool compared = false;
    makeDialog();
    runDialog(*dialog, 0, 0, [this, &compared] {
        host.takeCalls();
        act("mode");
        QCOMPARE(host.takeCalls(), QByteArrayList{"sendCommand body filter6d_mode standard b01 mode6d_static"});
        compared = true;
    });
    QVERIFY(compared);
}

void TestFilterDialogFailures::anyCallOfAnOpeningMayFail_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<int>("body");
    for (const int minor : {11, 12, 20, 21}) {
        QTest::addRow("one body, 1.%d", minor) << backendVersion(1, minor) << 0;
        QTest::addRow("all bodies, 1.%d", minor) << backendVersion(1, minor) << -1;
    }
    QTest::newRow("one body, 2.0") << backendVersion(2, 0) << 0;
    QTest::newRow("all bodies, 2.0") << backendVersion(2, 0) << -1;
}

void TestFilterDialogFailures::anyCallOfAnOpeningMayFail()
{
    QFETCH(BackendVersions, version);
    QFETCH(int, body);
    versions = version;
    makeDialog();
    const int constructionCalls = host.calls.size();
    runDialog(*dialog, 0, body, [] {});
    const int allCalls = host.calls.size();
    QVERIFY(allCalls > constructionCalls);

    for (int k = 1; k <= allCalls; ++k) {
        host = ScriptedHost();
        scriptFilters(host);
        host.answers["body calibrated standard b03"] = "no"; // so that the messages are all about the first body
        host.failCall = k;
        makeDialog();
        runDialog(*dialog, 0, body, [] {});
        if (host.calls.size() < k)
            continue;
        const QByteArray failedCall = host.calls.at(k - 1);
        QByteArrayList expected;
        if (k > constructionCalls && !messageFor(failedCall).isEmpty())
            expected << messageFor(failedCall).mid(4);
        QCOMPARE(host.callsOf("log"), expected);
        QVERIFY2(host.callsOf("sendCommand").isEmpty(), failedCall);
    }
    if (version.backendMajor > 1 || version.backendMinor > 11)
        compareUsable();
}

void TestFilterDialogFailures::anyCallOfAnActionMayFail_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArray>("action");
    for (const char *action : {"active", "preset", "strength", "prediction", "mode", "body"}) {
        QTest::addRow("%s, 1.12", action) << backendVersion(1, 12) << QByteArray(action);
        QTest::addRow("%s, 1.20", action) << backendVersion(1, 20) << QByteArray(action);
        QTest::addRow("%s, 1.21", action) << backendVersion(1, 21) << QByteArray(action);
        QTest::addRow("%s, 2.0", action) << backendVersion(2, 0) << QByteArray(action);
    }
}

void TestFilterDialogFailures::anyCallOfAnActionMayFail()
{
    QFETCH(BackendVersions, version);
    QFETCH(QByteArray, action);
    versions = version;
    bool failedOne = true;
    int k = 0;
    while (failedOne) {
        ++k;
        host = ScriptedHost();
        scriptFilters(host);
        makeDialog();
        failedOne = false;
        runDialog(*dialog, 0, -1, [&] {
            auto *body = child<QComboBox>("comboBox_body");
            if (action == "body") // from the other body to the first
                QTest::keyClick(body, Qt::Key_Down);
            host.takeCalls();
            host.failCall = k;
            act(action);
            failedOne = host.failCall == 0;
            host.failCall = 0;
            const QByteArrayList calls = host.takeCalls();
            QVERIFY(!calls.isEmpty());
            QByteArrayList logged;
            QByteArray failedCall;
            int number = 0;
            for (const QByteArray &call : calls) {
                if (call.startsWith("log "))
                    logged << call;
                else if (++number == k)
                    failedCall = call;
            }
            QByteArrayList expected;
            if (!messageFor(failedCall).isEmpty())
                expected << messageFor(failedCall);
            QCOMPARE(logged, expected);
        });
        QVERIFY(k < 100);
        // Opened again without a failure, everything is as the backend has it.
        runDialog(*dialog, 0, 0, [this] {
            QCOMPARE(child<QCheckBox>("checkBox_active")->isChecked(),
                     host.answers.value("body filter6d_enabled standard b01") == "yes");
            QCOMPARE(child<QComboBox>("comboBox_preset")->currentData().toString().toLatin1(),
                     host.answers.value("body filter6d_preset standard b01"));
            QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(),
                     host.answers.value("body filter6d_strength standard b01").toDouble());
        });
    }
    QVERIFY(k > 1);
}

void TestFilterDialogFailures::everythingMayFail_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArrayList>("logged");
    const QByteArrayList settings{"Error: Unable to get filter 6d preset for body standard b01",
                                  "Error: Unable to get filter 6d strength for body standard b01",
                                  "Error: Unable to get filter 6d prediction for body standard b01",
                                  "Error: Unable to get filter 6d mode for body standard b01"};
    QByteArrayList newer = settings;
    newer.insert(3, "Error: Unable to get number of filter 6d modes");
    newer.insert(0, "Error: Unable to get number of filter 6d presets");
    QTest::newRow("1.12") << backendVersion(1, 12) << settings;
    QTest::newRow("1.20") << backendVersion(1, 20) << settings;
    QTest::newRow("1.21") << backendVersion(1, 21) << newer;
    QTest::newRow("2.0") << backendVersion(2, 0) << newer;
}

void TestFilterDialogFailures::everythingMayFail()
{
    QFETCH(BackendVersions, version);
    versions = version;
    host.answers = {{"filter6d available standard", "yes"}};
    makeDialog();
    runDialog(*dialog, 0, 0, [this] {
        QCOMPARE(child<QComboBox>("comboBox_body")->currentText(), QStringLiteral("standard body 01"));
        QVERIFY(!child<QCheckBox>("checkBox_active")->isChecked());
        QVERIFY(child<QCheckBox>("checkBox_active")->isVisible());
        QCOMPARE(child<QComboBox>("comboBox_preset")->count(), 0);
        QVERIFY(!child<QWidget>("comboBox_preset")->isEnabled());
        QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), 0.0);
        QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->maximum(), 0.0);
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), 0);
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->maximum(), 0);
        QCOMPARE(child<QComboBox>("comboBox_mode")->count(), 0);
    });
    QTEST(host.callsOf("log"), "logged");
    compareUsable();
}

void TestFilterDialogFailures::failedReadsFallBack_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QByteArray>("state"); // active, preset (enabled), strength, prediction, mode (enabled)
    QTest::newRow("no preset closes the presets, the first of which is current")
        << QStringLiteral("^body filter6d_preset ") << QByteArray("1 preset6d_custom 0 0.25 12 mode6d_fast 1");
    QTest::newRow("no strength is 0, in the range")
        << QStringLiteral("^body filter6d_strength ") << QByteArray("1 preset6d_custom 1 0.01 12 mode6d_fast 1");
    QTest::newRow("no prediction is 0 ms")
        << QStringLiteral("^body filter6d_prediction ") << QByteArray("1 preset6d_custom 1 0.25 0 mode6d_fast 1");
    QTest::newRow("no mode is none, and the modes stay open")
        << QStringLiteral("^body filter6d_mode ") << QByteArray("1 preset6d_custom 1 0.25 12 - 1");
    QTest::newRow("no active state is inactive")
        << QStringLiteral("^body filter6d_enabled ") << QByteArray("0 preset6d_custom 0 0.25 12 mode6d_fast 0");
}

void TestFilterDialogFailures::failedReadsFallBack()
{
    QFETCH(QString, failing);
    host.failing.setPattern(failing);
    makeDialog();
    const auto idOf = [this](const char *name) {
        const auto *comboBox = child<QComboBox>(name);
        return comboBox->currentIndex() < 0 ? QByteArray("-") : comboBox->currentData().toString().toLatin1();
    };
    QByteArray state;
    runDialog(*dialog, 0, 0, [&] {
        state = QByteArray::number(child<QCheckBox>("checkBox_active")->isChecked()) + ' ' + idOf("comboBox_preset")
            + ' ' + QByteArray::number(child<QWidget>("comboBox_preset")->isEnabled()) + ' '
            + QByteArray::number(child<QDoubleSpinBox>("doubleSpinBox_strength")->value()) + ' '
            + QByteArray::number(child<QSpinBox>("spinBox_prediction")->value()) + ' ' + idOf("comboBox_mode") + ' '
            + QByteArray::number(child<QWidget>("comboBox_mode")->isEnabled());
    });
    QTEST(state, "state");
}

void TestFilterDialogFailures::failedCommandsLeaveTheControl()
{
    host.failing.setPattern(
        QStringLiteral("^body filter6d_(strength|prediction|mode|preset|enabled) standard b01 \\S+$"));
    makeDialog();
    runDialog(*dialog, 0, 0, [this] {
        host.takeCalls();
        act("strength");
        act("prediction");
        act("mode");
        QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), 0.6);
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), 25);
        QCOMPARE(child<QComboBox>("comboBox_mode")->currentText(), QStringLiteral("Static"));
        const QByteArrayList expected{
            "sendCommand body filter6d_strength standard b01 0.600000",
            "log Error: Unable to set filter 6d strength for body standard b01",
            "sendCommand body filter6d_prediction standard b01 0.025000",
            "log Error: Unable to set filter 6d prediction for body standard b01",
            "sendCommand body filter6d_mode standard b01 mode6d_static",
            "log Error: Unable to set filter 6d mode for body standard b01",
        };
        QCOMPARE(host.takeCalls(), expected);

        act("preset");
        QCOMPARE(child<QComboBox>("comboBox_preset")->currentText(), QStringLiteral("Hybrid custom"));
        act("active");
        QVERIFY(!child<QCheckBox>("checkBox_active")->isChecked());
        // The active switch has the preset read again, which is still the backend's: a change, sent like any other.
        const QByteArrayList logged{"Error: Unable to set filter 6d preset for body standard b01",
                                    "Error: Unable to activate/deactivate filter 6d for body standard b01",
                                    "Error: Unable to set filter 6d preset for body standard b01"};
        QCOMPARE(host.callsOf("log"), logged);
        QCOMPARE(child<QLabel>("label_error")->text(), QString());
    });
}

void TestFilterDialogFailures::failedListEntriesAreSkipped()
{
    versions = backendVersion(1, 20);
    host.failing.setPattern(QStringLiteral("preset_id t02|preset_desc preset6d_custom|mode_desc mode6d_static"));
    makeDialog();
    runDialog(*dialog, 0, 0, [] {});
    QCOMPARE(child<QComboBox>("comboBox_preset")->count(), 2);
    QCOMPARE(child<QComboBox>("comboBox_preset")->itemText(0), QStringLiteral("Default"));
    QCOMPARE(child<QComboBox>("comboBox_preset")->itemText(1), QStringLiteral("Hybrid custom"));
    QCOMPARE(child<QComboBox>("comboBox_mode")->count(), 1);
    QVERIFY(host.callsOf("log").isEmpty());
}

void TestFilterDialogFailures::failedDescriptionsAreReplacedByIdentifiers()
{
    host.failing.setPattern(QStringLiteral("preset_desc preset6d_custom|mode_desc mode6d_fast"));
    makeDialog();
    runDialog(*dialog, 0, 0, [] {});
    QCOMPARE(child<QComboBox>("comboBox_preset")->currentText(), QStringLiteral("preset6d_custom"));
    QCOMPARE(child<QComboBox>("comboBox_mode")->currentText(), QStringLiteral("mode6d_fast"));
    const QByteArrayList expected{"Error: Unable to get filter 6d preset description",
                                  "Error: Unable to get filter 6d mode description"};
    QCOMPARE(host.callsOf("log"), expected);
}

void TestFilterDialogFailures::countsAreBounded()
{
    for (const char *count : {"-1", "2147483647"}) {
        host.takeCalls();
        for (const char *query :
             {"filter6d number_of_presets", "filter6d number_of_modes", "body number_of_bodies standard"})
            host.answers[query] = count;
        makeDialog();
        runDialog(*dialog, 0, -1, [] {});
        QCOMPARE(child<QComboBox>("comboBox_body")->count(), 0);
        QVERIFY(host.calls.size() < 20);
    }
}

QTEST_MAIN(TestFilterDialogFailures)
#include "tst_filterdialog_failures.moc"
