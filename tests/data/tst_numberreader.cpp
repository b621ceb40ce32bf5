// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/numberreader.h"

#include "randomtext.h"
#include "tests/support/rivalnumbers.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

quint32 bitsOf(float value)
{
    quint32 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

int lengthRead(const char *text, const char *end)
{
    return end ? static_cast<int>(end - text) : -1;
}

/// What is wrong with the reading of \a text, both as an integer and as a float; empty if it equals the rivals'.
QByteArray disagreement(const std::string &content)
{
    const char *text = content.c_str();
    const ReadNumber<qint32> integer = readInteger(text);
    const ReadNumber<qint32> rivalsInteger = rivalInteger(text);
    if (integer.value != rivalsInteger.value || integer.end != rivalsInteger.end) {
        return "integer of \"" + QByteArray(text).toPercentEncoding() + "\": " + QByteArray::number(integer.value)
            + " up to " + QByteArray::number(lengthRead(text, integer.end)) + ", but strtol has "
            + QByteArray::number(rivalsInteger.value) + " up to "
            + QByteArray::number(lengthRead(text, rivalsInteger.end));
    }
    const ReadNumber<float> number = readFloat(text);
    const ReadNumber<float> rivalsNumber = rivalFloat(text);
    if (bitsOf(number.value) != bitsOf(rivalsNumber.value) || number.end != rivalsNumber.end) {
        return "float of \"" + QByteArray(text).toPercentEncoding()
            + "\": " + QByteArray::number(bitsOf(number.value), 16) + " up to "
            + QByteArray::number(lengthRead(text, number.end)) + ", but strtod has "
            + QByteArray::number(bitsOf(rivalsNumber.value), 16) + " up to "
            + QByteArray::number(lengthRead(text, rivalsNumber.end));
    }
    return {};
}

/// Sets the locale of the process, and "C" again at the end of the scope.
class ProcessLocale {
public:
    explicit ProcessLocale(const char *name)
        : isSet(std::setlocale(LC_ALL, name) != nullptr)
    {
    }
    ~ProcessLocale() { std::setlocale(LC_ALL, "C"); }
    Q_DISABLE_COPY_MOVE(ProcessLocale)

    const bool isSet;
};

} // namespace

class NumberReaderTest : public QObject {
    Q_OBJECT

private slots:
    void readsIntegers_data();
    void readsIntegers();
    void readsFloats_data();
    void readsFloats();
    void agreesWithTheCLibrary_data();
    void agreesWithTheCLibrary();
    void agreesOnRandomDecimals();
    void agreesNearFloatMidpoints();
    void agreesOnRandomIntegers();
    void agreesOnNumberSoup();
    void ignoresTheProcessLocale();
};

void NumberReaderTest::readsIntegers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint32>("value");
    QTest::addColumn<int>("length");
    const qint32 least = std::numeric_limits<qint32>::min();
    QTest::newRow("a decimal number") << QByteArray("42") << 42 << 2;
    QTest::newRow("a plus sign is read") << QByteArray("+7 8") << 7 << 2;
    QTest::newRow("a minus sign is read") << QByteArray("-7") << -7 << 2;
    QTest::newRow("all six blanks are skipped") << QByteArray(" \t\n\v\f\r5") << 5 << 7;
    QTest::newRow("hexadecimal after 0x") << QByteArray("0x1f") << 31 << 4;
    QTest::newRow("hexadecimal after 0X") << QByteArray("0X1F") << 31 << 4;
    QTest::newRow("a negative hexadecimal number") << QByteArray("-0x10") << -16 << 5;
    QTest::newRow("a leading zero is octal") << QByteArray("010") << 8 << 3;
    QTest::newRow("08 is zero, ended by the 8") << QByteArray("08") << 0 << 1;
    QTest::newRow("09 is zero, ended by the 9") << QByteArray("09") << 0 << 1;
    QTest::newRow("0179 is octal 017") << QByteArray("0179") << 15 << 3;
    QTest::newRow("0x alone is zero, ended by the x") << QByteArray("0x") << 0 << 1;
    QTest::newRow("0x before another character is zero") << QByteArray("0xg") << 0 << 1;
    QTest::newRow("0b is no prefix") << QByteArray("0b11") << 0 << 1;
    QTest::newRow("0b is no prefix after a sign") << QByteArray("+0b11") << 0 << 2;
    QTest::newRow("a point ends the number") << QByteArray("2.5") << 2 << 1;
    QTest::newRow("a colon, next to 9, ends the number") << QByteArray("12:34") << 12 << 2;
    QTest::newRow("an exponent is not read") << QByteArray("1e3") << 1 << 1;
    QTest::newRow("letters are no number") << QByteArray("inf") << 0 << -1;
    QTest::newRow("an empty text is no number") << QByteArray("") << 0 << -1;
    QTest::newRow("blanks are no number") << QByteArray("   ") << 0 << -1;
    QTest::newRow("a sign is no number") << QByteArray("-") << 0 << -1;
    QTest::newRow("two signs are no number") << QByteArray("+-1") << 0 << -1;
    QTest::newRow("a blank after the sign is no number") << QByteArray("- 1") << 0 << -1;
    QTest::newRow("2147483647 stays") << QByteArray("2147483647") << std::numeric_limits<qint32>::max() << 10;
    QTest::newRow("2147483648 is cut to 32 bits") << QByteArray("2147483648") << least << 10;
    QTest::newRow("-2147483649 is cut to 32 bits") << QByteArray("-2147483649") << 2147483647 << 11;
    QTest::newRow("4294967296 is cut to 0") << QByteArray("4294967296") << 0 << 10;
    QTest::newRow("4294967298 is cut to 2") << QByteArray("4294967298") << 2 << 10;
    QTest::newRow("0xffffffff is cut to -1") << QByteArray("0xffffffff") << -1 << 10;
    QTest::newRow("the greatest long is cut to -1") << QByteArray("9223372036854775807") << -1 << 19;
    QTest::newRow("beyond the greatest long is -1 too") << QByteArray("9223372036854775808") << -1 << 19;
    QTest::newRow("far beyond it too") << QByteArray("99999999999999999999") << -1 << 20;
    QTest::newRow("the least long is cut to 0") << QByteArray("-9223372036854775808") << 0 << 20;
    QTest::newRow("beyond the least long is 0 too") << QByteArray("-9223372036854775809") << 0 << 20;
    QTest::newRow("17 hexadecimal digits are beyond long") << QByteArray("0x10000000000000000") << -1 << 19;
    QTest::newRow("400 digits are all consumed") << QByteArray(400, '9') << -1 << 400;
}

void NumberReaderTest::readsIntegers()
{
    QFETCH(const QByteArray, text);
    QFETCH(const qint32, value);
    QFETCH(const int, length);
    const ReadNumber<qint32> number = readInteger(text.constData());
    QCOMPARE(number.value, value);
    QCOMPARE(lengthRead(text.constData(), number.end), length);
    QCOMPARE(disagreement(text.toStdString()), QByteArray());
}

void NumberReaderTest::readsFloats_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<float>("value");
    QTest::addColumn<int>("length");
    const float infinity = std::numeric_limits<float>::infinity();
    const float denormal = std::numeric_limits<float>::denorm_min();
    QTest::newRow("a coordinate") << QByteArray("-1234.25 1") << -1234.25F << 8;
    QTest::newRow("a plus sign is read") << QByteArray("+1.5") << 1.5F << 4;
    QTest::newRow("all six blanks are skipped") << QByteArray(" \t\n\v\f\r1.5") << 1.5F << 9;
    QTest::newRow("a comma ends the number") << QByteArray("1,5") << 1.0F << 1;
    QTest::newRow("a colon, next to 9, ends the number") << QByteArray("12:34") << 12.0F << 2;
    QTest::newRow("a colon behind the point ends the number") << QByteArray("1.5:5") << 1.5F << 3;
    QTest::newRow("no digit before the point") << QByteArray(".5") << 0.5F << 2;
    QTest::newRow("no digit behind the point") << QByteArray("5.") << 5.0F << 2;
    QTest::newRow("a second point ends the number") << QByteArray("1.5.5") << 1.5F << 3;
    QTest::newRow("a point is no number") << QByteArray(".") << 0.0F << -1;
    QTest::newRow("a sign and a point are no number") << QByteArray("-.") << 0.0F << -1;
    QTest::newRow("an exponent alone is no number") << QByteArray("e5") << 0.0F << -1;
    QTest::newRow("a point and an exponent are no number") << QByteArray(".e5") << 0.0F << -1;
    QTest::newRow("two signs are no number") << QByteArray("+-1") << 0.0F << -1;
    QTest::newRow("an empty text is no number") << QByteArray("") << 0.0F << -1;
    QTest::newRow("a blank after the sign is no number") << QByteArray("- 1") << 0.0F << -1;
    QTest::newRow("an exponent") << QByteArray("1e3") << 1000.0F << 3;
    QTest::newRow("a signed exponent") << QByteArray("25E-2") << 0.25F << 5;
    QTest::newRow("an exponent with a plus sign") << QByteArray("1e+2") << 100.0F << 4;
    QTest::newRow("1e ends before the e") << QByteArray("1e") << 1.0F << 1;
    QTest::newRow("1e+ ends before the e") << QByteArray("1e+") << 1.0F << 1;
    QTest::newRow("1e-x ends before the e") << QByteArray("1.e-x") << 1.0F << 2;
    QTest::newRow("hexadecimal with an exponent") << QByteArray("0x1p3") << 8.0F << 5;
    QTest::newRow("hexadecimal with a point") << QByteArray("-0X.8") << -0.5F << 5;
    QTest::newRow("hexadecimal without an exponent's digits") << QByteArray("0x1p") << 1.0F << 3;
    QTest::newRow("0x alone is zero, ended by the x") << QByteArray("0x") << 0.0F << 1;
    QTest::newRow("0x. is zero, ended by the x") << QByteArray("0x.p1") << 0.0F << 1;
    QTest::newRow("leading zeros are decimal") << QByteArray("010.5") << 10.5F << 5;
    QTest::newRow("inf") << QByteArray("inf") << infinity << 3;
    QTest::newRow("-INFINITY") << QByteArray("-INFINITY") << -infinity << 9;
    QTest::newRow("infinit is inf and a rest") << QByteArray("infinit") << infinity << 3;
    QTest::newRow("a word next to nan( is no number") << QByteArray("oan(") << 0.0F << -1;
    QTest::newRow("in is no number") << QByteArray("in") << 0.0F << -1;
    QTest::newRow("minus zero keeps its sign") << QByteArray("-0.00") << -0.0F << 5;
    QTest::newRow("1e39 is beyond float") << QByteArray("1e39") << infinity << 4;
    QTest::newRow("-1e39 is beyond float") << QByteArray("-1e39") << -infinity << 5;
    QTest::newRow("1e400 is beyond double") << QByteArray("1e400") << infinity << 5;
    QTest::newRow("1e-50 is below float") << QByteArray("-1e-50") << -0.0F << 6;
    QTest::newRow("1e-400 is below double") << QByteArray("1e-400") << 0.0F << 6;
    QTest::newRow("the least denormal") << QByteArray("1.4e-45") << denormal << 7;
    QTest::newRow("half the least denormal is 0") << QByteArray("7.006492321624085e-46") << 0.0F << 21;
    QTest::newRow("more than half of it is it") << QByteArray("7.00649232162409e-46") << denormal << 20;
    QTest::newRow("the greatest float") << QByteArray("3.4028235e38") << std::numeric_limits<float>::max() << 12;
    QTest::newRow("a huge exponent of zero is zero") << QByteArray("0e99999999999999999999") << 0.0F << 22;
    QTest::newRow("a huge exponent is infinite") << QByteArray("1e99999999999999999999") << infinity << 22;
    QTest::newRow("a huge negative exponent is zero") << QByteArray("1e-99999999999999999999") << 0.0F << 23;
    QTest::newRow("a midpoint goes to the even float") << QByteArray("1.000000059604644775390625") << 1.0F << 26;
    QTest::newRow("beside a midpoint the double decides, not the text")
        << QByteArray("1.00000005960464477539062500000000000001") << 1.0F << 40;
    QTest::newRow("a double above the midpoint goes up") << QByteArray("1.0000000596046449") << 1.00000011920929F << 18;
    QTest::newRow("the only float that its shortest text misses, with its negative")
        << QByteArray("7.038531e-26") << std::nextafter(7.038531e-26F, 1.0F) << 12;
    QTest::newRow("16777217 goes to the even float") << QByteArray("16777217") << 16777216.0F << 8;
    QTest::newRow("400 digits") << QByteArray(400, '9') << infinity << 400;
    QTest::newRow("400 digits behind the point") << ("0." + QByteArray(400, '3')) << 0.333333333F << 402;
}

void NumberReaderTest::readsFloats()
{
    QFETCH(const QByteArray, text);
    QFETCH(const float, value);
    QFETCH(const int, length);
    const ReadNumber<float> number = readFloat(text.constData());
    QCOMPARE(bitsOf(number.value), bitsOf(value));
    QCOMPARE(lengthRead(text.constData(), number.end), length);
    QCOMPARE(disagreement(text.toStdString()), QByteArray());
}

void NumberReaderTest::agreesWithTheCLibrary_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArrayList texts{"nan",
                               "-nan",
                               "NAN",
                               "nan(",
                               "nan()",
                               "nan(123)",
                               "nan(0x7fffff)",
                               "nan(a_Z9)x",
                               "nan(12-3)",
                               "-nan(",
                               " \t-NaN(7",
                               "+nan(7])",
                               "nano",
                               "na",
                               "0",
                               "-0",
                               "+0",
                               "00",
                               "1234567890123456789",
                               "12345678901234567890",
                               "0.1234567890123456789",
                               "1.2345678901234567890",
                               "9007199254740992",
                               "9007199254740993",
                               "9007199254740993e-5",
                               "123456789012345678e-22",
                               "1e22",
                               "1e23",
                               "1e-22",
                               "1e-23",
                               "3.4028236e38",
                               "3.4028235677973366e38",
                               "3.4028235677973365e38",
                               "1.1754943e-38",
                               "1.17549429e-38",
                               "1e-45",
                               "2e-45",
                               "2.2250738585072011e-308",
                               "4.9e-324",
                               "0x1.fffffep127",
                               "0x1.ffffffp127",
                               "0x1p-149",
                               "0x1p-150",
                               "0x1.000001p-150",
                               "0x1.0000010000001p0",
                               "0x",
                               "0x.",
                               "0x.1",
                               "0x1.",
                               "0x1p+",
                               "0x1.8p-1z",
                               "0xp1",
                               "+.5e1",
                               "-.5e-1",
                               "..5",
                               "5..",
                               "1e5.5",
                               "1E5e5",
                               "1e 5",
                               "\x01"
                               "1",
                               "1\xc2\xa0"
                               "2",
                               "\xa0"
                               "1",
                               "_1",
                               "1_0",
                               "1'000",
                               "1 000",
                               "1,000.5",
                               "%1",
                               "[1",
                               "(1)",
                               "-+1",
                               "--1",
                               "0-1",
                               "1-1",
                               "1+1",
                               "iNf",
                               "InFiNiTyx"};
    for (const QByteArray &text : texts)
        QTest::newRow(text.toPercentEncoding(" ().,+").constData()) << text;
}

void NumberReaderTest::agreesWithTheCLibrary()
{
    QFETCH(const QByteArray, text);
    QCOMPARE(disagreement(text.toStdString()), QByteArray());
    QCOMPARE(disagreement("\r\n" + text.toStdString() + "]"), QByteArray());
}

void NumberReaderTest::agreesOnRandomDecimals()
{
    static const std::string after = "] ,.e-x0";
    RandomText random(20210);
    const int count = sweepSize(200000, 10000000);
    for (int i = 0; i < count; ++i) {
        std::string text = random.decimal();
        if (random.oneIn(4))
            text += after[static_cast<std::size_t>(random.below(static_cast<int>(after.size())))];
        const QByteArray problem = disagreement(text);
        QVERIFY2(problem.isEmpty(), problem.constData());
    }
    qInfo("%d decimals, 0 differences", count);
}

void NumberReaderTest::agreesNearFloatMidpoints()
{
    RandomText random(20211);
    const int count = sweepSize(40000, 1000000);
    for (int i = 0; i < count; ++i) {
        const QByteArray problem = disagreement(random.nearFloatMidpoint());
        QVERIFY2(problem.isEmpty(), problem.constData());
    }
    qInfo("%d decimals near midpoints, 0 differences", count);
}

void NumberReaderTest::agreesOnRandomIntegers()
{
    RandomText random(20212);
    const int count = sweepSize(50000, 1000000);
    for (int i = 0; i < count; ++i) {
        const QByteArray problem = disagreement(random.integer());
        QVERIFY2(problem.isEmpty(), problem.constData());
    }
    qInfo("%d integers, 0 differences", count);
}

void NumberReaderTest::agreesOnNumberSoup()
{
    RandomText random(20213);
    const int count = sweepSize(20000, 1000000);
    for (int i = 0; i < count; ++i) {
        const QByteArray problem = disagreement(random.numberSoup(20));
        QVERIFY2(problem.isEmpty(), problem.constData());
    }
    qInfo("%d strings of soup, 0 differences", count);
}

void NumberReaderTest::ignoresTheProcessLocale()
{
    const ProcessLocale german("de_DE.UTF-8");
    QVERIFY2(german.isSet, "The locale de_DE.UTF-8 is missing; generate it with locale-gen.");
    QCOMPARE(QByteArray(std::localeconv()->decimal_point), QByteArray(","));

    const char *withPoint = "1.5 2";
    QCOMPARE(readFloat(withPoint).value, 1.5F);
    QCOMPARE(lengthRead(withPoint, readFloat(withPoint).end), 3);
    const char *withComma = "1,5";
    QCOMPARE(readFloat(withComma).value, 1.0F);
    QCOMPARE(lengthRead(withComma, readFloat(withComma).end), 1);
    // Too long for a short cut, hexadecimal, a group of thousands.
    for (const char *text : {"0.12345678901234567890123456789", "0x1.8p1", "1.00000005960464477539062500000001",
                             "1,000,5", "1.000.5", "0x1,8", "1e-30", "1.e5", ",5", "nan(1,5)"}) {
        QCOMPARE(disagreement(text), QByteArray());
    }
    RandomText random(20214);
    for (int i = 0; i < 20000; ++i) {
        const QByteArray problem = disagreement(random.oneIn(2) ? random.decimal() : random.numberSoup(16));
        QVERIFY2(problem.isEmpty(), problem.constData());
    }
}

// No application object: that would set the process locale from the environment.
QTEST_APPLESS_MAIN(NumberReaderTest)

#include "tst_numberreader.moc"
