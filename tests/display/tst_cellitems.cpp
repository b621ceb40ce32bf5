// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "display/cellitems.h"

#include <QDataStream>
#include <QSignalSpy>
#include <QTableWidget>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace {

constexpr int right = Qt::AlignRight | Qt::AlignVCenter;
constexpr int centre = Qt::AlignHCenter | Qt::AlignVCenter;

QString number(const char *text)
{
    return QString::fromLatin1(text);
}

QByteArray bytesOf(const QTableWidgetItem &item)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << item;
    return bytes;
}

void readFrom(const QByteArray &bytes, QTableWidgetItem &item)
{
    QDataStream stream(bytes);
    stream >> item;
}

} // namespace

class TestCellItems : public QObject {
    Q_OBJECT

private slots:
    void texts_data();
    void texts();
    void sameBitsChangeNothing();
    void aTextReplacesTheNumber();
    void aTextIsToldToTheTable_data();
    void aTextIsToldToTheTable();
    void alignments();
    void clones();
    void markerIds();
    void coloursAreSetWhenTheyChange();
    void plainItemsAreServedToo();
    void streamsHaveTheTextShown();
    void streamsReplaceWhatIsShown();
    void textsForScreenReaders();
};

void TestCellItems::texts_data()
{
    using Limits = std::numeric_limits<float>;
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("two decimals") << 1.5F << number("1.50");
    QTest::newRow("0") << 0.0F << number("0.00");
    QTest::newRow("a minus before exactly 0 isn't shown") << -0.0F << number("0.00");
    QTest::newRow("a small negative number keeps its minus") << -0.001F << number("-0.00");
    QTest::newRow("infinity") << -Limits::infinity() << number("-inf");
    QTest::newRow("not a number") << Limits::quiet_NaN() << number("nan");
    QTest::newRow("the largest number in full")
        << Limits::max() << number("340282346638528859811704183484516925440.00");
    QTest::newRow("the smallest number") << Limits::denorm_min() << number("0.00");
}

void TestCellItems::texts()
{
    QFETCH(const float, value);
    QFETCH(const QString, text);
    CoordinateItem item;
    QVERIFY(item.setNumber(value));
    QCOMPARE(item.text(), text);
    QCOMPARE(item.data(Qt::EditRole), QVariant(text));
    QCOMPARE(CoordinateItem(value).text(), text);
}

void TestCellItems::sameBitsChangeNothing()
{
    CoordinateItem item;
    QVERIFY(item.setNumber(0.0F)); // a first number replaces the lack of any
    QVERIFY(!item.setNumber(0.0F));
    QVERIFY(item.setNumber(-0.0F));
    QVERIFY(item.setNumber(std::nanf("")));
    QVERIFY(!item.setNumber(std::nanf("")));
}

void TestCellItems::aTextReplacesTheNumber()
{
    CoordinateItem item;
    QVERIFY(!item.data(Qt::DisplayRole).isValid());
    item.setText(number("-"));
    QCOMPARE(item.text(), number("-"));
    item.setNumber(2.0F);
    QCOMPARE(item.text(), number("2.00"));
    item.setText(number("-"));
    QCOMPARE(item.text(), number("-"));
    QVERIFY(item.setNumber(2.0F));
    item.setData(Qt::EditRole, 7);
    QCOMPARE(item.data(Qt::DisplayRole), QVariant(7));
    item.setNumber(2.0F);
    item.setData(Qt::DisplayRole, QVariant());
    QVERIFY(!item.data(Qt::DisplayRole).isValid());
    item.setNumber(2.0F);
    item.setToolTip(number("where it is"));
    QCOMPARE(item.text(), number("2.00"));
    QCOMPARE(item.toolTip(), number("where it is"));
}

void TestCellItems::aTextIsToldToTheTable_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("signalCount");
    QTest::newRow("another text is told") << QVariant(number("-")) << 1;
    QTest::newRow("the text that stood there before the number is told") << QVariant(number("old")) << 1;
    QTest::newRow("the number's own text is no change") << QVariant(number("2.00")) << 0;
    QTest::newRow("no text at all is told") << QVariant() << 1;
}

void TestCellItems::aTextIsToldToTheTable()
{
    QFETCH(const QVariant, value);
    QFETCH(const int, signalCount);
    QTableWidget table(1, 1);
    auto *item = new CoordinateItem;
    table.setItem(0, 0, item);
    item->setText(number("old"));
    item->setNumber(2.0F);
    const QSignalSpy spy(table.model(), &QAbstractItemModel::dataChanged);
    item->setData(Qt::DisplayRole, value);
    QCOMPARE(spy.count(), signalCount);
    QCOMPARE(item->data(Qt::DisplayRole), value);
}

void TestCellItems::alignments()
{
    CoordinateItem item(1.0F);
    QCOMPARE(item.textAlignment(), right);
    item.setTextAlignment(Qt::AlignLeft);
    QCOMPARE(item.textAlignment(), int(Qt::AlignLeft));
    QCOMPARE(MarkerIdItem(number("%1"), 1).textAlignment(), centre);
}

void TestCellItems::clones()
{
    CoordinateItem item(1.0F);
    item.setBackground(Qt::red);
    item.setFlags(Qt::ItemIsEnabled);
    const std::unique_ptr<QTableWidgetItem> clone(item.clone());
    item.setNumber(2.0F);
    QCOMPARE(clone->text(), number("1.00"));
    QCOMPARE(clone->type(), item.type());
    QCOMPARE(clone->background(), QBrush(Qt::red));
    QCOMPARE(clone->flags(), Qt::ItemFlags(Qt::ItemIsEnabled));
    QCOMPARE(clone->textAlignment(), right);

    const std::unique_ptr<QTableWidgetItem> idClone(MarkerIdItem(number("%1"), -7).clone());
    QCOMPARE(idClone->text(), number("-7"));
    QCOMPARE(idClone->textAlignment(), centre);
}

void TestCellItems::markerIds()
{
    QCOMPARE(MarkerIdItem(number("%1"), 0).text(), number("0"));
    QCOMPARE(MarkerIdItem(number("%1"), std::numeric_limits<qint32>::min()).text(), number("-2147483648"));
    QCOMPARE(MarkerIdItem(number("no. %1"), 1234567).text(), number("no. 1234567"));
    MarkerIdItem item(number("%1"), 12);
    item.setText(number("x"));
    QCOMPARE(item.text(), number("x"));
}

void TestCellItems::coloursAreSetWhenTheyChange()
{
    QTableWidgetItem item(number("1"));
    QVERIFY(setBackground(item, Qt::red));
    QVERIFY(setColours(item, Qt::black, Qt::red));
    QVERIFY(!setBackground(item, Qt::red));
    QVERIFY(!setColours(item, Qt::black, Qt::red));
    QCOMPARE(item.background(), QBrush(Qt::red));
    QCOMPARE(item.foreground(), QBrush(Qt::black));
    item.setBackground(Qt::magenta);
    item.setForeground(Qt::magenta);
    QVERIFY(setColours(item, Qt::black, Qt::red));
    QCOMPARE(item.background(), QBrush(Qt::red));
    QCOMPARE(item.foreground(), QBrush(Qt::black));
    item.setBackground(Qt::transparent);
    QVERIFY(!setBackground(item, Qt::transparent)); // set by somebody else, but it is the same brush
    item.setBackground(QBrush());
    QVERIFY(setBackground(item, Qt::transparent));
}

void TestCellItems::plainItemsAreServedToo()
{
    QTableWidgetItem item;
    QVERIFY(setNumber(item, -0.001F));
    QVERIFY(!setNumber(item, -0.001F));
    QCOMPARE(item.text(), number("-0.00"));
    QVERIFY(setColours(item, Qt::black, Qt::green));
    QVERIFY(!setColours(item, Qt::black, Qt::green));
    QVERIFY(setColours(item, Qt::white, Qt::green));
    QVERIFY(setBackground(item, Qt::transparent));
    QVERIFY(!setBackground(item, Qt::transparent));
    QCOMPARE(item.foreground(), QBrush(Qt::white));
    QCOMPARE(item.background(), QBrush(Qt::transparent));
}

void TestCellItems::streamsHaveTheTextShown()
{
    CoordinateItem fresh(3.0F);
    CoordinateItem item;
    item.setText(number("-"));
    item.setBackground(Qt::red);
    item.setNumber(2.5F);
    const MarkerIdItem id(number("no. %1"), 7);
    CoordinateItem without;
    without.setText(number("-"));
    const std::pair<const QTableWidgetItem *, QString> cases[] = {
        {&fresh, number("3.00")},
        {&item, number("2.50")},
        {&id, number("no. 7")},
        {&without, number("-")},
    };
    for (const auto &[original, text] : cases) {
        QTableWidgetItem read;
        readFrom(bytesOf(*original), read);
        QCOMPARE(read.text(), text);
        QCOMPARE(read.background(), original->background());
        QCOMPARE(read.foreground(), original->foreground());
    }
    QCOMPARE(item.text(), number("2.50")); // and is as it was
    QVERIFY(!item.setNumber(2.5F));
}

void TestCellItems::streamsReplaceWhatIsShown()
{
    QTableWidgetItem source(number("read"));
    const QByteArray bytes = bytesOf(source);

    CoordinateItem item(2.0F);
    readFrom(bytes, item);
    QCOMPARE(item.text(), number("read"));
    QVERIFY(item.setNumber(2.0F));
}

void TestCellItems::textsForScreenReaders()
{
    const QString spoken = number("71 %");
    CoordinateItem coordinate(2.0F);
    coordinate.setData(Qt::AccessibleTextRole, spoken);
    QCOMPARE(coordinate.data(Qt::AccessibleTextRole), QVariant(spoken));
    QCOMPARE(coordinate.text(), number("2.00"));
    QVERIFY(!coordinate.setNumber(2.0F));
}

QTEST_MAIN(TestCellItems)
#include "tst_cellitems.moc"
