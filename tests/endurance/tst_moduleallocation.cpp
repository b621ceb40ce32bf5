// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "module/datadisplaymodule.h"
#include "tests/endurance/ownprocess.h"
#include "tests/support/heap.h"
#include "tests/support/panelfixture.h"
#include "tests/support/repetitions.h"
#include "tests/support/sanitizers.h"

#include <QDockWidget>
#include <QLoggingCategory>
#include <QMainWindow>
#include <QtTest>

#include <functional>
#include <limits>

namespace {

constexpr long never = std::numeric_limits<long>::max();

/// A module in a main window.
struct LoadedModule : PanelFixture {
    LoadedModule()
    {
        module.setModuleProperty(QStringLiteral("CommandManager"), QVariant::fromValue<IOManager *>(&host));
        module.setModuleProperty(QStringLiteral("ModuleParent"), QVariant::fromValue<QWidget *>(&window));
        module.setModuleProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(&versions));
    }

    /// Whether the window has \a count docks and panels.
    bool has(int count) const
    {
        return window.findChildren<QDockWidget *>().size() == count
            && window.findChildren<DataDisplay *>().size() == count;
    }
    /// The requesters that the host knows.
    int registrations() const
    {
        return host.calls.count("registerRequester") - host.calls.count("unregisterRequester");
    }

    QMainWindow window;
    DataDisplayModule module;
};

/// What became of a process in which one allocation failed.
struct Outcome {
    bool whole = false; ///< the call left nothing or all behind, and the module works
    long allocations = 0; ///< of the call
    CrashReport crash;
};

/// Calls the module in a process of its own, where the \a k-th allocation fails.
Outcome strike(LoadedModule &loaded, const std::function<int()> &call, long k)
{
    return inOwnProcess<Outcome>([&](Outcome &outcome) {
        int left = 0;
        const int registered = loaded.registrations();
        {
            const FailingHeap heap(k, k);
            left = call();
            outcome.allocations = FailingHeap::count();
        }
        // Unregistering, the host itself may have run out of memory.
        const bool isKnown = registered > 0 || loaded.registrations() == left;
        outcome.whole = loaded.has(left) && isKnown && loaded.module.moduleEntries().size() == 1 && loaded.has(1);
    });
}

} // namespace

/// The heap is exhausted for one allocation, at every allocation of the host's calls of the module.
class TestModuleAllocation : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void texts_data();
    void texts();
    void calls_data();
    void calls();
    void unregistersAllTheSame();
};

void TestModuleAllocation::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER
    QSKIP("The sanitizers' heap can't be made to fail, and they survive no fork of a process with threads.");
#endif
}

void TestModuleAllocation::texts_data()
{
    QTest::addColumn<bool>("isVersion");
    QTest::newRow("the name") << false;
    QTest::newRow("the version") << true;
}

void TestModuleAllocation::texts()
{
    QFETCH(const bool, isVersion);
    const DataDisplayModule module;
    const auto text = [&] { return isVersion ? module.moduleVersion() : module.moduleName(); };
    const QString whole = text();
    QVERIFY(!whole.isEmpty());
    int empty = 0;
    long allocations = never;
    for (long k = 1; k <= allocations; ++k) {
        QString struck;
        {
            const FailingHeap heap(k, k);
            struck = text();
            allocations = FailingHeap::count();
        }
        QVERIFY(struck.isEmpty() || struck == whole);
        empty += struck.isEmpty() ? 1 : 0;
        QCOMPARE(text(), whole);
    }
    QVERIFY(empty > 0);
}

void TestModuleAllocation::calls_data()
{
    QTest::addColumn<bool>("isUnloading");
    QTest::newRow("the entries are asked for") << false;
    QTest::newRow("the module is unloaded") << true;
}

void TestModuleAllocation::calls()
{
    QFETCH(const bool, isUnloading);
    LoadedModule loaded;
    if (isUnloading)
        loaded.module.moduleEntries();
    const std::function<int()> call = [&] {
        if (!isUnloading)
            return loaded.module.moduleEntries().size();
        loaded.module.aboutToUnload();
        loaded.module.releaseWidgets();
        return 0;
    };
    const Outcome unharmed = strike(loaded, call, never);
    QVERIFY(unharmed.whole);
    QVERIFY(unharmed.allocations > 0);
    const long stride = isLongRun() ? 1 : qMax(1L, unharmed.allocations / 100);
    int survived = 0;
    int endsInQt = 0;
    for (long k = 1; k <= unharmed.allocations; k += stride) {
        const Outcome outcome = strike(loaded, call, k);
        const QString story =
            QStringLiteral("allocation %1: %2").arg(k).arg(QString::fromLatin1(outcome.crash.text.data()));
        if (outcome.crash.place == CrashReport::InQt) {
            ++endsInQt;
            continue;
        }
        QVERIFY2(outcome.crash.place == CrashReport::Alive && outcome.whole, qPrintable(story));
        ++survived;
    }
    qInfo("%d of %ld allocations failed, one at a time: %d survived, %d ended inside Qt, 0 in our code",
          survived + endsInQt, unharmed.allocations, survived, endsInQt);
    QVERIFY(survived > 0);
}

void TestModuleAllocation::unregistersAllTheSame()
{
    LoadedModule loaded;
    loaded.module.moduleEntries();
    QCOMPARE(loaded.registrations(), 1);
    {
        const FailingHeap heap(1, 1); // before the host is called, which needs memory, too
        loaded.module.aboutToUnload();
    }
    loaded.module.releaseWidgets();
    QVERIFY(loaded.has(0));
    QCOMPARE(loaded.registrations(), 0);
}

QTEST_MAIN(TestModuleAllocation)
#include "tst_moduleallocation.moc"
