// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/nestedsession.h"

#include <QMetaObject>
#include <QTimer>

#include <algorithm>

namespace {

QString cellText(const QTableWidget &table, int row, int column)
{
    const QTableWidgetItem *const item = table.item(row, column);
    QString text = QStringLiteral("no item");
    if (item) {
        text = item->text() + QLatin1Char('|') + item->background().color().name(QColor::HexArgb)
            + QString::number(item->background().style()) + QLatin1Char('|') + item->foreground().color().name()
            + QLatin1Char('|') + item->whatsThis();
    }
    const QWidget *const bar = table.cellWidget(row, column);
    return bar ? text + QStringLiteral("|bar %1 %2").arg(bar->isHidden()).arg(bar->property("value").toInt()) : text;
}

} // namespace

const char firstSetup[] = R"(
    standard number_of_bodies=2
    wandor multiuser_available=yes
    wandor multiuser=yes
    wandor multiuser_with_head_available=yes
    wandor multiuser_with_head=yes
    body number_of_bodies multiuserwandor_head=1
    body calibrated multiuserwandor_head b01=yes
    body active multiuserwandor_head b01=yes
    body calibrated standard b01=yes
    body calibrated standard b02=yes
    body active standard b01=yes
    body active standard b02=yes
    body desc standard b01="Left hand"
    body desc standard b02="Right hand"
    body filter6d_enabled standard b01=yes
    body filter6d_enabled standard b02=no
    body inertial_sensor standard b01=none
    body inertial_sensor standard b02=inertial sensor 's7'
    tracking reference=standard b02
    inertial available=yes
    inertial number_of_sensors=1
    inertial sensor d01=s7
    inertial body_of_sensor s7=standard b02
    inertial sensor_present inertial sensor 's7'=yes
    inertial sensor_battery inertial sensor 's7'=0.5
    inertial sensor_temperature inertial sensor 's7'=31.5 0.97
)";

const char secondSetup[] = R"(
    standard number_of_bodies=3
    wandor multiuser_available=no
    body calibrated standard b02=no
    body calibrated standard b03=yes
    body active standard b03=yes
    body desc standard b01="Camera"
    body desc standard b03="Table"
    body filter6d_enabled standard b01=no
    body filter6d_enabled standard b03=yes
    body inertial_sensor standard b01=inertial sensor 's7'
    body inertial_sensor standard b02=none
    body inertial_sensor standard b03=none
    inertial body_of_sensor s7=standard b01
    tracking reference=none
)";

void insideCall(HandMadeHost &host, int k, const std::function<void()> &act)
{
    host.onCall = [&host, act, left = k]() mutable {
        if (!host.calls.last().startsWith("logMessage") && --left == 0)
            act();
    };
}

int callsIn(const QByteArrayList &calls)
{
    return static_cast<int>(std::count_if(calls.cbegin(), calls.cend(),
                                          [](const QByteArray &call) { return !call.startsWith("logMessage"); }));
}

bool NestedSession::startWith(const char *setup)
{
    host.changeScript(setup);
    if (!startInMainWindow(true))
        return false;
    host.onCall = nullptr;
    host.takeCalls();
    return true;
}

void NestedSession::act(const QByteArray &action)
{
    QWidget *const panel = dock->widget();
    bool done = true;
    if (action == "configuration")
        configurationChanged();
    else if (action == "sensor pass")
        done = QMetaObject::invokeMethod(panel, "timerUpdateInertialSensorInfo");
    else if (action == "filter state")
        done = QMetaObject::invokeMethod(panel, "onUpdateFilterActiveStatus", Q_ARG(int, 1));
    else
        done = false;
    if (!done)
        qFatal("There is no action %s", action.constData());
}

int NestedSession::callsOf(const QByteArray &action)
{
    host.onCall = nullptr;
    host.calls.clear();
    act(action);
    return callsIn(host.calls);
}

void NestedSession::redraw() const
{
    if (!QMetaObject::invokeMethod(dock->widget(), "updateView6d"))
        qFatal("The panel can't be redrawn");
}

void NestedSession::deliverFrame(int rows, const char *x) const
{
    QByteArray line = "6di " + QByteArray::number(rows);
    for (int row = 0; row < rows; ++row)
        line += '[' + QByteArray::number(row) + " 2 1.0][" + x + " 2 3][1 0 0 0 1 0 0 0 1]";
    deliver("6di", line.constData());
}

QStringList NestedSession::seen() const
{
    const QTableWidget *const table = table6d();
    QStringList cells{table->isHidden() ? QStringLiteral("hidden") : QStringLiteral("shown")};
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column)
            cells << QStringLiteral("%1 %2: ").arg(row).arg(column) + cellText(*table, row, column);
    }
    for (int column = 0; column < table->columnCount(); ++column)
        cells << QStringLiteral("column %1 %2").arg(column).arg(table->isColumnHidden(column));
    return cells;
}

QStringList NestedSession::seenBodies() const
{
    const QTableWidget *const table = table6d();
    QStringList cells;
    for (int row = 0; row < table->rowCount(); ++row) {
        for (const int column : {0, 1, 2, 4, 5, 6, 7, 8, 9})
            cells << QStringLiteral("%1 %2: ").arg(row).arg(column) + cellText(*table, row, column);
    }
    return cells;
}

bool NestedSession::isTimerActive(const char *name) const
{
    const auto *timer = dock->widget()->findChild<QTimer *>(QLatin1String(name));
    return timer && timer->isActive();
}
