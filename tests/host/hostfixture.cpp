// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTest>

using namespace host;

HostFixture::HostFixture()
{
    QCoreApplication::setOrganizationName(QStringLiteral("VORNAK"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_host"));
    QSettings::setDefaultFormat(QSettings::IniFormat);
}

void HostFixture::start(const QStringList &moduleFolders, HostOptions options)
{
    host.reset();
    options.choice.scenario = QStringLiteral("default");
    BackendResult made = makeBackend(options.choice, options.settings);
    QVERIFY2(made.backend, qPrintable(made.error));
    host = std::make_unique<Host>(options, made.backend, moduleFolders);
    host->window().show();
}

void HostFixture::startAnew()
{
    home = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, home->path());
    takeCalls();
    start(testModule());
}

void HostFixture::end()
{
    host.reset();
    home.reset();
}

QAction *HostFixture::action(const char *name) const
{
    return host->window().findChild<QAction *>(QLatin1String(name));
}

QString HostFixture::label(const char *name) const
{
    return host->window().findChild<QLabel *>(QLatin1String(name))->text();
}

QString HostFixture::logText() const
{
    return host->window().findChild<QPlainTextEdit *>(QStringLiteral("logView"))->toPlainText();
}

QStringList HostFixture::menuTexts(const char *menu) const
{
    QStringList texts;
    const QList<QAction *> actions = host->window().findChild<QMenu *>(QLatin1String(menu))->actions();
    for (const QAction *entry : actions)
        texts << entry->text();
    return texts;
}

QStringList HostFixture::takeCalls()
{
    const QStringList calls = qApp->property("moduleCalls").toStringList();
    qApp->setProperty("moduleCalls", {});
    return calls;
}

QStringList HostFixture::testModule()
{
    return {QStringLiteral(TEST_MODULES "/testmodule")};
}
