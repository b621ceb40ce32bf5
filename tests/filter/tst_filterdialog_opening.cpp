// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/support/filterscript.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <memory>

namespace {

/// The controls that an unavailable or locked filter disables.
const char *const controlNames[] = {
    "label_body",         "comboBox_body",  "checkBox_active",        "label_preset",
    "comboBox_preset",    "label_strength", "doubleSpinBox_strength", "label_prediction",
    "spinBox_prediction", "label_mode",     "comboBox_mode"};

QString itemsOf(const QComboBox *comboBox)
{
    QStringList items;
    for (int i = 0; i < comboBox->count(); ++i)
        items << comboBox->itemText(i) + QLatin1Char('=') + comboBox->itemData(i).toString();
    return items.join(QLatin1String("; "));
}

} // namespace

class TestFilterDialogOpening : public QObject {
    Q_OBJECT

private slots:
    void init();
    void constructionAsks_data();
    void constructionAsks();
    void wholeOpeningInWords();
    void openingAsks_data();
    void openingAsks();
    void formatsAreTheChannels();
    void bodySelector_data();
    void bodySelector();
    void unavailable_data();
    void unavailable();
    void lockedIsSilent();
    void runAgainReadsAfresh();
    void runAgainListsItsBodiesAlone();
    void runAgainWithoutBodiesForgetsTheSettings();
    void runAgainWhenUnavailableKeepsTheBodies();
    void defaultArgumentsOfferAllStandardBodies();

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

void TestFilterDialogOpening::init()
{
    dialog.reset();
    host = ScriptedHost();
    scriptFilters(host);
    versions = backendVersion(2, 0);
}

void TestFilterDialogOpening::constructionAsks_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArrayList>("lines");
    const QByteArrayList global = presetListLines() + limitLines() + modeListLines();
    const QByteArrayList perBody = presetListLines() + limitLines();
    QTest::newRow("0.1 asks for the modes of all bodies") << backendVersion(0, 1) << global;
    QTest::newRow("1.11 asks for the modes of all bodies") << backendVersion(1, 11) << global;
    QTest::newRow("1.12 asks for the modes of all bodies") << backendVersion(1, 12) << global;
    QTest::newRow("1.20 asks for the modes of all bodies") << backendVersion(1, 20) << global;
    QTest::newRow("1.21 with patch -2 is older than 1.21") << backendVersion(1, 21, -2) << global;
    QTest::newRow("1.21 leaves the modes to each body") << backendVersion(1, 21) << perBody;
    QTest::newRow("2.0 leaves the modes to each body") << backendVersion(2, 0) << perBody;
}

void TestFilterDialogOpening::constructionAsks()
{
    QFETCH(BackendVersions, version);
    versions = version;
    const FilterDialog fresh(&host, nullptr, &versions);
    QTEST(host.takeCalls(), "lines");
}

void TestFilterDialogOpening::wholeOpeningInWords()
{
    versions = backendVersion(1, 20);
    host.answers["filter6d number_of_presets"] = "1";
    host.answers["filter6d number_of_modes"] = "1";
    open(0, 0);
    const QByteArrayList expected{
        "requestInt filter6d number_of_presets",
        "requestString filter6d preset_id t01",
        "requestString filter6d preset_desc preset6d_default",
        "requestDouble filter6d limit strength_min",
        "requestDouble filter6d limit strength_max",
        "requestDouble filter6d limit prediction_min",
        "requestDouble filter6d limit prediction_max",
        "requestInt filter6d number_of_modes",
        "requestString filter6d mode_id t01",
        "requestString filter6d mode_desc mode6d_static",
        "requestString filter6d available standard",
        "requestString config is_changeable",
        "requestString body inertial_sensor standard b01",
        "requestString body desc standard b01",
        "requestString body filter6d_enabled standard b01",
        "requestString body inertial_sensor standard b01",
        "requestString body filter6d_preset standard b01",
        "requestDouble body filter6d_strength standard b01",
        "requestDouble body filter6d_prediction standard b01",
        "requestString body filter6d_mode standard b01",
    };
    QCOMPARE(host.calls, expected);
}

void TestFilterDialogOpening::openingAsks_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("body");
    QTest::addColumn<QByteArrayList>("lines");

    const QByteArrayList standard{"requestString filter6d available standard", "requestString config is_changeable"};
    const QByteArrayList wandor{"requestString filter6d available wandor", "requestString config is_changeable"};
    const QByteArrayList lockOnly{"requestString config is_changeable"};
    const QByteArrayList body2{"requestString body inertial_sensor standard b02",
                               "requestString body desc standard b02"};
    const QByteArrayList all{
        "requestInt body number_of_bodies standard",       "requestString body calibrated standard b01",
        "requestString body inertial_sensor standard b01", "requestString body desc standard b01",
        "requestString body calibrated standard b02",      "requestString body calibrated standard b03",
        "requestString body inertial_sensor standard b03", "requestString body desc standard b03"};
    const QByteArrayList wandors{"requestInt wandor number_of_devices", "requestString body calibrated wandor b01",
                                 "requestString body calibrated wandor b02"};
    const auto row = [](const char *name, BackendVersions version, int tab, int body, const QByteArrayList &lines) {
        QTest::newRow(name) << version << tab << body << lines;
    };
    row("1.8 asks for nothing", backendVersion(1, 8), 0, 0, {});
    row("1.9 with patch -2 asks for nothing", backendVersion(1, 9, -2), 0, 0, {});
    row("1.9 asks for the lock", backendVersion(1, 9), 0, 0, lockOnly);
    row("1.11 asks for the lock only, whatever its patch", backendVersion(1, 11, 99), 1, 0, lockOnly);
    row("1.12 with patch -2 is older than 1.12", backendVersion(1, 12, -2), 0, 0, lockOnly);
    row("1.12 reads a given body, calibrated or not", backendVersion(1, 12), 0, 1,
        standard + body2 + settingLines("standard b02", false));
    row("1.20 reads all bodies and the first one's settings", backendVersion(1, 20), 0, -1,
        standard + all + settingLines("standard b01", false));
    row("1.21 asks for the presets and modes of a body", backendVersion(1, 21), 0, 1,
        standard + body2 + settingLines("standard b02", true));
    row("2.0 reads all bodies and the first one's settings", backendVersion(2, 0), 0, -1,
        standard + all + settingLines("standard b01", true));
    row("any index below 0 stands for all bodies", backendVersion(2, 0), 0, -5,
        standard + all + settingLines("standard b01", true));
    row("1.12 reads a given wandor without asking about it", backendVersion(1, 12), 1, 0,
        wandor + settingLines("wandor b01", false));
    row("1.20 reads all wandors and the first calibrated one's settings", backendVersion(1, 20), 1, -1,
        wandor + wandors + settingLines("wandor b02", false));
    row("2.0 reads all wandors and the first calibrated one's settings", backendVersion(2, 0), 1, -1,
        wandor + wandors + settingLines("wandor b02", true));
    row("other tables have no filter, which needs no question", backendVersion(2, 0), 2, 0, lockOnly);
    row("a negative table has no filter either", backendVersion(2, 0), -1, 0, lockOnly);
}

void TestFilterDialogOpening::openingAsks()
{
    QFETCH(BackendVersions, version);
    QFETCH(int, tab);
    QFETCH(int, body);
    versions = version;
    dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions);
    host.takeCalls();
    open(tab, body);
    QTEST(host.takeCalls(), "lines");
}

void TestFilterDialogOpening::formatsAreTheChannels()
{
    versions = backendVersion(1, 20);
    open(0, -1);
    for (const char *format :
         {"filter6d preset_id t%.2d", "filter6d mode_id t%.2d", "filter6d preset_desc %s", "filter6d mode_desc %s",
          "body calibrated standard b%.2d", "body inertial_sensor standard b%.2d", "body desc standard b%.2d",
          "body filter6d_enabled %s", "body inertial_sensor %s", "body filter6d_preset %s", "body filter6d_strength %s",
          "body filter6d_prediction %s", "body filter6d_mode %s"})
        QVERIFY2(host.formats.contains(format), format);
    dialog.reset();
    host.takeCalls();
    versions = backendVersion(1, 21);
    open(1, -1);
    for (const char *format :
         {"filter6d preset_id t%.2d", "filter6d preset_id t%02d", "filter6d mode_id t%02d",
          "body filter6d_preset_available %s %s", "body filter6d_mode_available %s %s", "body calibrated wandor b%.2d"})
        QVERIFY2(host.formats.contains(format), format);
    QVERIFY(!host.formats.contains("filter6d mode_id t%.2d"));
}

void TestFilterDialogOpening::bodySelector_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("body");
    QTest::addColumn<QString>("items");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("a given body is fixed")
        << 0 << 0 << QStringLiteral("standard body 01 (Left hand)=standard b01") << false;
    QTest::newRow("a given body needs no calibration")
        << 0 << 1 << QStringLiteral("standard body 02 (Table)=standard b02") << false;
    QTest::newRow("no description, no parentheses")
        << 0 << 2 << QStringLiteral("standard body 03=standard b03") << false;
    QTest::newRow("an unknown body is still named")
        << 0 << 99 << QStringLiteral("standard body 100=standard b100") << false;
    QTest::newRow("of all bodies the calibrated ones are offered")
        << 0 << -1 << QStringLiteral("standard body 01 (Left hand)=standard b01; standard body 03=standard b03")
        << true;
    QTest::newRow("a given wandor is fixed") << 1 << 11 << QStringLiteral("Wandor body 12=wandor b12") << false;
    QTest::newRow("of all wandors the calibrated ones are offered")
        << 1 << -1 << QStringLiteral("Wandor body 02=wandor b02") << true;
}

void TestFilterDialogOpening::bodySelector()
{
    QFETCH(int, tab);
    QFETCH(int, body);
    open(tab, body);
    QTEST(itemsOf(child<QComboBox>("comboBox_body")), "items");
    QTEST(child<QComboBox>("comboBox_body")->isEnabled(), "enabled");
}

void TestFilterDialogOpening::unavailable_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("message");
    const QString standard =
        QStringLiteral("<b><font color=red>6DOF filter for standard bodies not available</font></b>");
    const QString wandor = QStringLiteral("<b><font color=red>6DOF filter for wandors not available</font></b>");
    const QString other = QStringLiteral("<b><font color=red>6DOF filter not available</font></b>");
    QTest::newRow("no for standard bodies") << backendVersion(2, 0) << QByteArray("no") << 0 << standard;
    QTest::newRow("no for wandors") << backendVersion(2, 0) << QByteArray("no") << 1 << wandor;
    QTest::newRow("other tables have no filter") << backendVersion(2, 0) << QByteArray("yes") << 2 << other;
    QTest::newRow("Yes in capitals is not yes") << backendVersion(2, 0) << QByteArray("YES") << 0 << standard;
    QTest::newRow("yes with a blank is not yes") << backendVersion(2, 0) << QByteArray("yes ") << 1 << wandor;
    QTest::newRow("an empty answer is not yes") << backendVersion(2, 0) << QByteArray("") << 0 << standard;
    QTest::newRow("1.11 has no filter for standard bodies")
        << backendVersion(1, 11) << QByteArray("yes") << 0 << standard;
    QTest::newRow("1.11 has no filter for wandors") << backendVersion(1, 11) << QByteArray("yes") << 1 << wandor;
    QTest::newRow("1.11 has no filter for others") << backendVersion(1, 11) << QByteArray("yes") << 7 << other;
}

void TestFilterDialogOpening::unavailable()
{
    QFETCH(BackendVersions, version);
    QFETCH(QByteArray, answer);
    QFETCH(int, tab);
    QFETCH(QString, message);
    versions = version;
    host.answers["filter6d available standard"] = answer;
    host.answers["filter6d available wandor"] = answer;
    open(tab, 0, [this, message] {
        for (const char *name : controlNames)
            QVERIFY2(!child<QWidget>(name)->isEnabled(), name);
        for (const char *name : {"label_empty", "label_error", "pushButton_help", "pushButton_exit"})
            QVERIFY2(child<QWidget>(name)->isEnabled(), name);
        const auto *error = child<QLabel>("label_error");
        QCOMPARE(error->text(), message);
        QVERIFY(error->textFormat() == Qt::AutoText || error->textFormat() == Qt::RichText);
        QCOMPARE(child<QComboBox>("comboBox_body")->count(), 0);
    });
    QVERIFY(host.callsOf("log").isEmpty());
}

void TestFilterDialogOpening::lockedIsSilent()
{
    host.answers["config is_changeable"] = "no";
    for (const char *available : {"yes", "no"}) {
        host.answers["filter6d available standard"] = available;
        dialog.reset();
        open(0, 0, [this] {
            for (const char *name : controlNames)
                QVERIFY2(!child<QWidget>(name)->isEnabled(), name);
            QCOMPARE(child<QLabel>("label_error")->text(), QString());
            QCOMPARE(child<QComboBox>("comboBox_body")->count(), 0);
            QVERIFY(child<QPushButton>("pushButton_exit")->isEnabled());
        });
    }
}

void TestFilterDialogOpening::runAgainReadsAfresh()
{
    host.answers["filter6d available standard"] = "no";
    open(0, 0);
    QVERIFY(!child<QLabel>("label_error")->text().isEmpty());
    host.answers["filter6d available standard"] = "yes";
    host.takeCalls();
    open(0, 0, [this] {
        QCOMPARE(child<QLabel>("label_error")->text(), QString());
        QVERIFY(child<QWidget>("comboBox_preset")->isEnabled());
    });
    host.answers["body filter6d_strength standard b01"] = "0.8";
    open(0, 0, [this] { QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), 0.8); });
    QVERIFY(!host.calls.contains("requestDouble filter6d limit strength_min"));
    QVERIFY(host.callsOf("sendCommand").isEmpty());
}

void TestFilterDialogOpening::runAgainListsItsBodiesAlone()
{
    open(0, -1);
    open(1, -1);
    QCOMPARE(itemsOf(child<QComboBox>("comboBox_body")), QStringLiteral("Wandor body 02=wandor b02"));
}

void TestFilterDialogOpening::runAgainWithoutBodiesForgetsTheSettings()
{
    open(0, -1, [this] { QVERIFY(child<QCheckBox>("checkBox_active")->isChecked()); });
    host.answers["body number_of_bodies standard"] = "0";
    open(0, -1, [this] {
        QCOMPARE(child<QComboBox>("comboBox_body")->count(), 0);
        QVERIFY(!child<QCheckBox>("checkBox_active")->isChecked());
        QCOMPARE(child<QComboBox>("comboBox_preset")->currentIndex(), -1);
        QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), 0.01); // the least
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), 0);
    });
    QVERIFY(host.callsOf("sendCommand").isEmpty());
}

void TestFilterDialogOpening::runAgainWhenUnavailableKeepsTheBodies()
{
    open(0, -1);
    host.answers["filter6d available standard"] = "no";
    open(0, 0);
    QCOMPARE(child<QComboBox>("comboBox_body")->count(), 2);
    host.answers["config is_changeable"] = "no";
    open(2, 0);
    QCOMPARE(child<QLabel>("label_error")->text(),
             QStringLiteral("<b><font color=red>6DOF filter for standard bodies not available</font></b>"));
}

void TestFilterDialogOpening::defaultArgumentsOfferAllStandardBodies()
{
    dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions);
    int result = -1;
    QVERIFY(QMetaObject::invokeMethod(
        dialog.get(), [this] { dialog->reject(); }, Qt::QueuedConnection));
    QVERIFY(QMetaObject::invokeMethod(dialog.get(), "update_and_exec", Q_RETURN_ARG(int, result)));
    QCOMPARE(result, static_cast<int>(QDialog::Rejected));
    QCOMPARE(child<QComboBox>("comboBox_body")->count(), 2);
    QVERIFY(child<QComboBox>("comboBox_body")->isEnabled());
}

QTEST_MAIN(TestFilterDialogOpening)
#include "tst_filterdialog_opening.moc"
