// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/dialogactions.h"

#include "filter/filterdialog.h"
#include "tests/support/typing.h"

#include <QAbstractSpinBox>
#include <QTest>

namespace {

QWidget *field(const FilterDialog &dialog, const char *name)
{
    return dialog.findChild<QWidget *>(QLatin1String(name));
}

void enter(const FilterDialog &dialog, const char *spinBox, const QString &number)
{
    replaceNumber(dialog.findChild<QAbstractSpinBox *>(QLatin1String(spinBox)), number);
    field(dialog, "pushButton_exit")->setFocus();
}

} // namespace

void changeSetting(const FilterDialog &dialog, const QByteArray &setting)
{
    if (setting == "active")
        QTest::mouseClick(field(dialog, "checkBox_active"), Qt::LeftButton, {}, QPoint(8, 8));
    else if (setting == "preset")
        QTest::keyClicks(field(dialog, "comboBox_preset"), QStringLiteral("Hybrid"));
    else if (setting == "strength")
        enter(dialog, "doubleSpinBox_strength", QStringLiteral("0.6"));
    else if (setting == "prediction")
        enter(dialog, "spinBox_prediction", QStringLiteral("25"));
    else if (setting == "mode")
        QTest::keyClicks(field(dialog, "comboBox_mode"), QStringLiteral("Static"));
    else if (setting == "body")
        QTest::keyClick(field(dialog, "comboBox_body"), Qt::Key_Up);
    else if (setting == "next body")
        QTest::keyClick(field(dialog, "comboBox_body"), Qt::Key_Down);
}
