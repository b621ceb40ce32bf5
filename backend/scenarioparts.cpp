// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarioparts.h"

#include "backend/readingprogress.h"
#include "backend/texts.h"
#include "backend/trajectory.h"

#include <QFileInfo>

namespace backend {

namespace {

constexpr double farthest = 1.0e6; // [mm]
constexpr double longestPeriod = 86400.0; // [s]
constexpr double shortestPeriod = 0.01; // [s]
constexpr double fastestTurn = 36000.0; // [deg/s]
constexpr int longestName = 180; // [bytes]

Ramp readRamp(ObjectReader &owner, const QString &key, const Ramp &fallback, double low, double high)
{
    std::optional<ObjectReader> reader = owner.member(key);
    if (!reader)
        return fallback;
    Ramp ramp;
    ramp.start = reader->number(QStringLiteral("start"), fallback.start, low, high);
    ramp.perMinute = reader->number(QStringLiteral("per_minute"), fallback.perMinute, low - high, high - low);
    reader->finish();
    return ramp;
}

QVector<HeadTarget> readHeads(ObjectReader &reader, MotionReader &motions)
{
    QVector<HeadTarget> heads;
    const QVector<ObjectReader> items = reader.members(QStringLiteral("heads"));
    for (ObjectReader item : items) {
        HeadTarget head;
        head.calibrated = item.flag(QStringLiteral("calibrated"), true);
        head.active = item.flag(QStringLiteral("active"), true);
        head.motion = motions.read(item);
        head.dropouts = readDropouts(item);
        item.finish();
        heads.append(head);
    }
    return heads;
}

} // namespace

MotionReader::MotionReader(const QDir &folder, QStringList &warnings, ReadingProgress *progress)
    : folder(folder)
    , warnings(warnings)
    , progress(progress)
{
}

Motion MotionReader::read(ObjectReader &owner)
{
    Motion motion;
    std::optional<ObjectReader> reader = owner.member(QStringLiteral("motion"));
    if (!reader)
        return motion;
    const QString kind = reader->text(QStringLiteral("kind"), QStringLiteral("fixed"), longestName);
    if (kind == QLatin1String("recorded")) {
        readRecording(*reader, motion);
        reader->finish();
        return motion;
    }
    motion.position = reader->vector(QStringLiteral("position"), {}, -farthest, farthest);
    motion.angles = reader->vector(QStringLiteral("angles"), {}, -360.0, 360.0);
    motion.turn = reader->vector(QStringLiteral("turn"), {}, -fastestTurn, fastestTurn);
    if (kind == QLatin1String("orbit"))
        readOrbit(*reader, motion);
    else if (kind != QLatin1String("fixed"))
        reader->fail(QStringLiteral("kind"), Backend::tr(R"("fixed", "orbit" or "recorded" is expected)"));
    reader->finish();
    return motion;
}

void MotionReader::readOrbit(ObjectReader &reader, Motion &motion) const
{
    motion.kind = Motion::Kind::Orbit;
    motion.radius = reader.number(QStringLiteral("radius"), 500.0, 0.0, farthest);
    motion.period = reader.number(QStringLiteral("period"), 10.0, shortestPeriod, longestPeriod);
    motion.phase = reader.number(QStringLiteral("phase"), 0.0, -360.0, 360.0);
    motion.swing = reader.number(QStringLiteral("swing"), 0.0, 0.0, farthest);
}

void MotionReader::readRecording(ObjectReader &reader, Motion &motion)
{
    const QString key = QStringLiteral("file");
    const QString name = reader.text(key, {}, 4096);
    const QString fileName = QDir::cleanPath(folder.filePath(name));
    if (name.isEmpty())
        reader.fail(key, Backend::tr("the name of a trajectory file is expected"));
    else if (!recordings.contains(fileName)) {
        if (progress)
            progress->total += QFileInfo(fileName).size();
        const TrajectoryResult file = loadTrajectory(fileName, progress);
        warnings += file.warnings(fileName);
        recordings.insert(fileName, file.trajectory);
        if (!file.trajectory)
            reader.fail(key, file.error.chopped(1));
    }
    motion.recording = recordings.value(fileName);
    motion.kind = motion.recording ? Motion::Kind::Recorded : Motion::Kind::Fixed;
}

Dropouts readDropouts(ObjectReader &owner)
{
    Dropouts dropouts;
    std::optional<ObjectReader> reader = owner.member(QStringLiteral("dropouts"));
    if (!reader)
        return dropouts;
    dropouts.period = reader->number(QStringLiteral("every"), longestPeriod, shortestPeriod, longestPeriod);
    dropouts.duration = reader->number(QStringLiteral("lasting"), 0.0, 0.0, dropouts.period);
    reader->finish();
    return dropouts;
}

void readBodies(ObjectReader &reader, MotionReader &motions, Scenario &scenario)
{
    const QVector<ObjectReader> items = reader.members(QStringLiteral("bodies"));
    for (ObjectReader item : items) {
        StandardBody body;
        body.name = item.text(QStringLiteral("name"), {}, longestName);
        body.calibrated = item.flag(QStringLiteral("calibrated"), true);
        body.active = item.flag(QStringLiteral("active"), true);
        body.motion = motions.read(item);
        body.dropouts = readDropouts(item);
        body.filter = readFilterSettings(item, scenario.filter, bodyText("standard", scenario.bodies.size() + 1));
        item.finish();
        scenario.bodies.append(body);
    }
}

void readWandors(ObjectReader &reader, MotionReader &motions, Scenario &scenario)
{
    std::optional<ObjectReader> setup = reader.member(QStringLiteral("wandor"));
    if (!setup)
        return;
    WandorSetup &wandor = scenario.wandor;
    wandor.multiuserAvailable = setup->flag(QStringLiteral("multiuser_available"), false);
    wandor.multiuser = setup->flag(QStringLiteral("multiuser"), false);
    wandor.multiuserWithHeadAvailable = setup->flag(QStringLiteral("multiuser_with_head_available"), false);
    wandor.multiuserWithHead = setup->flag(QStringLiteral("multiuser_with_head"), false);
    const QVector<ObjectReader> items = setup->members(QStringLiteral("devices"));
    for (ObjectReader item : items) {
        Wandor device;
        device.calibrated = item.flag(QStringLiteral("calibrated"), true);
        device.filter = readFilterSettings(item, scenario.filter, bodyText("wandor", wandor.devices.size() + 1));
        item.finish();
        wandor.devices.append(device);
    }
    wandor.heads = readHeads(*setup, motions);
    setup->finish();
}

void readSensors(ObjectReader &reader, Scenario &scenario)
{
    const QVector<ObjectReader> items = reader.members(QStringLiteral("sensors"));
    for (ObjectReader item : items) {
        const QByteArray number = QByteArray::number(scenario.sensors.size() + 1).rightJustified(2, '0');
        InertialSensor sensor;
        sensor.id = item.word(QStringLiteral("id"), 'd' + number);
        sensor.label = item.word(QStringLiteral("label"), "S" + number);
        sensor.body = item.integer(QStringLiteral("body"), 0, 0, scenario.bodies.size());
        sensor.present = item.flag(QStringLiteral("present"), true);
        sensor.dropouts = readDropouts(item);
        sensor.battery = readRamp(item, QStringLiteral("battery"), sensor.battery, 0.0, 1.0);
        sensor.temperature = readRamp(item, QStringLiteral("temperature"), sensor.temperature, -40.0, 85.0);
        sensor.level = readRamp(item, QStringLiteral("level"), sensor.level, 0.0, 1.0);
        for (const InertialSensor &other : qAsConst(scenario.sensors)) {
            if (other.id == sensor.id)
                item.fail(QStringLiteral("id"), Backend::tr("another sensor has this id"));
        }
        if (sensorOfBody(scenario, sensor.body))
            item.fail(QStringLiteral("body"), Backend::tr("this body carries another sensor already"));
        item.finish();
        scenario.sensors.append(sensor);
    }
}

void readMarkers(ObjectReader &reader, MarkerCloud &markers)
{
    std::optional<ObjectReader> cloud = reader.member(QStringLiteral("markers"));
    if (!cloud)
        return;
    markers.count = cloud->integer(QStringLiteral("count"), 0, 0, 1000);
    markers.center = cloud->vector(QStringLiteral("center"), {}, -farthest, farthest);
    markers.spread = cloud->number(QStringLiteral("spread"), markers.spread, 0.0, farthest);
    markers.radius = cloud->number(QStringLiteral("radius"), markers.radius, 0.0, farthest);
    markers.period = cloud->number(QStringLiteral("period"), markers.period, shortestPeriod, longestPeriod);
    markers.dropouts = readDropouts(*cloud);
    cloud->finish();
}

} // namespace backend
