// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/filter/contexttranslator.h"
#include "tests/support/filterscript.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QMetaMethod>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTextDocumentFragment>

namespace {

/// What Qt had to say, line by line.
QStringList &qtMessages()
{
    static QStringList messages;
    return messages;
}

void keepQtMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support"))) // the platform without screens, of itself
        qtMessages() << text;
}

/// How many receivers each signal of \a sender has.
QMap<QByteArray, int> receiversOf(const QObject &sender)
{
    struct Open : QObject {
        using QObject::receivers;
    };
    QMap<QByteArray, int> counts;
    for (int i = 0; i < sender.metaObject()->methodCount(); ++i) {
        const QMetaMethod method = sender.metaObject()->method(i);
        const bool isCopy = method.attributes() & QMetaMethod::Cloned; // for the arguments that may be left out
        if (method.methodType() == QMetaMethod::Signal && !isCopy)
            counts.insert(method.methodSignature(),
                          (sender.*&Open::receivers)(QByteArray('2' + method.methodSignature()))); // as SIGNAL() has it
    }
    return counts;
}

} // namespace

class TestFilterDialogForm : public QObject {
    Q_OBJECT

private slots:
    void init();
    void dialogIsAsDesigned();
    void widgetsStandInOrder();
    void textsAndBuddies_data();
    void textsAndBuddies();
    void whatsThis_data();
    void whatsThis();
    void presetHelpIsRichText();
    void placeholdersOfTheForm();
    void tabKeyVisitsTheControlsInOrder();
    void slotsStandInOrder();
    void everyTextIsTranslatedInTheDialogsContext();
    void windowIconIsTheParents();
    void eachSlotIsConnectedOnce_data();
    void eachSlotIsConnectedOnce();
    void openingWarnsOfNothing();

private:
    ScriptedHost host;
    BackendVersions versions;
};

void TestFilterDialogForm::init()
{
    host = ScriptedHost();
    versions = backendVersion(2, 0);
}

void TestFilterDialogForm::dialogIsAsDesigned()
{
    const FilterDialog dialog(&host, nullptr, &versions);
    QCOMPARE(dialog.objectName(), QStringLiteral("FilterDialog"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Filter Settings"));
    QCOMPARE(dialog.whatsThis(), QStringLiteral("6DOF filter settings"));
    QCOMPARE(dialog.size(), QSize(307, 409));
    QCOMPARE(dialog.sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(dialog.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QVERIFY(dialog.isSizeGripEnabled());
    QVERIFY(!dialog.isVisible());
}

void TestFilterDialogForm::widgetsStandInOrder()
{
    const FilterDialog dialog(&host, nullptr, &versions);
    QLayout *layout = dialog.layout();
    QVERIFY(layout);
    QCOMPARE(layout->objectName(), QStringLiteral("verticalLayout"));
    QStringList names;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->widget())
            names << item->widget()->objectName();
        else if (item->layout())
            names << item->layout()->objectName();
        else
            names << QStringLiteral("(spacer)");
    }
    const QString expected = QStringLiteral(
        "label_body comboBox_body checkBox_active label_empty label_preset comboBox_preset label_strength "
        "doubleSpinBox_strength label_prediction spinBox_prediction label_mode comboBox_mode (spacer) label_error line "
        "horizontalLayout");
    QCOMPARE(names.join(QLatin1Char(' ')), expected);
    QCOMPARE(layout->itemAt(12)->spacerItem()->sizeHint(), QSize(20, 19));
    QCOMPARE(layout->itemAt(12)->spacerItem()->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));

    auto *line = dialog.findChild<QFrame *>(QStringLiteral("line"));
    QVERIFY(line);
    QCOMPARE(line->frameShape(), QFrame::HLine);
    QCOMPARE(line->frameShadow(), QFrame::Sunken);

    QLayout *buttons = layout->itemAt(15)->layout();
    QCOMPARE(buttons->count(), 3);
    QCOMPARE(buttons->itemAt(0)->widget(), dialog.findChild<QPushButton *>(QStringLiteral("pushButton_help")));
    QCOMPARE(buttons->itemAt(1)->spacerItem()->sizeHint(), QSize(40, 20));
    QCOMPARE(buttons->itemAt(1)->spacerItem()->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum));
    auto *exit = dialog.findChild<QPushButton *>(QStringLiteral("pushButton_exit"));
    QCOMPARE(buttons->itemAt(2)->widget(), exit);
    QVERIFY(!exit->isCheckable());
}

void TestFilterDialogForm::textsAndBuddies_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("buddy");
    const auto row = [](const char *name, const char *text, const char *buddy) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(text) << QString::fromLatin1(buddy);
    };
    row("label_body", "&body", "comboBox_body");
    row("checkBox_active", "&active", "");
    row("label_empty", "", "");
    row("label_preset", "&preset", "comboBox_preset");
    row("label_strength", "&strength", "doubleSpinBox_strength");
    row("label_prediction", "pre&diction [ms]", "spinBox_prediction");
    row("label_mode", "&mode", "comboBox_mode");
    row("label_error", "", "");
    row("pushButton_help", "&Help", "");
    row("pushButton_exit", "E&xit", "");
}

void TestFilterDialogForm::textsAndBuddies()
{
    QFETCH(QString, name);
    const FilterDialog dialog(&host, nullptr, &versions);
    const auto *widget = dialog.findChild<QWidget *>(name);
    QVERIFY(widget);
    QTEST(widget->property("text").toString(), "text");
    const auto *label = qobject_cast<const QLabel *>(widget);
    const QWidget *buddy = label ? label->buddy() : nullptr;
    QTEST(buddy ? buddy->objectName() : QString(), "buddy");
}

void TestFilterDialogForm::whatsThis_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *text) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(text);
    };
    row("label_body", "");
    row("comboBox_body", "Select body to adjust the 6DOF filter");
    row("checkBox_active", "");
    row("doubleSpinBox_strength", "Adjust 6DOF filter strength. Min. = 0.01, max. = 0.99");
    row("spinBox_prediction", "");
    row("comboBox_mode", "Adjust 6DOF filter mode");
    row("pushButton_help", "");
    row("pushButton_exit", "Close dialog");
}

void TestFilterDialogForm::whatsThis()
{
    QFETCH(QString, name);
    const FilterDialog dialog(&host, nullptr, &versions);
    const auto *widget = dialog.findChild<QWidget *>(name);
    QVERIFY(widget);
    QTEST(widget->whatsThis(), "text");
}

void TestFilterDialogForm::presetHelpIsRichText()
{
    const FilterDialog dialog(&host, nullptr, &versions);
    const QString html = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_preset"))->whatsThis();
    QVERIFY(html.startsWith(QStringLiteral("<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0//EN\" "
                                           "\"http://www.w3.org/TR/REC-html40/strict.dtd\">")));
    QVERIFY(html.contains(QStringLiteral("font-family:'MS Shell Dlg 2'; font-size:8.25pt; font-weight:400;")));
    QVERIFY(html.contains(QStringLiteral("font-style:italic;\">custom</span>")));
    QCOMPARE(QTextDocumentFragment::fromHtml(html).toPlainText(),
             QStringLiteral("Select a 6DOF filter preset or custom for your own settings.\n"
                            "A preset is a pre-definded set of strength, prediction and mode."));
}

void TestFilterDialogForm::placeholdersOfTheForm()
{
    // Limits within the form's leave its values where they are.
    host.answers = {{"filter6d limit strength_min", "0.0"},
                    {"filter6d limit strength_max", "0.99"},
                    {"filter6d limit prediction_min", "-0.066"},
                    {"filter6d limit prediction_max", "0.066"}};
    const FilterDialog dialog(&host, nullptr, &versions);
    const auto *strength = dialog.findChild<QDoubleSpinBox *>(QStringLiteral("doubleSpinBox_strength"));
    QCOMPARE(strength->decimals(), 2);
    QCOMPARE(strength->singleStep(), 0.01);
    QCOMPARE(strength->value(), 0.51);
    const auto *prediction = dialog.findChild<QSpinBox *>(QStringLiteral("spinBox_prediction"));
    QCOMPARE(prediction->value(), 33);
    QVERIFY(!dialog.findChild<QCheckBox *>(QStringLiteral("checkBox_active"))->isTristate());
    QVERIFY(!dialog.findChild<QComboBox *>(QStringLiteral("comboBox_preset"))->isEditable());
    QVERIFY(dialog.findChild<QComboBox *>(QStringLiteral("comboBox_preset"))->isEnabled());
}

void TestFilterDialogForm::tabKeyVisitsTheControlsInOrder()
{
    scriptFilters(host);
    FilterDialog dialog(&host, nullptr, &versions);
    QStringList visited;
    runDialog(dialog, 0, -1, [&dialog, &visited] {
        dialog.findChild<QWidget *>(QStringLiteral("comboBox_body"))->setFocus();
        for (int i = 0; i < 8; ++i) {
            QVERIFY(dialog.focusWidget());
            visited << dialog.focusWidget()->objectName();
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        }
    });
    QCOMPARE(visited.join(QLatin1Char(' ')),
             QStringLiteral("comboBox_body checkBox_active comboBox_preset doubleSpinBox_strength spinBox_prediction "
                            "comboBox_mode pushButton_help pushButton_exit"));
}

void TestFilterDialogForm::slotsStandInOrder()
{
    const QMetaObject &meta = FilterDialog::staticMetaObject;
    QByteArrayList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        signatures << meta.method(i).methodSignature();
    }
    const QByteArrayList expected{
        "update_and_exec(int,int)",
        "update_and_exec(int)",
        "update_and_exec()",
        "on_pushButton_help_clicked()",
        "on_comboBox_body_currentIndexChanged()",
        "on_checkBox_active_stateChanged(int)",
        "on_comboBox_preset_currentIndexChanged(int)",
        "on_doubleSpinBox_strength_editingFinished()",
        "on_spinBox_prediction_editingFinished()",
        "on_comboBox_mode_currentIndexChanged(int)",
        "on_pushButton_exit_clicked()",
    };
    QCOMPARE(signatures, expected);
    QCOMPARE(meta.method(meta.methodOffset()).access(), QMetaMethod::Public);
    QCOMPARE(meta.method(meta.methodOffset()).returnType(), static_cast<int>(QMetaType::Int));
}

void TestFilterDialogForm::everyTextIsTranslatedInTheDialogsContext()
{
    scriptFilters(host);
    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    FilterDialog dialog(&host, nullptr, &versions);
    runDialog(dialog, 2, -1, [] {});
    const QString error = dialog.findChild<QLabel *>(QStringLiteral("label_error"))->text();
    runDialog(dialog, 0, 0, [] {});
    QCoreApplication::removeTranslator(&translator);

    const QString context = QStringLiteral("FilterDialog");
    QCOMPARE(error, context);
    QCOMPARE(dialog.windowTitle(), context);
    QCOMPARE(dialog.whatsThis(), context);
    for (const char *name : {"label_body", "checkBox_active", "label_preset", "label_strength", "label_prediction",
                             "label_mode", "pushButton_help", "pushButton_exit"})
        QCOMPARE(dialog.findChild<QWidget *>(QLatin1String(name))->property("text").toString(), context);
    for (const char *name :
         {"comboBox_body", "comboBox_preset", "doubleSpinBox_strength", "comboBox_mode", "pushButton_exit"})
        QCOMPARE(dialog.findChild<QWidget *>(QLatin1String(name))->whatsThis(), context);
    QVERIFY(dialog.findChild<QComboBox *>(QStringLiteral("comboBox_body"))->currentText().startsWith(context));
}

void TestFilterDialogForm::windowIconIsTheParents()
{
    QPixmap picture(16, 16);
    picture.fill(Qt::green);
    QWidget parent;
    parent.setWindowIcon(QIcon(picture));
    const auto *dialog = new FilterDialog(&host, &parent, &versions);
    QCOMPARE(dialog->windowIcon().cacheKey(), parent.windowIcon().cacheKey());
    QVERIFY(dialog->testAttribute(Qt::WA_SetWindowIcon));
}

void TestFilterDialogForm::eachSlotIsConnectedOnce_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QByteArray>("signal");
    const auto row = [](const char *sender, const char *signal) {
        QTest::newRow(sender) << QString::fromLatin1(sender) << QByteArray(signal);
    };
    row("pushButton_help", "clicked(bool)");
    row("comboBox_body", "currentIndexChanged(int)");
    row("checkBox_active", "stateChanged(int)");
    row("comboBox_preset", "currentIndexChanged(int)");
    row("doubleSpinBox_strength", "editingFinished()");
    row("spinBox_prediction", "editingFinished()");
    row("comboBox_mode", "currentIndexChanged(int)");
    row("pushButton_exit", "clicked(bool)");
}

void TestFilterDialogForm::eachSlotIsConnectedOnce()
{
    QFETCH(QString, sender);
    QFETCH(QByteArray, signal);
    const FilterDialog dialog(&host, nullptr, &versions);
    auto *widget = dialog.findChild<QObject *>(sender);
    QVERIFY(widget);
    const QMap<QByteArray, int> before = receiversOf(*widget);
    QObject::disconnect(widget, nullptr, &dialog, nullptr);
    const QMap<QByteArray, int> after = receiversOf(*widget);
    QByteArrayList connected;
    for (auto found = before.cbegin(); found != before.cend(); ++found) {
        for (int i = after.value(found.key()); i < found.value(); ++i)
            connected << found.key();
    }
    QCOMPARE(connected, QByteArrayList{signal});
}

void TestFilterDialogForm::openingWarnsOfNothing()
{
    scriptFilters(host);
    qtMessages().clear();
    const QtMessageHandler before = qInstallMessageHandler(keepQtMessage);
    FilterDialog dialog(&host, nullptr, &versions);
    runDialog(dialog, 0, -1, [&dialog] {
        QTest::keyClick(dialog.findChild<QComboBox *>(QStringLiteral("comboBox_body")), Qt::Key_Down);
    });
    qWarning("heard");
    qInstallMessageHandler(before);
    QCOMPARE(qtMessages().join(QLatin1Char('\n')), QStringLiteral("heard"));
}

QTEST_MAIN(TestFilterDialogForm)
#include "tst_filterdialog_form.moc"
