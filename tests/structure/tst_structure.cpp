// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/structure/classscanner.h"
#include "tests/structure/sourcetree.h"

#include <QFileInfo>
#include <QMap>
#include <QTest>

namespace {

constexpr int mostLines = 400;
constexpr int mostFunctions = 25;
constexpr int mostMembers = 12;

/// Which folders each folder may include, besides itself.
const QMap<QString, QStringList> &rooms()
{
    static const QString numbers = QStringLiteral("numbers"); // open to every room
    static const QString interface = QStringLiteral("interface");
    static const QString channel = QStringLiteral("channel");
    static const QMap<QString, QStringList> table{
        {interface, {}},
        {numbers, {}},
        {channel, {interface, numbers}},
        {QStringLiteral("data"), {numbers}},
        {QStringLiteral("display"), {QStringLiteral("data"), QStringLiteral("filter"), channel, interface, numbers}},
        {QStringLiteral("filter"), {channel, interface, numbers}},
        {QStringLiteral("module"), {QStringLiteral("display"), interface, numbers}},
        {QStringLiteral("backend"), {numbers}},
        {QStringLiteral("host"), {QStringLiteral("host/liveness"), QStringLiteral("backend"), interface, numbers}},
        {QStringLiteral("host/liveness"), {QStringLiteral("backend"), numbers}},
        // A stranger's host, which has none of our headers.
        {QStringLiteral("tests/contract"), {}},
    };
    return table;
}

/// What is no part of the product may include all that it tests.
bool isOpen(const QString &folder)
{
    return QStringList{QStringLiteral("tests"), QStringLiteral("bench"), QStringLiteral("fuzz")}.contains(
        folder.section(QLatin1Char('/'), 0, 0));
}

/// Why a file of \a folder may not have this line; empty where it may.
QString faultOf(const QString &folder, const IncludeLine &include)
{
    const QString room = folderOf(include.path);
    if (room.isEmpty()) {
        const bool isGenerated =
            include.path.startsWith(QLatin1String("ui_")) || include.path.endsWith(QLatin1String(".moc"));
        return !include.quoted || isGenerated ? QString() : QStringLiteral("is no path from the root");
    }
    const bool isOurs = rooms().contains(room) || isOpen(room);
    if (!include.quoted)
        return isOurs ? QStringLiteral("is ours, and belongs in quotes") : QString();
    if (room == folder || rooms().value(folder).contains(room))
        return {};
    return QStringLiteral("is out of reach for %1/").arg(folder);
}

/// Whether Qt's widget library has a header of this name.
bool isWidgetsHeader(const QString &include)
{
    return include == QLatin1String("QtWidgets") || include.startsWith(QLatin1String("QtWidgets/"))
        || QFileInfo::exists(QStringLiteral(QT_WIDGETS_HEADERS "/") + include);
}

QStringList widgetsHeadersOf(const SourceTree &tree, const QString &file)
{
    QStringList headers;
    const QSet<QString> includes = tree.foreignIncludesOf(file);
    for (const QString &include : includes) {
        if (isWidgetsHeader(include))
            headers.append(include);
    }
    return headers;
}

/// Why a class is too large; empty where it is not.
QString faultOf(const ClassSize &size)
{
    if (size.isStruct && size.functions == 0)
        return {};
    if (size.functions <= mostFunctions && size.members <= mostMembers)
        return {};
    return QStringLiteral("%1 has %2 functions and %3 members").arg(size.name).arg(size.functions).arg(size.members);
}

QString classOf(int functions, int members)
{
    QString text = QStringLiteral("class Sample {\n");
    for (int i = 0; i < functions; ++i)
        text += QStringLiteral("    void f%1();\n").arg(i);
    for (int i = 0; i < members; ++i)
        text += QStringLiteral("    int m%1 = 0;\n").arg(i);
    return text + QStringLiteral("};\n");
}

} // namespace

class TestStructure : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void foldersIncludeWhatTheyMay();
    void includesAreJudged_data();
    void includesAreJudged();
    void configurationNeedsNoWidgets();
    void widgetsHeadersAreFound();
    void filesAreShort();
    void classesAreSmall();
    void classesAreCounted_data();
    void classesAreCounted();
    void largeClassesAreRefused();

private:
    const SourceTree tree{QStringLiteral(SOURCE_FOLDER)};
};

void TestStructure::initTestCase()
{
    for (auto room = rooms().cbegin(); room != rooms().cend(); ++room) {
        const QString inside = room.key() + QLatin1Char('/');
        const bool hasFiles = std::any_of(tree.files().cbegin(), tree.files().cend(),
                                          [&inside](const QString &file) { return file.startsWith(inside); });
        QVERIFY2(hasFiles, qPrintable(room.key() + QStringLiteral("/ has no sources")));
    }
}

void TestStructure::foldersIncludeWhatTheyMay()
{
    QStringList faults;
    for (const QString &file : tree.files()) {
        const QString folder = folderOf(file);
        if (!rooms().contains(folder)) {
            if (!isOpen(folder))
                faults.append(QStringLiteral("%1: %2/ has no row in the table of rooms").arg(file, folder));
            continue;
        }
        const QVector<IncludeLine> includes = tree.includesOf(file);
        for (const IncludeLine &include : includes) {
            const QString fault = faultOf(folder, include);
            if (!fault.isEmpty())
                faults.append(QStringLiteral("%1:%2: %3 %4").arg(file).arg(include.number).arg(include.path, fault));
        }
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

void TestStructure::includesAreJudged_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("quoted");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("allowed");
    const auto row = [](const char *name, const char *folder, bool quoted, const char *path, bool allowed) {
        QTest::newRow(name) << QString::fromLatin1(folder) << quoted << QString::fromLatin1(path) << allowed;
    };
    row("a room includes itself", "data", true, "data/records.h", true);
    row("a room includes what its row names", "display", true, "filter/filterdialog.h", true);
    row("every room includes numbers", "data", true, "numbers/samebits.h", true);
    row("a form's header has no path", "filter", true, "ui_filterhelp.h", true);
    row("so has what moc makes", "host", true, "host.moc", true);
    row("Qt's headers are the compiler's to judge", "data", false, "QWidget", true);
    row("so are the system's in folders", "data", false, "sanitizer/lsan_interface.h", true);
    row("data does not reach the panel", "data", true, "display/columns.h", false);
    row("data does not reach the host's interface", "data", true, "interface/requester.h", false);
    row("the filter does not reach the panel", "filter", true, "display/columns.h", false);
    row("the host does not reach the panel", "host", true, "display/columns.h", false);
    row("the liveness of a source does not reach the window", "host/liveness", true, "host/mainwindow.h", false);
    row("the backend does not reach the interface", "backend", true, "interface/iomanager.h", false);
    row("the product does not reach its tests", "host", true, "tests/support/scriptedhost.h", false);
    row("no way leads around by another path", "data", true, "../display/columns.h", false);
    row("nor by angle brackets", "data", false, "display/columns.h", false);
    row("nor without a path", "data", true, "records.h", false);
    row("a stranger's host has none of our headers", "tests/contract", true, "interface/requester.h", false);
}

void TestStructure::includesAreJudged()
{
    QFETCH(const QString, folder);
    QFETCH(const bool, quoted);
    QFETCH(const QString, path);
    QFETCH(const bool, allowed);
    QCOMPARE(faultOf(folder, IncludeLine{1, quoted, path}).isEmpty(), allowed);
}

void TestStructure::configurationNeedsNoWidgets()
{
    for (const QString &file :
         {QStringLiteral("display/bodyconfiguration.h"), QStringLiteral("display/bodyconfiguration.cpp")}) {
        QVERIFY2(tree.files().contains(file), qPrintable(file));
        QCOMPARE(widgetsHeadersOf(tree, file), QStringList());
    }
}

void TestStructure::widgetsHeadersAreFound()
{
    QVERIFY(!widgetsHeadersOf(tree, QStringLiteral("display/datadisplay.h")).isEmpty()); // directly
    QVERIFY(!widgetsHeadersOf(tree, QStringLiteral("module/datadisplaymodule.cpp")).isEmpty()); // by our headers
    QVERIFY(isWidgetsHeader(QStringLiteral("QTableWidgetItem")));
    QVERIFY(!isWidgetsHeader(QStringLiteral("QString")));
}

void TestStructure::filesAreShort()
{
    QStringList faults;
    for (const QString &file : tree.files()) {
        const int lines = tree.textOf(file).count(QLatin1Char('\n'));
        if (lines > mostLines)
            faults.append(QStringLiteral("%1 has %2 lines").arg(file).arg(lines));
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

void TestStructure::classesAreSmall()
{
    QStringList faults;
    int classes = 0;
    for (const QString &file : tree.files()) {
        if (!file.endsWith(QLatin1String(".h")))
            continue;
        const QVector<ClassSize> sizes = classesOf(tree.textOf(file));
        classes += sizes.size();
        for (const ClassSize &size : sizes) {
            const QString fault = faultOf(size);
            if (!fault.isEmpty())
                faults.append(file + QStringLiteral(": ") + fault);
        }
    }
    QVERIFY(classes > 0);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

void TestStructure::classesAreCounted_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<int>("functions");
    QTest::addColumn<int>("members");
    const auto row = [](const char *name, const char *body, int functions, int members) {
        QTest::newRow(name) << QString::fromLatin1(body) << functions << members;
    };
    row("functions, declared and defined", "int f() const; int g() { return 1; } static void h(int = 2);", 3, 0);
    row("members with values", "int a = 0; int b{1}; QString c; std::array<int, 3> d{};", 0, 4);
    row("members in one line", "int a = 0, b = 1; int c{0}, d{1};", 0, 4);
    row("a value that calls is a member's", "int a = f(1); QTimer *b = new QTimer(this);", 0, 2);
    row("templates hide their parentheses", "std::function<void(int)> a; QMap<int, QVector<int>> b;", 0, 2);
    row("constructors and the destructor don't count", "explicit Sample(int); Sample() : a{1} { } ~Sample();", 0, 0);
    row("deleted functions don't count", "Sample(Sample &&) = delete; void f(int) = delete;", 0, 0);
    row("overrides don't count", "void f() override; int g() const noexcept final; bool h() override { return 1; }", 0,
        0);
    row("slots of form widgets don't count", "private slots: void on_pushButton_exit_clicked(); void other();", 1, 0);
    row("signals count", "signals: void changed(int value);", 1, 0);
    row("operators count", "bool operator==(const Sample &) const; int operator()(int); bool operator<(int) const;", 3,
        0);
    row("pure functions count", "virtual int f() = 0;", 1, 0);
    row("macros don't", "Q_OBJECT Q_PROPERTY(int a READ f) Q_DISABLE_COPY_MOVE(Sample) public: int f() const;", 1, 0);
    row("types don't", "using A = int; enum B { C, D }; friend class E; struct F; static_assert(1 == 1);", 0, 0);
    row("constants of the class are no members of objects", "static constexpr int a = 1; static int b;", 0, 0);
    row("comments and texts don't", "// void f();\n/* int a; */ QString b = \"int c; void d();\"; char e = '{';", 0, 2);
    row("nested classes count for themselves", "struct Inner { int a; void f(); int b; }; Inner c; void g();", 1, 1);
    row("templates of functions count", "template<typename T> void f(T t) { if (t) { g(); } }", 1, 0);
}

void TestStructure::classesAreCounted()
{
    QFETCH(const QString, body);
    QFETCH(const int, functions);
    QFETCH(const int, members);
    const QVector<ClassSize> sizes = classesOf(
        QStringLiteral("class Other;\nenum class Kind { A };\nclass Sample final : public Base<int> {\n%1\n};")
            .arg(body));
    QVERIFY(!sizes.isEmpty());
    QCOMPARE(sizes.last().name, QStringLiteral("Sample"));
    QCOMPARE(sizes.last().functions, functions);
    QCOMPARE(sizes.last().members, members);
}

void TestStructure::largeClassesAreRefused()
{
    QCOMPARE(faultOf(classesOf(classOf(mostFunctions, mostMembers)).value(0)), QString());
    QVERIFY(!faultOf(classesOf(classOf(mostFunctions + 1, 0)).value(0)).isEmpty());
    QVERIFY(!faultOf(classesOf(classOf(0, mostMembers + 1)).value(0)).isEmpty());
    const QString record = classOf(0, mostMembers + 1).replace(QLatin1String("class"), QLatin1String("struct"));
    QCOMPARE(faultOf(classesOf(record).value(0)), QString());
    QVERIFY(!faultOf(classesOf(record.chopped(3) + QStringLiteral("void f();};")).value(0)).isEmpty());
}

QTEST_APPLESS_MAIN(TestStructure)
#include "tst_structure.moc"
