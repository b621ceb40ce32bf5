// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/faultybackend.h"
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "host/host.h"
#include "tests/support/typing.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <functional>

using namespace backend;
using namespace host;

namespace {

constexpr int filterColumn = 2;

QWidget *openMenu()
{
    return QApplication::activePopupWidget();
}

/// The module's dialog, known to the host by nothing but its class name.
QWidget *openDialog()
{
    QWidget *dialog = QApplication::activeModalWidget();
    return dialog && dialog->inherits("FilterDialog") ? dialog : nullptr;
}

template<typename Widget> Widget *part(QWidget *dialog, const char *name)
{
    return dialog->findChild<Widget *>(QLatin1String(name));
}

} // namespace

/// The filter settings as the operator uses them: by real clicks and keys in the real module's panel.
class TestFilterSettings : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void changesThePreset();
    void followsTheActiveSwitch();
    void sendsStrengthAndPredictionOfACustomPreset();
    void opensTheBodyBehindTheHeadRow();
    void hidesTheStrengthOfAHybridPreset();
    void hidesTheSwitchOfABodyWithASensor();
    void offersFewPresetsToAnInertialBodyOfAnOldBackend();
    void showsWhatCannotBeChanged_data();
    void showsWhatCannotBeChanged();
    void hasNoMenuOnAnOldBackend();
    void logsWhatFails_data();
    void logsWhatFails();
    void survivesWhatTheOperatorDoesMeanwhile_data();
    void survivesWhatTheOperatorDoesMeanwhile();

private:
    void start(const QString &scenario, const QVector<FaultRule> &faults = {});
    QTableWidget *table() const { return host->window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d")); }
    void rightClick(int row) const;
    /// Opens the dialog of \a row through the menu and lets \a act do something in it; the dialog is closed then.
    bool withDialog(int row, const std::function<void(QWidget *)> &act);
    StandardBody body(int number) const { return backend->scenario().bodies[number - 1]; }

    std::unique_ptr<QTemporaryDir> home;
    std::shared_ptr<SimulatedBackend> backend;
    std::unique_ptr<Host> host;
};

void TestFilterSettings::init()
{
    home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", home->path().toUtf8());
}

void TestFilterSettings::cleanup()
{
    host.reset();
    backend.reset();
    QVERIFY(!QApplication::activeModalWidget());
}

void TestFilterSettings::start(const QString &scenario, const QVector<FaultRule> &faults)
{
    const ScenarioResult loaded = loadScenario(scenario);
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    backend = std::make_shared<SimulatedBackend>(*loaded.scenario);
    std::shared_ptr<TrackingBackend> connected = backend;
    if (!faults.isEmpty()) {
        connected = std::make_shared<FaultyBackend>(std::make_unique<SimulatedBackend>(*loaded.scenario), faults,
                                                    std::chrono::milliseconds(0));
    }
    host = std::make_unique<Host>(HostOptions(), connected, QStringList(QStringLiteral(MODULES)));
    host->window().resize(1280, 560);
    host->window().show();
    QVERIFY(QTest::qWaitForWindowExposed(&host->window()));
    QVERIFY(table());
    QTRY_VERIFY(table()->rowCount() > 0);
}

/// Through the window system, so that the click makes its context menu event.
void TestFilterSettings::rightClick(int row) const
{
    const QTableWidgetItem *item = table()->item(row, filterColumn);
    const QPoint place = table()->viewport()->mapTo(&host->window(), table()->visualItemRect(item).center());
    QTest::mouseClick(host->window().windowHandle(), Qt::RightButton, Qt::NoModifier, place);
}

bool TestFilterSettings::withDialog(int row, const std::function<void(QWidget *)> &act)
{
    bool menuDone = false;
    bool dialogDone = false;
    QTimer poll; // menu and dialog run event loops of their own, so that nothing can wait for them in line
    connect(&poll, &QTimer::timeout, &poll, [&] {
        if (QWidget *menu = openMenu(); menu && !menuDone) {
            menuDone = true;
            QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
        } else if (QWidget *dialog = openDialog(); dialog && dialog->isActiveWindow() && !dialogDone) {
            dialogDone = true;
            const QPointer<QWidget> watch(dialog);
            act(dialog);
            if (watch)
                QTest::keyClick(dialog, Qt::Key_Escape);
        }
    });
    poll.start(5);
    rightClick(row);
    return QTest::qWaitFor([&] { return dialogDone && !openDialog(); });
}

void TestFilterSettings::changesThePreset()
{
    start(QStringLiteral("default"));
    QCOMPARE(body(1).filter.preset, QByteArray("preset6d_default"));
    QVERIFY(withDialog(0, [](QWidget *dialog) {
        auto *preset = part<QComboBox>(dialog, "comboBox_preset");
        QVERIFY(preset);
        preset->setFocus();
        const int before = preset->currentIndex();
        QTest::keyClick(preset, Qt::Key_Down);
        QCOMPARE(preset->currentIndex(), before + 1);
    }));
    QCOMPARE(body(1).filter.preset, QByteArray("preset6d_med_pred"));
}

void TestFilterSettings::followsTheActiveSwitch()
{
    start(QStringLiteral("default"));
    QCOMPARE(table()->item(0, filterColumn)->text(), QStringLiteral("active"));
    const auto pressAltA = [](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_A, Qt::AltModifier); };
    QVERIFY(withDialog(0, [&](QWidget *dialog) {
        pressAltA(dialog);
        QTRY_VERIFY(!part<QCheckBox>(dialog, "checkBox_active")->isChecked());
    }));
    QVERIFY(!body(1).filter.enabled);
    QTRY_COMPARE(table()->item(0, filterColumn)->text(), QString());
    QVERIFY(withDialog(0, [&](QWidget *dialog) {
        pressAltA(dialog);
        QTRY_VERIFY(part<QCheckBox>(dialog, "checkBox_active")->isChecked());
    }));
    QVERIFY(body(1).filter.enabled);
    QTRY_COMPARE(table()->item(0, filterColumn)->text(), QStringLiteral("active"));
}

void TestFilterSettings::sendsStrengthAndPredictionOfACustomPreset()
{
    start(QStringLiteral("default"));
    QCOMPARE(body(2).filter.preset, QByteArray("preset6d_custom"));
    QVERIFY(withDialog(1, [](QWidget *dialog) {
        auto *strength = part<QDoubleSpinBox>(dialog, "doubleSpinBox_strength");
        QVERIFY(strength->isEnabled());
        replaceNumber(strength, QStringLiteral("0.25"));
        QTest::keyClick(strength, Qt::Key_Tab);
        auto *prediction = part<QSpinBox>(dialog, "spinBox_prediction");
        replaceNumber(prediction, QStringLiteral("25"));
        QTest::keyClick(prediction, Qt::Key_Tab);
    }));
    QCOMPARE(body(2).filter.strength, 0.25);
    QCOMPARE(body(2).filter.prediction, 0.025);
}

void TestFilterSettings::opensTheBodyBehindTheHeadRow()
{
    start(QStringLiteral("heads"));
    QCOMPARE(table()->item(0, 0)->text(), QStringLiteral("MUH"));
    QVERIFY(withDialog(1, [](QWidget *dialog) {
        auto *bodies = part<QComboBox>(dialog, "comboBox_body");
        QCOMPARE(bodies->count(), 1);
        QVERIFY(!bodies->isEnabled());
        QCOMPARE(bodies->currentData().toString(), QStringLiteral("standard b01"));
    }));
}

void TestFilterSettings::hidesTheStrengthOfAHybridPreset()
{
    start(QStringLiteral("hybrid"));
    QVERIFY(backend->scenario().bodies[0].filter.preset.contains("hybrid"));
    QVERIFY(withDialog(0, [](QWidget *dialog) {
        QVERIFY(!part<QDoubleSpinBox>(dialog, "doubleSpinBox_strength")->isVisible());
        QVERIFY(!part<QLabel>(dialog, "label_strength")->isVisible());
        QVERIFY(!part<QCheckBox>(dialog, "checkBox_active")->isVisible()); // the body carries a sensor
        QVERIFY(part<QSpinBox>(dialog, "spinBox_prediction")->isVisible());
    }));
}

void TestFilterSettings::hidesTheSwitchOfABodyWithASensor()
{
    start(QStringLiteral("sensors"));
    for (const int row : {0, 4}) {
        const bool hasSensor = !table()->item(row, 3)->text().isEmpty();
        QCOMPARE(hasSensor, row == 0);
        QVERIFY(withDialog(row, [hasSensor](QWidget *dialog) {
            QCOMPARE(part<QCheckBox>(dialog, "checkBox_active")->isVisible(), !hasSensor);
        }));
    }
}

void TestFilterSettings::offersFewPresetsToAnInertialBodyOfAnOldBackend()
{
    start(QStringLiteral("old-global-lists"));
    const Scenario scenario = backend->scenario();
    int inertial = 0;
    for (int number = 1; number <= scenario.bodies.size(); ++number) {
        if (sensorOfBody(scenario, number) && scenario.bodies[number - 1].calibrated)
            inertial = number;
    }
    QVERIFY(inertial > 0);
    QVERIFY(withDialog(inertial - 1, [](QWidget *dialog) {
        const auto *preset = part<QComboBox>(dialog, "comboBox_preset");
        QStringList ids;
        for (int i = 0; i < preset->count(); ++i)
            ids.append(preset->itemData(i).toString());
        QCOMPARE(ids, QStringList({QStringLiteral("preset6d_default"), QStringLiteral("preset6d_med_pred")}));
    }));
}

void TestFilterSettings::showsWhatCannotBeChanged_data()
{
    QTest::addColumn<QString>("error");
    QTest::newRow("locked") << QString();
    QTest::newRow("no-filter") << QStringLiteral(
        "<b><font color=red>6DOF filter for standard bodies not available</font></b>");
}

void TestFilterSettings::showsWhatCannotBeChanged()
{
    QFETCH(QString, error);
    start(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(withDialog(0, [&](QWidget *dialog) {
        QVERIFY(!part<QComboBox>(dialog, "comboBox_preset")->isEnabled());
        QVERIFY(!part<QCheckBox>(dialog, "checkBox_active")->isEnabled());
        QCOMPARE(part<QLabel>(dialog, "label_error")->text(), error);
    }));
}

void TestFilterSettings::hasNoMenuOnAnOldBackend()
{
    start(QStringLiteral("old-1.11"));
    QVERIFY(table()->isColumnHidden(filterColumn));
    bool opened = false;
    QTimer poll;
    connect(&poll, &QTimer::timeout, &poll, [&] {
        if (QWidget *menu = openMenu()) {
            opened = true;
            menu->close();
        }
    });
    poll.start(0);
    const QTableWidgetItem *item = table()->item(0, 1);
    const QPoint place = table()->viewport()->mapTo(&host->window(), table()->visualItemRect(item).center());
    QTest::mouseClick(host->window().windowHandle(), Qt::RightButton, Qt::NoModifier, place);
    QCoreApplication::processEvents();
    QVERIFY(!opened);
}

void TestFilterSettings::logsWhatFails_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("key"); // pressed with Alt in the dialog
    QTest::addColumn<QStringList>("failures");
    const QString body = QStringLiteral(" for body standard b02");
    QStringList questions;
    for (int preset = 0; preset < 5; ++preset)
        questions.append(QStringLiteral("get filter 6d preset id available"));
    for (const char *value : {"preset", "strength", "prediction"})
        questions.append(QStringLiteral("get filter 6d ") + QLatin1String(value) + body);
    for (int mode = 0; mode < 6; ++mode)
        questions.append(QStringLiteral("get filter 6d mode id available"));
    questions.append(QStringLiteral("get filter 6d mode") + body);
    QTest::newRow("questions and commands")
        << QStringLiteral("body filter6d_*") << int(Qt::Key_A)
        << questions + QStringList(QStringLiteral("activate/deactivate filter 6d") + body) + questions;
    QTest::newRow("the switch") << QStringLiteral("body filter6d_enabled standard b02 no") << int(Qt::Key_A)
                                << QStringList(QStringLiteral("activate/deactivate filter 6d") + body);
    QTest::newRow("the strength") << QStringLiteral("body filter6d_strength standard b02 *") << int(Qt::Key_S)
                                  << QStringList(QStringLiteral("set filter 6d strength") + body);
    QTest::newRow("the prediction") << QStringLiteral("body filter6d_prediction standard b02 *") << int(Qt::Key_D)
                                    << QStringList(QStringLiteral("set filter 6d prediction") + body);
}

void TestFilterSettings::logsWhatFails()
{
    QFETCH(QString, pattern);
    QFETCH(int, key);
    QFETCH(QStringList, failures);
    const std::optional<FaultRule> rule = parseFaultRule(pattern);
    QVERIFY(rule);
    start(QStringLiteral("default"), {*rule});
    const QString announcement = QStringLiteral("Error: Unable to ");
    QStringList logged;
    const QObject listening; // ends before the list does, while the host lives on
    connect(&host->log(), &HostLog::entryAdded, &listening, [&](const LogEntry &entry) {
        if (entry.text.startsWith(announcement))
            logged.append(entry.text.mid(announcement.size()));
    });
    QVERIFY(withDialog(1, [key](QWidget *dialog) {
        const auto *active = part<QCheckBox>(dialog, "checkBox_active");
        const bool before = active->isChecked();
        QTest::keyClick(dialog, Qt::Key(key), Qt::AltModifier);
        if (key == Qt::Key_A)
            QTRY_VERIFY(active->isChecked() != before); // a button that is clicked by its key stays down for a moment
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Up);
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    }));
    QTRY_COMPARE(logged, failures);
}

void TestFilterSettings::survivesWhatTheOperatorDoesMeanwhile_data()
{
    QTest::addColumn<QString>("deed");
    for (const char *deed : {"disconnect", "another scenario", "disconnect and connect", "quit"})
        QTest::newRow(deed) << QString::fromLatin1(deed);
}

void TestFilterSettings::survivesWhatTheOperatorDoesMeanwhile()
{
    QFETCH(QString, deed);
    start(QStringLiteral("default"));
    QVERIFY(withDialog(5, [&](QWidget *) {
        if (deed == QLatin1String("disconnect")) {
            host->backendSession().disconnectBackend();
        } else if (deed == QLatin1String("another scenario")) {
            const ScenarioResult loaded = loadScenario(QStringLiteral("no-filter"));
            host->backendSession().change(std::make_shared<SimulatedBackend>(*loaded.scenario));
        } else if (deed == QLatin1String("disconnect and connect")) {
            host->backendSession().disconnectBackend();
            host->backendSession().reconnect();
        } else {
            host->shutDown();
        }
    }));
    QCoreApplication::processEvents();
    if (deed == QLatin1String("quit")) {
        QVERIFY(!table());
        return;
    }
    if (deed == QLatin1String("disconnect"))
        host->backendSession().reconnect();
    QTRY_VERIFY(table()->rowCount() > 0);
    const QString before = table()->item(0, 4)->text();
    QTRY_VERIFY(table()->item(0, 4)->text() != before); // and data flow on
}

QTEST_MAIN(TestFilterSettings)
#include "tst_filtersettings.moc"
