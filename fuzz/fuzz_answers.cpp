// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/datadisplay.h"
#include "filter/filterdialog.h"
#include "fuzz/bytehost.h"
#include "fuzz/fuzztarget.h"
#include "interface/backendversions.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QSpinBox>
#include <QTableWidget>

namespace {

const QString preferencesFile =
    QStringLiteral(".ZEL/VORNAK4/modules/datadisplay/v2.2.6/config/datadisplay-preferences.xml");
constexpr int mostSteps = 12;
constexpr int lastPollingPass = 9;

BackendVersions versionOf(int choice)
{
    static const std::array<std::array<int, 2>, 6> known{{{1, 24}, {2, 0}, {1, 21}, {1, 12}, {1, 9}, {0, 12}}};
    const std::array<int, 2> &version = known[static_cast<std::size_t>(choice)];
    BackendVersions versions;
    versions.backendMajor = version[0];
    versions.backendMinor = version[1];
    versions.backendPatch = -1;
    return versions;
}

template<typename Widget> Widget &control(FilterDialog &dialog, const char *name)
{
    auto *widget = dialog.findChild<Widget *>(QLatin1String(name));
    require(widget != nullptr, "the dialog has its controls");
    return *widget;
}

void changeControl(FilterDialog &dialog, ByteSource &steps)
{
    const int value = steps.below(16);
    switch (steps.below(6)) {
    case 0:
        control<QCheckBox>(dialog, "checkBox_active").click();
        break;
    case 1:
        control<QComboBox>(dialog, "comboBox_body").setCurrentIndex(value - 1);
        break;
    case 2:
        control<QComboBox>(dialog, "comboBox_preset").setCurrentIndex(value - 1);
        break;
    case 3:
        control<QComboBox>(dialog, "comboBox_mode").setCurrentIndex(value - 1);
        break;
    case 4:
        control<QDoubleSpinBox>(dialog, "doubleSpinBox_strength").setValue(value / 10.0);
        emit control<QDoubleSpinBox>(dialog, "doubleSpinBox_strength").editingFinished();
        break;
    default:
        control<QSpinBox>(dialog, "spinBox_prediction").setValue(value * 10 - 50);
        emit control<QSpinBox>(dialog, "spinBox_prediction").editingFinished();
        break;
    }
}

void runDialog(ByteHost &host, BackendVersions &versions, ByteSource &steps)
{
    FilterDialog dialog(&host, nullptr, &versions);
    const int tab = steps.below(3);
    const int body = steps.below(5) - 1;
    // In the dialog's event loop, where it is used.
    QMetaObject::invokeMethod(
        &dialog,
        [&dialog, &steps] {
            for (int change = steps.below(8); change > 0; --change)
                changeControl(dialog, steps);
            dialog.reject();
        },
        Qt::QueuedConnection);
    dialog.update_and_exec(tab, body);
    require(!control<QLabel>(dialog, "label_error").text().contains(QLatin1String("markup")),
            "no answer gets into a text that is shown as markup");
}

void checkTable(const DataDisplay &panel, const ByteHost &host)
{
    const auto *table = panel.findChild<QTableWidget *>(QStringLiteral("tableWidget6d"));
    require(table != nullptr && table->rowCount() <= host.mostBodies + 1, "a row per body, and one for a head");
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem *item = table->item(row, column);
            require(!item || item->toolTip().isEmpty(), "no answer gets into a tool tip");
        }
    }
}

void step(DataDisplay &panel, ByteHost &host, BackendVersions &versions, ByteSource &steps)
{
    switch (steps.below(10)) {
    case 0:
    case 1:
        panel.configurationChanged();
        break;
    case 2:
        panel.updateInertialSensorInfo(false);
        break;
    case 3:
        for (int pass = 0; pass < lastPollingPass; ++pass)
            panel.timerUpdateInertialSensorInfo();
        break;
    case 4:
        panel.processOutput("6di", "6di 2 [0 3 1][1 2 3][1 0 0 0 1 0 0 0 1][1 1 1][4 5 6][1 0 0 0 1 0 0 0 1]");
        panel.processOutput("6d", "6d 2 [0 1][1 2 3 0 0 0][1 0 0 0 1 0 0 0 1][1 1][4 5 6 0 0 0][1 0 0 0 1 0 0 0 1]");
        panel.updateView6d();
        break;
    case 5:
    case 6:
        runDialog(host, versions, steps);
        break;
    case 7:
        panel.clearData();
        break;
    case 8:
        panel.onUpdateFilterActiveStatus(steps.below(6) - 1);
        break;
    default:
        panel.setVisible(!panel.isVisible());
        break;
    }
}

} // namespace

/// The first line of the input chooses the backend's version, what comes after the last answer, and the steps: the
/// panel is configured, polled, shown and cleared, and the filter dialog opened and used. The rest are the answers.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    needApplication();
    ByteSource input(data, size);
    const QByteArray script = input.line();
    ByteSource steps(reinterpret_cast<const std::uint8_t *>(script.constData()),
                     static_cast<std::size_t>(script.size()));
    BackendVersions versions = versionOf(steps.below(6));
    ByteHost host(input, steps.below(2) == 1);
    DataDisplay panel(&host, nullptr, &versions, QStringLiteral("v2.2.6"));
    panel.configurationChanged();
    for (int i = 0; i < mostSteps && !steps.atEnd(); ++i) {
        step(panel, host, versions, steps);
        QCoreApplication::processEvents();
        checkTable(panel, host);
    }
    panel.prepareShutdown();
    removeHomeFile(preferencesFile); // as any change of it is another target's, and the next panel need not read it
    return 0;
}
