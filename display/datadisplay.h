// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/trackingdata.h"
#include "display/callsequence.h"
#include "display/outputchoice.h"
#include "display/sensorpolling.h"
#include "interface/requester.h"
#include "ui_datadisplay.h"

#include <QString>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class BodyTable;
class ColumnWidths;
class IOManager;
class MarkerTable;
class Registration;
struct BackendVersions;

/// The panel: the 6DOF table of bodies and the 3DOF table of markers, with the lines of output behind them.
/// Everything is for the GUI thread but processOutput(), which the host calls on its data thread. A host may call again
/// from an event loop that it runs while it answers a question: the later call wins.
class DataDisplay : public QWidget, private Ui::DataDisplayWidget, public Requester {
    Q_OBJECT
    // What became of the host's lines, for hosts that account for them: the return code can't tell a line that was
    // dropped while the tables were drawn from one that was stored.
    Q_PROPERTY(quint64 storedLines READ storedLines)
    Q_PROPERTY(quint64 droppedLines READ droppedLines)
    Q_PROPERTY(quint64 ignoredLines READ ignoredLines)

public:
    /// \a ioManager and \a versions are the host's and outlive the panel. \a moduleVersion ("v2.2.6") names the
    /// folder of the preferences. Registers with the command channel.
    DataDisplay(IOManager *ioManager, QWidget *parent, BackendVersions *versions, const QString &moduleVersion);
    ~DataDisplay() override;

    int processOutput(const char *tag, const char *line) noexcept override;
    void configurationChanged() noexcept override;
    void clearData() noexcept override;

    /// Unregisters from the command channel and saves the preferences; to be called once before the panel is destroyed.
    void prepareShutdown();
    /// Whether the destructor unregisters, for a panel whose dock or window others may destroy. Initially, and after
    /// prepareShutdown(), it does not.
    void setUnregisteredWhenDestroyed(bool unregister) noexcept;

    quint64 storedLines() const { return data.lineCounts.stored; }
    quint64 droppedLines() const { return data.lineCounts.dropped; }
    quint64 ignoredLines() const { return data.lineCounts.ignored; }

signals:
    /// From the data thread: the first bodies of a new configuration are stored.
    void shallUpdateView6d();

public slots:
    // None of them throws, as Qt's event loop lets no exception pass: where memory runs out, the cells not yet reached
    // stay as they are, and the next tick of the timer tries again.
    void onUpdateFilterActiveStatus(int iBodyIdx) noexcept; ///< reads the filter state of a table row anew
    void updateView3d() noexcept;
    void updateView6d() noexcept;
    /// One polling pass over the inertial sensors. The \a first after a configuration shows them all as absent.
    void updateInertialSensorInfo(bool first) noexcept;
    void timerUpdateInertialSensorInfo() noexcept;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void notifyFirstBodies() noexcept;
    void rebuildConfiguration(const CallSequence::Call &call);
    void startSensors(const CallSequence::Call &call);
    void pollSensors(bool first);
    bool canUseInertialFormat(bool fixedAnglePresent) const;

    BackendVersions *versions = nullptr;
    IOManager *ioManager = nullptr;
    TrackingData data; ///< both threads, by its own rules
    QTimer viewTimer;
    QTimer sensorTimer;
    OutputChoice output;
    SensorPolling sensorPolling;
    CallSequence configurations; ///< each configurationChanged() and clearData()
    std::unique_ptr<BodyTable> bodyTable;
    std::unique_ptr<MarkerTable> markerTable;
    std::unique_ptr<ColumnWidths> columnWidths;
    std::unique_ptr<Registration> registration; ///< last: the data thread may be in processOutput()
};
