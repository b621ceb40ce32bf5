// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenario.h"

#include <algorithm>

namespace backend {

namespace {

template<typename Entry> const Entry *entryOf(const QVector<Entry> &entries, const QByteArray &id)
{
    const auto *const found =
        std::find_if(entries.cbegin(), entries.cend(), [&id](const Entry &entry) { return entry.id == id; });
    return found == entries.cend() ? nullptr : &*found;
}

} // namespace

bool isAtLeast(const ProtocolVersion &version, int major, int minor)
{
    return version.major > major || (version.major == major && version.minor >= minor);
}

const InertialSensor *sensorOfBody(const Scenario &scenario, int body)
{
    const auto *const carried = std::find_if(scenario.sensors.cbegin(), scenario.sensors.cend(),
                                             [body](const InertialSensor &sensor) { return sensor.body == body; });
    return body > 0 && carried != scenario.sensors.cend() ? &*carried : nullptr;
}

const OutputFlags *outputFlags(const Scenario &scenario, const QByteArray &tag)
{
    if (tag == "6d")
        return &scenario.output6d;
    if (tag == "6di" && isAtLeast(scenario.version, 1, 12))
        return &scenario.output6di;
    if (tag == "3d")
        return &scenario.output3d;
    return nullptr;
}

QByteArray sensorText(const InertialSensor &sensor)
{
    return "inertial " + sensor.id + " '" + sensor.label + '\'';
}

QByteArray bodyText(const QByteArray &kind, int number)
{
    return kind + " b" + QByteArray::number(number).rightJustified(2, '0');
}

bool isOffered(const QVector<QByteArray> &bodies, const QByteArray &body)
{
    return bodies.isEmpty() || bodies.contains(body);
}

const FilterPreset *presetOf(const FilterOffer &filter, const QByteArray &id)
{
    return entryOf(filter.presets, id);
}

const FilterMode *modeOf(const FilterOffer &filter, const QByteArray &id)
{
    return entryOf(filter.modes, id);
}

bool isCustomPreset(const QByteArray &id)
{
    return id.contains("preset6d_") && id.contains("_custom");
}

} // namespace backend
