// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/// One input for the target that is linked in. Called by libFuzzer, or by the replay of a corpus; returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Whether the target runs on the files of a corpus only, so that there is time for more than in a search.
bool isReplay();

/// Ends the process with \a what on the error output unless \a holds: a finding, with the input that led to it.
void require(bool holds, const char *what);

/// The input as bytes of its own.
QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// Makes the application without a screen, once. Its home is a temporary folder that lasts as long as the process.
void needApplication();

/// The path of the file \a name in the temporary home.
QString homePath(const QString &name);

/// Writes \a content to the file \a name in the temporary home and returns its path.
QString writeHomeFile(const QString &name, const QByteArray &content);

/// Removes the file \a name in the temporary home.
void removeHomeFile(const QString &name);
