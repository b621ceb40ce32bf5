// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <array>

#include <fcntl.h>
#include <unistd.h>

/// While it lives, standard error is a pipe that only this object reads.
class CapturedError {
public:
    CapturedError()
        : before(::dup(STDERR_FILENO))
    {
        if (::pipe(pipe.data()) != 0 || ::fcntl(pipe[0], F_SETFL, O_NONBLOCK) != 0)
            qFatal("no pipe");
        ::dup2(pipe[1], STDERR_FILENO);
    }
    ~CapturedError()
    {
        ::dup2(before, STDERR_FILENO);
        for (const int file : {before, pipe[0], pipe[1]})
            ::close(file);
    }
    CapturedError(const CapturedError &) = delete;
    CapturedError &operator=(const CapturedError &) = delete;

    /// What has been written since the last time.
    QByteArray take() const
    {
        QByteArray result;
        std::array<char, 4096> buffer{};
        ssize_t size = 0;
        while ((size = ::read(pipe[0], buffer.data(), buffer.size())) > 0)
            result.append(buffer.data(), static_cast<int>(size));
        return result;
    }

private:
    const int before;
    std::array<int, 2> pipe{};
};
