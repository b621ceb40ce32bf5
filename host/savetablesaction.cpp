// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/savetablesaction.h"

#include "host/hostlog.h"
#include "host/tablewriter.h"

#include <QDir>
#include <QFileDialog>
#include <QMainWindow>
#include <QPointer>
#include <QStatusBar>

#include <utility>

namespace host {

namespace {

constexpr int messageTime = 10000; // [ms]

} // namespace

SaveTablesAction::SaveTablesAction(std::function<QList<ModuleEntry *>()> entries, HostLog &log, QMainWindow &window)
    : QAction(tr("Save &Tables…"), &window)
    , entries(std::move(entries))
    , log(log)
    , window(window)
{
    setObjectName(QStringLiteral("saveTablesAction"));
    setShortcut(QKeySequence(int{Qt::CTRL} | int{Qt::Key_E}));
    setStatusTip(tr("Save what each table shows as a CSV file"));
    connect(this, &QAction::triggered, this, &SaveTablesAction::chooseFolder);
}

void SaveTablesAction::chooseFolder()
{
    const QPointer<SaveTablesAction> guard(this); // the program may end while the dialog is open
    const QString folder = QFileDialog::getExistingDirectory(&window, tr("Save the Tables in"));
    if (guard && !folder.isEmpty())
        save(folder);
}

void SaveTablesAction::save(const QString &folder)
{
    const TableWriter writer(entries());
    const QString complaint = writer.write(folder);
    if (!complaint.isEmpty())
        log.warning(complaint);
    QStringList names;
    const QVector<TableFile> files = writer.files();
    for (const TableFile &file : files)
        names << file.name;
    const QString saved = tr("Saved in %1: %2").arg(QDir::toNativeSeparators(folder), names.join(QStringLiteral(", ")));
    window.statusBar()->showMessage(complaint.isEmpty() ? saved : complaint, messageTime);
}

} // namespace host
