// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

/// Receiver of the backend's output, implemented by modules and called by the host. The table holds exactly these
/// three entries, in this order: a destructor in it would move them.
class Requester {
public:
    /// Entry 0. One output line of type \a tag ("6d", "6di", "3d" or another), both zero-terminated and the host's.
    /// Called on the host's data thread. Returns 0 when consumed or ignored, -1 when malformed.
    virtual int processOutput(const char *tag, const char *line) = 0;

    /// Entry 1. The backend is ready, or its configuration has changed: read it again. GUI thread. Ends a reading that
    /// waits for an answer.
    virtual void configurationChanged() = 0;

    /// Entry 2. The backend is gone: drop its data. GUI thread. Ends a reading likewise.
    virtual void clearData() = 0;

protected:
    Requester() = default;
    Requester(const Requester &) = default;
    Requester &operator=(const Requester &) = default;
    ~Requester() = default;
};
