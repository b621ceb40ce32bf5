// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// Gives the lines of the input, separated by line feeds, to the line reader and to the slow reference reader, one
/// after the other into the same stores, and requires the same outcome, flags and bits after each. They begin as lines
/// of type \a tag. A line that begins with '~' is none of a backend but sets the stage for the next ones:
///
///     ~6d ~6di ~3d   the type of the lines; the first two choose the format of the bodies, too
///     ~c             the configuration has changed
///     ~r             the reset of the sensor schedule is taken
///     ~aNUMBER       the sensor of the row is absent
///     ~x             both stores are cleared
///     ~b             the body store is cleared
int compareLines(const char *tag, const std::uint8_t *data, std::size_t size);
