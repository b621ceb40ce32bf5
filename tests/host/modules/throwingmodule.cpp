// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "interface/moduleinterface.h"

#include <QCoreApplication>

#include <stdexcept>

/// Throws from the function that the application's property "throwing" names, at each call; when it says "a number",
/// one from moduleEntries.
class ThrowingModule : public QObject, public ModuleInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zel.Vornak2.ThrowingModule")
    Q_INTERFACES(ModuleInterface)

public:
    ThrowingModule() { throwIn("constructor"); }

    void aboutToUnload() override { throwIn("aboutToUnload"); }
    void releaseWidgets() override { throwIn("releaseWidgets"); }
    QString moduleName() const override { return called("moduleName"); }
    QString moduleVersion() const override { return called("moduleVersion"); }
    QList<ModuleEntry *> moduleEntries() override
    {
        if (qApp->property("throwing") == QLatin1String("a number"))
            throw 1;
        throwIn("moduleEntries");
        return {};
    }
    void setModuleProperty(QString, QVariant) override { throwIn("setModuleProperty"); }

private:
    static void throwIn(const char *function)
    {
        const QString throwing = qApp->property("throwing").toString();
        if (throwing == QLatin1String(function))
            throw std::runtime_error("thrown in " + throwing.toStdString());
    }
    static QString called(const char *function)
    {
        throwIn(function);
        return QLatin1String(function);
    }
};

#include "throwingmodule.moc"
