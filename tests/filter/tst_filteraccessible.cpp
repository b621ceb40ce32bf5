// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "filter/filterhelp.h"
#include "tests/support/filterscript.h"

#include <QAccessible>
#include <QDialog>
#include <QTest>

namespace {

QAccessibleInterface *accessible(const QDialog &dialog, const QString &name)
{
    return QAccessible::queryAccessibleInterface(dialog.findChild<QWidget *>(name));
}

/// What a screen reader calls the field \a name of \a dialog: the label that points to it goes before its own name,
/// which for a combo box is its current text where AT-SPI is spoken.
QString spokenName(const QDialog &dialog, const QString &name)
{
    const QAccessibleInterface *field = accessible(dialog, name);
    if (!field)
        return QStringLiteral("<nothing>");
    const auto labels = field->relations(QAccessible::Label);
    return labels.isEmpty() ? field->text(QAccessible::Name) : labels.first().first->text(QAccessible::Name);
}

} // namespace

/// What the dialogs are to somebody who hears them.
class TestFilterAccessible : public QObject {
    Q_OBJECT

private slots:
    void settingsHaveNames_data();
    void settingsHaveNames();
    void buttonsHaveNames();

private:
    ScriptedHost host;
    BackendVersions versions = backendVersion(2, 0);
};

void TestFilterAccessible::settingsHaveNames_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *sentence, const char *field, const char *name, const QString &value) {
        QTest::newRow(sentence) << QString::fromLatin1(field) << QString::fromLatin1(name) << value;
    };
    const QLocale locale; // numbers are said as they are shown
    row("the body", "comboBox_body", "body", QStringLiteral("standard body 01 (Left hand)"));
    row("the active switch", "checkBox_active", "active", QString());
    row("the preset", "comboBox_preset", "preset", QStringLiteral("Custom"));
    row("the strength", "doubleSpinBox_strength", "strength", locale.toString(0.25, 'f', 2));
    row("the prediction, with its unit", "spinBox_prediction", "prediction [ms]", locale.toString(12));
    row("the mode", "comboBox_mode", "mode", QStringLiteral("Fast"));
}

void TestFilterAccessible::settingsHaveNames()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    scriptFilters(host);
    for (const char *available : {"yes", "no"}) { // whatever the fields hold
        host.answers["filter6d available standard"] = available;
        FilterDialog dialog(&host, nullptr, &versions);
        bool heard = false;
        runDialog(dialog, 0, -1, [&] {
            QTEST(spokenName(dialog, field), "name");
            QTEST(dialog.findChild<QWidget *>(field)->accessibleName(), "name"); // for those who don't ask labels
            if (qstrcmp(available, "yes") == 0)
                QCOMPARE(accessible(dialog, field)->text(QAccessible::Value), value);
            heard = true;
        });
        QVERIFY(heard);
    }
}

void TestFilterAccessible::buttonsHaveNames()
{
    const FilterDialog dialog(&host, nullptr, &versions);
    QCOMPARE(spokenName(dialog, QStringLiteral("pushButton_help")), QStringLiteral("Help"));
    QCOMPARE(spokenName(dialog, QStringLiteral("pushButton_exit")), QStringLiteral("Exit"));
    const FilterHelp help;
    QCOMPARE(spokenName(help, QStringLiteral("pushButton_exit")), QStringLiteral("Exit"));
    QVERIFY(spokenName(help, QStringLiteral("label_2")).startsWith(QLatin1String("Strength\nSets the strength")));
    QVERIFY(spokenName(help, QStringLiteral("label")).startsWith(QLatin1String("Adaptive fast\nAutomatically")));
}

QTEST_MAIN(TestFilterAccessible)
#include "tst_filteraccessible.moc"
