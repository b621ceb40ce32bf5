// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/modules/testmodule.h"

#include "interface/backendversions.h"
#include "interface/iomanager.h"

#include <QAction>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDockWidget>
#include <QStringList>

#include <thread>

namespace {

void note(const QString &call)
{
    const char *const property = "moduleCalls";
    qApp->setProperty(property, qApp->property(property).toStringList() << call);
}

QString described(const QVariant &value)
{
    if (value.canConvert<IOManager *>())
        return QStringLiteral("a command channel");
    if (value.canConvert<QWidget *>())
        return QStringLiteral("a widget");
    if (value.canConvert<BackendVersions *>())
        return QStringLiteral("backend %1").arg(value.value<BackendVersions *>()->backendMajor);
    return value.toString();
}

} // namespace

CountingPanel::CountingPanel(IOManager *manager)
    : ioManager(manager)
{
    setObjectName(QStringLiteral("countingPanel"));
    ioManager->registerRequester(this);
}

int CountingPanel::processOutput(const char *, const char *)
{
    if (refusing)
        return -1;
    if ((stored + dropped) % 10 == 9)
        ++dropped;
    else
        ++stored;
    return 0;
}

bool CountingPanel::awaitLine() const
{
    const quint64 before = stored + dropped;
    const QDeadlineTimer deadline(5000);
    while (stored + dropped == before && !deadline.hasExpired())
        std::this_thread::yield();
    return stored + dropped > before;
}

void CountingPanel::configurationChanged()
{
    qint32 bodies = -1;
    if (ioManager->requestInt(&bodies, "standard number_of_bodies") != 0)
        bodies = -1;
    note(QStringLiteral("configurationChanged"));
    for (const char *tag : {"6d", "6di", "3d"})
        ioManager->startOutput(tag, this);
}

void CountingPanel::clearData()
{
    note(QStringLiteral("clearData"));
}

TestModule::TestModule()
{
    note(QStringLiteral("created"));
}

TestModule::~TestModule()
{
    note(QStringLiteral("destroyed"));
}

void TestModule::aboutToUnload()
{
    note(QStringLiteral("aboutToUnload"));
    if (panel->property("awaitingLine").toBool() && panel->awaitLine())
        note(QStringLiteral("a line came"));
    if (!qApp->property("staysRegistered").toBool())
        ioManager->unregisterRequester(panel);
}

void TestModule::releaseWidgets()
{
    note(QStringLiteral("releaseWidgets"));
    for (ModuleEntry &entry : entries) {
        if (!entry.widget)
            delete entry.action; // the others are their dock's
        delete entry.widget;
        entry = {};
    }
}

QString TestModule::moduleName() const
{
    return QStringLiteral("Test Module");
}

QString TestModule::moduleVersion() const
{
    return QStringLiteral("v0.1.0");
}

QList<ModuleEntry *> TestModule::moduleEntries()
{
    note(QStringLiteral("moduleEntries"));
    auto *dock = new QDockWidget(QStringLiteral("First"), moduleParent);
    panel = new CountingPanel(ioManager);
    dock->setWidget(panel);
    if (qApp->property("closedPanel").toBool())
        dock->hide();
    const QString view = QStringLiteral("&View");
    const QString tools = QStringLiteral("&Tools");
    entries[0] = {new QAction(QStringLiteral("Late")), 300, tools, 1, nullptr, 0};
    entries[1] = {new QAction(QStringLiteral("Second")), 240, view, 500, nullptr, 0};
    entries[2] = {dock->toggleViewAction(), 240, view, 400, dock, Qt::RightDockWidgetArea};
    return {&entries[0], &entries[1], &entries[2]};
}

void TestModule::setModuleProperty(QString name, QVariant value)
{
    note(QStringLiteral("%1: %2").arg(name, described(value)));
    if (name == QLatin1String("CommandManager"))
        ioManager = value.value<IOManager *>();
    if (name == QLatin1String("ModuleParent"))
        moduleParent = value.value<QWidget *>();
}
