// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QWidget>

/// Counts the events of one type that a widget gets.
class EventCount : public QObject {
public:
    EventCount(QWidget *watched, QEvent::Type counted)
        : type(counted)
    {
        watched->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == type ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

    int count = 0;

private:
    const QEvent::Type type;
};
