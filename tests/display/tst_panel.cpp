// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QDir>
#include <QHBoxLayout>
#include <QMetaMethod>
#include <QtTest>

#include <new>

namespace {

const QStringList threeD{QStringLiteral("requestString output available 3d"),
                         QStringLiteral("requestString output active chmon 3d")};

QStringList outputQueries(const char *tag)
{
    return {QStringLiteral("requestString output available ") + QLatin1String(tag),
            QStringLiteral("requestString output active chmon ") + QLatin1String(tag)};
}

const QStringList registered{QStringLiteral("registerRequester")};
const QStringList asked{QStringLiteral("requestBool standard fixed_angle_present")};
const QStringList stopped{QStringLiteral("stopOutput 6d")};

QStringList logged(const char *text)
{
    return {QStringLiteral("log ") + QLatin1String(text)};
}

} // namespace

class TestPanel : public QObject {
    Q_OBJECT

private slots:
    void metaMethodsAreInTheirOrder();
    void construction_data();
    void construction();
    void preferencesComeBeforeTheQuestions();
    void formItself();
    void tableOfTheForm_data();
    void tableOfTheForm();
    void showAndHide();
    void eventsOfTheWindowSystemCount();
    void shownPanelOfAnOldBackend();
    void lineCounters();
    void linesOfOtherTypes_data();
    void linesOfOtherTypes();
    void firstLineOfAConfigurationRedraws();
    void shutdownUnregistersThenSaves();
    void destructionSavesNothing();
    void panelThatCannotBeMadeUnregisters();
};

void TestPanel::metaMethodsAreInTheirOrder()
{
    QByteArrayList methods;
    const QMetaObject &type = DataDisplay::staticMetaObject;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        methods << (method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") + method.methodSignature();
    }
    QCOMPARE(methods,
             QByteArrayList({"signal shallUpdateView6d()", "slot onUpdateFilterActiveStatus(int)",
                             "slot updateView3d()", "slot updateView6d()", "slot updateInertialSensorInfo(bool)",
                             "slot timerUpdateInertialSensorInfo()"}));
    QCOMPARE(type.className(), "DataDisplay");
    QCOMPARE(type.method(type.methodOffset() + 1).parameterNames(), QByteArrayList({"iBodyIdx"}));
    QCOMPARE(type.method(type.methodOffset() + 4).parameterNames(), QByteArrayList({"first"}));
}

void TestPanel::construction_data()
{
    QTest::addColumn<int>("minorVersion");
    QTest::addColumn<QString>("command"); // answered differently
    QTest::addColumn<QString>("answer"); // empty: the command fails
    QTest::addColumn<QStringList>("calls");

    const QStringList begin6di = registered + asked + stopped;
    QTest::newRow("1.11 gets 6d without a question") << 11 << ""
                                                     << "" << registered + stopped + outputQueries("6d") + threeD;
    QTest::newRow("1.12 without fixed angles gets 6di") << 12 << ""
                                                        << "" << begin6di + outputQueries("6di") + threeD;
    QTest::newRow("1.12 with fixed angles gets 6d") << 12 << "standard fixed_angle_present"
                                                    << "true" << begin6di + outputQueries("6d") + threeD;
    QTest::newRow("a failing fixed-angle question is logged, and counts as none")
        << 12 << "standard fixed_angle_present"
        << ""
        << registered + asked + logged("Error: Unable to get fixed angle present") + stopped + outputQueries("6di")
            + threeD;
    QTest::newRow("a failing question for the 6DOF output ends its activation alone")
        << 12 << "output available 6di"
        << ""
        << begin6di + QStringList{QStringLiteral("requestString output available 6di")}
            + logged("Error: Unable to get info output 6di available") + threeD;
    QTest::newRow("an output that is not available is logged")
        << 11 << "output available 6d"
        << "no"
        << registered + stopped + QStringList{QStringLiteral("requestString output available 6d")}
            + logged("Error: Output format 6d is not available and cannot be activated") + threeD;
    QTest::newRow("a failing question for the active output ends its activation")
        << 12 << "output active chmon 6di"
        << "" << begin6di + outputQueries("6di") + logged("Error: Unable to get info output 6di active") + threeD;
    QTest::newRow("an inactive 6DOF output is switched on") << 12 << "output active chmon 6di"
                                                            << "no"
                                                            << begin6di + outputQueries("6di")
            + QStringList{QStringLiteral("sendCommand output active chmon 6di yes")} + threeD;
    QTest::newRow("an inactive 3DOF output that can't be switched on is logged") << 12 << "output active chmon 3d"
                                                                                 << "no"
                                                                                 << begin6di + outputQueries("6di")
            + threeD + QStringList{QStringLiteral("sendCommand output active chmon 3d yes")}
            + logged("Error: Unable to activate output 3d");
    QTest::newRow("a failing question for the 3DOF output is logged")
        << 12 << "output available 3d"
        << ""
        << begin6di + outputQueries("6di") + QStringList{QStringLiteral("requestString output available 3d")}
            + logged("Error: Unable to get info output 3d available");
    QTest::newRow("an empty answer is not no") << 12 << "output available 6di"
                                               << "<empty>" << begin6di + outputQueries("6di") + threeD;
    QTest::newRow("No with a capital letter is not no") << 12 << "output active chmon 6di"
                                                        << "No" << begin6di + outputQueries("6di") + threeD;
}

void TestPanel::construction()
{
    QFETCH(const int, minorVersion);
    QFETCH(const QString, command);
    QFETCH(const QString, answer);
    QFETCH(const QStringList, calls);
    PanelFixture fixture(1, minorVersion, -1);
    fixture.host.failing.setPattern(QStringLiteral("chmon 3d yes$"));
    if (answer.isEmpty())
        fixture.refuse(command);
    else
        fixture.answer(command, answer == QLatin1String("<empty>") ? QString() : answer);
    fixture.createPanel();
    QCOMPARE(fixture.takeCalls(), calls);
}

void TestPanel::preferencesComeBeforeTheQuestions()
{
    PanelFixture fixture;
    fixture.writePreferences("<OTHER/>");
    fixture.createPanel();
    const QStringList calls = fixture.takeCalls();
    QCOMPARE(calls.value(0), registered.first());
    QVERIFY2(calls.value(1).startsWith(QLatin1String("log Error: Loading data display preferences")),
             qPrintable(calls.value(1)));
    QCOMPARE(calls.value(2), asked.first());
}

void TestPanel::formItself()
{
    PanelFixture fixture;
    const DataDisplay &panel = fixture.createPanel();
    QCOMPARE(panel.objectName(), QStringLiteral("DataDisplayWidget"));
    QCOMPARE(panel.size(), QSize(881, 193));
    QCOMPARE(panel.windowTitle(), QStringLiteral("Form"));
    const auto *layout = qobject_cast<QHBoxLayout *>(panel.layout());
    QVERIFY(layout);
    QCOMPARE(layout->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget()->objectName(), QStringLiteral("tableWidget6d"));
    QCOMPARE(layout->itemAt(1)->widget()->objectName(), QStringLiteral("tableWidget3d"));
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->stretch(1), 0);
    QCOMPARE(fixture.table6d().rowCount(), 0);
    QCOMPARE(fixture.table3d().rowCount(), 0);
}

void TestPanel::tableOfTheForm_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<Qt::ContextMenuPolicy>("menuPolicy");
    QTest::addColumn<QString>("whatsThis");
    QTest::newRow("bodies") << "tableWidget6d" << QByteArray("ZelTableWidget") << Qt::DefaultContextMenu
                            << "This is a list of all 'standard bodies' and their current tracking states. All "
                               "coordinates are room coordinates.";
    QTest::newRow("markers") << "tableWidget3d" << QByteArray("QTableWidget") << Qt::NoContextMenu
                             << "This is a list of all 3d markers in room coordinates.";
}

void TestPanel::tableOfTheForm()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, className);
    QFETCH(const Qt::ContextMenuPolicy, menuPolicy);
    QFETCH(const QString, whatsThis);
    PanelFixture fixture;
    const auto *table = fixture.createPanel().findChild<QTableWidget *>(name);
    QVERIFY(table);
    QCOMPARE(QByteArray(table->metaObject()->className()), className);
    QCOMPARE(table->parentWidget(), fixture.panel.get());
    QVERIFY(table->isEnabled());
    QCOMPARE(table->font().family(), QStringLiteral("Sans Serif"));
    QCOMPARE(table->font().pointSize(), 8);
    QCOMPARE(table->font().weight(), 75);
    QVERIFY(!table->font().italic());
    QVERIFY(!table->font().underline());
    QVERIFY(!table->font().strikeOut());
    QCOMPARE(table->contextMenuPolicy(), menuPolicy);
    QCOMPARE(table->styleSheet(), QStringLiteral("QHeaderView::section{border: none; font: normal;}"));
    QCOMPARE(table->frameShape(), QFrame::NoFrame);
    QCOMPARE(table->frameShadow(), QFrame::Plain);
    QCOMPARE(table->lineWidth(), 0);
    QCOMPARE(table->editTriggers(), QAbstractItemView::EditTriggers(QAbstractItemView::NoEditTriggers));
    QVERIFY(!table->dragDropOverwriteMode());
    QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(!table->showGrid());
    QVERIFY(!table->wordWrap());
    QVERIFY(!table->isCornerButtonEnabled());
    QCOMPARE(table->whatsThis(), whatsThis);
    QCOMPARE(table->toolTip(), QString());
    QCOMPARE(table->minimumSize(), className == "QTableWidget" ? QSize(250, 0) : QSize(0, 0));
}

void TestPanel::showAndHide()
{
    PanelFixture fixture;
    fixture.createPanel();
    fixture.takeCalls();
    fixture.panel->show();
    QCOMPARE(fixture.takeCalls(), QStringList({QStringLiteral("startOutput 6di"), QStringLiteral("startOutput 3d")}));
    fixture.panel->hide();
    QCOMPARE(fixture.takeCalls(), QStringList({QStringLiteral("stopOutput 6di"), QStringLiteral("stopOutput 3d")}));
}

void TestPanel::eventsOfTheWindowSystemCount()
{
    PanelFixture fixture;
    fixture.createPanel();
    fixture.panel->show();
    fixture.takeCalls();
    QHideEvent minimized;
    QSpontaneKeyEvent::setSpontaneous(&minimized);
    QCoreApplication::sendEvent(fixture.panel.get(), &minimized);
    QCOMPARE(fixture.takeCalls(), QStringList({QStringLiteral("stopOutput 6di"), QStringLiteral("stopOutput 3d")}));
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored);
    QCoreApplication::sendEvent(fixture.panel.get(), &restored);
    QCOMPARE(fixture.takeCalls(), QStringList({QStringLiteral("startOutput 6di"), QStringLiteral("startOutput 3d")}));
}

void TestPanel::shownPanelOfAnOldBackend()
{
    PanelFixture fixture(1, 11);
    fixture.createPanel();
    fixture.takeCalls();
    fixture.panel->show();
    QCOMPARE(fixture.takeCalls(), QStringList({QStringLiteral("startOutput 6d"), QStringLiteral("startOutput 3d")}));

    // The flag says at each moment which output is meant, whatever was started before.
    fixture.versions.backendMinor = 12;
    const QStringList calls = fixture.reconfigure();
    QVERIFY(calls.indexOf(QStringLiteral("stopOutput 6d")) >= 0);
    QVERIFY(calls.indexOf(QStringLiteral("startOutput 6di")) > calls.indexOf(QStringLiteral("stopOutput 6d")));
    fixture.panel->hide();
    QCOMPARE(fixture.takeCalls(), QStringList({QStringLiteral("stopOutput 6di"), QStringLiteral("stopOutput 3d")}));
}

void TestPanel::lineCounters()
{
    PanelFixture fixture;
    const DataDisplay &panel = fixture.createPanel();
    const auto counters = [&panel] {
        return QList<quint64>{panel.property("storedLines").toULongLong(), panel.property("droppedLines").toULongLong(),
                              panel.property("ignoredLines").toULongLong()};
    };
    QCOMPARE(counters(), QList<quint64>({0, 0, 0}));
    QCOMPARE(fixture.send("6di", "6di 0"), 0);
    QCOMPARE(fixture.send("3d", "3d 1 [5 1.0][1 2 3]"), 0);
    QCOMPARE(counters(), QList<quint64>({2, 0, 0}));
    QCOMPARE(fixture.send("6d", "6d 0"), 0);
    QCOMPARE(fixture.send("fr", "fr 17"), 0);
    QCOMPARE(counters(), QList<quint64>({2, 0, 2}));
    QCOMPARE(fixture.send("6di", "6di 2000000000"), 0);
    QCOMPARE(counters(), QList<quint64>({2, 1, 2}));
    QCOMPARE(fixture.send("6di", "6di"), -1);
    QCOMPARE(counters(), QList<quint64>({2, 1, 2}));
    QCOMPARE(fixture.send("6di", "6di -5"), 0);
    QCOMPARE(counters(), QList<quint64>({3, 1, 2}));
}

void TestPanel::linesOfOtherTypes_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("markers");
    QTest::newRow("3d is read") << QByteArray("3d") << 0 << 2;
    QTest::newRow("an upper case letter is another tag") << QByteArray("3D") << 0 << 1;
    QTest::newRow("a longer tag is another tag") << QByteArray("3dx") << 0 << 1;
    QTest::newRow("a shorter tag is another tag") << QByteArray("3") << 0 << 1;
    QTest::newRow("an empty tag is another tag") << QByteArray("") << 0 << 1;
    QTest::newRow("6d is not read beside 6di") << QByteArray("6d") << 0 << 1;
}

void TestPanel::linesOfOtherTypes()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const int, result);
    QFETCH(const int, markers);
    PanelFixture fixture;
    DataDisplay &panel = fixture.createPanel();
    fixture.send("3d", "3d 1 [5 1.0][1 2 3]");
    QCOMPARE(fixture.send(tag.constData(), "3d 2 [5 1.0][1 2 3] [6 1.0][4 5 6]"), result);
    QCOMPARE(panel.processOutput(nullptr, "3d 0"), 0);
    QCOMPARE(panel.processOutput("3d", nullptr), 0);
    panel.updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), markers);
    QCOMPARE(fixture.send("3d", "3d "), -1);
    panel.updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 0);
}

void TestPanel::firstLineOfAConfigurationRedraws()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.createPanel();
    QSignalSpy firstBodies(fixture.panel.get(), &DataDisplay::shallUpdateView6d);
    const QByteArray line = "6di 1 " + bodyText(0, "2", "1.0", "1 2 3");
    fixture.send("6di", line);
    QCOMPARE(firstBodies.count(), 0);
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00")); // drawn before the old frame is forgotten
    fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "4 5 6"));
    QCOMPARE(firstBodies.count(), 1);
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00")); // queued: drawn by the GUI thread's loop
    QCoreApplication::processEvents();
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("4.00"));
    fixture.send("6di", line);
    QCOMPARE(firstBodies.count(), 1);
}

void TestPanel::shutdownUnregistersThenSaves()
{
    PanelFixture fixture;
    fixture.createPanel();
    fixture.takeCalls();
    fixture.panel->prepareShutdown();
    QCOMPARE(fixture.takeCalls(), QStringList({QStringLiteral("unregisterRequester")}));
    QVERIFY(QFile::remove(fixture.preferencesFile()));

    QVERIFY(QDir().mkdir(fixture.preferencesFile())); // so that saving is heard of
    fixture.createPanel();
    fixture.takeCalls();
    fixture.panel->prepareShutdown();
    QCOMPARE(fixture.takeCalls(),
             QStringList({QStringLiteral("unregisterRequester"),
                          QStringLiteral("log Error: Writing data display preferences. File ")
                              + fixture.preferencesFile() + QStringLiteral(" cannot be opened for writing")}));
}

void TestPanel::destructionSavesNothing()
{
    PanelFixture fixture;
    fixture.createPanel();
    fixture.takeCalls();
    fixture.panel.reset();
    QCOMPARE(fixture.takeCalls(), QStringList());
    QVERIFY(!QFile::exists(fixture.preferencesFile()));
}

void TestPanel::panelThatCannotBeMadeUnregisters()
{
    PanelFixture fixture;
    fixture.host.onCall = [&] {
        if (fixture.host.calls.last().startsWith("requestString"))
            throw std::bad_alloc();
    };
    QVERIFY_EXCEPTION_THROWN(fixture.createPanel(), std::bad_alloc);
    const QStringList calls = fixture.takeCalls();
    QCOMPARE(calls.first(), QStringLiteral("registerRequester"));
    QCOMPARE(calls.last(), QStringLiteral("unregisterRequester"));
}

QTEST_MAIN(TestPanel)
#include "tst_panel.moc"
