// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/trackingdata.h"
#include "display/cellrange.h"
#include "display/shownrow.h"
#include "interface/requester.h"
#include "ui_datadisplay.h"

#include <QList>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <vector>

class IOManager;
class QDomElement;
class QTableWidgetItem;
struct BackendVersions;

/// The panel: the 6DOF table of bodies and the 3DOF table of markers, with the lines of output behind them.
/// Everything is for the GUI thread but processOutput(), which the host calls on its data thread.
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

    /// Unregisters from the command channel and saves the preferences; to be called once before the panel goes.
    void prepareShutdown();
    /// Whether the destructor unregisters, for a panel whose dock or window others may destroy. Initially, and after
    /// prepareShutdown(), it does not.
    void setUnregisteredWhenDestroyed(bool unregister) noexcept { unregisterWhenDestroyed = unregister; }

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
    const char *tag6d() const;
    void announceBodies() noexcept;

    void setupTable6d();
    void setupTable3d();
    int rowsBuilt() const { return areRowsBuilt ? tableWidget6d->rowCount() : 0; }
    void redraw6d();
    CellRange redraw3d(const QString &idFormat);
    void indexRecords(std::vector<BodyRecord> &records);
    void forgetShownRows() noexcept;
    void showInactive(int row);
    void showBody(int row);
    void showPose(int row, const BodyRecord &record);
    void showCoordinate(int row, int column, float number);
    void showReference(int row);

    void rebuildConfiguration();
    bool detectHeadRow();
    bool detectFixedAngles();
    void chooseOutputFormat();
    void activateOutput(const char *tag);
    void readCalibratedBodies();
    bool isHeadTargetReady();
    void readActiveBodies();
    void buildRows();
    void buildInertialCells();
    void readTrackingReference();
    void configureSensors();
    bool anySensorInUse();
    void setSensorColumnsHidden(bool hidden);
    int headRows() const { return hasHeadRow ? 1 : 0; }
    int bodyNumberOfRow(int row) const { return row - headRows() + 1; }
    QString bodyDescription(int row);
    QString filterActiveText(int row);

    void pollSensor(int row, bool first);
    void showSensor(int row, Qt::GlobalColor background, double battery, double temperature, double level);
    void stepSensorSchedule();

    QString preferencesFile() const;
    void loadPreferences();
    void applyPreference(const QDomElement &element);
    void savePreferences();

    BackendVersions *versions = nullptr;
    IOManager *ioManager = nullptr;
    TrackingData data; ///< both threads, by its own rules
    QTimer viewTimer{this};
    QTimer sensorTimer{this};
    std::vector<BodyRecord *> recordOfRow; ///< null for none; of one redraw, a member to keep its memory
    std::vector<ShownRow> shownRows; ///< one per table row
    CellRange untold6d; ///< cells changed that the 6DOF table was not told of yet
    bool unregisterWhenDestroyed = false;
    bool areRowsBuilt = false; ///< every row of the 6DOF table has its items, and they fit the configuration
    quint64 cellChanges = 0; ///< how often the 6DOF table has told of any change of its cells
    quint64 knownCellChanges = 0; ///< as many as shownRows allow for: with any more the cells may be others
    qint32 numBodies = 0;
    bool hasHeadRow = false; ///< row 0 of the 6DOF table is the head target of a multi-user hand-held device
    bool inertialAvailable = false;
    bool inertialInUse = false;
    bool fixedAnglePresent = false; ///< "6d" is used even where "6di" would be possible
    QList<bool> calibratedBodies; ///< one per table row, and a spare one without head row
    QList<bool> activeBodies; ///< likewise
    QList<bool> rowHasSensor; ///< one per body, the head row not counted
    QString preferencesDir;
    qint32 sensorScheduleIndex = 0;
    QList<int> sensorIntervals; ///< [ms], one per polling pass, the last for all further ones
    static constexpr qint32 noReference = -2;
    qint32 referenceRow = noReference; ///< table row of the tracking reference
    QString referenceName; ///< kept from one configuration to the next; referenceRow says whether it counts
    QObject cellWatch; ///< counts cellChanges; gone before the table, which tells of changes while it goes
};
