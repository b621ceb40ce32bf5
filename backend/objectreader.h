// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/pose.h"

#include <QJsonObject>
#include <QSet>
#include <QString>
#include <QVector>

#include <optional>

namespace backend {

/// Reads the values of a JSON object strictly. A missing value, and one with a fault, is replaced by its fallback. The
/// first fault is written to the error text, which names the path of the key; later ones are not.
class ObjectReader {
public:
    /// \a path leads to the object, such as "bodies[2].motion", and is empty for the outermost one. \a error is shared
    /// by all readers of a file and outlives them.
    ObjectReader(QJsonObject object, QString path, QString *error);

    bool has(const QString &key) const { return object.contains(key); }

    bool flag(const QString &key, bool fallback);
    double number(const QString &key, double fallback, double low, double high);
    int integer(const QString &key, int fallback, int low, int high);
    Vector3 vector(const QString &key, const Vector3 &fallback, double low, double high);
    /// One line of at most \a longest bytes in UTF-8.
    QString text(const QString &key, const QString &fallback, int longest);
    /// A word of printable ASCII characters without blanks and quotes, of at most 60.
    QByteArray word(const QString &key, const QByteArray &fallback);
    /// The array of texts \a key; empty when it is not there.
    QVector<QString> texts(const QString &key);
    /// The object \a key; nothing when it is not there.
    std::optional<ObjectReader> member(const QString &key);
    /// The objects of the array \a key; none when it is not there.
    QVector<ObjectReader> members(const QString &key);

    /// Notes a fault at \a key, unless there has been one.
    void fail(const QString &key, const QString &reason);
    /// Notes a fault unless all keys have been asked for.
    void finish();

private:
    std::optional<QJsonValue> take(const QString &key, QJsonValue::Type type, const QString &expected);
    QString pathOf(const QString &key) const;

    QJsonObject object;
    QString path;
    QString *error;
    QSet<QString> known;
};

} // namespace backend
