// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/commandtable.h"
#include "backend/frame.h"
#include "backend/motion.h"

namespace backend {

namespace {

constexpr double coldest = -40.0; // [degrees Celsius]
constexpr double hottest = 85.0;

/// The number of the sensor that \a text names by its id word or as sensorText does; 0: there is none.
int sensorNamed(const Scenario &scenario, const QByteArray &text)
{
    for (int number = 1; number <= scenario.sensors.size(); ++number) {
        const InertialSensor &sensor = scenario.sensors[number - 1];
        if (text == sensor.id || text == sensorText(sensor))
            return number;
    }
    return 0;
}

/// The sensor that \a text names, while it is in reach: only then does it have readings.
const InertialSensor *presentSensor(const QueryContext &context, const QByteArray &text)
{
    const int number = sensorNamed(context.scenario, text);
    if (number == 0 || !isSensorPresent(context.scenario, number, context.seconds))
        return nullptr;
    return &context.scenario.sensors[number - 1];
}

Answer multiuserAvailable(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.wandor.multiuserAvailable);
}

Answer multiuser(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.wandor.multiuser);
}

Answer multiuserWithHeadAvailable(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.wandor.multiuserWithHeadAvailable);
}

Answer multiuserWithHead(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.wandor.multiuserWithHead);
}

Answer countOfWandors(const QueryContext &context, const Words & /*arguments*/)
{
    return QByteArray::number(context.scenario.wandor.devices.size());
}

Answer isOutputAvailable(const QueryContext &context, const Words &arguments)
{
    const OutputFlags *flags = outputFlags(context.scenario, arguments[0]);
    return yesNo(flags && flags->available);
}

Answer isOutputActive(const QueryContext &context, const Words &arguments)
{
    const OutputFlags *flags = outputFlags(context.scenario, arguments[0]);
    return yesNo(flags && flags->available && flags->active);
}

Answer inertialAvailable(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(!context.scenario.sensors.isEmpty());
}

Answer countOfSensors(const QueryContext &context, const Words & /*arguments*/)
{
    return QByteArray::number(context.scenario.sensors.size());
}

Answer sensorNumbered(const QueryContext &context, const Words &arguments)
{
    const int number = numberAfter('d', arguments[0]);
    if (number < 1 || number > context.scenario.sensors.size())
        return std::nullopt;
    return sensorText(context.scenario.sensors[number - 1]);
}

Answer bodyOfSensor(const QueryContext &context, const Words &arguments)
{
    const int number = sensorNamed(context.scenario, arguments[0]);
    if (number == 0)
        return std::nullopt;
    const int body = context.scenario.sensors[number - 1].body;
    return body > 0 ? bodyText("standard", body) : QByteArrayLiteral("none");
}

Answer isPresent(const QueryContext &context, const Words &arguments)
{
    const int number = sensorNamed(context.scenario, arguments[0]);
    if (number == 0)
        return std::nullopt;
    return yesNo(isSensorPresent(context.scenario, number, context.seconds));
}

Answer battery(const QueryContext &context, const Words &arguments)
{
    const InertialSensor *sensor = presentSensor(context, arguments[0]);
    return sensor ? Answer(numberText(valueAt(sensor->battery, context.seconds, 0.0, 1.0))) : std::nullopt;
}

Answer temperature(const QueryContext &context, const Words &arguments)
{
    const InertialSensor *sensor = presentSensor(context, arguments[0]);
    if (!sensor)
        return std::nullopt;
    return numberText(valueAt(sensor->temperature, context.seconds, coldest, hottest)) + ' '
        + numberText(valueAt(sensor->level, context.seconds, 0.0, 1.0));
}

Answer isChangeable(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.changeable);
}

} // namespace

const QVector<QueryEntry> &deviceQueries()
{
    static const QVector<QueryEntry> queries{
        {"wandor number_of_devices", 0, 0, countOfWandors},
        {"wandor multiuser_available", 0, 0, multiuserAvailable},
        {"wandor multiuser", 0, 0, multiuser},
        {"wandor multiuser_with_head_available", 0, 13, multiuserWithHeadAvailable},
        {"wandor multiuser_with_head", 0, 0, multiuserWithHead},
        {"output available *", 0, 0, isOutputAvailable},
        {"output active chmon *", 0, 0, isOutputActive},
        {"inertial available", 1, 12, inertialAvailable},
        {"inertial number_of_sensors", 1, 12, countOfSensors},
        {"inertial sensor *", 1, 12, sensorNumbered},
        {"inertial body_of_sensor ...", 1, 12, bodyOfSensor},
        {"inertial sensor_present ...", 1, 12, isPresent},
        {"inertial sensor_battery ...", 1, 12, battery},
        {"inertial sensor_temperature ...", 1, 12, temperature},
        {"config is_changeable", 1, 9, isChangeable},
    };
    return queries;
}

} // namespace backend
