// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

/// What a run of the program left behind.
struct ProgramRun {
    int exitCode = -1; ///< -1: it crashed or did not end
    QString out;
    QString err;
};

/// Waits for the end of \a process, which was started.
inline ProgramRun endOf(QProcess &process)
{
    ProgramRun run;
    if (process.waitForFinished(90000) && process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

/// Runs \a program, by default with this process's environment.
inline ProgramRun runProgram(const QString &program, const QStringList &arguments,
                             const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    return endOf(process);
}
