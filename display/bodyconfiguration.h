// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

class IOManager;
struct BackendVersions;

/// What the backend says of one row of the 6DOF table.
struct BodyRow {
    bool calibrated = false;
    bool active = false;
    bool filterActive = false;
    QString name; ///< empty for the head target and for a body that is not calibrated
    QByteArray sensor = "none"; ///< the whole answer, in the backend's bytes: it is sent back

    bool hasSensor() const { return sensor != "none"; }
};

/// The bodies as the backend has them, and what the panel needs to know to show them. A value: no part of it is ever
/// that of another configuration.
struct BodyConfiguration {
    static constexpr qint32 noReference = -2;

    qint32 numBodies = 0; ///< standard bodies
    bool hasHeadRow = false; ///< row 0 is the head target of a multi-user hand-held device
    bool fixedAnglePresent = false; ///< "6d" is used even where "6di" would be possible
    QVector<BodyRow> rows; ///< one per table row
    qint32 referenceRow = noReference; ///< table row of the tracking reference
    QString referenceName; ///< of the reference row, where there is one
    bool inertialAvailable = false;
    bool inertialInUse = false; ///< a sensor is assigned to a body

    int headRowCount() const { return hasHeadRow ? 1 : 0; }
    bool isHeadRow(int row) const { return hasHeadRow && row == 0; }
    /// For each row whether it is calibrated.
    QVector<bool> calibratedRows() const;
    /// The backend's number of the body in \a row, counted from 1.
    int bodyNumberOfRow(int row) const { return row - headRowCount() + 1; }
};

/// What happens between the questions. Each may be empty.
struct ConfigurationSteps {
    /// Asked after each answer, since the host may have called again while it waited. False ends the reading.
    std::function<bool()> isWanted;
    /// Number of bodies, head row and fixed angles are known; the lists are not.
    std::function<void(const BodyConfiguration &)> layoutRead;
    /// Which bodies are calibrated and active is known, too; the rows' own questions come next.
    std::function<void()> listsRead;
};

/// Asks the backend for everything, always in the same order. A failed query is logged where operators need to know,
/// and counts as 0, no or none. Returns nothing where the configuration is no longer wanted.
std::optional<BodyConfiguration> readBodyConfiguration(IOManager &io, const BackendVersions &versions,
                                                       const ConfigurationSteps &steps = {});

/// Whether the backend uses fixed angles.
bool readFixedAngles(IOManager &io, const BackendVersions &versions);

/// The filter cell's text of a \a row of \a configuration, read anew: "active" or nothing.
QString filterActiveText(IOManager &io, const BackendVersions &versions, const BodyConfiguration &configuration,
                         int row);
/// The filter cell's text for a filter that is \a active.
QString filterActiveText(bool active);
