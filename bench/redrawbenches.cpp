// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/livelines.h"
#include "bench/lockwatch.h"
#include "bench/naivetables.h"
#include "bench/stopwatch.h"
#include "tests/support/panelfixture.h"

#include <QApplication>
#include <QStyledItemDelegate>

#include <string>

namespace {

enum class Motion { Moving, Still };

/// A shown panel with \a bodies rows, and the lines for it.
struct Panel {
    Panel(int bodies, int markers)
        : bodyLines("6di", bodies)
        , markerLines("3d", markers)
    {
        fixture.answerBodies(bodies);
        fixture.createConfiguredPanel();
        fixture.panel->resize(1100, 900);
    }
    void show()
    {
        fixture.panel->show();
        QApplication::processEvents();
        receive(Motion::Moving);
        fixture.panel->updateView6d();
        fixture.panel->updateView3d();
        QApplication::processEvents();
    }
    void receive(Motion motion)
    {
        if (motion == Motion::Still && received)
            return;
        received = true;
        fixture.send("6di", bodyLines.next());
        fixture.send("3d", markerLines.next());
    }
    void update6d() const { fixture.panel->updateView6d(); }
    void update3d() const { fixture.panel->updateView3d(); }
    QTableWidget &table6d() const { return fixture.table6d(); }
    QTableWidget &table3d() const { return fixture.table3d(); }

    PanelFixture fixture;
    LiveLines bodyLines;
    LiveLines markerLines;
    bool received = false;
};

/// The same with a rival in the panel's place.
template<typename Tables> struct Rival {
    Rival(int bodies, int markers)
        : panel(bodies, markers)
        , tables(panel.fixture.table6d(), panel.fixture.table3d())
    {
        tables.data.useInertialFormat = true;
        tables.resize(1100, 900);
    }
    void show()
    {
        tables.show();
        QApplication::processEvents();
        receive(Motion::Moving);
        tables.updateView6d();
        tables.updateView3d();
        QApplication::processEvents();
    }
    void receive(Motion motion)
    {
        if (motion == Motion::Still && received)
            return;
        received = true;
        QByteArray bodyLine(panel.bodyLines.next().constData());
        QByteArray markerLine(panel.markerLines.next().constData());
        tables.data.receive("6di", bodyLine.data());
        tables.data.receive("3d", markerLine.data());
    }
    void update6d() { tables.updateView6d(); }
    void update3d() { tables.updateView3d(); }
    QTableWidget &table6d() { return tables.table6d(); }
    QTableWidget &table3d() { return tables.table3d(); }

    Panel panel;
    Tables tables;
    bool received = false;
};

/// The time with the lock held alone, which is nearly the whole of a redraw.
template<typename Prepare, typename Redraw> void timeLock(benchmark::State &state, Prepare prepared, Redraw redrawn)
{
    for ([[maybe_unused]] auto iteration : state) {
        prepared();
        takeLockedSeconds();
        redrawn();
        state.SetIterationTime(takeLockedSeconds());
    }
}

template<typename Side> void redraw6d(benchmark::State &state, int bodies, Motion motion)
{
    Side side(bodies, 1);
    side.show();
    timeLock(
        state, [&] { side.receive(motion); }, [&] { side.update6d(); });
}

template<typename Side> void redraw3d(benchmark::State &state, int markers)
{
    Side side(1, markers);
    side.show();
    timeLock(
        state, [&] { side.receive(Motion::Moving); }, [&] { side.update3d(); });
}

/// All that the GUI thread does for a tick: both redraws and what follows them in the event loop.
template<typename Side> void tick(benchmark::State &state, int bodies, int markers)
{
    Side side(bodies, markers);
    side.show();
    timeEach(
        state, [&] { side.receive(Motion::Moving); },
        [&] {
            side.update6d();
            side.update3d();
            QApplication::processEvents();
        });
}

/// Painting both tables after a tick, with our delegate or the stock one.
void paint(benchmark::State &state, int bodies, int markers, bool stock)
{
    Panel panel(bodies, markers);
    QStyledItemDelegate delegate;
    QAbstractItemDelegate *const own6d = panel.table6d().itemDelegate();
    QAbstractItemDelegate *const own3d = panel.table3d().itemDelegate();
    if (stock) {
        panel.table6d().setItemDelegate(&delegate);
        panel.table3d().setItemDelegate(&delegate);
    }
    panel.show();
    timeEach(
        state,
        [&] {
            panel.receive(Motion::Moving);
            panel.update6d();
            panel.update3d();
        },
        [&] {
            panel.table6d().viewport()->repaint();
            panel.table3d().viewport()->repaint();
        });
    panel.table6d().setItemDelegate(own6d);
    panel.table3d().setItemDelegate(own3d);
}

template<typename Side> void registerSide(const std::string &side)
{
    const auto add = [&side](const std::string &name, auto function, auto... arguments) {
        benchmark::RegisterBenchmark((name + '/' + side).c_str(), function, arguments...)->UseManualTime();
    };
    for (const int bodies : {10, 50, 200, 1000}) {
        add("redraw6d/moving/" + std::to_string(bodies), redraw6d<Side>, bodies, Motion::Moving);
        add("redraw6d/still/" + std::to_string(bodies), redraw6d<Side>, bodies, Motion::Still);
    }
    for (const int markers : {10, 100, 300})
        add("redraw3d/" + std::to_string(markers), redraw3d<Side>, markers);
    add("tick/50+100", tick<Side>, 50, 100);
    add("tick/200+300", tick<Side>, 200, 300);
}

const bool registered = [] {
    registerSide<Panel>("ours");
    registerSide<Rival<NaiveTables>>("naive");
    benchmark::RegisterBenchmark("paint/50+100/ours", paint, 50, 100, false)->UseManualTime();
    benchmark::RegisterBenchmark("paint/50+100/stock", paint, 50, 100, true)->UseManualTime();
    for (const int bodies : {50, 200}) {
        const std::string count = std::to_string(bodies);
        benchmark::RegisterBenchmark(("redraw6d/moving/" + count + "/model").c_str(), redraw6d<Rival<ModelTables>>,
                                     bodies, Motion::Moving)
            ->UseManualTime();
    }
    benchmark::RegisterBenchmark("redraw3d/100/model", redraw3d<Rival<ModelTables>>, 100)->UseManualTime();
    benchmark::RegisterBenchmark("tick/50+100/model", tick<Rival<ModelTables>>, 50, 100)->UseManualTime();
    return true;
}();

} // namespace
