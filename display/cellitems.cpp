// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/cellitems.h"

#include "numbers/samebits.h"

#include <QBrush>
#include <QSignalBlocker>
#include <QTableWidget>

#include <utility>

namespace {

bool isText(int role)
{
    return role == Qt::DisplayRole || role == Qt::EditRole;
}

} // namespace

NumberItem::NumberItem(int type, Qt::Alignment alignment)
    : QTableWidgetItem(type)
    , alignment(alignment)
{
}

// The base's copy would be of the plain type.
NumberItem::NumberItem(const NumberItem &other) // NOLINT(bugprone-copy-constructor-init)
    : QTableWidgetItem(other.type())
    , alignment(other.alignment)
    , numberShown(other.numberShown)
{
    QTableWidgetItem::operator=(other);
}

QVariant NumberItem::data(int role) const
{
    if (numberShown && isText(role))
        return numberText();
    QVariant value = QTableWidgetItem::data(role);
    if (role == Qt::TextAlignmentRole && !value.isValid())
        return static_cast<int>(alignment);
    return value;
}

void NumberItem::setData(int role, const QVariant &value)
{
    if (numberShown && isText(role)) {
        // The base compares with what it knows and is silent where nothing changes: it has to know the text shown.
        const QSignalBlocker quiet(tableWidget() ? tableWidget()->model() : nullptr);
        QTableWidgetItem::setData(role, numberText());
        numberShown = false;
    }
    QTableWidgetItem::setData(role, value);
}

void NumberItem::write(QDataStream &out) const
{
    if (!numberShown) {
        QTableWidgetItem::write(out);
        return;
    }
    QTableWidgetItem plain(*this);
    plain.setText(numberText());
    plain.write(out);
}

void NumberItem::read(QDataStream &in)
{
    QTableWidgetItem::read(in);
    numberShown = false;
}

CoordinateItem::CoordinateItem()
    : NumberItem(itemType, Qt::AlignRight | Qt::AlignVCenter)
{
}

CoordinateItem::CoordinateItem(float number)
    : CoordinateItem()
{
    setNumber(number);
}

bool CoordinateItem::setNumber(float newNumber)
{
    if (showsNumber() && sameBits(number, newNumber))
        return false;
    number = newNumber;
    setNumberShown();
    return true;
}

QString CoordinateItem::numberText() const
{
    return QString::number(static_cast<double>(number), 'f', 2);
}

MarkerIdItem::MarkerIdItem(QString format, qint32 id)
    : NumberItem(itemType, Qt::AlignHCenter | Qt::AlignVCenter)
    , format(std::move(format))
    , id(id)
{
    setNumberShown();
}

QString MarkerIdItem::numberText() const
{
    return format.arg(id, 0, 10, QLatin1Char(' '));
}

bool setNumber(QTableWidgetItem &item, float number)
{
    if (item.type() == CoordinateItem::itemType)
        return static_cast<CoordinateItem &>(item).setNumber(number);
    const QString text = CoordinateItem(number).text();
    if (item.text() == text)
        return false;
    item.setText(text);
    return true;
}

bool setBackground(QTableWidgetItem &item, Qt::GlobalColor colour)
{
    const QBrush brush(colour);
    if (item.background() == brush)
        return false;
    item.setBackground(brush);
    return true;
}

bool setColours(QTableWidgetItem &item, Qt::GlobalColor text, Qt::GlobalColor background)
{
    bool changed = setBackground(item, background);
    const QBrush brush(text);
    if (item.foreground() != brush) {
        item.setForeground(brush);
        changed = true;
    }
    return changed;
}

bool setAccessibleText(QTableWidgetItem &item, const QString &text)
{
    if (item.data(Qt::AccessibleTextRole).toString() == text)
        return false;
    item.setData(Qt::AccessibleTextRole, text);
    return true;
}
