// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendreader.h"

#include "backend/readingprogress.h"

#include <atomic>
#include <new>
#include <utility>

namespace host {

/// What is being read. The thread has it for itself until it is done, but for the progress.
struct BackendReader::Job {
    Job(BackendChoice choice, BackendSettings settings)
        : choice(std::move(choice))
        , settings(std::move(settings))
    {
    }

    const BackendChoice choice;
    const BackendSettings settings;
    backend::ReadingProgress progress; // any thread
    BackendResult result;
    std::atomic<bool> isDone{false};
};

BackendReader::BackendReader(QObject *parent)
    : QObject(parent)
{
    connect(this, &BackendReader::jobDone, this, &BackendReader::takeResult, Qt::QueuedConnection);
}

BackendReader::~BackendReader()
{
    stop();
}

void BackendReader::start(const BackendChoice &choice, const BackendSettings &settings)
{
    stop();
    job = std::make_unique<Job>(choice, settings);
    thread = std::thread([this, current = job.get()] {
        try {
            current->result = makeBackend(current->choice, current->settings, &current->progress);
        } catch (const std::bad_alloc &) {
            current->result.error = tr("%1 is too large for this computer's memory.").arg(filesText(current->choice));
        }
        current->isDone = true;
        emit jobDone();
    });
    emit started(choice);
}

void BackendReader::cancel()
{
    if (!job)
        return;
    const BackendChoice choice = job->choice;
    stop();
    emit cancelled(choice);
}

void BackendReader::stop()
{
    if (!job)
        return;
    job->progress.cancelled = true;
    thread.join();
    job.reset();
}

double BackendReader::progress() const
{
    const qint64 total = job ? job->progress.total.load() : 0;
    return total > 0 ? qBound(0.0, double(job->progress.read.load()) / double(total), 1.0) : 0.0;
}

void BackendReader::takeResult()
{
    if (!job || !job->isDone) // the signal of one that was given up
        return;
    thread.join();
    const std::unique_ptr<Job> done = std::move(job);
    emit finished(done->choice, done->result);
}

} // namespace host
