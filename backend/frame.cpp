// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/frame.h"

#include "backend/motion.h"
#include "backend/randomstream.h"

#include <algorithm>
#include <cmath>

namespace backend {

namespace {

int numberOf(const Scenario &scenario, const InertialSensor &sensor)
{
    return static_cast<int>(&sensor - scenario.sensors.constData()) + 1;
}

BodySample bodyAt(const Scenario &scenario, int number, double seconds)
{
    const StandardBody &body = scenario.bodies[number - 1];
    BodySample sample;
    if (!body.calibrated || !body.active)
        return sample;
    const auto lost = lostSince(body.dropouts, scenario.seed, RandomStream::Body, number, seconds);
    const InertialSensor *sensor = sensorOfBody(scenario, number);
    sample.optical = !lost;
    sample.inertial =
        sensor && isAtLeast(scenario.version, 1, 12) && isSensorPresent(scenario, numberOf(scenario, *sensor), seconds);
    sample.pose = poseAt(body.motion, seconds);
    if (lost)
        sample.pose.position = poseAt(body.motion, *lost).position;
    return sample;
}

/// The first of the head targets that are in use; the others stay unseen, since all of them share one row.
BodySample headAt(const Scenario &scenario, double seconds)
{
    const QVector<HeadTarget> &heads = scenario.wandor.heads;
    const auto *const used = std::find_if(heads.cbegin(), heads.cend(),
                                          [](const HeadTarget &head) { return head.calibrated && head.active; });
    BodySample sample;
    if (used == heads.cend())
        return sample;
    const int number = static_cast<int>(used - heads.cbegin()) + 1;
    sample.optical = !lostSince(used->dropouts, scenario.seed, RandomStream::Head, number, seconds);
    sample.pose = poseAt(used->motion, seconds);
    return sample;
}

/// A number from -1 to 1, always the same one for \a index and \a marker.
double jitter(const Scenario &scenario, int marker, quint64 index)
{
    return 2.0 * uniform(scenario.seed, RandomStream::MarkerPlace, marker, index) - 1.0;
}

} // namespace

bool hasHeadTarget(const Scenario &scenario)
{
    const WandorSetup &wandor = scenario.wandor;
    const bool offered = wandor.multiuserWithHeadAvailable || !isAtLeast(scenario.version, 0, 13);
    return wandor.multiuserAvailable && wandor.multiuser && offered && wandor.multiuserWithHead
        && !wandor.heads.isEmpty();
}

bool isSensorPresent(const Scenario &scenario, int sensor, double seconds)
{
    const InertialSensor &device = scenario.sensors[sensor - 1];
    return device.present && !lostSince(device.dropouts, scenario.seed, RandomStream::Sensor, sensor, seconds);
}

QVector<BodySample> bodiesAt(const Scenario &scenario, double seconds)
{
    QVector<BodySample> samples;
    samples.reserve(scenario.bodies.size() + 1);
    if (hasHeadTarget(scenario))
        samples.append(headAt(scenario, seconds));
    for (int number = 1; number <= scenario.bodies.size(); ++number)
        samples.append(bodyAt(scenario, number, seconds));
    for (int row = 0; row < samples.size(); ++row)
        samples[row].id = row;
    return samples;
}

QVector<MarkerSample> markersAt(const Scenario &scenario, double seconds)
{
    const MarkerCloud &cloud = scenario.markers;
    QVector<MarkerSample> samples;
    samples.reserve(cloud.count);
    for (int marker = 1; marker <= cloud.count; ++marker) {
        if (lostSince(cloud.dropouts, scenario.seed, RandomStream::MarkerLoss, marker, seconds))
            continue;
        const double angle = fullTurn * (std::fmod(seconds, cloud.period) / cloud.period + jitter(scenario, marker, 3));
        const Vector3 place{
            cloud.center[0] + cloud.spread * jitter(scenario, marker, 0) + cloud.radius * std::cos(angle),
            cloud.center[1] + cloud.spread * jitter(scenario, marker, 1) + cloud.radius * std::sin(angle),
            cloud.center[2] + cloud.spread * jitter(scenario, marker, 2)};
        samples.append(MarkerSample{marker, place});
    }
    return samples;
}

} // namespace backend
