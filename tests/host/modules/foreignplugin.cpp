// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include <QObject>
#include <QtPlugin>

namespace {

/// Any code of this library that runs leaves its mark.
const bool mark = qputenv("FOREIGN_MODULE_LOADED", "1");

} // namespace

/// Somebody else's plug-in in the module folder.
class ForeignPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.Vornak2.Foreign")

public:
    bool marked() const { return mark; }
};

#include "foreignplugin.moc"
