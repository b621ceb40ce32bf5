// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "display/callsequence.h"

#include <atomic>

class IOManager;
class QWidget;
class Requester;

/// Which output of bodies the panel reads, "6d" or "6di", and its subscription. GUI thread.
class OutputChoice {
public:
    /// Lines go to \a requester. \a useInertialFormat is what the data thread goes by. All of them outlive this object.
    OutputChoice(IOManager &io, Requester &requester, std::atomic<bool> &useInertialFormat);

    /// Switches to "6di", or to "6d" where not \a inertial, and has the backend deliver it; subscribed afterwards where
    /// \a panel is visible then. A later switch that comes in while the backend answers wins. May return with this
    /// object destroyed, with its panel.
    void choose(bool inertial, const QWidget &panel);
    /// Has the backend deliver the output \a tag. May return with this object destroyed.
    void activate(const char *tag) const;
    /// Ends a choice that waits for an answer: it asks nothing more.
    void abandon() { choices.begin(); }

    /// Subscribes to bodies and markers.
    void start() const;
    /// Ends both subscriptions.
    void stop() const;

private:
    const char *bodyTag() const;
    void startBodies() const;

    IOManager &ioManager;
    Requester &lineReader;
    std::atomic<bool> &inertialFormat; ///< data thread reads
    CallSequence choices;
};
