// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "interface/requester.h"

#include <QByteArray>
#include <QtGlobal>

#include <atomic>
#include <functional>

/// A requester that counts what it is called with. What it shall do besides is set before it is registered.
class FakeRequester : public Requester {
public:
    FakeRequester() = default;
    virtual ~FakeRequester() = default;

    int processOutput(const char *tag, const char *line) override
    {
        ++entered;
        if (onLine)
            onLine(QByteArray(tag), QByteArray(line));
        ++lines;
        return result;
    }
    void configurationChanged() override
    {
        ++configurations;
        if (onConfiguration)
            onConfiguration();
    }
    void clearData() override
    {
        ++clears;
        if (onClear)
            onClear();
    }

    std::function<void(const QByteArray &tag, const QByteArray &line)> onLine; // on the data thread
    std::function<void()> onConfiguration;
    std::function<void()> onClear;
    int result = 0;
    std::atomic<int> entered{0}; // the data thread counts, any thread reads
    std::atomic<int> lines{0};
    int configurations = 0;
    int clears = 0;

private:
    Q_DISABLE_COPY(FakeRequester)
};
