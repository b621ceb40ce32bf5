// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include <QObject>
#include <QtPlugin>

/// Says that it is one of our modules, and has nothing of one.
class HollowModule : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zel.Vornak2.HollowModule")
};

#include "hollowmodule.moc"
