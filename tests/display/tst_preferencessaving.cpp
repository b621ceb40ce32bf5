// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/panelfixture.h"

#include <QDir>
#include <QScopeGuard>
#include <QtTest>

#include <sys/resource.h>

#include <csignal>

namespace {

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

/// What the file has to hold for the present widths of the panel of \a bench.
QByteArray expectedFile(const PanelFixture &bench)
{
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VORNAK>\n";
    const auto add = [&text](const char *table, int column, int width) {
        text += QByteArray("    <TABLE_") + table + "_COLUMN_" + QByteArray::number(column) + " WIDTH=\""
            + QByteArray::number(width) + "\"/>\n";
    };
    for (int column = 0; column < 13; ++column) {
        const int width = bench.table6d().columnWidth(column);
        add("6D", column, width < 1 ? 60 : width);
    }
    for (int column = 0; column < 4; ++column)
        add("3D", column, bench.table3d().columnWidth(column));
    return text + "</VORNAK>\n";
}

/// Saves, and returns what was logged.
QStringList logsOfSaving(PanelFixture &bench)
{
    bench.takeCalls();
    bench.panel->prepareShutdown();
    return PanelFixture::logs(bench.takeCalls());
}

/// Saves while no file may grow beyond \a size bytes, as on a full disk, and returns what was logged.
QStringList logsOfSavingWithin(PanelFixture &bench, rlim_t size)
{
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN); // a write that fails, and not the end of the process
    rlimit oldLimit{};
    getrlimit(RLIMIT_FSIZE, &oldLimit);
    const auto restore = qScopeGuard([=] {
        setrlimit(RLIMIT_FSIZE, &oldLimit);
        std::signal(SIGXFSZ, oldHandler);
    });
    const rlimit limit{size, oldLimit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    return logsOfSaving(bench);
}

QString cannotWrite(const QString &file)
{
    return QStringLiteral("Error: Writing data display preferences. File ") + file
        + QStringLiteral(" cannot be opened for writing");
}

QString noFolder(const QString &folder)
{
    return QStringLiteral("Error: Writing data display preferences. Directory ") + folder
        + QStringLiteral(" doesn't exist and cannot be created");
}

} // namespace

class TestPreferencesSaving : public QObject {
    Q_OBJECT

private slots:
    void wholeFile_data();
    void wholeFile();
    void zeroWidthOfMarkersIsSavedAsItIs();
    void oldContentIsReplaced();
    void widthsComeBack();
    void hiddenWidthIsLostToItsFallback();
    void fileThatCannotBeWritten_data();
    void fileThatCannotBeWritten();
    void folderThatCannotBeMade_data();
    void folderThatCannotBeMade();
    void oldFileSurvivesAFullDisk_data();
    void oldFileSurvivesAFullDisk();
    void linkIsFollowed();
};

void TestPreferencesSaving::wholeFile_data()
{
    QTest::addColumn<int>("minorVersion");
    QTest::addColumn<QList<int>>("fallbacks");
    QTest::newRow("1.12: the sensor columns are hidden") << 12 << QList<int>{3, 10, 11};
    QTest::newRow("1.11: the filter column is, too") << 11 << QList<int>{2, 3, 10, 11};
}

void TestPreferencesSaving::wholeFile()
{
    QFETCH(const int, minorVersion);
    QFETCH(const QList<int>, fallbacks);
    PanelFixture bench(1, minorVersion);
    bench.createPanel();
    bench.table6d().setColumnWidth(4, 77);
    bench.table3d().setColumnWidth(1, 78);
    QCOMPARE(logsOfSaving(bench), QStringList());
    const QByteArray content = contentOf(bench.preferencesFile());
    QCOMPARE(content, expectedFile(bench));
    QVERIFY(content.contains("<TABLE_6D_COLUMN_4 WIDTH=\"77\"/>"));
    QVERIFY(content.contains("<TABLE_3D_COLUMN_1 WIDTH=\"78\"/>"));
    for (const int column : fallbacks)
        QVERIFY(content.contains("<TABLE_6D_COLUMN_" + QByteArray::number(column) + " WIDTH=\"60\"/>"));
}

void TestPreferencesSaving::zeroWidthOfMarkersIsSavedAsItIs()
{
    PanelFixture bench;
    bench.createPanel();
    bench.table3d().setColumnHidden(1, true);
    QCOMPARE(logsOfSaving(bench), QStringList());
    QVERIFY(contentOf(bench.preferencesFile()).contains("<TABLE_3D_COLUMN_1 WIDTH=\"0\"/>"));
}

void TestPreferencesSaving::oldContentIsReplaced()
{
    PanelFixture bench;
    bench.writePreferences(QByteArray("<VORNAK>") + QByteArray(100'000, ' ') + "</VORNAK>");
    bench.createPanel();
    QCOMPARE(logsOfSaving(bench), QStringList());
    QCOMPARE(contentOf(bench.preferencesFile()), expectedFile(bench));
    QCOMPARE(QDir(bench.preferencesDir()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("datadisplay-preferences.xml")});
}

void TestPreferencesSaving::widthsComeBack()
{
    PanelFixture bench;
    bench.createPanel();
    for (int column = 0; column < 12; ++column)
        bench.table6d().setColumnWidth(column, 80 + column);
    for (int column = 0; column < 3; ++column)
        bench.table3d().setColumnWidth(column, 120 + column);
    QCOMPARE(logsOfSaving(bench), QStringList());
    const QByteArray first = contentOf(bench.preferencesFile());
    bench.createPanel();
    QCOMPARE(bench.table6d().columnWidth(9), 89);
    QCOMPARE(bench.table3d().columnWidth(2), 122);
    QCOMPARE(logsOfSaving(bench), QStringList());
    QCOMPARE(contentOf(bench.preferencesFile()), first);
}

void TestPreferencesSaving::hiddenWidthIsLostToItsFallback()
{
    PanelFixture bench;
    bench.writePreferences("<VORNAK><TABLE_6D_COLUMN_10 WIDTH=\"140\"/></VORNAK>");
    bench.createPanel();
    QCOMPARE(logsOfSaving(bench), QStringList());
    bench.createPanel();
    bench.table6d().setColumnHidden(10, false);
    QCOMPARE(bench.table6d().columnWidth(10), 60);
}

void TestPreferencesSaving::fileThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("a folder in its place") << "folder";
    QTest::newRow("a link into a folder that is missing") << "link";
}

void TestPreferencesSaving::fileThatCannotBeWritten()
{
    QFETCH(const QString, kind);
    PanelFixture bench;
    bench.createPanel();
    QVERIFY(QDir().mkpath(bench.preferencesDir()));
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(bench.preferencesFile()));
    else
        QVERIFY(QFile::link(bench.home.path() + QStringLiteral("/missing/file"), bench.preferencesFile()));
    QCOMPARE(logsOfSaving(bench), QStringList{cannotWrite(bench.preferencesFile())});
}

void TestPreferencesSaving::folderThatCannotBeMade_data()
{
    QTest::addColumn<QString>("blocked");
    QTest::newRow("a file in place of the first folder") << "/.ZEL";
    QTest::newRow("a file in place of the last folder") << "/.ZEL/VORNAK4/modules/datadisplay/v2.2.6/config";
}

void TestPreferencesSaving::folderThatCannotBeMade()
{
    QFETCH(const QString, blocked);
    PanelFixture bench;
    const QString path = bench.home.path() + blocked;
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("mine");
    file.close();
    bench.createPanel();
    QCOMPARE(PanelFixture::logs(bench.takeCalls()), QStringList());
    QCOMPARE(logsOfSaving(bench), QStringList{noFolder(bench.preferencesDir())});
    QCOMPARE(contentOf(path), QByteArray("mine"));
}

void TestPreferencesSaving::oldFileSurvivesAFullDisk_data()
{
    QTest::addColumn<int>("room");
    QTest::newRow("no room at all") << 0;
    QTest::newRow("room for the first line") << 100;
    QTest::newRow("a byte too few") << -1;
}

void TestPreferencesSaving::oldFileSurvivesAFullDisk()
{
    QFETCH(const int, room);
    const QByteArray old = "<VORNAK><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></VORNAK>\n";
    PanelFixture bench;
    bench.writePreferences(old);
    bench.createPanel();
    const int size = room < 0 ? expectedFile(bench).size() + room : room;
    QCOMPARE(logsOfSavingWithin(bench, static_cast<rlim_t>(size)), QStringList{cannotWrite(bench.preferencesFile())});
    QCOMPARE(contentOf(bench.preferencesFile()), old);
    QCOMPARE(QDir(bench.preferencesDir()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("datadisplay-preferences.xml")});
    QCOMPARE(logsOfSavingWithin(bench, static_cast<rlim_t>(expectedFile(bench).size())), QStringList());
    QCOMPARE(contentOf(bench.preferencesFile()), expectedFile(bench));
}

void TestPreferencesSaving::linkIsFollowed()
{
    PanelFixture bench;
    bench.createPanel();
    QVERIFY(QDir().mkpath(bench.preferencesDir()));
    const QString target = bench.home.path() + QStringLiteral("/elsewhere.xml");
    QVERIFY(QFile::link(target, bench.preferencesFile()));
    QCOMPARE(logsOfSaving(bench), QStringList());
    QVERIFY(QFileInfo(bench.preferencesFile()).isSymLink());
    QCOMPARE(contentOf(target), expectedFile(bench));
}

QTEST_MAIN(TestPreferencesSaving)
#include "tst_preferencessaving.moc"
