// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "module/datadisplaymodule.h"
#include "tests/support/panelfixture.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QPointer>
#include <QtTest>

namespace {

QString fileOfPreferences(const PanelFixture &fixture)
{
    return fixture.preferencesFile();
}

/// A module in a main window, with the host's objects of a panel fixture.
struct LoadedModule : PanelFixture {
    LoadedModule()
    {
        module.setModuleProperty(QStringLiteral("CommandManager"), QVariant::fromValue<IOManager *>(&host));
        module.setModuleProperty(QStringLiteral("ModuleParent"), QVariant::fromValue<QWidget *>(&window));
        module.setModuleProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(&versions));
        module.setModuleProperty(QStringLiteral("ObserverMode"), true);
    }

    QMainWindow window; // outlives the module's widgets, or takes them along
    DataDisplayModule module;
};

} // namespace

class TestModule : public QObject {
    Q_OBJECT

private slots:
    void metaObject();
    void namesAndVersion();
    void entry();
    void panelInTheDock();
    void secondCallReturnsTheSameEntry();
    void releasedWidgetsAreMadeAnew();
    void unloadingUnregistersThenSaves();
    void unloadingFindsThePanelAnywhereInTheDock();
    void unloadingWithoutDock();
    void unloadingWithoutPanel();
    void releaseWithoutEntries();
    void destructionLeavesTheWidgets();
    void parents_data();
    void parents();
    void propertiesOfOtherTypes_data();
    void propertiesOfOtherTypes();
    void unknownPropertiesAreIgnored_data();
    void unknownPropertiesAreIgnored();
};

void TestModule::metaObject()
{
    DataDisplayModule module;
    const QMetaObject &type = DataDisplayModule::staticMetaObject;
    QCOMPARE(type.className(), "DataDisplayModule");
    QCOMPARE(type.superClass()->className(), "QObject");
    QCOMPARE(type.methodCount(), type.methodOffset());
    QCOMPARE(type.propertyCount(), type.propertyOffset());
    QVERIFY(!module.parent());

    QObject *const object = &module;
    auto *const asInterface = static_cast<ModuleInterface *>(&module);
    QCOMPARE(object->qt_metacast("DataDisplayModule"), static_cast<void *>(&module));
    QCOMPARE(object->qt_metacast("ModuleInterface"), static_cast<void *>(asInterface));
    QCOMPARE(object->qt_metacast("com.zel.vornak2.gui.Module/0.2.0"), static_cast<void *>(asInterface));
    QCOMPARE(object->qt_metacast("QObject"), static_cast<void *>(object));
    QCOMPARE(object->qt_metacast("Requester"), static_cast<void *>(nullptr));
    QCOMPARE(qobject_cast<ModuleInterface *>(object), asInterface);
}

void TestModule::namesAndVersion()
{
    const DataDisplayModule module;
    QCOMPARE(module.moduleName(), QStringLiteral("GUI Data Display"));
    QCOMPARE(module.moduleVersion(), QStringLiteral("v2.2.6"));
    QCOMPARE(module.moduleVersion(), QStringLiteral(PROJECT_VERSION_TEXT)); // what the package says of itself
}

void TestModule::entry()
{
    LoadedModule loaded;
    const QList<ModuleEntry *> entries = loaded.module.moduleEntries();
    QCOMPARE(entries.size(), 1);
    const ModuleEntry &entry = *entries.first();
    QCOMPARE(entry.primaryOrder, 240);
    QCOMPARE(entry.secondaryOrder, 400);
    QCOMPARE(entry.dockArea, 1);
    QCOMPARE(entry.menuName, QStringLiteral("&View"));
    const auto *dock = qobject_cast<QDockWidget *>(entry.widget);
    QVERIFY(dock);
    QCOMPARE(dock->windowTitle(), QStringLiteral("Data Display"));
    QCOMPARE(dock->parentWidget(), &loaded.window);
    QCOMPARE(entry.action, dock->toggleViewAction());
    QCOMPARE(entry.action->text(), QStringLiteral("&Data"));
    QCOMPARE(entry.action->shortcut(), QKeySequence(QStringLiteral("F10")));
    const QString help = QStringLiteral("Show tracking data of the 6DOF standard bodies and the 3DOF markers");
    QCOMPARE(entry.action->statusTip(), help);
    QCOMPARE(entry.action->whatsThis(), help);
}

void TestModule::panelInTheDock()
{
    LoadedModule loaded;
    QCOMPARE(loaded.takeCalls(), QStringList()); // nothing is done before the entries are asked for
    auto *dock = qobject_cast<QDockWidget *>(loaded.module.moduleEntries().first()->widget);
    QVERIFY(qobject_cast<DataDisplay *>(dock->widget()));
    const QStringList calls = loaded.takeCalls();
    QCOMPARE(calls.first(), QStringLiteral("registerRequester"));
    QVERIFY(calls.contains(QStringLiteral("requestString output available 6di"))); // by the host's versions
}

void TestModule::secondCallReturnsTheSameEntry()
{
    LoadedModule loaded;
    const QList<ModuleEntry *> first = loaded.module.moduleEntries();
    QWidget *const dock = first.first()->widget;
    loaded.takeCalls();
    QCOMPARE(loaded.module.moduleEntries(), first);
    QCOMPARE(first.first()->widget, dock);
    QCOMPARE(loaded.takeCalls(), QStringList());
    QCOMPARE(loaded.window.findChildren<DataDisplay *>().size(), 1);
}

void TestModule::releasedWidgetsAreMadeAnew()
{
    LoadedModule loaded;
    ModuleEntry *const entry = loaded.module.moduleEntries().first();
    const QPointer<QWidget> dock(entry->widget);
    const QPointer<DataDisplay> panel(dock->findChild<DataDisplay *>());
    loaded.module.aboutToUnload();
    loaded.module.releaseWidgets();
    QVERIFY(!dock);
    QVERIFY(!panel);
    QVERIFY(!entry->widget);
    loaded.module.releaseWidgets();

    loaded.takeCalls();
    const QList<ModuleEntry *> again = loaded.module.moduleEntries();
    QCOMPARE(again.size(), 1);
    QVERIFY(again.first()->widget->findChild<DataDisplay *>());
    QCOMPARE(loaded.takeCalls().first(), QStringLiteral("registerRequester"));
}

void TestModule::unloadingUnregistersThenSaves()
{
    LoadedModule loaded;
    loaded.module.moduleEntries();
    loaded.takeCalls();
    loaded.module.aboutToUnload();
    QCOMPARE(loaded.takeCalls(), QStringList{QStringLiteral("unregisterRequester")});
    QVERIFY2(QFile::exists(fileOfPreferences(loaded)), "the folder is named after the module's version");
    loaded.module.releaseWidgets();
    QCOMPARE(loaded.takeCalls(), QStringList());
}

void TestModule::unloadingFindsThePanelAnywhereInTheDock()
{
    LoadedModule loaded;
    auto *dock = qobject_cast<QDockWidget *>(loaded.module.moduleEntries().first()->widget);
    QWidget *const panel = dock->widget();
    auto *frame = new QWidget; // as of a host that puts something around the panel
    dock->setWidget(frame);
    panel->setParent(frame);
    panel->setObjectName(QStringLiteral("renamed"));
    loaded.takeCalls();
    loaded.module.aboutToUnload();
    QCOMPARE(loaded.takeCalls(), QStringList{QStringLiteral("unregisterRequester")});
    QVERIFY(QFile::exists(fileOfPreferences(loaded)));
}

void TestModule::unloadingWithoutDock()
{
    LoadedModule loaded;
    loaded.module.aboutToUnload();
    QCOMPARE(loaded.takeCalls(), QStringList());
    loaded.module.moduleEntries();
    loaded.module.releaseWidgets();
    loaded.takeCalls();
    loaded.module.aboutToUnload();
    QCOMPARE(loaded.takeCalls(), QStringList());
    QVERIFY(!QFile::exists(fileOfPreferences(loaded)));
}

void TestModule::unloadingWithoutPanel()
{
    LoadedModule loaded;
    auto *dock = qobject_cast<QDockWidget *>(loaded.module.moduleEntries().first()->widget);
    delete dock->widget();
    loaded.takeCalls();
    loaded.module.aboutToUnload();
    QCOMPARE(loaded.takeCalls(), QStringList());
    QVERIFY(!QFile::exists(fileOfPreferences(loaded)));
}

void TestModule::releaseWithoutEntries()
{
    DataDisplayModule module;
    module.releaseWidgets();
    module.aboutToUnload();
    QCOMPARE(module.moduleName(), QStringLiteral("GUI Data Display"));
}

void TestModule::destructionLeavesTheWidgets()
{
    PanelFixture fixture;
    QMainWindow window;
    auto module = std::make_unique<DataDisplayModule>();
    module->setModuleProperty(QStringLiteral("CommandManager"), QVariant::fromValue<IOManager *>(&fixture.host));
    module->setModuleProperty(QStringLiteral("ModuleParent"), QVariant::fromValue<QWidget *>(&window));
    module->setModuleProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(&fixture.versions));
    const QPointer<QWidget> dock(module->moduleEntries().first()->widget);
    module.reset();
    QVERIFY(dock);
}

void TestModule::parents_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("kept");
    QTest::newRow("a widget") << "QWidget" << true;
    QTest::newRow("a main window as its own class") << "QMainWindow" << true;
    QTest::newRow("a widget as a plain object") << "QObject" << true;
    QTest::newRow("an object that is no widget") << "object" << false;
    QTest::newRow("a null widget") << "null" << false;
    QTest::newRow("a text") << "text" << false;
    QTest::newRow("a number") << "number" << false;
    QTest::newRow("nothing") << "invalid" << false;
    QTest::newRow("another pointer") << "pointer" << false;
}

void TestModule::parents()
{
    QFETCH(const QString, kind);
    QFETCH(const bool, kept);
    LoadedModule loaded; // with a parent already, which the wrong types must forget
    QObject plain;
    const QMap<QString, QVariant> values{
        {QStringLiteral("QWidget"), QVariant::fromValue<QWidget *>(&loaded.window)},
        {QStringLiteral("QMainWindow"), QVariant::fromValue<QMainWindow *>(&loaded.window)},
        {QStringLiteral("QObject"), QVariant::fromValue<QObject *>(&loaded.window)},
        {QStringLiteral("object"), QVariant::fromValue<QObject *>(&plain)},
        {QStringLiteral("null"), QVariant::fromValue<QWidget *>(nullptr)},
        {QStringLiteral("text"), QStringLiteral("window")},
        {QStringLiteral("number"), 17},
        {QStringLiteral("invalid"), QVariant()},
        {QStringLiteral("pointer"), QVariant::fromValue(&loaded.versions)}};
    loaded.module.setModuleProperty(QStringLiteral("ModuleParent"), values.value(kind));
    QWidget *const dock = loaded.module.moduleEntries().first()->widget;
    QCOMPARE(dock->parentWidget(), kept ? &loaded.window : nullptr);
    loaded.module.aboutToUnload();
    loaded.module.releaseWidgets();
}

void TestModule::propertiesOfOtherTypes_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a command manager of another type, then the right one") << "CommandManager";
    QTest::newRow("versions of another type, then the right ones") << "BackendVersions";
}

void TestModule::propertiesOfOtherTypes()
{
    QFETCH(const QString, name);
    LoadedModule loaded;
    for (const QVariant &value : {QVariant(), QVariant(1), QVariant(QStringLiteral("x")),
                                  QVariant::fromValue<QWidget *>(&loaded.window), QVariant(QByteArray("y"))})
        loaded.module.setModuleProperty(name, value);
    loaded.module.setModuleProperty(QStringLiteral("ObserverMode"), QStringLiteral("no bool"));
    loaded.module.setModuleProperty(QStringLiteral("ObserverMode"), QVariant());
    loaded.module.setModuleProperty(name,
                                    name == QLatin1String("CommandManager")
                                        ? QVariant::fromValue<IOManager *>(&loaded.host)
                                        : QVariant::fromValue(&loaded.versions));
    QCOMPARE(loaded.module.moduleEntries().size(), 1);
    QCOMPARE(loaded.takeCalls().first(), QStringLiteral("registerRequester"));
}

void TestModule::unknownPropertiesAreIgnored_data()
{
    QTest::addColumn<QString>("name");
    for (const char *const name : {"moduleParent", "MODULEPARENT", "ModuleParent ", "", "CommandManager\n", "Parent"})
        QTest::newRow(qPrintable(QStringLiteral("\"%1\"").arg(QLatin1String(name)).simplified())) << name;
}

void TestModule::unknownPropertiesAreIgnored()
{
    QFETCH(const QString, name);
    LoadedModule loaded;
    QWidget other;
    loaded.module.setModuleProperty(name, QVariant::fromValue<QWidget *>(&other));
    loaded.module.setModuleProperty(name, QVariant());
    QCOMPARE(loaded.module.moduleEntries().first()->widget->parentWidget(), &loaded.window);
    QCOMPARE(loaded.takeCalls().first(), QStringLiteral("registerRequester"));
}

QTEST_MAIN(TestModule)
#include "tst_module.moc"
