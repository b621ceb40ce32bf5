// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/liveness.h"

#include <QToolBar>

#include <optional>

namespace host {

class LivenessLine;

/// Says above the docks that they can't be trusted, and why; hidden while they can. A tool bar that can't be moved or
/// hidden, since only those have a place between the menus and the docks. Its own place in a saved layout does not
/// matter: whether it is shown depends on the source alone.
class LivenessBanner : public QToolBar {
    Q_OBJECT

public:
    explicit LivenessBanner(QWidget *parent = nullptr);

    /// Shows the sentence of \a liveness. Screen readers hear of it when the level changes, not each second.
    void showLiveness(const Liveness &liveness);
    /// Says that the operator has frozen the picture, since \a time; nothing: it is not frozen.
    void showFrozenPicture(const QString &time);

signals:
    void announced(const QString &text); ///< what screen readers were told

private:
    void showFrozenText();
    void followLines();
    void announce(QWidget *line, const QString &text);

    LivenessLine *sourceLine = nullptr;
    LivenessLine *pictureLine = nullptr;
    std::optional<Liveness::Level> level; // shown
    QString frozenSince; // empty while the picture is live
};

} // namespace host
