// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendchoice.h"

#include <QObject>

#include <memory>
#include <thread>

namespace host {

/// Makes backends on a thread, since a recording of a hundred megabytes takes seconds to read. One at a time. GUI
/// thread.
class BackendReader : public QObject {
    Q_OBJECT

public:
    explicit BackendReader(QObject *parent = nullptr);
    ~BackendReader() override;

    /// Starts to make the backend of \a choice. Gives up the one before, if there is one, without a signal.
    void start(const BackendChoice &choice, const BackendSettings &settings);
    /// Gives up what is being read, with the signal cancelled(); else does nothing.
    void cancel();
    /// The same without a signal.
    void stop();

    bool isReading() const { return job != nullptr; }
    double progress() const; ///< of what is being read, from 0 to 1

signals:
    void started(const host::BackendChoice &choice);
    void finished(const host::BackendChoice &choice, const host::BackendResult &result);
    void cancelled(const host::BackendChoice &choice);
    void jobDone(); ///< emitted on the reading thread, for this object itself

private:
    struct Job;

    void takeResult();

    std::unique_ptr<Job> job;
    std::thread thread;
};

} // namespace host
