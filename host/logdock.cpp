// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logdock.h"

#include "host/logoutput.h"
#include "host/logview.h"

#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>

namespace host {

namespace {

QString shownLine(const LogEntry &entry)
{
    QString text = entry.text;
    text.replace(QLatin1Char('\n'), QLatin1Char(' ')); // an entry is one line, so that the number of lines bounds it
    const QString level = entry.isWarning() ? LogDock::tr("warning") : LogDock::tr("info");
    return QStringLiteral("%1  %2  %3  %4")
        .arg(entry.time.toString(QStringLiteral("hh:mm:ss.zzz")), level, entry.sender, text);
}

QToolButton *makeButton(const QString &name, const QString &text, const QString &toolTip)
{
    auto *button = new QToolButton;
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

} // namespace

LogDock::LogDock(QWidget *parent)
    : QDockWidget(tr("Log"), parent)
{
    setObjectName(QStringLiteral("logDock"));
    auto *content = new QWidget;
    setWidget(content);
    view = new LogView(maximumLines, content); // before the tools, so that the keyboard enters it first
    view->setObjectName(QStringLiteral("logView"));
    view->setAccessibleName(tr("Log"));
    view->setWhatsThis(tr("What the modules and this program have to report: time, level, sender and text."));
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeTools());
    layout->addWidget(view);
    toggleViewAction()->setText(tr("&Log"));
    toggleViewAction()->setStatusTip(tr("Show what the modules and this program report"));
}

void LogDock::append(const LogEntry &entry)
{
    if (entries.size() == maximumLines)
        entries.pop_front();
    entries.push_back(entry);
    showEntry(entry);
}

void LogDock::showNewestWarning()
{
    show();
    raise();
    textFilter->clear();
    view->showLastWarning();
    view->activateWindow(); // where the dock floats
    view->setFocus();
}

QString LogDock::save(const QString &fileName) const
{
    QString reason;
    const std::unique_ptr<LogFile> file = LogFile::open(fileName, &reason);
    for (const LogEntry &entry : entries) {
        if (!file || !file->write(entry)) {
            if (file)
                reason = file->error();
            break;
        }
    }
    return reason.isEmpty() ? QString() : tr("The log can't be saved in %1: %2.").arg(fileName, reason);
}

QWidget *LogDock::makeTools()
{
    auto *tools = new QWidget;
    auto *layout = new QHBoxLayout(tools);
    layout->setContentsMargins(0, 0, 0, 0);
    levelFilter = new QComboBox;
    levelFilter->setObjectName(QStringLiteral("logLevelFilter"));
    auto *levelLabel =
        new QLabel(tr("Show:")); // names the box for screen readers, too: they read its value as its name
    levelLabel->setBuddy(levelFilter);
    levelFilter->addItems({tr("All entries"), tr("Warnings")});
    connect(levelFilter, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &LogDock::showAll);
    textFilter = new QLineEdit;
    textFilter->setObjectName(QStringLiteral("logTextFilter"));
    textFilter->setAccessibleName(tr("Text in the entries shown"));
    textFilter->setPlaceholderText(tr("Filter"));
    textFilter->setClearButtonEnabled(true);
    textFilter->findChild<QToolButton *>()->setAccessibleName(tr("Clear the filter"));
    connect(textFilter, &QLineEdit::textChanged, this, &LogDock::showAll);
    auto *saveButton = makeButton(QStringLiteral("logSaveButton"), tr("Save…"), tr("Save all entries of the log"));
    connect(saveButton, &QToolButton::clicked, this, &LogDock::chooseFile);
    auto *clearButton =
        makeButton(QStringLiteral("logClearButton"), tr("Clear"), tr("Remove all entries from the log"));
    connect(clearButton, &QToolButton::clicked, this, &LogDock::clear);
    layout->addWidget(levelLabel);
    layout->addWidget(levelFilter);
    layout->addWidget(textFilter, 1);
    layout->addWidget(saveButton);
    layout->addWidget(clearButton);
    return tools;
}

bool LogDock::isShown(const LogEntry &entry) const
{
    return (levelFilter->currentIndex() == 0 || entry.isWarning())
        && shownLine(entry).contains(textFilter->text(), Qt::CaseInsensitive);
}

void LogDock::showEntry(const LogEntry &entry)
{
    if (isShown(entry))
        view->appendLine(shownLine(entry), entry.isWarning());
}

void LogDock::showAll()
{
    view->setUpdatesEnabled(false);
    view->clear();
    for (const LogEntry &entry : entries)
        showEntry(entry);
    view->setUpdatesEnabled(true);
}

void LogDock::chooseFile()
{
    const QPointer<LogDock> guard(this); // the program may end while the dialog is open
    const QString fileName = QFileDialog::getSaveFileName(this, tr("Save the Log"), QStringLiteral("trackhost.log"),
                                                          tr("Logs (*.log);;All files (*)"));
    if (!guard || fileName.isEmpty())
        return;
    const QString complaint = save(fileName);
    emit saved(complaint.isEmpty() ? tr("Saved the log in %1").arg(fileName) : complaint);
}

void LogDock::clear()
{
    entries.clear();
    view->clear();
    emit cleared();
}

} // namespace host
