// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/hostile/hostilefile.h"
#include "tests/support/fulldisk.h"
#include "tests/support/panelfixture.h"

#include <QDir>
#include <QtTest>

#include <sys/stat.h>

namespace {

const QString folder = QStringLiteral("preferences");
constexpr int builtIn = 0;
const char *const cannotRead = "cannot be opened for reading. Using built-in values";
const char *const cannotParse = "Error: Loading data display preferences while parsing ";
const char *const tooDeep = ":\nnested too deep. Using built-in values";
const char *const wrongRoot = "The file doesn't look like a valid preferences file. Using built-in values";
const char *const cannotWrite = "cannot be opened for writing";
const char *const noFolder = "doesn't exist and cannot be created";

struct Row {
    const char *name;
    const char *file;
    const char *loading; ///< part of the one message on loading; empty: there is none
    int width; ///< of the third column of the markers' table [px]
    const char *saving; ///< part of the one message on saving; empty: there is none, and the file is whole
};

const std::initializer_list<Row> rows{
    {"another root is refused and replaced", "wrong-root.xml", wrongRoot, builtIn, ""},
    {"an empty file is refused and replaced", "empty.xml", cannotParse, builtIn, ""},
    {"a file that was cut off is refused and replaced", "cut-off.xml", cannotParse, builtIn, ""},
    {"entities that would fill the memory are refused", "entity-bomb.xml", cannotParse, builtIn, ""},
    {"thirty thousand elements inside each other are refused", "thirty-thousand-deep.xml.recipe", tooDeep, builtIn, ""},
    {"an element too many inside each other is refused", "hundred-and-one-deep.xml.recipe", tooDeep, builtIn, ""},
    {"a hundred elements inside each other are read", "hundred-deep.xml.recipe", "", 99, ""},
    {"three megabytes are read", "three-megabytes.xml.recipe", "", 99, ""},
    {"ten megabytes are read", "ten-megabytes.xml.recipe", "", 99, ""},
    {"more than 64 megabytes are not read", "beyond-64-megabytes.xml.recipe", cannotRead, builtIn, ""},
    {"widths that no column has are passed over", "huge-widths.xml", "", builtIn, ""},
    {"no other file is read for an entity", "outside-entity.xml", "", 99, ""},
    {"a pipe is not waited for, and replaced", "pipe.place", cannotRead, builtIn, ""},
    {"a link to nowhere is no file, and is kept", "dangling-link.place", "", builtIn, cannotWrite},
    {"a folder is no file, and is kept", "folder.place", cannotRead, builtIn, cannotWrite},
    {"a home that is read-only has no preferences", "read-only-home.place", "", builtIn, noFolder},
    {"a home that is missing is made", "missing-home.place", "", builtIn, ""},
    {"a full disk leaves the file of the last time", "full-disk.place", "", 99, cannotWrite},
};

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

/// Brings about what \a file is or says; the home of \a fixture may become another.
void prepare(PanelFixture &fixture, const QString &file)
{
    const QString path = fixture.preferencesFile();
    const QString place = file.endsWith(QLatin1String(".place")) ? file.section(QLatin1Char('.'), 0, 0) : QString();
    QVERIFY(QDir().mkpath(fixture.preferencesDir()));
    if (place.isEmpty())
        fixture.writePreferences(hostileInput(folder, file));
    else if (place == QLatin1String("pipe"))
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    else if (place == QLatin1String("dangling-link"))
        QVERIFY(QFile::link(QStringLiteral("/nowhere/at/all"), path));
    else if (place == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(path));
    else if (place == QLatin1String("read-only-home"))
        qputenv("HOME", "/proc"); // where not even root makes a folder
    else if (place == QLatin1String("missing-home"))
        qputenv("HOME", QFile::encodeName(fixture.home.filePath(QStringLiteral("not/there"))));
    else if (place == QLatin1String("full-disk"))
        fixture.writePreferences("<VORNAK><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></VORNAK>");
    else
        QFAIL("an unknown place");
}

/// Saves with room for no more than \a room bytes in a file, and returns what was logged.
QStringList saveInto(PanelFixture &fixture, rlim_t room)
{
    const FullDisk disk(room);
    fixture.takeCalls();
    fixture.panel->prepareShutdown();
    return PanelFixture::logs(fixture.takeCalls());
}

int widthOf(const PanelFixture &fixture)
{
    return fixture.table3d().columnWidth(2);
}

int builtInWidth()
{
    PanelFixture fixture;
    fixture.createPanel();
    return widthOf(fixture);
}

void compareMessage(const QStringList &logs, const QString &part)
{
    QCOMPARE(logs.size(), part.isEmpty() ? 0 : 1);
    QVERIFY2(part.isEmpty() || logs[0].contains(part), qPrintable(logs.join(QLatin1Char('\n'))));
}

} // namespace

class TestHostilePreferences : public QObject {
    Q_OBJECT

private slots:
    void everyFileHasItsRow();
    void preferences_data();
    void preferences();
};

void TestHostilePreferences::everyFileHasItsRow()
{
    QStringList files;
    for (const Row &row : rows)
        files << QLatin1String(row.file);
    files.sort();
    QCOMPARE(files, hostileNames(folder));
}

void TestHostilePreferences::preferences_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("loading");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("saving");
    for (const Row &row : rows) {
        QTest::newRow(row.name) << QString::fromLatin1(row.file) << QString::fromLatin1(row.loading) << row.width
                                << QString::fromLatin1(row.saving);
    }
}

void TestHostilePreferences::preferences()
{
    QFETCH(const QString, file);
    QFETCH(const QString, loading);
    QFETCH(const int, width);
    QFETCH(const QString, saving);
    const int expectedWidth = width == builtIn ? builtInWidth() : width;
    PanelFixture fixture;
    prepare(fixture, file);
    const QString path =
        QDir::homePath() + fixture.preferencesFile().mid(fixture.home.path().size()); // in the home of now
    const QByteArray before =
        contentOf(path == fixture.preferencesFile() && QFileInfo(path).isFile() ? path : QString());

    fixture.createPanel();
    compareMessage(PanelFixture::logs(fixture.takeCalls()), loading);
    QCOMPARE(widthOf(fixture), expectedWidth);

    const bool full = file == QLatin1String("full-disk.place");
    compareMessage(saveInto(fixture, full ? 0 : RLIM_INFINITY), saving);
    if (full)
        QCOMPARE(contentOf(path), before);
    if (!saving.isEmpty())
        return;
    QVERIFY(QFileInfo(path).isFile());
    QVERIFY(contentOf(path).contains("<TABLE_3D_COLUMN_2 WIDTH=\"" + QByteArray::number(expectedWidth) + "\"/>"));
    QVERIFY(contentOf(path).endsWith("</VORNAK>\n"));
}

QTEST_MAIN(TestHostilePreferences)

#include "tst_hostile_preferences.moc"
