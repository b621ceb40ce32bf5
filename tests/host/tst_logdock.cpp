// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logdock.h"
#include "host/logmark.h"
#include "host/logview.h"
#include "tests/host/hostfixture.h"

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace host;

namespace {

LogEntry entryOf(int level, const QString &text)
{
    return {QDateTime(QDate(2026, 11, 21), QTime(18, 55, 0, 123)), level, QStringLiteral("standard"),
            QStringLiteral("VORNAK4"), text};
}

} // namespace

/// The log dock under the operator's hands, and the mark that leads to it.
class LogDockTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { dock.reset(); }

    void showsLevelsInWords();
    void showsWarningsWithAnIcon();
    void showsWarningsAlone();
    void showsEntriesWithAText();
    void keepsWhatItDoesNotShow();
    void savesAllEntries();
    void saysWhyTheyCannotBeSaved();
    void clears();
    void keepsItsEntriesBoundedWhateverIsShown();
    void entersTheEntriesFirst();
    void marksTheStatusBar();
    void leadsToTheNewestWarning();
    void savesWhatTheDialogNames();

private:
    template<typename Widget> Widget *part(const char *name) const
    {
        return dock->findChild<Widget *>(QLatin1String(name));
    }
    QString shown() const { return part<LogView>("logView")->toPlainText(); }
    void choose(int level);

    std::unique_ptr<LogDock> dock;
};

void LogDockTest::init()
{
    dock = std::make_unique<LogDock>();
    dock->resize(700, 300);
    dock->show();
    QVERIFY(QTest::qWaitForWindowActive(dock.get()));
    dock->append(entryOf(0, QStringLiteral("Connected.")));
    dock->append(entryOf(1, QStringLiteral("Error: Unable to find b07")));
    dock->append(entryOf(0, QStringLiteral("Loaded.")));
}

void LogDockTest::choose(int level)
{
    auto *filter = part<QComboBox>("logLevelFilter");
    filter->setFocus();
    QTest::keyClick(filter, level == 0 ? Qt::Key_Home : Qt::Key_End);
    QCOMPARE(filter->currentIndex(), level);
}

void LogDockTest::showsLevelsInWords()
{
    QCOMPARE(shown(),
             QStringLiteral("18:55:00.123  info  VORNAK4  Connected.\n"
                            "18:55:00.123  warning  VORNAK4  Error: Unable to find b07\n"
                            "18:55:00.123  info  VORNAK4  Loaded."));
}

void LogDockTest::showsWarningsWithAnIcon()
{
    auto *view = part<LogView>("logView");
    const QImage icons = part<QWidget>("logIcons")->grab().toImage();
    QVector<bool> painted;
    QTextCursor cursor(view->document());
    do {
        const QRect line = view->cursorRect(cursor);
        const QImage place = icons.copy(QRect(0, line.top() + 1, icons.width(), line.height() - 2));
        QImage blank = place;
        blank.fill(view->palette().color(QPalette::Base));
        painted << (place != blank);
    } while (cursor.movePosition(QTextCursor::NextBlock));
    QCOMPARE(painted, (QVector<bool>{false, true, false}));
}

void LogDockTest::showsWarningsAlone()
{
    choose(1);
    QCOMPARE(shown(), QStringLiteral("18:55:00.123  warning  VORNAK4  Error: Unable to find b07"));
    dock->append(entryOf(0, QStringLiteral("later")));
    dock->append(entryOf(3, QStringLiteral("worse")));
    QCOMPARE(shown().count(QLatin1Char('\n')), 1);
    QVERIFY(shown().endsWith(QStringLiteral("worse")));
    choose(0);
    QCOMPARE(shown().count(QLatin1Char('\n')), 4);
}

void LogDockTest::showsEntriesWithAText()
{
    auto *filter = part<QLineEdit>("logTextFilter");
    QTest::mouseClick(filter, Qt::LeftButton);
    QTest::keyClicks(filter, QStringLiteral("B07"));
    QCOMPARE(shown(), QStringLiteral("18:55:00.123  warning  VORNAK4  Error: Unable to find b07"));
    QTest::keyClicks(filter, QStringLiteral(" (.*")); // no pattern
    QCOMPARE(shown(), QString());
    QTest::keySequence(filter, QKeySequence::SelectAll);
    QTest::keyClick(filter, Qt::Key_Delete);
    QCOMPARE(shown().count(QLatin1Char('\n')), 2);
}

void LogDockTest::keepsWhatItDoesNotShow()
{
    choose(1);
    dock->append(entryOf(0, QStringLiteral("unseen")));
    QVERIFY(!shown().contains(QStringLiteral("unseen")));
    choose(0);
    QVERIFY(shown().endsWith(QStringLiteral("unseen")));
}

void LogDockTest::savesAllEntries()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("a.log"));
    choose(1);
    QCOMPARE(dock->save(name), QString());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray expected = logLine(entryOf(0, QStringLiteral("Connected."))).toUtf8() + '\n'
        + logLine(entryOf(1, QStringLiteral("Error: Unable to find b07"))).toUtf8() + '\n'
        + logLine(entryOf(0, QStringLiteral("Loaded."))).toUtf8() + '\n';
    QCOMPARE(file.readAll(), expected);
}

void LogDockTest::saysWhyTheyCannotBeSaved()
{
    const QString name = QStringLiteral("/nonexistent/a.log");
    const QString complaint = dock->save(name);
    QVERIFY2(complaint.startsWith(QStringLiteral("The log can't be saved in %1: ").arg(name)), qPrintable(complaint));
}

void LogDockTest::clears()
{
    QSignalSpy cleared(dock.get(), &LogDock::cleared);
    choose(1);
    QTest::mouseClick(part<QToolButton>("logClearButton"), Qt::LeftButton);
    QCOMPARE(shown(), QString());
    choose(0);
    QCOMPARE(shown(), QString());
    QCOMPARE(cleared.size(), 1);
}

void LogDockTest::keepsItsEntriesBoundedWhateverIsShown()
{
    choose(1);
    for (int number = 0; number < LogDock::maximumLines; ++number)
        dock->append(entryOf(0, QString::number(number)));
    QCOMPARE(shown().count(QStringLiteral("warning")), 1); // the dock has forgotten what the view may go on showing
    choose(0);
    QCOMPARE(part<LogView>("logView")->blockCount(), LogDock::maximumLines);
    QVERIFY2(shown().startsWith(QStringLiteral("18:55:00.123  info  VORNAK4  0\n")), qPrintable(shown().left(80)));
}

void LogDockTest::entersTheEntriesFirst()
{
    const QWidget *first = dock->nextInFocusChain();
    while (first != dock.get() && (first->focusPolicy() & Qt::TabFocus) == 0)
        first = first->nextInFocusChain();
    QCOMPARE(first->objectName(), QStringLiteral("logView"));
}

void LogDockTest::marksTheStatusBar()
{
    dock->hide();
    startAnew();
    auto *mark = host->window().statusBar()->findChild<LogMark *>(QStringLiteral("logMark"));
    QVERIFY(mark);
    host->log().flush();
    QVERIFY(!mark->isVisible());
    host->log().info(QStringLiteral("all is well"));
    host->log().flush();
    QVERIFY(!mark->isVisible());
    host->log().warning(QStringLiteral("first"));
    QTRY_VERIFY(mark->isVisible());
    QCOMPARE(mark->text(), QStringLiteral("1 warning"));
    host->log().warning(QStringLiteral("second"));
    QTRY_COMPARE(mark->text(), QStringLiteral("2 warnings"));
    QTest::mouseClick(host->window().findChild<QToolButton *>(QStringLiteral("logClearButton")), Qt::LeftButton);
    QVERIFY(!mark->isVisible());
    end();
}

void LogDockTest::leadsToTheNewestWarning()
{
    dock->hide();
    startAnew();
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    auto *mark = host->window().statusBar()->findChild<LogMark *>(QStringLiteral("logMark"));
    auto *log = host->window().findChild<LogDock *>();
    log->findChild<QLineEdit *>(QStringLiteral("logTextFilter"))->setText(QStringLiteral("something else"));
    log->hide();
    host->log().warning(QStringLiteral("the warning"));
    for (int number = 0; number < 100; ++number)
        host->log().info(QStringLiteral("later"));
    QTRY_VERIFY(mark->isVisible());
    QTest::mouseClick(mark, Qt::LeftButton);
    QVERIFY(log->isVisible());
    QVERIFY(!mark->isVisible());
    auto *view = log->findChild<LogView *>();
    QTRY_VERIFY(view->hasFocus());
    QVERIFY(view->textCursor().block().text().endsWith(QStringLiteral("the warning")));
    QVERIFY(view->viewport()->rect().contains(view->cursorRect().center()));
    host->log().warning(QStringLiteral("another"));
    QTRY_COMPARE(mark->text(), QStringLiteral("1 warning"));
    end();
}

void LogDockTest::savesWhatTheDialogNames()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("b.log"));
    QSignalSpy saved(dock.get(), &LogDock::saved);
    QTimer poll; // the dialog runs an event loop of its own
    connect(&poll, &QTimer::timeout, &poll, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        auto *field = dialog->findChild<QLineEdit *>();
        field->setText(name); // selectFile() leaves a field alone that has the focus
        QTest::keyClick(field, Qt::Key_Return);
    });
    poll.start(20);
    auto *button = part<QToolButton>("logSaveButton");
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    QCOMPARE(saved.size(), 1);
    QCOMPARE(saved.constFirst().constFirst().toString(), QStringLiteral("Saved the log in %1").arg(name));
    QVERIFY(QFile::exists(name));
}

QTEST_MAIN(LogDockTest)
#include "tst_logdock.moc"
