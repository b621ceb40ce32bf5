// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"
#include "backend/trackingbackend.h"
#include "host/linetotals.h"
#include "host/outputthread.h"
#include "host/streamfollower.h"
#include "interface/backendversions.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>

namespace host {

class HostIOManager;
class HostLog;

/// The connection to the backend: opened and closed in the order that modules rely on. It follows the state of the
/// stream of lines: a lost one keeps its picture for ten seconds, one that is back is configured anew, an ended one
/// keeps its last picture. GUI thread.
class BackendSession : public QObject {
    Q_OBJECT

public:
    BackendSession(HostIOManager &ioManager, BackendVersions &versions, HostLog &log);
    ~BackendSession() override;

    using Wrap = std::function<std::shared_ptr<backend::TrackingBackend>(std::shared_ptr<backend::TrackingBackend>)>;

    /// Lets \a wrapping put something around each backend that is opened from now on.
    void setWrap(Wrap wrapping) { wrap = std::move(wrapping); }
    /// Takes \a newBackend in place of the one before: clears the data, fills in the versions, opens the command
    /// channel. Lines flow after start() only, so that modules can be loaded in between.
    void open(std::shared_ptr<backend::TrackingBackend> newBackend);
    /// Tells all requesters to read the configuration and lets the lines flow.
    void start();
    /// The same as open() and start(), for a backend that is chosen while modules run.
    void change(std::shared_ptr<backend::TrackingBackend> newBackend);
    /// Connects again to the backend that was disconnected; its clock has not stopped meanwhile.
    void reconnect();
    void disconnectBackend();
    /// Ends the delivery without notifying the requesters.
    void stopOutput();

    bool isConnected() const { return connected; }
    QString backendName() const; ///< empty when there never was a backend
    /// As it was last followed, a tenth of a second ago at most; Connecting while no lines can flow.
    backend::StreamState streamState() const { return follower.state(); }
    /// What the times of the lines count from; a reconnection does not change it.
    backend::LineStream::Clock::time_point streamEpoch() const { return epoch; }
    LineTotals counts() const;
    /// Of the lines since its last clear(), with times from streamEpoch().
    StreamHealth &health() { return output.health(); }
    /// Whether a requester has subscribed to any output.
    bool isOutputWanted() const;

    /// Acts on the state that the stream has at \a now. A timer does this ten times a second.
    void followStream(backend::LineStream::Clock::time_point now);

signals:
    /// A backend of this name and version will be connected, or has come back with it. The one before still answers.
    void aboutToConnect(const QString &name, const backend::ProtocolVersion &version);
    void configured(); ///< all requesters have read the configuration
    void streamOpened(); ///< lines flow from now on, their sequence anew
    void streamStateChanged();
    /// Connected, disconnected, or connected to a different backend or version; in front of the configuration.
    void connectionChanged();

private:
    void openChannel();
    void openStream();
    void closeStream();
    void logStreamWarnings();
    void logStreamState(const backend::StreamState &before);

    HostIOManager &ioManager;
    BackendVersions &versions;
    HostLog &log;
    Wrap wrap;
    std::shared_ptr<backend::TrackingBackend> backend;
    backend::LineStream::Clock::time_point epoch; // the start of the backend's clock
    bool connected = false;
    std::unique_ptr<backend::LineStream> stream; // of the backend; null while no lines can flow
    backend::StreamLosses earlierLosses; // of the streams before
    StreamFollower follower;
    QTimer followTimer;
    OutputThread output; // takes from the stream
};

} // namespace host
