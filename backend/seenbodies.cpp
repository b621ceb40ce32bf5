// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/seenbodies.h"

#include "backend/commandtable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace backend {

namespace {

constexpr std::size_t blocksOfBody = 3; // id, state and quality; position, angles; rotation

std::shared_ptr<const Scenario> modelOf(int bodies, bool isInertial)
{
    const auto model = std::make_shared<Scenario>();
    model->bodies.resize(bodies);
    model->fixedAngles = !isInertial;
    model->changeable = false;
    model->output6d = model->output3d = {true, true};
    model->output6di = {isInertial, isInertial};
    return model;
}

/// How many integers and then other numbers each block of a body has.
struct BlockShape {
    int integers = 0;
    int others = 0;
};
using BodyShape = std::array<BlockShape, blocksOfBody>;
constexpr BodyShape plainShape{{{1, 1}, {0, 6}, {0, 9}}};
constexpr BodyShape inertialShape{{{2, 1}, {0, 3}, {0, 9}}};

const char *withoutBlanks(const char *text)
{
    return text + std::strspn(text, " \t\r\v\f");
}

/// The place after the number at the start of \a text, which ends at \a end; nullptr where there is none.
const char *afterNumber(const char *text, const char *end)
{
    text = withoutBlanks(text);
    text += *text == '+' || *text == '-' ? 1 : 0;
    const bool isHexadecimal = *text == '0' && (text[1] == 'x' || text[1] == 'X');
    double ignored = 0.0;
    const std::from_chars_result result = isHexadecimal
        ? std::from_chars(text + 2, end, ignored, std::chars_format::hex)
        : std::from_chars(text, end, ignored);
    return result.ec == std::errc::invalid_argument ? nullptr : result.ptr;
}

/// Whether the block from \a open to \a close has its numbers. The first integer, if there is any, goes to \a first.
bool readBlock(const char *open, const char *close, const BlockShape &shape, long *first)
{
    const char *text = open + 1;
    for (int i = 0; i < shape.integers; ++i) {
        char *after = nullptr;
        const long number = std::strtol(text, &after, 0); // no locale has other digits than the C locale
        if (after == text)
            return false;
        if (i == 0)
            *first = number;
        text = after;
    }
    for (int i = 0; text && i < shape.others; ++i)
        text = afterNumber(text, close);
    return text != nullptr;
}

/// How many bodies \a line shows, counted up to the highest of their numbers: more than the most where one is beyond
/// them, or there are too many. Of the first \a known no block but the first is read.
int bodiesIn(const QByteArray &line, const BodyShape &shape, int known)
{
    const char *text = line.constData();
    const char *const end = text + std::strlen(text); // readers stop at a zero
    const auto find = [end](const char *from, char c) {
        return static_cast<const char *>(std::memchr(from, c, static_cast<std::size_t>(end - from)));
    };
    long highest = 0;
    for (int count = 0;; ++count) {
        long id = -1;
        for (std::size_t block = 0; block < shape.size(); ++block) {
            const char *const open = find(text, '[');
            const char *const close = open ? find(open, ']') : nullptr;
            if (!close || ((block == 0 || id >= known) && !readBlock(open, close, shape[block], &id)))
                return static_cast<int>(highest);
            text = close;
        }
        if (id >= SeenBodies::mostBodies || count == SeenBodies::mostBodies)
            return SeenBodies::mostBodies + 1;
        highest = std::max(highest, id + 1);
    }
}

} // namespace

SeenBodies::SeenBodies()
    : model(modelOf(0, false))
{
}

SeenBodies::~SeenBodies() = default;

bool SeenBodies::see(const OutputLine &line)
{
    const bool hasState = line.tag == "6di";
    const bool hasBodies = hasState || line.tag == "6d";
    const int seen = hasBodies ? bodiesIn(line.text, hasState ? inertialShape : plainShape, bodies) : 0;
    if (seen > mostBodies)
        return false;
    if (seen <= bodies && (isInertial || !hasState))
        return true;
    bodies = std::max(bodies, seen);
    isInertial = isInertial || hasState;
    std::shared_ptr<const Scenario> changed = modelOf(bodies, isInertial);
    const std::lock_guard lock(mutex);
    model.swap(changed);
    ++changeCount;
    return true;
}

quint64 SeenBodies::changes() const
{
    const std::lock_guard lock(mutex);
    return changeCount;
}

std::optional<QByteArray> SeenBodies::answer(const QByteArray &query) const
{
    const std::shared_ptr<const Scenario> current = currentModel();
    return answerTo(query, QueryContext{*current, 0.0});
}

ProtocolVersion SeenBodies::version() const
{
    return currentModel()->version;
}

std::shared_ptr<const Scenario> SeenBodies::currentModel() const
{
    const std::lock_guard lock(mutex);
    return model;
}

} // namespace backend
