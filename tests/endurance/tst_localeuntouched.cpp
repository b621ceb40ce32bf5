// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"
#include "tests/support/repetitions.h"

#include <QLocale>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <clocale>

namespace {

/// All that a process knows of its locale, as text.
QStringList localeState()
{
    const std::lconv *const conventions = std::localeconv();
    QStringList state{QString::fromLocal8Bit(std::setlocale(LC_ALL, nullptr))};
    for (const char *const field :
         {conventions->decimal_point, conventions->thousands_sep, conventions->grouping, conventions->int_curr_symbol,
          conventions->currency_symbol, conventions->mon_decimal_point, conventions->mon_thousands_sep,
          conventions->mon_grouping, conventions->positive_sign, conventions->negative_sign})
        state << QString::fromLatin1(QByteArray(field).toHex());
    for (const char field : {conventions->int_frac_digits, conventions->frac_digits, conventions->p_cs_precedes,
                             conventions->p_sep_by_space, conventions->n_cs_precedes, conventions->n_sep_by_space,
                             conventions->p_sign_posn, conventions->n_sign_posn})
        state << QString::number(field);
    state << QLocale().name() << QLocale::system().name() << QLocale().toString(-1234.5, 'f', 2);
    state << QString::fromLatin1(QTextCodec::codecForLocale()->name());
    return state;
}

} // namespace

/// The process's locale and codec belong to the host: a module's life leaves them as they are.
class TestLocaleUntouched : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void byLoadRunAndUnload_data();
    void byLoadRunAndUnload();

private:
    QTemporaryDir home;
};

void TestLocaleUntouched::initTestCase()
{
    QVERIFY(home.isValid());
    qputenv("HOME", home.path().toLocal8Bit());
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
}

void TestLocaleUntouched::byLoadRunAndUnload_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::newRow("C") << QByteArray("C");
    QTest::newRow("de_DE") << QByteArray("de_DE.UTF-8");
    if (!isLongRun())
        return; // the others are generated for long runs only
    QTest::newRow("fr_FR") << QByteArray("fr_FR.UTF-8");
    QTest::newRow("tr_TR") << QByteArray("tr_TR.UTF-8");
    QTest::newRow("ar_EG") << QByteArray("ar_EG.UTF-8");
}

void TestLocaleUntouched::byLoadRunAndUnload()
{
    QFETCH(const QByteArray, locale);
    QVERIFY2(std::setlocale(LC_ALL, locale.constData()), "The locale is missing: scripts/setup generates it");
    QLocale::setDefault(QLocale(QString::fromLatin1(locale)));
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-15")); // an odd one, to be seen if it is reset
    const QStringList before = localeState();
    {
        GuestSession session;
        QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
        QCOMPARE(localeState(), before);
        session.setProperties();
        QVERIFY(session.takeEntries());
        session.show();
        session.configurationChanged();
        QCOMPARE(session.deliver("6di", "6di 1 [0 2 1.0][0x1.8p1 2 1e-40][1 0 0 0 1 0 0 0 1]"), 0);
        QCOMPARE(session.deliver("3d", "3d 1 [5 1.0][1.2345678901234567890123 2 inf]"), 0);
        QMetaObject::invokeMethod(session.dock->widget(), "updateView6d");
        QMetaObject::invokeMethod(session.dock->widget(), "updateView3d");
        QCOMPARE(session.table6d()->item(0, 4)->text(), QStringLiteral("3.00"));
        QCOMPARE(localeState(), before);
        session.clearData();
    }
    QCOMPARE(localeState(), before);
    QTextCodec::setCodecForLocale(nullptr);
}

QTEST_MAIN(TestLocaleUntouched)
#include "tst_localeuntouched.moc"
