// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/support/filterscript.h"
#include "tests/support/typing.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <memory>

Q_DECLARE_METATYPE(Qt::Key)

class TestFilterDialogKeys : public QObject {
    Q_OBJECT

private slots:
    void init();
    void enterEndsAnEditOnly_data();
    void enterEndsAnEditOnly();
    void enterClicksTheButtonWithTheFocus_data() { enterEndsAnEditOnly_data(); }
    void enterClicksTheButtonWithTheFocus();
    void closingEndsAnEdit_data();
    void closingEndsAnEdit();
    void mnemonicsReachTheirControls_data();
    void mnemonicsReachTheirControls();
    void exitCloses_data();
    void exitCloses();
    void nothingIsSentBeforeTheFirstOpening();
    void nothingIsSentWithoutBodies();
    void nothingIsSentWhenLocked();

private:
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    /// Opens the dialog for standard body \a body, forgets the calls so far and lets \a drive act.
    void open(int body, const std::function<void()> &drive)
    {
        dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions);
        runDialog(*dialog, 0, body, [this, drive] {
            host.takeCalls();
            drive();
        });
    }

    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<FilterDialog> dialog;
};

void TestFilterDialogKeys::init()
{
    dialog.reset();
    host = ScriptedHost();
    scriptFilters(host);
    versions = backendVersion(2, 0);
}

void TestFilterDialogKeys::enterEndsAnEditOnly_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter of the number block") << Qt::Key_Enter;
}

void TestFilterDialogKeys::enterEndsAnEditOnly()
{
    QFETCH(Qt::Key, key);
    open(0, [this, key] {
        auto *strength = child<QDoubleSpinBox>("doubleSpinBox_strength");
        replaceNumber(strength, QStringLiteral("0.6"));
        QTest::keyClick(strength, key, key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
        QCOMPARE(host.takeCalls(), QByteArrayList{"sendCommand body filter6d_strength standard b01 0.600000"});
        QCOMPARE(QApplication::activeModalWidget(), dialog.get()); // and no help over it
        QVERIFY(dialog->isVisible());
    });
}

void TestFilterDialogKeys::enterClicksTheButtonWithTheFocus()
{
    QFETCH(Qt::Key, key);
    bool closed = false;
    open(0, [this, key, &closed] {
        auto *exit = child<QPushButton>("pushButton_exit");
        exit->setFocus();
        QTest::keyClick(exit, key, key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
        QTRY_VERIFY(!dialog->isVisible());
        closed = true;
    });
    QVERIFY(closed);
}

void TestFilterDialogKeys::closingEndsAnEdit_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("alt");
    QTest::newRow("Escape sends what was typed") << Qt::Key_Escape << false;
    QTest::newRow("Alt+X sends what was typed") << Qt::Key_X << true;
}

void TestFilterDialogKeys::closingEndsAnEdit()
{
    QFETCH(Qt::Key, key);
    QFETCH(bool, alt);
    open(0, [this, key, alt] {
        auto *strength = child<QDoubleSpinBox>("doubleSpinBox_strength");
        replaceNumber(strength, QStringLiteral("0.6"));
        QTest::keyClick(strength, key, alt ? Qt::AltModifier : Qt::NoModifier);
        QTRY_VERIFY(!dialog->isVisible());
    });
    QCOMPARE(host.callsOf("sendCommand").value(0), QByteArray("body filter6d_strength standard b01 0.600000"));
}

void TestFilterDialogKeys::mnemonicsReachTheirControls_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("name");
    QTest::newRow("Alt+B: body") << Qt::Key_B << QStringLiteral("comboBox_body");
    QTest::newRow("Alt+P: preset") << Qt::Key_P << QStringLiteral("comboBox_preset");
    QTest::newRow("Alt+S: strength") << Qt::Key_S << QStringLiteral("doubleSpinBox_strength");
    QTest::newRow("Alt+D: prediction") << Qt::Key_D << QStringLiteral("spinBox_prediction");
    QTest::newRow("Alt+M: mode") << Qt::Key_M << QStringLiteral("comboBox_mode");
}

void TestFilterDialogKeys::mnemonicsReachTheirControls()
{
    QFETCH(Qt::Key, key);
    QFETCH(QString, name);
    open(-1, [this, key, name] {
        child<QWidget>("pushButton_exit")->setFocus();
        pressAlt(dialog.get(), key);
        QTRY_COMPARE(dialog->focusWidget()->objectName(), name);
        QVERIFY(host.calls.isEmpty());
        pressAlt(dialog.get(), Qt::Key_A);
        QTRY_VERIFY(!child<QCheckBox>("checkBox_active")->isChecked());
        QVERIFY(host.calls.contains("sendCommand body filter6d_enabled standard b01 no"));
    });
}

void TestFilterDialogKeys::exitCloses_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("a click on Exit") << QStringLiteral("click");
    QTest::newRow("Alt+X") << QStringLiteral("alt");
    QTest::newRow("Return on Exit") << QStringLiteral("return");
    QTest::newRow("Escape") << QStringLiteral("escape");
    QTest::newRow("the window's own close button") << QStringLiteral("close");
}

void TestFilterDialogKeys::exitCloses()
{
    QFETCH(QString, way);
    for (const char *available : {"yes", "no"}) { // whether or not there is a filter
        host.answers["filter6d available standard"] = available;
        bool closed = false;
        open(0, [this, way, &closed] {
            if (way == QLatin1String("click"))
                QTest::mouseClick(child<QPushButton>("pushButton_exit"), Qt::LeftButton);
            else if (way == QLatin1String("alt"))
                pressAlt(dialog.get(), Qt::Key_X);
            else if (way == QLatin1String("return")) {
                child<QPushButton>("pushButton_exit")->setFocus();
                QTest::keyClick(child<QPushButton>("pushButton_exit"), Qt::Key_Return);
            } else if (way == QLatin1String("escape"))
                QTest::keyClick(dialog.get(), Qt::Key_Escape);
            else
                dialog->close();
            QTRY_VERIFY(!dialog->isVisible());
            closed = true;
        });
        QVERIFY(closed);
        QCOMPARE(dialog->result(), static_cast<int>(QDialog::Rejected));
        QVERIFY(host.calls.isEmpty());
    }
}

void TestFilterDialogKeys::nothingIsSentBeforeTheFirstOpening()
{
    dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions);
    host.takeCalls();
    for (const char *slot : {"on_comboBox_body_currentIndexChanged", "on_doubleSpinBox_strength_editingFinished",
                             "on_spinBox_prediction_editingFinished"})
        QVERIFY(QMetaObject::invokeMethod(dialog.get(), slot));
    for (const char *slot : {"on_checkBox_active_stateChanged", "on_comboBox_preset_currentIndexChanged",
                             "on_comboBox_mode_currentIndexChanged"})
        QVERIFY(QMetaObject::invokeMethod(dialog.get(), slot, Q_ARG(int, 0)));
    QVERIFY(host.calls.isEmpty());
}

void TestFilterDialogKeys::nothingIsSentWithoutBodies()
{
    host.answers["body number_of_bodies standard"] = "0";
    open(-1, [this] {
        QCOMPARE(child<QComboBox>("comboBox_body")->count(), 0);
        QVERIFY(child<QComboBox>("comboBox_body")->isEnabled());
        QVERIFY(!child<QCheckBox>("checkBox_active")->isChecked());
        QCOMPARE(child<QComboBox>("comboBox_preset")->currentIndex(), -1);
        QCOMPARE(child<QDoubleSpinBox>("doubleSpinBox_strength")->value(), 0.01); // 0.0, in the range
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), 0);
        QCOMPARE(child<QComboBox>("comboBox_mode")->count(), 0);
    });
    QVERIFY(host.calls.isEmpty());
}

void TestFilterDialogKeys::nothingIsSentWhenLocked()
{
    host.answers["config is_changeable"] = "no";
    open(0, [this] {
        QTest::mouseClick(child<QCheckBox>("checkBox_active"), Qt::LeftButton, {}, QPoint(8, 8));
        pressAlt(dialog.get(), Qt::Key_A);
        pressAlt(dialog.get(), Qt::Key_S);
        QTest::keyClicks(dialog.get(), QStringLiteral("0.5\t0,5\t7\t"));
    });
    QVERIFY(host.calls.isEmpty());
}

QTEST_MAIN(TestFilterDialogKeys)
#include "tst_filterdialog_keys.moc"
