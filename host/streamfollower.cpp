// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/streamfollower.h"

namespace host {

namespace {

using Phase = backend::StreamState::Phase;

} // namespace

StreamFollower::StreamFollower(const backend::StreamState &initial)
    : current(initial)
    , hasPicture(initial.phase == Phase::Live)
{
}

StreamFollower::Step StreamFollower::follow(const backend::StreamState &state, quint64 configurationChanges,
                                            Clock::time_point now)
{
    Step step;
    step.stateChanged = state.phase != current.phase || state.reason != current.reason;
    const bool canBeAsked = state.phase == Phase::Live || state.phase == Phase::Ended;
    const bool isBack = state.phase == Phase::Live && current.phase != Phase::Live;
    step.configure = isBack || (canBeAsked && configurationChanges != knownChanges);
    if (canBeAsked) {
        knownChanges = configurationChanges;
        hasPicture = true;
        lostSince.reset();
    } else if (state.phase == Phase::Lost && !lostSince) {
        lostSince = now;
    }
    if (hasPicture && lostSince && now - *lostSince >= keptWhileLost) {
        hasPicture = false;
        step.clearData = true;
    }
    current = state;
    return step;
}

} // namespace host
