// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "fuzz/backendchecks.h"
#include "fuzz/fuzztarget.h"
#include "fuzz/leaksearch.h"

#include <QJsonDocument>

using namespace backend;

namespace {

const QString fileName = QStringLiteral("/nonexistent/fuzz.json");

/// The same values with each key once, or nothing for a text that is no JSON. Qt's reader loses a list or an object
/// that stands under the same key as one before it, and would be all that the leak sanitizer finds.
QByteArray withoutRepeatedKeys(const QByteArray &json)
{
    WITHOUT_LEAK_SEARCH;
    return QJsonDocument::fromJson(json).toJson();
}

ScenarioResult refusal(const QByteArray &json)
{
    WITHOUT_LEAK_SEARCH;
    return readScenario(json, fileName);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    scenarioNames(); // makes the recordings known that scenarios may name
    const QByteArray json = bytesOf(data, size);
    const QByteArray usable = withoutRepeatedKeys(json);
    const ScenarioResult result = usable.isEmpty() ? refusal(json) : readScenario(usable, fileName);
    require(result.error.isEmpty() == result.scenario.has_value(), "a scenario or an error, not both");
    if (result.scenario)
        checkBackend(*result.scenario);
    else
        require(result.error.startsWith(fileName) && result.error.endsWith(QLatin1Char('.')), "errors name the file");
    return 0;
}
