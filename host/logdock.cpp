// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logdock.h"

#include "host/hostlog.h"

#include <QAction>
#include <QPlainTextEdit>

namespace host {

LogDock::LogDock(QWidget *parent)
    : QDockWidget(tr("Log"), parent)
    , view(new QPlainTextEdit)
{
    setObjectName(QStringLiteral("logDock"));
    view->setObjectName(QStringLiteral("logView"));
    view->setAccessibleName(tr("Log"));
    view->setReadOnly(true);
    view->setUndoRedoEnabled(false);
    view->setMaximumBlockCount(maximumLines);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    view->setWhatsThis(tr("What the modules and this program have to report: time, level (0 is an information), "
                          "sender and text."));
    setWidget(view);
    toggleViewAction()->setText(tr("&Log"));
    toggleViewAction()->setStatusTip(tr("Show what the modules and this program report"));
}

void LogDock::append(const LogEntry &entry)
{
    QString text = entry.text;
    text.replace(QLatin1Char('\n'), QLatin1Char(' ')); // an entry is one line, so that the number of lines bounds it
    const QString time = entry.time.toString(QStringLiteral("hh:mm:ss.zzz"));
    view->appendPlainText(QStringLiteral("%1  %2  %3  %4").arg(time, QString::number(entry.level), entry.sender, text));
}

} // namespace host
