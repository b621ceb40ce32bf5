// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"

#include "channel/query.h"
#include "channel/version.h"
#include "filter/filtercontrols.h"
#include "interface/iomanager.h"
#include "numbers/saturatedint.h"
#include "ui_filterdialog.h"

#include <QScopedValueRollback>

QByteArray FilterDialog::currentBody() const
{
    return ui->comboBox_body->currentData().toByteArray();
}

QByteArray FilterDialog::currentPreset() const
{
    return ui->comboBox_preset->currentData().toByteArray();
}

void FilterDialog::fillBodies(int tabIndex, int bodyIndex)
{
    ui->comboBox_body->clear();
    inertialBodies.clear();
    const QVector<FilterBodyEntry> bodies = capabilities().bodies(tabIndex, bodyIndex);
    for (const FilterBodyEntry &body : bodies) {
        ui->comboBox_body->addItem(body.name, body.id);
        inertialBodies.insert(body.id, body.hasInertialSensor);
    }
    ui->comboBox_body->setEnabled(bodyIndex < 0);
}

void FilterDialog::fillPresets(const QByteArray &bodyId)
{
    if (capabilities().hasListsPerBody()) {
        replaceItems(ui->comboBox_preset, capabilities().presetsOf(bodyId));
        return;
    }
    const QScopedValueRollback<bool> quiet(ready, false);
    ui->comboBox_preset->clear();
    const bool inertial = inertialBodies.value(bodyId);
    for (const FilterPresetEntry &preset : qAsConst(presets)) {
        if (!inertial || preset.forInertialBodies)
            ui->comboBox_preset->addItem(preset.description, preset.id);
    }
}

void FilterDialog::fillModes(const QByteArray &bodyId)
{
    if (capabilities().hasListsPerBody())
        replaceItems(ui->comboBox_mode, capabilities().modesOf(bodyId));
}

void FilterDialog::replaceItems(QComboBox *comboBox, const FilterChoices &choices)
{
    FilterChoices present;
    for (int i = 0; i < comboBox->count(); ++i)
        present[comboBox->itemData(i).toByteArray()] = comboBox->itemText(i);
    if (present == choices)
        return; // and the current item survives
    const QScopedValueRollback<bool> quiet(ready, false);
    comboBox->clear();
    for (const auto &[id, description] : choices)
        comboBox->addItem(description, id);
}

void FilterDialog::readAll()
{
    readActive();
    readPreset();
    readStrength();
    readPrediction();
    readMode();
}

// The next two leave the ready flag alone: run from a slot, a state or preset other than the last body's is sent back
// to the backend, and what depends on it is read again.

void FilterDialog::readActive()
{
    const QByteArray body = currentBody();
    if (body.isEmpty()) {
        ui->checkBox_active->setChecked(false);
        return;
    }
    Query query(*ioManager);
    ui->checkBox_active->setChecked(
        query.isYes(ioManager->requestString(query.textBuffer(), "body filter6d_enabled %s", body.constData())));
    QByteArray sensor = "none";
    if (versionAtLeast(*versions, 1, 12)) {
        sensor = query.text(ioManager->requestString(query.textBuffer(), "body inertial_sensor %s", body.constData()))
                     .value_or(sensor);
    }
    ui->checkBox_active->setVisible(sensor == "none");
}

void FilterDialog::readPreset()
{
    const QByteArray body = currentBody();
    if (body.isEmpty()) {
        ui->comboBox_preset->setCurrentIndex(-1);
        return;
    }
    fillPresets(body);
    Query query(*ioManager);
    const auto preset =
        query.text(ioManager->requestString(query.textBuffer(), "body filter6d_preset %s", body.constData()),
                   "get filter 6d preset for body %1", QString::fromLatin1(body));
    if (!preset) {
        ui->comboBox_preset->setEnabled(false);
        return;
    }
    ui->comboBox_preset->setCurrentIndex(ui->comboBox_preset->findData(*preset));
    ui->comboBox_preset->setEnabled(ui->checkBox_active->isChecked());
}

void FilterDialog::readStrength()
{
    const QByteArray body = currentBody();
    if (body.isEmpty()) {
        ui->doubleSpinBox_strength->setValue(0.0);
        return;
    }
    Query query(*ioManager);
    const double strength =
        query.number(ioManager->requestDouble(query.doubleBuffer(), "body filter6d_strength %s", body.constData()),
                     "get filter 6d strength for body %1", QString::fromLatin1(body));
    ui->doubleSpinBox_strength->setValue(finiteNumber(strength));

    const FilterControls controls = controlsFor(currentPreset(), ui->checkBox_active->isChecked());
    ui->doubleSpinBox_strength->setEnabled(controls.strengthEnabled);
    ui->label_strength->setVisible(controls.strengthShown);
    ui->doubleSpinBox_strength->setVisible(controls.strengthShown);
}

void FilterDialog::readPrediction()
{
    const QByteArray body = currentBody();
    if (body.isEmpty()) {
        ui->spinBox_prediction->setValue(0);
        return;
    }
    Query query(*ioManager);
    const double seconds =
        query.number(ioManager->requestDouble(query.doubleBuffer(), "body filter6d_prediction %s", body.constData()),
                     "get filter 6d prediction for body %1", QString::fromLatin1(body));
    ui->spinBox_prediction->setValue(saturatedInt(seconds * 1000.0));
    ui->spinBox_prediction->setEnabled(
        controlsFor(currentPreset(), ui->checkBox_active->isChecked()).predictionEnabled);
}

void FilterDialog::readMode()
{
    const QByteArray body = currentBody();
    if (body.isEmpty())
        return;
    fillModes(body);
    Query query(*ioManager);
    const auto mode =
        query.text(ioManager->requestString(query.textBuffer(), "body filter6d_mode %s", body.constData()),
                   "get filter 6d mode for body %1", QString::fromLatin1(body));
    const QScopedValueRollback<bool> quiet(ready, false);
    if (!mode) {
        ui->comboBox_mode->setCurrentIndex(-1);
        return;
    }
    ui->comboBox_mode->setCurrentIndex(ui->comboBox_mode->findData(*mode));
    ui->comboBox_mode->setEnabled(controlsFor(currentPreset(), ui->checkBox_active->isChecked()).modeEnabled);
}
