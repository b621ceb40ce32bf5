// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QtGlobal>

class Requester;

/// The host's command channel to the backend, property "CommandManager". All calls are made on the GUI thread and
/// return when the backend has answered or failed. Formats are printf's, and so are the values that follow them.
///
/// Until a call returns, the host had better run no event loop on that thread. Where it does, the module shows its
/// state before the call, and takes output lines as ever. A nested configurationChanged(), clearData() or unloading,
/// or the deletion of the module's dock or of its parent window, ends what the module was doing: that asks nothing
/// more, and what the nested call did stays. Deleting the parent window within moduleEntries() is not supported.
///
/// Modules and hosts are built apart, so the order of the entries is a contract: requestString is entry 5 of the
/// table. Nothing may be put in front of it, and no destructor into it (it would take two entries).
class IOManager {
public:
    virtual void reserved0() = 0; ///< Entry 0. Not called by modules.
    virtual void reserved1() = 0; ///< Entry 1. Not called by modules.
    virtual void reserved2() = 0; ///< Entry 2. Not called by modules.
    virtual void reserved3() = 0; ///< Entry 3. Not called by modules.
    virtual void reserved4() = 0; ///< Entry 4. Not called by modules.

    /// Entry 5. Writes a zero-terminated text of at most 200 bytes to \a answer. Returns 0 when answered.
    virtual int requestString(char *answer, const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) = 0;
    /// Entry 6. Writes a whole number to \a answer. Returns 0 when answered.
    virtual int requestInt(qint32 *answer, const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) = 0;
    /// Entry 7. Writes a number to \a answer. Returns 0 when answered.
    virtual int requestDouble(double *answer, const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) = 0;
    /// Entry 8. Writes true or false to \a answer. Returns 0 when answered.
    virtual int requestBool(bool *answer, const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) = 0;
    /// Entry 9. Writes exactly \a count numbers to \a answers. Returns 0 when answered.
    virtual int requestDoubles(double *answers, qint32 count, const char *format, ...)
        Q_ATTRIBUTE_FORMAT_PRINTF(4, 5) = 0;

    virtual void reserved10() = 0; ///< Entry 10. Not called by modules.

    /// Entry 11. Sends a command that has no answer. Returns 0 when accepted.
    virtual int sendCommand(const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(2, 3) = 0;

    /// Entry 12. Output lines of type \a tag ("6d", "6di" or "3d") go to \a requester from now on.
    virtual void startOutput(const char *tag, Requester *requester) = 0;
    /// Entry 13. Output lines of type \a tag no longer go to \a requester.
    virtual void stopOutput(const char *tag, Requester *requester) = 0;
    /// Entry 14. Adds \a requester, which its owner unregisters before it is destroyed.
    virtual void registerRequester(Requester *requester) = 0;
    /// Entry 15. Removes \a requester; once this returns, nothing calls it any more.
    virtual void unregisterRequester(Requester *requester) = 0;

    /// Entry 16. Adds the Latin-1 text \a text to the host's log.
    virtual void logMessage(const char *category, const char *sender, qint32 level, const char *text) = 0;

protected:
    IOManager() = default;
    IOManager(const IOManager &) = default;
    IOManager &operator=(const IOManager &) = default;
    ~IOManager() = default;
};

Q_DECLARE_METATYPE(IOManager *)
