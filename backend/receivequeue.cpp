// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/receivequeue.h"

#include <utility>

namespace backend {

namespace {

/// The shortest lines cost more by what is around them than by their text.
qint64 bytesOf(const ReceivedLine &line)
{
    return static_cast<qint64>(sizeof(ReceivedLine) + sizeof(QByteArrayData)) + line.line.text.size();
}

} // namespace

void ReceiveQueue::push(const ReceivedLine &line)
{
    {
        const std::lock_guard lock(mutex);
        lines.push_back(line);
        bytes += bytesOf(line);
        while (lines.size() > 1 && (bytes > mostBytes || line.time - lines.front().time > longestSpan))
            dropOldest();
    }
    changed.notify_one();
}

void ReceiveQueue::finish()
{
    const std::lock_guard lock(mutex);
    hasEnded = true;
}

void ReceiveQueue::clear()
{
    const std::lock_guard lock(mutex);
    while (!lines.empty())
        dropOldest();
}

QVector<ReceivedLine> ReceiveQueue::take(Clock::time_point deadline)
{
    std::unique_lock lock(mutex);
    changed.wait_until(lock, deadline, [this] { return isWoken || !lines.empty(); });
    isWoken = false;
    QVector<ReceivedLine> taken;
    taken.reserve(static_cast<int>(lines.size()));
    for (ReceivedLine &line : lines)
        taken.append(std::move(line));
    lines.clear();
    bytes = 0;
    return taken;
}

void ReceiveQueue::wake() noexcept
{
    {
        const std::lock_guard lock(mutex);
        isWoken = true;
    }
    changed.notify_one();
}

quint64 ReceiveQueue::late() const
{
    const std::lock_guard lock(mutex);
    return lateLines;
}

bool ReceiveQueue::isFinished() const
{
    const std::lock_guard lock(mutex);
    return hasEnded && lines.empty();
}

void ReceiveQueue::dropOldest()
{
    bytes -= bytesOf(lines.front());
    lines.pop_front();
    ++lateLines;
}

} // namespace backend
