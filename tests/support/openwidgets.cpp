// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/openwidgets.h"

#include "filter/filterdialog.h"

#include <QApplication>
#include <QTimer>

QWidget *openMenu()
{
    return QApplication::activePopupWidget();
}

QWidget *openDialog()
{
    return qobject_cast<FilterDialog *>(QApplication::activeModalWidget());
}

void onceOpen(const std::function<QWidget *()> &find, const std::function<void(QWidget *)> &act)
{
    auto *poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [=] {
        QWidget *widget = find();
        if (!widget)
            return;
        poll->stop();
        poll->deleteLater();
        act(widget);
    });
    poll->start(1);
}
