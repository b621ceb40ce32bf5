// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/livenessbanner.h"

#include "host/livenessline.h"

#include <QAccessible>
#include <QAction>
#include <QLayout>
#include <QToolButton>
#include <QVBoxLayout>

namespace host {

namespace {

using Level = Liveness::Level;

/// Without a source there are no data to mistake for live ones.
bool isWarned(Level level)
{
    return level == Level::Waiting || level == Level::Frozen || level == Level::Gone || level == Level::Ended;
}

} // namespace

LivenessBanner::LivenessBanner(QWidget *parent)
    : QToolBar(parent)
    , sourceLine(new LivenessLine(QStringLiteral("sourceBanner")))
    , pictureLine(new LivenessLine(QStringLiteral("pictureBanner")))
{
    setObjectName(QStringLiteral("livenessBanner"));
    setWindowTitle(tr("State of the Data"));
    setAccessibleName(windowTitle());
    if (auto *more = findChild<QToolButton *>(QStringLiteral("qt_toolbar_ext_button")))
        more->setAccessibleName(tr("More")); // Qt's own, of what does not fit
    setMovable(false);
    setFloatable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    toggleViewAction()->setVisible(false); // nor do the menus of the docks hide it
    layout()->setContentsMargins(0, 0, 0, 0);
    layout()->setSpacing(0);

    auto *lines = new QWidget;
    lines->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto *rows = new QVBoxLayout(lines);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(pictureLine);
    rows->addWidget(sourceLine);
    addWidget(lines);
    pictureLine->setLook(lookOfFrozenPicture(), true);
    pictureLine->hide();
    sourceLine->hide();
    hide();
}

void LivenessBanner::showLiveness(const Liveness &liveness)
{
    const QString text = LivenessWords::sentence(liveness);
    sourceLine->setText(text);
    if (level != liveness.level) {
        sourceLine->setLook(lookOf(liveness.level), true);
        sourceLine->setVisible(isWarned(liveness.level));
        const bool isNews = level.has_value() || isWarned(liveness.level);
        level = liveness.level;
        showFrozenText();
        followLines();
        if (isNews)
            announce(sourceLine, text);
    } else {
        followLines();
    }
}

void LivenessBanner::showFrozenPicture(const QString &time)
{
    frozenSince = time;
    pictureLine->setVisible(!time.isEmpty());
    showFrozenText();
    followLines();
    announce(pictureLine, time.isEmpty() ? tr("Picture live") : pictureLine->text());
}

void LivenessBanner::showFrozenText()
{
    const QString picture = tr("Picture frozen since %1").arg(frozenSince);
    // Where no data come, none go on.
    const QString text =
        level == Level::Live ? tr("%1 – data go on – Space: live").arg(picture) : tr("%1 – Space: live").arg(picture);
    pictureLine->setText(text);
}

void LivenessBanner::followLines()
{
    // A restored layout may have shown or hidden it.
    const bool isNeeded = !sourceLine->isHidden() || !pictureLine->isHidden();
    if (isHidden() == isNeeded)
        setVisible(isNeeded);
}

void LivenessBanner::announce(QWidget *line, const QString &text)
{
    line->setAccessibleName(text);
    QAccessibleEvent event(line, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
    emit announced(text);
}

} // namespace host
