// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/inputreader.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace backend {

namespace {

constexpr std::size_t mostAtOnce = 65'536; ///< [bytes], what a pipe holds

/// Waits until \a input has something to say. Returns false when \a wakeUp has.
bool waitFor(int input, int wakeUp)
{
    std::array<pollfd, 2> polled{{{input, POLLIN, 0}, {wakeUp, POLLIN, 0}}};
    while (::poll(polled.data(), polled.size(), -1) < 0 && errno == EINTR) { }
    return polled[1].revents == 0;
}

} // namespace

InputReader::InputReader(int input, Receive receive)
    : receive(std::move(receive))
{
    // poll() waits for a descriptor below 0 as for one that has nothing to say.
    if (input >= 0 && ::pipe2(wakeUp.data(), O_CLOEXEC) == 0)
        thread = std::thread([this, input] { run(input); });
    else
        this->receive(nullptr, 0); // no input, or too many open files
}

InputReader::~InputReader()
{
    if (!thread.joinable())
        return;
    ::close(wakeUp[1]); // the other end can be read from then on
    thread.join();
    ::close(wakeUp[0]);
}

void InputReader::run(int input)
{
    std::vector<char> buffer(mostAtOnce);
    while (waitFor(input, wakeUp[0])) {
        const ssize_t size = ::read(input, buffer.data(), buffer.size());
        if (size < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        receive(buffer.data(), static_cast<int>(std::max<ssize_t>(size, 0)));
        if (size <= 0)
            break;
    }
}

} // namespace backend
