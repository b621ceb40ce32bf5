// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/fulldisk.h"
#include "tests/support/panelfixture.h"

#include <QDir>
#include <QHeaderView>
#include <QScopeGuard>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

/// What the file has to hold for the present widths of the panel of \a fixture.
QByteArray expectedFile(const PanelFixture &fixture)
{
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VORNAK>\n";
    const auto add = [&text](const char *table, int column, int width) {
        text += QByteArray("    <TABLE_") + table + "_COLUMN_" + QByteArray::number(column) + " WIDTH=\""
            + QByteArray::number(width) + "\"/>\n";
    };
    for (int column = 0; column < 13; ++column) {
        const int width = fixture.table6d().columnWidth(column);
        add("6D", column, width < 1 ? 60 : width);
    }
    for (int column = 0; column < 4; ++column)
        add("3D", column, fixture.table3d().columnWidth(column));
    return text + "</VORNAK>\n";
}

/// Saves, and returns what was logged.
QStringList logsOfSaving(PanelFixture &fixture)
{
    fixture.takeCalls();
    fixture.panel->prepareShutdown();
    return PanelFixture::logs(fixture.takeCalls());
}

/// Saves while no file may grow beyond \a size bytes, as on a full disk, and returns what was logged.
QStringList logsOfSavingWithin(PanelFixture &fixture, rlim_t size)
{
    const FullDisk disk(size);
    return logsOfSaving(fixture);
}

/// While it lives, root is a user whom no file belongs to: root may write anywhere. Any other user stays who he is.
class OrdinaryUser {
public:
    OrdinaryUser()
        : isChanged(::geteuid() == 0 && ::setresuid(nobody, nobody, 0) == 0)
    {
    }
    ~OrdinaryUser()
    {
        if (isChanged && ::setresuid(0, 0, 0) != 0)
            qFatal("root has to be root again");
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr uid_t nobody = 65534;
    const bool isChanged;
};

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
    void narrowestWidthOfBodiesIsSavedAsItIs();
    void oldContentIsReplaced();
    void widthsComeBack();
    void hiddenWidthIsLostToItsFallback();
    void elementWithoutWidthCostsAHiddenColumnItsOwn();
    void fileThatCannotBeWritten_data();
    void fileThatCannotBeWritten();
    void folderThatCannotBeMade_data();
    void folderThatCannotBeMade();
    void oldFileSurvivesAFullDisk_data();
    void oldFileSurvivesAFullDisk();
    void linkIsFollowed();
    void fileIsWrittenWhereItsFolderMayNotBe();
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
    PanelFixture fixture(1, minorVersion);
    fixture.createPanel();
    fixture.table6d().setColumnWidth(4, 77);
    fixture.table3d().setColumnWidth(1, 78);
    QCOMPARE(logsOfSaving(fixture), QStringList());
    const QByteArray content = contentOf(fixture.preferencesFile());
    QCOMPARE(content, expectedFile(fixture));
    QVERIFY(content.contains("<TABLE_6D_COLUMN_4 WIDTH=\"77\"/>"));
    QVERIFY(content.contains("<TABLE_3D_COLUMN_1 WIDTH=\"78\"/>"));
    for (const int column : fallbacks)
        QVERIFY(content.contains("<TABLE_6D_COLUMN_" + QByteArray::number(column) + " WIDTH=\"60\"/>"));
}

void TestPreferencesSaving::zeroWidthOfMarkersIsSavedAsItIs()
{
    PanelFixture fixture;
    fixture.createPanel();
    fixture.table3d().setColumnHidden(1, true);
    QCOMPARE(logsOfSaving(fixture), QStringList());
    QVERIFY(contentOf(fixture.preferencesFile()).contains("<TABLE_3D_COLUMN_1 WIDTH=\"0\"/>"));
}

void TestPreferencesSaving::narrowestWidthOfBodiesIsSavedAsItIs()
{
    PanelFixture fixture;
    fixture.createPanel();
    fixture.table6d().horizontalHeader()->setMinimumSectionSize(1);
    fixture.table6d().setColumnWidth(4, 1);
    QCOMPARE(logsOfSaving(fixture), QStringList());
    QVERIFY(contentOf(fixture.preferencesFile()).contains("<TABLE_6D_COLUMN_4 WIDTH=\"1\"/>"));
}

void TestPreferencesSaving::oldContentIsReplaced()
{
    PanelFixture fixture;
    fixture.writePreferences(QByteArray("<VORNAK>") + QByteArray(100'000, ' ') + "</VORNAK>");
    fixture.createPanel();
    QCOMPARE(logsOfSaving(fixture), QStringList());
    QCOMPARE(contentOf(fixture.preferencesFile()), expectedFile(fixture));
    QCOMPARE(QDir(fixture.preferencesDir()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("datadisplay-preferences.xml")});
}

void TestPreferencesSaving::widthsComeBack()
{
    PanelFixture fixture;
    fixture.createPanel();
    for (int column = 0; column < 12; ++column)
        fixture.table6d().setColumnWidth(column, 80 + column);
    for (int column = 0; column < 3; ++column)
        fixture.table3d().setColumnWidth(column, 120 + column);
    QCOMPARE(logsOfSaving(fixture), QStringList());
    const QByteArray first = contentOf(fixture.preferencesFile());
    fixture.createPanel();
    QCOMPARE(fixture.table6d().columnWidth(9), 89);
    QCOMPARE(fixture.table3d().columnWidth(2), 122);
    QCOMPARE(logsOfSaving(fixture), QStringList());
    QCOMPARE(contentOf(fixture.preferencesFile()), first);
}

void TestPreferencesSaving::hiddenWidthIsLostToItsFallback()
{
    PanelFixture fixture;
    fixture.writePreferences("<VORNAK><TABLE_6D_COLUMN_10 WIDTH=\"140\"/></VORNAK>");
    fixture.createPanel();
    QCOMPARE(logsOfSaving(fixture), QStringList());
    fixture.createPanel();
    fixture.table6d().setColumnHidden(10, false);
    QCOMPARE(fixture.table6d().columnWidth(10), 60);
}

void TestPreferencesSaving::elementWithoutWidthCostsAHiddenColumnItsOwn()
{
    PanelFixture fixture;
    fixture.writePreferences("<VORNAK><TABLE_6D_COLUMN_10/><TABLE_6D_COLUMN_4/></VORNAK>");
    fixture.createPanel();
    QTableWidget &table = fixture.table6d();
    const int narrowest = table.horizontalHeader()->minimumSectionSize();
    table.horizontalHeader()->setMinimumSectionSize(0); // which a width of none comes up to
    table.showColumn(BatteryColumn);
    table.showColumn(TemperatureColumn);
    QCOMPARE(table.columnWidth(BatteryColumn), 0);
    QVERIFY(table.columnWidth(TemperatureColumn) > narrowest); // which the file does not name
    QVERIFY(table.columnWidth(XColumn) > narrowest); // which is not hidden
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
    PanelFixture fixture;
    fixture.createPanel();
    QVERIFY(QDir().mkpath(fixture.preferencesDir()));
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(fixture.preferencesFile()));
    else
        QVERIFY(QFile::link(fixture.home.path() + QStringLiteral("/missing/file"), fixture.preferencesFile()));
    QCOMPARE(logsOfSaving(fixture), QStringList{cannotWrite(fixture.preferencesFile())});
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
    PanelFixture fixture;
    const QString path = fixture.home.path() + blocked;
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("mine");
    file.close();
    fixture.createPanel();
    QCOMPARE(PanelFixture::logs(fixture.takeCalls()), QStringList());
    QCOMPARE(logsOfSaving(fixture), QStringList{noFolder(fixture.preferencesDir())});
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
    PanelFixture fixture;
    fixture.writePreferences(old);
    fixture.createPanel();
    const int size = room < 0 ? expectedFile(fixture).size() + room : room;
    QCOMPARE(logsOfSavingWithin(fixture, static_cast<rlim_t>(size)),
             QStringList{cannotWrite(fixture.preferencesFile())});
    QCOMPARE(contentOf(fixture.preferencesFile()), old);
    QCOMPARE(QDir(fixture.preferencesDir()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("datadisplay-preferences.xml")});
    QCOMPARE(logsOfSavingWithin(fixture, static_cast<rlim_t>(expectedFile(fixture).size())), QStringList());
    QCOMPARE(contentOf(fixture.preferencesFile()), expectedFile(fixture));
}

void TestPreferencesSaving::linkIsFollowed()
{
    PanelFixture fixture;
    fixture.createPanel();
    QVERIFY(QDir().mkpath(fixture.preferencesDir()));
    const QString target = fixture.home.path() + QStringLiteral("/elsewhere.xml");
    QVERIFY(QFile::link(target, fixture.preferencesFile()));
    QCOMPARE(logsOfSaving(fixture), QStringList());
    QVERIFY(QFileInfo(fixture.preferencesFile()).isSymLink());
    QCOMPARE(contentOf(target), expectedFile(fixture));
}

void TestPreferencesSaving::fileIsWrittenWhereItsFolderMayNotBe()
{
    PanelFixture fixture;
    fixture.writePreferences("<VORNAK><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></VORNAK>\n");
    fixture.createPanel();
    fixture.table3d().setColumnWidth(2, 98);
    const QByteArray folder = QFile::encodeName(fixture.preferencesDir());
    QCOMPARE(::chmod(QFile::encodeName(fixture.home.path()).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(fixture.preferencesFile()).constData(), 0666), 0);
    QCOMPARE(::chmod(folder.constData(), 0555), 0);
    const auto restore = qScopeGuard([&folder] { ::chmod(folder.constData(), 0755); });
    {
        const OrdinaryUser user;
        QVERIFY(!QFile(fixture.preferencesDir() + QStringLiteral("/new")).open(QIODevice::WriteOnly));
        QCOMPARE(logsOfSaving(fixture), QStringList());
    }
    QCOMPARE(contentOf(fixture.preferencesFile()), expectedFile(fixture));
    QVERIFY(contentOf(fixture.preferencesFile()).contains("<TABLE_3D_COLUMN_2 WIDTH=\"98\"/>"));
}

QTEST_MAIN(TestPreferencesSaving)
#include "tst_preferencessaving.moc"
