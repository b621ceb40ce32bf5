// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"

#include <QAction>

#include <thread>

// Names without contents: the plug-in asks a property for its type by name, and everything else by table or offset.
struct IOManager;
struct BackendVersions;
Q_DECLARE_OPAQUE_POINTER(IOManager *)
Q_DECLARE_METATYPE(IOManager *)
Q_DECLARE_OPAQUE_POINTER(BackendVersions *)
Q_DECLARE_METATYPE(BackendVersions *)

static_assert(sizeof(void *) == 8, "the offsets below are those of a 64-bit machine");

namespace {

template<typename Field> const Field &fieldAt(const void *record, std::size_t offset)
{
    return *reinterpret_cast<const Field *>(static_cast<const unsigned char *>(record) + offset);
}

} // namespace

MenuEntry MenuEntry::readFrom(const void *record)
{
    MenuEntry entry;
    entry.action = fieldAt<QAction *>(record, 0);
    entry.primaryOrder = fieldAt<qint32>(record, 8);
    entry.menuName = fieldAt<QString>(record, 16);
    entry.secondaryOrder = fieldAt<qint32>(record, 24);
    entry.widget = fieldAt<QWidget *>(record, 32);
    entry.dockArea = fieldAt<qint32>(record, 40);
    return entry;
}

QVariant commandManagerProperty(HandMadeHost *host)
{
    return QVariant::fromValue(reinterpret_cast<IOManager *>(host));
}

QVariant backendVersionsProperty(std::array<qint32, 6> *versions)
{
    return QVariant::fromValue(reinterpret_cast<BackendVersions *>(versions->data()));
}

GuestSession::GuestSession(const Version &backend)
    // The first three numbers belong to others; a reader of the wrong half would meet an ancient backend.
    : versions{-1, -1, -1, backend[0], backend[1], backend[2]}
    , loader(QStringLiteral(PLUGIN_FILE))
{
    qRegisterMetaType<IOManager *>("IOManager*");
    qRegisterMetaType<BackendVersions *>("BackendVersions*");
    host.answerAsSmallSetup();
}

GuestSession::~GuestSession()
{
    if (!object)
        return;
    release();
    loader.unload();
}

bool GuestSession::load()
{
    QObject *const instance = loader.instance();
    if (!instance)
        return false;
    object = instance;
    module = instance->qt_metacast("com.zel.vornak2.gui.Module/0.2.0");
    return module != nullptr;
}

void GuestSession::setProperty(const char *name, const QVariant &value) const
{
    callEntry<void, QString, QVariant>(module, SetModuleProperty, QString::fromLatin1(name), value);
}

void GuestSession::setProperties()
{
    setProperty("CommandManager", commandManagerProperty(&host));
    setProperty("ModuleParent", QVariant::fromValue(static_cast<QWidget *>(&window)));
    setProperty("BackendVersions", backendVersionsProperty(&versions));
    setProperty("ObserverMode", false);
}

QList<void *> GuestSession::moduleEntries() const
{
    return callEntry<QList<void *>>(module, ModuleEntries);
}

bool GuestSession::takeEntries()
{
    const QList<void *> entries = moduleEntries();
    if (entries.size() != 1 || !entries.first())
        return false;
    entry = MenuEntry::readFrom(entries.first());
    dock = qobject_cast<QDockWidget *>(entry.widget);
    if (!dock)
        return false;
    window.addDockWidget(static_cast<Qt::DockWidgetArea>(entry.dockArea), dock);
    return true;
}

bool GuestSession::start()
{
    if (!load())
        return false;
    setProperties();
    return takeEntries();
}

void GuestSession::show()
{
    window.resize(1100, 300);
    window.show();
}

void GuestSession::release() const
{
    callEntry<void>(module, AboutToUnload);
    callEntry<void>(module, ReleaseWidgets);
}

void GuestSession::configurationChanged() const
{
    callEntry<void>(host.requester, ConfigurationChanged);
}

void GuestSession::clearData() const
{
    callEntry<void>(host.requester, ClearData);
}

int GuestSession::deliver(const char *tag, const char *line) const
{
    int result = 1;
    std::thread receiver(
        [&] { result = callEntry<int, const char *, const char *>(host.requester, ProcessOutput, tag, line); });
    receiver.join();
    return result;
}

QTableWidget *GuestSession::table6d() const
{
    return dock->findChild<QTableWidget *>(QStringLiteral("tableWidget6d"));
}

QTableWidget *GuestSession::table3d() const
{
    return dock->findChild<QTableWidget *>(QStringLiteral("tableWidget3d"));
}

QStringList GuestSession::rowOf(const QTableWidget *table, int row) const
{
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column) {
        const QTableWidgetItem *const item = table->item(row, column);
        texts.append(item ? item->text() : QString());
    }
    return texts;
}
