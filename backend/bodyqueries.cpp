// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/commandtable.h"

namespace backend {

namespace {

/// The entry that a word such as "b01" numbers; nullptr: there is none.
template<typename Entry> const Entry *numbered(const QVector<Entry> &entries, const QByteArray &word)
{
    const int number = numberAfter('b', word);
    return number >= 1 && number <= entries.size() ? &entries[number - 1] : nullptr;
}

/// Whether \a flag is set in the entry that \a word numbers; no answer when there is none.
template<typename Entry> Answer flagOf(const QVector<Entry> &entries, const QByteArray &word, bool Entry::*flag)
{
    const Entry *entry = numbered(entries, word);
    return entry ? Answer(yesNo(entry->*flag)) : std::nullopt;
}

Answer countOfBodies(const QueryContext &context, const Words & /*arguments*/)
{
    return QByteArray::number(context.scenario.bodies.size());
}

Answer countOfHeads(const QueryContext &context, const Words & /*arguments*/)
{
    return QByteArray::number(context.scenario.wandor.heads.size());
}

Answer isActive(const QueryContext &context, const Words &arguments)
{
    return flagOf(context.scenario.bodies, arguments[0], &StandardBody::active);
}

Answer isCalibrated(const QueryContext &context, const Words &arguments)
{
    return flagOf(context.scenario.bodies, arguments[0], &StandardBody::calibrated);
}

Answer isHeadActive(const QueryContext &context, const Words &arguments)
{
    return flagOf(context.scenario.wandor.heads, arguments[0], &HeadTarget::active);
}

Answer isHeadCalibrated(const QueryContext &context, const Words &arguments)
{
    return flagOf(context.scenario.wandor.heads, arguments[0], &HeadTarget::calibrated);
}

Answer isWandorCalibrated(const QueryContext &context, const Words &arguments)
{
    return flagOf(context.scenario.wandor.devices, arguments[0], &Wandor::calibrated);
}

Answer description(const QueryContext &context, const Words &arguments)
{
    const StandardBody *body = numbered(context.scenario.bodies, arguments[0]);
    return body ? Answer('"' + body->name.toUtf8() + '"') : std::nullopt;
}

Answer sensorOfStandardBody(const QueryContext &context, const Words &arguments)
{
    if (!numbered(context.scenario.bodies, arguments[0]))
        return std::nullopt;
    const InertialSensor *sensor = sensorOfBody(context.scenario, numberAfter('b', arguments[0]));
    return sensor ? sensorText(*sensor) : QByteArrayLiteral("none");
}

/// No wandor carries a sensor.
Answer sensorOfWandor(const QueryContext &context, const Words &arguments)
{
    return numbered(context.scenario.wandor.devices, arguments[0]) ? Answer("none") : std::nullopt;
}

Answer fixedAngles(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.fixedAngles);
}

Answer reference(const QueryContext &context, const Words & /*arguments*/)
{
    const int body = context.scenario.referenceBody;
    return body > 0 ? bodyText("standard", body) : QByteArrayLiteral("none");
}

} // namespace

const QVector<QueryEntry> &bodyQueries()
{
    static const QVector<QueryEntry> queries{
        {"standard number_of_bodies", 0, 0, countOfBodies},
        {"standard fixed_angle_present", 1, 12, fixedAngles},
        {"body number_of_bodies standard", 0, 0, countOfBodies},
        {"body number_of_bodies multiuserwandor_head", 0, 0, countOfHeads},
        {"body active standard *", 0, 0, isActive},
        {"body active multiuserwandor_head *", 0, 0, isHeadActive},
        {"body calibrated standard *", 0, 0, isCalibrated},
        {"body calibrated multiuserwandor_head *", 0, 0, isHeadCalibrated},
        {"body calibrated wandor *", 0, 0, isWandorCalibrated},
        {"body desc standard *", 0, 16, description},
        {"body inertial_sensor standard *", 1, 12, sensorOfStandardBody},
        {"body inertial_sensor wandor *", 1, 12, sensorOfWandor},
        {"tracking reference", 1, 24, reference},
    };
    return queries;
}

} // namespace backend
