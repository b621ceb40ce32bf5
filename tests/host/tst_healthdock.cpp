// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/figuretable.h"
#include "host/healthdock.h"
#include "tests/host/livenessfixture.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>

using namespace host;
using namespace std::chrono_literals;

/// "Stream Health": its tables, their order, and their copies.
class HealthDockTest : public QObject, private LivenessFixture {
    Q_OBJECT

private slots:
    void init() { startPaced(); }
    void cleanup() { end(); }

    void opensByKey();
    void showsStreamsAndBodies();
    void renewsTheFigures();
    void sortsByNumber();
    void copiesTheTables();
    void saysWhereNobodyCounts();
    void namesItsTables();
    void csvQuotesWhatItMust();

private:
    QDockWidget *dock() const { return host->window().findChild<HealthDock *>(); }
    QTableView *view(const char *name) const { return host->window().findChild<QTableView *>(QLatin1String(name)); }
    /// The text in the column whose title begins so.
    static QString cell(const QTableView *view, int row, const char *title);
    void open();
};

QString HealthDockTest::cell(const QTableView *view, int row, const char *title)
{
    for (int column = 0; column < view->model()->columnCount(); ++column) {
        if (view->model()->headerData(column, Qt::Horizontal).toString().startsWith(QLatin1String(title)))
            return view->model()->index(row, column).data().toString();
    }
    return QStringLiteral("no such column");
}

void HealthDockTest::open()
{
    QTest::keyClick(host->window().windowHandle(), Qt::Key_F9);
    QTRY_VERIFY(view("healthStreams")->isVisible());
}

void HealthDockTest::opensByKey()
{
    QVERIFY(!dock()->isVisible());
    open();
    QVERIFY(menuTexts("viewMenu").contains(dock()->toggleViewAction()->text()));
    QTest::keyClick(host->window().windowHandle(), Qt::Key_F9);
    QVERIFY(!dock()->isVisible());
}

void HealthDockTest::showsStreamsAndBodies()
{
    feed();
    QTRY_VERIFY(!banner()->isVisible());
    open();
    const QTableView *streams = view("healthStreams");
    QTRY_COMPARE(streams->model()->rowCount(), 3);
    QCOMPARE(cell(streams, 0, "Stream"), QStringLiteral("all"));
    QCOMPARE(cell(streams, 0, "Lines"), QStringLiteral("42"));
    QCOMPARE(cell(streams, 0, "Unreadable"), QStringLiteral("0"));
    QTRY_COMPARE(cell(streams, 0, "Dropped"), QStringLiteral("0")); // asked for once a second
    QCOMPARE(cell(streams, 0, "Lost"), QStringLiteral("0"));
    QCOMPARE(cell(streams, 0, "Late"), QStringLiteral("0"));
    QCOMPARE(cell(streams, 1, "Stream"), QStringLiteral("6di"));
    QCOMPARE(cell(streams, 1, "Lines"), QStringLiteral("21"));
    QCOMPARE(cell(streams, 1, "Late"), QString()); // counted for all streams
    QCOMPARE(cell(streams, 2, "Stream"), QStringLiteral("3d"));
    const QTableView *bodies = view("healthBodies");
    QCOMPARE(bodies->model()->rowCount(), 6);
    QCOMPARE(cell(bodies, 0, "Stream"), QStringLiteral("6di"));
    QCOMPARE(cell(bodies, 0, "Body"), QStringLiteral("0"));
    QCOMPARE(cell(bodies, 0, "Tracked"), QStringLiteral("yes"));
    QCOMPARE(cell(bodies, 0, "Lost"), QStringLiteral("0.0"));
    QCOMPARE(cell(bodies, 3, "Tracked"), QStringLiteral("no"));
    QCOMPARE(cell(bodies, 3, "Lost"), QStringLiteral("100.0"));
    QCOMPARE(cell(bodies, 3, "Last"), QString());
}

void HealthDockTest::renewsTheFigures()
{
    feed(8s);
    open();
    const QTableView *streams = view("healthStreams");
    QTRY_VERIFY(cell(streams, 0, "Age").toDouble() > 9.0);
    QCOMPARE(cell(streams, 1, "Rate over 1 s"), QStringLiteral("0.0"));
    feed();
    QTRY_COMPARE(cell(streams, 1, "Lines"), QStringLiteral("42"));
    QVERIFY(cell(streams, 1, "Longest gap").toDouble() > 8.0);
}

void HealthDockTest::sortsByNumber()
{
    feed();
    open();
    QTableView *bodies = view("healthBodies");
    QTRY_COMPARE(bodies->model()->rowCount(), 6);
    bodies->sortByColumn(1, Qt::DescendingOrder);
    QCOMPARE(cell(bodies, 0, "Body"), QStringLiteral("5"));
    const QPoint title(bodies->horizontalHeader()->sectionViewportPosition(1) + 5, 5);
    QTest::mouseClick(bodies->horizontalHeader()->viewport(), Qt::LeftButton, {}, title);
    QCOMPARE(cell(bodies, 0, "Body"), QStringLiteral("0"));

    FigureTable figures({QStringLiteral("n")});
    figures.setRows({{{QStringLiteral("10"), 10}}, {{QStringLiteral("9"), 9}}});
    QVERIFY(figures.index(1, 0).data(Qt::UserRole).toInt() < figures.index(0, 0).data(Qt::UserRole).toInt());
}

void HealthDockTest::copiesTheTables()
{
    feed();
    open();
    QTRY_COMPARE(view("healthBodies")->model()->rowCount(), 6);
    QTest::mouseClick(host->window().findChild<QPushButton *>(QStringLiteral("healthBodiesCopy")), Qt::LeftButton);
    const QStringList lines = QApplication::clipboard()->text().split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 8); // with the titles, and nothing behind the last end
    QCOMPARE(lines.at(0), QStringLiteral("Stream,Body,Tracked,Lost of 60 s [%],Longest gap [s],Last tracked [s ago]"));
    QVERIFY2(lines.at(1).startsWith(QStringLiteral("6di,0,yes,0.0,")), qPrintable(lines.at(1)));
    QCOMPARE(lines.at(7), QString());

    view("healthStreams")->setFocus();
    QTest::keyClick(view("healthStreams"), Qt::Key_C, Qt::ControlModifier);
    QVERIFY(QApplication::clipboard()->text().startsWith(QStringLiteral("Stream,Lines,Rate over 1 s [1/s],")));
}

void HealthDockTest::saysWhereNobodyCounts()
{
    host.reset();
    host = std::make_unique<Host>(HostOptions(), backend, QStringList(QStringLiteral("/nonexistent")));
    host->window().show();
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    open();
    QCOMPARE(cell(view("healthStreams"), 0, "Dropped"), QStringLiteral("not told"));
}

void HealthDockTest::namesItsTables()
{
    QCOMPARE(view("healthStreams")->accessibleName(), QStringLiteral("Streams"));
    QCOMPARE(view("healthBodies")->accessibleName(), QStringLiteral("Bodies"));
    QVERIFY(!view("healthStreams")->tabKeyNavigation());
    for (const char *name : {"healthStreamsCopy", "healthBodiesCopy"})
        QVERIFY(!host->window().findChild<QPushButton *>(QLatin1String(name))->text().isEmpty());
}

void HealthDockTest::csvQuotesWhatItMust()
{
    FigureTable table({QStringLiteral("a"), QStringLiteral("b, c")});
    const auto text = [](const char *words) { return Figure{QLatin1String(words), {}}; };
    table.setRows({{text("1.5"), text("x \"y\"")}, {text("two\nlines"), text("")}});
    QCOMPARE(csvOf(table), QByteArray("a,\"b, c\"\r\n1.5,\"x \"\"y\"\"\"\r\n\"two\nlines\",\r\n"));
}

QTEST_MAIN(HealthDockTest)
#include "tst_healthdock.moc"
