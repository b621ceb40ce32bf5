// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/connectionstatus.h"
#include "host/liveness/liveness.h"
#include "host/livenessbanner.h"
#include "host/livenesslook.h"
#include "tests/host/livenessfixture.h"

#include <QAction>
#include <QElapsedTimer>
#include <QMenu>
#include <QSignalSpy>
#include <QToolTip>
#include <QtMath>

using namespace backend;
using namespace host;
using namespace std::chrono_literals;
using Phase = StreamState::Phase;

/// What the window says of its source, in title, banner and status bar, and what the log does.
class LivenessWindowTest : public QObject, private LivenessFixture {
    Q_OBJECT

private slots:
    void init() { startPaced(); }
    void cleanup() { end(); }

    void waitsForTheFirstLine();
    void aLiveSourceHasNoBanner();
    void aDeadSourceIsToldInTime();
    void anAgeCountsUp();
    void aLostSourceSaysWhy();
    void anEndedSourceKeepsItsPicture();
    void aSlowSourceIsLive();
    void aSourceThatComesBackIsLive();
    void aNewSourceIsWaitedFor();
    void aDisconnectedSourceIsNoFrozenOne();
    void lossesAreShown();
    void changesAreAnnouncedOnce();
    void textsCanBeRead_data();
    void textsCanBeRead();
    void aLongNameIsElided();
    void theBannerCannotBeHidden();
    void aRestoredLayoutDoesNotHideTheBanner();

private:
    QString status() const { return label("livenessLabel"); }
    static QString titleOf(const char *state)
    {
        return QStringLiteral("%1 simulation: default — %2")
            .arg(QLatin1String(state), QApplication::applicationDisplayName());
    }
};

namespace {

/// Of two colours, from 1 to 21 (WCAG 2.1).
double contrastOf(const QColor &a, const QColor &b)
{
    const auto luminance = [](const QColor &color) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : qPow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const double high = qMax(luminance(a), luminance(b));
    const double low = qMin(luminance(a), luminance(b));
    return (high + 0.05) / (low + 0.05);
}

} // namespace

void LivenessWindowTest::waitsForTheFirstLine()
{
    const QString sentence = QStringLiteral("waiting for the first line");
    QTRY_COMPARE(status(), sentence);
    QTRY_COMPARE(bannerText("sourceBanner"), sentence);
    QTRY_COMPARE(title(), titleOf("(waiting)"));
    QCOMPARE(label("unreadableLabel"), QStringLiteral("0 unreadable"));
}

void LivenessWindowTest::aLiveSourceHasNoBanner()
{
    feed();
    QTRY_VERIFY2(status().startsWith(QString::fromUtf8("live · 6di 60.0/s · 3d 60.0/s · 0 lost")),
                 qPrintable(status()));
    QVERIFY(!banner()->isVisible());
    QVERIFY(!title().contains(QLatin1Char('(')));
}

void LivenessWindowTest::aDeadSourceIsToldInTime()
{
    qint64 best = 10000; // of three, since the machine may be busy
    for (int attempt = 0; attempt < 3 && best > 1500; ++attempt) {
        feed();
        QTRY_VERIFY(!banner()->isVisible());
        feed();
        QElapsedTimer sinceTheLastLine;
        sinceTheLastLine.start();
        const int told = logText().count(QStringLiteral("the data are frozen"));
        QTRY_VERIFY(bannerText("sourceBanner").startsWith(QStringLiteral("DATA FROZEN")));
        QTRY_VERIFY(title().startsWith(QStringLiteral("(frozen ")));
        QTRY_VERIFY(status().startsWith(QStringLiteral("DATA FROZEN")));
        QTRY_COMPARE(logText().count(QStringLiteral("the data are frozen")), told + 1);
        best = qMin(best, sinceTheLastLine.elapsed());
        QVERIFY(best >= 1000);
    }
    QVERIFY2(best <= 1500, qPrintable(QString::number(best)));
    QVERIFY(logText().contains(QStringLiteral("no line for 1.")));
}

void LivenessWindowTest::anAgeCountsUp()
{
    feed();
    QTRY_COMPARE(title(), titleOf("(frozen 1 s)"));
    QTRY_COMPARE(bannerText("sourceBanner"), QString::fromUtf8("DATA FROZEN · last line 2 s ago"));
    QTRY_COMPARE(status(), QString::fromUtf8("DATA FROZEN · last line 3 s ago"));
    QTRY_COMPARE(title(), titleOf("(frozen 4 s)"));
    QTRY_VERIFY_WITH_TIMEOUT(title().startsWith(QStringLiteral("(gone 10 s) ")), 15000);
    QTRY_COMPARE(bannerText("sourceBanner"), QString::fromUtf8("DATA GONE · last line 11 s ago"));
    QCOMPARE(logText().count(QStringLiteral("no line for")), 1); // gone is told of no more
}

void LivenessWindowTest::aLostSourceSaysWhy()
{
    feed();
    QTRY_VERIFY(!banner()->isVisible());
    backend->stream->setState({Phase::Lost, QStringLiteral("the broker says: offline")});
    QTRY_VERIFY(bannerText("sourceBanner").endsWith(QString::fromUtf8(" ago · the broker says: offline")));
    QVERIFY(bannerText("sourceBanner").startsWith(QString::fromUtf8("DATA GONE · last line ")));
    QTRY_VERIFY(title().startsWith(QStringLiteral("(gone ")));
}

void LivenessWindowTest::anEndedSourceKeepsItsPicture()
{
    feed();
    QTRY_VERIFY(!table()->item(0, 4)->text().isEmpty() && table()->item(0, 4)->text() != QLatin1String("-"));
    QTest::qWait(400); // until the last frame has been drawn
    const QString x = table()->item(0, 4)->text();
    backend->stream->setState({Phase::Ended, {}});
    QTRY_VERIFY(bannerText("sourceBanner").startsWith(QString::fromUtf8("SOURCE ENDED · last line ")));
    QTRY_COMPARE(title(), titleOf("(ended)"));
    QTRY_COMPARE(logText().count(QStringLiteral("the source has ended")), 1);
    QTRY_VERIFY(status().endsWith(QStringLiteral("last line 2 s ago")));
    QCOMPARE(table()->item(0, 4)->text(), x);
    QVERIFY(!logText().contains(QStringLiteral("no line for"))); // a silence after the end is none
}

void LivenessWindowTest::aSlowSourceIsLive()
{
    const std::chrono::nanoseconds last = Clock::now() - backend->epoch - 8s;
    for (int frame = 3; frame >= 0; --frame)
        backend->stream->put({{"6di", "6di 0"}, last - frame * 10s, sequence++});
    QTRY_COMPARE(status(), QString::fromUtf8("live · 6di 0.1/s · last line 8 s ago"));
    QVERIFY(!banner()->isVisible());
    QTRY_COMPARE(status(), QString::fromUtf8("live · 6di 0.1/s · last line 9 s ago"));
}

void LivenessWindowTest::aSourceThatComesBackIsLive()
{
    feed(3s);
    QTRY_VERIFY(bannerText("sourceBanner").startsWith(QStringLiteral("DATA FROZEN")));
    feed();
    QTRY_VERIFY(!banner()->isVisible());
    QTRY_VERIFY(logText().contains(QStringLiteral("live again after ")));
    QCOMPARE(logText().count(QStringLiteral("live again after ")), 1);
}

void LivenessWindowTest::aNewSourceIsWaitedFor()
{
    feed(3s);
    QTRY_VERIFY(title().startsWith(QStringLiteral("(frozen ")));
    action("disconnectAction")->trigger();
    action("connectAction")->trigger();
    QTRY_COMPARE(status(), QStringLiteral("waiting for the first line"));
    feed();
    QTRY_VERIFY(!banner()->isVisible());
    QVERIFY(!logText().contains(QStringLiteral("live again"))); // it is not the one that was silent
}

void LivenessWindowTest::aDisconnectedSourceIsNoFrozenOne()
{
    feed(3s);
    QTRY_VERIFY(bannerText("sourceBanner").startsWith(QStringLiteral("DATA FROZEN")));
    action("disconnectAction")->trigger();
    QTRY_COMPARE(status(), QStringLiteral("disconnected"));
    QVERIFY(!banner()->isVisible());
    QCOMPARE(label("backendLabel"), QStringLiteral("simulation: default (disconnected)"));
}

void LivenessWindowTest::lossesAreShown()
{
    feed();
    sequence += 5;
    StreamLosses losses;
    losses.late = 2; // these are in the gap, too
    backend->stream->setLosses(losses);
    feed();
    QTRY_VERIFY2(status().contains(QStringLiteral("5 lost")), qPrintable(status()));
    action("disconnectAction")->trigger();
    action("connectAction")->trigger();
    feed();
    QTRY_VERIFY2(status().contains(QStringLiteral("5 lost")), qPrintable(status())); // the total goes on
}

void LivenessWindowTest::changesAreAnnouncedOnce()
{
    QTRY_VERIFY(banner()->isVisible());
    QSignalSpy announced(host->window().findChild<LivenessBanner *>(), &LivenessBanner::announced);
    feed(3s);
    QTRY_VERIFY(title().startsWith(QStringLiteral("(frozen ")));
    const QString first = title();
    QTRY_VERIFY(title() != first); // it has counted up
    QCOMPARE(announced.size(), 1);
    const QString text = announced.at(0).at(0).toString();
    QVERIFY2(text.startsWith(QString::fromUtf8("DATA FROZEN · last line ")), qPrintable(text));
    const QLabel *label = host->window().findChild<QLabel *>(QStringLiteral("sourceBanner"));
    QCOMPARE(label->parentWidget()->accessibleName(), text); // found by whoever comes later
}

void LivenessWindowTest::textsCanBeRead_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("background");
    const auto row = [](const char *name, const LivenessLook &look) {
        QTest::newRow(name) << look.text << look.background;
    };
    row("disconnected", lookOf(Liveness::Level::Disconnected));
    row("waiting", lookOf(Liveness::Level::Waiting));
    row("unwanted", lookOf(Liveness::Level::Unwanted));
    row("live", lookOf(Liveness::Level::Live));
    row("frozen", lookOf(Liveness::Level::Frozen));
    row("gone", lookOf(Liveness::Level::Gone));
    row("ended", lookOf(Liveness::Level::Ended));
    row("frozen picture", lookOfFrozenPicture());
}

void LivenessWindowTest::textsCanBeRead()
{
    QFETCH(const QColor, text);
    QFETCH(const QColor, background);
    QVERIFY(contrastOf(text, background) >= 4.5);
}

void LivenessWindowTest::aLongNameIsElided()
{
    auto *label = host->window().findChild<QLabel *>(QStringLiteral("backendLabel"));
    const QString name(300, QLatin1Char('W'));
    label->setText(name);
    QTRY_VERIFY(label->width() < label->fontMetrics().horizontalAdvance(name));
    QVERIFY(label->window()->width() <= 1300);
    QHelpEvent help(QEvent::ToolTip, label->rect().center(), label->mapToGlobal(label->rect().center()));
    QApplication::sendEvent(label, &help);
    QCOMPARE(QToolTip::text(), name);
    QToolTip::hideText();
}

void LivenessWindowTest::theBannerCannotBeHidden()
{
    QTRY_VERIFY(banner()->isVisible());
    const std::unique_ptr<QMenu> menu(host->window().createPopupMenu());
    QVERIFY(menu);
    const QList<QAction *> actions = menu->actions();
    QVERIFY(!actions.isEmpty()); // the docks
    for (const QAction *action : actions)
        QVERIFY(!action->isVisible() || action->text() != banner()->windowTitle());
}

void LivenessWindowTest::aRestoredLayoutDoesNotHideTheBanner()
{
    feed();
    QTRY_VERIFY(!banner()->isVisible());
    host->window().saveLayout();
    restart();
    QTRY_VERIFY(banner()->isVisible());
    QVERIFY(!bannerText("sourceBanner").isEmpty());
    host->window().saveLayout();
    restart();
    feed();
    QTRY_VERIFY(!banner()->isVisible());
}

QTEST_MAIN(LivenessWindowTest)
#include "tst_livenesswindow.moc"
