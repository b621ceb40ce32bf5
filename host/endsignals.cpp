// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/endsignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace host {

namespace {

constexpr std::array<int, 3> wanted{SIGTERM, SIGINT, SIGHUP};

// Written by catchThem(), before there is a handler, and read by it.
std::array<int, 2> pipeEnds{-1, -1};
std::array<bool, wanted.size()> caught{};

extern "C" void noteSignal(int)
{
    // Nothing but what a handler may call. The event loop hears of a signal by a byte in a pipe.
    const int error = errno;
    for (std::size_t which = 0; which < wanted.size(); ++which) {
        if (caught.at(which))
            ::signal(wanted.at(which), SIG_DFL);
    }
    const char byte = 1;
    const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    static_cast<void>(written);
    errno = error;
}

} // namespace

void EndSignals::catchThem()
{
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // signals end the program as they do any other
    for (std::size_t which = 0; which < wanted.size(); ++which) {
        struct sigaction before = {};
        ::sigaction(wanted.at(which), nullptr, &before);
        caught.at(which) = before.sa_handler != SIG_IGN;
    }
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : wanted)
        ::sigaddset(&action.sa_mask, number); // the second one waits until the first is noted
    for (std::size_t which = 0; which < wanted.size(); ++which) {
        if (caught.at(which))
            ::sigaction(wanted.at(which), &action, nullptr);
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
