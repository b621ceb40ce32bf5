// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"

#include "channel/query.h"
#include "channel/version.h"
#include "filter/filtercontrols.h"
#include "interface/iomanager.h"
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

bool FilterDialog::fillBodies(int tabIndex, int bodyIndex)
{
    const int asked = turn;
    ui->comboBox_body->clear();
    inertialBodies.clear();
    const QVector<FilterBodyEntry> bodies = capabilities().bodies(tabIndex, bodyIndex);
    if (turn != asked)
        return false;
    for (const FilterBodyEntry &body : bodies) {
        ui->comboBox_body->addItem(body.name, body.id);
        inertialBodies.insert(body.id, body.hasInertialSensor);
    }
    ui->comboBox_body->setEnabled(bodyIndex < 0);
    return true;
}

bool FilterDialog::fillPresets(const QByteArray &bodyId)
{
    if (capabilities().hasListsPerBody()) {
        const int asked = turn;
        const FilterChoices choices = capabilities().presetsOf(bodyId);
        if (turn != asked)
            return false;
        replaceItems(ui->comboBox_preset, choices);
        return true;
    }
    const QScopedValueRollback<bool> quiet(ready, false);
    ui->comboBox_preset->clear();
    const bool inertial = inertialBodies.value(bodyId);
    for (const FilterPresetEntry &preset : qAsConst(presets)) {
        if (!inertial || preset.forInertialBodies)
            ui->comboBox_preset->addItem(preset.description, preset.id);
    }
    return true;
}

bool FilterDialog::fillModes(const QByteArray &bodyId)
{
    if (!capabilities().hasListsPerBody())
        return true;
    const int asked = turn;
    const FilterChoices choices = capabilities().modesOf(bodyId);
    if (turn != asked)
        return false;
    replaceItems(ui->comboBox_mode, choices);
    return true;
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

bool FilterDialog::readAll()
{
    return readActive() && readPreset() && readDependants();
}

bool FilterDialog::readDependants()
{
    return readStrength() && readPrediction() && readMode();
}

// readActive() and readPreset() do not clear `ready`: called from a slot, a changed value is sent back to the backend,
// and its dependants are re-read. This is deliberate.

bool FilterDialog::readActive()
{
    const QByteArray body = currentBody();
    if (body.isEmpty())
        return apply([this] { ui->checkBox_active->setChecked(false); });
    const int asked = turn;
    Query query(*ioManager);
    const bool active =
        query.isYes(ioManager->requestString(query.textBuffer(), "body filter6d_enabled %s", body.constData()));
    if (turn != asked || !apply([this, active] { ui->checkBox_active->setChecked(active); }))
        return false;
    QByteArray sensor = "none";
    if (versionAtLeast(*versions, 1, 12)) {
        sensor = query.text(ioManager->requestString(query.textBuffer(), "body inertial_sensor %s", body.constData()))
                     .value_or(sensor);
    }
    return turn == asked && apply([this, sensor] { ui->checkBox_active->setVisible(sensor == "none"); });
}

bool FilterDialog::readPreset()
{
    const QByteArray body = currentBody();
    if (body.isEmpty())
        return apply([this] { ui->comboBox_preset->setCurrentIndex(-1); });
    const int asked = turn;
    if (!fillPresets(body))
        return false;
    Query query(*ioManager);
    const auto preset =
        query.text(ioManager->requestString(query.textBuffer(), "body filter6d_preset %s", body.constData()),
                   "get filter 6d preset for body %1", QString::fromLatin1(body));
    if (turn != asked)
        return false;
    if (!preset)
        return apply([this] { ui->comboBox_preset->setEnabled(false); });
    return apply([this, preset] { ui->comboBox_preset->setCurrentIndex(ui->comboBox_preset->findData(*preset)); })
        && apply([this] { ui->comboBox_preset->setEnabled(ui->checkBox_active->isChecked()); });
}

bool FilterDialog::readStrength()
{
    const QByteArray body = currentBody();
    if (body.isEmpty())
        return apply([this] { ui->doubleSpinBox_strength->setValue(0.0); });
    const int asked = turn;
    Query query(*ioManager);
    const double strength =
        query.number(ioManager->requestDouble(query.doubleBuffer(), "body filter6d_strength %s", body.constData()),
                     "get filter 6d strength for body %1", QString::fromLatin1(body));
    return turn == asked && apply([this, strength] {
               ui->doubleSpinBox_strength->setValue(finiteNumber(strength));
               const FilterControls controls = controlsFor(currentPreset(), ui->checkBox_active->isChecked());
               ui->doubleSpinBox_strength->setEnabled(controls.strengthEnabled);
               ui->label_strength->setVisible(controls.strengthShown);
               ui->doubleSpinBox_strength->setVisible(controls.strengthShown);
           });
}

bool FilterDialog::readPrediction()
{
    const QByteArray body = currentBody();
    if (body.isEmpty())
        return apply([this] { ui->spinBox_prediction->setValue(0); });
    const int asked = turn;
    Query query(*ioManager);
    const double seconds =
        query.number(ioManager->requestDouble(query.doubleBuffer(), "body filter6d_prediction %s", body.constData()),
                     "get filter 6d prediction for body %1", QString::fromLatin1(body));
    return turn == asked && apply([this, seconds] {
               ui->spinBox_prediction->setValue(milliseconds(seconds));
               const FilterControls controls = controlsFor(currentPreset(), ui->checkBox_active->isChecked());
               ui->spinBox_prediction->setEnabled(controls.predictionEnabled);
           });
}

bool FilterDialog::readMode()
{
    const QByteArray body = currentBody();
    if (body.isEmpty())
        return true;
    const int asked = turn;
    if (!fillModes(body))
        return false;
    Query query(*ioManager);
    const auto mode =
        query.text(ioManager->requestString(query.textBuffer(), "body filter6d_mode %s", body.constData()),
                   "get filter 6d mode for body %1", QString::fromLatin1(body));
    if (turn != asked)
        return false;
    const QScopedValueRollback<bool> quiet(ready, false);
    if (!mode) {
        ui->comboBox_mode->setCurrentIndex(-1);
        return true;
    }
    ui->comboBox_mode->setCurrentIndex(ui->comboBox_mode->findData(*mode));
    ui->comboBox_mode->setEnabled(controlsFor(currentPreset(), ui->checkBox_active->isChecked()).modeEnabled);
    return true;
}
