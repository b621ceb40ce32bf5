// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/host.h"
#include "tests/host/fakebackend.h"
#include "tests/host/fakestream.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace backend;
using namespace host;

/// Counts every event that any object of the GUI thread gets.
class AllEvents : public QObject {
public:
    AllEvents() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        ++count;
        return QObject::eventFilter(watched, event);
    }

    int count = 0;
};

/// What a line of output costs the GUI thread: nothing.
class LineEventsTest : public QObject {
    Q_OBJECT

private slots:
    void givesTheGuiThreadNoEvent();
};

void LineEventsTest::givesTheGuiThreadNoEvent()
{
    constexpr quint64 lines = 100'000;
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
    const auto fake = std::make_shared<FakeBackend>();
    fake->answers.insert("standard number_of_bodies", "1");
    fake->answers.insert("standard fixed_angle_present", "yes"); // so that "6d" is shown
    fake->answers.insert("body calibrated standard b01", "yes");
    fake->answers.insert("body active standard b01", "yes");
    FakeStream *stream = nullptr;
    fake->opened = [&stream] {
        auto made = std::make_unique<FakeStream>();
        stream = made.get();
        return made;
    };
    HostOptions options;
    const auto host = std::make_unique<Host>(options, fake, QStringList{QStringLiteral(MODULES)});
    host->window().show();
    QVERIFY(QTest::qWaitForWindowExposed(&host->window()));
    const auto *table = host->window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d"));
    QVERIFY(table);
    QTRY_VERIFY(stream);
    const QByteArray text("6d 1 [0 1.0][10 20 30 0 0 0][1 0 0 0 1 0 0 0 1]");
    stream->put("6d", text);
    QTRY_COMPARE(table->item(0, 4)->text(), QStringLiteral("10.00"));

    const AllEvents events;
    for (quint64 i = 1; i <= lines; ++i)
        stream->put({{QByteArrayLiteral("6d"), text}, std::chrono::microseconds(i), i});
    QTRY_COMPARE_WITH_TIMEOUT(host->backendSession().counts().sent, lines + 1, 120000);
    // Redraws and other timers alone, some tens of events each.
    QVERIFY2(static_cast<quint64>(events.count) < lines / 10, qPrintable(QString::number(events.count)));
}

QTEST_MAIN(LineEventsTest)
#include "tst_lineevents.moc"
