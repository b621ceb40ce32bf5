// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/numberglyphs.h"

#include <QGlyphRun>
#include <QPainter>
#include <QTextLayout>
#include <QVector>

#include <cmath>

namespace {

constexpr int longestNumber = 16;

bool isWhole(qreal number)
{
    return number == std::floor(number);
}

/// Every character beside every character: each in turn after each other, then once more at the end.
QString allPairs(const QString &characters)
{
    QString text;
    for (const QChar first : characters) {
        for (const QChar second : characters) {
            text += first;
            text += second;
        }
    }
    return text;
}

} // namespace

int NumberGlyphs::placeOf(QChar ch)
{
    if (ch >= QLatin1Char('0') && ch <= QLatin1Char('9'))
        return ch.unicode() - '0';
    if (ch == QLatin1Char('.'))
        return 10;
    return ch == QLatin1Char('-') ? 11 : -1;
}

NumberGlyphs::NumberGlyphs(const QFont &font)
{
    if (font.underline() || font.strikeOut() || font.overline())
        return; // which a layout draws with its text
    const QString text = allPairs(QStringLiteral("0123456789.-"));
    QTextLayout layout(text, font);
    layout.setCacheEnabled(true);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    if (runs.size() != 1 || line.textLength() != text.size())
        return;
    const QVector<quint32> indexes = runs.first().glyphIndexes();
    const QVector<QPointF> positions = runs.first().positions();
    if (indexes.size() != text.size() || positions.size() != text.size())
        return;
    // The text starts with the first character twice, then goes on in pairs: a character's room is up to the next one.
    std::array<bool, characterCount> seen{};
    for (int i = 0; i + 1 < text.size(); ++i) {
        const auto place = static_cast<std::size_t>(placeOf(text.at(i)));
        const Glyph found{indexes.at(i), positions.at(i + 1).x() - positions.at(i).x()};
        if (!seen[place])
            glyphs[place] = found;
        seen[place] = true;
        const bool same = glyphs[place].index == found.index && glyphs[place].advance == found.advance;
        if (!same || positions.at(i).y() != positions.at(0).y())
            return;
    }
    lineHeight = layout.boundingRect().size().toSize().height();
    ascent = line.ascent();
    rawFont = runs.first().rawFont();
    usable = positions.at(0).x() == 0.0 && indexes.last() == glyphs.back().index;
}

bool NumberGlyphs::fit(const QTransform &transform) const
{
    return usable && transform.type() <= QTransform::TxScale && isWhole(transform.m11()) && isWhole(transform.m22())
        && isWhole(transform.dx()) && isWhole(transform.dy());
}

bool NumberGlyphs::accepts(const QString &number, int width) const
{
    if (number.size() > longestNumber)
        return false;
    qreal sum = 0.0;
    for (const QChar ch : number) {
        const int place = placeOf(ch);
        if (place < 0)
            return false;
        sum += glyphs[static_cast<std::size_t>(place)].advance;
    }
    return sum <= width;
}

void NumberGlyphs::draw(QPainter &painter, const QRect &rect, int top, const QString &number) const
{
    std::array<quint32, longestNumber> indexes{};
    std::array<QPointF, longestNumber> positions{};
    std::size_t count = 0;
    qreal width = 0.0;
    for (const QChar ch : number) {
        const Glyph &glyph = glyphs[static_cast<std::size_t>(placeOf(ch))];
        indexes[count] = glyph.index;
        positions[count].setX(width);
        width += glyph.advance;
        ++count;
    }
    QGlyphRun run;
    run.setRawFont(rawFont);
    run.setRawData(indexes.data(), positions.data(), static_cast<int>(count));
    painter.drawGlyphRun(QPointF(rect.x() + rect.width() - width, top + ascent), run);
}
