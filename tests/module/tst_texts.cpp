// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "module/datadisplaymodule.h"
#include "tests/support/panelfixture.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QTranslator>
#include <QtTest>

namespace {

/// Marks every text with the context through which it went.
class MarkingTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return QLatin1String(context) + QLatin1Char('|') + QString::fromUtf8(text);
    }
};

QStringList headerTexts(const QTableWidget &table)
{
    QStringList texts;
    for (int column = 0; column < table.columnCount(); ++column)
        texts << table.horizontalHeaderItem(column)->text();
    return texts;
}

/// \a texts as a translator marks them for \a context.
QStringList marked(const char *context, const QStringList &texts)
{
    QStringList result;
    for (const QString &text : texts)
        result << QLatin1String(context) + QLatin1Char('|') + text;
    return result;
}

} // namespace

/// What the operator reads can be translated, and what goes to the log and the backend can't.
class TestTexts : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void entry();
    void form();
    void headers();
    void cells();
    void logAndCommands();

private:
    MarkingTranslator translator;
};

void TestTexts::initTestCase()
{
    QVERIFY(QCoreApplication::installTranslator(&translator));
}

void TestTexts::cleanupTestCase()
{
    QCoreApplication::removeTranslator(&translator);
}

void TestTexts::entry()
{
    PanelFixture fixture;
    QMainWindow window;
    DataDisplayModule module;
    module.setModuleProperty(QStringLiteral("CommandManager"), QVariant::fromValue<IOManager *>(&fixture.host));
    module.setModuleProperty(QStringLiteral("ModuleParent"), QVariant::fromValue<QWidget *>(&window));
    module.setModuleProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(&fixture.versions));
    const ModuleEntry &entry = *module.moduleEntries().first();
    const QString description =
        QStringLiteral("DataDisplayModule|Show tracking data of the 6DOF standard bodies and the 3DOF markers");
    QCOMPARE(module.moduleName(), QStringLiteral("DataDisplayModule|GUI Data Display"));
    QCOMPARE(module.moduleVersion(), QStringLiteral("v2.2.6"));
    QCOMPARE(entry.menuName, QStringLiteral("DataDisplayModule|&View"));
    QCOMPARE(entry.widget->windowTitle(), QStringLiteral("DataDisplayModule|Data Display"));
    QCOMPARE(entry.action->text(), QStringLiteral("DataDisplayModule|&Data"));
    QCOMPARE(entry.action->shortcut(), QKeySequence(QStringLiteral("DataDisplayModule|F10")));
    QCOMPARE(entry.action->statusTip(), description);
    QCOMPARE(entry.action->whatsThis(), description);
}

void TestTexts::form()
{
    PanelFixture fixture;
    const DataDisplay &panel = fixture.createPanel();
    QCOMPARE(panel.windowTitle(), QStringLiteral("DataDisplayWidget|Form"));
    QCOMPARE(fixture.table6d().whatsThis(),
             QStringLiteral("DataDisplayWidget|This is a list of all 'standard bodies' and their current tracking "
                            "states. All coordinates are room coordinates."));
    QCOMPARE(fixture.table3d().whatsThis(),
             QStringLiteral("DataDisplayWidget|This is a list of all 3d markers in room coordinates."));
    QCOMPARE(fixture.table6d().styleSheet(), QStringLiteral("QHeaderView::section{border: none; font: normal;}"));
}

void TestTexts::headers()
{
    PanelFixture fixture;
    fixture.createPanel();
    const QStringList bodies{
        QStringLiteral("Body ID"),   QStringLiteral("Name"),     QStringLiteral("Filter"),
        QStringLiteral("Sensor ID"), QStringLiteral("x [mm]"),   QStringLiteral("y [mm]"),
        QStringLiteral("z [mm]"),    QStringLiteral("rx [deg]"), QStringLiteral("ry [deg]"),
        QStringLiteral("rz [deg]"),  QStringLiteral("Battery"),  QStringLiteral("Temp. [\u00B0C]")};
    QCOMPARE(headerTexts(fixture.table6d()), marked("DataDisplay", bodies) + QStringList{QString()});
    const QStringList markers{QStringLiteral("3DOF ID"), QStringLiteral("x [mm]"), QStringLiteral("y [mm]"),
                              QStringLiteral("z [mm]")};
    QCOMPARE(headerTexts(fixture.table3d()), marked("DataDisplay", markers));
}

void TestTexts::cells()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.answer("body calibrated standard b01", "no");
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.table6d().item(0, BodyIdColumn)->whatsThis(),
             QStringLiteral("DataDisplay| This body is not yet calibrated."));
    fixture.send("3d", "3d 1 [12 1.0][1 2 3]");
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().item(0, MarkerIdColumn)->text(), QStringLiteral("DataDisplay|12"));
    QCOMPARE(fixture.table3d().item(0, MarkerXColumn)->text(), QStringLiteral("1.00"));
}

void TestTexts::logAndCommands()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.answerHead();
    fixture.refuse("output available 6di");
    fixture.createPanel();
    for (const QString &call : fixture.takeCalls() + fixture.reconfigure())
        QVERIFY2(!call.contains(QLatin1Char('|')), qPrintable(call));
}

QTEST_MAIN(TestTexts)
#include "tst_texts.moc"
