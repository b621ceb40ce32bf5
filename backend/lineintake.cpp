// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/lineintake.h"

#include "backend/receivequeue.h"
#include "backend/seenbodies.h"
#include "backend/texts.h"

#include <algorithm>
#include <utility>

namespace backend {

namespace {

constexpr int longestWord = 40; ///< [bytes] that are told

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

QByteArray firstWordOf(const QByteArray &line)
{
    const auto *const begin = std::find_if_not(line.cbegin(), line.cend(), isBlank);
    const auto *const end = std::find_if(begin, line.cend(), isBlank);
    return line.mid(static_cast<int>(begin - line.cbegin()), static_cast<int>(end - begin));
}

/// The type of output that \a word stands for; empty where it stands for none.
QByteArray tagOf(const QByteArray &word)
{
    for (const QByteArray &tag : {QByteArrayLiteral("6d"), QByteArrayLiteral("6di"), QByteArrayLiteral("3d")}) {
        if (word == tag)
            return tag; // shares its memory with all other lines
    }
    return {};
}

/// \a word as it can be shown, whatever its bytes.
QString shown(const QByteArray &word)
{
    QString text;
    const QByteArray beginning = word.left(longestWord);
    for (const char c : beginning) {
        if (c > ' ' && c <= '~')
            text += QLatin1Char(c);
        else
            text += QStringLiteral("\\x%1").arg(static_cast<uchar>(c), 2, 16, QLatin1Char('0'));
    }
    return word.size() > longestWord ? text + QStringLiteral("...") : text;
}

} // namespace

LineIntake::LineIntake(SeenBodies &bodies, ReceiveQueue &queue)
    : bodies(bodies)
    , queue(queue)
{
}

void LineIntake::add(const LineSplitter::Line &line, std::chrono::nanoseconds time)
{
    if (line.isTooLong) {
        refuse(Backend::tr("A line of more than %1 bytes was refused.").arg(LineSplitter::longestLine));
        return;
    }
    const QByteArray word = firstWordOf(line.text);
    if (word.isEmpty())
        return;
    const OutputLine output{tagOf(word), line.text};
    if (output.tag.isEmpty())
        countUnknown(word);
    else if (!bodies.see(output))
        refuse(Backend::tr("A line with more than %1 bodies was refused.").arg(SeenBodies::mostBodies));
    else
        queue.push({output, time, nextSequence++});
}

quint64 LineIntake::refused() const
{
    const std::lock_guard lock(mutex);
    return refusedLines;
}

quint64 LineIntake::unknown() const
{
    const std::lock_guard lock(mutex);
    return unknownLines;
}

QStringList LineIntake::takeWarnings()
{
    const std::lock_guard lock(mutex);
    return std::exchange(warnings, {});
}

void LineIntake::refuse(const QString &reason)
{
    const std::lock_guard lock(mutex);
    if (++refusedLines <= mostWarnings)
        warnings.append(reason);
}

void LineIntake::countUnknown(const QByteArray &firstWord)
{
    const bool isNew = unknownWords.size() < mostWarnings && !unknownWords.contains(firstWord.left(longestWord));
    if (isNew)
        unknownWords.insert(firstWord.left(longestWord));
    const std::lock_guard lock(mutex);
    ++unknownLines;
    if (isNew) {
        warnings.append(Backend::tr("Lines that begin with \"%1\" are left out: they are none of 6d, 6di and 3d.")
                            .arg(shown(firstWord)));
    }
}

} // namespace backend
