// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "host/backendmenu.h"
#include "host/host.h"

#include <QProgressBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

using namespace backend;
using namespace host;

namespace {

enum Column { IdColumn, NameColumn, FilterColumn, SensorColumn, XColumn, BatteryColumn = 10, TemperatureColumn = 11 };

constexpr int patience = 20000; // ms, for a busy machine

const QVector<int> sensorColumns{SensorColumn, BatteryColumn, TemperatureColumn};
const QVector<int> columnsOfLaterVersions{FilterColumn, SensorColumn, BatteryColumn, TemperatureColumn};

/// What the module shows of a scenario. Rows count from 0.
struct Shown {
    QString scenario;
    QStringList rows; ///< each "ID|name|filter|sensor"
    QVector<int> hiddenColumns;
    QVector<int> untracked; ///< rows of bodies that are not calibrated or not active
    QStringList bars; ///< each "row: battery temperature level" at the start of the scenario
    QVector<int> absent; ///< rows of sensors that are not there
    QStringList poses; ///< each "row: x y z rx ry rz" of a body at rest
    int reference = -1; ///< row of the reference body
    QStringList warnings; ///< in the log
};

QStringList crowd()
{
    QStringList rows;
    for (int number = 1; number <= 50; ++number)
        rows.append(QStringLiteral("%1|No. %1||").arg(number));
    return rows;
}

std::vector<Shown> everythingShown()
{
    return {
        {QStringLiteral("default"),
         {QStringLiteral("1|Camera|active|"), QStringLiteral("2|L hand|active|"), QStringLiteral("3|Helmet||A17"),
          QStringLiteral("4|||"), QStringLiteral("5|Spare||"), QStringLiteral("6|Tripod|active|")},
         {},
         {3, 4},
         {QStringLiteral("2: 83 24.5\u00B0C 60")},
         {},
         {QStringLiteral("5: -1200.00 700.00 -12.35 10.00 -20.00 30.00")},
         -1,
         {}},
        {QStringLiteral("crowd"), crowd(), sensorColumns, {}, {}, {}, {}, -1, {}},
        {QStringLiteral("fixed-angles"),
         {QStringLiteral("1|Slide||"), QStringLiteral("2|Cart||A01")},
         {},
         {},
         {QStringLiteral("1: 70 25.0\u00B0C 100")},
         {},
         {},
         -1,
         {QStringLiteral("WARNING: Fixed angles are not compatible with inertial sensors! Mixed setups may cause "
                         "wrong results!!")}},
        {QStringLiteral("heads"),
         {QStringLiteral("MUH|||"), QStringLiteral("2|User 1||"), QStringLiteral("3|User 2||")},
         sensorColumns,
         {},
         {},
         {},
         {},
         -1,
         {}},
        {QStringLiteral("hybrid"),
         {QStringLiteral("1|Sensor|active|A01"), QStringLiteral("2|Custom|active|"), QStringLiteral("3|Plain||")},
         {},
         {},
         {QStringLiteral("0: 90 31.0\u00B0C 100")},
         {},
         {QStringLiteral("2: 500.00 500.00 900.00 0.00 0.00 0.00")},
         -1,
         {}},
        {QStringLiteral("locked"),
         {QStringLiteral("1|Head|active|"), QStringLiteral("2|Hand||")},
         sensorColumns,
         {},
         {},
         {},
         {},
         -1,
         {}},
        {QStringLiteral("no-filter"),
         {QStringLiteral("1|Head||"), QStringLiteral("2|Hand||")},
         sensorColumns,
         {},
         {},
         {},
         {},
         -1,
         {}},
        {QStringLiteral("old-0.12"),
         {QStringLiteral("MUH|||"), QStringLiteral("2|||"), QStringLiteral("3|||")},
         columnsOfLaterVersions,
         {},
         {},
         {},
         {QStringLiteral("2: 100.00 200.00 300.00 0.00 45.00 0.00")},
         -1,
         {}},
        {QStringLiteral("old-1.11"),
         {QStringLiteral("1|Camera||"), QStringLiteral("2|Wand||"), QStringLiteral("3|||")},
         columnsOfLaterVersions,
         {2},
         {},
         {},
         {},
         -1,
         {}},
        {QStringLiteral("old-global-lists"),
         {QStringLiteral("1|Sensor||A01"), QStringLiteral("2|Bare|active|")},
         {},
         {},
         {QStringLiteral("0: 55 22.0\u00B0C 100")},
         {},
         {},
         -1,
         {}},
        {QStringLiteral("reference"),
         {QStringLiteral("1|Tool||"), QStringLiteral("2|Plate|active|"), QStringLiteral("3|Pointer||")},
         sensorColumns,
         {},
         {},
         {},
         {QStringLiteral("1: 0.00 0.00 0.00 0.00 0.00 0.00")},
         1,
         {}},
        {QStringLiteral("sensors"),
         {QStringLiteral("1|Drains||A01"), QStringLiteral("2|Loads||A02"), QStringLiteral("3|Roams||A03"),
          QStringLiteral("4|Absent||A04"), QStringLiteral("5|Plain||")},
         {},
         {},
         {QStringLiteral("0: 30 28.0\u00B0C 100"), QStringLiteral("1: 15 19.0\u00B0C 70"),
          QStringLiteral("2: 95 26.5\u00B0C 100")},
         {3},
         {QStringLiteral("3: -500.00 200.00 900.00 0.00 15.00 0.00"),
          QStringLiteral("4: 700.00 -200.00 850.00 0.00 0.00 0.00")},
         -1,
         {}},
    };
}

bool isLostNowAndThen(const StandardBody &body)
{
    return body.dropouts.period > 0.0;
}

QString text(const QTableWidget &table, int row, int column)
{
    const QTableWidgetItem *item = table.item(row, column);
    return item ? item->text() : QString();
}

QColor background(const QTableWidget &table, int row, int column)
{
    const QBrush brush = table.item(row, column)->background();
    return brush.style() == Qt::NoBrush ? QColor(Qt::transparent) : brush.color();
}

QStringList shownRows(const QTableWidget &table)
{
    QStringList rows;
    for (int row = 0; row < table.rowCount(); ++row) {
        QStringList cells;
        for (const int column : {IdColumn, NameColumn, FilterColumn, SensorColumn})
            cells.append(text(table, row, column));
        rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
}

QString shownPose(const QTableWidget &table, int row)
{
    QStringList cells;
    for (int column = XColumn; column < XColumn + 6; ++column)
        cells.append(text(table, row, column));
    return cells.join(QLatin1Char(' '));
}

QStringList shownPoses(const QTableWidget &table, const QStringList &like)
{
    QStringList poses;
    for (const QString &pose : like) {
        const QString row = pose.section(QLatin1Char(':'), 0, 0);
        poses.append(row + QStringLiteral(": ") + shownPose(table, row.toInt()));
    }
    return poses;
}

QStringList shownBars(const QTableWidget &table)
{
    QStringList bars;
    for (int row = 0; row < table.rowCount(); ++row) {
        const auto *battery = qobject_cast<QProgressBar *>(table.cellWidget(row, BatteryColumn));
        const auto *temperature = qobject_cast<QProgressBar *>(table.cellWidget(row, TemperatureColumn));
        if (battery && temperature && battery->isVisible() && temperature->isVisible()) {
            bars.append(QStringLiteral("%1: %2 %3 %4")
                            .arg(QString::number(row), QString::number(battery->value()), temperature->text(),
                                 QString::number(temperature->value())));
        }
    }
    return bars;
}

QVector<int> shownAsAbsent(const QTableWidget &table)
{
    QVector<int> rows;
    for (int row = 0; row < table.rowCount(); ++row) {
        if (table.item(row, SensorColumn) && background(table, row, SensorColumn) == QColor(Qt::red))
            rows.append(row);
    }
    return rows;
}

QVector<int> hiddenColumns(const QTableWidget &table)
{
    QVector<int> columns;
    for (int column = 0; column < table.columnCount(); ++column) {
        if (table.isColumnHidden(column))
            columns.append(column);
    }
    return columns;
}

} // namespace

/// Each scenario that comes with the host, in the host with the real module.
class TestShippedScenarios : public QObject {
    Q_OBJECT

private slots:
    void init();
    void areAllTried();
    void areShown_data();
    void areShown();
    void followEachOtherInARunningHost();
    void haveNamesThatFitTheirColumn();

private:
    std::unique_ptr<QTemporaryDir> home;
};

void TestShippedScenarios::init()
{
    home = std::make_unique<QTemporaryDir>(); // column widths are kept there
    qputenv("HOME", home->path().toUtf8());
}

void TestShippedScenarios::areAllTried()
{
    QStringList names;
    const std::vector<Shown> all = everythingShown();
    for (const Shown &shown : all)
        names.append(shown.scenario);
    QCOMPARE(names, scenarioNames());
}

void TestShippedScenarios::areShown_data()
{
    QTest::addColumn<std::size_t>("number");
    const std::vector<Shown> all = everythingShown();
    for (std::size_t i = 0; i < all.size(); ++i)
        QTest::newRow(qPrintable(all[i].scenario)) << i;
}

void TestShippedScenarios::areShown()
{
    QFETCH(std::size_t, number);
    const Shown expected = everythingShown().at(number);
    const ScenarioResult loaded = loadScenario(expected.scenario);
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    // The sensors stay as they are at the start; the bodies move on.
    const auto backend =
        std::make_shared<SimulatedBackend>(*loaded.scenario, std::nullopt, [] { return std::chrono::nanoseconds(0); });
    QStringList warnings;
    Host host(HostOptions(), backend, {QStringLiteral(MODULES)});
    connect(&host.log(), &HostLog::entryAdded, this, [&](const LogEntry &entry) {
        if (entry.level > 0)
            warnings.append(entry.text);
    });
    host.window().resize(1280, 560);
    host.window().show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window()));
    const auto *table = host.window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d"));
    QVERIFY(table);

    QTRY_COMPARE(shownRows(*table), expected.rows);
    QTRY_COMPARE_WITH_TIMEOUT(shownBars(*table), expected.bars, patience);
    QCOMPARE(shownAsAbsent(*table), expected.absent);
    QCOMPARE(hiddenColumns(*table), expected.hiddenColumns);
    QTRY_COMPARE_WITH_TIMEOUT(shownPoses(*table, expected.poses), expected.poses, patience);
    const int headRows = text(*table, 0, IdColumn) == QLatin1String("MUH") ? 1 : 0;
    for (int row = 0; row < table->rowCount(); ++row) {
        if (expected.untracked.contains(row)) {
            QCOMPARE(background(*table, row, IdColumn), QColor(Qt::transparent));
            QCOMPARE(shownPose(*table, row), QStringLiteral("- - - - - -"));
        } else if (row >= headRows && !isLostNowAndThen(loaded.scenario->bodies[row - headRows])) {
            QTRY_COMPARE_WITH_TIMEOUT(background(*table, row, IdColumn), QColor(Qt::green), patience);
            QVERIFY(!shownPose(*table, row).contains(QLatin1String("- ")));
        }
        QCOMPARE(background(*table, row, NameColumn), row == expected.reference ? QColor(Qt::blue) : Qt::transparent);
    }
    const auto *markers = host.window().findChild<QTableWidget *>(QStringLiteral("tableWidget3d"));
    QVERIFY(markers);
    QTRY_VERIFY(markers->rowCount() > 0);
    QVERIFY(markers->rowCount() <= loaded.scenario->markers.count);
    QCOMPARE(warnings, expected.warnings);
}

void TestShippedScenarios::followEachOtherInARunningHost()
{
    const auto first = std::make_shared<SimulatedBackend>(*loadScenario(QStringLiteral("default")).scenario);
    Host host(HostOptions(), first, {QStringLiteral(MODULES)});
    host.window().show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window()));
    const std::vector<Shown> all = everythingShown();
    for (auto shown = all.rbegin(); shown != all.rend(); ++shown) {
        QVERIFY(host.window().backendMenu()->choose({shown->scenario, {}}));
        // Another one where the backend is from before, or after, the filter.
        const auto *table = host.window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d"));
        QVERIFY(table);
        QCOMPARE(table->isColumnHidden(FilterColumn), shown->hiddenColumns.contains(FilterColumn));
        QTRY_COMPARE(shownRows(*table), shown->rows);
        // And its lines flow: the first row moves in each of them.
        const QString before = shownPose(*table, 0);
        QTRY_VERIFY_WITH_TIMEOUT(shownPose(*table, 0) != before, patience);
    }
}

void TestShippedScenarios::haveNamesThatFitTheirColumn()
{
    const auto first = std::make_shared<SimulatedBackend>(*loadScenario(QStringLiteral("default")).scenario);
    Host host(HostOptions(), first, {QStringLiteral(MODULES)});
    host.window().show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window()));
    int names = 0;
    for (const Shown &shown : everythingShown()) {
        QVERIFY(host.window().backendMenu()->choose({shown.scenario, {}}));
        const auto *table = host.window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d"));
        QTRY_COMPARE(shownRows(*table), shown.rows);
        const int margins = 2 * (table->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, table) + 1);
        for (int row = 0; row < table->rowCount(); ++row) {
            const QString name = text(*table, row, NameColumn);
            const int width = table->fontMetrics().horizontalAdvance(name) + margins;
            QVERIFY2(width <= table->columnWidth(NameColumn),
                     qPrintable(QStringLiteral("%1: %2 is cut").arg(shown.scenario, name)));
            names += name.isEmpty() ? 0 : 1;
        }
    }
    QVERIFY(names > 70);
}

QTEST_MAIN(TestShippedScenarios)
#include "tst_shippedscenarios.moc"
