// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/faultybackend.h"
#include "backend/scenario.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <chrono>
#include <memory>
#include <optional>

namespace backend {
struct ReadingProgress;
} // namespace backend

namespace host {

/// What the operator wants to be connected to: a scenario, trajectory files to replay, or standard input.
struct BackendChoice {
    QString scenario; ///< name of a shipped one or path of a file; without meaning when there are files to replay
    QStringList replayFiles; ///< one body each
    bool standardInput = false; ///< lines as they come; the scenario, if there is any, answers the modules' questions
};

/// What applies to every backend that is chosen.
struct BackendSettings {
    std::optional<double> rate; ///< frames per second in place of the scenario's
    std::optional<backend::ProtocolVersion> version; ///< in place of the scenario's
    QVector<backend::FaultRule> faults;
    std::chrono::milliseconds latency{0};
};

/// What came of a choice. Without a backend, error says why.
struct BackendResult {
    std::shared_ptr<backend::TrackingBackend> backend;
    QString error; ///< names the file and the line or the key
    QStringList warnings; ///< such as skipped lines of a trajectory file
    bool isPlaceholder = false; ///< of firstBackend()
};

/// Reads the files that the choice names, which may take seconds. Says in \a progress how far it is, if there is one,
/// and gives up when that is cancelled. Any thread.
BackendResult makeBackend(const BackendChoice &choice, const BackendSettings &settings,
                          backend::ReadingProgress *progress = nullptr);

/// What a program can start with at once: the same, or for recordings that are long to read a placeholder that has
/// their bodies and no output. Its error is that of the choice.
BackendResult firstBackend(const BackendChoice &choice, const BackendSettings &settings);

/// Whether the choice names files, and all of them are there: what then takes long is their reading.
bool hasFilesToRead(const BackendChoice &choice);

/// The files of the choice in a few words, such as "walk.txt" or "walk.txt and 2 more".
QString filesText(const BackendChoice &choice);

} // namespace host
