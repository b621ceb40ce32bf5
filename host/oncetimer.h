// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

#include <chrono>

namespace host {

/// A timer that fires once after \a delay and belongs to \a parent. A coarse one may come seconds early in a run of a
/// minute.
inline QTimer *startOnce(QObject *parent, std::chrono::milliseconds delay)
{
    auto *timer = new QTimer(parent);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    timer->start(delay);
    return timer;
}

} // namespace host
