// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/bodystates.h"

#include <algorithm>

namespace host {

namespace {

using namespace std::chrono_literals;

BodyState stateOf(const BodyFigures &figures)
{
    using Kind = BodyState::Kind;
    const Kind kind = figures.tracked ? Kind::Tracked : figures.sinceTracked ? Kind::Lost : Kind::NotYetTracked;
    return {figures.id, kind, figures.sinceTracked};
}

/// Adds what another stream says of the same body: the best counts.
void merge(BodyState *state, const BodyState &other)
{
    state->kind = std::min(state->kind, other.kind);
    if (other.sinceTracked)
        state->sinceTracked = std::min(state->sinceTracked.value_or(*other.sinceTracked), *other.sinceTracked);
}

} // namespace

QString BodyState::words() const
{
    const QString age = LivenessWords::duration(sinceTracked.value_or(0s));
    switch (kind) {
    case Kind::Tracked:
        return sinceTracked.value_or(0s) < 1s ? tr("tracked") : tr("tracked %1 ago").arg(age);
    case Kind::Lost:
        return tr("lost for %1").arg(age);
    case Kind::NotYetTracked:
        return tr("not tracked yet");
    case Kind::Unknown:
        break;
    }
    return sinceTracked ? tr("unknown, last tracked %1 ago").arg(age) : tr("unknown, never tracked");
}

QVector<BodyState> bodyStates(const HealthSnapshot &snapshot, const Liveness &liveness)
{
    QVector<BodyState> states;
    for (const BodyFigures &figures : snapshot.bodies)
        states.append(stateOf(figures));
    std::stable_sort(states.begin(), states.end(),
                     [](const BodyState &left, const BodyState &right) { return left.id < right.id; });
    QVector<BodyState> merged;
    for (const BodyState &state : qAsConst(states)) {
        if (!merged.isEmpty() && merged.constLast().id == state.id)
            merge(&merged.last(), state);
        else
            merged.append(state);
    }
    if (!liveness.isTrustworthy()) {
        for (BodyState &state : merged)
            state.kind = BodyState::Kind::Unknown;
    }
    return merged;
}

} // namespace host
