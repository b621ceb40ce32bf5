// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/contract/handmadehost.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QPluginLoader>
#include <QPointer>
#include <QTableWidget>
#include <QVariant>

#include <array>
#include <cstddef>
#include <cstdint>

QT_BEGIN_NAMESPACE
class QAction;
QT_END_NAMESPACE

/// Calls entry \a index of the table that \a object starts with, as compiled code calls a virtual operation.
template<typename Result, typename... Arguments>
Result callEntry(void *object, std::size_t index, Arguments... arguments)
{
    using Function = Result (*)(void *, Arguments...);
    const HandMadeHost::Entry *const table = *static_cast<HandMadeHost::Entry **>(object);
    return reinterpret_cast<Function>(table[index])(object, arguments...);
}

/// The module's table. Its virtual destructor comes first and fills two entries.
enum ModuleEntryIndex : std::size_t {
    DeletingDestructor = 1,
    AboutToUnload = 2,
    ReleaseWidgets = 3,
    ModuleName = 4,
    ModuleVersion = 5,
    ModuleEntries = 6,
    SetModuleProperty = 7,
};

/// The requester's table, which has no destructor.
enum RequesterEntryIndex : std::size_t { ProcessOutput = 0, ConfigurationChanged = 1, ClearData = 2 };

/// What the module puts into the host's menus, read field by field at its place in the module's record.
struct MenuEntry {
    QAction *action = nullptr;
    qint32 primaryOrder = 0;
    QString menuName;
    qint32 secondaryOrder = 0;
    QWidget *widget = nullptr;
    qint32 dockArea = 0;

    static MenuEntry readFrom(const void *record);
};

using Version = std::array<qint32, 3>; ///< major, minor, patch
Q_DECLARE_METATYPE(Version)

/// The plug-in loaded and driven from the outside, from properties to unloading. GUI thread.
struct GuestSession {
    HandMadeHost host;
    std::array<qint32, 6> versions{}; ///< the backend's version is the second half
    QMainWindow window;
    QPluginLoader loader;
    QPointer<QObject> object; ///< the plug-in's root object
    void *module = nullptr; ///< its part that the host drives
    MenuEntry entry;
    QPointer<QDockWidget> dock;

    explicit GuestSession(const Version &backend = {2, 0, 0});
    ~GuestSession(); ///< unloads as a host does
    Q_DISABLE_COPY_MOVE(GuestSession)

    /// Loads the library and takes its object; false with a message in loader.errorString().
    bool load();
    void setProperty(const char *name, const QVariant &value) const;
    void setProperties(); ///< the four that the module needs
    QList<void *> moduleEntries() const;
    bool takeEntries(); ///< the panel's birth: fills entry and dock and docks it in the window
    bool start(); ///< all of the above; the calls of the panel's birth are in host.calls
    void show(); ///< the window with the dock
    void release() const; ///< aboutToUnload, releaseWidgets

    void configurationChanged() const;
    void clearData() const;
    /// Delivers a line on a thread of its own, as hosts do, and returns the result. Either may be null.
    int deliver(const char *tag, const char *line) const;

    QTableWidget *table6d() const;
    QTableWidget *table3d() const;
    QStringList rowOf(const QTableWidget *table, int row) const; ///< the texts of all cells; null text where no item
};

/// A pointer to the host as the property "CommandManager" wants it.
QVariant commandManagerProperty(HandMadeHost *host);
QVariant backendVersionsProperty(std::array<qint32, 6> *versions);
