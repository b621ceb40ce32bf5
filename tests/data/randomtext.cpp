// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "randomtext.h"

#include <QByteArray>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace {

enum class Notation { Fixed, Scientific, Shorter };

std::string printed(Notation notation, int precision, double value)
{
    std::array<char, 1600> text{};
    if (notation == Notation::Fixed)
        std::snprintf(text.data(), text.size(), "%.*f", precision, value);
    else if (notation == Notation::Scientific)
        std::snprintf(text.data(), text.size(), "%.*e", precision, value);
    else
        std::snprintf(text.data(), text.size(), "%.*g", precision, value);
    return text.data();
}

} // namespace

int sweepSize(int usual, int many)
{
    if (qEnvironmentVariableIntValue("VORNAK_LONG") == 1)
        return many;
    return qEnvironmentVariableIntValue("VORNAK_SLOW") == 1 ? usual / 10 : usual;
}

int RandomText::below(int count)
{
    return static_cast<int>(engine() % static_cast<quint64>(count));
}

std::string RandomText::digits(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += static_cast<char>('0' + below(10));
    return text;
}

std::string RandomText::decimal()
{
    static const std::array<const char *, 5> signs{"", "", "-", "+", " \t-"};
    std::string text = signs[static_cast<std::size_t>(below(5))];
    switch (below(7)) {
    case 0: // a coordinate
        return text + digits(1 + below(5)) + '.' + digits(below(7));
    case 1: { // any double
        const quint64 bits = engine();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return text + printed(Notation::Shorter, 1 + below(20), std::fabs(value));
    }
    case 2: { // any float
        const auto bits = static_cast<quint32>(engine());
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return text + printed(Notation::Scientific, below(12), static_cast<double>(std::fabs(value)));
    }
    case 3: // leading and trailing zeros
        text += std::string(static_cast<std::size_t>(below(30)), '0') + digits(below(5)) + '.'
            + std::string(static_cast<std::size_t>(below(30)), '0') + digits(1 + below(5))
            + std::string(static_cast<std::size_t>(below(30)), '0');
        break;
    case 4: // more digits than a double holds
        text += digits(1 + below(40)) + '.' + digits(below(40));
        break;
    case 5:
        text += oneIn(50) ? digits(400) : digits(1 + below(22));
        break;
    default:
        text += digits(1 + below(9)) + (oneIn(2) ? "." : "") + digits(below(9));
        break;
    }
    if (oneIn(2)) {
        text += oneIn(2) ? 'e' : 'E';
        text += signs[static_cast<std::size_t>(below(4))];
        text += std::to_string(oneIn(4) ? below(400) : below(50));
    }
    return text;
}

std::string RandomText::nearFloatMidpoint()
{
    quint32 bits = 0;
    if (oneIn(4))
        bits = static_cast<quint32>(below(0x00ffffff)); // denormal and the least normal numbers
    else if (oneIn(2))
        bits = 0x3a000000U + static_cast<quint32>(below(0x0c000000)); // about 0.0005 to 32768
    else
        bits = static_cast<quint32>(below(0x7f7fffff));
    float lower = 0;
    std::memcpy(&lower, &bits, sizeof lower);
    const float upper = std::nextafterf(lower, std::numeric_limits<float>::infinity());
    const double middle = (static_cast<double>(lower) + static_cast<double>(upper)) / 2;
    if (oneIn(3)) // rounded, so just beside the midpoint or on it
        return printed(Notation::Scientific, 8 + below(24), middle);
    std::string text = printed(Notation::Fixed, 150, middle);
    switch (below(4)) {
    case 0:
        return text + digits(3);
    case 1:
        return text + std::string(static_cast<std::size_t>(below(60)), '0') + "1";
    case 2: {
        const double direction = oneIn(2) ? 0.0 : std::numeric_limits<double>::infinity();
        return printed(Notation::Fixed, 150, std::nextafter(middle, direction));
    }
    default:
        return text;
    }
}

std::string RandomText::integer()
{
    const std::string sign = oneIn(5) ? "-" : oneIn(10) ? "+" : "";
    switch (below(8)) {
    case 0: {
        const quint64 number = oneIn(2) ? engine() >> 33U : engine();
        const QByteArray hex = QByteArray::number(static_cast<qulonglong>(number), 16);
        return sign + (oneIn(2) ? "0x" + hex.toStdString() : "0X" + hex.toUpper().toStdString());
    }
    case 1:
        return sign + '0' + digits(below(12));
    case 2:
        return sign + digits(1 + below(22));
    default:
        return sign + std::to_string(1 + below(20));
    }
}

std::string RandomText::numberSoup(int maxLength)
{
    static const std::string characters = "00112345678999+-..eExXpPabBfFinINFtTyY() \t\n\v\f\r_,";
    static const std::array<const char *, 12> lumps{"inf", "infinity", "nan", "nan(", "0x",     "0x1.",
                                                    "1e",  "p-1",      "e+",  "INF",  "NaN(7)", "0."};
    std::string text;
    const int length = below(maxLength + 1);
    while (static_cast<int>(text.size()) < length) {
        if (oneIn(6))
            text += lumps[static_cast<std::size_t>(below(12))];
        else
            text += characters[static_cast<std::size_t>(below(static_cast<int>(characters.size())))];
    }
    return text;
}

std::string RandomText::block(const char *format)
{
    static const std::array<const char *, 8> blanks{" ", " ", " ", " ", "  ", "\t", "\n", " \r\n"};
    static const std::array<const char *, 6> strangeFloats{"inf", "-inf", "nan", "0x1.8p3", "1e39", "-nan(5)"};
    std::string text = "[";
    for (; *format; ++format) {
        if (*format == 'i')
            text += integer();
        else
            text += oneIn(20) ? strangeFloats[static_cast<std::size_t>(below(6))] : decimal();
        text += blanks[static_cast<std::size_t>(below(8))];
    }
    if (oneIn(10))
        text += decimal(); // one more than asked for
    return text + ']';
}

std::string RandomText::goodLine(const std::string &tag, int maxItems)
{
    const int count = below(maxItems + 1);
    std::string line = tag + ' ' + std::to_string(count) + ' ';
    for (int item = 0; item < count; ++item) {
        if (tag == "3d")
            line += block("if") + block("fff");
        else if (tag == "6d")
            line += block("if") + block("ffffff") + block("fffffffff");
        else
            line += block("iif") + block("fff") + block("fffffffff");
        if (oneIn(8))
            line += " x, ";
    }
    return line;
}

std::string RandomText::injured(std::string line)
{
    const int injuries = 1 + below(4);
    for (int i = 0; i < injuries; ++i)
        injure(line);
    return line;
}

void RandomText::injure(std::string &line)
{
    static const std::string characters = std::string("[]][[ 0123456789+-.eExXinfa,\t\n\x80") + '\0';
    static const std::array<const char *, 16> counts{"",
                                                     "-1",
                                                     "-5",
                                                     "0",
                                                     "0x3",
                                                     "03",
                                                     "08",
                                                     "301",
                                                     "500",
                                                     "+2",
                                                     "4294967298",
                                                     "1000001",
                                                     "2000000000",
                                                     "99999999999999999999",
                                                     "-99999999999999999999",
                                                     "0x"};
    const auto anyPlace = [&] { return static_cast<std::size_t>(below(static_cast<int>(line.size()) + 1)); };
    const auto length = [&] { return static_cast<std::size_t>(oneIn(4) ? below(60) : below(4)); };
    const char character = characters[static_cast<std::size_t>(below(static_cast<int>(characters.size())))];
    switch (below(8)) {
    case 0:
        line.erase(anyPlace(), length());
        break;
    case 1:
        line.insert(anyPlace(), 1, character);
        break;
    case 2:
        if (!line.empty())
            line[static_cast<std::size_t>(below(static_cast<int>(line.size())))] = character;
        break;
    case 3: {
        const std::string part = line.substr(anyPlace(), length());
        line.insert(anyPlace(), part);
        break;
    }
    case 4:
        line.resize(anyPlace());
        break;
    case 5: {
        const std::size_t bracket = line.find(oneIn(2) ? '[' : ']', anyPlace());
        if (bracket != std::string::npos)
            line.erase(bracket, 1);
        break;
    }
    case 6: {
        const std::size_t blank = line.find(' ');
        const std::size_t bracket = line.find('[');
        if (blank != std::string::npos && bracket != std::string::npos && blank < bracket)
            line.replace(blank + 1, bracket - blank - 1, counts[static_cast<std::size_t>(below(16))]);
        break;
    }
    default:
        line.insert(anyPlace(), numberSoup(8));
        break;
    }
}
