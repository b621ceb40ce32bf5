// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "host/commandjournal.h"
#include "host/journaldock.h"
#include "host/slowquestions.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <thread>

using namespace backend;
using namespace host;

namespace {

constexpr int filterColumn = 2;

/// A simulation that takes its time for one question, once.
class DozingBackend : public SimulatedBackend {
public:
    explicit DozingBackend(const Scenario &scenario)
        : SimulatedBackend(scenario)
    {
    }
    std::optional<QByteArray> request(const QByteArray &query) override
    {
        if (query == dozedOver) {
            dozedOver.clear();
            std::this_thread::sleep_for(dozing);
        }
        return SimulatedBackend::request(query);
    }

    QByteArray dozedOver;
    std::chrono::milliseconds dozing{0};
};

} // namespace

/// What the program says about its exchanges with the backend, with the data display in it.
class WatchingTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { end(); }

    void logsWhatTookLong();
    void saysThatTheWindowStoodStill();
    void listsSlowQuestions();
    void putsBackWhatTheDialogChanged();

private:
    void startDozing(const char *question, std::chrono::milliseconds time);
    QTableWidget *table() const { return host->window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d")); }
    /// Opens the filter dialog of the first body by keys, presses Alt+A in it, and leaves it.
    void toggleFilterOfFirstBody() const;

    std::shared_ptr<DozingBackend> backend;
};

void WatchingTest::init()
{
    startAnew();
    startDozing("", std::chrono::milliseconds(0));
}

void WatchingTest::startDozing(const char *question, std::chrono::milliseconds time)
{
    host.reset();
    const ScenarioResult loaded = loadScenario(QStringLiteral("default"));
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    backend = std::make_shared<DozingBackend>(*loaded.scenario);
    backend->dozedOver = question;
    backend->dozing = time;
    host = std::make_unique<Host>(HostOptions(), backend, QStringList(QStringLiteral(MODULES)));
    host->window().show();
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    QTRY_VERIFY(table() && table()->rowCount() > 0 && table()->isVisible());
}

void WatchingTest::logsWhatTookLong()
{
    QVERIFY(!logText().contains(QStringLiteral("stood still")));
    startDozing("body desc standard b02", std::chrono::milliseconds(150));
    QTRY_VERIFY(logText().contains(QStringLiteral(" ms to answer \"body desc standard b02\"; the window stood still "
                                                  "meanwhile.")));
    QVERIFY(!host->window().statusBar()->currentMessage().contains(QStringLiteral("stood still")));
}

void WatchingTest::saysThatTheWindowStoodStill()
{
    startDozing("body desc standard b02", std::chrono::milliseconds(1050));
    QTRY_VERIFY(host->window().statusBar()->currentMessage().startsWith(QStringLiteral("The backend took 1,")));
    QVERIFY(host->window().statusBar()->currentMessage().endsWith(
        QStringLiteral(" ms to answer \"body desc standard b02\"; the window stood still meanwhile.")));
}

void WatchingTest::listsSlowQuestions()
{
    startDozing("body desc standard b02", std::chrono::milliseconds(150));
    action("slowQuestionsAction")->trigger();
    auto *dialog = host->window().findChild<SlowQuestions *>();
    QVERIFY(dialog->isVisible());
    QVERIFY(!dialog->isModal());
    auto *list = dialog->findChild<QTableWidget *>();
    QTRY_COMPARE(list->rowCount(), 1);
    QCOMPARE(list->item(0, SlowQuestions::TextColumn)->text(), QStringLiteral("body desc standard b02"));
    QCOMPARE(list->item(0, SlowQuestions::CountColumn)->text(), QStringLiteral("1"));
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    QTest::keyClick(dialog, Qt::Key_Escape);
    QVERIFY(!dialog->isVisible());
    QVERIFY(host->window().isVisible());
}

void WatchingTest::toggleFilterOfFirstBody() const
{
    bool done = false;
    QTimer poll; // menu and dialog run event loops of their own
    connect(&poll, &QTimer::timeout, &poll, [&] {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
        } else if (QWidget *dialog = QApplication::activeModalWidget(); dialog && dialog->isActiveWindow() && !done) {
            done = true;
            const auto *active = dialog->findChild<QCheckBox *>(QStringLiteral("checkBox_active"));
            const bool before = active->isChecked();
            QTest::keyClick(dialog, Qt::Key_A, Qt::AltModifier);
            QVERIFY(QTest::qWaitFor([=] { return active->isChecked() != before; }));
            QTest::keyClick(dialog, Qt::Key_Escape);
        }
    });
    poll.start(5);
    table()->setFocus();
    table()->setCurrentCell(0, filterColumn);
    QTest::keyClick(table(), Qt::Key_F10, Qt::ShiftModifier);
    QTRY_VERIFY(done && !QApplication::activeModalWidget());
}

void WatchingTest::putsBackWhatTheDialogChanged()
{
    auto *dock = host->window().findChild<JournalDock *>();
    QVERIFY(!dock->isVisible()); // until somebody wants it
    dock->toggleViewAction()->trigger();
    QVERIFY(dock->isVisible());
    QTRY_COMPARE(table()->item(0, filterColumn)->text(), QStringLiteral("active"));
    toggleFilterOfFirstBody();
    QVERIFY(!backend->scenario().bodies[0].filter.enabled);
    QTRY_COMPARE(table()->item(0, filterColumn)->text(), QString());

    auto *journal = dock->findChild<QTableView *>(QStringLiteral("journalTable"));
    QTRY_COMPARE(journal->model()->rowCount(), 1);
    QCOMPARE(journal->model()->index(0, CommandJournal::ChangeColumn).data().toString(),
             QString::fromUtf8("yes \xE2\x86\x92 no"));
    journal->selectRow(0);
    QTest::mouseClick(dock->findChild<QPushButton *>(QStringLiteral("putBackButton")), Qt::LeftButton);
    QVERIFY(backend->scenario().bodies[0].filter.enabled);
    QTRY_COMPARE(table()->item(0, filterColumn)->text(), QStringLiteral("active"));
    QTRY_COMPARE(journal->model()->rowCount(), 2);
}

QTEST_MAIN(WatchingTest)
#include "tst_watching.moc"
