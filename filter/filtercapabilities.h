// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>
#include <map>
#include <utility>

class IOManager;
struct BackendVersions;

// Identifiers of presets and modes are the backend's bytes, in whatever encoding: they are sent back as they came.

/// A preset of the list for all bodies.
struct FilterPresetEntry {
    QByteArray id;
    QString description;
    bool forInertialBodies = false; ///< offered to bodies with an inertial sensor, too
};

/// A mode of the list for all bodies.
struct FilterModeEntry {
    QByteArray id;
    QString description;
};

/// Sorts identifiers as texts, by UTF-16 code units; those with the same text, none of it UTF-8, as bytes.
struct FilterIdOrder {
    bool operator()(const QByteArray &left, const QByteArray &right) const;
};

/// The presets or modes that one body may use: description by identifier.
using FilterChoices = std::map<QByteArray, QString, FilterIdOrder>;

/// A body whose filter may be set.
struct FilterBodyEntry {
    QByteArray id; ///< "standard b01", "wandor b12"
    QString name; ///< for the operator, with the backend's description
    bool hasInertialSensor = false;
};

struct FilterLimits {
    double strengthMin = 0.0; ///< always finite, as is the next
    double strengthMax = 0.0;
    int predictionMin = 0; ///< [ms]
    int predictionMax = 0; ///< [ms]
};

/// \a value, the nearest finite number for an infinite one, 0 for NaN: a spin box can't hold the others.
double finiteNumber(double value) noexcept;

/// The backend's \a seconds in whole milliseconds, cut towards 0; saturates.
int milliseconds(double seconds) noexcept;

/// What the backend offers: asks anew at every call and keeps nothing. Texts come back without double quotes, those of
/// identifiers as they are. Only presetsOf() and modesOf() log their failures.
class FilterCapabilities {
public:
    /// Both are the host's and outlive this object. As soon as \a wanted says no no more is asked, and what comes back
    /// is of no use: a host may take the questioner away while it answers.
    FilterCapabilities(
        IOManager &ioManager, const BackendVersions &backendVersions,
        std::function<bool()> wanted = [] { return true; })
        : io(ioManager)
        , versions(backendVersions)
        , isWanted(std::move(wanted))
    {
    }

    /// Whether bodies have a filter: standard bodies for \a tabIndex 0, wandors for 1, none for others.
    bool isAvailable(int tabIndex) const;
    /// Whether the configuration can't be changed at present.
    bool isLocked() const;
    /// Whether the backend says for each body which presets and modes it may use.
    bool hasListsPerBody() const;

    FilterLimits limits() const;
    QVector<FilterPresetEntry> presets() const;
    QVector<FilterModeEntry> modes() const;

    FilterChoices presetsOf(const QByteArray &bodyId) const;
    FilterChoices modesOf(const QByteArray &bodyId) const;

    /// The body with index \a bodyIndex of a table, calibrated or not; for an index below 0 all calibrated ones.
    QVector<FilterBodyEntry> bodies(int tabIndex, int bodyIndex) const;

private:
    FilterBodyEntry standardBody(qint32 number) const;
    QVector<FilterBodyEntry> calibratedStandardBodies() const;
    QVector<FilterBodyEntry> calibratedWandors() const;

    IOManager &io;
    const BackendVersions &versions;
    std::function<bool()> isWanted;
};
