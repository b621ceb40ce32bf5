// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/seenbodies.h"

#include <QTest>

using namespace backend;

namespace {

const QByteArray pose6d("[1.5 -2 3e2 0 0 0][1 0 0 0 1 0 0 0 1]");
const QByteArray pose6di("[1.5 -2 3e2][1 0 0 0 1 0 0 0 1]");

QByteArray line6d(const QVector<int> &ids)
{
    QByteArray line = "6d " + QByteArray::number(ids.size());
    for (const int id : ids)
        line += " [" + QByteArray::number(id) + " 1.0]" + pose6d;
    return line;
}

} // namespace

class TestSeenBodies : public QObject {
    Q_OBJECT

private slots:
    void knowsBodiesByTheirBlocks_data();
    void knowsBodiesByTheirBlocks();
    void refusesTooManyBodies_data();
    void refusesTooManyBodies();
    void countsWhatIsMoreThanBefore();
    void answersWhatAPanelAsks_data();
    void answersWhatAPanelAsks();
    void isInertialOnceTheStateWasSeen();
    void knowsAsManyAsThereMayBe();
};

void TestSeenBodies::knowsBodiesByTheirBlocks_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("bodies");
    const auto row = [](const char *name, const QByteArray &line, int bodies) {
        QTest::newRow(name) << line << bodies;
    };
    row("as many as there are", line6d({0, 1, 2}), 3);
    row("the highest number counts, as it is the row", line6d({4}), 5);
    row("in any order", line6d({2, 0, 1}), 3);
    row("never the count", "6d 900 [0 1]" + pose6d, 1);
    row("nor a count that is none", "6d many [0 1]" + pose6d, 1);
    row("a line without a body", "6d 0", 0);
    row("a line that ends within a body", "6d 2 [0 1]" + pose6d + " [1 1][1 2 3 4 5 6]", 1);
    row("a block that ends early", "6d 2 [0 1]" + pose6d + " [1 1][1 2 3 4 5 6][1 2 3", 1);
    row("a block with a number too few", "6d 1 [0 1][1 2 3 4 5][1 0 0 0 1 0 0 0 1]", 0);
    row("a block with a number too many", "6d 1 [0 1 2][1 2 3 4 5 6 7][1 0 0 0 1 0 0 0 1 2]", 1);
    row("a word among the numbers", "6d 1 [0 1][1 2 x 4 5 6][1 0 0 0 1 0 0 0 1]", 0);
    row("a word for a quality", "6d 1 [0 good]" + pose6d, 0);
    row("what a reader takes for a number", "6d 1 [0x2 +.5][inf -nan 0x1p3 1E2 -1. +2][1 0 0 0 1 0 0 0 1]", 3);
    row("tabs and carriage returns are blanks", "6d 1 [\t1\r 1\v]\t" + pose6d + '\r', 2);
    row("other text between the blocks", "6d 1, body: [0 1], pose: " + pose6d, 1);
    row("what is not tracked is there, too", "6d 1 [0 -1]" + pose6d, 1);
    row("a negative number is no body's", "6d 1 [-1 1]" + pose6d, 0);
    row("nothing behind a zero is read", QByteArray("6d 1 [0 1]\0", 11) + pose6d, 0);
    row("a state belongs to 6di alone", "6di 1 [3 2 1]" + pose6di, 4);
    row("a body of 6di without a state", "6di 1 [3 1]" + pose6di, 0);
    row("3d has no bodies", "3d 1 [7 1][1 2 3] [8 1][1 2 3] [9 1][1 2 3]", 0);
    row("noise", "6d [[[]]]][ \xff\xfe[0", 0);
}

void TestSeenBodies::knowsBodiesByTheirBlocks()
{
    QFETCH(const QByteArray, line);
    QFETCH(const int, bodies);
    SeenBodies seen;
    QVERIFY(seen.see({line.left(line.indexOf(' ')), line}));
    QCOMPARE(seen.answer("standard number_of_bodies"), std::optional(QByteArray::number(bodies)));
}

void TestSeenBodies::refusesTooManyBodies_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("taken");
    const auto row = [](const char *name, const QByteArray &line, bool taken) { QTest::newRow(name) << line << taken; };
    row("the thousandth body", line6d({0, 999}), true);
    row("one beyond it", line6d({0, 1000}), false);
    row("a number beyond all", line6d({0, 2147483647}), false);
    row("a number beyond 32 bits", "6d 1 [99999999999999999999 1]" + pose6d, false);
    row("a thousand bodies", line6d(QVector<int>(1000, 3)), true);
    row("more than a thousand, whatever their numbers", line6d(QVector<int>(1001, 3)), false);
}

void TestSeenBodies::refusesTooManyBodies()
{
    QFETCH(const QByteArray, line);
    QFETCH(const bool, taken);
    SeenBodies seen;
    QCOMPARE(seen.see({"6d", line}), taken);
    QCOMPARE(seen.changes() == 1, taken);
    QCOMPARE(seen.answer("standard number_of_bodies") == "0", !taken);
}

void TestSeenBodies::countsWhatIsMoreThanBefore()
{
    SeenBodies seen;
    const auto changesAfter = [&seen](const QByteArray &line) {
        if (!seen.see({line.left(line.indexOf(' ')), line}))
            qFatal("a line was refused");
        return seen.changes();
    };
    QCOMPARE(changesAfter("3d 0"), 0U);
    QCOMPARE(changesAfter("6d 0"), 0U);
    QCOMPARE(changesAfter(line6d({0, 1})), 1U);
    QCOMPARE(changesAfter(line6d({1, 0})), 1U);
    QCOMPARE(changesAfter(line6d({0})), 1U); // none is forgotten
    QCOMPARE(changesAfter(line6d({0, 1, 2})), 2U);
    QCOMPARE(changesAfter("6di 1 [0 2 1]" + pose6di), 3U); // inertial
    QCOMPARE(changesAfter("6di 1 [0 2 1]" + pose6di), 3U);
    QCOMPARE(changesAfter("6di 1 [3 2 1]" + pose6di), 4U);
    QCOMPARE(seen.answer("standard number_of_bodies"), std::optional<QByteArray>("4"));
}

void TestSeenBodies::answersWhatAPanelAsks_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer"); // null: none
    const auto row = [](const char *query, const char *answer) {
        QTest::newRow(query) << QByteArray(query) << QByteArray(answer);
    };
    row("standard number_of_bodies", "2");
    row("body number_of_bodies standard", "2");
    row("standard fixed_angle_present", "yes");
    row("body active standard b01", "yes");
    row("body calibrated standard b02", "yes");
    row("body calibrated standard b03", nullptr);
    row("body desc standard b02", "\"\"");
    row("body inertial_sensor standard b01", "none");
    row("body filter6d_enabled standard b01", "no");
    row("body number_of_bodies multiuserwandor_head", "0");
    row("wandor number_of_devices", "0");
    row("wandor multiuser_available", "no");
    row("wandor multiuser", "no");
    row("wandor multiuser_with_head_available", "no");
    row("wandor multiuser_with_head", "no");
    row("tracking reference", "none");
    row("output available 6d", "yes");
    row("output active chmon 6d", "yes");
    row("output available 6di", "no");
    row("output active chmon 6di", "no");
    row("output active chmon 3d", "yes");
    row("inertial available", "no");
    row("inertial number_of_sensors", "0");
    row("filter6d available standard", "no");
    row("filter6d available wandor", "no");
    row("config is_changeable", "no");
    row("no such question", nullptr);
}

void TestSeenBodies::answersWhatAPanelAsks()
{
    QFETCH(const QByteArray, query);
    QFETCH(const QByteArray, answer);
    SeenBodies seen;
    QVERIFY(seen.see({"6d", line6d({0, 1})}));
    const std::optional<QByteArray> given = seen.answer(query);
    QCOMPARE(given.has_value(), !answer.isNull());
    QCOMPARE(given.value_or(QByteArray()), answer);
    QCOMPARE(seen.version().major, 2);
    QCOMPARE(seen.version().minor, 0);
}

void TestSeenBodies::isInertialOnceTheStateWasSeen()
{
    SeenBodies seen;
    QVERIFY(seen.see({"6di", "6di 0"})); // the type says it, without a body
    QCOMPARE(seen.changes(), 1U);
    QCOMPARE(seen.answer("standard fixed_angle_present"), std::optional<QByteArray>("no"));
    QCOMPARE(seen.answer("output available 6di"), std::optional<QByteArray>("yes"));
    QCOMPARE(seen.answer("output active chmon 6di"), std::optional<QByteArray>("yes"));
    QVERIFY(seen.see({"6d", line6d({0})}));
    QCOMPARE(seen.answer("standard fixed_angle_present"), std::optional<QByteArray>("no"));
}

void TestSeenBodies::knowsAsManyAsThereMayBe()
{
    SeenBodies seen;
    QVERIFY(seen.see({"6d", line6d({999})}));
    QCOMPARE(seen.answer("standard number_of_bodies"), std::optional<QByteArray>("1000"));
    QCOMPARE(seen.answer("body calibrated standard b1000"), std::optional<QByteArray>("yes"));
}

QTEST_APPLESS_MAIN(TestSeenBodies)
#include "tst_seenbodies.moc"
