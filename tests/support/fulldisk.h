// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <csignal>

/// While it lives, no file may grow beyond \a room bytes, as on a full disk: a write fails, and does not end the
/// process. GUI thread.
class FullDisk {
public:
    explicit FullDisk(rlim_t room)
        : oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &oldLimit);
        rlimit limit = oldLimit;
        limit.rlim_cur = std::min(room, oldLimit.rlim_cur);
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &oldLimit);
        std::signal(SIGXFSZ, oldHandler);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    void (*const oldHandler)(int);
    rlimit oldLimit{};
};
