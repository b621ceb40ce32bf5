// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/endurance/faultyhost.h"
#include "tests/support/dialogactions.h"
#include "tests/support/filterscript.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLoggingCategory>
#include <QSpinBox>
#include <QtTest>

#include <limits>
#include <memory>

namespace {

/// What the log says when the query or command \a command fails; empty where that is silent. \a perBody: the lists are
/// read for a body, and not for all.
QByteArray messageFor(const QByteArray &command, bool perBody)
{
    struct Message {
        QByteArray begin;
        QByteArray action;
        bool ofLists;
    };
    static const QVector<Message> messages{
        {"filter6d number_of_presets", "get number of filter 6d presets", true},
        {"filter6d preset_id ", "get filter 6d preset id", true},
        {"body filter6d_preset_available ", "get filter 6d preset id available", true},
        {"filter6d preset_desc ", "get filter 6d preset description", true},
        {"filter6d number_of_modes", "get number of filter 6d modes", true},
        {"filter6d mode_id ", "get filter 6d mode id", true},
        {"body filter6d_mode_available ", "get filter 6d mode id available", true},
        {"filter6d mode_desc ", "get filter 6d mode description", true},
        {"body filter6d_preset standard b01 ", "set filter 6d preset for body standard b01", false},
        {"body filter6d_preset ", "get filter 6d preset for body standard b01", false},
        {"body filter6d_strength standard b01 ", "set filter 6d strength for body standard b01", false},
        {"body filter6d_strength ", "get filter 6d strength for body standard b01", false},
        {"body filter6d_prediction standard b01 ", "set filter 6d prediction for body standard b01", false},
        {"body filter6d_prediction ", "get filter 6d prediction for body standard b01", false},
        {"body filter6d_mode standard b01 ", "set filter 6d mode for body standard b01", false},
        {"body filter6d_mode ", "get filter 6d mode for body standard b01", false},
        {"body filter6d_enabled standard b01 ", "activate/deactivate filter 6d for body standard b01", false},
    };
    for (const Message &message : messages) {
        if (command.startsWith(message.begin))
            return !message.ofLists || perBody ? "log Error: Unable to " + message.action : QByteArray();
    }
    return {};
}

QByteArrayList expectedRecord(const QByteArrayList &record, bool perBody)
{
    QByteArrayList expected;
    for (const QByteArray &entry : record) {
        if (!entry.startsWith("FAILED "))
            continue;
        expected << entry;
        const QByteArray message = messageFor(entry.mid(7), perBody);
        if (!message.isEmpty())
            expected << message;
    }
    return expected;
}

} // namespace

/// From some call on the backend fails for good, at every call of an opening of the dialog and of each of its actions.
class TestTortureDialog : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void opening_data();
    void opening();
    void action_data();
    void action();

private:
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    void prepare();
    void compareDefaults(const QSet<QByteArray> &failed);
    QStringList everything() const;

    BackendVersions versions;
    std::unique_ptr<ScriptedHost> host;
    std::unique_ptr<FaultyHost> faulty;
    std::unique_ptr<FilterDialog> dialog;
};

void TestTortureDialog::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
}

void TestTortureDialog::prepare()
{
    dialog.reset();
    host = std::make_unique<ScriptedHost>();
    scriptFilters(*host);
    host->answers["body calibrated standard b03"] = "no"; // so that the messages are all about the first body
    faulty = std::make_unique<FaultyHost>(*host);
}

QStringList TestTortureDialog::everything() const
{
    QStringList texts;
    const auto boxes = dialog->findChildren<QComboBox *>();
    for (const QComboBox *const box : boxes) {
        texts << box->currentText() + (box->isEnabled() ? QStringLiteral("+") : QStringLiteral("-"));
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
    }
    const auto *const strength = child<QDoubleSpinBox>("doubleSpinBox_strength");
    const auto *const prediction = child<QSpinBox>("spinBox_prediction");
    texts << QString::number(strength->value()) << QString::number(strength->minimum())
          << QString::number(strength->maximum()) << QString::number(prediction->value());
    texts << QString::number(child<QCheckBox>("checkBox_active")->isChecked());
    return texts;
}

/// What the controls show for the queries of the body that had no answer.
void TestTortureDialog::compareDefaults(const QSet<QByteArray> &failed)
{
    if (failed.contains("body filter6d_enabled standard b01"))
        QVERIFY(!child<QCheckBox>("checkBox_active")->isChecked());
    if (failed.contains("body filter6d_preset standard b01"))
        QVERIFY(!child<QComboBox>("comboBox_preset")->isEnabled());
    if (failed.contains("body filter6d_strength standard b01")) {
        const auto *const strength = child<QDoubleSpinBox>("doubleSpinBox_strength");
        QCOMPARE(strength->value(), qBound(strength->minimum(), 0.0, strength->maximum()));
    }
    if (failed.contains("body filter6d_prediction standard b01"))
        QCOMPARE(child<QSpinBox>("spinBox_prediction")->value(), 0);
    if (failed.contains("body filter6d_mode standard b01"))
        QCOMPARE(child<QComboBox>("comboBox_mode")->currentIndex(), -1);
}

void TestTortureDialog::opening_data()
{
    QTest::addColumn<BackendVersions>("version");
    for (const int minor : {11, 12, 20, 21})
        QTest::addRow("1.%d", minor) << backendVersion(1, minor);
    QTest::newRow("2.0") << backendVersion(2, 0);
}

void TestTortureDialog::opening()
{
    QFETCH(const BackendVersions, version);
    versions = version;
    const bool perBody = version.backendMajor > 1 || version.backendMinor > 20;
    QStringList complete;
    int calls = 0;
    const auto open = [&](const std::function<void()> &look) {
        dialog = std::make_unique<FilterDialog>(faulty.get(), nullptr, &versions);
        const int construction = faulty->record.size();
        runDialog(*dialog, 0, -1, look);
        return construction;
    };
    prepare();
    open([&] { complete = everything(); });
    calls = faulty->count;
    QVERIFY(calls > 4);
    for (int k = 1; k <= calls; ++k) {
        prepare();
        faulty->fail(k, std::numeric_limits<int>::max());
        bool looked = false;
        const int construction = open([&] {
            QSet<QByteArray> failed;
            for (const QByteArray &entry : qAsConst(faulty->record))
                failed.insert(entry.mid(7));
            compareDefaults(failed);
            looked = true;
        });
        QVERIFY(looked);
        if (QTest::currentTestFailed())
            return;
        if (faulty->count < k)
            continue;
        // What is asked while the dialog is made is about all bodies, and silent.
        QCOMPARE(faulty->record.mid(0, construction), expectedRecord(faulty->record.mid(0, construction), false));
        QCOMPARE(faulty->record.mid(construction), expectedRecord(faulty->record.mid(construction), perBody));
        QVERIFY(host->callsOf("sendCommand").isEmpty());
        // The same backend, healthy again: the next opening is complete.
        dialog.reset();
        faulty->failNothing();
        QStringList again;
        open([&] { again = everything(); });
        QCOMPARE(again, complete);
        QCOMPARE(faulty->count, calls);
    }
}

void TestTortureDialog::action_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArray>("name");
    for (const char *const name : {"active", "preset", "strength", "prediction", "mode"}) {
        for (const int minor : {12, 20, 21})
            QTest::addRow("%s, 1.%d", name, minor) << backendVersion(1, minor) << QByteArray(name);
        QTest::addRow("%s, 2.0", name) << backendVersion(2, 0) << QByteArray(name);
    }
}

void TestTortureDialog::action()
{
    QFETCH(const BackendVersions, version);
    QFETCH(const QByteArray, name);
    versions = version;
    const bool perBody = version.backendMajor > 1 || version.backendMinor > 20;
    bool isStruck = true;
    int k = 0;
    while (isStruck) {
        ++k;
        prepare();
        dialog = std::make_unique<FilterDialog>(faulty.get(), nullptr, &versions);
        bool acted = false;
        runDialog(*dialog, 0, -1, [&] {
            faulty->fail(k, std::numeric_limits<int>::max());
            changeSetting(*dialog, name);
            isStruck = faulty->count >= k;
            QCOMPARE(faulty->record, expectedRecord(faulty->record, perBody));
            QSet<QByteArray> failed;
            for (const QByteArray &entry : qAsConst(faulty->record))
                failed.insert(entry.mid(7));
            compareDefaults(failed);
            acted = true;
        });
        QVERIFY(acted);
        if (QTest::currentTestFailed())
            return;
        // Healthy again, the same dialog opens complete.
        faulty->failNothing();
        runDialog(*dialog, 0, -1, [this] {
            QCOMPARE(child<QComboBox>("comboBox_body")->count(), 1);
            QCOMPARE(child<QComboBox>("comboBox_mode")->count(), 2);
            QCOMPARE(child<QComboBox>("comboBox_preset")->count(), 4);
            QVERIFY(child<QComboBox>("comboBox_preset")->currentIndex() >= 0);
            QVERIFY(child<QComboBox>("comboBox_mode")->currentIndex() >= 0);
            QVERIFY(child<QDoubleSpinBox>("doubleSpinBox_strength")->value() > 0.1);
        });
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY(k > 1);
}

QTEST_MAIN(TestTortureDialog)
#include "tst_torturedialog.moc"
