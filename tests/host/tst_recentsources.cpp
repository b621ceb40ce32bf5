// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/trackingbackend.h"
#include "host/backendmenu.h"
#include "host/sourcesettings.h"
#include "host/startbackend.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QTest>

using namespace host;

/// What is kept of the sources from one run to the next.
class RecentSourcesTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { end(); }

    void keepsRecentFiles();
    void keepsAsManyRecentFilesAsFitTheMenu();
    void forgetsARecentFileThatIsGone();
    void keepsTheLastBackend();
    void startsWithTheLastBackend();
    void startsWithWhatIsNamed();

private:
    QString write(const QString &name, const QByteArray &text) const;
    BackendMenu &menu() const { return *host->window().backendMenu(); }
    QMenu *recentMenu() const { return host->window().findChild<QMenu *>(QStringLiteral("recentMenu")); }
    QString source() const { return host->backendSession().backendName(); }
};

namespace {

const QByteArray sample = "1 1 2 3 0 0 0 1\n";
const QString atTheStart = QStringLiteral("simulation: default");

} // namespace

void RecentSourcesTest::init()
{
    startAnew();
    QCOMPARE(source(), atTheStart);
}

QString RecentSourcesTest::write(const QString &name, const QByteArray &text) const
{
    QFile file(home->filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

void RecentSourcesTest::keepsRecentFiles()
{
    QVERIFY(!action("openRecordingAction")->shortcut().isEmpty());
    QVERIFY(!recentMenu()->isEnabled());
    const QString walk = write(QStringLiteral("walk & run.txt"), sample);
    const QString mine = write(QStringLiteral("mine.json"), "{}");
    QVERIFY(menu().choose({QString(), {walk}}));
    QTRY_COMPARE(source(), QStringLiteral("replay: walk & run.txt"));
    QVERIFY(menu().choose({mine, {}}));
    QTRY_COMPARE(source(), QStringLiteral("simulation: mine"));
    QVERIFY(menu().choose({QStringLiteral("heads"), {}}));
    const QStringList expected{QStringLiteral("mine.json"), QStringLiteral("walk && run.txt"), QString(),
                               QStringLiteral("&Clear This List")};
    QCOMPARE(menuTexts("recentMenu"), expected);
    start(testModule());
    QCOMPARE(menuTexts("recentMenu"), expected);
    recentMenu()->actions().at(1)->trigger();
    QTRY_COMPARE(source(), QStringLiteral("replay: walk & run.txt"));
    QCOMPARE(menuTexts("recentMenu").first(), QStringLiteral("walk && run.txt"));
    QCOMPARE(menuTexts("recentMenu").size(), 4);
    action("clearRecentAction")->trigger();
    QVERIFY(sourcesettings::recentFiles().isEmpty());
    QVERIFY(!recentMenu()->isEnabled());
}

void RecentSourcesTest::keepsAsManyRecentFilesAsFitTheMenu()
{
    for (int i = 0; i < sourcesettings::mostRecent + 3; ++i)
        sourcesettings::remember({QString(), {QStringLiteral("/data/%1.txt").arg(i)}});
    const QVector<BackendChoice> recent = sourcesettings::recentFiles();
    QCOMPARE(recent.size(), sourcesettings::mostRecent);
    QCOMPARE(recent.first().replayFiles,
             QStringList{QStringLiteral("/data/%1.txt").arg(sourcesettings::mostRecent + 2)});
}

void RecentSourcesTest::forgetsARecentFileThatIsGone()
{
    sourcesettings::remember({QString(), {QStringLiteral("/nonexistent/walk.txt")}});
    start(testModule());
    recentMenu()->actions().first()->trigger();
    QTRY_VERIFY(logText().contains(QStringLiteral("/nonexistent/walk.txt cannot be read: ")));
    QVERIFY(sourcesettings::recentFiles().isEmpty());
    QCOMPARE(source(), atTheStart);
}

void RecentSourcesTest::keepsTheLastBackend()
{
    QVERIFY(!sourcesettings::lastBackend());
    QVERIFY(menu().choose({QStringLiteral("heads"), {}}));
    QCOMPARE(sourcesettings::lastBackend()->scenario, QStringLiteral("heads"));
    const QString walk = write(QStringLiteral("walk.txt"), sample);
    QVERIFY(menu().choose({QString(), {walk}}));
    QTRY_COMPARE(source(), QStringLiteral("replay: walk.txt"));
    QCOMPARE(sourcesettings::lastBackend()->replayFiles, QStringList{walk});
    QVERIFY(!menu().choose({QStringLiteral("/nonexistent"), {}}));
    QCOMPARE(sourcesettings::lastBackend()->replayFiles, QStringList{walk});
}

void RecentSourcesTest::startsWithTheLastBackend()
{
    HostOptions options;
    options.choice.scenario = QStringLiteral("default");
    QCOMPARE(startBackend(options).choice.scenario, QStringLiteral("default"));
    QVERIFY(menu().choose({QStringLiteral("heads"), {}}));
    const StartBackend last = startBackend(options);
    QCOMPARE(last.choice.scenario, QStringLiteral("heads"));
    QCOMPARE(last.made.backend->name(), QStringLiteral("simulation: heads"));
    sourcesettings::remember({QString(), {QStringLiteral("/nonexistent/walk.txt")}});
    const StartBackend lost = startBackend(options);
    QCOMPARE(lost.choice.scenario, QStringLiteral("default"));
    QVERIFY(lost.made.backend);
    QVERIFY(lost.made.warnings.value(0).startsWith(QStringLiteral("/nonexistent/walk.txt cannot be read: ")));
}

void RecentSourcesTest::startsWithWhatIsNamed()
{
    sourcesettings::remember({QStringLiteral("heads"), {}});
    HostOptions options;
    options.choice.scenario = QStringLiteral("default");
    options.isSourceNamed = true;
    QCOMPARE(startBackend(options).choice.scenario, QStringLiteral("default"));
    options.isSourceNamed = false;
    options.screenshotFile = QStringLiteral("picture.png");
    QCOMPARE(startBackend(options).choice.scenario, QStringLiteral("default"));
    options.choice = {QString(), {write(QStringLiteral("long.txt"), sample.repeated(300000))}};
    QVERIFY(!startBackend(options).made.isPlaceholder);
    options.screenshotFile.clear();
    options.isSourceNamed = true;
    QVERIFY(startBackend(options).made.isPlaceholder);
    options.choice = {QString(), {QStringLiteral("/nonexistent/walk.txt")}};
    QVERIFY(!startBackend(options).made.backend);
}

QTEST_MAIN(RecentSourcesTest)
#include "tst_recentsources.moc"
