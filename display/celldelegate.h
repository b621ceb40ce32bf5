// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "display/numberglyphs.h"

#include <QFont>
#include <QRawFont>
#include <QStyledItemDelegate>

#include <optional>

class QTableWidget;
class QTableWidgetItem;

/// Paints the cells of a table, most of which change five times a second, directly, bypassing QStyle: a brush, and one
/// line of text laid out once. The pixels are those of the base class, but for a focused cell with a colour of its own:
/// a line around it stands for the focus, which the style would paint over that colour.
/// Not supported, and left to the base class: selected, focused or disabled cells, editors, icons, check boxes, rich
/// text, several lines, texts to be shortened, characters beyond Latin-1, right-to-left layout, fonts, patterns and
/// gradients of single cells, style sheets for cells, and styles other than Fusion and Windows.
class CellDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// \a table owns the delegate and has a style sheet of its own that does not style cells.
    explicit CellDelegate(QTableWidget *table);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    struct Metrics {
        QFont font;
        // What the font stands for: equal fonts have other glyphs at another resolution, or once a host has loaded
        // fonts of its own.
        QRawFont face;
        // How far its characters reach over the box of their line, where the base class clips them [pixels].
        int horizontalOverhang;
        int verticalOverhang;
        NumberGlyphs numberGlyphs;
    };

    bool paintFast(QPainter &painter, const QStyleOptionViewItem &option, const QTableWidgetItem &item) const;
    bool styleIsKnown() const;
    const Metrics &metricsOf(const QFont &font) const;

    const QTableWidget &table;
    const QString ownStyleSheet; ///< the table's at the start
    mutable std::optional<Metrics> metrics; ///< of the font that was asked for last: it is nearly always the same
};
