// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/panelfixture.h"
#include "tests/display/paneltimers.h"

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

/// Every question there is has an answer, and the output has to be switched on.
struct FullBackend : PanelFixture {
    FullBackend()
    {
        answerBodies(3);
        answerHead();
        answerSensors({1, 3});
        answer("inertial body_of_sensor d01", "none");
        answer("tracking reference", "standard b02");
        answer("output active chmon 6di", "no");
    }

    /// The backend after a restart: its output is off, and the k-th of the next questions and commands fails.
    void restart(int failing = 0)
    {
        answer("output active chmon 6di", "no");
        host.failCall = failing;
    }

    /// All that is seen in the table of bodies, and which of its columns.
    QStringList everything() const
    {
        QStringList texts;
        for (int row = 0; row < table6d().rowCount(); ++row) {
            for (int column = 0; column < Column6dCount; ++column) {
                const QTableWidgetItem *const item = table6d().item(row, column);
                if (item)
                    texts << item->text() + item->background().color().name(QColor::HexArgb) + item->whatsThis();
            }
        }
        for (int column = 0; column < Column6dCount; ++column)
            texts << (table6d().isColumnHidden(column) ? QStringLiteral("hidden") : QStringLiteral("shown"));
        return texts;
    }
};

} // namespace

class TestRebuilding : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void tableIsHiddenMeanwhile_data();
    void tableIsHiddenMeanwhile();
    void anyFailureIsSurvived_data();
    void anyFailureIsSurvived();
    void allFailuresAreSurvived();
    void recordsOfTheOldConfigurationGo();
    void rowsComeAndGo();
    void ticksBetweenTheAnswersMeetWholeRows();
    void oldBackendLeavesTheSensorColumns();
    void clearedPanel();
    void clearedPanelWithoutConfiguration();
    void clearingStopsWhatItsConfigurationStarted_data();
    void clearingStopsWhatItsConfigurationStarted();
    void timerDrawsBothTables();
    void linesArriveMeanwhile();

private:
    PanelTimers timers;
};

void TestRebuilding::initTestCase()
{
    QVERIFY(timers.learn());
}

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
    FullBackend bench;
    bench.createConfiguredPanel().show();
    bench.refuse(command);
    if (!answer.isEmpty())
        bench.answer(command, answer);
    else if (command.isEmpty())
        QVERIFY(!bench.table6d().isColumnHidden(SensorColumn));
    bench.takeCalls();
    const VisibilityWatcher watcher(bench.table6d(), bench.host);
    bench.panel->configurationChanged();
    QVERIFY(bench.table6d().isVisible());
    const QByteArrayList calls = bench.host.takeCalls();
    QCOMPARE(watcher.hiddenAt, QList<int>{calls.indexOf("requestString body desc standard b01")});
    QCOMPARE(watcher.shownAt, QList<int>{calls.size()});

    bench.panel->hide();
    bench.panel->configurationChanged();
    QVERIFY(!bench.table6d().isHidden());
    QVERIFY(!bench.panel->isVisible());
}

void TestRebuilding::anyFailureIsSurvived_data()
{
    QTest::addColumn<int>("failing");
    FullBackend bench;
    bench.createConfiguredPanel();
    bench.restart();
    bench.panel->configurationChanged();
    bench.panel->timerUpdateInertialSensorInfo();
    const int count = bench.host.formats.size();
    QVERIFY(count > 30);
    for (int i = 1; i <= count; ++i)
        QTest::newRow(qPrintable(QStringLiteral("call %1").arg(i))) << i;
}

void TestRebuilding::anyFailureIsSurvived()
{
    QFETCH(const int, failing);
    FullBackend bench;
    bench.createConfiguredPanel().show();
    bench.restart();
    const QStringList calls = bench.reconfigure();
    bench.panel->timerUpdateInertialSensorInfo();
    const QStringList seen = bench.everything();

    bench.restart(failing);
    bench.panel->configurationChanged();
    bench.panel->timerUpdateInertialSensorInfo();
    QVERIFY2(bench.table6d().isVisible(), "the table stayed hidden");
    bench.panel->updateView6d();
    QCOMPARE(bench.send("6di", "6di 0"), 0);

    bench.restart();
    QCOMPARE(bench.reconfigure(), calls);
    bench.panel->timerUpdateInertialSensorInfo();
    QCOMPARE(bench.everything(), seen);
}

void TestRebuilding::allFailuresAreSurvived()
{
    FullBackend bench;
    bench.createConfiguredPanel().show();
    const QStringList calls = bench.reconfigure();
    const auto answers = bench.host.answers;
    bench.host.answers.clear();
    const QStringList logs = PanelFixture::logs(bench.reconfigure());
    QCOMPARE(logs,
             QStringList({QStringLiteral("Error: Unable to get number of bodies"),
                          QStringLiteral("Error: Unable to get info multiuser wandor available"),
                          QStringLiteral("Error: Unable to get fixed angle present"),
                          QStringLiteral("Error: Unable to get info output 6di available")}));
    QCOMPARE(bench.table6d().rowCount(), 0);
    QVERIFY(bench.table6d().isVisible());
    bench.host.answers = answers;
    QCOMPARE(bench.reconfigure(), calls);
}

void TestRebuilding::recordsOfTheOldConfigurationGo()
{
    PanelFixture bench;
    bench.answerBodies(1);
    bench.createConfiguredPanel();
    bench.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3"));
    bench.send("3d", "3d 1 [5 1.0][1 2 3]");
    bench.panel->configurationChanged();
    QCOMPARE(bench.background(0, BodyIdColumn), QBrush(Qt::green)); // drawn once from what there was
    bench.panel->updateView6d();
    bench.panel->updateView3d();
    QCOMPARE(bench.background(0, BodyIdColumn), QBrush(Qt::red));
    QCOMPARE(bench.table3d().rowCount(), 1); // the markers have no configuration
}

void TestRebuilding::rowsComeAndGo()
{
    PanelFixture bench;
    bench.createConfiguredPanel();
    for (const int count : {5, 2, 0, 3}) {
        bench.answerBodies(count);
        bench.panel->configurationChanged();
        QCOMPARE(bench.table6d().rowCount(), count);
        bench.panel->updateView6d();
        bench.send("6di", "6di 1 " + bodyText(4, "2", "1.0", "1 2 3"));
    }
    QCOMPARE(bench.text(2, BodyIdColumn), QStringLiteral("3"));
    bench.answerHead();
    bench.panel->configurationChanged();
    QCOMPARE(bench.text(0, BodyIdColumn), QStringLiteral("MUH"));
    bench.answer("wandor multiuser", "no");
    bench.panel->configurationChanged();
    QCOMPARE(bench.text(0, BodyIdColumn), QStringLiteral("1"));
    QCOMPARE(bench.text(0, NameColumn), QStringLiteral("Body 1"));
}

void TestRebuilding::ticksBetweenTheAnswersMeetWholeRows()
{
    PanelFixture bench;
    bench.answerBodies(2);
    DataDisplay &panel = bench.createConfiguredPanel();
    QCOMPARE(bench.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3")), 0);
    bench.answerBodies(3);
    int ticks = 0;
    bench.host.onCall = [&] {
        panel.updateView6d();
        panel.updateView3d();
        ++ticks;
    };
    panel.configurationChanged();
    bench.host.onCall = nullptr;
    QVERIFY(ticks > 10);
    QCOMPARE(bench.table6d().rowCount(), 3);
    QCOMPARE(bench.send("6di", "6di 1 " + bodyText(2, "2", "1.0", "4 5 6")), 0);
    panel.updateView6d();
    QCOMPARE(bench.text(2, XColumn), QStringLiteral("4.00"));
}

void TestRebuilding::oldBackendLeavesTheSensorColumns()
{
    FullBackend bench;
    bench.createConfiguredPanel();
    QVERIFY(!bench.table6d().isColumnHidden(BatteryColumn));
    bench.versions.backendMinor = 11;
    const QStringList calls = bench.reconfigure();
    QCOMPARE(calls.filter(QStringLiteral("inertial")), QStringList());
    QCOMPARE(calls.filter(QStringLiteral("filter6d")), QStringList());
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        QVERIFY(!bench.table6d().isColumnHidden(column));
    for (int row = 0; row < bench.table6d().rowCount(); ++row)
        QCOMPARE(bench.text(row, FilterColumn), QString());
    QCOMPARE(bench.table6d().item(1, SensorColumn)->data(Qt::UserRole), QVariant(QStringLiteral("none")));
    bench.takeCalls();
    bench.panel->timerUpdateInertialSensorInfo();
    QCOMPARE(bench.takeCalls(), QStringList());
}

void TestRebuilding::clearedPanel()
{
    FullBackend bench;
    bench.createConfiguredPanel();
    bench.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3"));
    bench.send("3d", "3d 1 [5 1.0][1 2 3]");
    bench.panel->updateView3d();
    bench.panel->clearData();
    QCOMPARE(bench.takeCalls(), QStringList());
    QCOMPARE(bench.table6d().rowCount(), 0);
    QCOMPARE(bench.table3d().rowCount(), 0);
    QVERIFY(!bench.table6d().isHidden());
    bench.panel->updateView6d();
    bench.panel->updateView3d();
    QCOMPARE(bench.table3d().rowCount(), 0);
    bench.panel->timerUpdateInertialSensorInfo();
    QCOMPARE(bench.takeCalls(), QStringList());

    QSignalSpy firstBodies(bench.panel.get(), &DataDisplay::shallUpdateView6d);
    bench.send("6di", "6di 0");
    QCOMPARE(firstBodies.count(), 0); // the configuration's first bodies came before
    bench.panel->configurationChanged();
    bench.panel->clearData();
    bench.send("6di", "6di 0");
    QCOMPARE(firstBodies.count(), 1); // clearing doesn't take back that there is a new configuration
    bench.panel->configurationChanged();
    QCOMPARE(bench.table6d().rowCount(), 4);
    QCOMPARE(bench.background(0, BodyIdColumn), QBrush(Qt::red)); // nothing of before is left
}

void TestRebuilding::clearedPanelWithoutConfiguration()
{
    PanelFixture bench;
    bench.createPanel();
    bench.takeCalls();
    bench.panel->clearData();
    bench.panel->timerUpdateInertialSensorInfo();
    bench.panel->updateInertialSensorInfo(true);
    bench.panel->onUpdateFilterActiveStatus(0);
    bench.panel->updateView6d();
    QCOMPARE(bench.takeCalls(), QStringList());
}

void TestRebuilding::clearingStopsWhatItsConfigurationStarted_data()
{
    QTest::addColumn<QString>("command"); // of the last configuration before, answered with "none"
    QTest::addColumn<bool>("stopped");
    QTest::newRow("a sensor on a body") << "" << true;
    QTest::newRow("sensors are no longer available") << "inertial available" << false;
    QTest::newRow("no sensor is on a body any more") << "inertial body_of_sensor d02" << false;
}

void TestRebuilding::clearingStopsWhatItsConfigurationStarted()
{
    QFETCH(const QString, command);
    QFETCH(const bool, stopped);
    FullBackend bench;
    const DataDisplay &panel = bench.createConfiguredPanel();
    if (!command.isEmpty())
        bench.answer(command, QStringLiteral("none"));
    bench.panel->configurationChanged();
    QVERIFY(timers.sensorTimer(panel).isActive());
    bench.panel->clearData();
    QVERIFY(!timers.viewTimer(panel).isActive());
    // The polling is the configuration's that found the sensor: one that finds none takes no notice of it.
    QCOMPARE(timers.sensorTimer(panel).isActive(), !stopped);
}

void TestRebuilding::timerDrawsBothTables()
{
    PanelFixture bench;
    bench.answerBodies(1);
    bench.createConfiguredPanel();
    bench.send("6di", "6di 0");
    QCoreApplication::processEvents(); // the redraw that the first line asks for
    bench.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "8 2 3"));
    bench.send("3d", "3d 1 [5 1.0][9 2 3]");
    QTRY_COMPARE(bench.text(0, XColumn), QStringLiteral("8.00"));
    QTRY_COMPARE(bench.table3d().rowCount(), 1);
    QCOMPARE(bench.table3d().item(0, 1)->text(), QStringLiteral("9.00"));
}

void TestRebuilding::linesArriveMeanwhile()
{
    FullBackend bench;
    bench.createConfiguredPanel();
    std::atomic<bool> done{false};
    std::atomic<int> refused{0};
    std::thread sender([&] {
        const QByteArray bodies = "6di 4 " + bodyText(0, "3", "1.0", "1 2 3") + bodyText(1, "3", "1.0", "1 2 3")
            + bodyText(2, "2", "-1.0", "1 2 3") + bodyText(3, "1", "1.0", "1 2 3");
        const QByteArray oldBodies = "6d 1 [0 1.0][1 2 3 0 0 0][1 0 0 0 1 0 0 0 1]";
        while (!done) {
            refused += bench.send("6di", bodies) != 0;
            refused += bench.send("6d", oldBodies) != 0;
            refused += bench.send("3d", "3d 2 [5 1.0][1 2 3] [6 1.0][4 5 6]") != 0;
            refused += bench.send("6di", "6di 0") != 0;
            refused += bench.send("3d", "3d 0") != 0;
        }
    });
    for (int round = 0; round < 60; ++round) {
        bench.answer("standard fixed_angle_present", round % 3 == 0 ? "true" : "false");
        bench.panel->configurationChanged();
        bench.panel->updateView6d();
        bench.panel->updateView3d();
        bench.panel->timerUpdateInertialSensorInfo();
        QCoreApplication::processEvents();
        if (round % 4 == 3)
            bench.panel->clearData();
    }
    done = true;
    sender.join();
    QCOMPARE(refused.load(), 0);

    bench.answer("standard fixed_angle_present", "false");
    bench.panel->configurationChanged();
    QCOMPARE(bench.send("6di", "6di 1 " + bodyText(1, "2", "1.0", "12 2 3")), 0);
    bench.panel->updateView6d();
    QCOMPARE(bench.text(1, XColumn), QStringLiteral("12.00"));
}

QTEST_MAIN(TestRebuilding)
#include "tst_rebuilding.moc"
