// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/simulatedshift.h"

#include "display/sensorpolling.h"
#include "display/zeltablewidget.h"
#include "tests/endurance/syntheticlines.h"
#include "tests/support/filterscript.h"
#include "tests/support/heap.h"
#include "tests/support/openwidgets.h"
#include "tests/support/repetitions.h"

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QPixmapCache>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <vector>

namespace {

constexpr int redrawsPerSecond = 5;
constexpr int framesPerRedraw = SyntheticLines::framesPerSecond / redrawsPerSecond;
constexpr int fewBodies = 6;
constexpr int manyBodies = 8;
constexpr int secondsOfRound = 600;
constexpr int presetRow = 1;

/// In a slow run, which has no figures of the heap, one round with the filter and one without make an hour.
int roundsOfHour()
{
    return isSlowRun() && !isLongRun() ? 2 : 6;
}

/// So that every look fills the same caches of Qt's.
void waitUntilPainted(QWidget &window)
{
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("a window does not show");
    window.repaint();
}

} // namespace

SimulatedShift::SimulatedShift()
    : fixture(2, 0)
{
    ScriptedHost filters;
    scriptFilters(filters);
    fixture.answerBodies(manyBodies);
    fixture.answerSensors({2, 4});
    for (auto answer = filters.answers.cbegin(); answer != filters.answers.cend(); ++answer) {
        if (!fixture.host.answers.contains(answer.key()))
            fixture.host.answers.insert(answer.key(), answer.value());
    }
    QCoreApplication::instance()->installEventFilter(this);
    fixture.createPanel();
    fixture.panel->resize(1100, 500);
    fixture.panel->show();
    lines.setRequester(fixture.panel.get());
    configure(manyBodies);
}

/// The panel's own clocks: time is simulated.
bool SimulatedShift::eventFilter(QObject *receiver, QEvent *event)
{
    return event->type() == QEvent::Timer && fixture.panel && receiver->parent() == fixture.panel.get()
        && qobject_cast<QTimer *>(receiver);
}

int SimulatedShift::minutesOfHour()
{
    return roundsOfHour() * secondsOfRound / 60;
}

void SimulatedShift::runHour()
{
    HeapSnapshot before;
    for (int round = 0; round < roundsOfHour(); ++round) {
        runRound(round == 0);
        if (round == 1)
            before = HeapSnapshot::now(); // the round after the dialog may still undo something of it
    }
    growth = HeapSnapshot::now().blocks() - before.blocks();
}

void SimulatedShift::runRound(bool withFilter)
{
    for (int second = 0; second < secondsOfRound; ++second) {
        actAt(second, withFilter);
        runSecond();
        passOverSensors(second);
        runEvents();
        fixture.host.takeCalls();
    }
    rest();
}

void SimulatedShift::actAt(int secondOfRound, bool withFilter)
{
    switch (secondOfRound) {
    case 60:
        return configure(fewBodies);
    case 120:
        return fixture.panel->hide();
    case 140:
        return fixture.panel->show();
    case 180:
        return withFilter ? lookAtMenu() : void();
    case 200:
        return withFilter ? lookAtFilter() : void();
    case 260:
        return fixture.panel->clearData();
    case 265:
        return configure(manyBodies);
    case 520:
        return fixture.answer("inertial sensor_present d01", "no");
    case 560:
        return fixture.answer("inertial sensor_present d01", "yes");
    default:
        return;
    }
}

void SimulatedShift::configure(int newBodies)
{
    bodies = newBodies;
    fixture.answer(QStringLiteral("standard number_of_bodies"), QString::number(bodies));
    fixture.answer("tracking reference", bodies == manyBodies ? "standard b03" : "none");
    fixture.panel->configurationChanged();
    nextSensorPass = seconds * 1000 + SensorPolling::firstInterval;
}

void SimulatedShift::lookAtMenu()
{
    fixture.panel->findChild<ZelTableWidget *>()->onCellPressed(presetRow, FilterColumn);
    onceOpen(openMenu, [this](QWidget *menu) {
        ++menuCount;
        waitUntilPainted(*menu);
        menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5));
    QCoreApplication::sendEvent(fixture.table6d().viewport(), &event);
}

void SimulatedShift::lookAtFilter()
{
    scriptBody(fixture.host, "standard b02", "preset6d_custom", "0.50", "0.020", "mode6d_static");
    auto *const table = fixture.panel->findChild<ZelTableWidget *>();
    table->onCellPressed(presetRow, FilterColumn);
    onceOpen(openDialog, [this](QWidget *dialog) {
        ++dialogCount;
        waitUntilPainted(*dialog);
        QTest::keyClick(dialog->findChild<QComboBox *>(QStringLiteral("comboBox_preset")), Qt::Key_Up);
        dialog->findChild<QPushButton *>(QStringLiteral("pushButton_exit"))->click();
    });
    table->displayFilterDlg();
}

void SimulatedShift::runSecond()
{
    for (int i = 0; i < redrawsPerSecond; ++i) {
        deliverFrames(frame, framesPerRedraw);
        frame += framesPerRedraw;
        redraw();
    }
    ++seconds;
}

void SimulatedShift::deliverFrames(qint64 first, int count)
{
    std::vector<LineThread::Line> due;
    for (qint64 number = first; number < first + count; ++number) {
        due.push_back({"6di", SyntheticLines::bodyLine(number, bodies)});
        due.push_back({"3d", SyntheticLines::markerLine(number)});
    }
    lines.post(due);
    lines.drain(); // a line that meets a redraw is dropped, and the rounds would differ
    sent += due.size();
}

void SimulatedShift::redraw()
{
    if (!fixture.viewTimer().isActive())
        return;
    fixture.panel->updateView6d();
    fixture.panel->updateView3d();
    ++redrawCount;
}

void SimulatedShift::passOverSensors(int secondOfRound)
{
    const QTimer &timer = fixture.sensorTimer();
    if (!timer.isActive() || seconds * 1000 < nextSensorPass)
        return;
    fixture.answer(QStringLiteral("inertial sensor_battery d02"), QString::number(0.2 + 0.1 * (secondOfRound % 8)));
    fixture.panel->timerUpdateInertialSensorInfo();
    nextSensorPass += timer.interval();
    ++sensorPassCount;
}

void SimulatedShift::rest()
{
    deliverFrames(0, 1);
    redraw();
    for (int i = 0; i < 5; ++i) { // what is deferred may defer more
        bool isDone = false;
        QTimer::singleShot(0, this, [&] { isDone = true; });
        while (!isDone) // with the timers of the tables' layouts
            runEvents();
    }
    fixture.host.takeCalls();
    QPixmapCache::clear(); // which Qt empties by the clock on the wall, and fills anew
}

/// As the event loop of a host does it: what was to be deleted later is deleted.
void SimulatedShift::runEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
