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

/// Paints the plain cells of a table, most of which change five times a second, without the style's general way: a
/// brush, and one line of text laid out once. The pixels are those of the base class, which paints all the others:
/// selected, focused or disabled cells, icons, several lines, texts to be shortened, and cells of styles whose ways
/// are not known.
class CellDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// \a itsTable owns the delegate and has a style sheet of its own, which says nothing of cells.
    explicit CellDelegate(QTableWidget *itsTable);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    struct Measures {
        QFont font;
        // What the font stands for: equal fonts have other glyphs at another resolution, or once a host has loaded
        // fonts of its own.
        QRawFont face;
        // How far its letters reach over the box of their line, where the base class clips them [pixels].
        int sideways;
        int upright;
        NumberGlyphs numberGlyphs;
    };

    bool paintPlain(QPainter &painter, const QStyleOptionViewItem &option, const QTableWidgetItem &item) const;
    bool styleIsKnown() const;
    const Measures &measuresOf(const QFont &font) const;

    const QTableWidget &table;
    const QString ownStyleSheet; ///< the table's at the start
    mutable std::optional<Measures> measures; ///< of the font that was asked for last: it is nearly always the same
};
