// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/bytesource.h"
#include "interface/iomanager.h"

#include <QByteArrayList>

#include <cstdarg>

/// A command channel whose answers and failures are the bytes of an input, which outlives it. When they are used up
/// every call fails, or everything is answered as by a small backend without surprises.
class ByteHost final : public IOManager {
public:
    ByteHost(ByteSource &inputBytes, bool failsAtTheEnd)
        : bytes(inputBytes)
        , failing(failsAtTheEnd)
    {
    }

    int mostBodies = 0; ///< the largest number of bodies that was answered
    QByteArrayList logs;

    void reserved0() override { refuse(); }
    void reserved1() override { refuse(); }
    void reserved2() override { refuse(); }
    void reserved3() override { refuse(); }
    void reserved4() override { refuse(); }
    int requestString(char *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestInt(qint32 *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestDouble(double *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestBool(bool *answer, const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestDoubles(double *answersOut, qint32 count, const char *format, ...) override
        Q_ATTRIBUTE_FORMAT_PRINTF(4, 5);
    void reserved10() override { refuse(); }
    int sendCommand(const char *format, ...) override Q_ATTRIBUTE_FORMAT_PRINTF(2, 3);
    void startOutput(const char *tag, Requester *requester) override;
    void stopOutput(const char *tag, Requester *requester) override;
    void registerRequester(Requester *requester) override;
    void unregisterRequester(Requester *requester) override;
    void logMessage(const char *category, const char *sender, qint32 level, const char *text) override;

private:
    static void refuse();
    QByteArray textAnswer(const QByteArray &query, bool &answered);
    double numberAnswer(bool &answered);

    ByteSource &bytes;
    bool failing;
};
