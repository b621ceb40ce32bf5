// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "display/columns.h"
#include "display/datadisplay.h"
#include "interface/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QStringList>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>

/// A panel on a scripted host, in a home of its own.
class PanelFixture {
public:
    /// The backend has the version \a major . \a minor . \a patch, and answers everything a panel without bodies asks.
    explicit PanelFixture(int major = 1, int minor = 24, int patch = 0);

    DataDisplay &createPanel();
    /// A panel after a first reconfiguration, with the calls so far taken.
    DataDisplay &createConfiguredPanel();
    /// The backend has \a count bodies, all calibrated, active and named "Body <i>", without sensors and filters.
    void answerBodies(int count);
    /// The backend has a head target, calibrated and active.
    void answerHead();
    /// The backend has one sensor per entry: \a bodies, counted from 1, carry the sensors d01, d02 ..., which are
    /// present.
    void answerSensors(const QList<int> &bodies);
    void answer(const char *command, const char *text);
    void answer(const QString &command, const QString &text) { host.answers.insert(command.toUtf8(), text.toUtf8()); }
    /// Nothing answers \a command any more, so that it fails.
    void refuse(const char *command) { host.answers.remove(command); }
    void refuse(const QString &command) { host.answers.remove(command.toUtf8()); }
    /// The host's calls since the last take.
    QStringList takeCalls();
    /// The texts that \a calls put into the log.
    static QStringList logs(const QStringList &calls);

    QTableWidget &table6d() const { return *panel->findChild<QTableWidget *>(QStringLiteral("tableWidget6d")); }
    QTableWidget &table3d() const { return *panel->findChild<QTableWidget *>(QStringLiteral("tableWidget3d")); }
    /// The panel's clock that redraws its tables, and the one that asks for its sensors.
    const QTimer &viewTimer() const { return *panel->findChild<QTimer *>(QStringLiteral("viewTimer")); }
    const QTimer &sensorTimer() const { return *panel->findChild<QTimer *>(QStringLiteral("sensorTimer")); }
    QString text(int row, int column) const;
    QBrush background(int row, int column) const { return table6d().item(row, column)->background(); }
    QBrush foreground(int row, int column) const { return table6d().item(row, column)->foreground(); }
    /// Configures anew and returns the calls of it.
    QStringList reconfigure();
    int send(const char *tag, const QByteArray &line) { return panel->processOutput(tag, line.constData()); }

    QString preferencesDir() const;
    QString preferencesFile() const { return preferencesDir() + QStringLiteral("/datadisplay-preferences.xml"); }
    /// Puts \a content where the panel looks for its preferences.
    void writePreferences(const QByteArray &content) const;

    QTemporaryDir home;
    ScriptedHost host;
    BackendVersions versions;
    std::unique_ptr<DataDisplay> panel;
};

/// "6d" or "6di" text of one body: its id, what stands between id and quality ("" or a state), quality and position,
/// not rotated.
QByteArray bodyText(int id, const char *state, const char *quality, const char *position);
