// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/bytesource.h"
#include "tests/support/textansweringhost.h"

#include <QByteArrayList>

/// A command channel whose answers and failures are the bytes of an input, which outlives it. When they are used up
/// every call fails, or everything is answered as by a small backend without surprises.
class ByteHost final : public TextAnsweringHost {
public:
    ByteHost(ByteSource &inputBytes, bool failsAtTheEnd)
        : bytes(inputBytes)
        , failing(failsAtTheEnd)
    {
    }

    int mostBodies = 0; ///< the largest number of bodies that was answered
    QByteArrayList logs;

    Answer answerTo(const Call &call) override;
    void callReserved(int number) override;
    void startOutput(const char *tag, Requester *requester) override;
    void stopOutput(const char *tag, Requester *requester) override;
    void registerRequester(Requester *requester) override;
    void unregisterRequester(Requester *requester) override;
    void logMessage(const char *category, const char *sender, qint32 level, const char *text) override;

private:
    Answer textAnswer(const QByteArray &query);
    Answer intAnswer(const QByteArray &query);
    Answer boolAnswer();
    Answer numberAnswer();
    Answer numberAnswers(qint32 count);
    bool acceptsCommand();

    ByteSource &bytes;
    bool failing;
};
