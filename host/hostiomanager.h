// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/bodynames.h"
#include "host/outputsubscriptions.h"
#include "interface/iomanager.h"

#include <QByteArray>
#include <QCoreApplication>

#include <memory>
#include <mutex>
#include <optional>

namespace backend {
class TrackingBackend;
} // namespace backend

namespace host {

class HostLog;

/// The host's side of the command channel. Queries and commands go to the backend that is connected; without one they
/// all fail. Every failure is logged with its text. The log must outlive this object.
class HostIOManager final : public IOManager {
    Q_DECLARE_TR_FUNCTIONS(HostIOManager)

public:
    explicit HostIOManager(HostLog &log);
    virtual ~HostIOManager() = default;

    void reserved0() override { }
    void reserved1() override { }
    void reserved2() override { }
    void reserved3() override { }
    void reserved4() override { }

    /// Longer answers are cut to 199 bytes, before a character that would not be whole.
    int requestString(char *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    /// Fails on anything but a decimal number of 32 bits.
    int requestInt(qint32 *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    /// Fails on anything but a number with a decimal point.
    int requestDouble(double *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    /// Takes "yes", "true" and "1" for true, "no", "false" and "0" for false, and fails on anything else.
    int requestBool(bool *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    /// Fails, and writes nothing, unless the answer is exactly \a count numbers with blanks between them.
    int requestDoubles(double *answers, qint32 count, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(4, 5);

    void reserved10() override { }

    int sendCommand(const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(2, 3);

    /// A requester that is not registered is refused with a log entry.
    void startOutput(const char *tag, Requester *requester) override;
    void stopOutput(const char *tag, Requester *requester) override;
    void registerRequester(Requester *requester) override;
    void unregisterRequester(Requester *requester) override;

    void logMessage(const char *category, const char *sender, qint32 level, const char *text) override;

    /// Connects \a backend, or none. Any thread.
    void setBackend(std::shared_ptr<backend::TrackingBackend> backend);
    OutputSubscriptions &subscriptions() { return outputSubscriptions; }
    /// Of the backend that is connected, as far as modules have asked for them.
    const BodyNames &bodyNames() const { return names; }

    /// Calls configurationChanged of every requester. GUI thread.
    void announceConfiguration();
    /// Calls clearData of every requester. GUI thread.
    void announceDisconnect();

private:
    /// Calls every requester. One that throws is logged, and does not keep the others from being called.
    void announce(void (Requester::*call)());
    std::optional<QByteArray> ask(const QByteArray &query);
    int refuse(const QByteArray &query, const QByteArray &answer);
    std::shared_ptr<backend::TrackingBackend> connectedBackend();

    HostLog &log;
    OutputSubscriptions outputSubscriptions;
    BodyNames names; // of the backend
    std::mutex backendMutex; // guards the pointer; not held while the backend works
    std::shared_ptr<backend::TrackingBackend> backend;
};

} // namespace host
