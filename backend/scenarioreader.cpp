// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarioparts.h"
#include "backend/scenarios.h"
#include "backend/texts.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

namespace backend {

namespace {

constexpr double slowest = 0.1; // [frames per second]
constexpr double fastest = 1000.0;

ProtocolVersion readVersion(ObjectReader &reader)
{
    const QString key = QStringLiteral("version");
    const QString text = reader.text(key, QStringLiteral("2.0.0"), longestDescription);
    static const QRegularExpression form(QLatin1String(R"(^(\d{1,4})\.(\d{1,4})(?:\.(\d{1,4}))?$)"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        reader.fail(key, Backend::tr(R"(a version such as "2.0.1" or "1.12" is expected)"));
        return {};
    }
    const QString patch = match.captured(3);
    return {match.captured(1).toInt(), match.captured(2).toInt(), patch.isEmpty() ? -1 : patch.toInt()};
}

OutputFlags readOutput(ObjectReader &outputs, const QString &tag, const OutputFlags &fallback)
{
    std::optional<ObjectReader> reader = outputs.member(tag);
    if (!reader)
        return fallback;
    OutputFlags flags;
    flags.available = reader->flag(QStringLiteral("available"), fallback.available);
    flags.active = reader->flag(QStringLiteral("active"), fallback.active);
    reader->finish();
    return flags;
}

void readOutputs(ObjectReader &reader, Scenario &scenario)
{
    std::optional<ObjectReader> outputs = reader.member(QStringLiteral("outputs"));
    if (!outputs)
        return;
    scenario.output6d = readOutput(*outputs, QStringLiteral("6d"), scenario.output6d);
    scenario.output6di = readOutput(*outputs, QStringLiteral("6di"), scenario.output6di);
    scenario.output3d = readOutput(*outputs, QStringLiteral("3d"), scenario.output3d);
    outputs->finish();
}

Scenario readAll(ObjectReader &reader, const QDir &folder, QStringList &warnings, ReadingProgress *progress)
{
    Scenario scenario;
    scenario.description = reader.text(QStringLiteral("description"), {}, longestDescription);
    scenario.version = readVersion(reader);
    scenario.rate = reader.number(QStringLiteral("rate"), scenario.rate, slowest, fastest);
    scenario.seed = static_cast<quint32>(reader.integer(QStringLiteral("seed"), 1, 0, 1000000000));
    scenario.fixedAngles = reader.flag(QStringLiteral("fixed_angles"), false);
    scenario.changeable = reader.flag(QStringLiteral("changeable"), true);
    readOutputs(reader, scenario);
    MotionReader motions(folder, warnings, progress);
    // The bodies' filter settings are checked against what the filter offers to them, so all bodies come first.
    readFilterOffer(reader, scenario.filter);
    readBodies(reader, motions, scenario);
    readWandors(reader, motions, scenario);
    checkFilterBodies(reader, scenario);
    readSensors(reader, scenario);
    readMarkers(reader, scenario.markers);
    scenario.referenceBody = reader.integer(QStringLiteral("reference_body"), 0, 0, scenario.bodies.size());
    reader.finish();
    return scenario;
}

} // namespace

ScenarioResult readScenario(const QByteArray &json, const QString &fileName, ReadingProgress *progress)
{
    ScenarioResult result;
    QJsonParseError fault{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &fault);
    if (fault.error != QJsonParseError::NoError) {
        const int line = 1 + json.left(fault.offset).count('\n');
        result.error = Backend::tr("%1, line %2: %3.").arg(fileName).arg(line).arg(fault.errorString());
        return result;
    }
    if (!document.isObject()) {
        result.error = Backend::tr("%1, line 1: an object is expected.").arg(fileName);
        return result;
    }

    QString error;
    ObjectReader reader(document.object(), {}, &error);
    Scenario scenario = readAll(reader, QFileInfo(fileName).absoluteDir(), result.warnings, progress);
    if (!error.isEmpty()) {
        result.error = fileName + QStringLiteral(": ") + error + QLatin1Char('.');
        return result;
    }
    scenario.name = Backend::tr("simulation: %1").arg(QFileInfo(fileName).completeBaseName());
    result.scenario = std::move(scenario);
    return result;
}

} // namespace backend
