// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/paneltimers.h"

#include "tests/support/panelfixture.h"

#include <QCoreApplication>
#include <QTest>

namespace {

/// Notes the timers inside a panel that tick.
class TickWatcher : public QObject {
public:
    explicit TickWatcher(const DataDisplay &watchedPanel)
        : begin(reinterpret_cast<const char *>(&watchedPanel))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        const auto *timer = qobject_cast<QTimer *>(receiver);
        const qptrdiff offset = reinterpret_cast<const char *>(timer) - begin;
        if (timer && event->type() == QEvent::Timer && offset > 0 && offset < qptrdiff(sizeof(DataDisplay)))
            (timer->interval() == 200 ? viewOffset : sensorOffset) = offset;
        return false;
    }

    qptrdiff viewOffset = 0;
    qptrdiff sensorOffset = 0;

private:
    const char *const begin;
};

} // namespace

bool PanelTimers::learn()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.answerSensors({1});
    fixture.createPanel();
    const TickWatcher watcher(*fixture.panel);
    fixture.panel->configurationChanged();
    const bool ticked = QTest::qWaitFor([&] { return watcher.viewOffset != 0 && watcher.sensorOffset != 0; }, 30'000);
    viewOffset = watcher.viewOffset;
    sensorOffset = watcher.sensorOffset;
    return ticked;
}

const QTimer &PanelTimers::timerAt(const DataDisplay &panel, qptrdiff offset)
{
    return *reinterpret_cast<const QTimer *>(reinterpret_cast<const char *>(&panel) + offset);
}
