// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QString>

#include <mutex>

namespace host {

/// How bodies are called, as far as it can be overheard: the host asks no question of its own, since each costs the
/// backend time. Any thread.
class BodyNames {
    Q_DECLARE_TR_FUNCTIONS(BodyNames)

public:
    /// Takes what a question of a module and its answer tell of bodies; most tell nothing.
    void note(const QByteArray &query, const QByteArray &answer);
    /// Forgets all, for another backend.
    void clear();

    /// "2 L hand", or "body 2" for one whose name nobody has asked for: the body with \a id in the lines, numbered as
    /// the panel does, from 1. The head target of a multi-user device has the first line and is called "MUH".
    QString label(qint32 id) const;

private:
    mutable std::mutex mutex; // guards all
    QHash<int, QString> names; // by the backend's numbers
    bool usesHeads = false;
    int headCount = 0;
};

} // namespace host
