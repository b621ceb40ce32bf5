// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "filter/filtercapabilities.h"

#include <QDialog>
#include <QMap>
#include <QPointer>
#include <QVector>

#include <memory>

class FilterHelp;
class IOManager;
class QComboBox;
struct BackendVersions;

namespace Ui {
class FilterDialog;
}

/// Shows and changes the backend's 6DOF filter of one body. Every change is sent at once; there is nothing to apply or
/// to cancel. GUI thread only.
class FilterDialog : public QDialog {
    Q_OBJECT

public:
    /// \a ioManager and \a versions are the host's and outlive the dialog. Asks the backend for what holds for all
    /// bodies: presets, limits and, before 1.21, modes.
    FilterDialog(IOManager *ioManager, QWidget *parent, BackendVersions *versions);
    ~FilterDialog() override;

public slots:
    /// Reads everything about the bodies of a table (\a iTabIndex 0: standard bodies, 1: wandors) and runs the dialog
    /// modally; returns the result. \a iBodyindex counts from 0; below 0 all calibrated bodies are offered.
    /// May be left with the dialog deleted: whoever owns its parent may delete both while it is open.
    int update_and_exec(int iTabIndex = 0, int iBodyindex = -1);

private slots:
    void on_pushButton_help_clicked();
    void on_comboBox_body_currentIndexChanged();
    void on_checkBox_active_stateChanged(int state);
    void on_comboBox_preset_currentIndexChanged(int index);
    void on_doubleSpinBox_strength_editingFinished();
    void on_spinBox_prediction_editingFinished();
    void on_comboBox_mode_currentIndexChanged(int index);
    void on_pushButton_exit_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void connectSlots();
    void applyLimits();
    void load(int tabIndex, int bodyIndex);
    void setControlsEnabled(bool enabled);
    void fillBodies(int tabIndex, int bodyIndex);
    void fillPresets(const QByteArray &bodyId);
    void fillModes(const QByteArray &bodyId);
    void replaceItems(QComboBox *comboBox, const FilterChoices &choices);

    void readAll();
    void readActive();
    void readPreset();
    void readStrength();
    void readPrediction();
    void readMode();

    static QString unavailableText(int tabIndex);
    FilterCapabilities capabilities() const;
    QByteArray currentBody() const; ///< "standard b01"; empty without a current item
    QByteArray currentPreset() const; ///< likewise

    std::unique_ptr<Ui::FilterDialog> ui;
    IOManager *ioManager = nullptr;
    BackendVersions *versions = nullptr;
    bool ready = false; ///< while false, changes of the controls are the dialog's own and are not sent
    QMap<QByteArray, bool> inertialBodies; ///< by body identifier: whether it has an inertial sensor
    QVector<FilterPresetEntry> presets; ///< of all bodies, in the order of the backend
    bool locked = false;
    QPointer<FilterHelp> help; ///< while it is open
};
