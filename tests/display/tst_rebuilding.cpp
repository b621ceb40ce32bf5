// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/fullbackend.h"

#include <QtTest>

#include <atomic>
#include <thread>

namespace {

/// Notes at which of the host's calls a widget was hidden and shown by its panel.
class VisibilityWatcher : public QObject {
public:
    VisibilityWatcher(QWidget &widget, const ScriptedHost &watchedHost)
        : host(watchedHost)
    {
        widget.installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::HideToParent)
            hiddenAt << host.calls.size();
        if (event->type() == QEvent::ShowToParent)
            shownAt << host.calls.size();
        return false;
    }

    QList<int> hiddenAt;
    QList<int> shownAt;

private:
    const ScriptedHost &host;
};

} // namespace

class TestRebuilding : public QObject {
    Q_OBJECT

private slots:
    void tableIsHiddenMeanwhile_data();
    void tableIsHiddenMeanwhile();
    void anyFailureIsSurvived_data();
    void anyFailureIsSurvived();
    void allFailuresAreSurvived();
    void recordsOfTheOldConfigurationGo();
    void rowsComeAndGo();
    void ticksBetweenTheAnswersMeetWholeRows();
    void oldBackendLeavesTheSensorColumns();
    void timerDrawsBothTables();
    void linesArriveMeanwhile();
};

void TestRebuilding::tableIsHiddenMeanwhile_data()
{
    QTest::addColumn<QString>("command"); // answered differently
    QTest::addColumn<QString>("answer"); // "": it fails
    QTest::newRow("with a sensor on a body") << ""
                                             << "";
    QTest::newRow("sensors are not available") << "inertial available"
                                               << "no";
    QTest::newRow("whether there are sensors fails") << "inertial available"
                                                     << "";
    QTest::newRow("no sensors") << "inertial number_of_sensors"
                                << "0";
    QTest::newRow("the number of sensors fails") << "inertial number_of_sensors"
                                                 << "";
    QTest::newRow("the first sensor fails") << "inertial sensor d01"
                                            << "";
    QTest::newRow("the second sensor fails") << "inertial sensor d02"
                                             << "";
    QTest::newRow("no sensor on a body") << "inertial body_of_sensor d02"
                                         << "none";
}

void TestRebuilding::tableIsHiddenMeanwhile()
{
    QFETCH(const QString, command);
    QFETCH(const QString, answer);
    FullBackend fixture;
    fixture.createConfiguredPanel().show();
    fixture.refuse(command);
    if (!answer.isEmpty())
        fixture.answer(command, answer);
    else if (command.isEmpty())
        QVERIFY(!fixture.table6d().isColumnHidden(SensorColumn));
    fixture.takeCalls();
    const VisibilityWatcher watcher(fixture.table6d(), fixture.host);
    fixture.panel->configurationChanged();
    QVERIFY(fixture.table6d().isVisible());
    const QByteArrayList calls = fixture.host.takeCalls();
    QCOMPARE(watcher.hiddenAt, QList<int>{calls.indexOf("requestString body desc standard b01")});
    QCOMPARE(watcher.shownAt, QList<int>{calls.size()});

    fixture.panel->hide();
    fixture.panel->configurationChanged();
    QVERIFY(!fixture.table6d().isHidden());
    QVERIFY(!fixture.panel->isVisible());
}

void TestRebuilding::anyFailureIsSurvived_data()
{
    QTest::addColumn<int>("failing");
    FullBackend fixture;
    fixture.createConfiguredPanel();
    fixture.restart();
    fixture.panel->configurationChanged();
    fixture.panel->timerUpdateInertialSensorInfo();
    const int count = fixture.host.formats.size();
    QVERIFY(count > 30);
    for (int i = 1; i <= count; ++i)
        QTest::newRow(qPrintable(QStringLiteral("call %1").arg(i))) << i;
}

void TestRebuilding::anyFailureIsSurvived()
{
    QFETCH(const int, failing);
    FullBackend fixture;
    fixture.createConfiguredPanel().show();
    fixture.restart();
    const QStringList calls = fixture.reconfigure();
    fixture.panel->timerUpdateInertialSensorInfo();
    const QStringList seen = fixture.everything();

    fixture.restart(failing);
    fixture.panel->configurationChanged();
    fixture.panel->timerUpdateInertialSensorInfo();
    QVERIFY2(fixture.table6d().isVisible(), "the table stayed hidden");
    fixture.panel->updateView6d();
    QCOMPARE(fixture.send("6di", "6di 0"), 0);

    fixture.restart();
    QCOMPARE(fixture.reconfigure(), calls);
    fixture.panel->timerUpdateInertialSensorInfo();
    QCOMPARE(fixture.everything(), seen);
}

void TestRebuilding::allFailuresAreSurvived()
{
    FullBackend fixture;
    fixture.createConfiguredPanel().show();
    const QStringList calls = fixture.reconfigure();
    const auto answers = fixture.host.answers;
    fixture.host.answers.clear();
    const QStringList logs = PanelFixture::logs(fixture.reconfigure());
    QCOMPARE(logs,
             QStringList({QStringLiteral("Error: Unable to get number of bodies"),
                          QStringLiteral("Error: Unable to get info multiuser wandor available"),
                          QStringLiteral("Error: Unable to get fixed angle present"),
                          QStringLiteral("Error: Unable to get info output 6di available")}));
    QCOMPARE(fixture.table6d().rowCount(), 0);
    QVERIFY(fixture.table6d().isVisible());
    fixture.host.answers = answers;
    QCOMPARE(fixture.reconfigure(), calls);
}

void TestRebuilding::recordsOfTheOldConfigurationGo()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.createConfiguredPanel();
    fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3"));
    fixture.send("3d", "3d 1 [5 1.0][1 2 3]");
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.background(0, BodyIdColumn), QBrush(Qt::green)); // drawn once from what there was
    fixture.panel->updateView6d();
    fixture.panel->updateView3d();
    QCOMPARE(fixture.background(0, BodyIdColumn), QBrush(Qt::red));
    QCOMPARE(fixture.table3d().rowCount(), 1); // the markers have no configuration
}

void TestRebuilding::rowsComeAndGo()
{
    PanelFixture fixture;
    fixture.createConfiguredPanel();
    for (const int count : {5, 2, 0, 3}) {
        fixture.answerBodies(count);
        fixture.panel->configurationChanged();
        QCOMPARE(fixture.table6d().rowCount(), count);
        fixture.panel->updateView6d();
        fixture.send("6di", "6di 1 " + bodyText(4, "2", "1.0", "1 2 3"));
    }
    QCOMPARE(fixture.text(2, BodyIdColumn), QStringLiteral("3"));
    fixture.answerHead();
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.text(0, BodyIdColumn), QStringLiteral("MUH"));
    fixture.answer("wandor multiuser", "no");
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.text(0, BodyIdColumn), QStringLiteral("1"));
    QCOMPARE(fixture.text(0, NameColumn), QStringLiteral("Body 1"));
}

void TestRebuilding::ticksBetweenTheAnswersMeetWholeRows()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3")), 0);
    fixture.answerBodies(3);
    int ticks = 0;
    fixture.host.onCall = [&] {
        panel.updateView6d();
        panel.updateView3d();
        ++ticks;
    };
    panel.configurationChanged();
    fixture.host.onCall = nullptr;
    QVERIFY(ticks > 10);
    QCOMPARE(fixture.table6d().rowCount(), 3);
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(2, "2", "1.0", "4 5 6")), 0);
    panel.updateView6d();
    QCOMPARE(fixture.text(2, XColumn), QStringLiteral("4.00"));
}

void TestRebuilding::oldBackendLeavesTheSensorColumns()
{
    FullBackend fixture;
    fixture.createConfiguredPanel();
    QVERIFY(!fixture.table6d().isColumnHidden(BatteryColumn));
    fixture.versions.backendMinor = 11;
    const QStringList calls = fixture.reconfigure();
    QCOMPARE(calls.filter(QStringLiteral("inertial")), QStringList());
    QCOMPARE(calls.filter(QStringLiteral("filter6d")), QStringList());
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        QVERIFY(!fixture.table6d().isColumnHidden(column));
    for (int row = 0; row < fixture.table6d().rowCount(); ++row)
        QCOMPARE(fixture.text(row, FilterColumn), QString());
    QCOMPARE(fixture.table6d().item(1, SensorColumn)->data(Qt::UserRole), QVariant(QStringLiteral("none")));
    fixture.takeCalls();
    fixture.panel->timerUpdateInertialSensorInfo();
    QCOMPARE(fixture.takeCalls(), QStringList());
}

void TestRebuilding::timerDrawsBothTables()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.createConfiguredPanel();
    fixture.send("6di", "6di 0");
    QCoreApplication::processEvents(); // the redraw that the first line asks for
    fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "8 2 3"));
    fixture.send("3d", "3d 1 [5 1.0][9 2 3]");
    QTRY_COMPARE(fixture.text(0, XColumn), QStringLiteral("8.00"));
    QTRY_COMPARE(fixture.table3d().rowCount(), 1);
    QCOMPARE(fixture.table3d().item(0, 1)->text(), QStringLiteral("9.00"));
}

void TestRebuilding::linesArriveMeanwhile()
{
    FullBackend fixture;
    fixture.createConfiguredPanel();
    std::atomic<bool> done{false};
    std::atomic<int> refused{0};
    std::thread sender([&] {
        const QByteArray bodies = "6di 4 " + bodyText(0, "3", "1.0", "1 2 3") + bodyText(1, "3", "1.0", "1 2 3")
            + bodyText(2, "2", "-1.0", "1 2 3") + bodyText(3, "1", "1.0", "1 2 3");
        const QByteArray oldBodies = "6d 1 [0 1.0][1 2 3 0 0 0][1 0 0 0 1 0 0 0 1]";
        while (!done) {
            refused += fixture.send("6di", bodies) != 0;
            refused += fixture.send("6d", oldBodies) != 0;
            refused += fixture.send("3d", "3d 2 [5 1.0][1 2 3] [6 1.0][4 5 6]") != 0;
            refused += fixture.send("6di", "6di 0") != 0;
            refused += fixture.send("3d", "3d 0") != 0;
        }
    });
    for (int round = 0; round < 60; ++round) {
        fixture.answer("standard fixed_angle_present", round % 3 == 0 ? "true" : "false");
        fixture.panel->configurationChanged();
        fixture.panel->updateView6d();
        fixture.panel->updateView3d();
        fixture.panel->timerUpdateInertialSensorInfo();
        QCoreApplication::processEvents();
        if (round % 4 == 3)
            fixture.panel->clearData();
    }
    done = true;
    sender.join();
    QCOMPARE(refused.load(), 0);

    fixture.answer("standard fixed_angle_present", "false");
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(1, "2", "1.0", "12 2 3")), 0);
    fixture.panel->updateView6d();
    QCOMPARE(fixture.text(1, XColumn), QStringLiteral("12.00"));
}

QTEST_MAIN(TestRebuilding)
#include "tst_rebuilding.moc"
