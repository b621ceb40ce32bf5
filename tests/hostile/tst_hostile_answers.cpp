// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"
#include "host/hostlog.h"
#include "host/logdock.h"
#include "tests/hostile/hostilefile.h"
#include "tests/support/panelfixture.h"

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QtTest>

#include <array>

using namespace host;

namespace {

const QString folder = QStringLiteral("answers");

struct Row {
    const char *name;
    const char *file;
    const char *shown; ///< UTF-8
};

const std::initializer_list<Row> rows{
    {"an empty answer is an empty text", "empty", ""},
    {"199 characters are all shown", "one-hundred-ninety-nine-characters",
     "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"
     "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"},
    {"Yes is a text and no yes", "yes-with-a-capital", "Yes"},
    {"conversions are text", "conversions", "%n%s%1%2"},
    {"markup is text", "markup", "<b>bold</b><img src=file:///x>&amp;"},
    {"a link is text", "link", "<a href=http://x/>x</a>"},
    {"bytes that are no UTF-8 are shown as unknown", "bytes-that-are-no-utf-8",
     "a\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd(\xef\xbf\xbdz"},
    {"a right-to-left override is kept as it is", "right-to-left-override",
     "ab\xe2\x80\xae"
     "cd"},
    {"line feeds are kept as they are", "line-feeds", "one\ntwo\r\n\tthree"},
};

/// Whether \a text stands where a widget would take it for markup: a tool tip, a help text, or a label that tells by
/// itself.
bool mayBeTakenForMarkup(const QWidget &window, const QString &text)
{
    if (text.isEmpty())
        return false;
    QList<const QWidget *> widgets{&window};
    for (const QWidget *widget : window.findChildren<QWidget *>())
        widgets << widget;
    for (const QWidget *widget : qAsConst(widgets)) {
        if (widget->toolTip().contains(text) || widget->whatsThis().contains(text))
            return true;
        const auto *label = qobject_cast<const QLabel *>(widget);
        if (label && label->textFormat() != Qt::PlainText && label->text().contains(text))
            return true;
    }
    return false;
}

QByteArray bodyQuery(const char *query)
{
    return QByteArray(query) + " standard b01";
}

} // namespace

class TestHostileAnswers : public QObject {
    Q_OBJECT

private slots:
    void everyFileHasItsRow();
    void theTableShowsThemAsPlainText_data() { addRows(); }
    void theTableShowsThemAsPlainText();
    void theReferenceIsNamedInPlainText_data() { addRows(); }
    void theReferenceIsNamedInPlainText();
    void theFilterDialogShowsThemAsPlainText_data() { addRows(); }
    void theFilterDialogShowsThemAsPlainText();
    void theyAreNoYes_data() { addRows(); }
    void theyAreNoYes();
    void theyAreNoNumber_data() { addRows(); }
    void theyAreNoNumber();
    void sensorsAreAskedForWordForWord_data() { addRows(); }
    void sensorsAreAskedForWordForWord();
    void theLogShowsThemAsPlainText_data() { addRows(); }
    void theLogShowsThemAsPlainText();

private:
    static void addRows();
};

void TestHostileAnswers::addRows()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("shown");
    for (const Row &row : rows)
        QTest::newRow(row.name) << hostileInput(folder, QString::fromLatin1(row.file)) << QString::fromUtf8(row.shown);
}

void TestHostileAnswers::everyFileHasItsRow()
{
    QStringList files;
    for (const Row &row : rows)
        files << QLatin1String(row.file);
    files.sort();
    QCOMPARE(files, hostileNames(folder));
}

void TestHostileAnswers::theTableShowsThemAsPlainText()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, shown);
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.host.answers.insert(bodyQuery("body desc"), answer);
    DataDisplay &panel = fixture.createPanel();
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
    QCOMPARE(fixture.text(0, NameColumn), shown);
    for (int column = 0; column < fixture.table6d().columnCount(); ++column) {
        const QTableWidgetItem *item = fixture.table6d().item(0, column);
        if (!item)
            continue;
        // A view shows both of them as markup when they look like it.
        QCOMPARE(item->toolTip(), QString());
        QCOMPARE(item->whatsThis(), QString());
    }
    QVERIFY(!mayBeTakenForMarkup(panel, shown));
}

void TestHostileAnswers::theReferenceIsNamedInPlainText()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, shown);
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.host.answers.insert(bodyQuery("body desc"), answer);
    fixture.host.answers.insert("tracking reference", "standard b01");
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.text(0, NameColumn), shown.isEmpty() ? QStringLiteral("reference") : shown);
    fixture.host.answers.insert("tracking reference", answer); // which names no body
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
    QCOMPARE(fixture.background(0, NameColumn).color(), QColor(Qt::transparent));
}

void TestHostileAnswers::theFilterDialogShowsThemAsPlainText()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, shown);
    PanelFixture fixture;
    fixture.answerBodies(1);
    const QByteArrayList yesQuestions{"config is_changeable", "filter6d available standard",
                                      bodyQuery("body filter6d_enabled")};
    for (const QByteArray &question : yesQuestions)
        fixture.host.answers.insert(question, "yes");
    for (const QByteArray kind : {"preset", "mode"}) {
        fixture.host.answers.insert("filter6d number_of_" + kind + 's', "1");
        fixture.host.answers.insert("filter6d " + kind + "_id t01", kind + "6d_custom");
        fixture.host.answers.insert("filter6d " + kind + "_desc " + kind + "6d_custom", answer);
        fixture.host.answers.insert("body filter6d_" + kind + "_available standard b01 " + kind + "6d_custom", "true");
        fixture.host.answers.insert("body filter6d_" + kind + " standard b01", kind + "6d_custom");
    }
    fixture.host.answers.insert(bodyQuery("body desc"), answer);
    FilterDialog dialog(&fixture.host, nullptr, &fixture.versions);
    QMetaObject::invokeMethod(&dialog, &QDialog::reject, Qt::QueuedConnection);
    QCOMPARE(dialog.update_and_exec(0, 0), static_cast<int>(QDialog::Rejected));

    const auto textOf = [&dialog](const char *name) {
        const auto *comboBox = dialog.findChild<QComboBox *>(QLatin1String(name));
        return comboBox ? comboBox->currentText() : QStringLiteral("<no combo box>");
    };
    QCOMPARE(textOf("comboBox_preset"), shown);
    QCOMPARE(textOf("comboBox_mode"), shown);
    const QString body = QStringLiteral("standard body 01");
    const QString described = QStringLiteral("%1 (%2)").arg(body, shown);
    QCOMPARE(textOf("comboBox_body"), shown.isEmpty() ? body : described);
    QVERIFY(!mayBeTakenForMarkup(dialog, shown));
}

void TestHostileAnswers::theyAreNoYes()
{
    QFETCH(const QByteArray, answer);
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.host.answers.insert(bodyQuery("body calibrated"), answer);
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.table6d().item(0, BodyIdColumn)->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
    fixture.host.answers.insert(bodyQuery("body calibrated"), "yes");
    fixture.host.answers.insert(bodyQuery("body filter6d_enabled"), answer);
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
    QCOMPARE(fixture.text(0, FilterColumn), QString());
}

void TestHostileAnswers::theyAreNoNumber()
{
    QFETCH(const QByteArray, answer);
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.host.answers.insert("standard number_of_bodies", answer);
    fixture.createPanel();
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()),
             QStringList(QStringLiteral("Error: Unable to get number of bodies")));
    QCOMPARE(fixture.table6d().rowCount(), 0);
}

void TestHostileAnswers::sensorsAreAskedForWordForWord()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, shown);
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.answerSensors({1});
    fixture.host.answers.insert(bodyQuery("body inertial_sensor"), answer);
    fixture.createPanel();
    const QStringList calls = fixture.reconfigure();
    QVERIFY(calls.contains(QString::fromLatin1("requestString inertial sensor_present " + answer)));
    QVERIFY(!mayBeTakenForMarkup(*fixture.panel, shown));
    QVERIFY(fixture.background(0, SensorColumn).color() == QColor(Qt::red)); // the backend has no such sensor
}

void TestHostileAnswers::theLogShowsThemAsPlainText()
{
    QFETCH(const QString, shown);
    LogDock dock;
    const auto *view = dock.findChild<QPlainTextEdit *>(QStringLiteral("logView"));
    QVERIFY(view);
    dock.append({QDateTime::currentDateTime(), 1, QStringLiteral("standard"), QStringLiteral("VORNAK4"), shown});
    QString inOneLine = shown;
    inOneLine.replace(QLatin1Char('\n'), QLatin1Char(' '));
    inOneLine.replace(QLatin1Char('\r'), QLatin1Char(' '));
    QVERIFY2(view->toPlainText().replace(QLatin1Char('\n'), QLatin1Char(' ')).endsWith(inOneLine),
             qPrintable(view->toPlainText()));
}

QTEST_MAIN(TestHostileAnswers)

#include "tst_hostile_answers.moc"
