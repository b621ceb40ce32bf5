// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterhelp.h"
#include "tests/filter/contexttranslator.h"

#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTimer>

namespace {

/// The texts of the label without the empty lines between them.
QStringList paragraphsOf(const QLabel *label)
{
    QStringList paragraphs = QTextDocumentFragment::fromHtml(label->text()).toPlainText().split(QLatin1Char('\n'));
    paragraphs.removeAll(QString());
    return paragraphs;
}

/// How the paragraphs of the label look: "bold", "italic" or "plain" with their size in points, "empty" for empty ones.
QStringList looksOf(const QLabel *label)
{
    QTextDocument document;
    document.setHtml(label->text());
    QStringList looks;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.text().trimmed().isEmpty()) {
            looks << QStringLiteral("empty");
            continue;
        }
        const QTextCharFormat format = block.begin().fragment().charFormat();
        const QString face = format.fontWeight() > QFont::Normal ? QStringLiteral("bold")
            : format.fontItalic()                                ? QStringLiteral("italic")
                                                                 : QStringLiteral("plain");
        looks << face + QLatin1Char(' ') + QString::number(format.fontPointSize());
    }
    return looks;
}

} // namespace

class TestFilterHelp : public QObject {
    Q_OBJECT

private slots:
    void formIsAsDesigned();
    void everyTextIsTranslatedInTheFormsContext();
    void parametersAreExplained();
    void modesAreExplained();
    void headingsStandOut();
    void sizeIsThatOfTheTexts();
    void noTextIsClipped();
    void exitAccepts_data();
    void exitAccepts();
    void escapeRejects();
};

void TestFilterHelp::formIsAsDesigned()
{
    const FilterHelp help;
    QCOMPARE(help.objectName(), QStringLiteral("FilterHelpClass"));
    QCOMPARE(help.windowTitle(), QStringLiteral("Help Filter"));
    QCOMPARE(help.whatsThis(), QStringLiteral("Help for filter settings"));
    QCOMPARE(help.size(), QSize(536, 805));
    QVERIFY(help.layout());
    QCOMPARE(help.layout()->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(help.layout()->sizeConstraint(), QLayout::SetFixedSize);
    QCOMPARE(help.layout()->count(), 5);
    QCOMPARE(help.layout()->itemAt(0)->widget(), help.findChild<QLabel *>(QStringLiteral("label_2")));

    QLayout *second = help.layout()->itemAt(1)->layout();
    QVERIFY(second);
    QCOMPARE(second->objectName(), QStringLiteral("horizontalLayout_2"));
    QCOMPARE(second->itemAt(0)->widget(), help.findChild<QLabel *>(QStringLiteral("label")));
    QCOMPARE(second->itemAt(1)->spacerItem()->sizeHint(), QSize(40, 20));
    QCOMPARE(second->itemAt(1)->spacerItem()->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum));

    QCOMPARE(help.layout()->itemAt(2)->spacerItem()->sizeHint(), QSize(20, 5));
    QCOMPARE(help.layout()->itemAt(2)->spacerItem()->sizePolicy(),
             QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));

    auto *line = qobject_cast<QFrame *>(help.layout()->itemAt(3)->widget());
    QVERIFY(line);
    QCOMPARE(line->objectName(), QStringLiteral("line"));
    QCOMPARE(line->frameShape(), QFrame::HLine);
    QCOMPARE(line->frameShadow(), QFrame::Sunken);

    QLayout *last = help.layout()->itemAt(4)->layout();
    QVERIFY(last);
    QCOMPARE(last->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(last->itemAt(0)->spacerItem()->sizeHint(), QSize(198, 20));
    QCOMPARE(last->itemAt(0)->spacerItem()->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum));
    auto *exit = qobject_cast<QPushButton *>(last->itemAt(1)->widget());
    QVERIFY(exit);
    QCOMPARE(exit->objectName(), QStringLiteral("pushButton_exit"));
    QCOMPARE(exit->text(), QStringLiteral("E&xit"));
}

void TestFilterHelp::everyTextIsTranslatedInTheFormsContext()
{
    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const FilterHelp help;
    QCoreApplication::removeTranslator(&translator);
    const QString context = QStringLiteral("FilterHelpClass");
    QCOMPARE(help.windowTitle(), context);
    QCOMPARE(help.whatsThis(), context);
    QCOMPARE(help.findChild<QLabel *>(QStringLiteral("label"))->text(), context);
    QCOMPARE(help.findChild<QLabel *>(QStringLiteral("label_2"))->text(), context);
    QCOMPARE(help.findChild<QPushButton *>(QStringLiteral("pushButton_exit"))->text(), context);
}

void TestFilterHelp::parametersAreExplained()
{
    const FilterHelp help;
    const QStringList expected{
        QStringLiteral("Strength"),
        QStringLiteral(
            "Sets the strength of the filter. Low values mean less filtering with faster reaction but higher "
            "jitter, high values stronger filtering with smoother output but slower reaction."),
        QStringLiteral("Prediction"),
        QStringLiteral(
            "Predicts output for the specified time in the future to compensate tracking and rendering "
            "latency. Too high positive values can increase jitter and reduce precision; negative values can "
            "smooth the output at the cost of higher latency."),
        QStringLiteral("Mode"),
        QStringLiteral("Specifies the elementary behaviour of the filter. Several option are available:"),
    };
    QCOMPARE(paragraphsOf(help.findChild<QLabel *>(QStringLiteral("label_2"))), expected);
}

void TestFilterHelp::modesAreExplained()
{
    const FilterHelp help;
    const QStringList expected{
        QStringLiteral("Adaptive fast"),
        QStringLiteral("Automatically adapts to the observed motion."),
        QStringLiteral("Usage: Moving targets that change between fast and slow motions, such as Wandors."),
        QStringLiteral("Adaptive slow"),
        QStringLiteral("Automatically adapts to the observed motion, with stronger filtering of fast motions."),
        QStringLiteral("Usage: Moving targets with slow and medium motions."),
        QStringLiteral("Fast"),
        QStringLiteral("Optimized for fast motions without special filtering of slower motions."),
        QStringLiteral("Usage: Targets where quick reaction is important, such as HMDs."),
        QStringLiteral("Slow"),
        QStringLiteral("Optimized for medium motions without special filtering of slow motions."),
        QStringLiteral("Usage: Targets where quick reaction is important, but motions are slow."),
        QStringLiteral("Static"),
        QStringLiteral("Optimized for targets that are known not to move at all."),
        QStringLiteral("Usage: Reference targets attached to non-moving objects."),
        QStringLiteral("Reference target"),
        QStringLiteral("Optimized for generally static objects, with automatic detection of occasional motions."),
        QStringLiteral("Usage: Reference targets attached to occasionally moving objects."),
    };
    QCOMPARE(paragraphsOf(help.findChild<QLabel *>(QStringLiteral("label"))), expected);
}

void TestFilterHelp::headingsStandOut()
{
    const FilterHelp help;
    const auto *parameters = help.findChild<QLabel *>(QStringLiteral("label_2"));
    const QStringList parameter{QStringLiteral("bold 8"), QStringLiteral("plain 8")};
    QCOMPARE(looksOf(parameters), parameter + parameter + parameter);
    QVERIFY(
        parameters->text().contains(QLatin1String("<body style=\" font-family:'MS Shell Dlg 2'; font-size:8.25pt;")));

    const auto *modes = help.findChild<QLabel *>(QStringLiteral("label"));
    const QStringList mode{QStringLiteral("bold 8"), QStringLiteral("plain 8"), QStringLiteral("italic 8"),
                           QStringLiteral("empty")};
    QCOMPARE(looksOf(modes), mode + mode + mode + mode + mode + mode);
    QVERIFY(modes->text().contains(QLatin1String("<body style=\" font-family:'MS Shell Dlg 2'; font-size:12pt;")));
}

void TestFilterHelp::sizeIsThatOfTheTexts()
{
    FilterHelp help;
    help.show();
    QVERIFY(QTest::qWaitForWindowExposed(&help));
    QTRY_COMPARE(help.size(), help.sizeHint());
    const QSize size = help.size();
    help.resize(size + QSize(100, 100));
    QTRY_COMPARE(help.size(), size);
    help.resize(size - QSize(100, 100));
    QTRY_COMPARE(help.size(), size);
    QCOMPARE(help.minimumSize(), size);
    QCOMPARE(help.maximumSize(), size);
}

void TestFilterHelp::noTextIsClipped()
{
    FilterHelp help;
    help.show();
    QVERIFY(QTest::qWaitForWindowExposed(&help));
    const QList<QLabel *> labels = help.findChildren<QLabel *>();
    QCOMPARE(labels.size(), 2);
    for (const QLabel *label : labels) {
        QTextDocument document;
        document.setDefaultFont(label->font());
        document.setDocumentMargin(0);
        document.setHtml(label->text());
        document.setTextWidth(label->width());
        QVERIFY2(document.size().height() <= label->height() + 1, qPrintable(label->objectName()));
        QVERIFY2(document.idealWidth() <= label->width() + 1, qPrintable(label->objectName()));
    }
}

void TestFilterHelp::exitAccepts_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Alt+X closes the help as accepted") << true;
    QTest::newRow("a click on Exit closes the help as accepted") << false;
}

void TestFilterHelp::exitAccepts()
{
    QFETCH(bool, byKey);
    FilterHelp help;
    QTimer::singleShot(0, &help, [&help, byKey] {
        QVERIFY(QTest::qWaitForWindowActive(&help));
        QVERIFY(help.isModal());
        if (byKey)
            QTest::keyClick(&help, Qt::Key_X, Qt::AltModifier);
        else
            QTest::mouseClick(help.findChild<QPushButton *>(QStringLiteral("pushButton_exit")), Qt::LeftButton);
    });
    QCOMPARE(help.exec(), static_cast<int>(QDialog::Accepted));
}

void TestFilterHelp::escapeRejects()
{
    FilterHelp help;
    QTimer::singleShot(0, &help, [&help] {
        QVERIFY(QTest::qWaitForWindowActive(&help));
        QTest::keyClick(&help, Qt::Key_Escape);
    });
    QCOMPARE(help.exec(), static_cast<int>(QDialog::Rejected));
}

QTEST_MAIN(TestFilterHelp)
#include "tst_filterhelp.moc"
