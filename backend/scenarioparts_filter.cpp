// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarioparts.h"

#include "backend/texts.h"

#include <algorithm>

namespace backend {

namespace {

constexpr double highestStrength = 1000.0;
constexpr double longestPrediction = 10.0; // [s]

QVector<QByteArray> readBodyTexts(ObjectReader &owner)
{
    QVector<QByteArray> bodies;
    const QVector<QString> texts = owner.texts(QStringLiteral("bodies"));
    for (const QString &text : texts)
        bodies.append(text.toUtf8());
    if (bodies.isEmpty() && owner.has(QStringLiteral("bodies")))
        owner.fail(QStringLiteral("bodies"), Backend::tr("at least one body is expected"));
    return bodies;
}

/// The member "id" of \a item, which must be there and unlike those of \a others.
template<typename Entry> QByteArray readId(ObjectReader &item, const QVector<Entry> &others)
{
    const QString key = QStringLiteral("id");
    QByteArray id = item.word(key, {});
    if (id.isEmpty())
        item.fail(key, Backend::tr("an id is expected"));
    if (std::any_of(others.cbegin(), others.cend(), [&id](const Entry &other) { return other.id == id; }))
        item.fail(key, Backend::tr("this id is there already"));
    return id;
}

double readStrength(ObjectReader &reader, double fallback, const FilterOffer &filter)
{
    return reader.number(QStringLiteral("strength"), fallback, filter.strengthMin, filter.strengthMax);
}

double readPrediction(ObjectReader &reader, double fallback, const FilterOffer &filter)
{
    return reader.number(QStringLiteral("prediction"), fallback, filter.predictionMin, filter.predictionMax);
}

void readLimits(ObjectReader &reader, FilterOffer &filter)
{
    std::optional<ObjectReader> limits = reader.member(QStringLiteral("limits"));
    if (!limits)
        return;
    filter.strengthMin = limits->number(QStringLiteral("strength_min"), 0.0, 0.0, highestStrength);
    filter.strengthMax =
        limits->number(QStringLiteral("strength_max"), filter.strengthMin, filter.strengthMin, highestStrength);
    filter.predictionMin = limits->number(QStringLiteral("prediction_min"), 0.0, -longestPrediction, longestPrediction);
    filter.predictionMax =
        limits->number(QStringLiteral("prediction_max"), filter.predictionMin, filter.predictionMin, longestPrediction);
    limits->finish();
}

void readModes(ObjectReader &reader, FilterOffer &filter)
{
    const QVector<ObjectReader> items = reader.members(QStringLiteral("modes"));
    for (ObjectReader item : items) {
        FilterMode mode;
        mode.id = readId(item, filter.modes);
        mode.description = item.text(QStringLiteral("description"), {}, longestDescription);
        mode.bodies = readBodyTexts(item);
        item.finish();
        filter.modes.append(mode);
    }
}

/// The member "mode" of \a reader, which must be one of the modes when it is there.
QByteArray readModeId(ObjectReader &reader, const QByteArray &fallback, const FilterOffer &filter)
{
    QByteArray id = reader.word(QStringLiteral("mode"), fallback);
    if (reader.has(QStringLiteral("mode")) && !modeOf(filter, id))
        reader.fail(QStringLiteral("mode"), Backend::tr("the id of one of the modes is expected"));
    return id;
}

void readPresets(ObjectReader &reader, FilterOffer &filter)
{
    const QByteArray firstMode = filter.modes.isEmpty() ? QByteArray() : filter.modes.first().id;
    const QVector<ObjectReader> items = reader.members(QStringLiteral("presets"));
    for (ObjectReader item : items) {
        FilterPreset preset;
        preset.id = readId(item, filter.presets);
        preset.description = item.text(QStringLiteral("description"), {}, longestDescription);
        preset.strength = readStrength(item, filter.strengthMin, filter);
        preset.prediction = readPrediction(item, std::clamp(0.0, filter.predictionMin, filter.predictionMax), filter);
        preset.mode = readModeId(item, firstMode, filter);
        preset.bodies = readBodyTexts(item);
        item.finish();
        filter.presets.append(preset);
    }
}

/// The settings of a body without settings of its own: those of the first preset that it is offered.
FilterSettings firstSettings(const FilterOffer &filter, const QByteArray &body)
{
    FilterSettings settings;
    const auto *const first =
        std::find_if(filter.presets.cbegin(), filter.presets.cend(),
                     [&body](const FilterPreset &preset) { return isOffered(preset.bodies, body); });
    if (first == filter.presets.cend())
        return settings;
    settings.preset = first->id;
    settings.strength = first->strength;
    settings.prediction = first->prediction;
    settings.mode = first->mode;
    return settings;
}

} // namespace

void readFilterOffer(ObjectReader &reader, FilterOffer &filter)
{
    std::optional<ObjectReader> offer = reader.member(QStringLiteral("filter"));
    if (!offer)
        return;
    filter.standard = offer->flag(QStringLiteral("standard"), true);
    filter.wandor = offer->flag(QStringLiteral("wandor"), true);
    readLimits(*offer, filter);
    readModes(*offer, filter);
    readPresets(*offer, filter);
    offer->finish();
}

FilterSettings readFilterSettings(ObjectReader &owner, const FilterOffer &filter, const QByteArray &body)
{
    FilterSettings settings = firstSettings(filter, body);
    std::optional<ObjectReader> reader = owner.member(QStringLiteral("filter"));
    if (!reader)
        return settings;
    settings.enabled = reader->flag(QStringLiteral("enabled"), false);
    settings.preset = reader->word(QStringLiteral("preset"), settings.preset);
    const FilterPreset *preset = presetOf(filter, settings.preset);
    if (!preset || !isOffered(preset->bodies, body)) {
        reader->fail(QStringLiteral("preset"), Backend::tr("a preset that is offered to this body is expected"));
        return settings;
    }
    settings.strength = preset->strength;
    settings.prediction = preset->prediction;
    settings.mode = preset->mode;
    if (isCustomPreset(preset->id)) {
        settings.strength = readStrength(*reader, settings.strength, filter);
        settings.prediction = readPrediction(*reader, settings.prediction, filter);
        settings.mode = readModeId(*reader, settings.mode, filter);
    }
    reader->finish();
    return settings;
}

void checkFilterBodies(ObjectReader &reader, const Scenario &scenario)
{
    QVector<QByteArray> known;
    for (int number = 1; number <= scenario.bodies.size(); ++number)
        known.append(bodyText("standard", number));
    for (int number = 1; number <= scenario.wandor.devices.size(); ++number)
        known.append(bodyText("wandor", number));

    const auto check = [&reader, &known](const QVector<QByteArray> &bodies) {
        for (const QByteArray &body : bodies) {
            if (!known.contains(body))
                reader.fail(QStringLiteral("filter"),
                            Backend::tr("there is no body \"%1\"").arg(QString::fromUtf8(body)));
        }
    };
    for (const FilterPreset &preset : scenario.filter.presets)
        check(preset.bodies);
    for (const FilterMode &mode : scenario.filter.modes)
        check(mode.bodies);
}

} // namespace backend
