// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filtercapabilities.h"

#include "channel/query.h"
#include "channel/version.h"
#include "interface/iomanager.h"
#include "numbers/saturatedint.h"

#include <QCoreApplication>

#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr int standardTab = 0;
constexpr int wandorTab = 1;

/// \a text with the two digits of \a number for "%1"; more digits above 99.
QString numbered(const QString &text, qint32 number)
{
    return text.arg(number, 2, 10, QLatin1Char('0'));
}

FilterBodyEntry wandor(qint32 number)
{
    return {numbered(QStringLiteral("wandor b%1"), number).toLatin1(),
            numbered(QCoreApplication::translate("FilterDialog", "Wandor body %1"), number), false};
}

} // namespace

bool FilterIdOrder::operator()(const QByteArray &left, const QByteArray &right) const
{
    const int order = QString::fromUtf8(left).compare(QString::fromUtf8(right));
    return order != 0 ? order < 0 : left < right;
}

double finiteNumber(double value) noexcept
{
    if (std::isnan(value))
        return 0.0;
    constexpr double largest = std::numeric_limits<double>::max();
    return std::isinf(value) ? std::copysign(largest, value) : value;
}

int milliseconds(double seconds) noexcept
{
    return saturatedInt(seconds * 1000.0);
}

bool FilterCapabilities::isAvailable(int tabIndex) const
{
    if (!versionAtLeast(versions, 1, 12))
        return false;
    Query query(io);
    if (tabIndex == standardTab)
        return query.isYes(io.requestString(query.textBuffer(), "filter6d available standard"));
    if (tabIndex == wandorTab)
        return query.isYes(io.requestString(query.textBuffer(), "filter6d available wandor"));
    return false;
}

bool FilterCapabilities::isLocked() const
{
    if (!versionAtLeast(versions, 1, 9))
        return false;
    Query query(io);
    return query.text(io.requestString(query.textBuffer(), "config is_changeable")) == QByteArray("no");
}

bool FilterCapabilities::hasListsPerBody() const
{
    return versionAtLeast(versions, 1, 21);
}

FilterLimits FilterCapabilities::limits() const
{
    Query query(io);
    FilterLimits limits;
    limits.strengthMin =
        finiteNumber(query.number(io.requestDouble(query.doubleBuffer(), "filter6d limit strength_min")));
    if (isWanted())
        limits.strengthMax =
            finiteNumber(query.number(io.requestDouble(query.doubleBuffer(), "filter6d limit strength_max")));
    if (isWanted())
        limits.predictionMin =
            milliseconds(query.number(io.requestDouble(query.doubleBuffer(), "filter6d limit prediction_min")));
    if (isWanted())
        limits.predictionMax =
            milliseconds(query.number(io.requestDouble(query.doubleBuffer(), "filter6d limit prediction_max")));
    return limits;
}

QVector<FilterPresetEntry> FilterCapabilities::presets() const
{
    QVector<FilterPresetEntry> entries;
    Query query(io);
    const qint32 count = query.count(io.requestInt(query.intBuffer(), "filter6d number_of_presets"));
    for (qint32 k = 1; k <= count && isWanted(); ++k) {
        const auto id = query.text(io.requestString(query.textBuffer(), "filter6d preset_id t%.2d", k));
        if (!id || !isWanted())
            continue;
        const auto description =
            query.text(io.requestString(query.textBuffer(), "filter6d preset_desc %s", id->constData()));
        if (!description)
            continue;
        const bool forInertialBodies = *id == "preset6d_default" || *id == "preset6d_med_pred";
        entries.append({*id, unquoted(*description), forInertialBodies});
    }
    return entries;
}

QVector<FilterModeEntry> FilterCapabilities::modes() const
{
    QVector<FilterModeEntry> entries;
    Query query(io);
    const qint32 count = query.count(io.requestInt(query.intBuffer(), "filter6d number_of_modes"));
    for (qint32 k = 1; k <= count && isWanted(); ++k) {
        const auto id = query.text(io.requestString(query.textBuffer(), "filter6d mode_id t%.2d", k));
        if (!id || !isWanted())
            continue;
        const auto description =
            query.text(io.requestString(query.textBuffer(), "filter6d mode_desc %s", id->constData()));
        if (description)
            entries.append({*id, unquoted(*description)});
    }
    return entries;
}

FilterChoices FilterCapabilities::presetsOf(const QByteArray &bodyId) const
{
    FilterChoices choices;
    Query query(io);
    const qint32 count =
        query.count(io.requestInt(query.intBuffer(), "filter6d number_of_presets"), "get number of filter 6d presets");
    for (qint32 k = 1; k <= count && isWanted(); ++k) {
        const auto id =
            query.text(io.requestString(query.textBuffer(), "filter6d preset_id t%02d", k), "get filter 6d preset id");
        if (!id || !isWanted())
            continue;
        if (!query.flag(io.requestBool(query.boolBuffer(), "body filter6d_preset_available %s %s", bodyId.constData(),
                                       id->constData()),
                        "get filter 6d preset id available")
            || !isWanted())
            continue;
        const auto description =
            query.text(io.requestString(query.textBuffer(), "filter6d preset_desc %s", id->constData()),
                       "get filter 6d preset description");
        choices[*id] = unquoted(description.value_or(*id));
    }
    return choices;
}

FilterChoices FilterCapabilities::modesOf(const QByteArray &bodyId) const
{
    FilterChoices choices;
    Query query(io);
    const qint32 count =
        query.count(io.requestInt(query.intBuffer(), "filter6d number_of_modes"), "get number of filter 6d modes");
    for (qint32 k = 1; k <= count && isWanted(); ++k) {
        const auto id =
            query.text(io.requestString(query.textBuffer(), "filter6d mode_id t%02d", k), "get filter 6d mode id");
        if (!id || !isWanted())
            continue;
        if (!query.flag(io.requestBool(query.boolBuffer(), "body filter6d_mode_available %s %s", bodyId.constData(),
                                       id->constData()),
                        "get filter 6d mode id available")
            || !isWanted())
            continue;
        const auto description =
            query.text(io.requestString(query.textBuffer(), "filter6d mode_desc %s", id->constData()),
                       "get filter 6d mode description");
        choices[*id] = unquoted(description.value_or(*id));
    }
    return choices;
}

QVector<FilterBodyEntry> FilterCapabilities::bodies(int tabIndex, int bodyIndex) const
{
    if (tabIndex == standardTab) {
        if (bodyIndex < 0)
            return calibratedStandardBodies();
        return {standardBody(bodyIndex + 1)};
    }
    if (tabIndex == wandorTab) {
        if (bodyIndex < 0)
            return calibratedWandors();
        return {wandor(bodyIndex + 1)};
    }
    return {};
}

FilterBodyEntry FilterCapabilities::standardBody(qint32 number) const
{
    Query query(io);
    const auto sensor = query.text(io.requestString(query.textBuffer(), "body inertial_sensor standard b%.2d", number));
    std::optional<QByteArray> description;
    if (isWanted())
        description = query.text(io.requestString(query.textBuffer(), "body desc standard b%.2d", number));

    QString name = numbered(QCoreApplication::translate("FilterDialog", "standard body %1"), number);
    const QString plainDescription = unquoted(description.value_or(QByteArray()));
    if (!plainDescription.isEmpty())
        name += QLatin1String(" (") + plainDescription + QLatin1Char(')');
    return {numbered(QStringLiteral("standard b%1"), number).toLatin1(), name, sensor.value_or("none") != "none"};
}

QVector<FilterBodyEntry> FilterCapabilities::calibratedStandardBodies() const
{
    QVector<FilterBodyEntry> entries;
    Query query(io);
    const qint32 count = query.count(io.requestInt(query.intBuffer(), "body number_of_bodies standard"));
    for (qint32 number = 1; number <= count && isWanted(); ++number) {
        if (query.isYes(io.requestString(query.textBuffer(), "body calibrated standard b%.2d", number)) && isWanted())
            entries.append(standardBody(number));
    }
    return entries;
}

QVector<FilterBodyEntry> FilterCapabilities::calibratedWandors() const
{
    QVector<FilterBodyEntry> entries;
    Query query(io);
    const qint32 count = query.count(io.requestInt(query.intBuffer(), "wandor number_of_devices"));
    for (qint32 number = 1; number <= count && isWanted(); ++number) {
        if (query.isYes(io.requestString(query.textBuffer(), "body calibrated wandor b%.2d", number)) && isWanted())
            entries.append(wandor(number));
    }
    return entries;
}
