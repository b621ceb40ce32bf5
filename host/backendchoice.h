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
};

BackendResult makeBackend(const BackendChoice &choice, const BackendSettings &settings);

} // namespace host
