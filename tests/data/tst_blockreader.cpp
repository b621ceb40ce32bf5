// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/blockreader.h"

#include <QtTest>

#include <array>
#include <limits>

namespace {

constexpr qint32 unusedInt = -77;
constexpr float unusedFloat = -77.25F;

} // namespace

class BlockReaderTest : public QObject {
    Q_OBJECT

private slots:
    void readsOneBlock_data();
    void readsOneBlock();
    void readsBlockAfterBlock();
    void storesNothingBehindTheLastValue();
    void readsAMegabyteBlock();
};

void BlockReaderTest::readsOneBlock_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("endPlace");
    QTest::addColumn<QVector<qint32>>("ints");
    QTest::addColumn<QVector<float>>("floats");
    using Ints = QVector<qint32>;
    using Floats = QVector<float>;
    const float infinity = std::numeric_limits<float>::infinity();
    const auto row = [](const char *name, const char *text, const char *format, int end, const Ints &ints,
                        const Floats &floats) {
        QTest::newRow(name) << QByteArray(text) << QByteArray(format) << end << ints << floats;
    };
    row("an integer and a float", "[3 0.5]", "if", 7, {3}, {0.5F});
    row("characters take from two arrays in turn", "[1 0.5 2 1.5]", "ifif", 13, {1, 2}, {0.5F, 1.5F});
    row("text before the block is skipped", "a] 9 ) [3]", "i", 10, {3}, {});
    row("text behind the block stays unread", "[3] [4]", "i", 3, {3}, {});
    row("numbers left over are skipped", "[1 0.5 7] x", "if", 9, {1}, {0.5F});
    row("words left over are skipped", "[1 rest of it]", "i", 14, {1}, {});
    row("one number too few fails, what was read stays", "[1]", "if", -1, {1}, {});
    row("a number behind the block does not count", "[1] 0.5", "if", -1, {1}, {});
    row("a number in the next block does not count", "[1][0.5]", "if", -1, {1}, {});
    row("five floats of six fail, the five stay", "[1 2 3 4 5]", "ffffff", -1, {}, {1, 2, 3, 4, 5});
    row("a word in place of a number fails, what came before stays", "[1 2 x 4]", "ffff", -1, {}, {1, 2});
    row("an empty block with an empty format", "[]", "", 2, {}, {});
    row("an empty format reads none", "[7 8] 9", "", 5, {}, {});
    row("an empty block has no number", "[]", "i", -1, {}, {});
    row("a block of blanks has no number", "[ \t]", "f", -1, {}, {});
    row("no text, no block", "", "i", -1, {}, {});
    row("no text, no block, even for an empty format", "", "", -1, {}, {});
    row("no opening bracket", "1 2]", "i", -1, {}, {});
    row("no closing bracket", "[1 2", "i", -1, {}, {});
    row("no closing bracket, even for an empty format", "[1 2", "", -1, {}, {});
    row("a closing bracket before the opening one does not close", "] [1 2", "i", -1, {}, {});
    row("reversed brackets", "]1[", "i", -1, {}, {});
    row("the first closing bracket closes", "[1 [2] 3]", "i", 6, {1}, {});
    row("the first opening bracket opens", "[[1 2]", "i", -1, {}, {});
    row("an inner bracket is no number", "[1 [2]]", "ii", -1, {1}, {});
    row("another character fails, what came before stays", "[1 2]", "ix", -1, {1}, {});
    row("another character fails at once", "[1 2]", "di", -1, {}, {});
    row("a capital letter is another character", "[1 2]", "Ii", -1, {}, {});
    row("a blank in the format is another character", "[1 2]", "i i", -1, {1}, {});
    row("hexadecimal and octal integers", "[0x1F 010]", "ii", 10, {31, 8}, {});
    row("08 is a zero, then an eight", "[08]", "ii", 4, {0, 8}, {});
    row("numbers need no blank between them", "[1-2+3]", "iif", 7, {1, -2}, {3});
    row("a point ends an integer and begins a float", "[1.5 2]", "iff", 7, {1}, {0.5F, 2});
    row("a decimal comma ends the number", "[1,5]", "ff", -1, {}, {1});
    row("commas do not separate numbers", "[1, 2]", "ii", -1, {1}, {});
    row("all blanks separate", "[\t1\n2\v3\f4\r5 ]", "iiiii", 13, {1, 2, 3, 4, 5}, {});
    row("blanks before the closing bracket", "[ 1   ]", "i", 7, {1}, {});
    row("the whole grammar of floats", "[+1 1e2 0x1p3 inf -inf .5]", "ffffff", 26, {},
        {1, 100, 8, infinity, -infinity, 0.5F});
    row("1e is a one and a word", "[1e 2]", "ff", -1, {}, {1});
    row("integers are cut to 32 bits", "[4294967298 99999999999999999999]", "ii", 33, {2, -1}, {});
    const float nan = std::numeric_limits<float>::quiet_NaN();
    row("a nan's parentheses belong to it", "[nan(7) 2]", "fi", 10, {2}, {nan});
    row("a nan's parenthesis behind the bracket does not", "[nan(7] 2)", "f", 7, {}, {nan});
    row("an open nan ends before its parenthesis", "[nan(7] 2)", "ff", -1, {}, {nan});
    row("an open nan in another block's parenthesis", "[ -NaN( 7][2)]", "f", 10, {}, {nan});
    row("a nan with an odd character between its parentheses", "[nan(?) 1]", "ff", -1, {}, {nan});
    row("a parenthesis behind another word", "[nano(] 2)", "f", 7, {}, {nan});
    row("a bracket ends a nan", "[nan](7)", "f", 5, {}, {nan});
    row("a bracket ends a half nan", "[na]n(7)", "f", -1, {}, {});
    row("a bracket ends a sign", "[-]5", "f", -1, {}, {});
    row("a bracket ends an integer's sign", "[-]5", "i", -1, {}, {});
    row("a bracket ends a point", "[.]5", "f", -1, {}, {});
    row("a bracket ends digits", "[12]34 [0.5]5", "i", 4, {12}, {});
    row("a bracket ends decimals", "[1.]5", "f", 4, {}, {1});
    row("a bracket ends many decimals", "[0.50000000000000000000]5", "f", 24, {}, {0.5F});
    row("a bracket ends an exponent", "[1e]5", "f", 4, {}, {1});
    row("a bracket ends an exponent's sign", "[1e+]5", "f", 5, {}, {1});
    row("a bracket ends an exponent's digits", "[1e1]5", "f", 5, {}, {10});
    row("a bracket ends the x of a float", "[0x]1", "f", 4, {}, {0});
    row("a bracket ends the x of an integer", "[0x]1", "i", 4, {0}, {});
    row("a bracket ends hexadecimal digits", "[0x1]f", "i", 5, {1}, {});
    row("a bracket ends octal digits", "[01]7", "i", 4, {1}, {});
    row("a bracket ends a hexadecimal float", "[0x1.]8p1", "f", 6, {}, {1});
    row("a bracket ends a hexadecimal exponent", "[0x1p]3", "f", 6, {}, {1});
    row("a bracket ends half an infinity", "[infin]ity", "f", 7, {}, {infinity});
}

void BlockReaderTest::readsOneBlock()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QByteArray, format);
    QFETCH(const int, endPlace);
    QFETCH(const QVector<qint32>, ints);
    QFETCH(const QVector<float>, floats);

    QByteArray line(text.constData(), text.size());
    std::array<qint32, 10> readInts{};
    readInts.fill(unusedInt);
    std::array<float, 10> readFloats{};
    readFloats.fill(unusedFloat);
    const char *const start = line.constData();
    const char *end = parseBlock(start, format.constData(), readInts.data(), readFloats.data());
    QCOMPARE(end ? static_cast<int>(end - start) : -1, endPlace);
    QCOMPARE(line, text);

    for (int i = 0; i < static_cast<int>(readInts.size()); ++i)
        QCOMPARE(readInts[static_cast<std::size_t>(i)], ints.value(i, unusedInt));
    for (int i = 0; i < static_cast<int>(readFloats.size()); ++i) {
        const float got = readFloats[static_cast<std::size_t>(i)];
        const float expected = floats.value(i, unusedFloat);
        QVERIFY2(qIsNaN(expected) ? qIsNaN(got) : got == expected,
                 qPrintable(QStringLiteral("float %1 is %2, not %3").arg(i).arg(got).arg(expected)));
    }
}

void BlockReaderTest::readsBlockAfterBlock()
{
    QByteArray line("6d 2 [1 2]x[3 4] ] [5");
    const QByteArray before(line.constData());
    std::array<qint32, 2> ints{};
    const char *const start = line.constData();
    const char *place = parseBlock(start + 2, "ii", ints.data(), nullptr);
    QCOMPARE(static_cast<int>(place - start), 10);
    QCOMPARE(ints, (std::array<qint32, 2>{1, 2}));
    place = parseBlock(place, "ii", ints.data(), nullptr);
    QCOMPARE(static_cast<int>(place - start), 16);
    QCOMPARE(ints, (std::array<qint32, 2>{3, 4}));
    QVERIFY(!parseBlock(place, "i", ints.data(), nullptr));
    QCOMPARE(ints, (std::array<qint32, 2>{3, 4}));
    QCOMPARE(line, before);
}

void BlockReaderTest::storesNothingBehindTheLastValue()
{
    QByteArray line("[1 2 3 4 5 6 7 8 9 10 11 12]");
    std::array<float, 4> floats{unusedFloat, unusedFloat, unusedFloat, unusedFloat};
    QVERIFY(parseBlock(line.constData(), "fff", nullptr, floats.data()));
    QCOMPARE(floats, (std::array<float, 4>{1, 2, 3, unusedFloat}));
}

void BlockReaderTest::readsAMegabyteBlock()
{
    QByteArray line = "[" + QByteArray(1000000, ' ') + "1" + QByteArray(1000000, ' ') + "2]";
    const QByteArray before(line.constData(), line.size());
    std::array<qint32, 2> ints{};
    const char *end = parseBlock(line.constData(), "ii", ints.data(), nullptr);
    QCOMPARE(static_cast<int>(end - line.constData()), line.size());
    QCOMPARE(ints, (std::array<qint32, 2>{1, 2}));
    QCOMPARE(line, before);
}

QTEST_APPLESS_MAIN(BlockReaderTest)

#include "tst_blockreader.moc"
