// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/commandtable.h"

namespace backend {

namespace {

/// The id of the entry that a word such as "t01" numbers.
template<typename Entry> Answer idOf(const QVector<Entry> &entries, const QByteArray &word)
{
    const int number = numberAfter('t', word);
    return number >= 1 && number <= entries.size() ? Answer(entries[number - 1].id) : std::nullopt;
}

/// The description of \a entry as backends give it, in double quotes.
template<typename Entry> Answer descriptionOf(const Entry *entry)
{
    return entry ? Answer('"' + entry->description.toUtf8() + '"') : std::nullopt;
}

Answer isStandardAvailable(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.filter.standard);
}

Answer isWandorAvailable(const QueryContext &context, const Words & /*arguments*/)
{
    return yesNo(context.scenario.filter.wandor);
}

Answer limit(const QueryContext &context, const Words &arguments)
{
    const FilterOffer &filter = context.scenario.filter;
    if (arguments[0] == "strength_min")
        return numberText(filter.strengthMin);
    if (arguments[0] == "strength_max")
        return numberText(filter.strengthMax);
    if (arguments[0] == "prediction_min")
        return numberText(filter.predictionMin);
    if (arguments[0] == "prediction_max")
        return numberText(filter.predictionMax);
    return std::nullopt;
}

Answer countOfModes(const QueryContext &context, const Words & /*arguments*/)
{
    return QByteArray::number(context.scenario.filter.modes.size());
}

Answer countOfPresets(const QueryContext &context, const Words & /*arguments*/)
{
    return QByteArray::number(context.scenario.filter.presets.size());
}

Answer modeId(const QueryContext &context, const Words &arguments)
{
    return idOf(context.scenario.filter.modes, arguments[0]);
}

Answer presetId(const QueryContext &context, const Words &arguments)
{
    return idOf(context.scenario.filter.presets, arguments[0]);
}

Answer modeDescription(const QueryContext &context, const Words &arguments)
{
    return descriptionOf(modeOf(context.scenario.filter, arguments[0]));
}

Answer presetDescription(const QueryContext &context, const Words &arguments)
{
    return descriptionOf(presetOf(context.scenario.filter, arguments[0]));
}

Answer isModeAvailable(const QueryContext &context, const Words &arguments)
{
    const FilterMode *mode = modeOf(context.scenario.filter, arguments[2]);
    if (!mode || !filterOf(context.scenario, arguments[0], arguments[1]))
        return std::nullopt;
    return yesNo(isOffered(mode->bodies, bodyText(arguments[0], numberAfter('b', arguments[1]))));
}

Answer isPresetAvailable(const QueryContext &context, const Words &arguments)
{
    const FilterPreset *preset = presetOf(context.scenario.filter, arguments[2]);
    if (!preset || !filterOf(context.scenario, arguments[0], arguments[1]))
        return std::nullopt;
    return yesNo(isOffered(preset->bodies, bodyText(arguments[0], numberAfter('b', arguments[1]))));
}

/// A body without a filter has none that is enabled, so that this question alone is answered for it.
Answer isEnabled(const QueryContext &context, const Words &arguments)
{
    if (const FilterSettings *filter = filterOf(context.scenario, arguments[0], arguments[1]))
        return yesNo(filter->enabled);
    const int number = numberAfter('b', arguments[1]);
    const bool standard = arguments[0] == "standard" && number <= context.scenario.bodies.size();
    const bool wandor = arguments[0] == "wandor" && number <= context.scenario.wandor.devices.size();
    return number >= 1 && (standard || wandor) ? Answer(yesNo(false)) : std::nullopt;
}

Answer mode(const QueryContext &context, const Words &arguments)
{
    const FilterSettings *filter = filterOf(context.scenario, arguments[0], arguments[1]);
    return filter ? Answer(filter->mode) : std::nullopt;
}

Answer preset(const QueryContext &context, const Words &arguments)
{
    const FilterSettings *filter = filterOf(context.scenario, arguments[0], arguments[1]);
    return filter ? Answer(filter->preset) : std::nullopt;
}

Answer strength(const QueryContext &context, const Words &arguments)
{
    const FilterSettings *filter = filterOf(context.scenario, arguments[0], arguments[1]);
    return filter ? Answer(numberText(filter->strength)) : std::nullopt;
}

Answer prediction(const QueryContext &context, const Words &arguments)
{
    const FilterSettings *filter = filterOf(context.scenario, arguments[0], arguments[1]);
    return filter ? Answer(numberText(filter->prediction)) : std::nullopt;
}

} // namespace

const QVector<QueryEntry> &filterQueries()
{
    static const QVector<QueryEntry> queries{
        {"filter6d available standard", 1, 12, isStandardAvailable},
        {"filter6d available wandor", 1, 12, isWandorAvailable},
        {"filter6d limit *", 1, 12, limit},
        {"filter6d number_of_modes", 1, 12, countOfModes},
        {"filter6d number_of_presets", 1, 12, countOfPresets},
        {"filter6d mode_id *", 1, 12, modeId},
        {"filter6d preset_id *", 1, 12, presetId},
        {"filter6d mode_desc *", 1, 12, modeDescription},
        {"filter6d preset_desc *", 1, 12, presetDescription},
        {"body filter6d_mode_available * * *", 1, 21, isModeAvailable},
        {"body filter6d_preset_available * * *", 1, 21, isPresetAvailable},
        {"body filter6d_enabled * *", 1, 12, isEnabled},
        {"body filter6d_mode * *", 1, 12, mode},
        {"body filter6d_preset * *", 1, 12, preset},
        {"body filter6d_strength * *", 1, 12, strength},
        {"body filter6d_prediction * *", 1, 12, prediction},
    };
    return queries;
}

} // namespace backend
