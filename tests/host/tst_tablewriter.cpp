// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/tablewriter.h"
#include "interface/moduleinterface.h"
#include "tests/support/fulldisk.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

using namespace host;

namespace {

/// A table of two rows and three columns, of which the last has no name.
std::unique_ptr<QTableWidget> smallTable()
{
    auto table = std::make_unique<QTableWidget>(2, 3);
    table->setHorizontalHeaderLabels({QStringLiteral("id"), QStringLiteral("x [mm]"), QString()});
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 3; ++column)
            table->setItem(row, column, new QTableWidgetItem(QStringLiteral("%1%2").arg(row).arg(column)));
    }
    return table;
}

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
}

} // namespace

/// What is saved of the tables of modules.
class TableWriterTest : public QObject {
    Q_OBJECT

private slots:
    void savesTheNamedColumns();
    void quotesWhatNeedsIt_data();
    void quotesWhatNeedsIt();
    void savesWhatIsVisibleInItsOrder();
    void savesNumbersOfAModel();
    void savesTheTextsOfWidgets_data();
    void savesTheTextsOfWidgets();
    void savesNothingOfATableWithoutAModel();
    void namesTheFilesAfterTheTables_data();
    void namesTheFilesAfterTheTables();
    void takesTheTablesThatAreOpen();
    void writesTheFiles();
    void keepsTheOldFileOnAFullDisk();
};

void TableWriterTest::savesTheNamedColumns()
{
    const auto table = smallTable();
    QCOMPARE(csvOf(*table), QByteArray("id,x [mm]\r\n00,01\r\n10,11\r\n"));
    table->setHorizontalHeaderItem(2, new QTableWidgetItem(QStringLiteral("  ")));
    QCOMPARE(csvOf(*table), QByteArray("id,x [mm]\r\n00,01\r\n10,11\r\n"));
    delete table->takeItem(1, 1);
    QCOMPARE(csvOf(*table), QByteArray("id,x [mm]\r\n00,01\r\n10,\r\n"));
    table->setRowCount(0);
    QCOMPARE(csvOf(*table), QByteArray("id,x [mm]\r\n"));
}

void TableWriterTest::quotesWhatNeedsIt_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("field");
    const auto row = [](const char *name, const char *text, const char *field) {
        QTest::newRow(name) << QString::fromUtf8(text) << QByteArray(field);
    };
    row("a comma", "a,b", "\"a,b\"");
    row("quotes", "a \"b\"", "\"a \"\"b\"\"\"");
    row("a line feed", "a\nb", "\"a\nb\"");
    row("a carriage return", "a\rb", "\"a\rb\"");
    row("a blank needs none", " a b ", " a b ");
    row("a semicolon needs none", "a;b", "a;b");
    row("UTF-8", "28.0°C 東", "28.0°C 東");
    row("a text that reads like markup stays", "<b>a</b>", "<b>a</b>");
}

void TableWriterTest::quotesWhatNeedsIt()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, field);
    QTableWidget table(1, 1);
    table.setHorizontalHeaderLabels({text});
    table.setItem(0, 0, new QTableWidgetItem(text));
    QCOMPARE(csvOf(table), field + "\r\n" + field + "\r\n");
}

void TableWriterTest::savesWhatIsVisibleInItsOrder()
{
    const auto table = smallTable();
    table->setHorizontalHeaderItem(2, new QTableWidgetItem(QStringLiteral("y")));
    table->hideColumn(0);
    table->horizontalHeader()->moveSection(2, 0);
    table->verticalHeader()->moveSection(1, 0);
    QCOMPARE(csvOf(*table), QByteArray("y,x [mm]\r\n12,11\r\n02,01\r\n"));
    table->hideRow(0);
    QCOMPARE(csvOf(*table), QByteArray("y,x [mm]\r\n12,11\r\n"));
}

void TableWriterTest::savesNumbersOfAModel()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    QStandardItemModel model(1, 3);
    model.setHorizontalHeaderLabels({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    model.setData(model.index(0, 0), 1234.5);
    model.setData(model.index(0, 1), 12345678);
    model.setData(model.index(0, 2), QStringLiteral("1,5"));
    QTableView view;
    view.setModel(&model);
    const QByteArray csv = csvOf(view);
    QLocale::setDefault(before);
    QCOMPARE(csv, QByteArray("a,b,c\r\n1234.5,12345678,\"1,5\"\r\n"));
}

void TableWriterTest::savesTheTextsOfWidgets_data()
{
    QTest::addColumn<QWidget *>("widget");
    QTest::addColumn<QByteArray>("field");
    const auto row = [](const char *name, QWidget *widget, const char *field) {
        QTest::newRow(name) << widget << QByteArray(field);
    };
    auto *bar = new QProgressBar;
    bar->setFormat(QStringLiteral("%v W"));
    bar->setValue(29);
    row("a bar", bar, "29 W");
    auto *silent = new QProgressBar;
    silent->setValue(29);
    silent->setTextVisible(false);
    row("a bar without a text", silent, "");
    row("a label", new QLabel(QStringLiteral("ready")), "ready");
    row("a label with markup", new QLabel(QStringLiteral("<b>very</b> ready")), "very ready");
    row("a box to tick", new QCheckBox(QStringLiteral("on")), "on");
    row("a field", new QLineEdit(QStringLiteral("1.5")), "1.5");
    auto *choice = new QComboBox;
    choice->addItems({QStringLiteral("one"), QStringLiteral("two")});
    choice->setCurrentIndex(1);
    row("a choice", choice, "two");
    auto *group = new QWidget;
    auto *layout = new QVBoxLayout(group);
    auto *hidden = new QLabel(QStringLiteral("secret"));
    hidden->hide();
    for (QWidget *part : {static_cast<QWidget *>(new QLabel(QStringLiteral("A"))), static_cast<QWidget *>(hidden),
                          static_cast<QWidget *>(new QLabel(QStringLiteral("B")))})
        layout->addWidget(part);
    row("a group of others", group, "A B");
    auto *gone = new QLabel(QStringLiteral("gone"));
    gone->hide();
    row("a hidden one leaves the cell its own text", gone, "own");
}

void TableWriterTest::savesTheTextsOfWidgets()
{
    QFETCH(QWidget *, widget);
    QFETCH(QByteArray, field);
    QTableWidget table(1, 1);
    table.setHorizontalHeaderLabels({QStringLiteral("a")});
    table.setItem(0, 0, new QTableWidgetItem(QStringLiteral("own")));
    const bool isHidden = widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
    table.setCellWidget(0, 0, widget);
    if (isHidden)
        widget->hide();
    QCOMPARE(csvOf(table), "a\r\n" + field + "\r\n");
}

void TableWriterTest::savesNothingOfATableWithoutAModel()
{
    const QTableView view;
    QCOMPARE(csvOf(view), QByteArray());
}

void TableWriterTest::namesTheFilesAfterTheTables_data()
{
    QTest::addColumn<QStringList>("tables");
    QTest::addColumn<QStringList>("files");
    const auto row = [](const char *name, const QStringList &tables, const QStringList &files) {
        QTest::newRow(name) << tables << files;
    };
    const QString a = QStringLiteral("a");
    row("two names", {a, QStringLiteral("b")}, {QStringLiteral("a.csv"), QStringLiteral("b.csv")});
    row("a name twice gets a number", {a, a, a},
        {QStringLiteral("a.csv"), QStringLiteral("a-2.csv"), QStringLiteral("a-3.csv")});
    row("a number that is taken", {QStringLiteral("a-2"), a, a},
        {QStringLiteral("a-2.csv"), QStringLiteral("a.csv"), QStringLiteral("a-3.csv")});
    row("no name", {QString(), QString()}, {QStringLiteral("table.csv"), QStringLiteral("table-2.csv")});
    row("no way into another folder", {QStringLiteral("../a/b")}, {QStringLiteral("_.._a_b.csv")});
    row("control characters", {QStringLiteral("a\nb")}, {QStringLiteral("a_b.csv")});
    row("a long name is cut", {QString(300, QLatin1Char('x'))},
        {QString(100, QLatin1Char('x')) + QStringLiteral(".csv")});
}

void TableWriterTest::namesTheFilesAfterTheTables()
{
    QFETCH(QStringList, tables);
    QFETCH(QStringList, files);
    QDockWidget dock;
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    for (const QString &name : tables) {
        auto *table = new QTableWidget(0, 0);
        table->setObjectName(name);
        layout->addWidget(table);
    }
    dock.setWidget(content);
    dock.show();
    ModuleEntry entry;
    entry.widget = &dock;
    QStringList names;
    const QVector<TableFile> written = TableWriter({&entry}).files();
    for (const TableFile &file : written)
        names << file.name;
    QCOMPARE(names, files);
}

void TableWriterTest::takesTheTablesThatAreOpen()
{
    QMainWindow window;
    std::array<ModuleEntry, 5> entries;
    QList<ModuleEntry *> list;
    QStringList left;
    for (std::size_t number = 0; number < entries.size(); ++number) {
        auto *dock = new QDockWidget(&window);
        auto *pages = new QStackedWidget;
        for (const char *page : {"front", "back"}) {
            auto *table = new QTableWidget(0, 0);
            table->setObjectName(QStringLiteral("%1%2").arg(QLatin1String(page)).arg(number));
            pages->addWidget(table);
        }
        dock->setWidget(pages);
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
        entries.at(number).widget = dock;
        list << &entries.at(number);
    }
    const auto dock = [&](std::size_t number) { return qobject_cast<QDockWidget *>(entries.at(number).widget); };
    window.tabifyDockWidget(dock(0), dock(1)); // number 1 covers number 0
    window.show();
    dock(2)->close();
    dock(3)->findChild<QTableWidget *>(QStringLiteral("front3"))->parentWidget()->hide();
    dock(4)->setFloating(true);
    ModuleEntry noDock;
    QTableWidget foreign;
    noDock.widget = &foreign;
    ModuleEntry empty;
    const QVector<TableFile> files = TableWriter(list + QList<ModuleEntry *>{&noDock, &empty}).files();
    QStringList names;
    for (const TableFile &file : files)
        names << file.name.section(QLatin1Char('.'), 0, 0);
    names.sort();
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("back0 back1 back4 front0 front1 front4"));
}

void TableWriterTest::writesTheFiles()
{
    QTemporaryDir folder;
    QDockWidget dock;
    const auto table = smallTable();
    table->setObjectName(QStringLiteral("small"));
    dock.setWidget(table.get());
    dock.show();
    ModuleEntry entry;
    entry.widget = &dock;
    const QString tables = folder.filePath(QStringLiteral("a/b"));
    QCOMPARE(TableWriter({&entry}).write(tables), QString());
    QCOMPARE(contentOf(tables + QStringLiteral("/small.csv")), csvOf(*table));
    table->setRowCount(1);
    QCOMPARE(TableWriter({&entry}).write(tables), QString()); // replaced
    QCOMPARE(contentOf(tables + QStringLiteral("/small.csv")), QByteArray("id,x [mm]\r\n00,01\r\n"));
    QVERIFY(!TableWriter({}).write(tables).isEmpty());
    QVERIFY(
        TableWriter({&entry}).write(tables + QStringLiteral("/small.csv/c")).contains(QStringLiteral("small.csv/c")));
    dock.setWidget(nullptr);
    table->setParent(nullptr);
}

void TableWriterTest::keepsTheOldFileOnAFullDisk()
{
    QTemporaryDir folder;
    QDockWidget dock;
    auto *table = smallTable().release();
    table->setObjectName(QStringLiteral("small"));
    dock.setWidget(table);
    dock.show();
    ModuleEntry entry;
    entry.widget = &dock;
    QCOMPARE(TableWriter({&entry}).write(folder.path()), QString());
    const QString name = folder.filePath(QStringLiteral("small.csv"));
    const QByteArray before = contentOf(name);
    table->item(0, 0)->setText(QStringLiteral("something new"));
    QString complaint;
    {
        const FullDisk disk(5);
        complaint = TableWriter({&entry}).write(folder.path());
    }
    QVERIFY2(complaint.contains(name), qPrintable(complaint));
    QCOMPARE(contentOf(name), before);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
}

QTEST_MAIN(TableWriterTest)
#include "tst_tablewriter.moc"
