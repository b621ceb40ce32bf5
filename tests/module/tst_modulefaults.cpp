// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "module/datadisplaymodule.h"
#include "tests/support/panelfixture.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QPointer>
#include <QScopeGuard>
#include <QTranslator>
#include <QtTest>

#include <functional>
#include <new>
#include <utility>

namespace {

/// Throws at one text of the module, as when memory runs out for it, while it lives.
class ThrowingTranslator : public QTranslator {
public:
    explicit ThrowingTranslator(const QByteArray &refusedText)
        : refused(refusedText)
    {
        QCoreApplication::installTranslator(this);
    }
    ~ThrowingTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (qstrcmp(context, "DataDisplayModule") == 0 && refused == text)
            throw std::bad_alloc();
        return {};
    }

private:
    QByteArray refused;
};

/// A value whose conversion to what a property wants throws.
struct Inconvertible { };

template<typename Wanted> void registerThrowingConversion()
{
    QMetaType::registerConverter<Inconvertible, Wanted>(
        [](const Inconvertible &) -> Wanted { throw std::bad_alloc(); });
}

/// A module in a main window, with the host's objects of a panel fixture.
struct LoadedModule : PanelFixture {
    LoadedModule()
    {
        set("CommandManager", QVariant::fromValue<IOManager *>(&host));
        set("ModuleParent", QVariant::fromValue<QWidget *>(&window));
        set("BackendVersions", QVariant::fromValue(&versions));
    }

    void set(const char *name, const QVariant &value) { module.setModuleProperty(QLatin1String(name), value); }
    int docks() const { return window.findChildren<QDockWidget *>().size(); }
    int panels() const { return window.findChildren<DataDisplay *>().size(); } ///< in a dock or not

    /// The panels that the host still knows.
    int registrations() const
    {
        return host.calls.count("registerRequester") - host.calls.count("unregisterRequester");
    }

    /// Runs \a act inside the host's \a k-th call from now on, 1 being the next.
    void onCall(int k, const std::function<void()> &act)
    {
        host.onCall = [act, left = k]() mutable {
            if (--left == 0)
                act();
        };
    }

    QMainWindow window; // outlives the module's widgets, or takes them along
    DataDisplayModule module;
};

/// The calls that the host gets while a panel is made.
int callsOfCreation()
{
    LoadedModule loaded;
    loaded.module.moduleEntries();
    return loaded.host.calls.size();
}

} // namespace

Q_DECLARE_METATYPE(Inconvertible)

static_assert(noexcept(std::declval<DataDisplayModule &>().aboutToUnload()));
static_assert(noexcept(std::declval<DataDisplayModule &>().releaseWidgets()));
static_assert(noexcept(std::declval<DataDisplayModule &>().moduleName()));
static_assert(noexcept(std::declval<DataDisplayModule &>().moduleVersion()));
static_assert(noexcept(std::declval<DataDisplayModule &>().moduleEntries()));
// Of setModuleProperty, noexcept would speak of its arguments, too, which are copied outside.

/// Failures, hosts that throw, and hosts that run an event loop in a call and come in again from there.
class TestModuleFaults : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void failedEntryLeavesNothing_data();
    void failedEntryLeavesNothing();
    void failedNameIsEmpty();
    void failedPropertyStays_data();
    void failedPropertyStays();
    void hostThatThrowsAtTheCreation();
    void hostThatThrowsAtTheEnd_data();
    void hostThatThrowsAtTheEnd();
    void nestedCallsWhileThePanelIsMade_data();
    void nestedCallsWhileThePanelIsMade();
    void nestedCallsWhileItUnregisters_data();
    void nestedCallsWhileItUnregisters();
};

void TestModuleFaults::initTestCase()
{
    registerThrowingConversion<IOManager *>();
    registerThrowingConversion<QWidget *>();
    registerThrowingConversion<BackendVersions *>();
    registerThrowingConversion<bool>();
}

void TestModuleFaults::failedEntryLeavesNothing_data()
{
    QTest::addColumn<QByteArray>("refused");
    const auto row = [](const char *name, const char *text) { QTest::newRow(name) << QByteArray(text); };
    row("the dock has no title", "Data Display");
    row("the menu has no name", "&View");
    row("the action has no shortcut", "F10");
    row("the action has no text", "&Data");
    row("the action has no help", "Show tracking data of the 6DOF standard bodies and the 3DOF markers");
}

void TestModuleFaults::failedEntryLeavesNothing()
{
    QFETCH(const QByteArray, refused);
    LoadedModule loaded;
    {
        const ThrowingTranslator translator(refused);
        QVERIFY(loaded.module.moduleEntries().isEmpty());
        QVERIFY(loaded.module.moduleEntries().isEmpty());
    }
    QCOMPARE(loaded.panels(), 0);
    QCOMPARE(loaded.docks(), 0);
    QCOMPARE(loaded.registrations(), 0);

    const QList<ModuleEntry *> entries = loaded.module.moduleEntries();
    QCOMPARE(entries.size(), 1);
    QVERIFY(entries.first()->widget && entries.first()->action);
    QCOMPARE(loaded.panels(), 1);
    QCOMPARE(loaded.docks(), 1);
    QCOMPARE(loaded.registrations(), 1);
}

void TestModuleFaults::failedNameIsEmpty()
{
    const DataDisplayModule module;
    {
        const ThrowingTranslator translator("GUI Data Display");
        QCOMPARE(module.moduleName(), QString());
    }
    QCOMPARE(module.moduleName(), QStringLiteral("GUI Data Display"));
}

void TestModuleFaults::failedPropertyStays_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *const name : {"CommandManager", "ModuleParent", "BackendVersions", "ObserverMode"})
        QTest::newRow(name) << QByteArray(name);
}

void TestModuleFaults::failedPropertyStays()
{
    QFETCH(const QByteArray, name);
    LoadedModule loaded;
    loaded.set(name, QVariant::fromValue(Inconvertible()));
    QCOMPARE(loaded.module.moduleEntries().size(), 1);
    QCOMPARE(loaded.docks(), 1); // in the window
    QVERIFY(loaded.host.calls.contains("requestString output available 6di")); // by the versions
}

void TestModuleFaults::hostThatThrowsAtTheCreation()
{
    const int calls = callsOfCreation();
    QVERIFY(calls > 5);
    for (int k = 1; k <= calls; ++k) {
        LoadedModule loaded;
        loaded.onCall(k, [] { throw std::bad_alloc(); });
        QVERIFY(loaded.module.moduleEntries().isEmpty());
        QCOMPARE(loaded.panels(), 0);
        QCOMPARE(loaded.docks(), 0);
        QCOMPARE(loaded.registrations(), k == 1 ? 1 : 0); // where the registration itself fails, there is none to end
        QCOMPARE(loaded.module.moduleEntries().size(), 1);
        QCOMPARE(loaded.panels(), 1);
    }
}

void TestModuleFaults::hostThatThrowsAtTheEnd_data()
{
    QTest::addColumn<bool>("told");
    QTest::newRow("within aboutToUnload") << true;
    QTest::newRow("when the dock is deleted") << false;
}

void TestModuleFaults::hostThatThrowsAtTheEnd()
{
    QFETCH(const bool, told);
    LoadedModule loaded;
    const QPointer<QWidget> dock(loaded.module.moduleEntries().value(0)->widget);
    loaded.takeCalls();
    loaded.onCall(1, [] { throw std::bad_alloc(); });
    if (told)
        loaded.module.aboutToUnload();
    else
        delete dock;
    QCOMPARE(loaded.takeCalls(), QStringList{QStringLiteral("unregisterRequester")});
    loaded.module.releaseWidgets();
    QVERIFY(!dock);
    QCOMPARE(loaded.module.moduleEntries().size(), 1);
}

void TestModuleFaults::nestedCallsWhileThePanelIsMade_data()
{
    QTest::addColumn<QByteArrayList>("nested");
    QTest::addColumn<int>("entries"); // that the outer call returns
    const auto row = [](const char *name, const QByteArrayList &nested, int entries) {
        QTest::newRow(name) << nested << entries;
    };
    row("a second panel is not begun", {"moduleEntries"}, 1);
    row("not at the second try either", {"moduleEntries", "moduleEntries"}, 1);
    row("an unloaded panel is discarded", {"aboutToUnload"}, 0);
    row("a released panel is discarded", {"releaseWidgets"}, 0);
    row("a panel unloaded and released is discarded", {"aboutToUnload", "releaseWidgets"}, 0);
    row("the panel made after a release is the one", {"aboutToUnload", "releaseWidgets", "moduleEntries"}, 1);
    row("a panel made and released inside is gone, too",
        {"releaseWidgets", "moduleEntries", "aboutToUnload", "releaseWidgets"}, 0);
}

void TestModuleFaults::nestedCallsWhileThePanelIsMade()
{
    QFETCH(const QByteArrayList, nested);
    QFETCH(const int, entries);
    const int calls = callsOfCreation();
    for (int k = 1; k <= calls; ++k) {
        LoadedModule loaded;
        QWidget *inner = nullptr; // the dock made inside
        loaded.onCall(k, [&] {
            for (const QByteArray &call : nested) {
                if (call == "aboutToUnload")
                    loaded.module.aboutToUnload();
                else if (call == "releaseWidgets")
                    loaded.module.releaseWidgets();
                else if (ModuleEntry *const entry = loaded.module.moduleEntries().value(0))
                    inner = entry->widget;
            }
        });
        const QList<ModuleEntry *> made = loaded.module.moduleEntries();
        QCOMPARE(made.size(), entries);
        QCOMPARE(loaded.panels(), entries);
        QCOMPARE(loaded.docks(), entries);
        QCOMPARE(loaded.registrations(), entries);
        QCOMPARE(inner != nullptr, nested.contains("releaseWidgets") && nested.contains("moduleEntries"));
        if (inner && entries > 0)
            QCOMPARE(made.first()->widget, inner);
        QCOMPARE(loaded.module.moduleEntries().size(), 1);
        QCOMPARE(loaded.panels(), 1);
    }
}

void TestModuleFaults::nestedCallsWhileItUnregisters_data()
{
    QTest::addColumn<bool>("told"); // by aboutToUnload; else the dock is deleted
    QTest::addColumn<QByteArray>("nested");
    QTest::addColumn<int>("docks");
    QTest::newRow("released within aboutToUnload") << true << QByteArray("releaseWidgets") << 0;
    QTest::newRow("dock deleted within aboutToUnload") << true << QByteArray("dock") << 0;
    QTest::newRow("aboutToUnload within itself") << true << QByteArray("aboutToUnload") << 1;
    QTest::newRow("entries within aboutToUnload") << true << QByteArray("moduleEntries") << 1;
    QTest::newRow("released while the dock is deleted") << false << QByteArray("releaseWidgets") << 0;
    QTest::newRow("aboutToUnload while the dock is deleted") << false << QByteArray("aboutToUnload") << 0;
    QTest::newRow("a new dock while the old one is deleted") << false << QByteArray("moduleEntries") << 1;
}

void TestModuleFaults::nestedCallsWhileItUnregisters()
{
    QFETCH(const bool, told);
    QFETCH(const QByteArray, nested);
    QFETCH(const int, docks);
    LoadedModule loaded;
    const QPointer<QWidget> dock(loaded.module.moduleEntries().value(0)->widget);
    QWidget *asked = nullptr;
    loaded.onCall(1, [&] {
        if (nested == "releaseWidgets")
            loaded.module.releaseWidgets();
        else if (nested == "aboutToUnload")
            loaded.module.aboutToUnload();
        else if (nested == "dock")
            delete dock;
        else if (ModuleEntry *const entry = loaded.module.moduleEntries().value(0))
            asked = entry->widget;
    });
    if (told)
        loaded.module.aboutToUnload();
    else
        delete dock;
    QCOMPARE(loaded.docks(), docks);
    QCOMPARE(loaded.panels(), docks);
    QCOMPARE(loaded.module.moduleEntries().size(), 1);
    if (asked)
        QCOMPARE(loaded.module.moduleEntries().value(0)->widget, asked);
    QCOMPARE(loaded.docks(), 1);
}

QTEST_MAIN(TestModuleFaults)
#include "tst_modulefaults.moc"
