// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/commandtable.h"

namespace backend {

namespace {

/// The value that \a word stands for; nothing when it is neither "yes" nor "no".
std::optional<bool> yesOrNo(const QByteArray &word)
{
    if (word == "yes")
        return true;
    if (word == "no")
        return false;
    return std::nullopt;
}

/// The number that \a word stands for; nothing when it is none from \a low to \a high.
std::optional<double> numberWithin(const QByteArray &word, double low, double high)
{
    bool ok = false;
    const double number = word.toDouble(&ok);
    if (!ok || !(number >= low && number <= high))
        return std::nullopt;
    return number;
}

/// The settings that a command may change; nullptr: there are none.
FilterSettings *filterToChange(Scenario &scenario, const Words &arguments)
{
    if (!filterOf(scenario, arguments[0], arguments[1]))
        return nullptr;
    const int index = numberAfter('b', arguments[1]) - 1;
    return arguments[0] == "standard" ? &scenario.bodies[index].filter : &scenario.wandor.devices[index].filter;
}

QByteArray bodyOf(const Words &arguments)
{
    return bodyText(arguments[0], numberAfter('b', arguments[1]));
}

bool activateOutput(Scenario &scenario, const Words &arguments)
{
    const std::optional<bool> active = yesOrNo(arguments[1]);
    const OutputFlags *known = outputFlags(scenario, arguments[0]);
    if (!active || !known || !known->available)
        return false;
    OutputFlags &flags = arguments[0] == "6d" ? scenario.output6d
        : arguments[0] == "6di"               ? scenario.output6di
                                              : scenario.output3d;
    flags.active = *active;
    return true;
}

bool enableFilter(Scenario &scenario, const Words &arguments)
{
    const std::optional<bool> enabled = yesOrNo(arguments[2]);
    FilterSettings *filter = filterToChange(scenario, arguments);
    if (!enabled || !filter)
        return false;
    filter->enabled = *enabled;
    return true;
}

bool setPreset(Scenario &scenario, const Words &arguments)
{
    const FilterPreset *preset = presetOf(scenario.filter, arguments[2]);
    FilterSettings *filter = filterToChange(scenario, arguments);
    if (!preset || !filter || !isOffered(preset->bodies, bodyOf(arguments)))
        return false;
    filter->preset = preset->id;
    if (isCustomPreset(preset->id))
        return true; // starts with the values of the preset before
    filter->strength = preset->strength;
    filter->prediction = preset->prediction;
    filter->mode = preset->mode;
    return true;
}

bool setMode(Scenario &scenario, const Words &arguments)
{
    const FilterMode *mode = modeOf(scenario.filter, arguments[2]);
    FilterSettings *filter = filterToChange(scenario, arguments);
    if (!mode || !filter || !isCustomPreset(filter->preset) || !isOffered(mode->bodies, bodyOf(arguments)))
        return false;
    filter->mode = mode->id;
    return true;
}

bool setStrength(Scenario &scenario, const Words &arguments)
{
    const auto strength = numberWithin(arguments[2], scenario.filter.strengthMin, scenario.filter.strengthMax);
    FilterSettings *filter = filterToChange(scenario, arguments);
    if (!strength || !filter || !isCustomPreset(filter->preset))
        return false;
    filter->strength = *strength;
    return true;
}

bool setPrediction(Scenario &scenario, const Words &arguments)
{
    const auto prediction = numberWithin(arguments[2], scenario.filter.predictionMin, scenario.filter.predictionMax);
    FilterSettings *filter = filterToChange(scenario, arguments);
    if (!prediction || !filter || !isCustomPreset(filter->preset))
        return false;
    filter->prediction = *prediction;
    return true;
}

} // namespace

const QVector<CommandEntry> &allCommands()
{
    static const QVector<CommandEntry> commands{
        {"output active chmon * *", 0, 0, activateOutput},    {"body filter6d_enabled * * *", 1, 12, enableFilter},
        {"body filter6d_preset * * *", 1, 12, setPreset},     {"body filter6d_mode * * *", 1, 12, setMode},
        {"body filter6d_strength * * *", 1, 12, setStrength}, {"body filter6d_prediction * * *", 1, 12, setPrediction},
    };
    return commands;
}

} // namespace backend
