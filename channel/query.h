// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <optional>

class IOManager;

/// Adds \a text to the host's log as the module's own message; what Latin-1 lacks becomes "?".
void logToHost(IOManager &io, const QString &text);

/// The UTF-8 text \a answer as the operator reads it: descriptions come in double quotes, and all quotes are removed.
QString unquoted(const QByteArray &answer);

/// One place for the error convention of the command channel: buffers for the answers, the fallback on failure, and
/// the log line. A query stays a visible call, so that the compiler checks its format:
///
///     Query query(io);
///     const qint32 count = query.count(io.requestInt(query.intBuffer(), "standard number_of_bodies"),
///                                      "get number of bodies");
///
/// A result other than 0 is a failure. With \a action a failure is logged as "Error: Unable to <action>", where "%1"
/// stands for \a subject; without, it is silent. Each buffer is valid for the next query only.
class Query {
public:
    explicit Query(IOManager &ioManager)
        : io(ioManager)
    {
    }

    // Each returns a cleared buffer for one answer, which lives as long as this object.
    char *textBuffer() noexcept; ///< of 200 bytes
    qint32 *intBuffer() noexcept;
    double *doubleBuffer() noexcept;
    bool *boolBuffer() noexcept;

    /// The answer as the backend gave it; nothing on failure.
    std::optional<QByteArray> text(int result, const char *action = nullptr, const QString &subject = {}) const;
    /// Whether the answer is exactly "yes"; a failure is no.
    bool isYes(int result, const char *action = nullptr, const QString &subject = {}) const;
    /// Whether there is an answer other than exactly "no"; a failure is no. Unlike with isYes(), "No" passes.
    bool isNotNo(int result, const char *action = nullptr, const QString &subject = {}) const;
    /// The whole number answered; 0 on failure. More than a million counts as a failure: asking for each would freeze
    /// the host.
    qint32 count(int result, const char *action = nullptr, const QString &subject = {}) const;
    /// The number answered; 0 on failure.
    double number(int result, const char *action = nullptr, const QString &subject = {}) const;
    /// The flag answered; false on failure.
    bool flag(int result, const char *action = nullptr, const QString &subject = {}) const;
    /// Whether a command was accepted.
    bool accepted(int result, const char *action = nullptr, const QString &subject = {}) const;

private:
    static constexpr int answerSize = 200;
    static constexpr qint32 largestCount = 1'000'000;

    IOManager &io;
    std::array<char, answerSize + 1> answer{}; ///< the last byte terminates an answer that fills the buffer
    qint32 countAnswer = 0;
    double numberAnswer = 0.0;
    bool flagAnswer = false;
};
