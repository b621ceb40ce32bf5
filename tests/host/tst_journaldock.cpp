// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/simulatedbackend.h"
#include "host/backendsession.h"
#include "host/backendwatch.h"
#include "host/hostiomanager.h"
#include "host/hostlog.h"
#include "host/journaldock.h"
#include "host/journaledbackend.h"
#include "tests/backend/model.h"

#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace backend;
using namespace host;

namespace {

const char *const strength = "body filter6d_strength standard b01";

/// A body whose strength may be set, with notes of what was asked and told.
class NotingBackend : public SimulatedBackend {
public:
    NotingBackend()
        : SimulatedBackend(everything())
    {
    }
    std::optional<QByteArray> request(const QByteArray &query) override
    {
        notes << query;
        return mute ? std::nullopt : SimulatedBackend::request(query);
    }
    bool command(const QByteArray &text) override
    {
        notes << text;
        return !refusing && SimulatedBackend::command(text);
    }

    QByteArrayList notes;
    bool mute = false;
    bool refusing = false;
};

} // namespace

Q_DECLARE_METATYPE(host::JournalEntry::OldValue)

/// The journal's dock, by clicks and keys.
class JournalDockTest : public QObject {
    Q_OBJECT

private slots:
    void init() { start(false); }
    void cleanup();

    void putsAnOldValueBack();
    void worksByKeys();
    void asksWhereTheValueHasChanged();
    void asksAgainWhereItHasChangedAgain();
    void asksWhereTheValueIsNotKnown();
    void forgetsItsQuestionWithTheRow();
    void saysWhyNot_data();
    void saysWhyNot();
    void saysThatTheOldValueWasRefused();
    void isNotForObservers();
    void isNotForAnotherBackend();
    void followsTheNewestEntry();
    void namesItsParts();

private:
    void start(bool isObserver);
    /// Sends a command as a module does.
    void send(const QByteArray &command, int expectedResult = 0);
    void choose(int row) const;
    void click() const { QTest::mouseClick(button(), Qt::LeftButton); }
    QPushButton *button() const { return dock->findChild<QPushButton *>(QStringLiteral("putBackButton")); }
    QTableView *view() const { return dock->findChild<QTableView *>(QStringLiteral("journalTable")); }
    QString reason() const { return dock->findChild<QLabel *>(QStringLiteral("putBackReason"))->text(); }
    QString change(int row) const
    {
        return view()->model()->index(row, CommandJournal::ChangeColumn).data().toString();
    }
    int rows() const { return view()->model()->rowCount(); }

    BackendVersions versions;
    std::unique_ptr<HostLog> log;
    std::unique_ptr<BackendWatch> watch;
    std::unique_ptr<HostIOManager> manager;
    std::unique_ptr<BackendSession> session;
    std::unique_ptr<QMainWindow> window;
    std::shared_ptr<NotingBackend> backend;
    JournalDock *dock = nullptr;
};

void JournalDockTest::start(bool isObserver)
{
    cleanup();
    log = std::make_unique<HostLog>();
    watch = std::make_unique<BackendWatch>(*log);
    manager = std::make_unique<HostIOManager>(*log);
    session = std::make_unique<BackendSession>(*manager, versions, *log);
    backend = std::make_shared<NotingBackend>();
    session->open(watch->wrap(backend));
    window = std::make_unique<QMainWindow>();
    dock = new JournalDock(*watch, *session, isObserver, window.get());
    window->addDockWidget(Qt::BottomDockWidgetArea, dock);
    window->resize(900, 300);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
}

void JournalDockTest::cleanup()
{
    window.reset();
    session.reset();
    manager.reset();
    watch.reset();
    log.reset();
    backend.reset();
}

void JournalDockTest::send(const QByteArray &command, int expectedResult)
{
    const int before = rows();
    QCOMPARE(manager->sendCommand("%s", command.constData()), expectedResult);
    QTRY_COMPARE(rows(), before + 1);
}

void JournalDockTest::choose(int row) const
{
    const QRect cell = view()->visualRect(view()->model()->index(row, CommandJournal::BodyColumn));
    QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, cell.center());
}

void JournalDockTest::putsAnOldValueBack()
{
    QVERIFY(!button()->isEnabled());
    QCOMPARE(button()->text(), QStringLiteral("&Put Back"));
    QVERIFY(!reason().isEmpty());
    send(strength + QByteArray(" 0.7"));
    choose(0);
    QVERIFY(button()->isEnabled());
    QCOMPARE(reason(), QString());
    backend->notes.clear();
    QSignalSpy putBack(dock, &JournalDock::putBack);
    click();
    QCOMPARE(backend->notes, (QByteArrayList{strength, strength + QByteArray(" 0.250000")}));
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.25);
    QTRY_COMPARE(rows(), 2);
    QCOMPARE(change(1), QString::fromUtf8("0.7 \xE2\x86\x92 0.25"));
    QCOMPARE(view()->model()->index(1, CommandJournal::SenderColumn).data().toString(), QStringLiteral("journal"));
    QCOMPARE(putBack.size(), 1);
    QCOMPARE(putBack.at(0).at(0).toString(), QStringLiteral("strength"));
}

void JournalDockTest::worksByKeys()
{
    send("body filter6d_enabled standard b01 no");
    send(strength + QByteArray(" 0.7"));
    view()->setFocus();
    QTest::keyClick(view(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(view(), Qt::Key_Up);
    QTest::keyClick(view(), Qt::Key_Tab);
    QVERIFY(button()->hasFocus());
    QTest::keyClick(button(), Qt::Key_Space);
    QVERIFY(backend->scenario().bodies[0].filter.enabled);
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.7);
}

void JournalDockTest::asksWhereTheValueHasChanged()
{
    send(strength + QByteArray(" 0.5"));
    send(strength + QByteArray(" 0.7"));
    choose(0);
    click();
    QCOMPARE(button()->text(), QStringLiteral("is now 0.7, not 0.5; put back anyway?"));
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.7);
    QCOMPARE(rows(), 2);
    click();
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.25);
    QCOMPARE(button()->text(), QStringLiteral("&Put Back"));
}

void JournalDockTest::asksAgainWhereItHasChangedAgain()
{
    send(strength + QByteArray(" 0.5"));
    send(strength + QByteArray(" 0.7"));
    choose(0);
    click();
    QVERIFY(backend->command(strength + QByteArray(" 0.9"))); // another program's
    click();
    QCOMPARE(button()->text(), QStringLiteral("is now 0.9, not 0.5; put back anyway?"));
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.9);
    click();
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.25);
}

void JournalDockTest::asksWhereTheValueIsNotKnown()
{
    send(strength + QByteArray(" 0.5"));
    choose(0);
    backend->mute = true;
    click();
    QCOMPARE(button()->text(), QStringLiteral("is not known now; put back anyway?"));
    click();
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.25);
    QTRY_COMPARE(rows(), 2);
    QCOMPARE(change(1), QString::fromUtf8("not answered \xE2\x86\x92 0.25"));
}

void JournalDockTest::forgetsItsQuestionWithTheRow()
{
    send(strength + QByteArray(" 0.5"));
    send(strength + QByteArray(" 0.7"));
    choose(0);
    click();
    choose(1);
    QCOMPARE(button()->text(), QStringLiteral("&Put Back"));
    choose(0);
    click();
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.7); // only asked again
}

void JournalDockTest::saysWhyNot_data()
{
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<JournalEntry::OldValue>("oldValue");
    QTest::addColumn<int>("connection"); // the entry's is 2
    QTest::addColumn<QString>("reason"); // empty: it is possible
    const auto row = [](const char *sentence, bool accepted, JournalEntry::OldValue oldValue, int connection,
                        const char *expected) {
        QTest::newRow(sentence) << accepted << oldValue << connection << QString::fromUtf8(expected);
    };
    using Old = JournalEntry::OldValue;
    row("an accepted one may be put back", true, Old::Known, 2, "");
    row("a refused one has changed nothing", false, Old::Known, 2,
        "The backend refused this command: there is nothing to put back.");
    row("a value that was not asked", true, Old::NotAsked, 2,
        "The old value was not asked for, because the backend was slow.");
    row("a value that was not answered", true, Old::NotAnswered, 2, "The backend did not say what the old value was.");
    row("no backend", true, Old::Known, 0, "No backend is connected.");
    row("another backend", true, Old::Known, 3, "This was sent to another backend.");
}

void JournalDockTest::saysWhyNot()
{
    QFETCH(const bool, accepted);
    QFETCH(const JournalEntry::OldValue, oldValue);
    QFETCH(const int, connection);
    QFETCH(const QString, reason);
    JournalEntry entry;
    entry.accepted = accepted;
    entry.oldValueState = oldValue;
    entry.connection = 2;
    const PutBackState state = PutBackState::of(entry, false, connection);
    QCOMPARE(state.reason, reason);
    QCOMPARE(state.isPossible, reason.isEmpty());
    QVERIFY(!PutBackState::of(entry, true, connection).isPossible);
}

void JournalDockTest::saysThatTheOldValueWasRefused()
{
    send(strength + QByteArray(" 0.5"));
    choose(0);
    backend->refusing = true;
    QSignalSpy putBack(dock, &JournalDock::putBack);
    click();
    QCOMPARE(reason(), QStringLiteral("The backend refused the old value."));
    QCOMPARE(putBack.size(), 0);
    QTRY_COMPARE(rows(), 2);
    choose(1);
    QVERIFY(!button()->isEnabled());
}

void JournalDockTest::isNotForObservers()
{
    start(true);
    send(strength + QByteArray(" 0.5"));
    choose(0);
    QVERIFY(!button()->isEnabled());
    QCOMPARE(reason(), QStringLiteral("An observer changes nothing."));
    click();
    QCOMPARE(backend->scenario().bodies[0].filter.strength, 0.5);
}

void JournalDockTest::isNotForAnotherBackend()
{
    send(strength + QByteArray(" 0.5"));
    choose(0);
    QVERIFY(button()->isEnabled());
    session->disconnectBackend();
    QCOMPARE(reason(), QStringLiteral("No backend is connected."));
    QVERIFY(!button()->isEnabled());
    session->reconnect();
    QVERIFY(button()->isEnabled());
    session->change(watch->wrap(std::make_shared<NotingBackend>()));
    QCOMPARE(reason(), QStringLiteral("This was sent to another backend."));
    QVERIFY(!button()->isEnabled());
}

void JournalDockTest::followsTheNewestEntry()
{
    for (int i = 0; i < 30; ++i)
        send(strength + QByteArray(" 0.") + QByteArray::number(i + 10));
    const auto isSeen = [this](int row) {
        return view()->viewport()->rect().intersects(view()->visualRect(view()->model()->index(row, 0)));
    };
    QTRY_VERIFY(isSeen(29));
    view()->scrollToTop();
    send(strength + QByteArray(" 0.9"));
    QVERIFY(isSeen(0)); // who reads stays where he is
    QVERIFY(!isSeen(30));
}

void JournalDockTest::namesItsParts()
{
    QVERIFY(!view()->accessibleName().isEmpty());
    QVERIFY(!dock->objectName().isEmpty());
    QCOMPARE(dock->windowTitle(), QStringLiteral("Command Journal"));
}

QTEST_MAIN(JournalDockTest)
#include "tst_journaldock.moc"
