// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"

#include <QAction>
#include <QKeySequence>
#include <QMetaObject>
#include <QTemporaryDir>
#include <QTest>

#include <dlfcn.h>

namespace {

/// What the entry point returns, found by its name alone. The library must be loaded, and stays as it is.
QObject *instanceOfEntryPoint()
{
    void *const library = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD);
    if (!library)
        return nullptr;
    const auto instance = reinterpret_cast<QObject *(*)()>(dlsym(library, "qt_plugin_instance"));
    QObject *const object = instance ? instance() : nullptr;
    dlclose(library);
    return object;
}

} // namespace

class TestContractLifecycle : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void objectIsThatOfTheEntryPoint();
    void objectCastsByName();
    void classHasNothingOfItsOwn();
    void moduleTellsNameAndVersion();
    void entryIsFilled();
    void secondCallGivesTheSameEntry();
    void panelIsBuiltUnderTheParent();
    void parentThatIsNoWidgetIsNone();
    void propertiesArriveInAnyForm();
    void panelAsksWhileItIsBuilt_data();
    void panelAsksWhileItIsBuilt();
    void panelLogsWhatFailsWhileItIsBuilt_data();
    void panelLogsWhatFailsWhileItIsBuilt();
    void nothingHappensWithoutAPanel();
    void unloadingUnregistersAndReleasesTheDock();
    void releasedModuleBuildsAnew();
    void visiblePanelIsReleased();
    void deletedModuleIsReplaced();
    void libraryLoadsAgain();

private:
    QTemporaryDir home;
};

void TestContractLifecycle::initTestCase()
{
    QVERIFY(home.isValid());
}

void TestContractLifecycle::init()
{
    qputenv("HOME", home.path().toLocal8Bit());
}

void TestContractLifecycle::objectIsThatOfTheEntryPoint()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    QCOMPARE(session.loader.instance(), session.object.data());
    QCOMPARE(instanceOfEntryPoint(), session.object.data());
    QCOMPARE(instanceOfEntryPoint(), session.object.data());
    QVERIFY(!session.object->parent());
}

void TestContractLifecycle::objectCastsByName()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    QObject *const object = session.object;
    QCOMPARE(object->qt_metacast("DataDisplayModule"), static_cast<void *>(object));
    QCOMPARE(object->qt_metacast("QObject"), static_cast<void *>(object));
    QCOMPARE(object->qt_metacast("ModuleInterface"), session.module);
    // The interface is the second base, so it begins where the first one ends.
    QCOMPARE(session.module, static_cast<void *>(reinterpret_cast<char *>(object) + sizeof(QObject)));
    QVERIFY(!object->qt_metacast("com.zel.vornak2.gui.Module/0.2.1"));
    QVERIFY(!object->qt_metacast("moduleinterface"));
}

void TestContractLifecycle::classHasNothingOfItsOwn()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    const QMetaObject *const meta = session.object->metaObject();
    QCOMPARE(meta->className(), "DataDisplayModule");
    QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
}

void TestContractLifecycle::moduleTellsNameAndVersion()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    QCOMPARE(callEntry<QString>(session.module, ModuleName), QStringLiteral("GUI Data Display"));
    QCOMPARE(callEntry<QString>(session.module, ModuleVersion), QStringLiteral("v2.2.6"));
}

void TestContractLifecycle::entryIsFilled()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    QCOMPARE(session.entry.primaryOrder, 240);
    QCOMPARE(session.entry.menuName, QStringLiteral("&View"));
    QCOMPARE(session.entry.secondaryOrder, 400);
    QCOMPARE(session.entry.dockArea, 1);
    QCOMPARE(session.dock->windowTitle(), QStringLiteral("Data Display"));

    const QAction *const action = session.entry.action;
    QCOMPARE(action, session.dock->toggleViewAction());
    QCOMPARE(action->text(), QStringLiteral("&Data"));
    QCOMPARE(action->shortcut(), QKeySequence(Qt::Key_F10));
    const QString explanation = QStringLiteral("Show tracking data of the 6DOF standard bodies and the 3DOF markers");
    QCOMPARE(action->statusTip(), explanation);
    QCOMPARE(action->whatsThis(), explanation);
}

void TestContractLifecycle::secondCallGivesTheSameEntry()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    session.setProperties();
    const QList<void *> first = session.moduleEntries();
    QCOMPARE(first.size(), 1);
    QVERIFY(!session.host.takeCalls().isEmpty());
    QCOMPARE(session.moduleEntries(), first);
    QCOMPARE(session.host.takeCalls(), QByteArrayList());
    QCOMPARE(session.window.findChildren<QDockWidget *>().size(), 1);
}

void TestContractLifecycle::panelIsBuiltUnderTheParent()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    session.setProperties();
    const QList<void *> entries = session.moduleEntries();
    const MenuEntry entry = MenuEntry::readFrom(entries.first());
    QCOMPARE(entry.widget->parentWidget(), static_cast<QWidget *>(&session.window));
    QVERIFY(session.takeEntries());
    const QWidget *const panel = session.dock->widget();
    QVERIFY(panel->inherits("DataDisplay"));
    QCOMPARE(panel->objectName(), QStringLiteral("DataDisplayWidget"));
    QVERIFY(session.table6d());
    QVERIFY(session.table3d());
    QCOMPARE(session.table6d()->columnCount(), 13);
    QCOMPARE(session.table6d()->rowCount(), 0);
    QCOMPARE(session.table3d()->columnCount(), 4);
    QCOMPARE(session.table3d()->rowCount(), 0);
    QVERIFY(!panel->isVisible());
}

void TestContractLifecycle::parentThatIsNoWidgetIsNone()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    session.setProperties();
    session.setProperty("ModuleParent", QVariant::fromValue(static_cast<QObject *>(session.object)));
    const MenuEntry entry = MenuEntry::readFrom(session.moduleEntries().value(0));
    QVERIFY(qobject_cast<QDockWidget *>(entry.widget));
    QVERIFY(!entry.widget->parentWidget());
}

void TestContractLifecycle::propertiesArriveInAnyForm()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    session.setProperty("CommandManager", QStringLiteral("no channel"));
    session.setProperty("BackendVersions", 42);
    session.setProperty("ModuleParent", QStringLiteral("no window"));
    session.setProperty("ObserverMode", QStringLiteral("true"));
    session.setProperty("ObserverMode", QVariant());
    session.setProperty("ModuleParent", QVariant::fromValue(static_cast<QObject *>(&session.window)));
    session.setProperty("BackendVersions", backendVersionsProperty(&session.versions));
    session.setProperty("CommandManager", commandManagerProperty(&session.host));
    // Names that are nearly right are other names, and change nothing.
    session.setProperty("commandManager", QVariant());
    session.setProperty("CommandManager ", QVariant());
    session.setProperty("MODULEPARENT", QVariant());
    session.setProperty("BackendVersion", QVariant());
    session.setProperty("", QVariant());
    QVERIFY(session.takeEntries());
    QCOMPARE(session.dock->parentWidget(), static_cast<QWidget *>(&session.window));
    QCOMPARE(session.host.takeCalls().value(0), QByteArrayLiteral("registerRequester"));
}

void TestContractLifecycle::panelAsksWhileItIsBuilt_data()
{
    QTest::addColumn<Version>("version");
    QTest::addColumn<QByteArray>("changes");
    QTest::addColumn<QByteArrayList>("calls");

    const QByteArrayList marker = linesOf(R"(
        requestString: output available 3d
        requestString: output active chmon 3d
    )");
    const QByteArrayList plain = linesOf(R"(
        registerRequester
        stopOutput: 6d
        requestString: output available 6d
        requestString: output active chmon 6d
    )") + marker;
    const QByteArrayList fixedAngles = linesOf(R"(
        registerRequester
        requestBool: standard fixed_angle_present
        stopOutput: 6d
        requestString: output available 6d
        requestString: output active chmon 6d
    )") + marker;
    const QByteArrayList inertial = linesOf(R"(
        registerRequester
        requestBool: standard fixed_angle_present
        stopOutput: 6d
        requestString: output available 6di
        requestString: output active chmon 6di
    )") + marker;
    const QByteArrayList silent = linesOf(R"(
        registerRequester
        requestBool: standard fixed_angle_present
        stopOutput: 6d
        requestString: output available 6di
        requestString: output active chmon 6di
        sendCommand: output active chmon 6di yes
        requestString: output available 3d
        requestString: output active chmon 3d
        sendCommand: output active chmon 3d yes
    )");

    QTest::newRow("1.11 has the plain format") << Version{1, 11, 99} << QByteArray() << plain;
    QTest::newRow("1.12 has the inertial format") << Version{1, 12, 0} << QByteArray() << inertial;
    QTest::newRow("1.12 with an unspecified patch level passes") << Version{1, 12, -1} << QByteArray() << inertial;
    QTest::newRow("1.12 with a patch level of -2 is older") << Version{1, 12, -2} << QByteArray() << plain;
    QTest::newRow("2.0 has the inertial format") << Version{2, 0, 0} << QByteArray() << inertial;
    QTest::newRow("0.20 has the plain format") << Version{0, 20, 0} << QByteArray() << plain;
    QTest::newRow("fixed angles keep to the plain format")
        << Version{2, 0, 0} << QByteArray("standard fixed_angle_present=yes") << fixedAngles;
    QTest::newRow("outputs that are off are switched on")
        << Version{2, 0, 0} << QByteArray("output active chmon 6di=no\noutput active chmon 3d=no") << silent;
    QTest::newRow("only no is no") << Version{2, 0, 0}
                                   << QByteArray("output active chmon 6di=No\noutput active chmon 3d=") << inertial;
}

void TestContractLifecycle::panelAsksWhileItIsBuilt()
{
    QFETCH(const Version, version);
    QFETCH(const QByteArray, changes);
    QFETCH(const QByteArrayList, calls);
    GuestSession session(version);
    session.host.changeScript(changes);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    QCOMPARE(session.host.takeCalls(), calls);
    QCOMPARE(session.host.violations, QByteArrayList());
    QCOMPARE(session.table6d()->isColumnHidden(2), version < (Version{1, 12, -1}));
}

void TestContractLifecycle::panelLogsWhatFailsWhileItIsBuilt_data()
{
    QTest::addColumn<QByteArray>("changes");
    QTest::addColumn<QByteArrayList>("log");
    const auto row = [](const char *name, const char *changes, const char *log) {
        QTest::newRow(name) << QByteArray(changes) << linesOf(log);
    };
    row("a working backend leaves no line", "", "");
    row("a failed fixed-angle query", "standard fixed_angle_present!",
        "standard VORNAK4 1 Error: Unable to get fixed angle present");
    row("a failed question for an output", "output available 6di!",
        "standard VORNAK4 1 Error: Unable to get info output 6di available");
    row("an output that is not offered", "output available 3d=no",
        "standard VORNAK4 1 Error: Output format 3d is not available and cannot be activated");
    row("a failed question for an output's state", "output active chmon 3d!",
        "standard VORNAK4 1 Error: Unable to get info output 3d active");
    row("an output that cannot be switched on", "output active chmon 6di=no\noutput active chmon 6di yes~",
        "standard VORNAK4 1 Error: Unable to activate output 6di");
}

void TestContractLifecycle::panelLogsWhatFailsWhileItIsBuilt()
{
    QFETCH(const QByteArray, changes);
    QFETCH(const QByteArrayList, log);
    for (const int failure : {-1, 1, 256}) {
        GuestSession session;
        session.host.failure = failure;
        session.host.changeScript(changes);
        QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
        QCOMPARE(session.host.takeLog(), log);
        QCOMPARE(session.host.violations, QByteArrayList());
    }
}

void TestContractLifecycle::nothingHappensWithoutAPanel()
{
    GuestSession session;
    QVERIFY2(session.load(), qPrintable(session.loader.errorString()));
    session.setProperties();
    session.release();
    QCOMPARE(session.host.takeCalls(), QByteArrayList());
    QVERIFY(session.takeEntries());
}

void TestContractLifecycle::unloadingUnregistersAndReleasesTheDock()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    const QPointer<QAction> action = session.entry.action;
    callEntry<void>(session.module, AboutToUnload);
    QCOMPARE(session.host.takeCalls(), QByteArrayList{"unregisterRequester"});
    QVERIFY(!session.host.isRequesterRegistered);
    QVERIFY(session.dock);
    callEntry<void>(session.module, ReleaseWidgets);
    QVERIFY(!session.dock);
    QVERIFY(!action);
    session.release();
    QCOMPARE(session.host.takeCalls(), QByteArrayList());
    QCOMPARE(session.host.violations, QByteArrayList());
}

void TestContractLifecycle::releasedModuleBuildsAnew()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    const QByteArrayList birth = session.host.takeCalls();
    session.release();
    session.host.takeCalls();
    QVERIFY(session.takeEntries());
    QCOMPARE(session.host.takeCalls(), birth);
    QCOMPARE(session.dock->windowTitle(), QStringLiteral("Data Display"));
    QVERIFY(session.host.isRequesterRegistered);
    QCOMPARE(session.host.violations, QByteArrayList());
}

void TestContractLifecycle::visiblePanelIsReleased()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.configurationChanged();
    QVERIFY(session.dock->widget()->isVisible());
    session.host.takeCalls();
    callEntry<void>(session.module, AboutToUnload);
    QCOMPARE(session.host.takeCalls(), QByteArrayList{"unregisterRequester"});
    callEntry<void>(session.module, ReleaseWidgets);
    QVERIFY(!session.dock);
    QVERIFY(session.window.isVisible());
}

void TestContractLifecycle::deletedModuleIsReplaced()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.release();
    callEntry<void>(session.module, DeletingDestructor);
    QVERIFY(!session.object);

    const QPointer<QObject> second = instanceOfEntryPoint();
    QVERIFY(second);
    QCOMPARE(instanceOfEntryPoint(), second.data());
    QCOMPARE(session.loader.instance(), second.data());
    QVERIFY(session.start());
    QCOMPARE(session.object.data(), second.data());
    QCOMPARE(session.table6d()->columnCount(), 13);
}

void TestContractLifecycle::libraryLoadsAgain()
{
    for (int round = 0; round < 3; ++round) {
        GuestSession session;
        QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
        session.configurationChanged();
        QCOMPARE(session.table6d()->rowCount(), 2);
        session.release();
        QVERIFY(session.loader.unload());
        QVERIFY(!session.object);
        QVERIFY(!session.loader.isLoaded());
    }
}

QTEST_MAIN(TestContractLifecycle)
#include "tst_contract_lifecycle.moc"
