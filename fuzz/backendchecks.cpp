// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/backendchecks.h"

#include "backend/simulatedbackend.h"
#include "fuzz/fuzztarget.h"
#include "tests/support/referencereader.h"

#include <QByteArrayList>

using namespace backend;

namespace {

const QByteArrayList &queries()
{
    static const QByteArrayList all{
        "standard number_of_bodies",
        "standard fixed_angle_present",
        "body number_of_bodies standard",
        "body number_of_bodies multiuserwandor_head",
        "body active standard b01",
        "body active multiuserwandor_head b01",
        "body calibrated standard b01",
        "body calibrated wandor b01",
        "body desc standard b01",
        "body desc standard b99999999999",
        "body inertial_sensor standard b01",
        "tracking reference",
        "wandor number_of_devices",
        "wandor multiuser_available",
        "wandor multiuser_with_head",
        "output available 6di",
        "output active chmon 6d",
        "inertial available",
        "inertial number_of_sensors",
        "inertial sensor d01",
        "inertial body_of_sensor inertial d01 'x'",
        "inertial sensor_present inertial d01 'x'",
        "inertial sensor_battery inertial d01 'x'",
        "inertial sensor_temperature inertial d01 'x'",
        "config is_changeable",
        "filter6d available standard",
        "filter6d limit strength_min",
        "filter6d limit prediction_max",
        "filter6d number_of_modes",
        "filter6d mode_id t01",
        "filter6d preset_id t01",
        "filter6d preset_desc preset6d_custom",
        "body filter6d_preset_available standard b01 preset6d_custom",
        "body filter6d_enabled standard b01",
        "body filter6d_preset standard b01",
        "body filter6d_strength standard b01",
        "body filter6d_mode wandor b01",
        "",
        "  ",
    };
    return all;
}

const QByteArrayList &commands()
{
    static const QByteArrayList all{
        "output active chmon 6d yes",
        "output active chmon 6di yes",
        "output active chmon 3d yes",
        "body filter6d_enabled standard b01 yes",
        "body filter6d_preset standard b01 preset6d_custom",
        "body filter6d_strength standard b01 0.500000",
        "body filter6d_prediction standard b01 nan",
        "body filter6d_mode standard b01 mode6d_fast",
        "",
    };
    return all;
}

void checkLines(const SimulatedBackend &backend, std::chrono::nanoseconds time)
{
    const QVector<OutputLine> lines = backend.linesAt(time);
    const QVector<OutputLine> again = backend.linesAt(time);
    require(lines.size() == again.size(), "the same time gives the same lines");
    for (int i = 0; i < lines.size(); ++i) {
        require(lines[i].text == again[i].text, "the same time gives the same bytes");
        ReferenceReader reader;
        reader.useInertialFormat = lines[i].tag == "6di";
        const LineOutcome outcome = reader.receive(lines[i].tag.toStdString(), lines[i].text.toStdString());
        require(outcome == LineOutcome::Stored, "a line of the backend's own reads without a fault");
    }
}

void checkAnswers(SimulatedBackend &backend)
{
    for (const QByteArray &query : queries()) {
        const std::optional<QByteArray> answer = backend.request(query);
        require(!answer || (!answer->contains('\n') && !answer->contains('\0')), "an answer is one line");
        require(!answer || QString::fromUtf8(*answer).toUtf8() == *answer, "an answer is UTF-8");
    }
}

} // namespace

void checkBackend(const Scenario &scenario)
{
    std::chrono::nanoseconds now(0);
    SimulatedBackend backend(scenario, {}, [&now] { return now; });
    require(backend.frameRate() > 0.0, "there are frames");
    for (const std::chrono::seconds time : {std::chrono::seconds(0), std::chrono::seconds(61)}) {
        now = time;
        checkAnswers(backend);
        for (const QByteArray &command : commands())
            backend.command(command);
        checkAnswers(backend);
        checkLines(backend, time);
    }
    checkLines(backend, std::chrono::hours(24 * 365));
}

void checkBackendLines(const Scenario &scenario)
{
    const SimulatedBackend backend(scenario, {}, [] { return std::chrono::nanoseconds(0); });
    require(backend.frameRate() > 0.0, "there are frames");
    for (const std::chrono::seconds time :
         {std::chrono::seconds(0), std::chrono::seconds(61), std::chrono::seconds(std::chrono::hours(24 * 365))})
        checkLines(backend, time);
}
