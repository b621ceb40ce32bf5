// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"
#include "tests/endurance/processfigures.h"
#include "tests/support/heap.h"
#include "tests/support/repetitions.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int warmUp = 20; // cycles, in which Qt fills its caches
constexpr qint64 mostBytesPerCycle = 512; // beyond what Qt's windows take

/// What a life takes for good that has the same windows, but nothing of ours in them [byte]: Qt's offscreen platform
/// keeps some of every window shown, up to some 5000 windows.
qint64 bytesOfEmptyLives(qint64 count, const TimeLimit &limit)
{
    qint64 before = 0;
    for (qint64 i = 0; i < warmUp + count && (i <= warmUp || !limit.isOver()); ++i) {
        if (i == warmUp)
            before = HeapSnapshot::now().bytes();
        QMainWindow window;
        auto *const dock = new QDockWidget(&window);
        dock->setWidget(new QTableWidget(3, 13));
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
        window.resize(1100, 300);
        window.show();
        dock->hide();
        dock->show();
        QCoreApplication::processEvents();
    }
    return HeapSnapshot::now().bytes() - before;
}

bool isLibraryMapped()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        qFatal("the map of the process can't be read");
    return maps.readAll().contains(QFileInfo(QStringLiteral(PLUGIN_FILE)).fileName().toUtf8());
}

} // namespace

Q_DECLARE_METATYPE(QLibrary::LoadHints)

/// The built plug-in's whole life, over and over.
class TestCycles : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void oneLifeAfterTheOther_data();
    void oneLifeAfterTheOther();

private:
    static void live(QLibrary::LoadHints hints);

    QTemporaryDir home;
};

void TestCycles::initTestCase()
{
    QVERIFY(home.isValid());
    qputenv("HOME", home.path().toLocal8Bit());
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
}

void TestCycles::live(QLibrary::LoadHints hints)
{
    GuestSession session;
    session.loader.setLoadHints(hints);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.configurationChanged();
    const QByteArray body = "6di 1 [0 2 1.0][1.5 2 3][1 0 0 0 1 0 0 0 1]";
    QCOMPARE(session.deliver("6di", body), 0);
    QCOMPARE(session.deliver("3d", "3d 1 [5 1.0][1 2 3]"), 0);
    QMetaObject::invokeMethod(session.dock->widget(), "updateView6d");
    QMetaObject::invokeMethod(session.dock->widget(), "updateView3d");
    QCOMPARE(session.table6d()->item(0, 4)->text(), QStringLiteral("1.50"));
    QCOMPARE(session.table3d()->rowCount(), 1);
    session.clearData();
    QCOMPARE(session.table6d()->rowCount(), 0);
    session.configurationChanged();
    session.dock->hide();
    session.dock->show();
    QCoreApplication::processEvents();
    QCOMPARE(session.deliver("6di", body), 0);
}

void TestCycles::oneLifeAfterTheOther_data()
{
    QTest::addColumn<QLibrary::LoadHints>("hints");
    QTest::newRow("the library leaves the process each time") << QLibrary::LoadHints();
    QTest::newRow("the library stays, as with Qt's usual hint") << QLibrary::LoadHints(QLibrary::PreventUnloadHint);
}

void TestCycles::oneLifeAfterTheOther()
{
    QFETCH(const QLibrary::LoadHints, hints);
    const auto [wanted, least] = repetitions(200, 10'000);
    // Of each row's half of a long run: a quarter before, half for the lives, and what as many windows take after them.
    bytesOfEmptyLives(wanted, TimeLimit(15'000, 8)); // so that in a long run Qt's part is the same before and after
    const TimeLimit limit(60'000, 4);
    qint64 heapBefore = 0;
    int handlesBefore = 0;
    int widgetsBefore = 0;
    qint64 cycle = 0;
    for (; cycle < warmUp + wanted && (cycle <= warmUp || !limit.isOver()); ++cycle) {
        if (cycle == warmUp) {
            heapBefore = HeapSnapshot::now().bytes();
            handlesBefore = openHandles();
            widgetsBefore = QApplication::allWidgets().size();
        }
        live(hints);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(isLibraryMapped(), hints != QLibrary::LoadHints());
    }
    const qint64 measured = cycle - warmUp;
    const qint64 growth = HeapSnapshot::now().bytes() - heapBefore;
    const qint64 unavoidable = bytesOfEmptyLives(measured, TimeLimit(60'000, 4));
    qInfo("%lld of %lld cycles, heap %+lld bytes where empty windows take %+lld, handles %+d, widgets %+lld", measured,
          wanted, growth, unavoidable, openHandles() - handlesBefore,
          static_cast<qint64>(QApplication::allWidgets().size()) - widgetsBefore);
    QVERIFY(measured >= least);
    QCOMPARE(openHandles(), handlesBefore);
    QCOMPARE(static_cast<int>(QApplication::allWidgets().size()), widgetsBefore);
    QVERIFY2(growth <= unavoidable + measured * mostBytesPerCycle,
             qPrintable(QStringLiteral("the heap grew by %1").arg(growth)));
}

QTEST_MAIN(TestCycles)
#include "tst_cycles.moc"
