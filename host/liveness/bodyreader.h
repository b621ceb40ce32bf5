// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <array>

namespace host {

/// A body as a line of output has it. It is tracked as the panel shows it: with a quality that is not below 0, and a
/// state above 0 where the line has one.
struct BodySighting {
    qint32 id = 0;
    bool tracked = false;
};

/// More bodies of one line are left unread, so that no line takes long.
constexpr std::size_t mostBodies = 1000;

/// The start of \a sightings holds what a line had, as far as it could be read.
struct BodyList {
    std::array<BodySighting, mostBodies> sightings{};
    std::size_t count = 0;
};

/// Reads id, state and quality of the bodies in a line of "6d" or "6di", and no other number. The bodies are those
/// whose blocks are there, whatever count the line begins with; the first block that is not as it should be ends the
/// reading. Any other \a tag has no bodies. Numbers as strtol (base 0) and strtod read them in the C locale.
void readBodies(const QByteArray &tag, const QByteArray &line, BodyList &bodies) noexcept;

} // namespace host
