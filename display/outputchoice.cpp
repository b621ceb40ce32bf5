// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/outputchoice.h"

#include "channel/query.h"
#include "interface/iomanager.h"

#include <QWidget>

OutputChoice::OutputChoice(IOManager &io, Requester &requester, std::atomic<bool> &useInertialFormat)
    : ioManager(io)
    , lineReader(requester)
    , inertialFormat(useInertialFormat)
{
}

const char *OutputChoice::bodyTag() const
{
    return inertialFormat ? "6di" : "6d";
}

void OutputChoice::choose(bool inertial, const QWidget &panel)
{
    const CallSequence::Call call = choices.begin();
    ioManager.stopOutput(bodyTag(), &lineReader);
    if (call.isSuperseded())
        return; // this object may be destroyed
    inertialFormat = inertial;
    activate(bodyTag());
    if (!call.isSuperseded() && panel.isVisible())
        startBodies();
}

void OutputChoice::activate(const char *tag) const
{
    // By itself: the panel may be destroyed while the host waits for an answer, and this object with it.
    const CallSequence::Call call = choices.current();
    IOManager &io = ioManager;
    const QString name = QLatin1String(tag);
    Query query(io);
    const auto available = query.text(io.requestString(query.textBuffer(), "output available %s", tag),
                                      "get info output %1 available", name);
    if (!available || call.isSuperseded())
        return;
    if (*available == "no") {
        logToHost(io, QStringLiteral("Error: Output format %1 is not available and cannot be activated").arg(name));
        return;
    }
    const auto active = query.text(io.requestString(query.textBuffer(), "output active chmon %s", tag),
                                   "get info output %1 active", name);
    if (!active || *active != "no" || call.isSuperseded())
        return;
    query.accepted(io.sendCommand("output active chmon %s yes", tag), "activate output %1", name);
}

void OutputChoice::start() const
{
    startBodies();
    ioManager.startOutput("3d", &lineReader);
}

void OutputChoice::startBodies() const
{
    ioManager.startOutput(bodyTag(), &lineReader);
}

void OutputChoice::stop() const
{
    ioManager.stopOutput(bodyTag(), &lineReader);
    ioManager.stopOutput("3d", &lineReader);
}
