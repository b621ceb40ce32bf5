// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendsession.h"
#include "host/hostiomanager.h"
#include "host/hostlog.h"
#include "tests/host/fakebackend.h"
#include "tests/host/fakerequester.h"

#include <QTest>

#include <memory>

/// Notes, with each call of the host, what the host's version record and command channel say at that moment.
class Observer : public FakeRequester {
public:
    Observer(host::HostIOManager &manager, const BackendVersions &versions)
    {
        const auto note = [&, this](const char *call) {
            qint32 bodies = -1;
            const bool answered = manager.requestInt(&bodies, "standard number_of_bodies") == 0;
            calls << QStringLiteral("%1: version %2.%3.%4, %5")
                         .arg(QLatin1String(call))
                         .arg(versions.backendMajor)
                         .arg(versions.backendMinor)
                         .arg(versions.backendPatch)
                         .arg(answered ? QString::number(bodies) : QStringLiteral("no answer"));
        };
        onConfiguration = [note] { note("configurationChanged"); };
        onClear = [note] { note("clearData"); };
    }

    QStringList calls;
};

/// A session with an observer that has subscribed to "6d".
class SessionFixture {
protected:
    void startAnew()
    {
        log = std::make_unique<host::HostLog>();
        manager = std::make_unique<host::HostIOManager>(*log);
        versions = std::make_unique<BackendVersions>();
        observer = std::make_unique<Observer>(*manager, *versions);
        session = std::make_unique<host::BackendSession>(*manager, *versions, *log);
        manager->registerRequester(observer.get());
        manager->startOutput("6d", observer.get());
    }
    void end()
    {
        session.reset();
        observer.reset();
        versions.reset();
        manager.reset();
        log.reset();
    }

    static std::shared_ptr<FakeBackend> backendWith(int bodies, backend::ProtocolVersion version)
    {
        auto backend = std::make_shared<FakeBackend>();
        backend->backendVersion = version;
        backend->answers.insert("standard number_of_bodies", QByteArray::number(bodies));
        return backend;
    }

    /// Gives a data thread that runs hundreds of frames of time for another line than the first \a sent ones.
    bool comesALineAfter(quint64 sent) const
    {
        return QTest::qWaitFor([this, sent] { return session->counts().sent > sent; }, 300);
    }

    std::unique_ptr<host::HostLog> log;
    std::unique_ptr<host::HostIOManager> manager;
    std::unique_ptr<BackendVersions> versions;
    std::unique_ptr<Observer> observer;
    std::unique_ptr<host::BackendSession> session;
};
