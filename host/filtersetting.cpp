// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/filtersetting.h"

#include <QList>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace host {

namespace {

const char *const settingPrefix = "filter6d_";

/// The number that all of \a value stands for.
std::optional<double> numberIn(const QByteArray &value)
{
    bool isNumber = false;
    const double number = value.trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

} // namespace

QString FilterSetting::body() const
{
    const QList<QByteArray> words = question.split(' ');
    return QString::fromUtf8(words.value(2) + ' ' + words.value(3));
}

QString FilterSetting::name() const
{
    return QString::fromUtf8(question.split(' ').value(1).mid(static_cast<int>(qstrlen(settingPrefix))));
}

std::optional<FilterSetting> filterSettingOf(const QByteArray &command)
{
    constexpr int questionWords = 4; // body, setting, kind of body, number
    const QList<QByteArray> words = command.split(' ');
    const bool isSetting = words.size() > questionWords && words.at(0) == "body"
        && words.at(1).startsWith(settingPrefix)
        && std::none_of(words.cbegin(), words.cend(), [](const QByteArray &word) { return word.isEmpty(); });
    if (!isSetting)
        return std::nullopt;
    const QByteArray question = words.mid(0, questionWords).join(' ');
    return FilterSetting{question, command.mid(question.size() + 1)};
}

bool isSameValue(const QByteArray &left, const QByteArray &right)
{
    constexpr double resolution = 0.5e-6; // commands have six decimals
    const std::optional<double> leftNumber = numberIn(left);
    const std::optional<double> rightNumber = numberIn(right);
    if (leftNumber && rightNumber)
        return std::abs(*leftNumber - *rightNumber) < resolution;
    return left.trimmed() == right.trimmed();
}

QString shownValue(const QByteArray &value)
{
    const std::optional<double> number = numberIn(value);
    return number ? QString::number(*number, 'g', QLocale::FloatingPointShortest)
                  : QString::fromUtf8(value).simplified();
}

} // namespace host
