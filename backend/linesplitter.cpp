// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/linesplitter.h"

#include <cstring>
#include <utility>

namespace backend {

QVector<LineSplitter::Line> LineSplitter::add(const char *bytes, int size)
{
    QVector<Line> lines;
    const char *const end = bytes + size;
    while (bytes < end) {
        const auto *const feed =
            static_cast<const char *>(std::memchr(bytes, '\n', static_cast<std::size_t>(end - bytes)));
        append(bytes, static_cast<int>((feed ? feed : end) - bytes));
        if (!feed)
            break;
        lines.append(takeLine());
        bytes = feed + 1;
    }
    return lines;
}

std::optional<LineSplitter::Line> LineSplitter::rest()
{
    if (pending.text.isEmpty() && !pending.isTooLong)
        return std::nullopt;
    return takeLine();
}

void LineSplitter::append(const char *bytes, int size)
{
    if (pending.isTooLong)
        return;
    if (size > longestLine - pending.text.size())
        pending = {{}, true};
    else
        pending.text.append(bytes, size);
}

LineSplitter::Line LineSplitter::takeLine()
{
    return std::exchange(pending, {});
}

} // namespace backend
