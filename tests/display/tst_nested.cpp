// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QtTest>

#include <functional>
#include <thread>

namespace {

QByteArray markerLine(int count)
{
    QByteArray line = "3d " + QByteArray::number(count);
    for (int i = 0; i < count; ++i)
        line += '[' + QByteArray::number(i) + " 1.0][1 2 3]";
    return line;
}

QByteArray bodyLine(int count, const char *position)
{
    QByteArray line = "6di " + QByteArray::number(count);
    for (int i = 0; i < count; ++i)
        line += bodyText(i, "2", "1.0", position);
    return line;
}

/// A panel with two bodies and two markers, and somebody who answers a change of a table by a call of the panel.
struct AnsweredPanel : PanelFixture {
    AnsweredPanel()
    {
        answerBodies(2);
        createConfiguredPanel();
        show(2, "1 2 3");
    }

    /// Delivers a frame and draws it.
    void show(int markers, const char *position)
    {
        send("6di", bodyLine(2, position));
        send("3d", markerLine(markers));
        panel->updateView6d();
        panel->updateView3d();
    }

    /// Answers the next \a signal of a table's model.
    void answerSignal(const QTableWidget &table, const QByteArray &signal, const std::function<void()> &act)
    {
        const auto once = [this, act] {
            if (++answered == 1)
                act();
        };
        const QAbstractItemModel *const model = table.model();
        if (signal == "dataChanged")
            QObject::connect(model, &QAbstractItemModel::dataChanged, panel.get(), once);
        else if (signal == "rowsInserted")
            QObject::connect(model, &QAbstractItemModel::rowsInserted, panel.get(), once);
        else if (signal == "rowsRemoved")
            QObject::connect(model, &QAbstractItemModel::rowsRemoved, panel.get(), once);
        else if (signal == "modelReset")
            QObject::connect(model, &QAbstractItemModel::modelReset, panel.get(), once);
        else
            qFatal("There is no signal %s", signal.constData());
    }

    int answered = 0; ///< how often the signal came
};

} // namespace

/// Somebody connected to the tables calls the panel from a slot. No signal may come under the lock.
class TestNested : public QObject {
    Q_OBJECT

private slots:
    void changesOfATable_data();
    void changesOfATable();
    void rowsThatAreMade_data();
    void rowsThatAreMade();
};

void TestNested::changesOfATable_data()
{
    QTest::addColumn<bool>("isMarkerTable");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<int>("markers"); // in the frame that changes the table
    QTest::addColumn<QByteArray>("call");
    const auto row = [](const char *name, bool isMarkerTable, const char *signal, int markers) {
        for (const char *const call : {"clearData", "configurationChanged", "a line"})
            QTest::addRow("%s: %s", name, call) << isMarkerTable << QByteArray(signal) << markers << QByteArray(call);
    };
    row("more markers", true, "rowsInserted", 5);
    row("fewer markers", true, "rowsRemoved", 1);
    row("as many markers", true, "dataChanged", 2);
    row("more markers, as cells", true, "dataChanged", 5);
    row("bodies", false, "dataChanged", 2);
}

void TestNested::changesOfATable()
{
    QFETCH(const bool, isMarkerTable);
    QFETCH(const QByteArray, signal);
    QFETCH(const int, markers);
    QFETCH(const QByteArray, call);
    AnsweredPanel fixture;
    QCOMPARE(fixture.table3d().rowCount(), 2);
    quint64 storedInside = 0;
    fixture.answerSignal(isMarkerTable ? fixture.table3d() : fixture.table6d(), signal, [&] {
        if (call == "clearData")
            fixture.panel->clearData();
        else if (call == "configurationChanged")
            fixture.panel->configurationChanged();
        const quint64 stored = fixture.panel->storedLines();
        std::thread([&] { fixture.send("3d", markerLine(3)); }).join();
        storedInside = fixture.panel->storedLines() - stored;
    });
    fixture.show(markers, "4 5 6");
    QVERIFY(fixture.answered > 0);
    QCOMPARE(storedInside, quint64{1}); // and not dropped at a lock that is held
    if (call == "clearData") {
        QCOMPARE(fixture.table6d().rowCount(), 0);
        fixture.panel->configurationChanged();
    }

    fixture.show(4, "7 8 9");
    QCOMPARE(fixture.text(1, XColumn), QStringLiteral("7.00"));
    QCOMPARE(fixture.table3d().rowCount(), 4);
    for (int row = 0; row < 4; ++row) {
        QVERIFY(fixture.table3d().item(row, MarkerIdColumn));
        QCOMPARE(fixture.table3d().item(row, MarkerIdColumn)->text(), QString::number(row));
        QCOMPARE(fixture.table3d().item(row, MarkerZColumn)->text(), QStringLiteral("3.00"));
    }
}

void TestNested::rowsThatAreMade_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<int>("bodies"); // of the next configuration
    QTest::addColumn<bool>("isCleared"); // else configured once more
    for (const bool isCleared : {true, false}) {
        const char *const call = isCleared ? "clearData" : "configurationChanged";
        QTest::addRow("more bodies: %s", call) << QByteArray("rowsInserted") << 3 << isCleared;
        QTest::addRow("fewer bodies: %s", call) << QByteArray("rowsRemoved") << 1 << isCleared;
        QTest::addRow("no contents: %s", call) << QByteArray("modelReset") << 3 << isCleared;
        QTest::addRow("as many bodies: %s", call) << QByteArray("dataChanged") << 2 << isCleared;
    }
}

void TestNested::rowsThatAreMade()
{
    QFETCH(const QByteArray, signal);
    QFETCH(const int, bodies);
    QFETCH(const bool, isCleared);
    AnsweredPanel fixture;
    fixture.answerBodies(bodies);
    fixture.answerSignal(fixture.table6d(), signal, [&] {
        if (isCleared)
            fixture.panel->clearData();
        else
            fixture.panel->configurationChanged();
    });
    fixture.panel->configurationChanged();
    QVERIFY(fixture.answered > 0);
    QCOMPARE(fixture.table6d().rowCount(), isCleared ? 0 : bodies);
    QCOMPARE(fixture.viewTimer().isActive(), !isCleared);
    if (isCleared)
        fixture.panel->configurationChanged();
    fixture.send("6di", bodyLine(bodies, "4 5 6"));
    fixture.panel->updateView6d();
    for (int row = 0; row < bodies; ++row)
        QCOMPARE(fixture.text(row, XColumn), QStringLiteral("4.00"));
}

QTEST_MAIN(TestNested)
#include "tst_nested.moc"
