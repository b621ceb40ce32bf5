// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace host {

/// The wish of the system or of a terminal that the program end: SIGTERM, SIGINT and SIGHUP, as a Qt signal.
///
/// The first of them is emitted; the next one ends the process at once, as if it had never been caught, for whoever
/// does not want to wait. A signal that the caller of the program has told it to ignore (nohup) stays ignored.
class EndSignals : public QObject {
    Q_OBJECT

public:
    /// From now on signals are kept for the object that emits them. To be called once, early in main().
    static void catchThem();

    /// Emits from the event loop of its thread, also what came before it was made. There must be an application object.
    explicit EndSignals(QObject *parent = nullptr);

signals:
    void endRequested();
};

} // namespace host
