// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/host.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

class QAction;

/// The whole program with the test module, in this process, on a home of its own.
class HostFixture {
protected:
    HostFixture();

    /// Starts the program, after the end of the one before, with the modules in \a moduleFolders.
    void start(const QStringList &moduleFolders, host::HostOptions options = {});
    /// The same on a new home with the test module.
    void startAnew();
    void end();

    QAction *action(const char *name) const;
    QString label(const char *name) const;
    QString logText() const;
    QStringList menuTexts(const char *menu) const;
    /// What the host has called of the module since the last time.
    static QStringList takeCalls();

    static QStringList testModule(); ///< the folder that it lies in

    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<host::Host> host;
};
