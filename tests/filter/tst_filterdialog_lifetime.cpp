// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "filter/filterhelp.h"
#include "tests/support/filterscript.h"
#include "tests/support/typing.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

constexpr int pollInterval = 5; // ms

FilterHelp *openHelp()
{
    return qobject_cast<FilterHelp *>(QApplication::activeModalWidget());
}

int countOfHelps()
{
    int count = 0;
    const QWidgetList widgets = QApplication::allWidgets();
    for (const QWidget *widget : widgets) {
        if (qobject_cast<const FilterHelp *>(widget))
            ++count;
    }
    return count;
}

} // namespace

class TestFilterDialogLifetime : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void constructionShowsNothing();
    void parentMayGoWhileOpen();
    void parentMayGoDuringAnEdit();
    void parentMayGoUnderAnOpenList();
    void parentMayGoWhileHelpIsOpen_data();
    void parentMayGoWhileHelpIsOpen();
    void helpClosesByItself_data();
    void helpClosesByItself();
    void closedUnderTheHelp();
    void helpIsThereWithoutAFilter();

private:
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    /// Runs the dialog on standard body 1, pressing Alt+H once it is active, and lets \a act do something once the
    /// help is open.
    int runWithHelp(const std::function<void(FilterHelp *)> &act);

    ScriptedHost host;
    BackendVersions versions;
    QWidget *parent = nullptr; // deleted by the tests themselves
    FilterDialog *dialog = nullptr;
    QPointer<QWidget> parentWatch;
    QPointer<FilterDialog> dialogWatch;
};

void TestFilterDialogLifetime::init()
{
    host = ScriptedHost();
    scriptFilters(host);
    versions = backendVersion(2, 0);
    parent = new QWidget;
    dialog = new FilterDialog(&host, parent, &versions);
    parentWatch = parent;
    dialogWatch = dialog;
    host.takeCalls();
}

void TestFilterDialogLifetime::cleanup()
{
    delete parentWatch;
    QVERIFY(!dialogWatch);
    QCOMPARE(countOfHelps(), 0);
}

int TestFilterDialogLifetime::runWithHelp(const std::function<void(FilterHelp *)> &act)
{
    QTimer poll; // the help runs an event loop of its own, so that nothing can wait for it in line
    connect(&poll, &QTimer::timeout, this, [&poll, &act] {
        FilterHelp *help = openHelp();
        if (!help || !help->isActiveWindow())
            return;
        poll.stop();
        act(help);
    });
    QTimer::singleShot(0, dialog, [this, &poll] {
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        poll.start(pollInterval);
        pressAlt(dialog, Qt::Key_H);
    });
    return dialog->update_and_exec(0, 0);
}

void TestFilterDialogLifetime::constructionShowsNothing()
{
    QVERIFY(!dialog->isVisible());
    QCOMPARE(dialog->parentWidget(), parent);
}

void TestFilterDialogLifetime::parentMayGoWhileOpen()
{
    bool wasOpen = false;
    const int result = runDialog(*dialog, 0, 0, [this, &wasOpen] {
        wasOpen = dialog->isVisible();
        delete parent;
    });
    QVERIFY(wasOpen);
    QVERIFY(!dialogWatch);
    QCOMPARE(result, static_cast<int>(QDialog::Rejected));
}

void TestFilterDialogLifetime::parentMayGoDuringAnEdit()
{
    runDialog(*dialog, 0, 0, [this] {
        replaceNumber(child<QDoubleSpinBox>("doubleSpinBox_strength"), QStringLiteral("0.6"));
        delete parent;
    });
    QVERIFY(!dialogWatch);
    QVERIFY(host.callsOf("sendCommand").isEmpty()); // the edit had no end
}

void TestFilterDialogLifetime::parentMayGoUnderAnOpenList()
{
    bool wasOpen = false;
    runDialog(*dialog, 0, 0, [this, &wasOpen] {
        auto *preset = child<QComboBox>("comboBox_preset");
        preset->setFocus();
        QTest::keyClick(preset, Qt::Key_Space);
        QTRY_VERIFY(preset->view()->isVisible());
        wasOpen = true;
        delete parent;
    });
    QVERIFY(wasOpen);
    QVERIFY(!dialogWatch);
}

void TestFilterDialogLifetime::parentMayGoWhileHelpIsOpen_data()
{
    QTest::addColumn<bool>("dialogOnly");
    QTest::newRow("the dialog is deleted, and its help goes with it") << true;
    QTest::newRow("the parent is deleted, and the help goes with it") << false;
}

void TestFilterDialogLifetime::parentMayGoWhileHelpIsOpen()
{
    QFETCH(bool, dialogOnly);
    QPointer<FilterHelp> help;
    runWithHelp([this, &help, dialogOnly](FilterHelp *opened) {
        help = opened;
        QVERIFY(!opened->parent());
        if (dialogOnly)
            delete dialog;
        else
            delete parent;
        QVERIFY(!help);
    });
    QVERIFY(!dialogWatch);
    QVERIFY(!help);
}

void TestFilterDialogLifetime::helpClosesByItself_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("by Escape") << QStringLiteral("escape");
    QTest::newRow("by Alt+X") << QStringLiteral("alt");
    QTest::newRow("by a click on its Exit") << QStringLiteral("click");
}

void TestFilterDialogLifetime::helpClosesByItself()
{
    QFETCH(QString, way);
    QPointer<FilterHelp> help;
    bool dialogStayed = false;
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [&] {
        if (help || QApplication::activeModalWidget() != dialog)
            return;
        poll.stop();
        dialogStayed = dialog->isVisible();
        dialog->reject();
    });
    runWithHelp([&](FilterHelp *opened) {
        help = opened;
        QCOMPARE(countOfHelps(), 1);
        if (way == QLatin1String("escape"))
            QTest::keyClick(opened, Qt::Key_Escape);
        else if (way == QLatin1String("alt"))
            QTest::keyClick(opened, Qt::Key_X, Qt::AltModifier);
        else
            QTest::mouseClick(opened->findChild<QPushButton *>(QStringLiteral("pushButton_exit")), Qt::LeftButton);
        poll.start(pollInterval);
    });
    QVERIFY(dialogStayed);
    QVERIFY(!help);
    QVERIFY(host.callsOf("sendCommand").isEmpty());
}

void TestFilterDialogLifetime::closedUnderTheHelp()
{
    const int result = runWithHelp([this](FilterHelp *help) {
        dialog->accept();
        QTest::keyClick(help, Qt::Key_Escape);
    });
    QVERIFY(dialogWatch);
    QCOMPARE(result, static_cast<int>(QDialog::Accepted));
    QCOMPARE(countOfHelps(), 0);
}

void TestFilterDialogLifetime::helpIsThereWithoutAFilter()
{
    host.answers["filter6d available standard"] = "no";
    bool opened = false;
    runWithHelp([this, &opened](FilterHelp *help) {
        opened = true;
        dialog->reject();
        help->reject();
    });
    QVERIFY(opened);
}

QTEST_MAIN(TestFilterDialogLifetime)
#include "tst_filterdialog_lifetime.moc"
