// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace host {

/// Around the making of the QApplication, which ends the process with Qt's own words where there is no display. While
/// an object of this kind lives, the process then ends with 2 and a sentence of ours.
///
/// It also chooses Wayland where there is no X, which Qt does in some desktops only, and leaves out for good what Qt
/// warns about at every start without a display, where it means nothing.
class PlatformStart {
    Q_DECLARE_TR_FUNCTIONS(PlatformStart)

public:
    /// What decides which display is tried.
    struct Facts {
        QString platform; ///< asked for by option or environment; empty: Qt chooses
        QString display; ///< DISPLAY
        QString waylandDisplay; ///< WAYLAND_DISPLAY
        bool hasWaylandPlugin = false;

        bool isWaylandAlone() const { return display.isEmpty() && !waylandDisplay.isEmpty(); }
    };

    /// \a qtArguments start with the name of the program.
    explicit PlatformStart(const QStringList &qtArguments);
    /// Prints what Qt has warned of meanwhile.
    ~PlatformStart();

    static Facts factsFor(const QStringList &qtArguments);
    /// Why no window can be shown; \a reason is Qt's, if it gave one.
    static QString complaint(const Facts &facts, const QString &reason);

private:
    Q_DISABLE_COPY(PlatformStart)
};

} // namespace host
