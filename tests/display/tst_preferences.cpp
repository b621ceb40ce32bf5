// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <sys/stat.h>

namespace {

QList<int> widthsOf(const QTableWidget &table)
{
    QList<int> widths;
    for (int column = 0; column < table.columnCount(); ++column)
        widths << table.columnWidth(column);
    return widths;
}

/// Both tables' widths, those of the hidden columns too, as a new panel has them.
QList<int> widthsWithHidden(const PanelFixture &fixture)
{
    for (const int column : {FilterColumn, SensorColumn, BatteryColumn, TemperatureColumn})
        fixture.table6d().setColumnHidden(column, false);
    return widthsOf(fixture.table6d()) + widthsOf(fixture.table3d());
}

QList<int> builtInWidths()
{
    PanelFixture fixture;
    fixture.createPanel();
    return widthsWithHidden(fixture);
}

QStringList logsOfLoading(PanelFixture &fixture)
{
    fixture.createPanel();
    return PanelFixture::logs(fixture.takeCalls());
}

QByteArray document(const QByteArray &elements)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VORNAK>" + elements + "</VORNAK>\n";
}

QByteArray entityBomb()
{
    QByteArray text = "<?xml version=\"1.0\"?>\n<!DOCTYPE VORNAK [\n<!ENTITY e0 \"0123456789\">\n";
    for (int i = 1; i <= 12; ++i) {
        const QByteArray inner = "&e" + QByteArray::number(i - 1) + ";";
        text += "<!ENTITY e" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">\n";
    }
    return text + "]>\n<VORNAK><TABLE_3D_COLUMN_2 WIDTH=\"99\"/>&e12;</VORNAK>\n";
}

QByteArray inUtf16(const QString &text)
{
    QByteArray bytes("\xFF\xFE");
    for (const QChar character : text) {
        bytes += static_cast<char>(character.cell());
        bytes += static_cast<char>(character.row());
    }
    return bytes;
}

QString cannotRead(const QString &file)
{
    return QStringLiteral("Error: Loading data display preferences. File ") + file
        + QStringLiteral(" cannot be opened for reading. Using built-in values");
}

QString cannotParse(const QString &file, qint64 line, qint64 column, const QString &message)
{
    return QStringLiteral("Error: Loading data display preferences while parsing ") + file + QStringLiteral(" (Line ")
        + QString::number(line) + QStringLiteral(", Column ") + QString::number(column) + QStringLiteral(") :\n")
        + message + QStringLiteral(". Using built-in values");
}

/// The log line for what Qt's reader says of \a content.
QString cannotParse(const QString &file, const QByteArray &content)
{
    QXmlStreamReader xml(content);
    while (!xml.atEnd())
        xml.readNext();
    return cannotParse(file, xml.lineNumber(), xml.columnNumber(), xml.errorString());
}

/// \a depth elements inside each other, the root included, a width of 99 beside the outermost of them.
QByteArray nested(int depth)
{
    const int inner = depth - 1;
    return "<VORNAK><TABLE_3D_COLUMN_2 WIDTH=\"99\"/>" + QByteArray("<A>").repeated(inner)
        + QByteArray("</A>").repeated(inner) + "</VORNAK>";
}

QString wrongRoot(const QString &file)
{
    return QStringLiteral("Error: Loading data display preferences Error while parsing ") + file
        + QStringLiteral(" : The file doesn't look like a valid preferences file. Using built-in values");
}

} // namespace

class TestPreferences : public QObject {
    Q_OBJECT

private slots:
    void noFileIsNoError();
    void elements_data();
    void elements();
    void brokenFiles_data();
    void brokenFiles();
    void wrongRoots_data();
    void wrongRoots();
    void largeFiles_data();
    void largeFiles();
    void tooLargeFiles_data();
    void tooLargeFiles();
    void nestedElements_data();
    void nestedElements();
    void otherEncodings_data();
    void otherEncodings();
    void notAFile_data();
    void notAFile();
    void percentSignsInTheHomeAreKept();
    void logTextIsLatin1();
    void eachModuleVersionHasItsFile();
};

void TestPreferences::noFileIsNoError()
{
    PanelFixture fixture;
    QCOMPARE(logsOfLoading(fixture), QStringList());
    QVERIFY2(!QDir(fixture.home.path() + QStringLiteral("/.ZEL")).exists(), "loading created a folder");
}

void TestPreferences::elements_data()
{
    QTest::addColumn<QByteArray>("elements");
    QTest::addColumn<int>("column"); // 13 to 16: of the 3DOF table
    QTest::addColumn<int>("width"); // 0: as built in
    QTest::newRow("one 3DOF column") << QByteArray("<TABLE_3D_COLUMN_2 WIDTH=\"99\"/>") << 15 << 99;
    QTest::newRow("the first 6DOF column") << QByteArray("<TABLE_6D_COLUMN_0 WIDTH=\"81\"/>") << 0 << 81;
    QTest::newRow("a hidden 6DOF column") << QByteArray("<TABLE_6D_COLUMN_11 WIDTH=\"123\"/>") << 11 << 123;
    QTest::newRow("two digits are another column") << QByteArray("<TABLE_6D_COLUMN_1 WIDTH=\"88\"/>") << 1 << 88;
    QTest::newRow("of equal names the later one wins")
        << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"70\"/><TABLE_6D_COLUMN_4 WIDTH=\"71\"/>") << 4 << 71;
    QTest::newRow("a later width that is no number doesn't win")
        << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"70\"/><TABLE_6D_COLUMN_4 WIDTH=\"wide\"/>") << 4 << 70;
    QTest::newRow("no WIDTH") << QByteArray("<TABLE_6D_COLUMN_4 HEIGHT=\"70\"/>") << 4 << 0;
    QTest::newRow("attribute names are case-sensitive") << QByteArray("<TABLE_6D_COLUMN_4 width=\"70\"/>") << 4 << 0;
    QTest::newRow("a fraction is no integer") << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"70.5\"/>") << 4 << 0;
    QTest::newRow("hexadecimal is no decimal integer") << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"0x50\"/>") << 4 << 0;
    QTest::newRow("a leading 0 is decimal") << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"0120\"/>") << 4 << 120;
    QTest::newRow("an empty width") << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"\"/>") << 4 << 0;
    QTest::newRow("a width that no int holds") << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"99999999999\"/>") << 4 << 0;
    QTest::newRow("a width that no header can have")
        << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"2147483647\"/>") << 4 << 0;
    QTest::newRow("a negative width") << QByteArray("<TABLE_6D_COLUMN_4 WIDTH=\"-2147483648\"/>") << 4 << 0;
    QTest::newRow("an unknown name") << QByteArray("<TABLE_6D_COLUMN_04 WIDTH=\"70\"/>") << 4 << 0;
    QTest::newRow("a column beyond the last") << QByteArray("<TABLE_3D_COLUMN_4 WIDTH=\"70\"/>") << 16 << 0;
    QTest::newRow("names are case-sensitive") << QByteArray("<table_6d_column_4 WIDTH=\"70\"/>") << 4 << 0;
    QTest::newRow("only children of the root count")
        << QByteArray("<GROUP><TABLE_6D_COLUMN_4 WIDTH=\"70\"/></GROUP>") << 4 << 0;
    QTest::newRow("other nodes are passed over")
        << QByteArray("text<!-- remark --><?pi?><![CDATA[x]]><TABLE_6D_COLUMN_4 WIDTH=\"70\">y</TABLE_6D_COLUMN_4>")
        << 4 << 70;
    QTest::newRow("prefixes need no namespace") << QByteArray("<a:b/><TABLE_3D_COLUMN_0 WIDTH=\"70\"/>") << 13 << 70;
}

void TestPreferences::elements()
{
    QFETCH(const QByteArray, elements);
    QFETCH(const int, column);
    QFETCH(const int, width);
    QList<int> widths = builtInWidths();
    if (width > 0)
        widths[column] = width;
    PanelFixture fixture;
    fixture.writePreferences(document(elements));
    QCOMPARE(logsOfLoading(fixture), QStringList());
    QList<int> found = widthsWithHidden(fixture);
    // The stretching columns follow the others.
    widths[12] = found[12];
    widths[16] = found[16];
    QCOMPARE(found, widths);
}

void TestPreferences::brokenFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray width = "<TABLE_3D_COLUMN_2 WIDTH=\"99\"/>";
    QTest::newRow("an empty file") << QByteArray();
    QTest::newRow("no XML at all") << QByteArray("WIDTH=99\n");
    QTest::newRow("cut off after the elements") << QByteArray("<?xml version=\"1.0\"?>\n<VORNAK>\n" + width);
    QTest::newRow("tags that don't match") << QByteArray("<VORNAK>" + width + "</VORNAC>");
    QTest::newRow("bytes from nowhere") << QByteArray("\x00\x01\xFE\xFF\x80<VORNAK>\xC3(", 16);
    QTest::newRow("entities that would fill the memory") << entityBomb();
}

void TestPreferences::brokenFiles()
{
    QFETCH(const QByteArray, content);
    PanelFixture fixture;
    fixture.writePreferences(content);
    QCOMPARE(logsOfLoading(fixture), QStringList{cannotParse(fixture.preferencesFile(), content)});
    QCOMPARE(widthsWithHidden(fixture), builtInWidths());
}

void TestPreferences::wrongRoots_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("another name") << QByteArray("<ZEL><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></ZEL>");
    QTest::newRow("lower case") << QByteArray("<vornak><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></vornak>");
    QTest::newRow("one level too deep") << QByteArray("<A><VORNAK><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></VORNAK></A>");
    QTest::newRow("a prefix belongs to the name")
        << QByteArray("<a:VORNAK xmlns:a=\"b\"><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></a:VORNAK>");
}

void TestPreferences::wrongRoots()
{
    QFETCH(const QByteArray, content);
    PanelFixture fixture;
    fixture.writePreferences(content);
    QCOMPARE(logsOfLoading(fixture), QStringList{wrongRoot(fixture.preferencesFile())});
    QCOMPARE(widthsWithHidden(fixture), builtInWidths());
}

void TestPreferences::largeFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("valid");
    const QByteArray width = "<TABLE_3D_COLUMN_2 WIDTH=\"99\"/>";
    QTest::newRow("10 MB of brackets") << QByteArray(10 * 1024 * 1024, '<') << false;
    QTest::newRow("10 MB of elements, cut off")
        << QByteArray("<VORNAK>" + QByteArray("<A B=\"1\"/>").repeated(1'000'000)) << false;
    QTest::newRow("10 MB of elements") << document(QByteArray("<A B=\"1\"/>").repeated(1'000'000) + width) << true;
    QTest::newRow("10 MB of remark") << document("<!--" + QByteArray(10 * 1024 * 1024, ' ') + "-->" + width) << true;
}

void TestPreferences::largeFiles()
{
    QFETCH(const QByteArray, content);
    QFETCH(const bool, valid);
    PanelFixture fixture;
    fixture.writePreferences(content);
    const QStringList logs = logsOfLoading(fixture);
    if (valid) {
        QCOMPARE(logs, QStringList());
        QCOMPARE(fixture.table3d().columnWidth(2), 99);
        return;
    }
    QCOMPARE(logs, QStringList{cannotParse(fixture.preferencesFile(), content)});
    QCOMPARE(widthsWithHidden(fixture), builtInWidths());
}

void TestPreferences::tooLargeFiles_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("read");
    QTest::newRow("64 MiB are read") << (qint64(64) << 20) << true;
    QTest::newRow("one byte more is not") << (qint64(64) << 20) + 1 << false;
}

void TestPreferences::tooLargeFiles()
{
    QFETCH(const qint64, size);
    QFETCH(const bool, read);
    PanelFixture fixture;
    fixture.writePreferences("<VORNAC>"); // then zeros
    QVERIFY(QFile::resize(fixture.preferencesFile(), size));
    const QString log = logsOfLoading(fixture).value(0);
    QCOMPARE(log == cannotRead(fixture.preferencesFile()), !read);
    QCOMPARE(log.contains(QLatin1String("while parsing")), read);
    QCOMPARE(widthsWithHidden(fixture), builtInWidths());
}

void TestPreferences::nestedElements_data()
{
    QTest::addColumn<int>("depth");
    QTest::newRow("100 levels are read") << 100;
    QTest::newRow("one more is too deep") << 101;
    QTest::newRow("far too deep") << 30'000;
}

void TestPreferences::nestedElements()
{
    QFETCH(const int, depth);
    PanelFixture fixture;
    const QByteArray content = nested(depth);
    fixture.writePreferences(content);
    const QStringList logs = logsOfLoading(fixture);
    if (depth <= 100) {
        QCOMPARE(logs, QStringList());
        QCOMPARE(fixture.table3d().columnWidth(2), 99);
        return;
    }
    const int place = content.indexOf("<A>") + 100 * 3;
    QCOMPARE(logs, QStringList{cannotParse(fixture.preferencesFile(), 1, place, QStringLiteral("nested too deep"))});
    QCOMPARE(widthsWithHidden(fixture), builtInWidths());
}

void TestPreferences::otherEncodings_data()
{
    QTest::addColumn<QByteArray>("content");
    const QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"
                                        "<VORNAK><TABLE_3D_COLUMN_2 WIDTH=\"99\"/></VORNAK>\n");
    QTest::newRow("UTF-16 with a byte order mark") << inUtf16(text);
    QTest::newRow("UTF-8 with a byte order mark")
        << QByteArray("\xEF\xBB\xBF" + document("<TABLE_3D_COLUMN_2 WIDTH=\"99\"/>"));
    QTest::newRow("carriage returns") << document("\r\n<TABLE_3D_COLUMN_2 WIDTH=\"99\"/>\r\n");
}

void TestPreferences::otherEncodings()
{
    QFETCH(const QByteArray, content);
    PanelFixture fixture;
    fixture.writePreferences(content);
    QCOMPARE(logsOfLoading(fixture), QStringList());
    QCOMPARE(fixture.table3d().columnWidth(2), 99);
}

void TestPreferences::notAFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("logged");
    QTest::newRow("a folder can't be read") << "folder" << true;
    QTest::newRow("a pipe that nobody writes to can't be read") << "pipe" << true;
    QTest::newRow("a link to nowhere is no file") << "dangling link" << false;
    QTest::newRow("a link to itself is no file") << "endless link" << false;
}

void TestPreferences::notAFile()
{
    QFETCH(const QString, kind);
    QFETCH(const bool, logged);
    PanelFixture fixture;
    QVERIFY(QDir().mkpath(fixture.preferencesDir()));
    const QString file = fixture.preferencesFile();
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(file));
    else if (kind == QLatin1String("pipe"))
        QCOMPARE(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    else
        QVERIFY(QFile::link(kind == QLatin1String("endless link") ? file : QStringLiteral("/nowhere/at/all"), file));
    QCOMPARE(logsOfLoading(fixture), logged ? QStringList{cannotRead(file)} : QStringList());
    QCOMPARE(widthsWithHidden(fixture), builtInWidths());
}

void TestPreferences::percentSignsInTheHomeAreKept()
{
    for (const QByteArray &content : {QByteArray("<VORNAK>"), QByteArray("<A/>")}) {
        PanelFixture fixture;
        const QString home = fixture.home.path() + QStringLiteral("/%2 %1 %s %n");
        qputenv("HOME", QFile::encodeName(home));
        const QString folder = home + QStringLiteral("/.ZEL/VORNAK4/modules/datadisplay/v2.2.6/config");
        QVERIFY(QDir().mkpath(folder));
        QFile file(folder + QStringLiteral("/datadisplay-preferences.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        const QString text = content == "<A/>" ? wrongRoot(file.fileName()) : cannotParse(file.fileName(), content);
        QCOMPARE(logsOfLoading(fixture), QStringList{text});
    }
}

void TestPreferences::logTextIsLatin1()
{
    PanelFixture fixture;
    const QString home = fixture.home.path() + QStringLiteral("/M\u00FCller \u5B57");
    qputenv("HOME", QFile::encodeName(home));
    const QString file =
        home + QStringLiteral("/.ZEL/VORNAK4/modules/datadisplay/v2.2.6/config/datadisplay-preferences.xml");
    QVERIFY(QDir().mkpath(file));
    QString text = cannotRead(file);
    QCOMPARE(logsOfLoading(fixture), QStringList{text.replace(QChar(0x5B57), QLatin1Char('?'))});
}

void TestPreferences::eachModuleVersionHasItsFile()
{
    PanelFixture fixture;
    fixture.writePreferences(document("<TABLE_3D_COLUMN_2 WIDTH=\"99\"/>"));
    const DataDisplay other(&fixture.host, nullptr, &fixture.versions, QStringLiteral("v2.2.7"));
    QVERIFY(other.findChild<QTableWidget *>(QStringLiteral("tableWidget3d"))->columnWidth(2) != 99);
    fixture.createPanel();
    QCOMPARE(fixture.table3d().columnWidth(2), 99);
}

QTEST_MAIN(TestPreferences)
#include "tst_preferences.moc"
