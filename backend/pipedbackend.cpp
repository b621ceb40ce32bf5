// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/pipedbackend.h"

#include "backend/inputreader.h"
#include "backend/texts.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace backend {

namespace {

/// Beyond standard error: a program that is started without a standard input must not get one by chance.
constexpr int lowestDescriptor = 3;

} // namespace

class PipedBackend::Stream : public LineStream {
public:
    Stream(PipedBackend &backend, Clock::time_point epoch)
        : backend(backend)
        , epoch(epoch)
        , before(backend.losses())
    {
    }
    ~Stream() override { backend.knownChanges = backend.bodies.changes(); }

    QVector<ReceivedLine> take(Clock::time_point deadline) override
    {
        QVector<ReceivedLine> lines = backend.queue.take(deadline);
        for (ReceivedLine &line : lines)
            line.time -= epoch.time_since_epoch();
        return lines;
    }
    void wake() noexcept override { backend.queue.wake(); }
    StreamState state() const override
    {
        return {backend.queue.isFinished() ? StreamState::Phase::Ended : StreamState::Phase::Live, {}};
    }
    StreamLosses losses() const override
    {
        StreamLosses losses = backend.losses();
        losses.late -= before.late;
        losses.refused -= before.refused;
        losses.unknown = *losses.unknown - *before.unknown;
        return losses;
    }
    quint64 configurationChanges() const override
    {
        return backend.answering ? 0 : backend.bodies.changes() - backend.knownChanges;
    }
    QStringList takeWarnings() override { return backend.intake.takeWarnings(); }

private:
    PipedBackend &backend;
    const Clock::time_point epoch;
    const StreamLosses before; // the stream was opened
};

PipedBackend::PipedBackend(int input, std::unique_ptr<TrackingBackend> answering)
    : input(::fcntl(input, F_DUPFD_CLOEXEC, lowestDescriptor))
    , answering(std::move(answering))
    , intake(bodies, queue)
{
}

PipedBackend::~PipedBackend()
{
    reader.reset();
    if (input >= 0)
        ::close(input);
}

QString PipedBackend::name() const
{
    return Backend::tr("standard input");
}

ProtocolVersion PipedBackend::version() const
{
    return answering ? answering->version() : bodies.version();
}

std::optional<QByteArray> PipedBackend::request(const QByteArray &query)
{
    return answering ? answering->request(query) : bodies.answer(query);
}

bool PipedBackend::command(const QByteArray &command)
{
    if (answering)
        return answering->command(command);
    const QByteArray words = command.simplified();
    return words.startsWith("output active chmon ") && words.endsWith(" yes")
        && bodies.answer(words.chopped(4)) == "yes";
}

std::unique_ptr<LineStream> PipedBackend::open(LineStream::Clock::time_point epoch)
{
    if (reader)
        queue.clear(); // what has come since the last stream
    auto stream = std::make_unique<Stream>(*this, epoch);
    if (!reader)
        reader = std::make_unique<InputReader>(input, [this](const char *bytes, int size) { receive(bytes, size); });
    return stream;
}

void PipedBackend::receive(const char *bytes, int size)
{
    const std::chrono::nanoseconds time = LineStream::Clock::now().time_since_epoch();
    const QVector<LineSplitter::Line> lines = splitter.add(bytes, size);
    for (const LineSplitter::Line &line : lines)
        intake.add(line, time);
    if (size > 0)
        return;
    // The end of a pipe ends its last line, too, as for other programs that read lines.
    if (const std::optional<LineSplitter::Line> rest = splitter.rest())
        intake.add(*rest, time);
    queue.finish();
}

StreamLosses PipedBackend::losses() const
{
    StreamLosses losses;
    losses.late = queue.late();
    losses.refused = intake.refused();
    losses.unknown = intake.unknown();
    return losses;
}

} // namespace backend
