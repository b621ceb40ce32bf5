// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/ownprocess.h"
#include "tests/support/heap.h"
#include "tests/support/panelfixture.h"
#include "tests/support/repetitions.h"
#include "tests/support/sanitizers.h"

#include <QLoggingCategory>
#include <QMap>
#include <QtTest>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <numeric>
#include <thread>

namespace {

constexpr long always = std::numeric_limits<long>::max();
constexpr int bodyCount = 4;

QByteArray bodyLine(bool inertial, int count)
{
    QByteArray line = (inertial ? "6di " : "6d ") + QByteArray::number(count);
    for (int i = 0; i < count; ++i)
        line += bodyText(i, inertial ? "2" : "", "1.0", inertial ? "1 2 3" : "1 2 3 0 0 0");
    return line;
}

QByteArray markerLine(int count)
{
    QByteArray line = "3d " + QByteArray::number(count);
    for (int i = 0; i < count; ++i)
        line += "[" + QByteArray::number(i) + " 1.0][1 2 3]";
    return line;
}

struct Outcome {
    int result = 1;
    long allocations = 0;
};

/// Delivers a line on a thread of its own, whose allocations from number \a first to \a last fail.
Outcome deliver(DataDisplay &panel, const char *tag, const QByteArray &line, long first = 0, long last = 0)
{
    Outcome outcome;
    std::thread([&] {
        const FailingHeap heap(first, last);
        outcome.result = panel.processOutput(tag, line.constData());
        outcome.allocations = FailingHeap::count();
    }).join();
    return outcome;
}

quint64 accounted(const DataDisplay &panel)
{
    return panel.storedLines() + panel.droppedLines() + panel.ignoredLines();
}

/// The rows whose x coordinate the 6DOF table was told of. Allocates nothing.
struct ToldRows {
    std::array<bool, bodyCount> rows{};

    void watch(const QTableWidget &table)
    {
        QObject::connect(table.model(), &QAbstractItemModel::dataChanged, &table,
                         [this](const QModelIndex &first, const QModelIndex &last) {
                             if (first.column() > XColumn || last.column() < XColumn)
                                 return;
                             for (int row = first.row(); row <= last.row(); ++row)
                                 rows[static_cast<std::size_t>(row)] = true;
                         });
    }
    bool areAll() const
    {
        return std::all_of(rows.begin(), rows.end(), [](bool told) { return told; });
    }
};

/// What became of a process in which one allocation of the GUI thread failed.
struct Fate {
    enum Stage { Struck, DataThread, Ticks, NextConfiguration, Done };

    Stage stage = Struck; ///< how far it came
    long allocations = 0; ///< of the call, in all
    CrashReport crash;
};

/// What comes after \a act when its \a k-th allocation fails: lines, the ticks of the timers, the backend anew.
/// Keeps the \a fate up to date.
void liveOn(PanelFixture &fixture, const std::function<void()> &act, bool isRedraw, long k, Fate &fate)
{
    DataDisplay &panel = *fixture.panel;
    ToldRows told;
    told.watch(fixture.table6d());
    {
        const FailingHeap heap(k, k);
        act();
        fate.allocations = FailingHeap::count();
    }

    fate.stage = Fate::DataThread;
    const quint64 stored = panel.storedLines();
    const bool taken = deliver(panel, "6di", bodyLine(true, bodyCount)).result == 0
        && deliver(panel, "3d", markerLine(4)).result == 0 && panel.storedLines() == stored + 2;
    if (!taken)
        return;

    fate.stage = Fate::Ticks;
    panel.updateView6d();
    panel.updateView3d();
    panel.timerUpdateInertialSensorInfo();
    if (isRedraw && !(told.areAll() && fixture.text(bodyCount - 1, XColumn) == QLatin1String("1.00")))
        return; // a cell that shows another number than it has

    fate.stage = Fate::NextConfiguration;
    panel.clearData();
    panel.configurationChanged();
    const QTableWidget &table = fixture.table6d();
    if (table.rowCount() == bodyCount && !table.isHidden() && fixture.text(0, XColumn) == QLatin1String("-"))
        fate.stage = Fate::Done;
}

/// Does so in a process of its own.
Fate strike(PanelFixture &fixture, const std::function<void()> &act, bool isRedraw, long k)
{
    return inOwnProcess<Fate>([&](Fate &fate) { liveOn(fixture, act, isRedraw, k, fate); });
}

} // namespace

/// The heap is exhausted, for one allocation or from it on, at every allocation there is.
class TestAllocation : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void line_data();
    void line();
    void guiThread_data();
    void guiThread();
};

void TestAllocation::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
}

void TestAllocation::line_data()
{
    QTest::addColumn<bool>("inertial");
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("first"); // after the configuration
    QTest::newRow("the store of bodies is made")
        << true << QByteArray("6di") << QByteArray() << bodyLine(true, 4) << false;
    QTest::newRow("the store of bodies grows")
        << true << QByteArray("6di") << bodyLine(true, 4) << bodyLine(true, 50) << false;
    QTest::newRow("the store of bodies grows, plain format")
        << false << QByteArray("6d") << bodyLine(false, 4) << bodyLine(false, 50) << false;
#if !UNDER_ADDRESS_SANITIZER // Qt keeps a reference for good when it can't allocate a queued signal's event
    QTest::newRow("the first bodies of a configuration")
        << true << QByteArray("6di") << QByteArray() << bodyLine(true, 4) << true;
#endif
    QTest::newRow("the store of markers is made")
        << true << QByteArray("3d") << QByteArray() << markerLine(20) << false;
    QTest::newRow("the store of markers grows")
        << true << QByteArray("3d") << markerLine(20) << markerLine(300) << false;
    QTest::newRow("the store of markers shrinks")
        << true << QByteArray("3d") << markerLine(300) << markerLine(20) << false;
    QTest::newRow("a line that is malformed")
        << true << QByteArray("6di") << bodyLine(true, 4) << bodyLine(true, 9).chopped(3) << false;
}

void TestAllocation::line()
{
    QFETCH(const bool, inertial);
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, line);
    QFETCH(const bool, first);
    PanelFixture fixture;
    fixture.answerBodies(4);
    fixture.answer("standard fixed_angle_present", inertial ? "false" : "true");
    fixture.createConfiguredPanel();
    const QByteArray bodyTag = inertial ? "6di" : "6d";

    for (const bool fromThenOn : {false, true}) {
        for (long k = 1;; ++k) {
            fixture.panel->clearData();
            fixture.panel->configurationChanged();
            if (!first)
                QCOMPARE(deliver(*fixture.panel, bodyTag, bodyLine(inertial, 0)).result, 0);
            if (!before.isEmpty())
                QCOMPARE(deliver(*fixture.panel, tag, before).result, 0);
            QCoreApplication::processEvents();
            const quint64 sumBefore = accounted(*fixture.panel);
            const quint64 storedBefore = fixture.panel->storedLines();
            const Outcome outcome = deliver(*fixture.panel, tag, line, k, fromThenOn ? always : k);
            const bool isStruck = outcome.allocations >= k;
            if (!isStruck) {
#if !UNDER_ADDRESS_SANITIZER && !UNDER_THREAD_SANITIZER
                QVERIFY(k > 1); // there is at least the copy of the line
#endif
                break;
            }
            QVERIFY(outcome.result == 0 || outcome.result == -1);
            const auto refused = static_cast<quint64>(outcome.result == -1 ? 1 : 0);
            QCOMPARE(accounted(*fixture.panel) + refused, sumBefore + 1);

            const quint64 stored = fixture.panel->storedLines();
            QVERIFY(stored <= storedBefore + 1);
            const QByteArray place = QByteArray::number(qlonglong{10 + k});
            const QByteArray body = "[0" + QByteArray(inertial ? " 2" : "") + " 1.0][" + place
                + (inertial ? " 2 3]" : " 2 3 0 0 0]") + "[1 0 0 0 1 0 0 0 1]";
            QCOMPARE(deliver(*fixture.panel, bodyTag, bodyTag + " 1 " + body).result, 0);
            QCOMPARE(deliver(*fixture.panel, "3d", "3d 1 [7 1.0][" + place + " 2 3]").result, 0);
            QCOMPARE(fixture.panel->storedLines(), stored + 2); // so that the lock is free
            fixture.panel->updateView6d();
            fixture.panel->updateView3d();
            QCOMPARE(fixture.text(0, XColumn), QString::fromLatin1(place + ".00"));
            QCOMPARE(fixture.table3d().rowCount(), 1);
            QCOMPARE(fixture.table3d().item(0, 1)->text(), QString::fromLatin1(place + ".00"));
        }
    }
}

void TestAllocation::guiThread_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<bool>("shown");
    for (const bool shown : {false, true}) {
        for (const char *const action : {"redraw", "configuration", "clearing", "sensor pass"})
            QTest::addRow(shown ? "%s of a shown panel" : "%s", action) << QByteArray(action) << shown;
    }
}

/// Whatever the GUI thread runs into, it is not our code that ends the process: Qt is not made for exceptions, and may
/// crash. If it does not, the data thread's calls come back and find the lock free, the next redraw shows what this one
/// left out, and the next configuration is complete.
void TestAllocation::guiThread()
{
#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER
    QSKIP("The sanitizers' heap can't be made to fail, and they survive no fork of a process with threads.");
#endif
    QFETCH(const QByteArray, action);
    QFETCH(const bool, shown);
    PanelFixture fixture;
    fixture.answerBodies(bodyCount);
    fixture.answerSensors({1, 2});
    fixture.createConfiguredPanel();
    if (shown) {
        fixture.panel->show();
        QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    }
    QByteArray elsewhere = "6di " + QByteArray::number(bodyCount);
    for (int i = 0; i < bodyCount; ++i)
        elsewhere += bodyText(i, "0", "1.0", "7 8 9");
    QCOMPARE(deliver(*fixture.panel, "6di", elsewhere).result, 0);
    fixture.panel->updateView6d();
    QCOMPARE(deliver(*fixture.panel, "6di", bodyLine(true, bodyCount)).result, 0);
    QCOMPARE(deliver(*fixture.panel, "3d", markerLine(20)).result, 0);
    const bool isRedraw = action == "redraw";
    const std::function<void()> act = [&] {
        if (isRedraw) {
            fixture.panel->updateView6d();
            fixture.panel->updateView3d();
        } else if (action == "configuration") {
            fixture.panel->configurationChanged();
        } else if (action == "clearing") {
            fixture.panel->clearData();
        } else {
            fixture.panel->timerUpdateInertialSensorInfo();
        }
    };
    const Fate unharmed = strike(fixture, act, isRedraw, always);
    QCOMPARE(unharmed.stage, Fate::Done);
    QVERIFY(unharmed.allocations > 0);
    const long stride = isLongRun() ? 1 : qMax(1L, unharmed.allocations / 50);
    long survived = 0;
    QMap<QByteArray, long> endsInQt;
    for (long k = 1; k <= unharmed.allocations; k += stride) {
        const Fate fate = strike(fixture, act, isRedraw, k);
        const QByteArray end = fate.crash.text.data();
        if (fate.crash.place == CrashReport::InQt && fate.stage != Fate::DataThread) {
            ++endsInQt[end];
            continue;
        }
        const QString story = QStringLiteral("allocation %1: %2 in stage %3")
                                  .arg(QString::number(k), QString::fromLatin1(end), QString::number(fate.stage));
        QVERIFY2(fate.crash.place == CrashReport::Alive && fate.stage == Fate::Done, qPrintable(story));
        ++survived;
    }
    const long ended = std::accumulate(endsInQt.cbegin(), endsInQt.cend(), 0L);
    qInfo("%ld of %ld allocations failed, one at a time: %ld survived, %ld ended inside Qt, 0 in our code",
          survived + ended, unharmed.allocations, survived, ended);
    if (isLongRun()) {
        for (auto end = endsInQt.cbegin(); end != endsInQt.cend(); ++end)
            qInfo("%ld times %s", end.value(), end.key().constData());
    }
    QVERIFY(survived > 0);
}

QTEST_MAIN(TestAllocation)
#include "tst_allocation.moc"
