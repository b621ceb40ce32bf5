// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/naivereader.h"

#include <fast_float/fast_float.h>

#include <charconv>
#include <clocale>
#include <cstdlib>
#include <cstring>

namespace {

struct NaiveNumbers {
    static bool read(const char *&text, const char * /*end*/, qint32 &number)
    {
        char *end = nullptr;
        number = static_cast<qint32>(std::strtol(text, &end, 0));
        const bool found = end != text;
        text = end;
        return found;
    }
    static bool read(const char *&text, const char * /*end*/, float &number)
    {
        char *end = nullptr;
        number = static_cast<float>(std::strtod(text, &end));
        const bool found = end != text;
        text = end;
        return found;
    }
};

locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{});
    return locale;
}

struct FastFloatNumbers {
    static bool read(const char *&text, const char *end, qint32 &number)
    {
        while (*text == ' ')
            ++text;
        const auto result = std::from_chars(text, end, number);
        const bool plain = result.ec == std::errc() && *text != '0' && *result.ptr != 'x';
        if (!plain)
            return NaiveNumbers::read(text, end, number);
        text = result.ptr;
        return true;
    }
    static bool read(const char *&text, const char *end, float &number)
    {
        while (*text == ' ')
            ++text;
        double value = 0.0;
        const auto result = fast_float::from_chars(text, end, value);
        if (result.ec != std::errc() || *result.ptr == 'x') {
            char *numberEnd = nullptr;
            value = strtod_l(text, &numberEnd, cLocale());
            if (numberEnd == text)
                return false;
            text = numberEnd;
        } else {
            text = result.ptr;
        }
        number = static_cast<float>(value);
        return true;
    }
};

template<typename Numbers> char *readBlock(char *text, const char *format, qint32 *ints, float *floats)
{
    char *const open = std::strchr(text, '[');
    char *const close = open ? std::strchr(open + 1, ']') : nullptr;
    if (!close)
        return nullptr;
    *close = '\0';
    const char *place = open + 1;
    bool complete = true;
    for (; complete && *format != '\0'; ++format)
        complete = *format == 'i' ? Numbers::read(place, close, *ints++) : Numbers::read(place, close, *floats++);
    *close = ']';
    return complete ? close + 1 : nullptr;
}

template<typename Numbers> bool readBodies(Stores &stores, char *text, std::size_t count, bool inertial)
{
    stores.bodyRecords.resize(count);
    for (BodyRecord &record : stores.bodyRecords)
        record.quality = -1.0F;
    for (BodyRecord &record : stores.bodyRecords) {
        qint32 idAndState[2] = {0, 2};
        float quality = 0.0F;
        text = readBlock<Numbers>(text, inertial ? "iif" : "if", idAndState, &quality);
        if (!text)
            return false;
        record.id = idAndState[0];
        record.state = idAndState[1];
        record.quality = quality;
        float pose[6] = {};
        text = readBlock<Numbers>(text, inertial ? "fff" : "ffffff", nullptr, pose);
        if (!text)
            return false;
        std::memcpy(record.position.data(), pose, sizeof record.position);
        std::memcpy(record.angles.data(), pose + 3, sizeof record.angles);
        text = readBlock<Numbers>(text, "fffffffff", nullptr, record.rotation.data());
        if (!text)
            return false;
    }
    return true;
}

template<typename Numbers> bool readMarkers(Stores &stores, char *text, std::size_t count)
{
    while (stores.markerRecords.size() < count)
        stores.markerRecords.push_back(std::make_unique<MarkerRecord>());
    stores.markerRecords.resize(count);
    for (const std::unique_ptr<MarkerRecord> &record : stores.markerRecords) {
        text = readBlock<Numbers>(text, "if", &record->id, &record->quality);
        if (!text)
            return false;
        text = readBlock<Numbers>(text, "fff", nullptr, record->position.data());
        if (!text)
            return false;
    }
    return true;
}

template<typename Numbers> bool readLine(TrackingData &data, const QByteArray &tag, const QByteArray &line)
{
    QByteArray copy(line.constData());
    const TrackingData::Locked stores = data.lock();
    char *text = nullptr;
    const long count = std::strtol(copy.data() + tag.size() + 1, &text, 0);
    if (tag == "3d")
        return readMarkers<Numbers>(*stores, text, static_cast<std::size_t>(count));
    return readBodies<Numbers>(*stores, text, static_cast<std::size_t>(count), tag == "6di");
}

} // namespace

bool readNaively(TrackingData &data, const QByteArray &tag, const QByteArray &line)
{
    return readLine<NaiveNumbers>(data, tag, line);
}

bool readWithFastFloat(TrackingData &data, const QByteArray &tag, const QByteArray &line)
{
    return readLine<FastFloatNumbers>(data, tag, line);
}

int readNothing(const QByteArray &line)
{
    const QByteArray copy(line.constData());
    const char *text = copy.constData();
    const char *const end = text + copy.size();
    int brackets = 0;
    while (const void *bracket = std::memchr(text, ']', static_cast<std::size_t>(end - text))) {
        text = static_cast<const char *>(bracket) + 1;
        ++brackets;
    }
    return brackets;
}
