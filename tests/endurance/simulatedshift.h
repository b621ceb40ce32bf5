// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endurance/linethread.h"
#include "tests/support/panelfixture.h"

/// A panel in simulated time: its clocks do not tick by themselves, and each simulated second takes as long as its
/// work. Every ten minutes the backend goes and comes back with fewer or more bodies, sensors are switched off and on,
/// and the panel is hidden and shown; once in an hour the operator opens the menu and sets a filter in the dialog.
/// GUI thread.
class SimulatedShift : public QObject {
    Q_OBJECT

public:
    SimulatedShift();

    /// Lets an hour pass. It ends with the same bodies, markers and settings each time, and nothing left to do.
    void runHour();
    /// How long an hour is: 60, but 20 in a slow run that is not a long one.
    static int minutesOfHour();
    /// How many blocks of the heap were added in the last forty minutes of the hour, in which no menu and no dialog was
    /// open. Under a sanitizer 0.
    qint64 growthWithoutFilter() const { return growth; }

    quint64 linesSent() const { return sent; }
    int linesRefused() { return lines.refusals(); }
    qint64 redraws() const { return redrawCount; }
    qint64 sensorPasses() const { return sensorPassCount; }
    qint64 menusOpened() const { return menuCount; }
    qint64 dialogsOpened() const { return dialogCount; }

    PanelFixture fixture;

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    void runRound(bool withFilter);
    void runSecond();
    void actAt(int secondOfRound, bool withFilter);
    void configure(int bodies);
    void lookAtFilter();
    void lookAtMenu();
    void deliverFrames(qint64 first, int count);
    void redraw();
    void passOverSensors(int secondOfRound);
    void rest();
    static void runEvents();

    LineThread lines;
    qint64 growth = 0;
    int bodies = 0;
    qint64 seconds = 0;
    qint64 frame = 0;
    qint64 nextSensorPass = 0; ///< [ms] of simulated time
    quint64 sent = 0;
    qint64 redrawCount = 0;
    qint64 sensorPassCount = 0;
    qint64 menuCount = 0;
    qint64 dialogCount = 0;
};
