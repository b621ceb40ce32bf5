// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <memory>

/// Tells a call that waits for an answer of the host whether a later one has come in meanwhile: a host may run an event
/// loop while it waits, and call the panel again or delete it. GUI thread.
class CallSequence {
public:
    /// One call of the sequence; may outlive it.
    class Call {
    public:
        /// Whether a later call has begun, or the sequence is destroyed with its owner.
        bool isSuperseded() const
        {
            const std::shared_ptr<const quint64> newest = last.lock();
            return !newest || *newest != number;
        }

    private:
        friend class CallSequence;
        explicit Call(const std::shared_ptr<const quint64> &lastNumber)
            : last(lastNumber)
            , number(*lastNumber)
        {
        }

        std::weak_ptr<const quint64> last;
        quint64 number;
    };

    /// Begins a call, which supersedes all before it.
    Call begin()
    {
        ++*last;
        return current();
    }
    /// The call begun last.
    Call current() const { return Call(last); }

private:
    std::shared_ptr<quint64> last = std::make_shared<quint64>(0);
};
