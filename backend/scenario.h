// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/pose.h"
#include "backend/trackingbackend.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

namespace backend {

class Trajectory;

/// Something that is lost now and then: once in each window of \a period seconds, at a random offset.
struct Dropouts {
    double period = 0.0; ///< [s]; 0: never lost
    double duration = 0.0; ///< [s]; not longer than \a period
};

/// A value that rises or falls steadily from the start of the backend on.
struct Ramp {
    double start = 0.0;
    double perMinute = 0.0;
};

struct Motion {
    enum class Kind { Fixed, Orbit, Recorded };

    Kind kind = Kind::Fixed;
    Vector3 position{}; ///< [mm]; the centre of an orbit
    Vector3 angles{}; ///< [deg] at the start
    double radius = 0.0; ///< [mm], in the horizontal plane
    double period = 1.0; ///< [s] for one orbit
    double phase = 0.0; ///< [deg] on the orbit at the start
    double swing = 0.0; ///< [mm] up and down, twice per orbit
    Vector3 turn{}; ///< [deg/s]
    std::shared_ptr<const Trajectory> recording; ///< not null for Kind::Recorded
    double ahead = 0.0; ///< [s] that the recording is ahead of the clock
};

struct FilterSettings {
    bool enabled = false;
    QByteArray preset; ///< empty where there is no filter
    double strength = 0.0;
    double prediction = 0.0; ///< [s]
    QByteArray mode;
};

struct StandardBody {
    QString name; ///< one line; may hold double quotes
    bool calibrated = true;
    bool active = true;
    Motion motion;
    Dropouts dropouts;
    FilterSettings filter;
};

struct HeadTarget {
    bool calibrated = true;
    bool active = true;
    Motion motion;
    Dropouts dropouts;
};

struct Wandor {
    bool calibrated = true;
    FilterSettings filter;
};

/// The hand-held devices and whether they serve several users, with or without head targets.
struct WandorSetup {
    bool multiuserAvailable = false;
    bool multiuser = false;
    bool multiuserWithHeadAvailable = false;
    bool multiuserWithHead = false;
    QVector<Wandor> devices;
    QVector<HeadTarget> heads;
};

struct InertialSensor {
    QByteArray id; ///< one word, such as "d01"
    QByteArray label; ///< one word, as printed on the device
    int body = 0; ///< number of the standard body that carries it; 0: none
    bool present = true;
    Dropouts dropouts; ///< out of radio reach now and then
    Ramp battery{1.0, 0.0}; ///< 0 to 1
    Ramp temperature{25.0, 0.0}; ///< [degrees Celsius]
    Ramp level{1.0, 0.0}; ///< 0 to 1; how warm it is in relation to its working temperature
};

struct FilterPreset {
    QByteArray id;
    QString description;
    double strength = 0.0;
    double prediction = 0.0; ///< [s]
    QByteArray mode;
    QVector<QByteArray> bodies; ///< such as "standard b01"; empty: offered to every body
};

struct FilterMode {
    QByteArray id;
    QString description;
    QVector<QByteArray> bodies; ///< such as "standard b01"; empty: offered to every body
};

struct FilterOffer {
    bool standard = false; ///< there is a filter for standard bodies
    bool wandor = false; ///< there is a filter for wandors
    double strengthMin = 0.0;
    double strengthMax = 0.0;
    double predictionMin = 0.0; ///< [s]
    double predictionMax = 0.0; ///< [s]
    QVector<FilterPreset> presets;
    QVector<FilterMode> modes;
};

struct OutputFlags {
    bool available = true;
    bool active = false;
};

/// Single markers around a place, each on a small orbit of its own.
struct MarkerCloud {
    int count = 0;
    Vector3 center{}; ///< [mm]
    double spread = 500.0; ///< [mm] to each side of the centre
    double radius = 50.0; ///< [mm] of a marker's orbit
    double period = 5.0; ///< [s] of a marker's orbit
    Dropouts dropouts;
};

/// Everything that a simulated backend is made of. A plain value.
struct Scenario {
    QString name; ///< as the operator knows it, such as "simulation: default"
    QString description; ///< one line
    ProtocolVersion version{2, 0, 0};
    double rate = 60.0; ///< frames per second
    quint32 seed = 1;
    QVector<StandardBody> bodies; ///< body number n is entry n - 1
    WandorSetup wandor;
    int referenceBody = 0; ///< number of the standard body that the others are measured against; 0: none
    bool fixedAngles = false;
    bool changeable = true; ///< false: the configuration is locked
    OutputFlags output6d{true, false};
    OutputFlags output6di{true, false}; ///< known from version 1.12 on, whatever stands here
    OutputFlags output3d{true, true};
    QVector<InertialSensor> sensors; ///< sensor number n is entry n - 1
    FilterOffer filter;
    MarkerCloud markers;
};

/// What came of loading a scenario. Without a scenario, error says why.
struct ScenarioResult {
    std::optional<Scenario> scenario;
    QString error; ///< names the file and the line or the key, such as "bodies[2].motion.radius"
    QStringList warnings; ///< such as skipped lines of a trajectory file
};

/// Whether \a version is \a major.\a minor or later, whatever the patch level.
bool isAtLeast(const ProtocolVersion &version, int major, int minor);

/// The sensor that the standard body number \a body carries; nullptr: none.
const InertialSensor *sensorOfBody(const Scenario &scenario, int body);

/// The flags of the output \a tag in \a scenario; nullptr: there is no such output in its version.
const OutputFlags *outputFlags(const Scenario &scenario, const QByteArray &tag);

/// The text that names a sensor in answers, such as "inertial d01 'A17'".
QByteArray sensorText(const InertialSensor &sensor);

/// "standard b07" for the word "standard" and number 7.
QByteArray bodyText(const QByteArray &kind, int number);

/// Whether something offered to \a bodies is offered to \a body, a text such as "standard b01".
bool isOffered(const QVector<QByteArray> &bodies, const QByteArray &body);

/// The preset or mode of that id; nullptr: unknown.
const FilterPreset *presetOf(const FilterOffer &filter, const QByteArray &id);
const FilterMode *modeOf(const FilterOffer &filter, const QByteArray &id);

/// Whether strength, prediction and mode of the preset \a id are the user's.
bool isCustomPreset(const QByteArray &id);

} // namespace backend
