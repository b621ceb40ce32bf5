// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QApplication>
#include <QImage>
#include <QScrollBar>
#include <QtTest>

#include <algorithm>

namespace {

QImage pictureOf(const QTableWidget &table, int row, int column, double scale)
{
    const QRect cell = table.visualRect(table.model()->index(row, column));
    QImage image((QSizeF(cell.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    table.viewport()->render(&image, QPoint(), QRegion(cell));
    return image;
}

/// The pixels of \a image that are not on its edge.
QImage inside(const QImage &image, double scale)
{
    const int edge = qCeil(scale);
    QImage copy = image.copy(image.rect().adjusted(edge, edge, -edge - 1, -edge - 1));
    copy.setDevicePixelRatio(1.0);
    return copy;
}

} // namespace

/// What the two tables look like for whoever works with the keyboard, and when markers come and go.
class TestFocusCell : public QObject {
    Q_OBJECT

private slots:
    void keepsTheColourOfAState_data();
    void keepsTheColourOfAState();
    void theFrameGoesAllTheWayRound();
    void leavesCellsWithoutAColourAsTheStyleHasThem();
    void markersComeAndGoWithoutMovingTheColumns();

private:
    static void open(PanelFixture &fixture, const QString &style);
};

void TestFocusCell::open(PanelFixture &fixture, const QString &style)
{
    QApplication::setStyle(style);
    fixture.answerBodies(4);
    fixture.answer("tracking reference", "standard b03");
    fixture.createConfiguredPanel();
    fixture.panel->resize(1000, 400);
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowActive(fixture.panel.get()));
    QCOMPARE(fixture.send("6di",
                          "6di 4 [0 1 1][1 2 3][1 0 0 0 1 0 0 0 1] [1 2 1][1 2 3][1 0 0 0 1 0 0 0 1] "
                          "[2 3 1][1 2 3][1 0 0 0 1 0 0 0 1] [3 3 1][1 2 3][1 0 0 0 1 0 0 0 1]"),
             0);
    fixture.panel->updateView6d();
    fixture.table6d().setFocus();
    QTRY_VERIFY(fixture.table6d().hasFocus());
}

void TestFocusCell::keepsTheColourOfAState_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<double>("scale");
    for (const char *style : {"Fusion", "Windows"}) {
        for (const double scale : {1.0, 2.0}) {
            for (int row = 0; row < 4; ++row) {
                QTest::addRow("%s, state of body %d at scale %g", style, row + 1, scale)
                    << QString::fromLatin1(style) << row << int(BodyIdColumn) << scale;
            }
            QTest::addRow("%s, name of the reference at scale %g", style, scale)
                << QString::fromLatin1(style) << 2 << int(NameColumn) << scale;
        }
    }
}

void TestFocusCell::keepsTheColourOfAState()
{
    QFETCH(const QString, style);
    QFETCH(const int, row);
    QFETCH(const int, column);
    QFETCH(const double, scale);
    PanelFixture fixture;
    open(fixture, style);
    QTableWidget &table = fixture.table6d();
    QVERIFY(table.item(row, column)->background().style() == Qt::SolidPattern);
    table.setCurrentCell(3, ZColumn);
    const QImage without = pictureOf(table, row, column, scale);
    table.setCurrentCell(row, column);
    const QImage with = pictureOf(table, row, column, scale);
    QVERIFY2(inside(with, scale) == inside(without, scale), "the colour under the focus is another one");
    QVERIFY2(with != without, "the focus can't be seen");
}

void TestFocusCell::theFrameGoesAllTheWayRound()
{
    PanelFixture fixture;
    open(fixture, QStringLiteral("Fusion"));
    QTableWidget &table = fixture.table6d();
    table.setCurrentCell(3, ZColumn);
    const QImage without = pictureOf(table, 1, BodyIdColumn, 1.0);
    table.setCurrentCell(1, BodyIdColumn);
    const QImage with = pictureOf(table, 1, BodyIdColumn, 1.0);
    for (int x = 2; x < with.width() - 2; ++x) {
        QVERIFY(with.pixel(x, 0) != without.pixel(x, 0));
        QVERIFY(with.pixel(x, with.height() - 1) != without.pixel(x, with.height() - 1));
    }
    for (int y = 2; y < with.height() - 2; ++y) {
        QVERIFY(with.pixel(0, y) != without.pixel(0, y));
        QVERIFY(with.pixel(with.width() - 1, y) != without.pixel(with.width() - 1, y));
    }
}

void TestFocusCell::leavesCellsWithoutAColourAsTheStyleHasThem()
{
    PanelFixture fixture;
    open(fixture, QStringLiteral("Fusion"));
    QTableWidget &table = fixture.table6d();
    table.setCurrentCell(1, XColumn);
    const QImage own = pictureOf(table, 1, XColumn, 1.0);
    QAbstractItemDelegate *const delegate = table.itemDelegate();
    QStyledItemDelegate stock;
    table.setItemDelegate(&stock);
    QCOMPARE(own, pictureOf(table, 1, XColumn, 1.0));
    table.setItemDelegate(delegate);
}

void TestFocusCell::markersComeAndGoWithoutMovingTheColumns()
{
    PanelFixture fixture;
    open(fixture, QStringLiteral("Fusion"));
    QTableWidget &table = fixture.table3d();
    QTRY_VERIFY(table.verticalScrollBar()->isVisible());
    const auto lefts = [&table] {
        QVector<int> places;
        for (int column = 0; column < Column3dCount; ++column)
            places << table.columnViewportPosition(column) << table.columnWidth(column);
        return places;
    };
    const QVector<int> before = lefts();
    for (const int count : {3, 100, 0}) {
        QByteArray line = "3d " + QByteArray::number(count);
        for (int id = 0; id < count; ++id)
            line += " [" + QByteArray::number(id) + " 1][1 2 3]";
        QCOMPARE(fixture.send("3d", line), 0);
        fixture.panel->updateView3d();
        QCOMPARE(table.rowCount(), count);
        QCoreApplication::processEvents();
        QCOMPARE(lefts(), before);
        QVERIFY(table.verticalScrollBar()->isVisible());
    }
}

QTEST_MAIN(TestFocusCell)
#include "tst_focuscell.moc"
