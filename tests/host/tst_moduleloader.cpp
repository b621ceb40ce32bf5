// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/hostiomanager.h"
#include "host/hostlog.h"
#include "host/moduleloader.h"
#include "interface/moduleinterface.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <memory>

using namespace host;

class ModuleLoaderTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void loadsAndUnloadsAModuleInOrder();
    void unloadsWhatIsStillLoaded();
    void sortsTheEntries();
    void loadsAKindOfModuleOnce();
    void loadsNoCodeOfAForeignPlugin();
    void reportsWhatIsNoModule_data();
    void reportsWhatIsNoModule();
    void survivesAModuleThatThrows_data();
    void survivesAModuleThatThrows();
    void looksInTheGivenFolderFirst();

private:
    static QString folderOf(const char *module);
    static QStringList calls();
    QStringList logged();

    std::unique_ptr<HostLog> log;
    std::unique_ptr<HostIOManager> manager;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<ModuleLoader> loader;
    BackendVersions versions;
    HostObjects objects;
    QStringList texts;
};

void ModuleLoaderTest::init()
{
    qApp->setProperty("moduleCalls", {});
    texts.clear();
    log = std::make_unique<HostLog>();
    connect(log.get(), &HostLog::entryAdded, this, [this](const LogEntry &entry) { texts << entry.text; });
    manager = std::make_unique<HostIOManager>(*log);
    window = std::make_unique<QWidget>();
    versions.backendMajor = 3;
    objects = {manager.get(), window.get(), &versions, true};
    loader = std::make_unique<ModuleLoader>(*log);
}

void ModuleLoaderTest::cleanup()
{
    loader.reset();
    window.reset();
    manager.reset();
    log.reset();
}

QString ModuleLoaderTest::folderOf(const char *module)
{
    return QStringLiteral(TEST_MODULES "/") + QLatin1String(module);
}

QStringList ModuleLoaderTest::calls()
{
    return qApp->property("moduleCalls").toStringList();
}

QStringList ModuleLoaderTest::logged()
{
    QCoreApplication::processEvents();
    return texts;
}

void ModuleLoaderTest::loadsAndUnloadsAModuleInOrder()
{
    loader->load({folderOf("testmodule")}, objects);
    QCOMPARE(loader->count(), 1);
    QStringList expected{QStringLiteral("created"),
                         QStringLiteral("CommandManager: a command channel"),
                         QStringLiteral("ModuleParent: a widget"),
                         QStringLiteral("BackendVersions: backend 3"),
                         QStringLiteral("ObserverMode: true"),
                         QStringLiteral("moduleEntries")};
    QCOMPARE(calls(), expected);
    loader->aboutToUnload();
    loader->aboutToUnload();
    QCOMPARE(calls(), expected << QStringLiteral("aboutToUnload"));
    loader->unload();
    QCOMPARE(calls(), expected << QStringLiteral("releaseWidgets") << QStringLiteral("destroyed"));
    QCOMPARE(loader->count(), 0);
    QVERIFY(loader->entries().isEmpty());
    QVERIFY(manager->subscriptions().all().empty());
    QVERIFY(window->children().isEmpty());
    QCOMPARE(logged().size(), 1);
    QVERIFY2(texts.constFirst().startsWith(QStringLiteral("Loaded Test Module v0.1.0 ")),
             qPrintable(texts.constFirst()));
}

void ModuleLoaderTest::unloadsWhatIsStillLoaded()
{
    loader->load({folderOf("testmodule")}, objects);
    loader.reset();
    QCOMPARE(
        calls().mid(calls().size() - 3),
        (QStringList{QStringLiteral("aboutToUnload"), QStringLiteral("releaseWidgets"), QStringLiteral("destroyed")}));
}

void ModuleLoaderTest::sortsTheEntries()
{
    loader->load({folderOf("testmodule")}, objects);
    QStringList order;
    const QList<ModuleEntry *> entries = loader->entries();
    for (const ModuleEntry *entry : entries)
        order << entry->action->text();
    QCOMPARE(order, (QStringList{QStringLiteral("First"), QStringLiteral("Second"), QStringLiteral("Late")}));
}

void ModuleLoaderTest::loadsAKindOfModuleOnce()
{
    QTemporaryDir other;
    const QString copy = other.filePath(QStringLiteral("libcopy.so"));
    QVERIFY(QFile::copy(folderOf("testmodule") + QStringLiteral("/libtestmodule.so"), copy));
    loader->load({folderOf("testmodule"), other.path(), folderOf("testmodule")}, objects);
    QCOMPARE(loader->count(), 1);
    QCOMPARE(calls().count(QStringLiteral("created")), 1);
    QVERIFY(!logged().filter(copy).isEmpty());
}

void ModuleLoaderTest::loadsNoCodeOfAForeignPlugin()
{
    loader->load({folderOf("foreignplugin")}, objects);
    QCOMPARE(loader->count(), 0);
    QVERIFY(!qEnvironmentVariableIsSet("FOREIGN_MODULE_LOADED"));
    QCOMPARE(logged().filter(QStringLiteral("org.example.Vornak2.Foreign")).size(), 1);
    // The mark is one that loading really leaves.
    QPluginLoader direct(folderOf("foreignplugin") + QStringLiteral("/libforeignplugin.so"));
    QVERIFY(direct.load());
    QVERIFY(qEnvironmentVariableIsSet("FOREIGN_MODULE_LOADED"));
    qunsetenv("FOREIGN_MODULE_LOADED");
}

void ModuleLoaderTest::reportsWhatIsNoModule_data()
{
    QTest::addColumn<QString>("source"); // copied to libbad.so; empty: a text
    QTest::addColumn<QString>("reported");
    QTest::newRow("a text is no plug-in") << QString() << QStringLiteral("libbad.so is not a module");
    QTest::newRow("half a library is no plug-in")
        << folderOf("testmodule") + QStringLiteral("/libtestmodule.so") << QStringLiteral("libbad.so");
    QTest::newRow("a plug-in without the interface is not used")
        << folderOf("hollowmodule") + QStringLiteral("/libhollowmodule.so")
        << QStringLiteral("libbad.so is not used: it does not have the interface");
}

void ModuleLoaderTest::reportsWhatIsNoModule()
{
    QFETCH(QString, source);
    QFETCH(QString, reported);
    QByteArray content("This is a text.\n");
    if (!source.isEmpty()) {
        QFile library(source);
        QVERIFY(library.open(QIODevice::ReadOnly));
        content = library.readAll();
        if (source.contains(QStringLiteral("testmodule")))
            content.truncate(content.size() / 2);
    }
    QTemporaryDir folder;
    QFile bad(folder.filePath(QStringLiteral("libbad.so")));
    QVERIFY(bad.open(QIODevice::WriteOnly));
    QCOMPARE(bad.write(content), content.size());
    bad.close();
    QFile note(folder.filePath(QStringLiteral("README.txt"))); // passed over without a word
    QVERIFY(note.open(QIODevice::WriteOnly));

    loader->load({folder.path(), folderOf("testmodule")}, objects);
    QCOMPARE(loader->count(), 1); // the good one
    QVERIFY2(!logged().filter(reported).isEmpty(), qPrintable(texts.join(QLatin1Char('\n'))));
    QVERIFY(texts.filter(QStringLiteral("README")).isEmpty());
}

void ModuleLoaderTest::survivesAModuleThatThrows_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<bool>("isUsed"); // what fails comes later
    const auto row = [](const char *function, bool isUsed) {
        QTest::newRow(function) << QString::fromLatin1(function) << isUsed;
    };
    row("a number", false);
    row("constructor", false);
    row("setModuleProperty", false);
    row("moduleEntries", false);
    row("moduleName", false);
    row("moduleVersion", false);
    row("aboutToUnload", true);
    row("releaseWidgets", true);
}

void ModuleLoaderTest::survivesAModuleThatThrows()
{
    QFETCH(QString, function);
    QFETCH(bool, isUsed);
    qApp->setProperty("throwing", function);
    loader->load({folderOf("throwingmodule"), folderOf("testmodule")}, objects);
    QCOMPARE(logged().filter(QStringLiteral("Loaded moduleName ")).size(), isUsed ? 1 : 0);
    QCOMPARE(texts.filter(QStringLiteral("Loaded Test Module ")).size(), 1);
    QCOMPARE(loader->entries().size(), 3); // the good one's
    loader->aboutToUnload();
    loader->unload();
    qApp->setProperty("throwing", {});
    QCOMPARE(calls().constLast(), QStringLiteral("destroyed")); // the good one is
    const QString reason =
        function == QLatin1String("a number") ? QString() : QStringLiteral(": thrown in ") + function;
    const QString reported = QStringLiteral("libthrowingmodule.so failed") + reason + QLatin1Char('.');
    QVERIFY2(!logged().filter(reported).isEmpty(), qPrintable(texts.join(QLatin1Char('\n'))));
}

void ModuleLoaderTest::looksInTheGivenFolderFirst()
{
    const QStringList folders = ModuleLoader::folders(QStringLiteral("/given"));
    QCOMPARE(folders.size(), 3);
    QCOMPARE(folders.at(0), QStringLiteral("/given"));
    QCOMPARE(QDir::cleanPath(folders.at(1)),
             QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../modules")));
    QVERIFY(folders.at(2).endsWith(QStringLiteral("/vornak/modules")));
    QCOMPARE(ModuleLoader::folders(QString()), folders.mid(1));
    loader->load({QStringLiteral("/nonexistent/folder")}, objects);
    QVERIFY(logged().constFirst().contains(QStringLiteral("/nonexistent/folder")));
}

QTEST_MAIN(ModuleLoaderTest)
#include "tst_moduleloader.moc"
