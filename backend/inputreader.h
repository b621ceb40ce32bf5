// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <array>
#include <functional>
#include <thread>

namespace backend {

/// Reads a file descriptor on a thread of its own, which ends at the end of the input, or with this object at any time:
/// it never waits in a read.
class InputReader {
public:
    /// \a size bytes have come; none at all is the end, or a fault, after which nothing comes. On the thread.
    using Receive = std::function<void(const char *bytes, int size)>;

    /// \a input is not closed, and may be anything that can be polled. Without a thread the input ends at once.
    InputReader(int input, Receive receive);
    ~InputReader();

private:
    Q_DISABLE_COPY(InputReader)

    void run(int input);

    const Receive receive;
    std::array<int, 2> wakeUp{-1, -1}; // a pipe; its end ends the thread
    std::thread thread;
};

} // namespace backend
