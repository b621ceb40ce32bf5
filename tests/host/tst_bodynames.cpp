// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/bodynames.h"

#include <QTest>
#include <QVector>

#include <utility>

using namespace host;

using Exchange = std::pair<QByteArray, QByteArray>; // a question and its answer

class BodyNamesTest : public QObject {
    Q_OBJECT

private slots:
    void labels_data();
    void labels();
    void anotherBackendHasOtherNames();
};

void BodyNamesTest::labels_data()
{
    QTest::addColumn<QVector<Exchange>>("exchanges");
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("label");
    const auto row = [](const char *name, const QVector<Exchange> &exchanges, int id, const char *label) {
        QTest::newRow(name) << exchanges << id << QString::fromUtf8(label);
    };
    const Exchange camera{"body desc standard b01", "Camera"};
    const Exchange hand{"body desc standard b02", "\"L\" hand"};
    const Exchange heads{"wandor multiuser_with_head", "yes"};
    const Exchange oneHead{"body number_of_bodies multiuserwandor_head", "1"};
    row("without a name", {}, 2, "body 3");
    row("with a name", {camera, hand}, 0, "1 Camera");
    row("without the quotes of the channel", {camera, hand}, 1, "2 L hand");
    row("in UTF-8", {{"body desc standard b01", "K\xc3\xb6rper"}}, 0, "1 K\xc3\xb6rper");
    row("renamed", {camera, {"body desc standard b01", "Lens"}}, 0, "1 Lens");
    row("named with nothing", {{"body desc standard b01", "\"\" "}}, 0, "body 1");
    row("of more than two digits", {{"body desc standard b123", "Far"}}, 122, "123 Far");
    row("a name of a body that is none", {{"body desc standard bXY", "Far"}}, 0, "body 1");
    row("another question about the same body", {{"body active standard b01", "yes"}}, 0, "body 1");
    row("a percent sign", {{"body desc standard b01", "%1 %2"}}, 0, "1 %1 %2");
    row("the head target comes first", {heads, oneHead, camera}, 0, "MUH");
    row("and the bodies are one further on", {heads, oneHead, camera}, 1, "2 Camera");
    row("no head target among those that may be", {heads, {oneHead.first, "0"}, camera}, 0, "1 Camera");
    row("head targets that are not in use", {{heads.first, "no"}, oneHead, camera}, 0, "1 Camera");
    row("the highest id", {}, 2147483647, "body 2147483648");
    row("a negative id", {}, -1, "body 0");
}

void BodyNamesTest::labels()
{
    QFETCH(const QVector<Exchange>, exchanges);
    QFETCH(const int, id);
    BodyNames names;
    for (const Exchange &exchange : exchanges)
        names.note(exchange.first, exchange.second);
    QTEST(names.label(id), "label");
}

void BodyNamesTest::anotherBackendHasOtherNames()
{
    BodyNames names;
    names.note("wandor multiuser_with_head", "yes");
    names.note("body number_of_bodies multiuserwandor_head", "2");
    names.note("body desc standard b01", "Camera");
    QCOMPARE(names.label(1), QStringLiteral("2 Camera"));
    names.clear();
    QCOMPARE(names.label(0), QStringLiteral("body 1"));
    QCOMPARE(names.label(1), QStringLiteral("body 2"));
}

QTEST_GUILESS_MAIN(BodyNamesTest)
#include "tst_bodynames.moc"
