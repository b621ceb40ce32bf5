// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/bodiesdock.h"
#include "host/bodynames.h"

#include <QAccessible>
#include <QListWidget>
#include <QTest>

#include <memory>

using namespace host;
using namespace std::chrono_literals;

namespace {

/// The bodies as one stream has them, all tracked but those in \a lost.
HealthSnapshot bodies(const QVector<qint32> &ids, const QVector<qint32> &lost = {},
                      std::chrono::nanoseconds lostFor = 4s)
{
    HealthSnapshot snapshot;
    for (const qint32 id : ids) {
        BodyFigures body;
        body.tag = "6d";
        body.id = id;
        body.tracked = !lost.contains(id);
        body.sinceTracked = body.tracked ? 10ms : lostFor;
        snapshot.bodies.append(body);
    }
    return snapshot;
}

} // namespace

class BodiesDockTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { dock.reset(); }

    void hasALineForEachBody();
    void itemsOfBodiesThatStayAreKept_data();
    void itemsOfBodiesThatStayAreKept();
    void agesGoOn();
    void saysThatTheSourceIsNotLive();
    void restsWhileItIsClosed();
    void hasAName();

private:
    void show(const HealthSnapshot &snapshot, Liveness::Level level = Liveness::Level::Live);
    QStringList lines() const;
    QListWidget *list() const { return dock->findChild<QListWidget *>(); }

    BodyNames names;
    std::unique_ptr<BodiesDock> dock;
};

void BodiesDockTest::init()
{
    names.clear();
    dock = std::make_unique<BodiesDock>(names);
    dock->show();
    QVERIFY(QTest::qWaitForWindowExposed(dock.get()));
}

void BodiesDockTest::show(const HealthSnapshot &snapshot, Liveness::Level level)
{
    Liveness liveness;
    liveness.level = level;
    dock->refresh(snapshot, liveness);
}

QStringList BodiesDockTest::lines() const
{
    QStringList texts;
    for (int row = 0; row < list()->count(); ++row)
        texts << list()->item(row)->text();
    return texts;
}

void BodiesDockTest::hasALineForEachBody()
{
    QCOMPARE(lines(), QStringList());
    names.note("body desc standard b02", "L hand");
    show(bodies({0, 1, 2}, {1}));
    QCOMPARE(lines(),
             (QStringList{QStringLiteral("body 1: tracked"), QStringLiteral("2 L hand: lost for 4 s"),
                          QStringLiteral("body 3: tracked")}));
    names.note("body desc standard b03", "Helmet");
    show(bodies({0, 1, 2}, {1}));
    QCOMPARE(lines().at(2), QStringLiteral("3 Helmet: tracked"));
}

void BodiesDockTest::itemsOfBodiesThatStayAreKept_data()
{
    QTest::addColumn<QVector<qint32>>("before");
    QTest::addColumn<QVector<qint32>>("after");
    const auto row = [](const char *name, const QVector<qint32> &before, const QVector<qint32> &after) {
        QTest::newRow(name) << before << after;
    };
    row("nothing changes", {0, 1, 2}, {0, 1, 2});
    row("one at the end", {0, 1}, {0, 1, 2});
    row("one in front", {1, 2}, {0, 1, 2});
    row("one between", {0, 2}, {0, 1, 2});
    row("the first goes", {0, 1, 2}, {1, 2});
    row("one between goes", {0, 1, 2}, {0, 2});
    row("the last goes", {0, 1, 2}, {0, 1});
    row("all go", {0, 1, 2}, {});
    row("some go and some come", {0, 2, 4, 6}, {1, 2, 3, 6, 7});
}

void BodiesDockTest::itemsOfBodiesThatStayAreKept()
{
    QFETCH(const QVector<qint32>, before);
    QFETCH(const QVector<qint32>, after);
    show(bodies(before));
    QHash<qint32, QListWidgetItem *> items;
    for (int row = 0; row < before.size(); ++row)
        items.insert(before.at(row), list()->item(row));
    show(bodies(after));
    QCOMPARE(list()->count(), after.size());
    for (int row = 0; row < after.size(); ++row) {
        QCOMPARE(list()->item(row)->text(), QStringLiteral("body %1: tracked").arg(after.at(row) + 1));
        if (items.contains(after.at(row)))
            QCOMPARE(list()->item(row), items.value(after.at(row)));
    }
}

void BodiesDockTest::agesGoOn()
{
    show(bodies({0, 1}));
    QListWidgetItem *const item = list()->item(1);
    list()->setCurrentRow(1);
    for (const auto age : {1s, 2s, 3s}) {
        show(bodies({0, 1}, {1}, age));
        QCOMPARE(list()->currentItem(), item);
        QCOMPARE(item->text(), QStringLiteral("body 2: lost for %1 s").arg(age.count()));
    }
    show(bodies({0, 1}));
    QCOMPARE(item->text(), QStringLiteral("body 2: tracked"));
}

void BodiesDockTest::saysThatTheSourceIsNotLive()
{
    show(bodies({0, 1}, {1}), Liveness::Level::Frozen);
    QCOMPARE(lines(),
             (QStringList{QStringLiteral("body 1: unknown, last tracked 0 s ago"),
                          QStringLiteral("body 2: unknown, last tracked 4 s ago")}));
}

void BodiesDockTest::restsWhileItIsClosed()
{
    dock->close();
    show(bodies({0}));
    QCOMPARE(lines(), QStringList());
    dock->show();
    show(bodies({0}));
    QCOMPARE(lines().size(), 1);
}

void BodiesDockTest::hasAName()
{
    QCOMPARE(QAccessible::queryAccessibleInterface(list())->text(QAccessible::Name),
             QStringLiteral("States of the bodies"));
    QCOMPARE(dock->toggleViewAction()->text(), QStringLiteral("&Bodies"));
}

QTEST_MAIN(BodiesDockTest)
#include "tst_bodiesdock.moc"
