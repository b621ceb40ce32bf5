// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

namespace backend {
struct ReceivedLine;
} // namespace backend

namespace host {

/// Takes the lines of a source one by one, on the data thread.
class LineSink {
public:
    LineSink() = default;
    virtual ~LineSink() = default;
    LineSink(const LineSink &) = delete;
    LineSink &operator=(const LineSink &) = delete;

    /// A sink in front of others must not wait for anything: it would delay what they get.
    virtual void receive(const backend::ReceivedLine &line) = 0;
};

} // namespace host
