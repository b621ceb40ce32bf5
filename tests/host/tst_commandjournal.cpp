// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/exchangetimes.h"
#include "host/commandjournal.h"
#include "host/hostiomanager.h"
#include "host/hostlog.h"
#include "host/journaledbackend.h"
#include "tests/host/fakebackend.h"

#include <QTest>

#include <memory>
#include <stdexcept>
#include <thread>

using namespace host;

namespace {

const QByteArray question("body filter6d_strength standard b01");
const QByteArray command("body filter6d_strength standard b01 0.700000");

/// A backend that refuses what it is told to and throws on a question when it is told to.
class MoodyBackend : public FakeBackend {
public:
    std::optional<QByteArray> request(const QByteArray &query) override
    {
        if (throwing)
            throw std::runtime_error("thrown");
        return FakeBackend::request(query);
    }
    bool command(const QByteArray &text) override { return FakeBackend::command(text) && !refusing; }

    bool refusing = false;
    bool throwing = false;
};

} // namespace

class CommandJournalTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readsCommands_data();
    void readsCommands();
    void comparesValues_data();
    void comparesValues();
    void showsValues_data();
    void showsValues();
    void asksForTheOldValueFirst();
    void leavesOtherCommandsAlone();
    void notesRefusedCommands();
    void asksNothingOfASlowBackend();
    void logsNothingOfItsOwnQuestion();
    void sendsTheCommandWhenItsQuestionThrows();
    void notesWhatItPutsBack();
    void takesCommandsOfAnyThread();
    void forgetsTheOldest();
    void namesItsColumns();

private:
    QString cell(int row, int column) const
    {
        return journal->data(journal->index(row, column), Qt::DisplayRole).toString();
    }
    /// All cells of a row but the time.
    QString rowText(int row) const;

    std::unique_ptr<HostLog> log;
    std::unique_ptr<CommandJournal> journal;
    std::shared_ptr<MoodyBackend> backend;
    std::shared_ptr<JournaledBackend> journaled;
    bool isSlow = false;
};

void CommandJournalTest::init()
{
    log = std::make_unique<HostLog>();
    journal = std::make_unique<CommandJournal>();
    backend = std::make_shared<MoodyBackend>();
    backend->answers.insert(question, "0.500000");
    isSlow = false;
    journaled = std::make_shared<JournaledBackend>(backend, *journal, 3, [this] { return isSlow; });
}

void CommandJournalTest::cleanup()
{
    journaled.reset();
    backend.reset();
    journal.reset();
    log.reset();
}

QString CommandJournalTest::rowText(int row) const
{
    QStringList texts;
    for (int column = CommandJournal::BodyColumn; column < CommandJournal::ColumnCount; ++column)
        texts << cell(row, column);
    return texts.join(QStringLiteral("; "));
}

void CommandJournalTest::readsCommands_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("setting"); // body, name, value, question; empty: it is none
    const auto row = [](const char *sentence, const char *text, const char *setting) {
        QTest::newRow(sentence) << QByteArray(text) << QString::fromUtf8(setting);
    };
    row("a number", "body filter6d_strength standard b01 0.7",
        "standard b01|strength|0.7|body filter6d_strength standard b01");
    row("a switch", "body filter6d_enabled wandor b12 yes", "wandor b12|enabled|yes|body filter6d_enabled wandor b12");
    row("a value of several words", "body filter6d_preset standard b01 my own",
        "standard b01|preset|my own|body filter6d_preset standard b01");
    row("a value beyond ASCII",
        "body filter6d_mode standard b01 m\xC3\xB6"
        "de",
        "standard b01|mode|m\xC3\xB6"
        "de|body filter6d_mode standard b01");
    row("the value is missing", "body filter6d_strength standard b01", "");
    row("the value is empty", "body filter6d_strength standard b01 ", "");
    row("another command", "output active chmon 6d yes", "");
    row("another one of a body", "body active standard b01 yes now", "");
    row("the word in another place", "config filter6d_strength standard b01 0.7", "");
    row("nothing", "", "");
    row("blanks alone", "     ", "");
}

void CommandJournalTest::readsCommands()
{
    QFETCH(const QByteArray, text);
    QString found;
    if (const std::optional<FilterSetting> setting = filterSettingOf(text)) {
        found = QStringList{setting->body(), setting->name(), QString::fromUtf8(setting->value),
                            QString::fromUtf8(setting->question)}
                    .join(QLatin1Char('|'));
    }
    QTEST(found, "setting");
}

void CommandJournalTest::comparesValues_data()
{
    QTest::addColumn<QByteArray>("left");
    QTest::addColumn<QByteArray>("right");
    QTest::addColumn<bool>("same");
    const auto row = [](const char *sentence, const char *left, const char *right, bool same) {
        QTest::newRow(sentence) << QByteArray(left) << QByteArray(right) << same;
    };
    row("equal words", "yes", "yes", true);
    row("words that differ", "yes", "no", false);
    row("blanks around a word", "yes", " yes ", true);
    row("a number with zeros", "0.500000", "0.5", true);
    row("numbers that differ", "0.5", "0.7", false);
    row("numbers that differ in the last place that is sent", "0.500000", "0.500001", false);
    row("a number and a word", "0.5", "no", false);
    row("nan is a word", "nan", "nan", true);
}

void CommandJournalTest::comparesValues()
{
    QFETCH(const QByteArray, left);
    QFETCH(const QByteArray, right);
    QTEST(isSameValue(left, right), "same");
    QTEST(isSameValue(right, left), "same");
}

void CommandJournalTest::showsValues_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *sentence, const char *value, const char *shown) {
        QTest::newRow(sentence) << QByteArray(value) << QString::fromUtf8(shown);
    };
    row("a number without its zeros", "0.500000", "0.5");
    row("all places that count", "-0.033333", "-0.033333");
    row("a word as it is", "preset6d_custom", "preset6d_custom");
    row("a line feed as a blank", "a\nb", "a b");
    row("nan is no number", "nan", "nan");
}

void CommandJournalTest::showsValues()
{
    QFETCH(const QByteArray, value);
    QTEST(shownValue(value), "shown");
}

void CommandJournalTest::asksForTheOldValueFirst()
{
    const QDateTime before = QDateTime::currentDateTime();
    QVERIFY(journaled->command(command));
    QCOMPARE(backend->asked(), (QByteArrayList{question, command}));
    QTRY_COMPARE(journal->rowCount(), 1);
    QCOMPARE(rowText(0), QString::fromUtf8("standard b01; strength; 0.5 \xE2\x86\x92 0.7; accepted; module"));
    QVERIFY(journal->entry(0).time >= before);
    QVERIFY(journal->entry(0).time <= QDateTime::currentDateTime());
    QCOMPARE(journal->entry(0).connection, 3);
    QCOMPARE(journal->entry(0).oldValue, QByteArray("0.500000"));
}

void CommandJournalTest::leavesOtherCommandsAlone()
{
    QVERIFY(journaled->command("output active chmon 6d yes"));
    QVERIFY(!journaled->command("refused"));
    QCOMPARE(journaled->request(question), std::optional<QByteArray>("0.500000"));
    QCOMPARE(journaled->request("unknown"), std::nullopt);
    QCOMPARE(backend->asked(), (QByteArrayList{"output active chmon 6d yes", "refused", question, "unknown"}));
    QCOMPARE(journaled->name(), backend->name());
    QCOMPARE(journaled->version().patch, backend->version().patch);
    QCoreApplication::processEvents();
    QCOMPARE(journal->rowCount(), 0);
}

void CommandJournalTest::notesRefusedCommands()
{
    backend->refusing = true;
    QVERIFY(!journaled->command(command));
    QTRY_COMPARE(journal->rowCount(), 1);
    QCOMPARE(rowText(0), QString::fromUtf8("standard b01; strength; 0.5 \xE2\x86\x92 0.7; refused; module"));
}

void CommandJournalTest::asksNothingOfASlowBackend()
{
    isSlow = true;
    QVERIFY(journaled->command(command));
    QCOMPARE(backend->asked(), QByteArrayList{command});
    QTRY_COMPARE(journal->rowCount(), 1);
    QCOMPARE(rowText(0), QString::fromUtf8("standard b01; strength; not asked \xE2\x86\x92 0.7; accepted; module"));
}

void CommandJournalTest::logsNothingOfItsOwnQuestion()
{
    backend->answers.clear();
    QStringList texts;
    const QObject listening;
    connect(log.get(), &HostLog::entryAdded, &listening, [&](const LogEntry &entry) { texts << entry.text; });
    HostIOManager manager(*log);
    manager.setBackend(journaled);
    QCOMPARE(manager.sendCommand("%s", command.constData()), 0);
    char answer[200];
    QVERIFY(manager.requestString(answer, "%s", question.constData()) != 0);
    QTRY_COMPARE(journal->rowCount(), 1);
    QCOMPARE(rowText(0), QString::fromUtf8("standard b01; strength; not answered \xE2\x86\x92 0.7; accepted; module"));
    QTRY_VERIFY(!texts.isEmpty());
    QCOMPARE(texts, QStringList{QStringLiteral("The backend has no answer to \"%1\".").arg(QLatin1String(question))});
}

void CommandJournalTest::sendsTheCommandWhenItsQuestionThrows()
{
    backend->throwing = true;
    QVERIFY(journaled->command(command));
    QCOMPARE(backend->asked(), QByteArrayList{command});
}

void CommandJournalTest::notesWhatItPutsBack()
{
    QVERIFY(journaled->putBack(question, "0.500000", QByteArray("0.700000")));
    QCOMPARE(backend->asked(), QByteArrayList{question + " 0.500000"});
    backend->refusing = true;
    QVERIFY(!journaled->putBack(question, "0.500000", std::nullopt));
    QTRY_COMPARE(journal->rowCount(), 2);
    QCOMPARE(rowText(0), QString::fromUtf8("standard b01; strength; 0.7 \xE2\x86\x92 0.5; accepted; journal"));
    QCOMPARE(rowText(1), QString::fromUtf8("standard b01; strength; not answered \xE2\x86\x92 0.5; refused; journal"));
}

void CommandJournalTest::takesCommandsOfAnyThread()
{
    constexpr int threadCount = 4;
    constexpr int commands = 100;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([this] {
            for (int j = 0; j < commands; ++j)
                journaled->command(command);
        });
    for (std::thread &thread : threads)
        thread.join();
    QTRY_COMPARE(journal->rowCount(), threadCount * commands);
    QCOMPARE(backend->asked().size(), 2 * threadCount * commands);
}

void CommandJournalTest::forgetsTheOldest()
{
    constexpr int most = static_cast<int>(CommandJournal::maximumEntries);
    JournalEntry entry;
    const auto add = [&](int first, int count) {
        for (int i = first; i < first + count; ++i) {
            entry.setting = {question, QByteArray::number(i)};
            journal->add(entry);
        }
        QCoreApplication::processEvents();
    };
    add(0, most - 1);
    QCOMPARE(journal->rowCount(), most - 1);
    add(most - 1, 3);
    QCOMPARE(journal->rowCount(), most);
    QCOMPARE(journal->entry(0).setting.value, QByteArray("2"));
    add(most + 2, 3 * most);
    QCOMPARE(journal->rowCount(), most);
    QCOMPARE(journal->entry(most - 1).setting.value, QByteArray::number(4 * most + 1));
}

void CommandJournalTest::namesItsColumns()
{
    QStringList titles;
    for (int column = 0; column < journal->columnCount(); ++column)
        titles << journal->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    QCOMPARE(titles.join(QLatin1Char('|')), QString::fromUtf8("Time|Body|Setting|Old \xE2\x86\x92 New|Outcome|Who"));
}

QTEST_GUILESS_MAIN(CommandJournalTest)
#include "tst_commandjournal.moc"
