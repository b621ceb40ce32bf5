// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterdialog.h"

#include "channel/query.h"
#include "filter/filterhelp.h"
#include "interface/iomanager.h"
#include "ui_filterdialog.h"

#include <QKeyEvent>
#include <QScopedValueRollback>

#include <utility>

namespace {

/// The user data of item \a index, to be sent to the backend; empty without such an item.
QByteArray idOf(const QComboBox *comboBox, int index)
{
    return comboBox->itemData(index).toByteArray();
}

} // namespace

/// Stands for one of the dialog's functions that talk to the host, as long as it is at work. One that begins while
/// another waits for the host has come in by itself and overtakes it.
class FilterDialog::Work {
public:
    explicit Work(FilterDialog &filterDialog)
        : dialog(filterDialog)
        , continues(std::exchange(dialog.applying, false))
    {
        if (dialog.working > 0 && !continues)
            ++dialog.turn;
        ++dialog.working;
    }
    ~Work()
    {
        dialog.applying = continues;
        if (--dialog.working == 0 && dialog.orphaned)
            dialog.deleteLater();
    }
    Q_DISABLE_COPY_MOVE(Work)

private:
    FilterDialog &dialog;
    bool continues; ///< another function, which waits for this one's end
};

FilterDialog::FilterDialog(IOManager *io, QWidget *parent, BackendVersions *backendVersions)
    : QDialog(parent)
    , ui(std::make_unique<Ui::FilterDialog>())
    , ioManager(io)
    , versions(backendVersions)
{
    ui->setupUi(this);
    connectSlots();
    if (parent) {
        setWindowIcon(parent->windowIcon());
        connect(parent, &QObject::destroyed, this, &FilterDialog::outliveParent);
    }
    const Work atWork(*this);
    readListsOfAllBodies();
}

FilterDialog::~FilterDialog()
{
    ready = false;
    hide(); // ends an edit: QDialog would do it when the slots have no object any more
    delete help; // it has no parent, and would stay open over an application that no longer has the module
}

int FilterDialog::update_and_exec(int iTabIndex, int iBodyindex)
{
    if (orphaned)
        return QDialog::Rejected;
    bool loaded = false;
    {
        const Work atWork(*this);
        loaded = load(iTabIndex, iBodyindex);
    }
    return loaded ? exec() : result(); // the dialog may be gone by now
}

void FilterDialog::work(const std::function<bool()> &steps)
{
    const Work atWork(*this);
    bool done = steps();
    while (!done && working == 1 && !orphaned)
        done = readAll();
}

bool FilterDialog::apply(const std::function<void()> &change)
{
    const int before = turn;
    const QScopedValueRollback<bool> own(applying, true);
    change();
    return turn == before;
}

void FilterDialog::outliveParent()
{
    if (working == 0)
        return;
    orphaned = true;
    ready = false;
    ++turn;
    if (FilterHelp *open = help)
        open->reject();
    reject();
    setParent(nullptr, windowFlags());
}

// Not by name: of the two signals currentIndexChanged() of a combo box Qt would take the first for the slot without an
// argument, and say so in the host's log.
void FilterDialog::connectSlots()
{
    connect(ui->pushButton_help, &QPushButton::clicked, this, &FilterDialog::on_pushButton_help_clicked);
    connect(ui->comboBox_body, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FilterDialog::on_comboBox_body_currentIndexChanged);
    connect(ui->checkBox_active, &QCheckBox::stateChanged, this, &FilterDialog::on_checkBox_active_stateChanged);
    connect(ui->comboBox_preset, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FilterDialog::on_comboBox_preset_currentIndexChanged);
    connect(ui->doubleSpinBox_strength, &QAbstractSpinBox::editingFinished, this,
            &FilterDialog::on_doubleSpinBox_strength_editingFinished);
    connect(ui->spinBox_prediction, &QAbstractSpinBox::editingFinished, this,
            &FilterDialog::on_spinBox_prediction_editingFinished);
    connect(ui->comboBox_mode, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FilterDialog::on_comboBox_mode_currentIndexChanged);
    connect(ui->pushButton_exit, &QPushButton::clicked, this, &FilterDialog::on_pushButton_exit_clicked);
}

void FilterDialog::readListsOfAllBodies()
{
    const FilterCapabilities asked = capabilities();
    presets = asked.presets();
    if (orphaned)
        return;
    const FilterLimits limits = asked.limits();
    if (orphaned)
        return;
    ui->doubleSpinBox_strength->setMinimum(limits.strengthMin);
    ui->doubleSpinBox_strength->setMaximum(limits.strengthMax);
    ui->spinBox_prediction->setMinimum(limits.predictionMin);
    ui->spinBox_prediction->setMaximum(limits.predictionMax);
    if (asked.hasListsPerBody())
        return;
    const QVector<FilterModeEntry> modes = asked.modes();
    for (const FilterModeEntry &mode : modes)
        ui->comboBox_mode->addItem(mode.description, mode.id);
}

bool FilterDialog::load(int tabIndex, int bodyIndex)
{
    const int asked = turn;
    const bool available = capabilities().isAvailable(tabIndex);
    if (turn != asked)
        return false;
    const bool locked = capabilities().isLocked();
    if (turn != asked || !apply([=] { setControlsEnabled(available && !locked); }))
        return false;
    if (!available || locked) {
        if (!locked) // a locked configuration shows in the disabled controls, without a message
            ui->label_error->setText(unavailableText(tabIndex));
        return true;
    }
    ui->label_error->setText(QString());
    ready = false;
    if (!fillBodies(tabIndex, bodyIndex) || !readAll())
        return false;
    ready = true;
    return true;
}

void FilterDialog::setControlsEnabled(bool enabled)
{
    const std::initializer_list<QWidget *> controls = {
        ui->label_body,         ui->comboBox_body,  ui->checkBox_active,        ui->label_preset,
        ui->comboBox_preset,    ui->label_strength, ui->doubleSpinBox_strength, ui->label_prediction,
        ui->spinBox_prediction, ui->label_mode,     ui->comboBox_mode};
    for (QWidget *control : controls)
        control->setEnabled(enabled);
}

QString FilterDialog::unavailableText(int tabIndex)
{
    if (tabIndex == 0)
        return tr("<b><font color=red>6DOF filter for standard bodies not available</font></b>");
    if (tabIndex == 1)
        return tr("<b><font color=red>6DOF filter for wandors not available</font></b>");
    return tr("<b><font color=red>6DOF filter not available</font></b>");
}

FilterCapabilities FilterDialog::capabilities() const
{
    return {*ioManager, *versions, [this, asked = turn] { return turn == asked; }};
}

void FilterDialog::keyPressEvent(QKeyEvent *event)
{
    // Return ends an edit: no button is the dialog's default, but one that has the focus is clicked.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (auto *button = qobject_cast<QPushButton *>(focusWidget()))
            button->click();
        return;
    }
    QDialog::keyPressEvent(event);
}

void FilterDialog::on_pushButton_help_clicked()
{
    const QPointer<FilterHelp> opened(new FilterHelp);
    help = opened;
    opened->exec();
    delete opened; // not the member: the dialog may be gone, and the help with it
}

void FilterDialog::on_comboBox_body_currentIndexChanged()
{
    if (ready)
        work([this] { return readAll(); });
}

void FilterDialog::on_checkBox_active_stateChanged(int state)
{
    if (!ready)
        return;
    work([this, state] {
        const int asked = turn;
        const QByteArray body = currentBody();
        Query query(*ioManager);
        query.accepted(ioManager->sendCommand("body filter6d_enabled %s %s", body.constData(),
                                              state == Qt::Checked ? "yes" : "no"),
                       "activate/deactivate filter 6d for body %1", QString::fromLatin1(body));
        return turn == asked && readPreset() && readDependants();
    });
}

void FilterDialog::on_comboBox_preset_currentIndexChanged(int index)
{
    if (!ready)
        return;
    work([this, index] {
        const int asked = turn;
        const QByteArray body = currentBody();
        Query query(*ioManager);
        query.accepted(ioManager->sendCommand("body filter6d_preset %s %s", body.constData(),
                                              idOf(ui->comboBox_preset, index).constData()),
                       "set filter 6d preset for body %1", QString::fromLatin1(body));
        return turn == asked && readDependants();
    });
}

void FilterDialog::on_doubleSpinBox_strength_editingFinished()
{
    if (!ready)
        return;
    work([this] {
        const int asked = turn;
        const QByteArray body = currentBody();
        Query query(*ioManager);
        query.accepted(ioManager->sendCommand("body filter6d_strength %s %f", body.constData(),
                                              ui->doubleSpinBox_strength->value()),
                       "set filter 6d strength for body %1", QString::fromLatin1(body));
        return turn == asked;
    });
}

void FilterDialog::on_spinBox_prediction_editingFinished()
{
    if (!ready)
        return;
    work([this] {
        const int asked = turn;
        const QByteArray body = currentBody();
        Query query(*ioManager);
        query.accepted(ioManager->sendCommand("body filter6d_prediction %s %f", body.constData(),
                                              ui->spinBox_prediction->value() / 1000.0),
                       "set filter 6d prediction for body %1", QString::fromLatin1(body));
        return turn == asked;
    });
}

void FilterDialog::on_comboBox_mode_currentIndexChanged(int index)
{
    if (!ready)
        return;
    work([this, index] {
        const int asked = turn;
        const QByteArray body = currentBody();
        Query query(*ioManager);
        query.accepted(ioManager->sendCommand("body filter6d_mode %s %s", body.constData(),
                                              idOf(ui->comboBox_mode, index).constData()),
                       "set filter 6d mode for body %1", QString::fromLatin1(body));
        return turn == asked;
    });
}

void FilterDialog::on_pushButton_exit_clicked()
{
    close();
}
