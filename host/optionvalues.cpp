// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/optionvalues.h"

#include "host/windowpicture.h"

#include <QRegularExpression>

namespace host {

namespace {

constexpr double lowestRate = 0.1;
constexpr double highestRate = 1000.0;

} // namespace

OptionValues::OptionValues(const QCommandLineParser &parser)
    : parser(parser)
{
}

std::optional<std::chrono::milliseconds> OptionValues::milliseconds(const QString &option,
                                                                    std::chrono::milliseconds highest)
{
    if (!parser.isSet(option))
        return std::nullopt;
    bool valid = false;
    const int value = parser.value(option).toInt(&valid);
    if (valid && value >= 0 && value <= highest.count())
        return std::chrono::milliseconds(value);
    complain(tr("--%1 takes milliseconds from 0 to %2, not \"%3\".")
                 .arg(option, QString::number(highest.count()), parser.value(option)));
    return std::nullopt;
}

std::optional<double> OptionValues::rate(const QString &option)
{
    if (!parser.isSet(option))
        return std::nullopt;
    bool valid = false;
    const double value = parser.value(option).toDouble(&valid);
    if (valid && value >= lowestRate && value <= highestRate)
        return value;
    complain(tr("--%1 takes frames per second from %2 to %3, not \"%4\".")
                 .arg(option, QString::number(lowestRate), QString::number(highestRate), parser.value(option)));
    return std::nullopt;
}

std::optional<backend::ProtocolVersion> OptionValues::version(const QString &option)
{
    if (!parser.isSet(option))
        return std::nullopt;
    static const QRegularExpression threeNumbers(QStringLiteral(R"(\A(\d{1,4})\.(\d{1,4})(?:\.(-1|\d{1,4}))?\z)"));
    const QRegularExpressionMatch match = threeNumbers.match(parser.value(option));
    if (match.hasMatch()) {
        const QString patch = match.captured(3);
        return backend::ProtocolVersion{match.captured(1).toInt(), match.captured(2).toInt(),
                                        patch.isEmpty() ? -1 : patch.toInt()};
    }
    complain(tr("--%1 takes a version such as 1.21.0, not \"%2\".").arg(option, parser.value(option)));
    return std::nullopt;
}

QVector<backend::FaultRule> OptionValues::faults(const QString &option)
{
    QVector<backend::FaultRule> rules;
    const QStringList texts = parser.values(option);
    for (const QString &text : texts) {
        if (const std::optional<backend::FaultRule> rule = backend::parseFaultRule(text))
            rules.append(*rule);
        else
            complain(tr("--%1 takes a pattern, or a pattern and a rate from 0 to 1, not \"%2\".").arg(option, text));
    }
    return rules;
}

QString OptionValues::picture(const QString &option)
{
    QString file = parser.value(option);
    if (!file.isEmpty() && pictureFormat(file).isEmpty())
        complain(tr("--%1 can't save a picture in the format of \"%2\".").arg(option, file));
    return file;
}

void OptionValues::complain(const QString &text)
{
    if (complaint.isEmpty())
        complaint = text;
}

} // namespace host
