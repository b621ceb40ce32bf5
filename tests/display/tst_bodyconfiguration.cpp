// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/bodyconfiguration.h"
#include "interface/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

#include <utility>

namespace {

struct Answer {
    const char *question;
    const char *answer;
};

/// A backend with two bodies of which the second has a sensor, a filter and the reference, and no head target.
const std::initializer_list<Answer> backend = {
    {"standard number_of_bodies", "2"},
    {"wandor multiuser_available", "no"},
    {"standard fixed_angle_present", "false"},
    {"body calibrated standard b01", "yes"},
    {"body calibrated standard b02", "yes"},
    {"body active standard b01", "no"},
    {"body active standard b02", "yes"},
    {"body desc standard b01", "\"Left\""},
    {"body desc standard b02", " Right "},
    {"body filter6d_enabled standard b01", "no"},
    {"body filter6d_enabled standard b02", "yes"},
    {"body inertial_sensor standard b01", "none"},
    {"body inertial_sensor standard b02", "inertial d01 '7'"},
    {"tracking reference", "standard b02"},
    {"inertial available", "yes"},
    {"inertial number_of_sensors", "1"},
    {"inertial sensor d01", "d01"},
    {"inertial body_of_sensor d01", "standard b02"},
};

const std::initializer_list<Answer> headTarget = {
    {"wandor multiuser_available", "yes"},
    {"wandor multiuser", "yes"},
    {"wandor multiuser_with_head_available", "yes"},
    {"wandor multiuser_with_head", "yes"},
    {"body number_of_bodies multiuserwandor_head", "1"},
    {"body calibrated multiuserwandor_head b01", "yes"},
    {"body active multiuserwandor_head b01", "yes"},
};

void answer(ScriptedHost &host, std::initializer_list<Answer> answers)
{
    for (const Answer &entry : answers)
        host.answers.insert(entry.question, entry.answer);
}

BackendVersions version(int minor, int major = 1)
{
    BackendVersions versions;
    versions.backendMajor = major;
    versions.backendMinor = minor;
    return versions;
}

QByteArray yesNo(bool flag)
{
    return flag ? "yes" : "no";
}

/// One line for a configuration, so that a row of a table can say what is expected.
QByteArray inWords(const BodyConfiguration &bodies)
{
    QByteArray text = QByteArray::number(bodies.numBodies) + " bodies";
    if (bodies.hasHeadRow)
        text += ", head";
    if (bodies.fixedAnglePresent)
        text += ", fixed angles";
    for (const BodyRow &row : bodies.rows) {
        text += "; " + yesNo(row.calibrated) + ' ' + yesNo(row.active) + " [" + row.name.toUtf8() + "] "
            + yesNo(row.filterActive) + ' ' + row.sensor;
    }
    if (bodies.referenceRow != BodyConfiguration::noReference)
        text += "; reference " + QByteArray::number(bodies.referenceRow) + ' ' + bodies.referenceName.toUtf8();
    if (bodies.inertialAvailable)
        text += bodies.inertialInUse ? "; sensors in use" : "; sensors";
    return text;
}

} // namespace

/// What the panel learns from the backend, as a value and without a window.
class TestBodyConfiguration : public QObject {
    Q_OBJECT

private slots:
    void read_data();
    void read();
    void numberOfBodies_data();
    void numberOfBodies();
    void pausesBetweenTheQuestions();
    void givenUpAfterEachAnswer_data();
    void givenUpAfterEachAnswer();
    void sensorKeepsItsBytes();
};

void TestBodyConfiguration::read_data()
{
    QTest::addColumn<int>("minor");
    QTest::addColumn<bool>("withHead");
    QTest::addColumn<QByteArray>("question"); // answered otherwise
    QTest::addColumn<QByteArray>("answered");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, int minor, bool head, const char *question, const char *answered,
                        const char *expected) {
        QTest::newRow(name) << minor << head << QByteArray(question) << QByteArray(answered) << QByteArray(expected);
    };
    row("everything", 24, false, "", "",
        "2 bodies; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; reference 1 Right; sensors in use");
    row("a head target leads", 24, true, "", "",
        "2 bodies, head; yes yes [] no none; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; "
        "reference 2 Right; sensors in use");
    row("a head target that is not ready", 24, true, "body active multiuserwandor_head b01", "no",
        "2 bodies, head; no yes [] no none; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; "
        "reference 2 Right; sensors in use");
    row("no reference before 1.24", 23, false, "", "",
        "2 bodies; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; sensors in use");
    row("no filters and sensors before 1.12", 11, false, "", "",
        "2 bodies; yes no [Left] no none; yes yes [ Right ] no none");
    row("fixed angles", 24, false, "standard fixed_angle_present", "true",
        "2 bodies, fixed angles; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; reference 1 Right; "
        "sensors in use");
    row("a body that is not calibrated has no name and no filter", 24, false, "body calibrated standard b02", "no",
        "2 bodies; yes no [Left] no none; no yes [] no inertial d01 '7'; reference 1 reference; sensors in use");
    row("sensors without bodies", 24, false, "inertial body_of_sensor d01", "none",
        "2 bodies; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; reference 1 Right; sensors");
    row("no sensors", 24, false, "inertial available", "Yes",
        "2 bodies; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; reference 1 Right");
    row("a reference beyond the bodies", 24, false, "tracking reference", "standard b07",
        "2 bodies; yes no [Left] no none; yes yes [ Right ] yes inertial d01 '7'; reference 6 reference; "
        "sensors in use");
    row("no bodies", 24, false, "standard number_of_bodies", "0", "0 bodies; reference 1 reference; sensors in use");
    row("fewer than no bodies", 24, true, "standard number_of_bodies", "-1",
        "-1 bodies, head; reference 2 reference; sensors in use");
}

void TestBodyConfiguration::read()
{
    QFETCH(const int, minor);
    QFETCH(const bool, withHead);
    QFETCH(const QByteArray, question);
    QFETCH(const QByteArray, answered);
    QFETCH(const QByteArray, expected);
    ScriptedHost host;
    answer(host, backend);
    if (withHead)
        answer(host, headTarget);
    if (!question.isEmpty())
        host.answers.insert(question, answered);
    const auto bodies = readBodyConfiguration(host, version(minor));
    QVERIFY(bodies.has_value());
    QCOMPARE(inWords(*bodies), expected);
    QCOMPARE(host.callsOf("log"), QByteArrayList());
}

void TestBodyConfiguration::numberOfBodies_data()
{
    QTest::addColumn<bool>("withHead");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("number");
    QTest::newRow("rows count from 0, bodies from 1") << false << 0 << 1;
    QTest::newRow("the third row") << false << 2 << 3;
    QTest::newRow("the first body below a head row") << true << 1 << 1;
}

void TestBodyConfiguration::numberOfBodies()
{
    QFETCH(const bool, withHead);
    QFETCH(const int, row);
    BodyConfiguration bodies;
    bodies.hasHeadRow = withHead;
    QTEST(bodies.bodyNumberOfRow(row), "number");
    QCOMPARE(bodies.isHeadRow(0), withHead);
    QVERIFY(!bodies.isHeadRow(1));
}

void TestBodyConfiguration::pausesBetweenTheQuestions()
{
    ScriptedHost host;
    answer(host, backend);
    QByteArrayList pauses;
    ConfigurationSteps steps;
    steps.layoutRead = [&](const BodyConfiguration &layout) {
        pauses << "after " + host.calls.last() + ", rows: " + QByteArray::number(layout.rows.size());
    };
    steps.listsRead = [&] { pauses << "after " + host.calls.last(); };
    QVERIFY(readBodyConfiguration(host, version(24), steps).has_value());
    QCOMPARE(pauses,
             QByteArrayList({"after requestBool standard fixed_angle_present, rows: 2",
                             "after requestString body active standard b02"}));
}

void TestBodyConfiguration::givenUpAfterEachAnswer_data()
{
    QTest::addColumn<int>("answers");
    ScriptedHost host;
    answer(host, backend);
    answer(host, headTarget);
    readBodyConfiguration(host, version(24));
    QVERIFY(host.calls.size() > 20);
    for (int i = 1; i <= host.calls.size(); ++i)
        QTest::addRow("after %s", host.calls.at(i - 1).constData()) << i;
}

void TestBodyConfiguration::givenUpAfterEachAnswer()
{
    QFETCH(const int, answers);
    ScriptedHost host;
    answer(host, backend);
    answer(host, headTarget);
    ConfigurationSteps steps;
    steps.isWanted = [&] { return host.calls.size() < answers; };
    QVERIFY(!readBodyConfiguration(host, version(24), steps).has_value());
    QCOMPARE(host.calls.size(), answers); // nothing is asked in vain
}

void TestBodyConfiguration::sensorKeepsItsBytes()
{
    ScriptedHost host;
    answer(host, backend);
    host.answers.insert("body inertial_sensor standard b02", "d\xE4 \xFF 'x'");
    const auto bodies = readBodyConfiguration(host, version(24));
    QVERIFY(bodies.has_value());
    QCOMPARE(bodies->rows.at(1).sensor, QByteArray("d\xE4 \xFF 'x'"));
}

QTEST_APPLESS_MAIN(TestBodyConfiguration)
#include "tst_bodyconfiguration.moc"
