// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/exchangetimes.h"
#include "host/slowquestions.h"

#include <QLabel>
#include <QTableWidget>
#include <QTest>

using namespace backend;
using namespace host;

using namespace std::chrono_literals;

class SlowQuestionsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { dialog.reset(); }

    void saysThatNothingIsSlow();
    void listsWhatIsSlow();
    void followsWhileItIsOpen();
    void leavesTheWindowAlone();
    void closesByKey();
    void namesItsParts();

private:
    void exchange(const QByteArray &text, std::chrono::milliseconds duration);
    QTableWidget *table() const { return dialog->findChild<QTableWidget *>(QStringLiteral("slowTable")); }
    QString summary() const { return dialog->findChild<QLabel *>(QStringLiteral("slowSummary"))->text(); }
    QString rowText(int row) const;

    Exchange::Clock::time_point time{};
    std::unique_ptr<ExchangeTimes> times;
    std::unique_ptr<SlowQuestions> dialog;
};

void SlowQuestionsTest::init()
{
    times = std::make_unique<ExchangeTimes>(ExchangeTimes::Listener{}, [this] { return time; });
    dialog = std::make_unique<SlowQuestions>(*times);
}

void SlowQuestionsTest::exchange(const QByteArray &text, std::chrono::milliseconds duration)
{
    const quint64 number = times->begin(text);
    time += duration;
    times->end(number);
}

QString SlowQuestionsTest::rowText(int row) const
{
    QStringList texts;
    for (int column = 0; column < table()->columnCount(); ++column)
        texts << table()->item(row, column)->text();
    return texts.join(QStringLiteral("; "));
}

void SlowQuestionsTest::saysThatNothingIsSlow()
{
    exchange("fast", 100ms);
    dialog->show();
    QCOMPARE(summary(), QStringLiteral("None of 1 questions and commands has taken more than 100 ms."));
    QCOMPARE(table()->rowCount(), 0);
}

void SlowQuestionsTest::listsWhatIsSlow()
{
    exchange("body desc standard b07", 1240ms);
    exchange("body desc standard b07", 200ms);
    exchange("body desc standard b07", 3ms);
    exchange("inertial\navailable", 3000ms);
    exchange("fast", 5ms);
    dialog->show();
    QVERIFY2(summary().startsWith(QStringLiteral("Of 5 questions and commands, ")), qPrintable(summary()));
    QCOMPARE(table()->rowCount(), 2);
    QCOMPARE(rowText(0), QStringLiteral("inertial available; 1; 3,000; 3,000"));
    QCOMPARE(rowText(1), QStringLiteral("body desc standard b07; 3; 200; 1,240"));
    QStringList titles;
    for (int column = 0; column < table()->columnCount(); ++column)
        titles << table()->horizontalHeaderItem(column)->text();
    QCOMPARE(titles.join(QLatin1Char('|')), QStringLiteral("Question or command|Count|Median [ms]|Worst [ms]"));
}

void SlowQuestionsTest::followsWhileItIsOpen()
{
    exchange("first", 200ms);
    dialog->show();
    QCOMPARE(table()->rowCount(), 1);
    table()->setCurrentCell(0, SlowQuestions::CountColumn);
    const QTableWidgetItem *const cell = table()->currentItem();
    exchange("first", 200ms);
    QTRY_COMPARE(rowText(0), QStringLiteral("first; 2; 200; 200"));
    QCOMPARE(table()->currentItem(), cell);
    exchange("second", 300ms);
    QTRY_COMPARE(table()->rowCount(), 2);
}

void SlowQuestionsTest::leavesTheWindowAlone()
{
    dialog->show();
    QVERIFY(!dialog->isModal());
}

void SlowQuestionsTest::closesByKey()
{
    dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    QVERIFY(!dialog->isVisible());
}

void SlowQuestionsTest::namesItsParts()
{
    QVERIFY(!table()->accessibleName().isEmpty());
    QVERIFY(!dialog->windowTitle().isEmpty());
}

QTEST_MAIN(SlowQuestionsTest)
#include "tst_slowquestions.moc"
