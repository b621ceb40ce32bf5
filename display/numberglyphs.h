// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QRawFont>

#include <array>

class QPainter;
class QRect;
class QTransform;

/// The digits, the point and the minus of a font, for numbers that are drawn without a layout of their own: in most
/// fonts each of them takes the same room whatever stands beside it.
class NumberGlyphs {
public:
    /// Lays out all characters beside each other once, to see whether the font is one of those.
    explicit NumberGlyphs(const QFont &font);

    /// Whether numbers of this font can be drawn at \a transform, where no place is rounded otherwise than in a layout.
    bool fit(const QTransform &transform) const;
    /// Height of a line [pixels].
    int height() const { return lineHeight; }
    /// Whether \a number has no other characters, and room in \a width.
    bool accepts(const QString &number, int width) const;
    /// Draws a \a number that it accepts() to the right of \a rect, with the line's top at \a top, in the
    /// painter's pen.
    void draw(QPainter &painter, const QRect &rect, int top, const QString &number) const;

private:
    struct Glyph {
        quint32 index = 0;
        qreal advance = 0.0; ///< [pixels]
    };
    static constexpr int characterCount = 12;
    static int placeOf(QChar ch); ///< below 0: none of the characters

    bool usable = false;
    int lineHeight = 0;
    qreal ascent = 0.0;
    QRawFont rawFont;
    std::array<Glyph, characterCount> glyphs;
};
