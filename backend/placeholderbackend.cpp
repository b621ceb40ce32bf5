// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/placeholderbackend.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace backend {

namespace {

class SilentStream : public LineStream {
public:
    QVector<ReceivedLine> take(Clock::time_point deadline) override
    {
        std::unique_lock lock(mutex);
        woken.wait_until(lock, deadline, [this] { return isWoken; });
        isWoken = false;
        return {};
    }

    void wake() noexcept override
    {
        {
            const std::lock_guard lock(mutex);
            isWoken = true;
        }
        woken.notify_all();
    }

    StreamState state() const override { return {StreamState::Phase::Connecting, {}}; }

private:
    std::mutex mutex;
    std::condition_variable woken;
    bool isWoken = false; // any thread, under the mutex
};

} // namespace

PlaceholderBackend::PlaceholderBackend(std::unique_ptr<TrackingBackend> inner)
    : inner(std::move(inner))
{
}

QString PlaceholderBackend::name() const
{
    return inner->name();
}

ProtocolVersion PlaceholderBackend::version() const
{
    return inner->version();
}

std::optional<QByteArray> PlaceholderBackend::request(const QByteArray &query)
{
    return inner->request(query);
}

bool PlaceholderBackend::command(const QByteArray &command)
{
    return inner->command(command);
}

std::unique_ptr<LineStream> PlaceholderBackend::open(LineStream::Clock::time_point)
{
    return std::make_unique<SilentStream>();
}

} // namespace backend
