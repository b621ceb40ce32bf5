// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QTranslator>
#include <QtTest>

#include <array>
#include <atomic>
#include <functional>
#include <thread>
#include <utility>

namespace {

const char *const oneMarker = "3d 1 [7 1.0][70 80 90]";
const char *const twoMarkers = "3d 2 [5 1.0][1 2 3] [6 1.0][4 5 6]";

QByteArray twoBodies(const char *x)
{
    const QByteArray position = QByteArray(x) + " 2 3";
    return "6di 2 " + bodyText(0, "2", "1.0", position.constData()) + bodyText(1, "2", "1.0", position.constData());
}

/// A cell that calls back whenever it is given anything.
class ListeningCell : public QTableWidgetItem {
public:
    explicit ListeningCell(std::function<void()> listener)
        : onChange(std::move(listener))
    {
    }

    void setData(int role, const QVariant &value) override
    {
        onChange();
        QTableWidgetItem::setData(role, value);
    }

private:
    std::function<void()> onChange;
};

/// A cell that calls back when it is destroyed.
class LastWordCell : public QTableWidgetItem {
public:
    explicit LastWordCell(std::function<void()> listener)
        : onDestruction(std::move(listener))
    {
    }
    ~LastWordCell() override { onDestruction(); }

private:
    Q_DISABLE_COPY(LastWordCell)

    std::function<void()> onDestruction;
};

/// A translator that calls back for each text it is asked for.
class ListeningTranslator : public QTranslator {
public:
    explicit ListeningTranslator(std::function<void()> listener)
        : onText(std::move(listener))
    {
    }

    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *, const char *, int) const override
    {
        onText();
        return {};
    }

private:
    std::function<void()> onText;
};

QStringList markerIds(const PanelFixture &fixture)
{
    QStringList ids;
    for (int row = 0; row < fixture.table3d().rowCount(); ++row) {
        const QTableWidgetItem *const item = fixture.table3d().item(row, MarkerIdColumn);
        ids << (item ? item->text() : QStringLiteral("<no item>"));
    }
    return ids;
}

} // namespace

/// What is done under the lock: a whole redraw, which shows one frame, and no call into the host.
class TestRedrawLock : public QObject {
    Q_OBJECT

private slots:
    void bodies();
    void markers();
    void markersOfOneFrame();
    void rowsOfMarkersAreMadeWithoutTheLock_data();
    void rowsOfMarkersAreMadeWithoutTheLock();
    void markersThatComeAndGoMeanwhile_data();
    void markersThatComeAndGoMeanwhile();
    void clearingWhileRowsAreMade();
    void textsAreTranslatedWithoutTheLock();
    void hostIsNotCalledUnderTheLock();

private:
    /// Sends a line of either type at once, and counts it.
    void sendLines(PanelFixture &fixture)
    {
        QCOMPARE(fixture.send("6di", twoBodies("9")), 0);
        QCOMPARE(fixture.send("3d", oneMarker), 0);
        sent += 2;
    }

    int sent = 0;
};

void TestRedrawLock::bodies()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    const DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", twoBodies("1")), 0);
    sent = 0;
    fixture.table6d().setItem(0, XColumn, new ListeningCell([&] { sendLines(fixture); }));
    fixture.panel->updateView6d();
    QVERIFY(sent > 0);
    QCOMPARE(panel.droppedLines(), quint64(sent));
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00"));
    QCOMPARE(fixture.text(1, XColumn), QStringLiteral("1.00"));

    sendLines(fixture); // the lock is free again
    fixture.panel->updateView6d();
    QCOMPARE(fixture.text(1, XColumn), QStringLiteral("9.00"));
}

void TestRedrawLock::markers()
{
    PanelFixture fixture;
    const DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("3d", "3d 2 [5 1.0][1 2 3] [6 1.0][4 5 6]"), 0);
    fixture.panel->updateView3d();
    sent = 0;
    fixture.table3d().setItem(0, MarkerXColumn, new LastWordCell([&] { sendLines(fixture); }));
    fixture.panel->updateView3d();
    QCOMPARE(sent, 2);
    QCOMPARE(panel.droppedLines(), quint64(0)); // old cells go when the lock is free
    QCOMPARE(fixture.table3d().rowCount(), 2);
    QCOMPARE(fixture.table3d().item(1, MarkerIdColumn)->text(), QStringLiteral("6"));

    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 1);
    QCOMPARE(fixture.table3d().item(0, MarkerXColumn)->text(), QStringLiteral("70.00"));
}

void TestRedrawLock::markersOfOneFrame()
{
    constexpr int markers = 30;
    const auto frame = [](const QByteArray &x) {
        QByteArray line = "3d " + QByteArray::number(markers);
        for (int id = 1; id <= markers; ++id)
            line += " [" + QByteArray::number(id) + " 1.0][" + x + " 2 3]";
        return line;
    };
    const std::array<QByteArray, 2> frames{frame("1"), frame("9")};
    PanelFixture fixture;
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("3d", frames[0]), 0);
    std::atomic<bool> stop{false};
    std::thread sender([&] {
        for (std::size_t i = 0; !stop; ++i)
            fixture.send("3d", frames[i % 2]);
    });
    QStringList torn;
    QSet<QString> seen;
    QElapsedTimer elapsed;
    elapsed.start();
    while ((seen.size() < 2 || elapsed.elapsed() < 200) && torn.isEmpty() && elapsed.elapsed() < 60000) {
        fixture.panel->updateView3d();
        const QString first = fixture.table3d().item(0, MarkerXColumn)->text();
        seen.insert(first);
        for (int row = 1; row < markers; ++row) {
            const QString other = fixture.table3d().item(row, MarkerXColumn)->text();
            if (other != first)
                torn << QStringLiteral("row %1: %2, not %3").arg(QString::number(row), other, first);
        }
    }
    stop = true;
    sender.join();
    QCOMPARE(torn, QStringList());
    QCOMPARE(seen, (QSet<QString>{QStringLiteral("1.00"), QStringLiteral("9.00")}));
}

void TestRedrawLock::rowsOfMarkersAreMadeWithoutTheLock_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("the first rows") << QByteArray("3d 0") << QByteArray(twoMarkers);
    QTest::newRow("fewer rows") << QByteArray("3d 3 [1 1][1 2 3] [2 1][1 2 3] [3 1][1 2 3]") << QByteArray(twoMarkers);
    QTest::newRow("no rows") << QByteArray(twoMarkers) << QByteArray("3d 0");
}

void TestRedrawLock::rowsOfMarkersAreMadeWithoutTheLock()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    PanelFixture fixture;
    const DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("3d", before), 0);
    fixture.panel->updateView3d();
    QCOMPARE(fixture.send("3d", after), 0);
    sent = 0;
    const QObject watch; // ends before the model, which signals its own destruction
    const auto send = [&] {
        QCOMPARE(fixture.send("6di", twoBodies("9")), 0);
        QCOMPARE(fixture.send("3d", after), 0);
        sent += 2;
    };
    const QAbstractItemModel *const model = fixture.table3d().model();
    connect(model, &QAbstractItemModel::rowsInserted, &watch, send);
    connect(model, &QAbstractItemModel::rowsRemoved, &watch, send);
    connect(model, &QAbstractItemModel::modelReset, &watch, send);
    fixture.panel->updateView3d();
    QVERIFY(sent > 0);
    QCOMPARE(panel.droppedLines(), quint64(0));
}

void TestRedrawLock::markersThatComeAndGoMeanwhile_data()
{
    QTest::addColumn<QByteArrayList>("meanwhile"); // each is stored when rows are made
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("shownNext");
    const QByteArray one = "3d 1 [7 1.0][7 8 9]";
    const QByteArray three = "3d 3 [1 1][1 2 3] [2 1][4 5 6] [3 1][7 8 9]";
    const QStringList both{QStringLiteral("5"), QStringLiteral("6")};
    const QStringList seven{QStringLiteral("7")};
    const QStringList all{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")};
    const QString none = QStringLiteral("<no item>");
    QTest::newRow("the same number") << QByteArrayList{twoMarkers} << both << both;
    QTest::newRow("one fewer: once more") << QByteArrayList{one} << seven << seven;
    QTest::newRow("one more: once more") << QByteArrayList{three} << all << all;
    QTest::newRow("another number twice: what both have room for")
        << QByteArrayList{three, one} << QStringList{QStringLiteral("7"), none, none} << seven;
    QTest::newRow("more twice: the rest comes next")
        << QByteArrayList{one, three} << QStringList{QStringLiteral("1")} << all;
}

void TestRedrawLock::markersThatComeAndGoMeanwhile()
{
    QFETCH(QByteArrayList, meanwhile);
    QFETCH(const QStringList, shown);
    QFETCH(const QStringList, shownNext);
    PanelFixture fixture;
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("3d", twoMarkers), 0);
    const auto store = [&] {
        if (!meanwhile.isEmpty())
            QCOMPARE(fixture.send("3d", meanwhile.takeFirst()), 0);
    };
    connect(fixture.table3d().model(), &QAbstractItemModel::rowsInserted, this, store);
    connect(fixture.table3d().model(), &QAbstractItemModel::rowsRemoved, this, store);
    fixture.panel->updateView3d();
    QCOMPARE(meanwhile, QByteArrayList());
    QCOMPARE(markerIds(fixture), shown);
    fixture.panel->updateView3d();
    QCOMPARE(markerIds(fixture), shownNext);
}

void TestRedrawLock::clearingWhileRowsAreMade()
{
    PanelFixture fixture;
    DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("3d", twoMarkers), 0);
    const QAbstractItemModel *const model = fixture.table3d().model();
    connect(model, &QAbstractItemModel::rowsInserted, this, [&] { panel.clearData(); });
    connect(model, &QAbstractItemModel::dataChanged, this, [&] { panel.clearData(); });
    panel.updateView3d(); // and comes back
    QCOMPARE(fixture.table3d().rowCount(), 0);
}

void TestRedrawLock::textsAreTranslatedWithoutTheLock()
{
    PanelFixture fixture;
    fixture.answerBodies(3);
    fixture.answer("body active standard b03", "no");
    const DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", twoBodies("1")), 0);
    sent = 0;
    ListeningTranslator translator([&] { sendLines(fixture); });
    QCoreApplication::installTranslator(&translator);
    fixture.panel->updateView6d();
    fixture.panel->updateView3d();
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(sent > 0);
    QCOMPARE(panel.droppedLines(), quint64(0));
}

void TestRedrawLock::hostIsNotCalledUnderTheLock()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answerHead();
    fixture.answerSensors({1});
    fixture.answer("output active chmon 6di", "no");
    fixture.refuse("wandor multiuser_with_head"); // so that there is something to log, too
    DataDisplay &panel = fixture.createPanel();
    sent = 0;
    fixture.host.onCall = [&] { sendLines(fixture); };
    panel.show();
    panel.configurationChanged();
    panel.timerUpdateInertialSensorInfo();
    panel.onUpdateFilterActiveStatus(1);
    panel.hide();
    panel.clearData();
    panel.prepareShutdown();
    fixture.host.onCall = nullptr;
    QVERIFY(sent > 60);
    QCOMPARE(panel.droppedLines(), quint64(0));
}

QTEST_MAIN(TestRedrawLock)
#include "tst_redrawlock.moc"
