// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/outputsubscriptions.h"

#include "backend/trackingbackend.h"
#include "interface/requester.h"

#include <algorithm>

namespace host {

namespace {

/// Hands \a line over. An exception counts as a refusal: nobody could catch it on the data thread.
bool isTaken(Requester &requester, const backend::OutputLine &line)
{
    try {
        return requester.processOutput(line.tag.constData(), line.text.constData()) == 0;
    } catch (...) {
        return false;
    }
}

} // namespace

void OutputSubscriptions::add(Requester *requester)
{
    const std::lock_guard lock(mutex);
    if (find(requester))
        return;
    subscribers.push_back({requester, shares.size(), {}});
    shares.emplace_back();
}

void OutputSubscriptions::remove(Requester *requester)
{
    std::unique_lock lock(mutex);
    subscribers.erase(std::remove_if(subscribers.begin(), subscribers.end(),
                                     [=](const Subscriber &entry) { return entry.requester == requester; }),
                      subscribers.end());
    left.wait(lock, [&] { return running != requester || runningThread == std::this_thread::get_id(); });
}

bool OutputSubscriptions::subscribe(const QByteArray &tag, Requester *requester)
{
    const std::lock_guard lock(mutex);
    Subscriber *subscriber = find(requester);
    if (!subscriber)
        return false;
    if (std::find(subscriber->tags.begin(), subscriber->tags.end(), tag) == subscriber->tags.end())
        subscriber->tags.push_back(tag);
    return true;
}

void OutputSubscriptions::unsubscribe(const QByteArray &tag, Requester *requester)
{
    std::unique_lock lock(mutex);
    if (Subscriber *subscriber = find(requester)) {
        subscriber->tags.erase(std::remove(subscriber->tags.begin(), subscriber->tags.end(), tag),
                               subscriber->tags.end());
    }
    left.wait(lock, [&] {
        return running != requester || *runningTag != tag || runningThread == std::this_thread::get_id();
    });
}

bool OutputSubscriptions::contains(const Requester *requester) const
{
    const std::lock_guard lock(mutex);
    return std::any_of(subscribers.begin(), subscribers.end(),
                       [=](const Subscriber &entry) { return entry.requester == requester; });
}

bool OutputSubscriptions::hasSubscriptions() const
{
    const std::lock_guard lock(mutex);
    return std::any_of(subscribers.begin(), subscribers.end(),
                       [](const Subscriber &entry) { return !entry.tags.empty(); });
}

std::vector<Requester *> OutputSubscriptions::all() const
{
    const std::lock_guard lock(mutex);
    std::vector<Requester *> requesters;
    requesters.reserve(subscribers.size());
    for (const Subscriber &subscriber : subscribers)
        requesters.push_back(subscriber.requester);
    return requesters;
}

void OutputSubscriptions::receive(const backend::ReceivedLine &line)
{
    if (deliver(line.line).sent > 0)
        return;
    const std::lock_guard lock(mutex);
    ++unclaimedLines;
}

OutputSubscriptions::Totals OutputSubscriptions::totals() const
{
    const Delivered delivered = deliveredTo(0, registrations());
    const std::lock_guard lock(mutex);
    return {delivered.sent + unclaimedLines, delivered.refused, unclaimedLines};
}

int OutputSubscriptions::registrations() const
{
    const std::lock_guard lock(mutex);
    return static_cast<int>(shares.size());
}

OutputSubscriptions::Delivered OutputSubscriptions::deliveredTo(int first, int end) const
{
    const std::lock_guard lock(mutex);
    Delivered sum;
    for (int i = first; i < end; ++i) {
        const Delivered &share = shares.at(static_cast<std::size_t>(i));
        sum.sent += share.sent;
        sum.refused += share.refused;
    }
    return sum;
}

OutputSubscriptions::Delivered OutputSubscriptions::deliver(const backend::OutputLine &line)
{
    Delivered delivered;
    for (Requester *requester : subscribersOf(line.tag)) {
        if (!enter(requester, line.tag))
            continue; // removed since the list was made, perhaps deleted
        const bool taken = isTaken(*requester, line);
        leave(taken);
        ++delivered.sent;
        if (!taken)
            ++delivered.refused;
    }
    return delivered;
}

OutputSubscriptions::Subscriber *OutputSubscriptions::find(const Requester *requester)
{
    const auto found = std::find_if(subscribers.begin(), subscribers.end(),
                                    [=](const Subscriber &entry) { return entry.requester == requester; });
    return found == subscribers.end() ? nullptr : &*found;
}

std::vector<Requester *> OutputSubscriptions::subscribersOf(const QByteArray &tag) const
{
    const std::lock_guard lock(mutex);
    std::vector<Requester *> requesters;
    for (const Subscriber &subscriber : subscribers) {
        if (std::find(subscriber.tags.begin(), subscriber.tags.end(), tag) != subscriber.tags.end())
            requesters.push_back(subscriber.requester);
    }
    return requesters;
}

bool OutputSubscriptions::enter(Requester *requester, const QByteArray &tag)
{
    const std::lock_guard lock(mutex);
    const Subscriber *subscriber = find(requester);
    if (!subscriber || std::find(subscriber->tags.begin(), subscriber->tags.end(), tag) == subscriber->tags.end())
        return false;
    running = requester;
    runningRegistration = subscriber->registration;
    runningTag = &tag;
    runningThread = std::this_thread::get_id();
    return true;
}

void OutputSubscriptions::leave(bool taken)
{
    {
        const std::lock_guard lock(mutex);
        Delivered &share = shares[runningRegistration];
        ++share.sent;
        share.refused += taken ? 0 : 1;
        running = nullptr;
        runningTag = nullptr;
        runningThread = {};
    }
    left.notify_all();
}

} // namespace host
