// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "filter/filterhelp.h"
#include "tests/support/dialogactions.h"
#include "tests/support/filterscript.h"
#include "tests/support/typing.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEventLoop>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include <functional>

/// What a host may do while it answers the dialog: run an event loop in which the panel is released, the dialog is
/// closed or run again, or somebody goes on typing.
class TestFilterDialogNested : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void openingMayLoseItsParent_data();
    void openingMayLoseItsParent();
    void changeMayLoseItsParent_data();
    void changeMayLoseItsParent();
    void orphanDestroysItself();
    void changeMayBeClosed_data();
    void changeMayBeClosed();
    void openEditOfAnOrphanIsNotSent();
    void helpClosesWithItsOrphan();
    void inputDuringAChangeWins_data();
    void inputDuringAChangeWins();
    void runningAgainWins_data();
    void runningAgainWins();

private:
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    /// Gives each row of \a addRows() the two ways of a host: at once, and in an event loop.
    static void addWays(const std::function<void(const char *way, bool inLoop)> &addRows);
    /// Lets the \a k th call from now act, \a inLoop or at once.
    void interruptAt(int k, bool inLoop, const std::function<void()> &act);
    /// Makes and runs a dialog as the table of bodies does; \a drive acts once it is active.
    int open(
        int tab, int body, const std::function<void()> &drive = [] {});

    ScriptedHost host;
    BackendVersions versions;
    QPointer<QWidget> parent;
    QPointer<FilterDialog> dialog;
    int callsLeft = 0; ///< until the call that acts; at 0 it has acted
};

void TestFilterDialogNested::init()
{
    delete dialog;
    delete parent;
    host = ScriptedHost();
    scriptFilters(host);
    parent = new QWidget;
    callsLeft = 0;
}

void TestFilterDialogNested::cleanup()
{
    host.onCall = nullptr;
    delete dialog;
    delete parent;
}

void TestFilterDialogNested::addWays(const std::function<void(const char *, bool)> &addRows)
{
    addRows("at once", false);
    addRows("in an event loop", true);
}

void TestFilterDialogNested::interruptAt(int k, bool inLoop, const std::function<void()> &act)
{
    callsLeft = k;
    host.onCall = [this, inLoop, act] {
        if (callsLeft == 0 || --callsLeft > 0)
            return;
        if (!inLoop) {
            act();
            return;
        }
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [&loop, &act] {
            act();
            QTimer::singleShot(0, &loop, &QEventLoop::quit); // what was to be destroyed later is
        });
        loop.exec();
    };
}

int TestFilterDialogNested::open(int tab, int body, const std::function<void()> &drive)
{
    dialog = new FilterDialog(&host, parent, &versions);
    if (!parent)
        return QDialog::Rejected;
    QTimer poll;
    connect(&poll, &QTimer::timeout, dialog, [this, &poll, drive] {
        if (!dialog->isActiveWindow())
            return;
        poll.stop();
        drive();
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
    poll.start(0);
    return dialog->update_and_exec(tab, body);
}

void TestFilterDialogNested::openingMayLoseItsParent_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("body");
    QTest::addColumn<bool>("inLoop");
    addWays([](const char *way, bool inLoop) {
        for (const int minor : {8, 12, 20, 21}) {
            QTest::addRow("all bodies, 1.%d, %s", minor, way) << backendVersion(1, minor) << 0 << -1 << inLoop;
            QTest::addRow("one body, 1.%d, %s", minor, way) << backendVersion(1, minor) << 0 << 2 << inLoop;
        }
        QTest::addRow("all wandors, 2.0, %s", way) << backendVersion(2, 0) << 1 << -1 << inLoop;
    });
}

void TestFilterDialogNested::openingMayLoseItsParent()
{
    QFETCH(BackendVersions, version);
    QFETCH(int, tab);
    QFETCH(int, body);
    QFETCH(bool, inLoop);
    versions = version;
    open(tab, body);
    const int calls = host.takeCalls().size();
    for (int k = 1; k <= calls; ++k) {
        init();
        interruptAt(k, inLoop, [this] { delete parent; });
        QCOMPARE(open(tab, body), static_cast<int>(QDialog::Rejected));
        QVERIFY(!parent);
        QVERIFY(dialog); // whoever made it has it yet
        QVERIFY(!dialog->isVisible());
        QCOMPARE(host.calls.size(), k); // and asks no more
        QCOMPARE(dialog->update_and_exec(tab, body), static_cast<int>(QDialog::Rejected));
        QCOMPARE(host.calls.size(), k);
    }
}

void TestFilterDialogNested::changeMayLoseItsParent_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArray>("setting");
    QTest::addColumn<bool>("inLoop");
    addWays([](const char *way, bool inLoop) {
        for (const char *setting : {"active", "preset", "strength", "prediction", "mode", "next body"}) {
            QTest::addRow("%s, 1.20, %s", setting, way) << backendVersion(1, 20) << QByteArray(setting) << inLoop;
            QTest::addRow("%s, 2.0, %s", setting, way) << backendVersion(2, 0) << QByteArray(setting) << inLoop;
        }
    });
}

void TestFilterDialogNested::changeMayLoseItsParent()
{
    QFETCH(BackendVersions, version);
    QFETCH(QByteArray, setting);
    QFETCH(bool, inLoop);
    versions = version;
    int k = 0;
    do {
        init();
        // Another state and preset than the first body's, so that both are sent back.
        host.answers["body filter6d_enabled standard b03"] = "no";
        ++k;
        const int result = open(0, -1, [&] {
            host.takeCalls();
            interruptAt(k, inLoop, [this] { delete parent; });
            changeSetting(*dialog, setting);
            if (callsLeft > 0) // the setting has fewer calls
                return;
            QVERIFY(!parent);
            QVERIFY(dialog); // with the field that has just told of the change
            QVERIFY(!dialog->isVisible());
            QCOMPARE(host.calls.size(), k);
        });
        QCOMPARE(result, static_cast<int>(QDialog::Rejected));
        if (callsLeft == 0)
            QCOMPARE(host.calls.size(), k);
        QVERIFY(k < 100);
    } while (callsLeft == 0);
    QVERIFY(k > 1);
}

void TestFilterDialogNested::orphanDestroysItself()
{
    versions = backendVersion(2, 0);
    interruptAt(1, true, [this] { delete parent; });
    open(0, 0);
    QVERIFY(dialog);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!dialog);

    init();
    open(0, 0, [this] {
        interruptAt(1, true, [this] { delete parent; });
        changeSetting(*dialog, "preset");
    });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!dialog);
}

void TestFilterDialogNested::changeMayBeClosed_data()
{
    changeMayLoseItsParent_data();
}

void TestFilterDialogNested::changeMayBeClosed()
{
    QFETCH(BackendVersions, version);
    QFETCH(QByteArray, setting);
    QFETCH(bool, inLoop);
    versions = version;
    int k = 0;
    do {
        init();
        ++k;
        bool wasClosed = false;
        const int result = open(0, -1, [&] {
            interruptAt(k, inLoop, [this] { dialog->accept(); });
            changeSetting(*dialog, setting);
            wasClosed = !dialog->isVisible();
        });
        QCOMPARE(wasClosed, callsLeft == 0);
        QCOMPARE(result, static_cast<int>(wasClosed ? QDialog::Accepted : QDialog::Rejected));
        QVERIFY(dialog);
        QVERIFY(k < 100);
    } while (callsLeft == 0);
    QVERIFY(k > 1);
}

void TestFilterDialogNested::openEditOfAnOrphanIsNotSent()
{
    versions = backendVersion(2, 0);
    open(0, 0, [this] {
        host.takeCalls();
        replaceNumber(child<QDoubleSpinBox>("doubleSpinBox_strength"), QStringLiteral("0.6"));
        interruptAt(1, true, [this] { delete parent; });
        changeSetting(*dialog, "mode");
    });
    QCOMPARE(host.calls, QByteArrayList{"sendCommand body filter6d_mode standard b01 mode6d_static"});
}

void TestFilterDialogNested::helpClosesWithItsOrphan()
{
    versions = backendVersion(2, 0);
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [this, &poll] {
        if (!qobject_cast<FilterHelp *>(QApplication::activeModalWidget()))
            return;
        poll.stop();
        delete parent;
    });
    open(0, 0, [this, &poll] {
        interruptAt(1, true, [this, &poll] {
            poll.start(1);
            child<QPushButton>("pushButton_help")->click();
        });
        changeSetting(*dialog, "mode");
        QVERIFY(!parent);
        QVERIFY(dialog);
        QVERIFY(!QApplication::activeModalWidget());
    });
    QCOMPARE(callsLeft, 0);
}

void TestFilterDialogNested::inputDuringAChangeWins_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArray>("setting");
    QTest::addColumn<QByteArray>("input");
    for (const char *setting : {"active", "preset", "strength", "prediction", "mode", "next body"}) {
        for (const char *input : {"active", "preset", "strength", "next body"}) {
            QTest::addRow("%s, then %s, 1.20", setting, input)
                << backendVersion(1, 20) << QByteArray(setting) << QByteArray(input);
            QTest::addRow("%s, then %s, 2.0", setting, input)
                << backendVersion(2, 0) << QByteArray(setting) << QByteArray(input);
        }
    }
}

void TestFilterDialogNested::inputDuringAChangeWins()
{
    QFETCH(BackendVersions, version);
    QFETCH(QByteArray, setting);
    QFETCH(QByteArray, input);
    versions = version;
    const QByteArray other("standard b03");
    const auto settingsOf = [&](const QByteArray &body) {
        QByteArrayList values;
        for (const char *kind : {"enabled", "preset", "mode"})
            values << host.answers.value(QByteArray("body filter6d_") + kind + ' ' + body);
        for (const char *kind : {"strength", "prediction"}) // 0.75 is 0.750000
            values << QByteArray::number(
                host.answers.value(QByteArray("body filter6d_") + kind + ' ' + body).toDouble());
        return values;
    };
    int k = 0;
    do {
        init();
        host.answers["body filter6d_enabled " + other] = "no";
        const QByteArrayList settingsOfOther = settingsOf(other);
        ++k;
        bool compared = false;
        open(0, -1, [&] {
            interruptAt(k, true, [&] { changeSetting(*dialog, input); });
            changeSetting(*dialog, setting);
            const QByteArrayList values = settingsOf(child<QComboBox>("comboBox_body")->currentData().toByteArray());
            QCOMPARE(child<QCheckBox>("checkBox_active")->isChecked(), values[0] == "yes");
            QCOMPARE(child<QComboBox>("comboBox_preset")->currentData().toByteArray(), values[1]);
            QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), values[3].toDouble());
            QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), static_cast<int>(values[4].toDouble() * 1000.0));
            QCOMPARE(child<QComboBox>("comboBox_mode")->currentData().toByteArray(), values[2]);
            if (!setting.endsWith("body"))
                QCOMPARE(settingsOf(other), settingsOfOther); // whose body got none of the other's
            compared = true;
        });
        QVERIFY2(compared, QByteArray::number(k));
        QVERIFY(k < 200);
    } while (callsLeft == 0);
    QVERIFY(k > 1);
}

void TestFilterDialogNested::runningAgainWins_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::newRow("1.20") << backendVersion(1, 20);
    QTest::newRow("2.0") << backendVersion(2, 0);
}

void TestFilterDialogNested::runningAgainWins()
{
    QFETCH(BackendVersions, version);
    versions = version;
    int k = 0;
    do {
        init();
        ++k;
        dialog = new FilterDialog(&host, parent, &versions);
        int opened = 0;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [this, &opened] {
            if (dialog->isActiveWindow())
                dialog->done(10 + ++opened);
        });
        poll.start(1);
        interruptAt(k, false, [this] { dialog->update_and_exec(1, 1); });
        QCOMPARE(dialog->update_and_exec(0, -1), 11);
        QCOMPARE(opened, 1);
        const QString body = child<QComboBox>("comboBox_body")->currentData().toString();
        QCOMPARE(body, callsLeft == 0 ? QStringLiteral("wandor b02") : QStringLiteral("standard b01"));
        QCOMPARE(child<QComboBox>("comboBox_body")->count(), callsLeft == 0 ? 1 : 2);
        QVERIFY(k < 100);
    } while (callsLeft == 0);
    QVERIFY(k > 1);
}

QTEST_MAIN(TestFilterDialogNested)
#include "tst_filterdialog_nested.moc"
