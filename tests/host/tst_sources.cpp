// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/trackingbackend.h"
#include "host/backendmenu.h"
#include "host/backendreader.h"
#include "host/sourcesettings.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>

using namespace host;

/// What the operator opens while the program runs: by menu, key, recent file or drop.
class SourcesTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { end(); }

    void readsLongRecordingsWhileTheLinesGoOn();
    void cancelsTheReading();
    void aLaterChoiceGivesUpTheReading_data();
    void aLaterChoiceGivesUpTheReading();
    void endsWhileAFileIsRead();
    void tellsWhyAFileIsNone();
    void aPlaceholderStandsForALongRecording();
    void aPlaceholderIsLeftWhenTheReadingIsCancelled();
    void shortRecordingsNeedNoPlaceholder();
    void opensRecordingsByKey();
    void opensDroppedFiles_data();
    void opensDroppedFiles();
    void refusesWhatIsNoFile();
    void reconnectsByKey();

private:
    QString write(const QString &name, const QByteArray &text) const;
    QString longRecording() const;
    QString largeFile(const QByteArray &line) const;
    BackendMenu &menu() const { return *host->window().backendMenu(); }
    BackendReader &reader() const { return *menu().backendReader(); }
    QString source() const { return host->backendSession().backendName(); }
    QWidget *status() const { return host->window().findChild<QWidget *>(QStringLiteral("readingStatus")); }
    bool drop(QWidget &target, const QMimeData &data) const;
};

namespace {

const QByteArray sample = "1 1 2 3 0 0 0 1\n";
const QString atTheStart = QStringLiteral("simulation: default");

QMimeData *urls(const QStringList &files)
{
    auto *data = new QMimeData;
    QList<QUrl> list;
    for (const QString &file : files)
        list << QUrl::fromLocalFile(file);
    data->setUrls(list);
    return data;
}

} // namespace

void SourcesTest::init()
{
    startAnew();
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    QCOMPARE(source(), atTheStart);
}

QString SourcesTest::write(const QString &name, const QByteArray &text) const
{
    QFile file(home->filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

/// Takes a while to read: that a line is no later than the one before is seen when it has been read.
QString SourcesTest::longRecording() const
{
    return write(QStringLiteral("long.txt"), sample.repeated(300000) + "2 1 2 3 0 0 0 1\n");
}

/// Too large to be read at once, and yet of few lines.
QString SourcesTest::largeFile(const QByteArray &line) const
{
    const QByteArray padded = line + QByteArray(3000, ' ') + '\n';
    return write(QStringLiteral("large.txt"), padded.repeated(2000));
}

bool SourcesTest::drop(QWidget &target, const QMimeData &data) const
{
    const QPoint place = target.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &event);
    return event.isAccepted();
}

void SourcesTest::readsLongRecordingsWhileTheLinesGoOn()
{
    const QString file = longRecording();
    QTRY_VERIFY(host->backendSession().counts().sent > 0);
    const quint64 sent = host->backendSession().counts().sent;
    QVERIFY(menu().choose({QString(), {file}}));
    QVERIFY(reader().isReading());
    QVERIFY(status()->isVisible());
    QCOMPARE(status()->findChild<QLabel *>()->text(), QStringLiteral("Reading long.txt"));
    QTRY_VERIFY(host->backendSession().counts().sent > sent + 2);
    QVERIFY2(reader().isReading(), "the lines went on only after the reading");
    QCOMPARE(source(), atTheStart);
    QTRY_VERIFY(status()->findChild<QProgressBar *>()->value() > 0 || !reader().isReading());
    QTRY_COMPARE_WITH_TIMEOUT(source(), QStringLiteral("replay: long.txt"), 60000);
    QVERIFY(!status()->isVisible());
    QTRY_VERIFY(logText().contains(QStringLiteral("line 2 is skipped")));
}

void SourcesTest::cancelsTheReading()
{
    QVERIFY(menu().choose({QString(), {longRecording()}}));
    auto *button = status()->findChild<QPushButton *>();
    QVERIFY(button->isVisible());
    QVERIFY(!button->accessibleName().isEmpty());
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!reader().isReading());
    QVERIFY(!status()->isVisible());
    QCOMPARE(host->window().statusBar()->currentMessage(), QStringLiteral("The reading of long.txt was cancelled."));
    QTest::qWait(0);
    QCOMPARE(source(), atTheStart);
    QVERIFY(host->backendSession().isConnected());
    QVERIFY(sourcesettings::recentFiles().isEmpty());
}

void SourcesTest::aLaterChoiceGivesUpTheReading_data()
{
    QTest::addColumn<bool>("isFile");
    QTest::newRow("a scenario of ours") << false;
    QTest::newRow("another recording") << true;
}

void SourcesTest::aLaterChoiceGivesUpTheReading()
{
    QFETCH(const bool, isFile);
    QSignalSpy changes(&host->backendSession(), &BackendSession::connectionChanged);
    QVERIFY(menu().choose({QString(), {longRecording()}}));
    const QString other = write(QStringLiteral("short.txt"), sample);
    QVERIFY(menu().choose(isFile ? BackendChoice{QString(), {other}} : BackendChoice{QStringLiteral("heads"), {}}));
    QTRY_COMPARE(source(), isFile ? QStringLiteral("replay: short.txt") : QStringLiteral("simulation: heads"));
    QVERIFY(!reader().isReading());
    QTRY_VERIFY(!status()->isVisible());
    QCOMPARE(changes.size(), 2); // disconnected and connected, once
}

void SourcesTest::endsWhileAFileIsRead()
{
    QVERIFY(menu().choose({QString(), {longRecording()}}));
    QVERIFY(reader().isReading());
    host.reset();
}

void SourcesTest::tellsWhyAFileIsNone()
{
    const QString file = write(QStringLiteral("none.txt"), "1 2 3\n");
    QSignalSpy failures(&menu(), &BackendMenu::failed);
    QVERIFY(menu().choose({QString(), {file}}));
    QTRY_COMPARE(failures.size(), 1);
    QVERIFY(host->window().statusBar()->currentMessage().contains(QStringLiteral("Line 1: 3 instead of 8 fields.")));
    QTRY_VERIFY(logText().contains(QStringLiteral("Columns wanted: ")));
    QCOMPARE(source(), atTheStart);
    QVERIFY(!status()->isVisible());
}

void SourcesTest::aPlaceholderStandsForALongRecording()
{
    const BackendChoice choice{QString(), {largeFile(sample.trimmed())}};
    const BackendResult first = firstBackend(choice, {});
    QVERIFY2(first.backend, qPrintable(first.error));
    QVERIFY(first.isPlaceholder);
    host->backendSession().change(first.backend);
    const quint64 sentBefore = host->backendSession().counts().sent;
    takeCalls();
    menu().replacePlaceholder(choice);
    QVERIFY(reader().isReading());
    const quint64 sent = host->backendSession().counts().sent;
    QCOMPARE(sent, sentBefore); // it brings no line
    QVERIFY2(!logText().contains(QStringLiteral("warning")), qPrintable(logText())); // and takes all commands
    QTRY_VERIFY_WITH_TIMEOUT(!reader().isReading(), 60000);
    QCOMPARE(takeCalls(), (QStringList{QStringLiteral("clearData"), QStringLiteral("configurationChanged")}));
    QCOMPARE(source(), QStringLiteral("replay: large.txt"));
    QTRY_VERIFY(host->backendSession().counts().sent > sent);
    QVERIFY(sourcesettings::recentFiles().isEmpty()); // it was no choice in the window
}

void SourcesTest::aPlaceholderIsLeftWhenTheReadingIsCancelled()
{
    const BackendChoice choice{QString(), {largeFile(sample.trimmed())}};
    host->backendSession().change(firstBackend(choice, {}).backend);
    menu().showChoice(choice);
    menu().replacePlaceholder(choice);
    reader().cancel();
    QVERIFY(!host->backendSession().isConnected());
    QTest::keyClick(&host->window(), Qt::Key_R, Qt::ControlModifier);
    QVERIFY(reader().isReading());
    QTRY_VERIFY_WITH_TIMEOUT(host->backendSession().isConnected(), 60000);
}

void SourcesTest::shortRecordingsNeedNoPlaceholder()
{
    const BackendResult first = firstBackend({QString(), {write(QStringLiteral("short.txt"), sample)}}, {});
    QVERIFY(first.backend);
    QVERIFY(!first.isPlaceholder);
    const BackendResult failed = firstBackend({QString(), {largeFile("x")}}, {});
    QVERIFY(!failed.backend && !failed.isPlaceholder);
    QVERIFY2(failed.error.contains(QStringLiteral("Line 1: 1 instead of 8 fields.")), qPrintable(failed.error));
}

void SourcesTest::opensRecordingsByKey()
{
    const QString file = write(QStringLiteral("walk.txt"), sample);
    QTest::keyClick(&host->window(), Qt::Key_O, Qt::ControlModifier);
    auto *dialog = host->window().findChild<QFileDialog *>();
    QVERIFY(dialog);
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    QVERIFY(name);
    QTest::keyClicks(name, file);
    QTest::keyClick(name, Qt::Key_Return);
    QTRY_COMPARE(source(), QStringLiteral("replay: walk.txt"));
    QCOMPARE(QFileInfo(sourcesettings::lastFolder()), QFileInfo(home->path()));
    QTRY_VERIFY(!host->window().findChild<QFileDialog *>());
    host->window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    QTest::keyClick(&host->window(), Qt::Key_O, Qt::ControlModifier);
    dialog = host->window().findChild<QFileDialog *>();
    QVERIFY(dialog);
    QCOMPARE(QFileInfo(dialog->directory().absolutePath()), QFileInfo(home->path()));
    dialog->close();
}

void SourcesTest::opensDroppedFiles_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<bool>("onTheLog");
    QTest::addColumn<QString>("expected");
    QTest::newRow("a recording") << QStringList{QStringLiteral("walk.txt")} << false
                                 << QStringLiteral("replay: walk.txt");
    QTest::newRow("a recording on the log")
        << QStringList{QStringLiteral("walk.txt")} << true << QStringLiteral("replay: walk.txt");
    QTest::newRow("two recordings") << QStringList{QStringLiteral("walk.txt"), QStringLiteral("run.csv")} << false
                                    << QStringLiteral("replay: walk.txt, run.csv");
    QTest::newRow("a scenario, told by its content")
        << QStringList{QStringLiteral("mine.txt")} << false << QStringLiteral("simulation: mine");
    QTest::newRow("a scenario among recordings")
        << QStringList{QStringLiteral("walk.txt"), QStringLiteral("mine.txt")} << false << atTheStart;
}

void SourcesTest::opensDroppedFiles()
{
    QFETCH(const QStringList, names);
    QFETCH(const bool, onTheLog);
    QFETCH(const QString, expected);
    write(QStringLiteral("walk.txt"), sample);
    write(QStringLiteral("run.csv"), "1000000000,1,2,3,1,0,0,0\n");
    write(QStringLiteral("mine.txt"), "\n {\"description\": \"x\"}");
    QStringList files;
    for (const QString &name : names)
        files << home->filePath(name);
    const std::unique_ptr<QMimeData> data(urls(files));
    QWidget *target = &host->window();
    if (onTheLog)
        target = host->window().findChild<QPlainTextEdit *>(QStringLiteral("logView"))->viewport();
    QVERIFY(drop(*target, *data));
    QTRY_VERIFY(!reader().isReading());
    QTRY_COMPARE(source(), expected);
    QCOMPARE(host->window().statusBar()->currentMessage().isEmpty(), expected != atTheStart);
}

void SourcesTest::refusesWhatIsNoFile()
{
    QMimeData web;
    web.setUrls({QUrl(QStringLiteral("http://localhost/walk.txt"))});
    QVERIFY(!drop(host->window(), web));
    QMimeData text;
    text.setText(QStringLiteral("walk.txt"));
    QVERIFY(!drop(host->window(), text));
    QCOMPARE(source(), atTheStart);
}

void SourcesTest::reconnectsByKey()
{
    takeCalls();
    const QStringList both{QStringLiteral("clearData"), QStringLiteral("configurationChanged")};
    QTest::keyClick(&host->window(), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(takeCalls(), both);
    QCOMPARE(source(), atTheStart);
    QVERIFY(host->backendSession().isConnected());
    action("disconnectAction")->trigger();
    takeCalls();
    QTest::keyClick(&host->window(), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(takeCalls(), both.mid(1));
    const quint64 sent = host->backendSession().counts().sent;
    QTRY_VERIFY(host->backendSession().counts().sent > sent);
}

QTEST_MAIN(SourcesTest)
#include "tst_sources.moc"
