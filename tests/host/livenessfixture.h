// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "tests/host/fakestream.h"
#include "tests/host/hostfixture.h"

#include <QDockWidget>
#include <QLabel>
#include <QStatusBar>
#include <QTableWidget>
#include <QTest>

#include <memory>

/// The default simulation, whose lines come when the test says so.
class PacedBackend : public backend::SimulatedBackend {
public:
    using SimulatedBackend::SimulatedBackend;

    std::unique_ptr<backend::LineStream> open(backend::LineStream::Clock::time_point newEpoch) override
    {
        auto opened = std::make_unique<FakeStream>();
        stream = opened.get();
        epoch = newEpoch;
        return opened;
    }

    FakeStream *stream = nullptr; // the last one; gone when it is closed
    backend::LineStream::Clock::time_point epoch;
};

/// The program with the data display and a source under control.
class LivenessFixture : protected HostFixture {
protected:
    using Clock = backend::LineStream::Clock;

    void startPaced()
    {
        startAnew();
        restart();
    }
    /// Anew with the layout of the window that was kept.
    void restart()
    {
        host.reset();
        const backend::ScenarioResult loaded = backend::loadScenario(QStringLiteral("default"));
        QVERIFY2(loaded.scenario, qPrintable(loaded.error));
        backend = std::make_shared<PacedBackend>(*loaded.scenario);
        host = std::make_unique<host::Host>(host::HostOptions(), backend, QStringList(QStringLiteral(MODULES)));
        host->window().show();
        QVERIFY(QTest::qWaitForWindowActive(&host->window()));
        QTRY_VERIFY(table() && table()->isVisible() && table()->rowCount() > 0);
        QVERIFY(backend->stream);
    }
    /// A third of a second of frames at 60 Hz, the last of them \a age ago.
    void feed(std::chrono::milliseconds age = std::chrono::milliseconds(0))
    {
        const std::chrono::nanoseconds last = Clock::now() - backend->epoch - age;
        for (int frame = 20; frame >= 0; --frame) {
            const QVector<backend::OutputLine> lines = backend->linesAt(std::chrono::seconds(++fedFrames));
            for (const backend::OutputLine &line : lines)
                backend->stream->put({line, last - frame * std::chrono::microseconds(16667), sequence++});
        }
    }

    QTableWidget *table() const { return host->window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d")); }
    QDockWidget *panel() const
    {
        QWidget *widget = table();
        while (widget && !qobject_cast<QDockWidget *>(widget))
            widget = widget->parentWidget();
        return qobject_cast<QDockWidget *>(widget);
    }
    QWidget *banner() const { return host->window().findChild<QWidget *>(QStringLiteral("livenessBanner")); }
    /// The text of a line of the banner; empty while it can't be seen.
    QString bannerText(const char *name) const
    {
        const auto *label = host->window().findChild<QLabel *>(QLatin1String(name));
        return label && label->isVisible() ? label->text() : QString();
    }
    QString title() const { return host->window().windowTitle(); }

    std::shared_ptr<PacedBackend> backend;
    quint64 sequence = 0;
    int fedFrames = 0;
};
