// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace host {

/// A command that changes one setting of a body's filter, such as "body filter6d_strength standard b01 0.500000".
struct FilterSetting {
    QByteArray question; ///< asks for the value: the command without it
    QByteArray value; ///< as it was sent

    QString body() const; ///< "standard b01"
    QString name() const; ///< "strength"
};

/// What \a command changes; nothing when it does something else.
std::optional<FilterSetting> filterSettingOf(const QByteArray &command);

/// Whether two values are the same one, however their numbers are written.
bool isSameValue(const QByteArray &left, const QByteArray &right);

/// \a value for people: a number without zeros at its end.
QString shownValue(const QByteArray &value);

} // namespace host
