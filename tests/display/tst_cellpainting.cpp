// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/eventcount.h"
#include "tests/support/panelfixture.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QScopeGuard>
#include <QStyleFactory>
#include <QStyledItemDelegate>
#include <QtTest>

#include <functional>

namespace {

using Dressing = std::function<void(PanelFixture &)>;

/// Both tables of a panel as they look at \a scale device pixels per pixel.
QImage picture(const QWidget &widget, double scale)
{
    QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    const_cast<QWidget &>(widget).render(&image);
    return image;
}

QByteArray lineOfBodies(int count, int frame)
{
    QByteArray line = "6di " + QByteArray::number(count);
    for (int id = 0; id < count; ++id) {
        const QByteArray state = QByteArray::number((id + frame) % 4);
        const QByteArray position = QByteArray::number(id * 137.77 - 900.0 * frame) + " -0.001 "
            + (id % 5 == 3 ? QByteArray("nan") : QByteArray::number(12345.678 / (id + 1)));
        line += " [" + QByteArray::number(id) + ' ' + state + (id % 6 == 5 ? " -1][" : " 1][") + position
            + "][0.75 0.649519 -0.125 -0.433013 0.625 0.649519 0.5 -0.433013 0.75]";
    }
    return line;
}

QByteArray lineOfMarkers(int count)
{
    QByteArray line = "3d " + QByteArray::number(count);
    for (int id = 0; id < count; ++id)
        line += " [" + QByteArray::number(id * 37) + " 1][" + QByteArray::number(id * 77.125 - 300) + " -7.5 1e"
            + QByteArray::number(id % 9) + ']';
    return line;
}

/// A panel with bodies of all colours, a reference, a body that isn't calibrated, long and foreign names, and markers.
void fill(PanelFixture &fixture)
{
    fixture.answerBodies(14);
    fixture.answer("tracking reference", "standard b02");
    fixture.answer("body calibrated standard b04", "no");
    fixture.answer("body desc standard b05", "A name that is much too long for the width of its column, however wide");
    fixture.answer("body desc standard b06", "\xC3\x84\xC3\x96\xC3\x9C \xC3\x9F \xC2\xB0");
    fixture.answer("body desc standard b07", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D abc");
    fixture.answer("body desc standard b08", "two\nlines");
    fixture.answer("body desc standard b09", "a\tb");
    fixture.answer("body desc standard b10", "A\xCC\x81\xCC\x81\xCC\x81\xCC\x81 Z\xCC\xA7\xCC\xA7\xCC\xA7");
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", lineOfBodies(14, 0)), 0);
    QCOMPARE(fixture.send("3d", lineOfMarkers(20)), 0);
    fixture.panel->updateView6d();
    fixture.panel->updateView3d();
    // The focus would take the first cell, whose colour it leaves alone, unlike the stock delegate (tst_focuscell).
    fixture.table6d().setCurrentCell(0, YColumn);
}

void setTableFonts(PanelFixture &fixture, const QFont &font)
{
    fixture.table6d().setFont(font);
    fixture.table3d().setFont(font);
}

QFont sans(int points, bool italic = false)
{
    QFont font(QStringLiteral("Sans Serif"), points);
    font.setBold(true);
    font.setItalic(italic);
    return font;
}

struct Look {
    const char *name;
    Dressing dress;
};

const Look looks[] = {
    {"as it is", [](PanelFixture &) {}},
    {"a font that is too tall for the rows", [](PanelFixture &fixture) { setTableFonts(fixture, sans(17)); }},
    {"a small font", [](PanelFixture &fixture) { setTableFonts(fixture, sans(6)); }},
    {"an italic font", [](PanelFixture &fixture) { setTableFonts(fixture, sans(10, true)); }},
    {"a fixed font, not bold",
     [](PanelFixture &fixture) { setTableFonts(fixture, QFont(QStringLiteral("Monospace"), 9)); }},
    {"a font of 20 pixels underlined",
     [](PanelFixture &fixture) {
         QFont font(QStringLiteral("Serif"));
         font.setPixelSize(15);
         font.setUnderline(true);
         setTableFonts(fixture, font);
     }},
    {"disabled", [](PanelFixture &fixture) { fixture.panel->setEnabled(false); }},
    {"from right to left", [](PanelFixture &fixture) { fixture.panel->setLayoutDirection(Qt::RightToLeft); }},
    {"narrow columns",
     [](PanelFixture &fixture) {
         for (int column = 0; column < MarkerZColumn; ++column)
             fixture.table3d().setColumnWidth(column, 13 + 9 * column);
         for (int column = 0; column < StretchColumn; ++column)
             fixture.table6d().setColumnWidth(column, 9 + 6 * column);
     }},
    {"numbers of up to 43 characters",
     [](PanelFixture &fixture) {
         const QByteArray bodies = bodyText(0, "2", "1", "-3.4e38 0 0") + bodyText(1, "2", "1", "1e12 0 -1e12")
             + bodyText(2, "2", "1", "-1e11 0 1e13");
         QCOMPARE(fixture.send("6di", "6di 3 " + bodies), 0);
         fixture.panel->updateView6d();
         fixture.table6d().setColumnWidth(XColumn, 400);
         fixture.table6d().setColumnWidth(ZColumn, 200);
     }},
    {"selected cells",
     [](PanelFixture &fixture) {
         fixture.table6d().setSelectionMode(QAbstractItemView::MultiSelection);
         fixture.table6d().selectRow(1);
         fixture.table6d().selectRow(4);
     }},
    {"a current cell",
     [](PanelFixture &fixture) {
         fixture.table6d().setFocus();
         fixture.table6d().setCurrentCell(1, XColumn);
     }},
    {"cells of other kinds",
     [](PanelFixture &fixture) {
         QTableWidget &table = fixture.table6d();
         table.item(0, XColumn)->setIcon(table.style()->standardIcon(QStyle::SP_ComputerIcon));
         table.item(1, XColumn)->setFont(sans(12));
         table.item(2, XColumn)->setCheckState(Qt::Checked);
         table.item(3, XColumn)->setData(Qt::DisplayRole, 2.5);
         table.item(4, XColumn)->setBackground(QBrush(Qt::red, Qt::DiagCrossPattern));
         table.item(5, XColumn)->setBackground(QLinearGradient(0, 0, 50, 20));
         table.item(6, XColumn)->setBackground(QColor(10, 200, 30, 120));
         table.item(7, XColumn)->setForeground(QColor(10, 20, 30, 120));
         table.item(8, XColumn)->setTextAlignment(Qt::AlignTop | Qt::AlignLeft);
         table.item(9, XColumn)->setTextAlignment(Qt::AlignBottom | Qt::AlignJustify);
         table.item(0, YColumn)->setTextAlignment(int(Qt::AlignLeft));
         table.item(1, YColumn)->setText(QString());
         table.item(2, YColumn)->setFlags(Qt::NoItemFlags);
         table.item(3, YColumn)->setForeground(QBrush(Qt::blue, Qt::Dense4Pattern));
         table.setItem(12, NameColumn, new QTableWidgetItem); // without a value
         table.item(12, NameColumn)->setBackground(QColor(Qt::cyan));
         table.item(5, YColumn)->setForeground(QBrush(Qt::NoBrush));
         table.setAlternatingRowColors(true);
     }},
    {"cells with texts for screen readers",
     [](PanelFixture &fixture) {
         fixture.table6d().item(0, BodyIdColumn)->setData(Qt::AccessibleTextRole, QStringLiteral("1, lost"));
         fixture.table6d().item(0, XColumn)->setData(Qt::AccessibleTextRole, QStringLiteral("in front"));
         fixture.table6d().item(0, YColumn)->setData(Qt::AccessibleDescriptionRole, QStringLiteral("to the left"));
     }},
    {"a style sheet of the panel for cells",
     [](PanelFixture &fixture) {
         fixture.panel->setStyleSheet(QStringLiteral("QTableView::item { padding: 4px; border: 1px solid red; }"));
     }},
    {"a style sheet of the table for cells",
     [](PanelFixture &fixture) {
         fixture.table6d().setStyleSheet(QStringLiteral("QTableView::item { color: magenta; }"));
     }},
    {"a palette",
     [](PanelFixture &fixture) {
         QPalette palette(Qt::darkBlue);
         palette.setColor(QPalette::Text, Qt::yellow);
         fixture.panel->setPalette(palette);
     }},
};

/// Without focus, as of two panels only one has it, and paints its current cell in another way.
void show(PanelFixture &fixture)
{
    fixture.table6d().setFocusPolicy(Qt::NoFocus);
    fixture.table3d().setFocusPolicy(Qt::NoFocus);
    fixture.panel->resize(1000, 420);
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
}

/// Gives the tables of \a to the column widths of \a from, which come from the font that there was at the start.
void takeWidths(PanelFixture &to, const PanelFixture &from)
{
    for (int column = 0; column < StretchColumn; ++column)
        to.table6d().setColumnWidth(column, from.table6d().columnWidth(column));
    for (int column = 0; column < MarkerZColumn; ++column)
        to.table3d().setColumnWidth(column, from.table3d().columnWidth(column));
    to.table3d().setMaximumWidth(from.table3d().maximumWidth());
    QCoreApplication::processEvents();
}

struct FontChange {
    const char *name;
    bool isOfTables; ///< else of the application, and a new panel has it by itself
    Dressing apply;
};

const FontChange fontChanges[] = {
    {"the application's letters wider apart", false,
     [](PanelFixture &) {
         QFont font = QApplication::font();
         font.setLetterSpacing(QFont::AbsoluteSpacing, 2);
         QApplication::setFont(font);
     }},
    {"the application's letters stretched", false,
     [](PanelFixture &) {
         QFont font = QApplication::font();
         font.setStretch(130);
         QApplication::setFont(font);
     }},
    {"the application's font without smooth edges", false,
     [](PanelFixture &) {
         QFont font = QApplication::font();
         font.setStyleStrategy(QFont::NoAntialias);
         QApplication::setFont(font);
     }},
    {"the tables in a larger font", true, [](PanelFixture &fixture) { setTableFonts(fixture, sans(9)); }},
    {"the tables in another font of that size", true,
     [](PanelFixture &fixture) { setTableFonts(fixture, QFont(QStringLiteral("DejaVu Serif"), 8, QFont::Bold)); }},
};

} // namespace

class TestCellPainting : public QObject {
    Q_OBJECT

private slots:
    void sameAsTheStockDelegate_data();
    void sameAsTheStockDelegate();
    void anApplicationsStyleSheetCounts();
    void fontsThatChangeWhileThePanelLives_data();
    void fontsThatChangeWhileThePanelLives();
    void theSameFontAtAnotherResolution();
};

void TestCellPainting::sameAsTheStockDelegate_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("look");
    for (const char *const style : {"Fusion", "Windows"}) {
        int index = 0;
        for (const Look &look : looks) {
            QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(style), QLatin1String(look.name))))
                << QString::fromLatin1(style) << index;
            ++index;
        }
    }
}

void TestCellPainting::sameAsTheStockDelegate()
{
    QFETCH(const QString, style);
    QFETCH(const int, look);
    QApplication::setStyle(style);
    PanelFixture fixture;
    fill(fixture);
    looks[look].dress(fixture);
    fixture.panel->resize(1000, 420);
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    QAbstractItemDelegate *const own6d = fixture.table6d().itemDelegate();
    QAbstractItemDelegate *const own3d = fixture.table3d().itemDelegate();
    QStyledItemDelegate stock;
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        fixture.panel->resize(scale < 1.5 ? QSize(1000, 420) : QSize(1501, 333));
        QCoreApplication::processEvents();
        const QImage own = picture(*fixture.panel, scale);
        fixture.table6d().setItemDelegate(&stock);
        fixture.table3d().setItemDelegate(&stock);
        const QImage expected = picture(*fixture.panel, scale);
        fixture.table6d().setItemDelegate(own6d);
        fixture.table3d().setItemDelegate(own3d);
        QVERIFY2(own == expected, qPrintable(QStringLiteral("at the scale %1").arg(scale)));
    }
}

void TestCellPainting::anApplicationsStyleSheetCounts()
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    PanelFixture fixture;
    fill(fixture);
    fixture.panel->resize(1000, 420);
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    const QImage before = picture(*fixture.panel, 1.0);
    qApp->setStyleSheet(QStringLiteral("QTableView::item { color: magenta; background: yellow; }"));
    QCoreApplication::processEvents();
    const QImage own = picture(*fixture.panel, 1.0);
    QStyledItemDelegate stock;
    fixture.table6d().setItemDelegate(&stock);
    fixture.table3d().setItemDelegate(&stock);
    const QImage expected = picture(*fixture.panel, 1.0);
    qApp->setStyleSheet(QString());
    QVERIFY(before != own);
    QVERIFY(own == expected);
}

void TestCellPainting::fontsThatChangeWhileThePanelLives_data()
{
    QTest::addColumn<int>("change");
    int index = 0;
    for (const FontChange &change : fontChanges)
        QTest::newRow(change.name) << index++;
}

void TestCellPainting::fontsThatChangeWhileThePanelLives()
{
    QFETCH(const int, change);
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QFont fontBefore = QApplication::font();
    const auto restore = qScopeGuard([&] { QApplication::setFont(fontBefore); });
    PanelFixture old;
    fill(old);
    show(old);
    const QImage before = picture(*old.panel, 1.0);
    QCoreApplication::processEvents();
    EventCount paints6d(old.table6d().viewport(), QEvent::Paint);
    EventCount paints3d(old.table3d().viewport(), QEvent::Paint);
    fontChanges[change].apply(old);
    QTRY_VERIFY(paints6d.count > 0);
    QTRY_VERIFY(paints3d.count > 0);
    PanelFixture fresh;
    fill(fresh);
    if (fontChanges[change].isOfTables)
        fontChanges[change].apply(fresh);
    show(fresh);
    takeWidths(fresh, old);
    const QImage own = picture(*old.panel, 1.0);
    QVERIFY2(own != before, "nothing changed");
    QVERIFY(own == picture(*fresh.panel, 1.0));
}

void TestCellPainting::theSameFontAtAnotherResolution()
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    PanelFixture fixture;
    fill(fixture);
    show(fixture);
    const QTableWidget &table = fixture.table6d();
    const QModelIndex index = table.model()->index(0, XColumn);
    const auto paint = [&](const QAbstractItemDelegate &delegate, int dotsPerInch) {
        QImage image(120, 20, QImage::Format_ARGB32_Premultiplied);
        image.setDotsPerMeterX(qRound(dotsPerInch / 0.0254));
        image.setDotsPerMeterY(qRound(dotsPerInch / 0.0254));
        QStyleOptionViewItem option;
        option.initFrom(&table);
        option.widget = &table;
        option.font = QFont(table.font(), &image); // equal to any other, by QFont's own measure
        option.rect = image.rect();
        option.showDecorationSelected = true;
        image.setDotsPerMeterX(3780); // the painter's own font has no part in it
        image.setDotsPerMeterY(3780);
        image.fill(Qt::white);
        QPainter painter(&image);
        delegate.paint(&painter, option, index);
        return image;
    };
    const QStyledItemDelegate stock;
    const QAbstractItemDelegate &own = *table.itemDelegate();
    QVERIFY(paint(own, 96) == paint(stock, 96));
    QVERIFY(paint(own, 130) == paint(stock, 130));
    QVERIFY(paint(own, 96) == paint(stock, 96));
    QVERIFY(paint(own, 96) != paint(own, 130));
}

QTEST_MAIN(TestCellPainting)
#include "tst_cellpainting.moc"
