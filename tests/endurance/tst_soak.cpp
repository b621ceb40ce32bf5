// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/processfigures.h"
#include "tests/endurance/simulatedshift.h"
#include "tests/support/heap.h"
#include "tests/support/repetitions.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QLoggingCategory>
#include <QtTest>

namespace {

constexpr int hoursPerDay = 24;
constexpr qint64 mostBytesPerDay = 64 * 1024; // with what Qt keeps of each filter dialog

/// What must be the same after each round.
struct Figures {
    int handles = 0;
    int timers = 0; ///< QTimer objects below the panel
    int activeTimers = 0; ///< of all objects below the panel
    int widgets = 0;
    int children = 0; ///< objects below the panel

    bool operator==(const Figures &other) const
    {
        return handles == other.handles && timers == other.timers && activeTimers == other.activeTimers
            && widgets == other.widgets && children == other.children;
    }
    QString text() const
    {
        return QStringLiteral("%1 handles, %2 timers, %3 active, %4 widgets, %5 children")
            .arg(handles)
            .arg(timers)
            .arg(activeTimers)
            .arg(widgets)
            .arg(children);
    }
};

Figures figuresOf(const DataDisplay &panel)
{
    Figures figures;
    const QObjectList children = panel.findChildren<QObject *>();
    figures.handles = openHandles();
    figures.timers = panel.findChildren<QTimer *>().size();
    for (QObject *const child : children)
        figures.activeTimers += QAbstractEventDispatcher::instance()->registeredTimers(child).size();
    figures.widgets = QApplication::allWidgets().size();
    figures.children = children.size();
    return figures;
}

} // namespace

/// Days of work of one panel, in simulated time.
class TestSoak : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void daysGoByWithoutATrace();
};

void TestSoak::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
}

/// In the first hour Qt fills its caches. After that no block is added, but where the filter dialog was open: Qt's
/// style sheets don't forget the line edit inside a spin box, 240 bytes each, until another comes to lie at its
/// address. One that was there may still double when more comes together by chance (from 128 to 256 bytes in one run of
/// twenty).
void TestSoak::daysGoByWithoutATrace()
{
    const auto [wanted, least] = repetitions(1, 7 * hoursPerDay);
    const TimeLimit limit(20'000);
    SimulatedShift shift;
    const DataDisplay &panel = *shift.fixture.panel;
    shift.runHour();
    const Figures figures = figuresOf(panel);
    const HeapSnapshot start = HeapSnapshot::now();
    const qint64 startInUse = heapInUse();

    HeapSnapshot end = start;
    qint64 hours = 0;
    while (hours < wanted && (hours == 0 || !limit.isOver())) {
        shift.runHour();
        ++hours;
        end = HeapSnapshot::now();
        const Figures now = figuresOf(panel);
        QVERIFY2(now == figures, qPrintable(now.text() + QStringLiteral(" after ") + figures.text()));
        QVERIFY2(shift.growthWithoutFilter() <= 0, qPrintable(QString::number(shift.growthWithoutFilter())));
        QVERIFY2(end.bytes() - start.bytes() <= hours * mostBytesPerDay / hoursPerDay,
                 qPrintable(end.changesSince(start)));
        QCOMPARE(shift.linesRefused(), 0);
        QCOMPARE(panel.storedLines(), shift.linesSent());
        QCOMPARE(shift.fixture.table3d().item(0, MarkerXColumn)->text(), QStringLiteral("900.00"));
        QCOMPARE(shift.dialogsOpened(), hours + 1);
        QCOMPARE(shift.menusOpened(), hours + 1);
    }
    qInfo("%lld of %lld simulated hours of %d minutes after the first one: heap %+lld bytes in %+lld blocks, %+lld "
          "bytes by the C "
          "library's own figures; %s; in all %llu lines, %lld redraws, %lld sensor passes, %lld dialogs",
          hours, wanted, SimulatedShift::minutesOfHour(), end.bytes() - start.bytes(), end.blocks() - start.blocks(),
          heapInUse() - startInUse, qPrintable(figures.text()), shift.linesSent(), shift.redraws(),
          shift.sensorPasses(), shift.dialogsOpened());
    QVERIFY(hours >= least);
}

QTEST_MAIN(TestSoak)
#include "tst_soak.moc"
