// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"

#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>
#include <cstdlib>

namespace {

const char german[] = "de_DE.UTF-8";

} // namespace

/// A German desktop: the process reads and writes numbers with a decimal comma.
class TestContractLocale : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void numbersKeepTheirPoint_data();
    void numbersKeepTheirPoint();
    void commaEndsANumber();
    void processLocaleIsLeftAlone();

private:
    QTemporaryDir home;
};

void TestContractLocale::initTestCase()
{
    QVERIFY(home.isValid());
    qputenv("HOME", home.path().toLocal8Bit());
    QVERIFY2(std::setlocale(LC_ALL, german),
             "The locale de_DE.UTF-8 is missing: the set-up script generates it "
             "(de_DE.UTF-8 UTF-8 in /etc/locale.gen, then locale-gen)");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(std::localeconv()->decimal_point, ",");
    QCOMPARE(std::strtod("1,5", nullptr), 1.5);
    QCOMPARE(QLocale().toString(1234.5, 'f', 2), QStringLiteral("1.234,50"));
}

void TestContractLocale::numbersKeepTheirPoint_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("a common decimal") << QByteArray("1.5") << QStringLiteral("1.50");
    QTest::newRow("an exponent") << QByteArray("-2.25e2") << QStringLiteral("-225.00");
    QTest::newRow("a leading plus") << QByteArray("+12345.75") << QStringLiteral("12345.75");
    QTest::newRow("hexadecimal") << QByteArray("0x1.8p3") << QStringLiteral("12.00");
    QTest::newRow("many digits") << QByteArray("3.14159265358979323846264338327950288") << QStringLiteral("3.14");
    QTest::newRow("nothing before the point") << QByteArray(".5") << QStringLiteral("0.50");
    QTest::newRow("infinity") << QByteArray("inf") << QStringLiteral("inf");
}

void TestContractLocale::numbersKeepTheirPoint()
{
    QFETCH(const QByteArray, number);
    QFETCH(const QString, text);
    for (const bool isPlain : {false, true}) {
        GuestSession session(isPlain ? Version{1, 11, 0} : Version{2, 0, 0});
        QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
        session.configurationChanged();
        QByteArray line(isPlain ? "6d 1 [0 1.0][NUMBER 2 3 4 5 6][1 0 0 -1 0 0 0.5 -1.7320508 1]"
                                : "6di 1 [0 2 1.0][NUMBER 2 3][1 0 0 -1 0 0 0.5 -1.7320508 1]");
        line.replace("NUMBER", number);
        QCOMPARE(session.deliver(isPlain ? "6d" : "6di", line), 0);
        QTRY_COMPARE(session.table6d()->item(0, 4)->text(), text);
        QCOMPARE(session.table6d()->item(0, 8)->text(), QStringLiteral("30.00"));

        const QByteArray marker = "3d 1 [12345 0.5][" + number + " 2 3]";
        QCOMPARE(session.deliver("3d", marker), 0);
        QTRY_COMPARE(session.table3d()->rowCount(), 1);
        QCOMPARE(session.table3d()->item(0, 0)->text(), QStringLiteral("12345"));
        QCOMPARE(session.table3d()->item(0, 1)->text(), text);
    }
}

void TestContractLocale::commaEndsANumber()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    QCOMPARE(session.deliver("6di", "6di 1 [0 2 1.0][1,5 2 3][1 0 0 0 1 0 0 0 1]"), -1);
    QCOMPARE(session.deliver("6di", "6di 1 [0 2 1.0][1.5 2 3][1 0 0 0 1 0 0 0 1]"), 0);
    QTRY_COMPARE(session.table6d()->item(0, 4)->text(), QStringLiteral("1.50"));
}

void TestContractLocale::processLocaleIsLeftAlone()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    QCOMPARE(session.deliver("6di", "6di 1 [0 2 1.0][0x1p-3 2 3][1 0 0 0 1 0 0 0 1]"), 0);
    session.release();
    QCOMPARE(std::setlocale(LC_ALL, nullptr), german);
    QCOMPARE(QLocale().decimalPoint(), QLatin1Char(','));
}

QTEST_MAIN(TestContractLocale)
#include "tst_contract_locale.moc"
