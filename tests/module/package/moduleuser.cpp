// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include <backendversions.h>
#include <iomanager.h>
#include <moduleinterface.h>
#include <requester.h>

#include <QJsonObject>
#include <QPluginLoader>

#include <cstdio>

/// Prints the identifier and class name of the module that is its argument, without loading any code of it.
int main(int argc, char **argv)
{
    const QPluginLoader loader(QString::fromLocal8Bit(argv[argc - 1]));
    const QJsonObject metaData = loader.metaData();
    std::printf("%s %s for %s\n", qPrintable(metaData.value(QLatin1String("IID")).toString()),
                qPrintable(metaData.value(QLatin1String("className")).toString()),
                qobject_interface_iid<ModuleInterface *>());
    return 0;
}
