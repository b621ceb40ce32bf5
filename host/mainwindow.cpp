// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/mainwindow.h"

#include "host/backendmenu.h"
#include "host/backendsession.h"
#include "host/dockbackground.h"
#include "host/dockcycle.h"
#include "host/filemenu.h"
#include "host/hostlog.h"
#include "host/keyspage.h"
#include "host/livenessview.h"
#include "host/logdock.h"
#include "host/logmark.h"
#include "host/readingstatus.h"
#include "interface/moduleinterface.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QIcon>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QRegularExpression>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QWhatsThis>

#include <algorithm>

/// Registers the pictures compiled into this library, which a linker would leave out otherwise. Has to stand outside of
/// any namespace.
static void registerPictures()
{
    Q_INIT_RESOURCE(host);
}

namespace host {

namespace {

const QLatin1String geometryKey("window/geometry");
const QLatin1String stateKey("window/state");

constexpr QSize firstWindow(1280, 560); // both tables of a data display can be read without scrolling sideways
constexpr QSize windowFrame(10, 40); // of a window manager, at most [pixels]
constexpr int messageTime = 10000; // [ms]
constexpr int logHeight = 110; // [pixels], a few lines

Qt::DockWidgetArea areaOf(const ModuleEntry &entry)
{
    switch (entry.dockArea) {
    case Qt::RightDockWidgetArea:
    case Qt::TopDockWidgetArea:
    case Qt::BottomDockWidgetArea:
        return static_cast<Qt::DockWidgetArea>(entry.dockArea);
    default:
        return Qt::LeftDockWidgetArea;
    }
}

QIcon ownIcon()
{
    registerPictures();
    QIcon icon;
    for (const char *name : {"16", "32", "64", "256"})
        icon.addFile(QStringLiteral(":/host/icon/trackhost-%1.png").arg(QLatin1String(name)));
    return icon;
}

} // namespace

MainWindow::MainWindow(BackendSession &session, HostLog &log, const BackendSettings &settings)
    : session(session)
    , log(log)
    , logDock(new LogDock(this))
{
    setObjectName(QStringLiteral("mainWindow"));
    resize(firstWindow);
    setDockNestingEnabled(true);
    addLog();
    new DockBackground(*this, logDock->objectName());
    new DockCycle(this);
    addMenus(settings);
    statusBar()->addPermanentWidget(new ReadingStatus(*backend->backendReader()));
    setAcceptDrops(true);
    setWindowIcon(ownIcon());
    connect(&session, &BackendSession::connectionChanged, this, &MainWindow::showTitle);
    showTitle();
    new LivenessView(session, log, *this);
}

void MainWindow::addEntries(const QList<ModuleEntry *> &entries)
{
    int number = 0;
    for (ModuleEntry *entry : entries) {
        ++number;
        if (QMenu *menu = entry->action ? menuNamed(entry->menuName) : nullptr)
            menu->insertAction(menu == view ? firstOwnView : nullptr, entry->action);
        if (entry->widget)
            addDock(*entry, number);
    }
    divideRoom();
}

void MainWindow::removeEntries(const QList<ModuleEntry *> &entries)
{
    for (const ModuleEntry *entry : entries) {
        if (auto *dock = qobject_cast<QDockWidget *>(entry->widget))
            removeDockWidget(dock);
        if (!entry->action)
            continue;
        const QList<QMenu *> menus = findChildren<QMenu *>();
        for (QMenu *menu : menus)
            menu->removeAction(entry->action);
    }
    for (const QPointer<QMenu> &menu : qAsConst(moduleMenus))
        delete menu;
    moduleMenus.clear();
}

void MainWindow::restorePlace()
{
    if (!restoreGeometry(QSettings().value(geometryKey).toByteArray()))
        resize(size().boundedTo(screen()->availableSize() - windowFrame));
}

void MainWindow::restoreLayout()
{
    hasLayout = restoreState(QSettings().value(stateKey).toByteArray()) || hasLayout;
}

void MainWindow::saveLayout() const
{
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(stateKey, saveState());
}

void MainWindow::addViewAction(QAction *action)
{
    view->insertAction(logDock->toggleViewAction(), action);
    if (firstOwnView == logDock->toggleViewAction())
        firstOwnView = action;
}

void MainWindow::addFileAction(QAction *action)
{
    file->insertAction(file->actions().constLast(), action);
}

void MainWindow::setStateInTitle(const QString &state)
{
    stateInTitle = state;
    showTitle();
}

void MainWindow::divideRoom()
{
    if (hasLayout || !isVisible())
        return;
    hasLayout = true;
    layout()->activate();
    // The modules get what the log leaves.
    QList<QDockWidget *> docks = findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    docks.erase(std::remove_if(docks.begin(), docks.end(), [](const QDockWidget *dock) { return dock->isHidden(); }),
                docks.end());
    QList<int> heights;
    for (const QDockWidget *dock : qAsConst(docks))
        heights << (dock == logDock ? logHeight : height());
    resizeDocks(docks, heights, Qt::Vertical);
}

void MainWindow::addLog()
{
    addDockWidget(Qt::BottomDockWidgetArea, logDock);
    auto *mark = new LogMark;
    statusBar()->addPermanentWidget(mark); // the first of them
    mark->hide();
    connect(&log, &HostLog::entryAdded, logDock, &LogDock::append);
    connect(&log, &HostLog::entryAdded, mark, &LogMark::count);
    connect(mark, &LogMark::clicked, this, [this, mark] {
        logDock->showNewestWarning();
        mark->reset();
    });
    connect(logDock, &LogDock::cleared, mark, &LogMark::reset);
    connect(logDock, &LogDock::saved, this,
            [this](const QString &text) { statusBar()->showMessage(text, messageTime); });
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!FileMenu::filesOf(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QStringList files = FileMenu::filesOf(*event->mimeData());
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    file->open(files);
}

void MainWindow::addMenus(const BackendSettings &settings)
{
    const auto showFailure = [this](const QString &text) { statusBar()->showMessage(text, messageTime); };
    backend = new BackendMenu(session, log, settings, this);
    connect(backend, &BackendMenu::failed, this, showFailure);
    file = new FileMenu(*backend, this);
    connect(file, &FileMenu::failed, this, showFailure);
    menuBar()->addMenu(file);

    view = menuBar()->addMenu(tr("&View"));
    view->setObjectName(QStringLiteral("viewMenu"));
    view->addAction(logDock->toggleViewAction());
    firstOwnView = logDock->toggleViewAction();

    menuBar()->addMenu(backend);
    addHelpMenu();
}

void MainWindow::addHelpMenu()
{
    help = menuBar()->addMenu(tr("&Help"));
    help->setObjectName(QStringLiteral("helpMenu"));
    QAction *whatsThis = QWhatsThis::createAction(this);
    whatsThis->setObjectName(QStringLiteral("whatsThisAction"));
    help->addAction(whatsThis);
    auto *keys = new KeysPage(this);
    QAction *showKeys = help->addAction(tr("&Keys"), keys, [keys] {
        keys->show();
        keys->raise();
        keys->activateWindow();
    });
    showKeys->setObjectName(QStringLiteral("keysAction"));
    showKeys->setStatusTip(tr("List the keys of this window"));
    help->addAction(tr("&About %1").arg(QApplication::applicationDisplayName()), this, &MainWindow::showAbout)
        ->setObjectName(QStringLiteral("aboutAction"));
}

QMenu *MainWindow::menuNamed(const QString &title)
{
    const QList<QAction *> actions = menuBar()->actions();
    for (const QAction *action : actions) {
        if (action->menu() && action->menu()->title() == title)
            return action->menu();
    }
    auto *menu = new QMenu(title, this);
    menuBar()->insertMenu(help->menuAction(), menu);
    moduleMenus.append(menu);
    return menu;
}

void MainWindow::addDock(const ModuleEntry &entry, int number)
{
    auto *dock = qobject_cast<QDockWidget *>(entry.widget);
    if (!dock) {
        log.warning(tr("A module's widget for \"%1\" is no dock widget and is not shown.").arg(entry.menuName));
        return;
    }
    if (dock->objectName().isEmpty()) // without a name its place can't be kept
        dock->setObjectName(QStringLiteral("moduleDock%1").arg(number));
    const bool isHiddenByModule = dock->isHidden() && dock->testAttribute(Qt::WA_WState_ExplicitShowHide);
    addDockWidget(areaOf(entry), dock);
    if (isVisible() && !isHiddenByModule)
        dock->show(); // Qt would do so later, and a hidden dock has no room to divide
}

void MainWindow::showTitle()
{
    const QString source = session.backendName();
    const QString program = QApplication::applicationDisplayName();
    const QString title = source.isEmpty() ? program : tr("%1 — %2").arg(source, program);
    // A screen reader speaks each new name of the window: the state, once, and not its age every second.
    static const QRegularExpression age(QStringLiteral(R"( \d[^)]*(?=\)))"));
    const QString spoken = QString(stateInTitle).remove(age) + title;
    if (accessibleName() != spoken)
        setAccessibleName(spoken);
    setWindowTitle(stateInTitle + title);
}

void MainWindow::showAbout()
{
    QMessageBox::about(this, tr("About %1").arg(QApplication::applicationDisplayName()),
                       tr("%1 %2\n\nRuns display modules on a simulated or recorded tracking backend.")
                           .arg(QApplication::applicationDisplayName(), QApplication::applicationVersion()));
}

} // namespace host
