// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "interface/iomanager.h"

#include <QByteArray>

/// A command channel whose queries and commands are one function of values, whatever their kind.
///
/// The answer's text is converted to what the caller wants. Where it is not accepted, or not what was asked for (no
/// number, too few of them), the call fails and leaves rubbish behind: callers must go by the result.
class TextAnsweringHost : public IOManager {
public:
    enum class Operation { RequestString, RequestInt, RequestDouble, RequestBool, RequestDoubles, SendCommand };

    struct Call {
        Operation operation = Operation::SendCommand;
        QByteArray format; ///< as the caller gave it
        QByteArray command; ///< the whole text
        qint32 count = 1; ///< how many numbers are wanted
    };

    struct Answer {
        bool isAccepted = false;
        /// Cut to 200 bytes, which have no room for a terminating zero; numbers in the C locale, several with a blank
        /// between each two; "true" or anything else.
        QByteArray text;
    };

    virtual Answer answerTo(const Call &call) = 0;
    /// Entry \a number of the interface, which is reserved, was called.
    virtual void callReserved(int number) = 0;

    /// "requestString", and so on.
    static QByteArray nameOf(Operation operation);

    void reserved0() final { callReserved(0); }
    void reserved1() final { callReserved(1); }
    void reserved2() final { callReserved(2); }
    void reserved3() final { callReserved(3); }
    void reserved4() final { callReserved(4); }
    int requestString(char *answer, const char *format, ...) final Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestInt(qint32 *answer, const char *format, ...) final Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestDouble(double *answer, const char *format, ...) final Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestBool(bool *answer, const char *format, ...) final Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    int requestDoubles(double *answers, qint32 count, const char *format, ...) final Q_ATTRIBUTE_FORMAT_PRINTF(4, 5);
    void reserved10() final { callReserved(10); }
    int sendCommand(const char *format, ...) final Q_ATTRIBUTE_FORMAT_PRINTF(2, 3);

protected:
    ~TextAnsweringHost() = default;
};
