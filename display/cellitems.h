// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTableWidgetItem>

/// A cell that keeps a number and makes its text only when somebody asks. To everybody else it is a plain item: setting
/// a text replaces the number, and setting an alignment replaces the default one.
/// Not supported: the model's itemData() and copies through the base class (QTableWidgetItem's constructor or
/// assignment), which read what the base keeps: the text set last, or none, and no default alignment. A text for each
/// number would cost more than the whole redraw. clone(), data() and streams have the text shown.
class NumberItem : public QTableWidgetItem {
public:
    NumberItem &operator=(const NumberItem &other) = delete;

    QVariant data(int role) const override;
    void setData(int role, const QVariant &value) override;
    /// With the text shown.
    void write(QDataStream &out) const override;
    void read(QDataStream &in) override;

protected:
    NumberItem(int type, Qt::Alignment alignment);
    /// Takes the other's data and flags, but not its table.
    NumberItem(const NumberItem &other);

    virtual QString numberText() const = 0;
    bool showsNumber() const { return numberShown; }
    /// The number is the text from now on. The caller notifies the table.
    void setNumberShown() { numberShown = true; }

private:
    const Qt::Alignment alignment;
    bool numberShown = false;
};

/// A coordinate or angle with two decimals, to the right.
class CoordinateItem final : public NumberItem {
public:
    static constexpr int itemType = UserType + 1;

    CoordinateItem();
    explicit CoordinateItem(float number);

    CoordinateItem *clone() const override { return new CoordinateItem(*this); }
    /// Shows \a number. Returns whether it changed: the same bits don't. The caller notifies the table.
    bool setNumber(float number);

protected:
    QString numberText() const override;

private:
    float number = 0.0F; ///< [mm] or [deg]
};

/// The id of a marker, in the middle.
class MarkerIdItem final : public NumberItem {
public:
    static constexpr int itemType = UserType + 2;

    /// \a format has a place "%1" for the \a id.
    MarkerIdItem(QString format, qint32 id);

    MarkerIdItem *clone() const override { return new MarkerIdItem(*this); }
    /// Shows \a newId. The caller notifies the table.
    void setId(qint32 newId) { id = newId; }

protected:
    QString numberText() const override;

private:
    QString format;
    qint32 id = 0;
};

// A redraw finds its own items by their type. Items that somebody else has put there are used through the base class.

/// Shows \a number in \a item. Returns whether the item changed.
bool setNumber(QTableWidgetItem &item, float number);
/// Set colours of \a item. Return whether the item changed.
bool setBackground(QTableWidgetItem &item, Qt::GlobalColor colour);
bool setColours(QTableWidgetItem &item, Qt::GlobalColor text, Qt::GlobalColor background);
/// Sets what a screen reader says of \a item. Returns whether it changed.
bool setAccessibleText(QTableWidgetItem &item, const QString &text);
