// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/hostfixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QStyle>
#include <QStyleFactory>
#include <QTabBar>
#include <QTest>
#include <QTextBlock>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace host;

namespace {

constexpr double leastContrast = 4.5;
constexpr int mostRows = 100; // of a view whose items have colours of their own

double luminance(const QColor &color)
{
    double sum = 0.0;
    for (const auto &[part, weight] :
         {std::pair(color.redF(), 0.2126), {color.greenF(), 0.7152}, {color.blueF(), 0.0722}})
        sum += weight * (part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
    return sum;
}

/// The contrast ratio of the Web Content Accessibility Guidelines, from 1 to 21.
double contrast(const QColor &text, const QColor &background)
{
    const double one = luminance(text) + 0.05;
    const double other = luminance(background) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53), QColor(53, 53, 53));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, Qt::white);
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::AlternateBase, QColor(48, 48, 48));
    palette.setColor(QPalette::ToolTipBase, QColor(25, 25, 25));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218)); // black on it could be read, white could not
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(120, 180, 255));
    return palette;
}

QPalette lightPalette()
{
    const std::unique_ptr<QStyle> style(QStyleFactory::create(QStringLiteral("fusion")));
    return style->standardPalette();
}

} // namespace

/// Every text of the host can be read, in light and in dark colours. Disabled texts are left out, as by the guidelines,
/// and the colours that a module gives to its cells are its own.
class ContrastTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void textsCanBeRead_data();
    void textsCanBeRead();
    void selectionsFollowTheDesktop();

private:
    void check(const QWidget &widget, const QString &what, const QColor &text, const QColor &background);
    void checkRoles(const QWidget &widget, const QWidget &ground, QPalette::ColorRole text);
    void checkSelection(const QWidget &widget);
    void checkItems(const QAbstractItemView &view);
    void checkFormats(const QPlainTextEdit &edit);
    void checkField(const QLineEdit &field);
    void checkWidget(const QWidget &widget);

    QStringList unreadable;
    int texts = 0;
};

namespace {

/// What \a widget's text stands on: its own background, or that of the next one below that has one.
QColor groundOf(const QWidget &widget, QPalette::ColorGroup group)
{
    for (const QWidget *ground = &widget;; ground = ground->parentWidget()) {
        if (ground->autoFillBackground() || ground->isWindow())
            return ground->palette().color(group, ground->backgroundRole());
    }
}

bool isOfModule(const QWidget &widget)
{
    for (const QWidget *ancestor = &widget; ancestor; ancestor = ancestor->parentWidget()) {
        if (qobject_cast<const QDockWidget *>(ancestor)
            && ancestor->findChild<QWidget *>(QStringLiteral("tableWidget6d")))
            return true;
    }
    return false;
}

} // namespace

void ContrastTest::check(const QWidget &widget, const QString &what, const QColor &text, const QColor &background)
{
    ++texts;
    const double ratio = contrast(text, background);
    if (ratio < leastContrast) {
        unreadable << QStringLiteral("%1 \"%2\", %3: %4 on %5 is %6:1")
                          .arg(QString::fromLatin1(widget.metaObject()->className()), widget.objectName(), what,
                               text.name(), background.name())
                          .arg(ratio, 0, 'f', 2);
    }
}

void ContrastTest::checkRoles(const QWidget &widget, const QWidget &ground, QPalette::ColorRole text)
{
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        check(widget, QStringLiteral("text"), widget.palette().color(group, text), groundOf(ground, group));
}

void ContrastTest::checkSelection(const QWidget &widget)
{
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        check(widget, QStringLiteral("selection"), widget.palette().color(group, QPalette::HighlightedText),
              widget.palette().color(group, QPalette::Highlight));
    }
}

void ContrastTest::checkItems(const QAbstractItemView &view)
{
    checkRoles(view, *view.viewport(), QPalette::Text);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        if (view.alternatingRowColors())
            check(view, QStringLiteral("every other row"), view.palette().color(group, QPalette::Text),
                  view.palette().color(group, QPalette::AlternateBase));
    }
    if (isOfModule(view))
        return;
    checkSelection(view);
    const QAbstractItemModel *model = view.model();
    for (int row = 0; model && row < std::min(model->rowCount(), mostRows); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QVariant text = model->index(row, column).data(Qt::ForegroundRole);
            const QVariant background = model->index(row, column).data(Qt::BackgroundRole);
            if (text.isValid() || background.isValid()) {
                check(view, QStringLiteral("cell %1, %2").arg(row).arg(column),
                      text.isValid() ? qvariant_cast<QBrush>(text).color() : view.palette().color(QPalette::Text),
                      background.isValid() ? qvariant_cast<QBrush>(background).color()
                                           : view.palette().color(QPalette::Base));
            }
        }
    }
}

void ContrastTest::checkFormats(const QPlainTextEdit &edit)
{
    checkRoles(edit, *edit.viewport(), QPalette::Text);
    checkSelection(edit);
    for (QTextBlock block = edit.document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            const QColor text = format.hasProperty(QTextFormat::ForegroundBrush) ? format.foreground().color()
                                                                                 : edit.palette().color(QPalette::Text);
            const QColor background = format.hasProperty(QTextFormat::BackgroundBrush)
                ? format.background().color()
                : edit.palette().color(QPalette::Base);
            check(edit, part.fragment().text(), text, background);
        }
    }
}

void ContrastTest::checkField(const QLineEdit &field)
{
    checkSelection(field);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const QColor background = field.palette().color(group, QPalette::Base);
        check(field, QStringLiteral("text"), field.palette().color(group, QPalette::Text), background);
        if (field.placeholderText().isEmpty())
            continue;
        QPixmap pixel(1, 1); // the hint is painted over the background, which shines through
        pixel.fill(background);
        QPainter(&pixel).fillRect(pixel.rect(), field.palette().color(group, QPalette::PlaceholderText));
        check(field, QStringLiteral("hint"), pixel.toImage().pixelColor(0, 0), background);
    }
}

void ContrastTest::checkWidget(const QWidget &widget)
{
    if (!widget.isEnabled())
        return;
    if (const auto *view = qobject_cast<const QAbstractItemView *>(&widget)) {
        if (qobject_cast<const QHeaderView *>(view))
            checkRoles(widget, widget, QPalette::ButtonText);
        else
            checkItems(*view);
    } else if (const auto *edit = qobject_cast<const QPlainTextEdit *>(&widget)) {
        checkFormats(*edit);
    } else if (const auto *field = qobject_cast<const QLineEdit *>(&widget)) {
        checkField(*field);
    } else if (qobject_cast<const QMenu *>(&widget)) {
        checkRoles(widget, widget, QPalette::WindowText);
        if (!isOfModule(widget))
            checkSelection(widget);
    } else if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        if (!button->text().isEmpty())
            check(widget, button->text(), widget.palette().color(QPalette::ButtonText),
                  widget.palette().color(QPalette::Button));
    } else if (qobject_cast<const QLabel *>(&widget) || qobject_cast<const QDockWidget *>(&widget)
               || qobject_cast<const QStatusBar *>(&widget) || qobject_cast<const QMenuBar *>(&widget)
               || qobject_cast<const QTabBar *>(&widget)) {
        checkRoles(widget, widget, widget.foregroundRole());
    }
}

void ContrastTest::textsCanBeRead_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << lightPalette();
    QTest::newRow("dark") << darkPalette();
}

void ContrastTest::textsCanBeRead()
{
    QFETCH(const QPalette, palette);
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setPalette(palette);
    home = std::make_unique<QTemporaryDir>();
    start({QStringLiteral(MODULES)});
    const QList<QDockWidget *> docks = host->window().findChildren<QDockWidget *>();
    for (QDockWidget *dock : docks)
        dock->show();
    host->log().info(QStringLiteral("something to know"));
    host->log().warning(QStringLiteral("something to act on"));
    QTRY_VERIFY(logText().contains(QStringLiteral("something to act on")));

    unreadable.clear();
    texts = 0;
    const QList<QWidget *> widgets = host->window().findChildren<QWidget *>();
    for (const QWidget *widget : widgets)
        checkWidget(*widget);
    const QPalette tips = QToolTip::palette();
    check(host->window(), QStringLiteral("tool tips"), tips.color(QPalette::ToolTipText),
          tips.color(QPalette::ToolTipBase));
    QVERIFY2(unreadable.isEmpty(), qPrintable(unreadable.join(QLatin1Char('\n'))));
    QVERIFY2(texts > 60, qPrintable(QStringLiteral("only %1 texts were seen").arg(texts)));
    end();
}
void ContrastTest::selectionsFollowTheDesktop()
{
    QPalette readable = lightPalette();
    readable.setColor(QPalette::Highlight, QColor(0, 0, 120));
    readable.setColor(QPalette::HighlightedText, QColor(255, 255, 200));
    QApplication::setPalette(readable);
    home = std::make_unique<QTemporaryDir>();
    start({QStringLiteral(MODULES)});
    const auto colorOf = [this](const char *name) {
        return host->window().findChild<QWidget *>(QLatin1String(name))->palette().color(QPalette::HighlightedText);
    };
    QCOMPARE(colorOf("logView"), QColor(255, 255, 200));
    QApplication::setPalette(darkPalette());
    QTRY_COMPARE(colorOf("logView"), QColor(Qt::black));
    QTRY_COMPARE(colorOf("DataDisplayWidget"), QColor(Qt::white)); // a module keeps the desktop's
    QApplication::setPalette(readable);
    QTRY_COMPARE(colorOf("logView"), QColor(255, 255, 200));
    end();
}

QTEST_MAIN(ContrastTest)
#include "tst_contrast.moc"
