// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logmark.h"

#include "host/hostlog.h"

#include <QStyle>

namespace host {

LogMark::LogMark(QWidget *parent)
    : QToolButton(parent)
{
    setObjectName(QStringLiteral("logMark"));
    setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(tr("Warnings in the log since you last looked: click to see them"));
    showCount();
}

void LogMark::count(const LogEntry &entry)
{
    if (!entry.isWarning())
        return;
    ++warnings;
    showCount();
}

void LogMark::reset()
{
    warnings = 0;
    showCount();
}

void LogMark::showCount()
{
    setText(warnings == 1 ? tr("1 warning") : tr("%1 warnings").arg(warnings));
    setVisible(warnings > 0);
}

} // namespace host
