// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/filemenu.h"

#include "backend/plainfile.h"
#include "host/backendmenu.h"
#include "host/sourcesettings.h"

#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>
#include <QUrl>

namespace host {

namespace {

/// Whether the file holds an object of JSON, which no recording starts like.
bool isScenario(const QString &fileName)
{
    QFile file(fileName);
    if (backend::isPipeOrDevice(fileName) || !file.open(QIODevice::ReadOnly))
        return false;
    QByteArray start = file.read(4096);
    if (start.startsWith("\xEF\xBB\xBF"))
        start.remove(0, 3);
    return start.trimmed().startsWith('{');
}

/// A menu would take an ampersand for the mark of a key.
QString menuText(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

FileMenu::FileMenu(BackendMenu &backend, QWidget *parent)
    : QMenu(tr("&File"), parent)
    , backend(backend)
{
    setObjectName(QStringLiteral("fileMenu"));
    setToolTipsVisible(true);
    QAction *choose = addAction(tr("&Open Recording…"), this, &FileMenu::chooseRecordings);
    choose->setObjectName(QStringLiteral("openRecordingAction"));
    choose->setShortcut(QKeySequence(QStringLiteral("Ctrl+O")));
    choose->setStatusTip(tr("Replay recorded trajectories, one file for each body"));
    recent = addMenu(tr("Open &Recent"));
    recent->setObjectName(QStringLiteral("recentMenu"));
    recent->setToolTipsVisible(true);
    connect(&backend, &BackendMenu::chosen, this, [this](const BackendChoice &choice) {
        sourcesettings::remember(choice);
        showRecentFiles();
    });
    addSeparator();
    QAction *quit = addAction(tr("&Quit"), parent, &QWidget::close);
    quit->setObjectName(QStringLiteral("quitAction"));
    quit->setShortcut(
        QKeySequence(QStringLiteral("Ctrl+Q"))); // the standard key depends on the desktop, and may be none
    showRecentFiles();
}

QStringList FileMenu::filesOf(const QMimeData &data)
{
    QStringList files;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (!url.isLocalFile())
            return {};
        files += url.toLocalFile();
    }
    return files;
}

void FileMenu::open(const QStringList &files)
{
    BackendChoice choice;
    const bool hasScenario = std::any_of(files.begin(), files.end(), isScenario);
    if (hasScenario && files.size() > 1) {
        emit failed(tr("A scenario can only be opened alone; nothing was opened."));
        return;
    }
    if (hasScenario)
        choice.scenario = files.first();
    else
        choice.replayFiles = files;
    if (!files.isEmpty())
        backend.choose(choice);
}

void FileMenu::chooseRecordings()
{
    auto *dialog = new QFileDialog(parentWidget(), tr("Open Recordings, One File for Each Body"),
                                   sourcesettings::lastFolder(), tr("Recordings (*.txt *.tum *.csv);;All files (*)"));
    dialog->setObjectName(QStringLiteral("openRecordingDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this, &FileMenu::open);
    dialog->open();
}

void FileMenu::showRecentFiles()
{
    recent->clear();
    const QVector<BackendChoice> choices = sourcesettings::recentFiles();
    for (const BackendChoice &choice : choices) {
        QAction *action = recent->addAction(menuText(filesText(choice)), this, [this, choice] { openRecent(choice); });
        const QString paths =
            choice.replayFiles.isEmpty() ? choice.scenario : choice.replayFiles.join(QLatin1Char('\n'));
        action->setToolTip(paths);
        action->setStatusTip(choice.replayFiles.value(0, choice.scenario));
    }
    recent->setEnabled(!choices.isEmpty());
    if (choices.isEmpty())
        return;
    recent->addSeparator();
    QAction *clear = recent->addAction(tr("&Clear This List"), this, [this] {
        sourcesettings::forgetRecentFiles();
        showRecentFiles();
    });
    clear->setObjectName(QStringLiteral("clearRecentAction"));
}

void FileMenu::openRecent(const BackendChoice &choice)
{
    if (backend.choose(choice))
        return;
    sourcesettings::forget(choice);
    showRecentFiles();
}

} // namespace host
