// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/commandformat.h"

#include <QTest>

#include <clocale>
#include <cstdarg>

class CommandFormatTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup();

    void formatsInTheCLocale();
    void leavesTheLocaleOfTheProcess();
    void leavesTheLocaleOfTheThread();

private:
    static QByteArray format(const char *text, ...) Q_ATTRIBUTE_FORMAT_PRINTF(1, 2);
};

void CommandFormatTest::cleanup()
{
    std::setlocale(LC_ALL, "C.UTF-8");
}

QByteArray CommandFormatTest::format(const char *text, ...)
{
    std::va_list values;
    va_start(values, text);
    QByteArray result = host::formatCommand(text, values);
    va_end(values);
    return result;
}

void CommandFormatTest::formatsInTheCLocale()
{
    QVERIFY2(std::setlocale(LC_ALL, "de_DE.UTF-8"), "the locale de_DE.UTF-8 is not installed");
    QCOMPARE(format("%s %f", "b01", 0.5), QByteArray("b01 0.500000"));
}

void CommandFormatTest::leavesTheLocaleOfTheProcess()
{
    const locale_t before = uselocale(nullptr);
    QCOMPARE(before, LC_GLOBAL_LOCALE);
    QVERIFY2(std::setlocale(LC_ALL, "de_DE.UTF-8"), "the locale de_DE.UTF-8 is not installed");
    format("%f", 0.5);
    QCOMPARE(uselocale(nullptr), before);
    QCOMPARE(QByteArray(std::localeconv()->decimal_point), QByteArray(","));
}

void CommandFormatTest::leavesTheLocaleOfTheThread()
{
    const locale_t own = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
    QVERIFY2(own, "the locale de_DE.UTF-8 is not installed");
    const locale_t before = uselocale(own);
    const QByteArray text = format("%f", 0.5);
    const locale_t after = uselocale(before);
    freelocale(own);
    QCOMPARE(text, QByteArray("0.500000"));
    QCOMPARE(after, own);
}

QTEST_GUILESS_MAIN(CommandFormatTest)
#include "tst_commandformat.moc"
