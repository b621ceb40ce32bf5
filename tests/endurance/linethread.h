// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

class Requester;

/// A host's data thread: delivers lines to a requester, one after the other.
class LineThread {
public:
    struct Line {
        QByteArray tag;
        QByteArray text;
    };

    LineThread();
    ~LineThread();
    LineThread(const LineThread &) = delete;
    LineThread &operator=(const LineThread &) = delete;

    /// From now on lines go to \a requester, or nowhere when null. Returns when no call to the last one is under way.
    void setRequester(Requester *requester);
    /// Delivers a line \a repeats times, without waiting for it. A \a good line must be taken, by the result 0.
    void post(const QByteArray &tag, const QByteArray &line, int repeats, bool good);
    /// Delivers \a lines, all of them good, in order and without waiting for them.
    void post(const std::vector<Line> &lines);
    /// Delivers a line after all that were posted, and returns its result.
    int deliver(const QByteArray &tag, const QByteArray &line);
    /// Waits until everything is delivered.
    void drain();
    /// The number of good lines with another result than 0.
    int refusals();

private:
    struct Task {
        QByteArray tag;
        QByteArray line;
        int repeats;
        bool good;
    };

    void run();
    void perform(const Task &task);

    std::mutex mutex; // guards what follows
    std::condition_variable changed;
    std::deque<Task> tasks;
    bool busy = false;
    bool ending = false;
    int lastResult = 0;
    int refused = 0;

    std::mutex requesterMutex; // held for each call
    Requester *requester = nullptr;

    std::thread thread;
};
