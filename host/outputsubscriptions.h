// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/linesink.h"

#include <QByteArray>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

class Requester;

namespace backend {
struct OutputLine;
} // namespace backend

namespace host {

/// Who gets which lines. Requesters come and go on the GUI thread while the data thread delivers. No lock is held
/// while a requester is called, so that it may come back to this object from there.
class OutputSubscriptions : public LineSink {
public:
    /// What became of the lines that were handed to requesters.
    struct Delivered {
        quint64 sent = 0; ///< calls of processOutput
        quint64 refused = 0; ///< of these, the ones whose result was not 0, or that threw
    };
    /// Totals of received lines.
    struct Totals {
        quint64 sent = 0; ///< deliveries: a line counts for each requester that was given it, and once without any
        quint64 refused = 0; ///< of these, the ones that the requester did not take
        quint64 ignored = 0; ///< of these, the lines that nobody had subscribed to
    };

    /// Makes \a requester known, once however often it is called; each time anew is a registration.
    void add(Requester *requester);
    /// Forgets \a requester with all its tags. When it returns, the data thread has left the requester for good;
    /// only a requester that calls this from its own processOutput is still in there.
    void remove(Requester *requester);
    /// Subscribes \a requester to \a tag, once however often it is called. Returns false, and does nothing, when the
    /// requester is not known.
    bool subscribe(const QByteArray &tag, Requester *requester);
    /// Ends the subscription; waits as remove() does.
    void unsubscribe(const QByteArray &tag, Requester *requester);

    bool contains(const Requester *requester) const;
    bool hasSubscriptions() const; ///< of any requester to any tag
    /// All known requesters in the order of their registration.
    std::vector<Requester *> all() const;

    /// Hands \a line to all requesters of its tag, and counts it. One thread at a time.
    void receive(const backend::ReceivedLine &line) override;
    Totals totals() const;
    int registrations() const; ///< so far; each has its number from 0 on
    /// What was handed to the requesters with the registrations from \a first up to, and without, \a end, also when
    /// they are removed by now.
    Delivered deliveredTo(int first, int end) const;
    /// Hands \a line to all requesters of its tag. A line that nobody has subscribed to is not counted. One thread at a
    /// time.
    Delivered deliver(const backend::OutputLine &line);

private:
    struct Subscriber {
        Requester *requester = nullptr;
        std::size_t registration = 0;
        std::vector<QByteArray> tags;
    };

    Subscriber *find(const Requester *requester);
    std::vector<Requester *> subscribersOf(const QByteArray &tag) const;
    bool enter(Requester *requester, const QByteArray &tag);
    void leave(bool taken);

    mutable std::mutex mutex; // guards everything below
    std::condition_variable left;
    std::vector<Subscriber> subscribers;
    const Requester *running = nullptr; // the one in processOutput now
    const QByteArray *runningTag = nullptr;
    std::thread::id runningThread;
    std::size_t runningRegistration = 0;
    std::vector<Delivered> shares; // one for each registration
    quint64 unclaimedLines = 0; // that nobody had subscribed to
};

} // namespace host
