// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/replay.h"
#include "backend/simulatedbackend.h"
#include "host/host.h"

#include <QFile>
#include <QTableWidget>
#include <QTest>

#include <array>
#include <cmath>

using namespace backend;
using namespace host;

namespace {

using Row = std::array<double, 6>; // x, y, z [mm], rx, ry, rz [deg], as the 6DOF table shows them

constexpr double degreesPerRadian = 57.29577951308232;

/// The row that the display has to show for a line "timestamp tx ty tz qx qy qz qw", worked out here from the
/// quaternion's rotation matrix (K. Shoemake, Animating Rotation with Quaternion Curves, SIGGRAPH 1985).
Row rowOf(const QList<QByteArray> &fields)
{
    std::array<double, 8> n{};
    for (std::size_t i = 0; i < n.size(); ++i)
        n[i] = fields.at(static_cast<int>(i)).toDouble();
    const double length = std::sqrt(n[4] * n[4] + n[5] * n[5] + n[6] * n[6] + n[7] * n[7]);
    const double x = n[4] / length;
    const double y = n[5] / length;
    const double z = n[6] / length;
    const double w = n[7] / length;
    const double r00 = 1 - 2 * (y * y + z * z);
    const double r01 = 2 * (x * y - z * w);
    const double r02 = 2 * (x * z + y * w);
    const double r12 = 2 * (y * z - x * w);
    const double r22 = 1 - 2 * (x * x + y * y);
    return {n[1] * 1000,
            n[2] * 1000,
            n[3] * 1000,
            -std::atan2(r12, r22) * degreesPerRadian,
            std::asin(r02) * degreesPerRadian,
            -std::atan2(r01, r00) * degreesPerRadian};
}

QVector<Row> rowsOfFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QVector<Row> rows;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().simplified();
        if (!line.isEmpty() && !line.startsWith('#'))
            rows.append(rowOf(line.split(' ')));
    }
    return rows;
}

QString shownText(const QTableWidget &table)
{
    QStringList texts;
    for (int column = 4; column <= 9; ++column)
        texts.append(table.item(0, column)->text());
    return texts.join(QLatin1Char(' '));
}

bool isShownAs(const Row &row, const QString &text)
{
    const QStringList texts = text.split(QLatin1Char(' '));
    for (std::size_t i = 0; i < row.size(); ++i) {
        // Two decimals are shown, so that half of the last one is the display's own.
        const double tolerance = i < 3 ? 0.01 : 0.005 + 0.001;
        if (std::abs(texts.at(static_cast<int>(i)).toDouble() - row[i]) > tolerance)
            return false;
    }
    return true;
}

} // namespace

class TestReplay : public QObject {
    Q_OBJECT

private slots:
    void showsTheRecordedPoses();
};

void TestReplay::showsTheRecordedPoses()
{
    const QVector<Row> rows = rowsOfFile(QStringLiteral(TRAJECTORY));
    QVERIFY(rows.size() > 2000);
    const ScenarioResult replay = replayScenario({QStringLiteral(TRAJECTORY)});
    QVERIFY2(replay.scenario, qPrintable(replay.error));
    Host host(HostOptions(), std::make_shared<SimulatedBackend>(*replay.scenario), {QStringLiteral(MODULES)});
    host.window().show();
    const auto *table = host.window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d"));
    QVERIFY(table);
    QTRY_COMPARE(table->rowCount(), 1);

    QString shown = shownText(*table);
    int place = 0;
    for (int frame = 0; frame < 15; ++frame) {
        QTRY_VERIFY(shownText(*table) != shown);
        shown = shownText(*table);
        // From the last place on, so that the poses are shown in their order, too.
        while (place < rows.size() && !isShownAs(rows[place], shown))
            ++place;
        QVERIFY2(place < rows.size(), qPrintable(QStringLiteral("not in the file from there on: ") + shown));
    }
}

QTEST_MAIN(TestReplay)
#include "tst_replay.moc"
