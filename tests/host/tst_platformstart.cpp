// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/platformstart.h"

#include <QTest>

using namespace host;

using Facts = PlatformStart::Facts;

Q_DECLARE_METATYPE(Facts)

/// What is said where no window can be shown.
class PlatformStartTest : public QObject {
    Q_OBJECT

private slots:
    void saysWhatIsMissing_data();
    void saysWhatIsMissing();
    void findsThePlatformThatIsAskedFor_data();
    void findsThePlatformThatIsAskedFor();
};

void PlatformStartTest::saysWhatIsMissing_data()
{
    QTest::addColumn<Facts>("facts");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("start");
    const auto row = [](const char *name, const Facts &facts, const QString &reason, const QString &start) {
        QTest::newRow(name) << facts << reason << start;
    };
    const QString x = QStringLiteral(":7");
    const QString wayland = QStringLiteral("wayland-0");
    row("no display", {}, QStringLiteral("could not connect to display "),
        QStringLiteral("There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set."));
    row("a display that is not there", {{}, x, {}, false}, QStringLiteral("could not connect to display :7"),
        QStringLiteral("No window can be shown on the display \":7\". (could not connect to display :7) QT_QPA"));
    row("a reason that is not known", {{}, x, {}, false}, {},
        QStringLiteral("No window can be shown on the display \":7\". QT_QPA_PLATFORM=offscreen runs"));
    row("X beside Wayland", {{}, x, wayland, false}, {},
        QStringLiteral("No window can be shown on the display \":7\"."));
    row("Wayland without X nor plug-in", {{}, {}, wayland, false}, {},
        QStringLiteral("This is a Wayland session without X, and Qt's plug-in for Wayland is not installed: the "
                       "package is qtwayland5."));
    row("Wayland that is not there", {{}, {}, wayland, true}, {},
        QStringLiteral("No window can be shown on the Wayland display \"wayland-0\"."));
    row("a platform that is not there", {QStringLiteral("foo"), x, {}, false}, QStringLiteral("no \"foo\""),
        QStringLiteral("No window can be shown by Qt's platform \"foo\". (no \"foo\") QT_QPA_PLATFORM=offscreen"));
}

void PlatformStartTest::saysWhatIsMissing()
{
    QFETCH(Facts, facts);
    QFETCH(QString, reason);
    QFETCH(QString, start);
    const QString complaint = PlatformStart::complaint(facts, reason);
    QVERIFY2(complaint.startsWith(start), qPrintable(complaint));
    QVERIFY2(complaint.endsWith(QLatin1Char('.')), qPrintable(complaint));
}

void PlatformStartTest::findsThePlatformThatIsAskedFor_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("platform");
    const QByteArray environment = qgetenv("QT_QPA_PLATFORM");
    QTest::newRow("of the environment") << QString() << QString::fromLatin1(environment);
    QTest::newRow("of an option") << QStringLiteral("-platform foo") << QStringLiteral("foo");
    QTest::newRow("of an option with two dashes") << QStringLiteral("--platform foo") << QStringLiteral("foo");
    QTest::newRow("of the last option") << QStringLiteral("-platform foo -platform=bar") << QStringLiteral("bar");
    QTest::newRow("of no other option") << QStringLiteral("-platformtheme foo") << QString::fromLatin1(environment);
}

void PlatformStartTest::findsThePlatformThatIsAskedFor()
{
    QFETCH(QString, arguments);
    QFETCH(QString, platform);
    const QStringList all = QStringList{QStringLiteral("trackhost")} + arguments.split(QLatin1Char(' '));
    QCOMPARE(PlatformStart::factsFor(all).platform, platform);
}

QTEST_GUILESS_MAIN(PlatformStartTest)
#include "tst_platformstart.moc"
