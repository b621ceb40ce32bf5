// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "tests/support/filterscript.h"

#include <QComboBox>
#include <QTest>

#include <memory>

namespace {

const QByteArray firstId("preset6d_\xFF_custom");
const QByteArray secondId("preset6d_\xFE_custom"); // as text the same

} // namespace

/// The identifiers of presets and modes are the backend's own bytes, in whatever encoding.
class TestFilterIds : public QObject {
    Q_OBJECT

private slots:
    void init();
    void theBytesThatCameGoBack_data();
    void theBytesThatCameGoBack();
    void currentItemIsFoundByItsBytes_data() { versionRows(); }
    void currentItemIsFoundByItsBytes();
    void textsAreShownAsEver_data() { versionRows(); }
    void textsAreShownAsEver();
    void choicesStandInTheOrderOfTheirTexts();

private:
    static void versionRows();
    /// Gives the backend the \a ids of presets or modes ("preset", "mode"), each with its number as the description.
    void answerIds(const QByteArray &kind, const QByteArrayList &ids);
    template<typename Widget> Widget *child(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    void open(const std::function<void()> &drive)
    {
        dialog = std::make_unique<FilterDialog>(&host, nullptr, &versions);
        runDialog(*dialog, 0, 0, drive);
    }

    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<FilterDialog> dialog;
};

void TestFilterIds::versionRows()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::newRow("the same list for all bodies") << backendVersion(1, 20);
    QTest::newRow("a list for each body") << backendVersion(1, 21);
}

void TestFilterIds::answerIds(const QByteArray &kind, const QByteArrayList &ids)
{
    host.answers["filter6d number_of_" + kind + 's'] = QByteArray::number(ids.size());
    for (int i = 0; i < ids.size(); ++i) {
        host.answers["filter6d " + kind + "_id t0" + QByteArray::number(i + 1)] = ids[i];
        host.answers["filter6d " + kind + "_desc " + ids[i]] = QByteArray::number(i + 1);
        host.answers["body filter6d_" + kind + "_available standard b01 " + ids[i]] = "true";
    }
    host.answers["body filter6d_" + kind + " standard b01"] = ids.first();
}

void TestFilterIds::init()
{
    dialog.reset();
    host = ScriptedHost();
    scriptFilters(host);
}

void TestFilterIds::theBytesThatCameGoBack_data()
{
    QTest::addColumn<BackendVersions>("version");
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QByteArray>("id");
    const auto row = [](const char *name, const QByteArray &id) {
        for (const char *kind : {"preset", "mode"}) {
            QTest::addRow("%s, %s, 1.20", name, kind) << backendVersion(1, 20) << QByteArray(kind) << id;
            QTest::addRow("%s, %s, 2.0", name, kind) << backendVersion(2, 0) << QByteArray(kind) << id;
        }
    };
    row("UTF-8", "l\xC3\xA4nger");
    row("Latin-1", "l\xE4nger");
    row("half a letter", "langs\xC3");
    row("a byte order mark", "\xEF\xBB\xBFmark");
    row("all that no text has", "\x01\x7F\x80\xC0\xFE\xFF");
}

void TestFilterIds::theBytesThatCameGoBack()
{
    QFETCH(BackendVersions, version);
    QFETCH(QByteArray, kind);
    QFETCH(QByteArray, id);
    versions = version;
    answerIds(kind, {kind + "6d_custom", id});
    const QByteArray name = "comboBox_" + kind;
    open([&] {
        auto *choices = child<QComboBox>(name.constData());
        QCOMPARE(choices->currentText(), QStringLiteral("1"));
        QTest::keyClicks(choices, QStringLiteral("2"));
        QCOMPARE(choices->currentText(), QStringLiteral("2"));
    });
    QCOMPARE(host.callsOf("sendCommand"), QByteArrayList{"body filter6d_" + kind + " standard b01 " + id});
    QVERIFY(host.callsOf("log").isEmpty());
}

void TestFilterIds::currentItemIsFoundByItsBytes()
{
    QFETCH(BackendVersions, version);
    versions = version;
    for (const char *kind : {"preset", "mode"}) {
        answerIds(kind, {firstId, secondId});
        host.answers[QByteArray("body filter6d_") + kind + " standard b01"] = secondId;
    }
    open([this] {
        QCOMPARE(child<QComboBox>("comboBox_preset")->count(), 2);
        QCOMPARE(child<QComboBox>("comboBox_preset")->currentText(), QStringLiteral("2"));
        QCOMPARE(child<QComboBox>("comboBox_mode")->count(), 2);
        QCOMPARE(child<QComboBox>("comboBox_mode")->currentText(), QStringLiteral("2"));
        QVERIFY(child<QWidget>("doubleSpinBox_strength")->isEnabled()); // a custom preset, whatever else it is
    });
    host.answers["body filter6d_preset standard b01"] = "preset6d_\xFD_custom"; // as text the same again
    open([this] { QCOMPARE(child<QComboBox>("comboBox_preset")->currentIndex(), -1); });
}

void TestFilterIds::textsAreShownAsEver()
{
    QFETCH(BackendVersions, version);
    versions = version;
    answerIds("mode", {"l\xC3\xA4nger", "l\xE4nger"});
    host.answers["filter6d mode_desc l\xC3\xA4nger"] = "\"L\xC3\xA4nger\"";
    host.answers["filter6d mode_desc l\xE4nger"] = "\"L\xE4nger\"";
    open([this] {
        QStringList shown;
        for (int i = 0; i < child<QComboBox>("comboBox_mode")->count(); ++i)
            shown << child<QComboBox>("comboBox_mode")->itemText(i);
        QCOMPARE(shown.join(QLatin1Char(' ')), QStringLiteral("L\u00E4nger L\uFFFDnger"));
    });
}

void TestFilterIds::choicesStandInTheOrderOfTheirTexts()
{
    versions = backendVersion(1, 21);
    // As UTF-16 a letter beyond the first 65536 stands before the last of these, as UTF-8 behind all of them.
    answerIds("mode", {"\xEF\xBC\xA1", "\xF0\x90\x80\x80", "\xC3\xA4", "z", "Z", "\xEF\xBF\xBD", "\xFF", "\xFE"});
    open([this] {
        QStringList shown;
        for (int i = 0; i < child<QComboBox>("comboBox_mode")->count(); ++i)
            shown << child<QComboBox>("comboBox_mode")->itemText(i);
        QCOMPARE(shown.join(QLatin1Char(' ')), QStringLiteral("5 4 3 2 1 6 8 7"));
    });
}

QTEST_MAIN(TestFilterIds)
#include "tst_filterids.moc"
