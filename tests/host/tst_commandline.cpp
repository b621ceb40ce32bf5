// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/commandline.h"

#include <QTest>

using namespace host;

/// Which arguments are the program's, and which are Qt's.
class CommandLineTest : public QObject {
    Q_OBJECT

private slots:
    void takesTheArgumentsApart_data();
    void takesTheArgumentsApart();
    void keepsTheNameOfTheProgramForBoth();
};

void CommandLineTest::takesTheArgumentsApart_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("own");
    QTest::addColumn<QString>("qts");
    const auto row = [](const char *name, const char *arguments, const char *own, const char *qts) {
        QTest::newRow(name) << QString::fromLatin1(arguments) << QString::fromLatin1(own) << QString::fromLatin1(qts);
    };
    row("ours", "--rate 30 heads --observer -h", "--rate 30 heads --observer -h", "");
    row("Qt's with one dash", "-platform offscreen --rate 30", "--rate 30", "-platform offscreen");
    row("Qt's with two dashes", "--style fusion heads", "heads", "--style fusion");
    row("Qt's with a joined value", "-style=fusion heads", "heads", "-style=fusion");
    row("Qt's without a value", "-reverse heads --sync", "heads", "-reverse --sync");
    row("a session of the desktop", "-session 1234_5 --stdin", "--stdin", "-session 1234_5");
    row("a value of ours that reads like Qt's", "--log -style heads", "--log -style heads", "");
    row("a joined value of ours", "--log=a -style b", "--log=a", "-style b");
    row("a value of Qt's that reads like ours", "-style --observer heads", "heads", "-style --observer");
    row("an option without a value takes none", "--stdin -style fusion", "--stdin", "-style fusion");
    row("one dash does not make it ours", "-log -style fusion", "-log", "-style fusion");
    row("unknown ones are ours, to be refused", "--fast -z", "--fast -z", "");
    row("behind two dashes everything is ours", "-- -style fusion", "-- -style fusion", "");
    row("Qt's without its value", "heads -platform", "heads", "-platform");
    row("a dash is an argument", "- heads", "- heads", "");
}

void CommandLineTest::takesTheArgumentsApart()
{
    QFETCH(QString, arguments);
    QFETCH(QString, own);
    QFETCH(QString, qts);
    const QStringList program{QStringLiteral("trackhost")};
    const auto split = [](const QString &text) { return text.split(QLatin1Char(' '), Qt::SkipEmptyParts); };
    const ProgramArguments result = takeApart(program + split(arguments));
    QCOMPARE(result.own, program + split(own));
    QCOMPARE(result.qts, program + split(qts));
}

void CommandLineTest::keepsTheNameOfTheProgramForBoth()
{
    const QStringList name{QStringLiteral("-style")}; // whatever it is
    QCOMPARE(takeApart(name).own, name);
    QCOMPARE(takeApart(name).qts, name);
    QVERIFY(takeApart({}).own.isEmpty());
}

QTEST_GUILESS_MAIN(CommandLineTest)
#include "tst_commandline.moc"
