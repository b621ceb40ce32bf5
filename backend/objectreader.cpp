// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/objectreader.h"

#include "backend/texts.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace backend {

namespace {

constexpr int longestWord = 60; // [bytes]
constexpr int longestArray = 1000;

bool isWord(const QByteArray &text)
{
    const auto isAllowed = [](char c) { return c > ' ' && c <= '~' && c != '"' && c != '\''; };
    return !text.isEmpty() && text.size() <= longestWord && std::all_of(text.cbegin(), text.cend(), isAllowed);
}

QString rangeText(double low, double high)
{
    return Backend::tr("a number from %1 to %2 is expected").arg(low).arg(high);
}

} // namespace

ObjectReader::ObjectReader(QJsonObject object, QString path, QString *error)
    : object(std::move(object))
    , path(std::move(path))
    , error(error)
{
}

bool ObjectReader::flag(const QString &key, bool fallback)
{
    const auto value = take(key, QJsonValue::Bool, Backend::tr("true or false is expected"));
    return value ? value->toBool() : fallback;
}

double ObjectReader::number(const QString &key, double fallback, double low, double high)
{
    const auto value = take(key, QJsonValue::Double, rangeText(low, high));
    if (!value)
        return fallback;
    const double number = value->toDouble();
    if (number >= low && number <= high)
        return number;
    fail(key, rangeText(low, high));
    return fallback;
}

int ObjectReader::integer(const QString &key, int fallback, int low, int high)
{
    const double value = number(key, fallback, low, high);
    if (value == std::floor(value))
        return static_cast<int>(value);
    fail(key, Backend::tr("a whole number is expected"));
    return fallback;
}

Vector3 ObjectReader::vector(const QString &key, const Vector3 &fallback, double low, double high)
{
    const QString expected = Backend::tr("three numbers from %1 to %2 are expected").arg(low).arg(high);
    const auto value = take(key, QJsonValue::Array, expected);
    if (!value)
        return fallback;
    const QJsonArray array = value->toArray();
    Vector3 numbers{};
    bool fits = array.size() == static_cast<int>(numbers.size());
    for (int i = 0; fits && i < array.size(); ++i) {
        const double number = array[i].toDouble(low);
        fits = array[i].isDouble() && number >= low && number <= high;
        numbers[static_cast<std::size_t>(i)] = number;
    }
    if (fits)
        return numbers;
    fail(key, expected);
    return fallback;
}

QString ObjectReader::text(const QString &key, const QString &fallback, int longest)
{
    const QString expected = Backend::tr("a text of one line and at most %1 bytes is expected").arg(longest);
    const auto value = take(key, QJsonValue::String, expected);
    if (!value)
        return fallback;
    QString text = value->toString();
    const bool oneLine =
        std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.category() != QChar::Other_Control; });
    if (oneLine && text.toUtf8().size() <= longest)
        return text;
    fail(key, expected);
    return fallback;
}

QByteArray ObjectReader::word(const QString &key, const QByteArray &fallback)
{
    const QString expected =
        Backend::tr("a word of at most %1 ASCII characters without blanks and quotes is expected").arg(longestWord);
    const auto value = take(key, QJsonValue::String, expected);
    if (!value)
        return fallback;
    QByteArray word = value->toString().toUtf8();
    if (isWord(word))
        return word;
    fail(key, expected);
    return fallback;
}

QVector<QString> ObjectReader::texts(const QString &key)
{
    const QString expected = Backend::tr("an array of texts is expected");
    QVector<QString> texts;
    const auto value = take(key, QJsonValue::Array, expected);
    if (!value)
        return texts;
    const QJsonArray array = value->toArray();
    for (const QJsonValue &item : array) {
        if (!item.isString())
            fail(key, expected);
        texts.append(item.toString());
    }
    return texts;
}

std::optional<ObjectReader> ObjectReader::member(const QString &key)
{
    const auto value = take(key, QJsonValue::Object, Backend::tr("an object is expected"));
    if (!value)
        return std::nullopt;
    return ObjectReader(value->toObject(), pathOf(key), error);
}

QVector<ObjectReader> ObjectReader::members(const QString &key)
{
    const QString expected = Backend::tr("an array of at most %1 objects is expected").arg(longestArray);
    QVector<ObjectReader> readers;
    const auto value = take(key, QJsonValue::Array, expected);
    if (!value)
        return readers;
    const QJsonArray array = value->toArray();
    if (array.size() > longestArray) {
        fail(key, expected);
        return readers;
    }
    for (int i = 0; i < array.size(); ++i) {
        const QString itemKey = key + QStringLiteral("[%1]").arg(i);
        if (!array[i].isObject())
            fail(itemKey, Backend::tr("an object is expected"));
        readers.append(ObjectReader(array[i].toObject(), pathOf(itemKey), error));
    }
    return readers;
}

void ObjectReader::fail(const QString &key, const QString &reason)
{
    if (error->isEmpty())
        *error = pathOf(key) + QStringLiteral(": ") + reason;
}

void ObjectReader::finish()
{
    const QStringList keys = object.keys();
    for (const QString &key : keys) {
        if (!known.contains(key))
            fail(key, Backend::tr("this key is unknown"));
    }
}

std::optional<QJsonValue> ObjectReader::take(const QString &key, QJsonValue::Type type, const QString &expected)
{
    known.insert(key);
    if (!object.contains(key))
        return std::nullopt;
    const QJsonValue value = object.value(key);
    if (value.type() == type)
        return value;
    fail(key, expected);
    return std::nullopt;
}

QString ObjectReader::pathOf(const QString &key) const
{
    return path.isEmpty() ? key : path + QLatin1Char('.') + key;
}

} // namespace backend
