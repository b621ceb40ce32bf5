// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendsession.h"

#include "host/hostiomanager.h"
#include "host/hostlog.h"

#include <utility>

namespace host {

namespace {

using Phase = backend::StreamState::Phase;

constexpr std::chrono::milliseconds followInterval(100);

QString versionText(const backend::ProtocolVersion &version)
{
    const QString text = QStringLiteral("%1.%2").arg(version.major).arg(version.minor);
    return version.patch < 0 ? text : QStringLiteral("%1.%2").arg(text).arg(version.patch);
}

void set(BackendVersions &versions, const backend::ProtocolVersion &version)
{
    versions.backendMajor = version.major;
    versions.backendMinor = version.minor;
    versions.backendPatch = version.patch;
}

backend::StreamLosses sumOf(const backend::StreamLosses &a, const backend::StreamLosses &b)
{
    backend::StreamLosses sum{a.late + b.late, a.refused + b.refused, {}, a.skippedFrames + b.skippedFrames};
    if (a.unknown || b.unknown)
        sum.unknown = a.unknown.value_or(0) + b.unknown.value_or(0);
    return sum;
}

} // namespace

BackendSession::BackendSession(HostIOManager &ioManager, BackendVersions &versions, HostLog &log)
    : ioManager(ioManager)
    , versions(versions)
    , log(log)
    , output(ioManager.subscriptions())
{
    connect(&followTimer, &QTimer::timeout, this, [this] { followStream(backend::LineStream::Clock::now()); });
}

BackendSession::~BackendSession() = default;

void BackendSession::open(std::shared_ptr<backend::TrackingBackend> newBackend)
{
    emit aboutToConnect(newBackend->name(), newBackend->version());
    disconnectBackend();
    backend = wrap ? wrap(std::move(newBackend)) : std::move(newBackend);
    epoch = backend::LineStream::Clock::now();
    openChannel();
}

void BackendSession::start()
{
    ioManager.announceConfiguration();
    emit configured();
    // A requester may have run an event loop, and the operator disconnected in it, or chose another backend.
    if (connected && !stream)
        openStream();
}

void BackendSession::change(std::shared_ptr<backend::TrackingBackend> newBackend)
{
    open(std::move(newBackend));
    start();
}

void BackendSession::reconnect()
{
    if (connected || !backend)
        return;
    emit aboutToConnect(backend->name(), backend->version());
    openChannel();
    start();
}

void BackendSession::disconnectBackend()
{
    if (!connected)
        return;
    connected = false;
    closeStream(); // before the data is cleared, so that no line fills it again
    ioManager.setBackend(nullptr);
    ioManager.announceDisconnect();
    versions.backendMajor = versions.backendMinor = versions.backendPatch = 0;
    log.info(tr("Disconnected from %1.").arg(backend->name()));
    emit connectionChanged();
}

void BackendSession::stopOutput()
{
    closeStream();
}

QString BackendSession::backendName() const
{
    return backend ? backend->name() : QString();
}

LineTotals BackendSession::counts() const
{
    const OutputSubscriptions::Totals handed = ioManager.subscriptions().totals();
    const backend::StreamLosses losses = stream ? sumOf(earlierLosses, stream->losses()) : earlierLosses;
    LineTotals totals;
    totals.sent = handed.sent + losses.refused;
    totals.refused = handed.refused + losses.refused;
    totals.ignored = handed.ignored;
    totals.late = losses.late;
    totals.unknown = losses.unknown;
    totals.skippedFrames = losses.skippedFrames;
    return totals;
}

bool BackendSession::isOutputWanted() const
{
    return ioManager.subscriptions().hasSubscriptions();
}

void BackendSession::followStream(backend::LineStream::Clock::time_point now)
{
    if (!stream)
        return;
    const backend::StreamState before = follower.state();
    const StreamFollower::Step step = follower.follow(stream->state(), stream->configurationChanges(), now);
    logStreamWarnings();
    if (step.stateChanged) {
        logStreamState(before);
        emit streamStateChanged();
    }
    if (step.clearData) {
        log.warning(tr("%1 has been lost for %2 s: its data are cleared; trying again.")
                        .arg(backend->name())
                        .arg(StreamFollower::keptWhileLost.count()));
        ioManager.announceDisconnect();
    }
    if (step.configure) {
        emit aboutToConnect(backend->name(), backend->version());
        set(versions, backend->version());
        emit connectionChanged();
        ioManager.announceConfiguration();
        emit configured();
    }
}

void BackendSession::openChannel()
{
    // The record comes first: modules read it while they ask the backend for its configuration.
    set(versions, backend->version());
    ioManager.setBackend(backend);
    connected = true;
    log.info(tr("Connected to %1, version %2.").arg(backend->name(), versionText(backend->version())));
    emit connectionChanged();
}

void BackendSession::openStream()
{
    stream = backend->open(epoch);
    follower = StreamFollower(stream->state());
    followTimer.start(followInterval);
    output.start(*stream);
    emit streamOpened();
    emit streamStateChanged();
}

void BackendSession::closeStream()
{
    if (!stream)
        return;
    followTimer.stop();
    output.stop();
    logStreamWarnings();
    earlierLosses = sumOf(earlierLosses, stream->losses());
    stream.reset();
    follower = StreamFollower();
}

void BackendSession::logStreamWarnings()
{
    const QStringList warnings = stream->takeWarnings();
    for (const QString &warning : warnings)
        log.warning(warning);
}

void BackendSession::logStreamState(const backend::StreamState &before)
{
    const backend::StreamState &state = follower.state();
    // The end of a source is told with its silences.
    if (state.phase == Phase::Lost)
        log.warning(tr("The connection to %1 is lost: %2").arg(backend->name(), state.reason));
    else if (state.phase == Phase::Live && before.phase != Phase::Live)
        log.info(tr("The connection to %1 stands.").arg(backend->name()));
}

} // namespace host
