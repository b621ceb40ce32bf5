// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/celldelegate.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QScopeGuard>
#include <QTableWidget>
#include <QTextLayout>
#include <QtMath>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

bool isKnown(const QStyle &style)
{
    const char *const name = style.metaObject()->className();
    return std::strcmp(name, "QFusionStyle") == 0 || std::strcmp(name, "QWindowsStyle") == 0;
}

/// An opaque or transparent colour, or nothing at all; no pattern, gradient or picture.
bool isSolidOrNone(const QVariant &brush)
{
    if (!brush.isValid())
        return true;
    return brush.userType() == QMetaType::QBrush && qvariant_cast<QBrush>(brush).style() == Qt::SolidPattern;
}

bool isDefaultCell(const QStyleOptionViewItem &option)
{
    constexpr QStyle::State special = QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_Editing;
    return (option.state & QStyle::State_Enabled) && !(option.state & special) && option.direction == Qt::LeftToRight
        && option.showDecorationSelected && !(option.features & QStyleOptionViewItem::WrapText) && option.widget;
}

QColor textColour(const QStyleOptionViewItem &option, const QVariant &foreground)
{
    if (foreground.isValid())
        return qvariant_cast<QBrush>(foreground).color();
    const bool active = option.state & QStyle::State_Active;
    return option.palette.color(active ? QPalette::Normal : QPalette::Inactive, QPalette::Text);
}

void fillBackground(QPainter &painter, const QRect &cell, const QVariant &background)
{
    if (!background.isValid())
        return;
    const QColor colour = qvariant_cast<QBrush>(background).color();
    if (colour.alpha() != 0)
        painter.fillRect(cell, colour);
}

/// Whether the cell's colour says something, rather than being the table's.
bool hasOwnColour(const QModelIndex &index)
{
    return qvariant_cast<QBrush>(index.data(Qt::BackgroundRole)).style() != Qt::NoBrush;
}

/// A line around the cell in the colour of its text: the style's frame for the focus is filled, and hardly to be seen
/// without that.
void paintFocusFrame(QPainter &painter, const QStyleOptionViewItem &cell, const QModelIndex &index)
{
    const QRegion frame = QRegion(cell.rect) - cell.rect.adjusted(1, 1, -1, -1);
    for (const QRect &side : frame)
        painter.fillRect(side, textColour(cell, index.data(Qt::ForegroundRole)));
}

/// The characters that metricsOf() measures. Others may carry accents upon accents, or be of another font or direction.
constexpr char16_t latin1Ranges[][2] = {{u' ', u'~'}, {0xA1, 0xAC}, {0xAE, 0xFF}};

bool isLatin1(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar ch) {
        return std::any_of(std::begin(latin1Ranges), std::end(latin1Ranges),
                           [ch](const auto &range) { return ch.unicode() >= range[0] && ch.unicode() <= range[1]; });
    });
}

/// A line of text in a cell, laid out as the style does it.
class SingleLineText {
public:
    SingleLineText(const QString &text, const QFont &font, const QRect &rect, Qt::Alignment alignment, int overhang)
        : rect(rect)
        , alignment(alignment)
        , overhang(overhang)
        , layout(text, font)
    {
    }

    /// False where the text is not one line, or has no room.
    bool layOut()
    {
        QTextOption option;
        option.setWrapMode(QTextOption::ManualWrap);
        option.setTextDirection(Qt::LeftToRight);
        option.setAlignment(QStyle::visualAlignment(Qt::LeftToRight, alignment));
        layout.setTextOption(option);
        layout.setCacheEnabled(true); // else the drawing shapes the text once more
        layout.beginLayout();
        QTextLine line = layout.createLine();
        line.setLineWidth(rect.width());
        const bool isOneLine = !layout.createLine().isValid();
        layout.endLayout();
        top = topOf(lineHeight());
        return isOneLine && line.naturalTextWidth() <= rect.width() && hasRoomFor(lineHeight());
    }
    void draw(QPainter &painter) const { layout.draw(&painter, QPointF(rect.x(), top)); }

    bool hasRoomFor(int height) const { return height + 2 * overhang <= rect.height(); }
    int topOf(int height) const
    {
        return QStyle::alignedRect(Qt::LayoutDirectionAuto, alignment, QSize(rect.width(), height), rect).top();
    }

    const QRect rect;

private:
    int lineHeight() const { return layout.boundingRect().size().toSize().height(); }

    const Qt::Alignment alignment;
    const int overhang; ///< of the font's characters, vertical [pixels]
    QTextLayout layout;
    int top = 0;
};

} // namespace

CellDelegate::CellDelegate(QTableWidget *table)
    : QStyledItemDelegate(table)
    , table(*table)
    , ownStyleSheet(table->styleSheet())
{
}

void CellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool showsColour = !(option.state & QStyle::State_Selected) && hasOwnColour(index);
    if ((option.state & QStyle::State_HasFocus) && option.widget && showsColour) {
        QStyleOptionViewItem withoutFocus = option;
        withoutFocus.state &= ~QStyle::State_HasFocus;
        paint(painter, withoutFocus, index);
        paintFocusFrame(*painter, option, index);
        return;
    }
    const QTableWidgetItem *const item = table.item(index.row(), index.column());
    const bool isFast = isDefaultCell(option) && styleIsKnown();
    const bool done = isFast && (!item || paintFast(*painter, option, *item)); // no item: there is nothing to paint
    if (!done)
        QStyledItemDelegate::paint(painter, option, index);
}

bool CellDelegate::paintFast(QPainter &painter, const QStyleOptionViewItem &option, const QTableWidgetItem &item) const
{
    for (const int role : {Qt::FontRole, Qt::DecorationRole, Qt::CheckStateRole}) {
        if (item.data(role).isValid())
            return false;
    }
    const QVariant background = item.data(Qt::BackgroundRole);
    const QVariant foreground = item.data(Qt::ForegroundRole);
    const QVariant display = item.data(Qt::DisplayRole);
    if (!isSolidOrNone(background) || !isSolidOrNone(foreground))
        return false;
    if (!display.isValid()) {
        fillBackground(painter, option.rect, background);
        return true;
    }
    const QString text = display.userType() == QMetaType::QString ? display.toString() : QString();
    if (!isLatin1(text))
        return false;

    const int margin = table.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &table) + 1;
    const Metrics &font = metricsOf(option.font);
    if (font.horizontalOverhang >= margin)
        return false;
    const QVariant itemAlignment = item.data(Qt::TextAlignmentRole);
    const Qt::Alignment alignment(itemAlignment.isValid() ? itemAlignment.toInt() : int(option.displayAlignment));
    if (!(alignment & Qt::AlignVCenter))
        return false;

    SingleLineText line{text, option.font, option.rect.adjusted(margin, 0, -margin, 0), alignment,
                        font.verticalOverhang};
    const bool asNumber = alignment == (Qt::AlignRight | Qt::AlignVCenter)
        && font.numberGlyphs.fit(painter.deviceTransform()) && line.hasRoomFor(font.numberGlyphs.height());
    const QPen pen = painter.pen();
    const auto restorePen = qScopeGuard([&] { painter.setPen(pen); });
    const auto prepare = [&] {
        fillBackground(painter, option.rect, background);
        painter.setPen(textColour(option, foreground));
    };
    if (asNumber && font.numberGlyphs.accepts(text, line.rect.width())) {
        prepare();
        font.numberGlyphs.draw(painter, line.rect, line.topOf(font.numberGlyphs.height()), text);
        return true;
    }
    if (!line.layOut())
        return false;
    prepare();
    line.draw(painter);
    return true;
}

bool CellDelegate::styleIsKnown() const
{
    // A style sheet of the application replaces its style; those of the ancestors reach down to the cells.
    if (table.testAttribute(Qt::WA_SetStyle) || !isKnown(*QApplication::style()) || table.styleSheet() != ownStyleSheet)
        return false;
    for (const QWidget *widget = table.parentWidget(); widget; widget = widget->parentWidget()) {
        if (!widget->styleSheet().isEmpty())
            return false;
    }
    return true;
}

const CellDelegate::Metrics &CellDelegate::metricsOf(const QFont &font) const
{
    const QRawFont face = QRawFont::fromFont(font);
    if (metrics && metrics->font == font && metrics->face == face)
        return *metrics;
    const QFontMetricsF fontMetrics(font);
    qreal horizontalOverhang = 0.0;
    qreal verticalOverhang = 0.0;
    for (const auto &range : latin1Ranges) {
        for (char16_t code = range[0]; code <= range[1]; ++code) {
            const QChar ch(code);
            const QRectF ink = fontMetrics.boundingRect(ch);
            horizontalOverhang =
                std::max({horizontalOverhang, -fontMetrics.leftBearing(ch), -fontMetrics.rightBearing(ch)});
            verticalOverhang =
                std::max({verticalOverhang, -ink.top() - fontMetrics.ascent(), ink.bottom() - fontMetrics.descent()});
        }
    }
    // The smoothing of the edges takes up to a pixel.
    metrics.emplace(
        Metrics{font, face, qCeil(horizontalOverhang) + 1, qCeil(verticalOverhang) + 1, NumberGlyphs(font)});
    return *metrics;
}
