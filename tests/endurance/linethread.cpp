// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/linethread.h"

#include "interface/requester.h"

LineThread::LineThread()
    : thread([this] { run(); })
{
}

LineThread::~LineThread()
{
    {
        const std::lock_guard lock(mutex);
        ending = true;
    }
    changed.notify_all();
    thread.join();
}

void LineThread::setRequester(Requester *newRequester)
{
    const std::lock_guard lock(requesterMutex);
    requester = newRequester;
}

void LineThread::post(const QByteArray &tag, const QByteArray &line, int repeats, bool good)
{
    {
        const std::lock_guard lock(mutex);
        tasks.push_back({tag, line, repeats, good});
    }
    changed.notify_all();
}

void LineThread::post(const std::vector<Line> &lines)
{
    {
        const std::lock_guard lock(mutex);
        for (const Line &line : lines)
            tasks.push_back({line.tag, line.text, 1, true});
    }
    changed.notify_all();
}

int LineThread::deliver(const QByteArray &tag, const QByteArray &line)
{
    post(tag, line, 1, false);
    drain();
    const std::lock_guard lock(mutex);
    return lastResult;
}

void LineThread::drain()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return tasks.empty() && !busy; });
}

int LineThread::refusals()
{
    const std::lock_guard lock(mutex);
    return refused;
}

void LineThread::run()
{
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return ending || !tasks.empty(); });
        if (tasks.empty())
            return;
        const Task task = tasks.front();
        tasks.pop_front();
        busy = true;
        lock.unlock();
        perform(task);
        lock.lock();
        busy = false;
        if (tasks.empty())
            changed.notify_all();
    }
}

void LineThread::perform(const Task &task)
{
    int result = 0;
    int bad = 0;
    for (int i = 0; i < task.repeats; ++i) {
        const std::lock_guard lock(requesterMutex);
        if (!requester)
            break;
        result = requester->processOutput(task.tag.constData(), task.line.constData());
        bad += task.good && result != 0 ? 1 : 0;
    }
    const std::lock_guard lock(mutex);
    lastResult = result;
    refused += bad;
}
