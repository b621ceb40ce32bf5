// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "interface/iomanager.h"

#include <utility>

/// A requester's registration with the host's command channel. GUI thread.
class Registration {
public:
    /// Registers \a requester. Both outlive the registration, which ends with this object.
    Registration(IOManager &io, Requester &requester)
        : ioManager(io)
        , registered(&requester)
    {
        ioManager.registerRequester(registered);
    }
    ~Registration()
    {
        if (!endedWhenDestroyed)
            return;
        try {
            end();
        } catch (...) {
            return; // the host's, and destructors don't throw
        }
    }

    /// Unregisters now. When it returns, the host calls the requester no more; this object may be destroyed by then.
    void end()
    {
        if (Requester *const requester = std::exchange(registered, nullptr))
            ioManager.unregisterRequester(requester);
    }
    /// Whether the registration ends with this object; else the host is left to forget the requester.
    void setEndedWhenDestroyed(bool ended) noexcept { endedWhenDestroyed = ended; }

private:
    Q_DISABLE_COPY(Registration)

    IOManager &ioManager;
    Requester *registered;
    bool endedWhenDestroyed = true;
};
