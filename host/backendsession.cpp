// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendsession.h"

#include "backend/trackingbackend.h"
#include "host/hostiomanager.h"
#include "host/hostlog.h"

#include <utility>

namespace host {

namespace {

QString versionText(const backend::ProtocolVersion &version)
{
    const QString text = QStringLiteral("%1.%2").arg(version.major).arg(version.minor);
    return version.patch < 0 ? text : QStringLiteral("%1.%2").arg(text).arg(version.patch);
}

} // namespace

BackendSession::BackendSession(HostIOManager &ioManager, BackendVersions &versions, HostLog &log)
    : ioManager(ioManager)
    , versions(versions)
    , log(log)
    , output(ioManager.subscriptions())
{
}

BackendSession::~BackendSession() = default;

void BackendSession::open(std::shared_ptr<backend::TrackingBackend> newBackend)
{
    disconnectBackend();
    backend = std::move(newBackend);
    epoch = OutputThread::Clock::now();
    openChannel();
}

void BackendSession::start()
{
    ioManager.announceConfiguration();
    if (connected) // a requester may have run an event loop, and the operator disconnected in it
        output.start(backend, epoch);
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
    openChannel();
    start();
}

void BackendSession::disconnectBackend()
{
    if (!connected)
        return;
    connected = false;
    output.stop(); // before the data is cleared, so that no line fills it again
    ioManager.setBackend(nullptr);
    ioManager.announceDisconnect();
    versions.backendMajor = versions.backendMinor = versions.backendPatch = 0;
    log.info(tr("Disconnected from %1.").arg(backend->name()));
    emit connectionChanged();
}

void BackendSession::stopOutput()
{
    output.stop();
}

QString BackendSession::backendName() const
{
    return backend ? backend->name() : QString();
}

void BackendSession::openChannel()
{
    // The record comes first: modules read it while they ask the backend for its configuration.
    const backend::ProtocolVersion version = backend->version();
    versions.backendMajor = version.major;
    versions.backendMinor = version.minor;
    versions.backendPatch = version.patch;
    ioManager.setBackend(backend);
    connected = true;
    log.info(tr("Connected to %1, version %2.").arg(backend->name(), versionText(version)));
    emit connectionChanged();
}

} // namespace host
