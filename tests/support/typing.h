// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractSpinBox>
#include <QLocale>
#include <QTest>
#include <QWidget>

/// Types the number \a number, such as "-0.6", as the keyboard of the widget's locale does: with a comma, or in Arabic
/// digits. GUI thread.
inline void typeNumber(QWidget *widget, const QString &number)
{
    const QLocale locale = widget->locale();
    for (QChar key : number) {
        if (key == QLatin1Char('.'))
            key = locale.decimalPoint();
        else if (key == QLatin1Char('-'))
            key = locale.negativeSign();
        else if (key.isDigit())
            key = QChar(locale.zeroDigit().unicode() + key.digitValue());
        // QTest::keyClick knows the keys of Latin 1 only.
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(key), Qt::NoModifier);
    }
}

/// Types \a number over what \a spinBox holds; the edit is still open afterwards. GUI thread.
inline void replaceNumber(QAbstractSpinBox *spinBox, const QString &number)
{
    spinBox->setFocus();
    spinBox->selectAll();
    typeNumber(spinBox, number);
}
