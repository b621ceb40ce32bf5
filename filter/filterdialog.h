// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "filter/filtercapabilities.h"

#include <QDialog>
#include <QMap>
#include <QPointer>
#include <QVector>

#include <functional>
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
///
/// The host may run an event loop inside any call. What comes in there wins: a function that finds itself overtaken
/// when it has its answer gives up, and the outermost one reads everything anew. A parent that is destroyed then leaves
/// the dialog behind, closed and without further questions, until nothing of it is at work; it destroys itself later.
/// Not supported: deleting the dialog itself from inside a call.
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
    /// The dialog may have been deleted when this returns (with its parent, while it was open).
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
    class Work;

    void connectSlots();
    /// Does \a steps, which return false when they were overtaken. Then everything is read anew: the host may have
    /// carried out the commands in another order than they came in.
    void work(const std::function<bool()> &steps);
    /// Lets \a change set controls. Slots that it fires belong to the function at work: they don't overtake it, but may
    /// be overtaken while they wait for the host. Returns false then.
    bool apply(const std::function<void()> &change);
    /// The parent is being destroyed, and its children are next. Functions of the dialog that wait for the host, and
    /// Qt's functions that have called them, still need the dialog.
    void outliveParent();

    void readListsOfAllBodies();
    bool load(int tabIndex, int bodyIndex);
    void setControlsEnabled(bool enabled);
    bool fillBodies(int tabIndex, int bodyIndex);
    bool fillPresets(const QByteArray &bodyId);
    bool fillModes(const QByteArray &bodyId);
    void replaceItems(QComboBox *comboBox, const FilterChoices &choices);

    // These return false when they were overtaken while they waited for the host, and have left the rest undone.
    bool readAll();
    bool readDependants();
    bool readActive();
    bool readPreset();
    bool readStrength();
    bool readPrediction();
    bool readMode();

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
    QPointer<FilterHelp> help; ///< while it is open

    int working = 0; ///< functions at work, one inside another
    bool applying = false; ///< the innermost of them changes controls, and slots called now continue it
    int turn = 0; ///< changes whenever something comes in that the functions at work did not start
    bool orphaned = false; ///< the parent was destroyed while a function was at work
};
