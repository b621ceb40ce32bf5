// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QtTest>

#include <functional>
#include <utility>

namespace {

const char *const oneMarker = "3d 1 [7 1.0][70 80 90]";

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

} // namespace

/// What is done under the lock: a whole redraw, which shows one frame, and no call into the host.
class TestRedrawLock : public QObject {
    Q_OBJECT

private slots:
    void bodies();
    void markers();
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
    sent = 0;
    const QMetaObject::Connection watch =
        connect(fixture.table3d().model(), &QAbstractItemModel::rowsInserted, this, [&] { sendLines(fixture); });
    fixture.panel->updateView3d();
    QVERIFY(sent > 0);
    QCOMPARE(panel.droppedLines(), quint64(sent));
    QCOMPARE(fixture.table3d().rowCount(), 2);
    QCOMPARE(fixture.table3d().item(1, MarkerIdColumn)->text(), QStringLiteral("6"));

    disconnect(watch);
    sendLines(fixture); // the lock is free again
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 1);
    QCOMPARE(fixture.table3d().item(0, MarkerXColumn)->text(), QStringLiteral("70.00"));
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
