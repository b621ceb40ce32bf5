// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filtercapabilities.h"
#include "tests/support/filterscript.h"

#include <QTest>

#include <cmath>
#include <limits>

class TestFilterCapabilities : public QObject {
    Q_OBJECT

private slots:
    void init();
    void availability_data();
    void availability();
    void lock_data();
    void lock();
    void presetsOfAllBodies();
    void modesOfAllBodies();
    void choicesOfABody();
    void sensorsOfBodies_data();
    void sensorsOfBodies();
    void numbersOfBodies_data();
    void numbersOfBodies();
    void otherTablesHaveNoBodies();
    void finiteNumbers_data();
    void finiteNumbers();

private:
    ScriptedHost host;
};

void TestFilterCapabilities::init()
{
    host = ScriptedHost();
    scriptFilters(host);
}

void TestFilterCapabilities::availability_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<int>("tab");
    QTest::addColumn<QByteArray>("answer"); // a null one: the query fails
    QTest::addColumn<bool>("available");
    QTest::newRow("1.12 with yes") << backendVersion(1, 12) << 0 << QByteArray("yes") << true;
    QTest::newRow("1.12.0 with yes") << backendVersion(1, 12, 0) << 0 << QByteArray("yes") << true;
    QTest::newRow("1.12 with patch -2") << backendVersion(1, 12, -2) << 0 << QByteArray("yes") << false;
    QTest::newRow("1.11.99") << backendVersion(1, 11, 99) << 0 << QByteArray("yes") << false;
    QTest::newRow("2.0 is newer than 1.12") << backendVersion(2, 0) << 1 << QByteArray("yes") << true;
    QTest::newRow("0.99 is older than 1.12") << backendVersion(0, 99) << 1 << QByteArray("yes") << false;
    QTest::newRow("no") << backendVersion(2, 0) << 0 << QByteArray("no") << false;
    QTest::newRow("Yes in capitals") << backendVersion(2, 0) << 0 << QByteArray("Yes") << false;
    QTest::newRow("a blank after yes") << backendVersion(2, 0) << 1 << QByteArray("yes ") << false;
    QTest::newRow("quoted yes") << backendVersion(2, 0) << 1 << QByteArray("\"yes\"") << false;
    QTest::newRow("no answer, whatever it left behind") << backendVersion(2, 0) << 0 << QByteArray() << false;
    QTest::newRow("a third table") << backendVersion(2, 0) << 2 << QByteArray("yes") << false;
}

void TestFilterCapabilities::availability()
{
    QFETCH(BackendVersions, version);
    QFETCH(int, tab);
    QFETCH(QByteArray, answer);
    for (const char *query : {"filter6d available standard", "filter6d available wandor"}) {
        if (answer.isNull())
            host.answers.remove(query);
        else
            host.answers[query] = answer;
    }
    QTEST(FilterCapabilities(host, version).isAvailable(tab), "available");
    QVERIFY(host.callsOf("log").isEmpty());
}

void TestFilterCapabilities::lock_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArray>("answer"); // a null one: the query fails
    QTest::addColumn<bool>("locked");
    QTest::newRow("no locks") << backendVersion(1, 9) << QByteArray("no") << true;
    QTest::newRow("yes does not") << backendVersion(1, 9) << QByteArray("yes") << false;
    QTest::newRow("No in capitals does not") << backendVersion(2, 0) << QByteArray("No") << false;
    QTest::newRow("an empty answer does not") << backendVersion(2, 0) << QByteArray("") << false;
    QTest::newRow("a failure does not") << backendVersion(2, 0) << QByteArray() << false;
    QTest::newRow("1.8 has no lock") << backendVersion(1, 8, 50) << QByteArray("no") << false;
    QTest::newRow("1.9 with patch -2 has no lock") << backendVersion(1, 9, -2) << QByteArray("no") << false;
}

void TestFilterCapabilities::lock()
{
    QFETCH(BackendVersions, version);
    QFETCH(QByteArray, answer);
    if (answer.isNull())
        host.answers.remove("config is_changeable");
    else
        host.answers["config is_changeable"] = answer;
    QTEST(FilterCapabilities(host, version).isLocked(), "locked");
    QVERIFY(host.callsOf("log").isEmpty());
}

void TestFilterCapabilities::presetsOfAllBodies()
{
    host.answers["filter6d preset_desc preset6d_custom"] = "My \"own\" \"\"";
    QStringList found;
    const QVector<FilterPresetEntry> presets = FilterCapabilities(host, backendVersion(1, 12)).presets();
    for (const FilterPresetEntry &preset : presets)
        found << QString::fromUtf8(preset.id) + QLatin1Char('=') + preset.description
                + (preset.forInertialBodies ? QLatin1String("+") : QLatin1String("-"));
    QCOMPARE(found.join(QLatin1String("; ")),
             QStringLiteral("preset6d_default=Default+; preset6d_med_pred=Medium prediction+; "
                            "preset6d_custom=My own -; preset6d_hybrid_custom=Hybrid custom-"));
}

void TestFilterCapabilities::modesOfAllBodies()
{
    QStringList found;
    const QVector<FilterModeEntry> modes = FilterCapabilities(host, backendVersion(1, 12)).modes();
    for (const FilterModeEntry &mode : modes)
        found << QString::fromUtf8(mode.id) + QLatin1Char('=') + mode.description;
    QCOMPARE(found.join(QLatin1String("; ")), QStringLiteral("mode6d_static=Static; mode6d_fast=Fast"));
}

void TestFilterCapabilities::choicesOfABody()
{
    host.answers["filter6d number_of_presets"] = "5"; // the fifth has no identifier
    host.answers["filter6d preset_id t03"] = "preset6d_default"; // again: the later one counts
    host.answers["body filter6d_preset_available standard b01 preset6d_med_pred"] = "false";
    host.answers.remove("body filter6d_preset_available standard b01 preset6d_hybrid_custom");
    host.answers["filter6d preset_desc preset6d_default"] = "\"\"Default\"";
    const FilterChoices expected{{QByteArray("preset6d_default"), QStringLiteral("Default")}};
    QCOMPARE(FilterCapabilities(host, backendVersion(1, 21)).presetsOf("standard b01"), expected);
    const QByteArrayList logged{"Error: Unable to get filter 6d preset id available",
                                "Error: Unable to get filter 6d preset id"};
    QCOMPARE(host.callsOf("log"), logged);
}

void TestFilterCapabilities::sensorsOfBodies_data()
{
    QTest::addColumn<QByteArray>("answer"); // a null one: the query fails
    QTest::addColumn<bool>("hasSensor");
    QTest::newRow("none") << QByteArray("none") << false;
    QTest::newRow("a sensor") << QByteArray("d01 '4711'") << true;
    QTest::newRow("none with a blank") << QByteArray("none ") << true;
    QTest::newRow("an empty answer") << QByteArray("") << true;
    QTest::newRow("a failure") << QByteArray() << false;
}

void TestFilterCapabilities::sensorsOfBodies()
{
    QFETCH(QByteArray, answer);
    if (answer.isNull())
        host.answers.remove("body inertial_sensor standard b01");
    else
        host.answers["body inertial_sensor standard b01"] = answer;
    const QVector<FilterBodyEntry> bodies = FilterCapabilities(host, backendVersion(2, 0)).bodies(0, 0);
    QCOMPARE(bodies.size(), 1);
    QTEST(bodies[0].hasInertialSensor, "hasSensor");
}

void TestFilterCapabilities::numbersOfBodies_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<QString>("name");
    const auto row = [](int tab, int index, const char *id, const char *name) {
        QTest::newRow(id) << tab << index << QByteArray(id) << QString::fromLatin1(name);
    };
    row(0, 6, "standard b07", "standard body 07 (Big hand)");
    row(0, 11, "standard b12", "standard body 12");
    row(0, 99, "standard b100", "standard body 100");
    row(1, 0, "wandor b01", "Wandor body 01");
    row(1, 122, "wandor b123", "Wandor body 123");
}

void TestFilterCapabilities::numbersOfBodies()
{
    QFETCH(int, tab);
    QFETCH(int, index);
    host.answers["body desc standard b07"] = "Big \"hand\"";
    const QVector<FilterBodyEntry> bodies = FilterCapabilities(host, backendVersion(2, 0)).bodies(tab, index);
    QCOMPARE(bodies.size(), 1);
    QTEST(bodies[0].id, "id");
    QTEST(bodies[0].name, "name");
    QVERIFY(tab == 0 || host.calls.isEmpty());
}

void TestFilterCapabilities::otherTablesHaveNoBodies()
{
    QVERIFY(FilterCapabilities(host, backendVersion(2, 0)).bodies(2, 0).isEmpty());
    QVERIFY(FilterCapabilities(host, backendVersion(2, 0)).bodies(-1, -1).isEmpty());
    QVERIFY(host.calls.isEmpty());
}

void TestFilterCapabilities::finiteNumbers_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("finite");
    const double infinity = std::numeric_limits<double>::infinity();
    const double largest = std::numeric_limits<double>::max();
    QTest::newRow("a number is itself") << -0.25 << -0.25;
    QTest::newRow("infinity is the largest number") << infinity << largest;
    QTest::newRow("minus infinity is the lowest number") << -infinity << -largest;
    QTest::newRow("NaN is 0") << std::numeric_limits<double>::quiet_NaN() << 0.0;
}

void TestFilterCapabilities::finiteNumbers()
{
    QFETCH(double, value);
    QFETCH(double, finite);
    QVERIFY(std::isfinite(finiteNumber(value)));
    QVERIFY(finiteNumber(value) == finite);
}

QTEST_APPLESS_MAIN(TestFilterCapabilities)
#include "tst_filtercapabilities.moc"
