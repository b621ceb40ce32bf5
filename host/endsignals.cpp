// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/endsignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace host {

namespace {

/// One of the signals that end the program.
struct EndSignal {
    int number;
    bool isCaught;
};

// Written by catchThem(), before there is a handler, and read by it.
EndSignal endSignals[] = {{SIGTERM, false}, {SIGINT, false}, {SIGHUP, false}};
int pipeEnds[2] = {-1, -1};

extern "C" void noteSignal(int)
{
    // Nothing but what a handler may call. The event loop hears of a signal by a byte in a pipe.
    const int error = errno;
    for (const EndSignal &each : endSignals) {
        if (each.isCaught)
            signal(each.number, SIG_DFL);
    }
    const char byte = 1;
    const ssize_t written = write(pipeEnds[1], &byte, 1);
    static_cast<void>(written); // the pipe is empty, and nobody could be told
    errno = error;
}

} // namespace

void EndSignals::catchThem()
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // signals end the program as they do any other
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (EndSignal &each : endSignals) {
        struct sigaction before = {};
        ::sigaction(each.number, nullptr, &before);
        each.isCaught = before.sa_handler != SIG_IGN;
        ::sigaddset(&action.sa_mask, each.number); // the second one waits until the first is noted
    }
    for (const EndSignal &each : endSignals) {
        if (each.isCaught)
            ::sigaction(each.number, &action, nullptr);
    }
}

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
    if (pipeEnds[0] < 0)
        return;
    auto *notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false); // once is enough
        emit endRequested();
    });
}

} // namespace host
