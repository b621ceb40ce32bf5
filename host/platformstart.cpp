// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/platformstart.h"

#include "host/standarderror.h"

#include <QByteArray>
#include <QDir>
#include <QLibraryInfo>
#include <QVector>

#include <cstdlib>
#include <optional>

namespace host {

namespace {

constexpr int badInput = 2;

struct Message {
    QtMsgType type;
    QByteArray category;
    QString text;
};

// GUI thread; other threads start later.
QtMessageHandler qtHandler = nullptr;
std::optional<PlatformStart::Facts> startFacts; // while an application is being made
QVector<Message> heldMessages; // of that time
bool isOffscreen = false;

bool isNoise(const QString &text)
{
    return isOffscreen
        && (text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))
            || text == QLatin1String("This plugin does not support propagateSizeHints()"));
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (isNoise(text))
        return;
    if (startFacts && type == QtFatalMsg) {
        const QString reason = heldMessages.isEmpty() ? QString() : heldMessages.constFirst().text.trimmed();
        printError(PlatformStart::complaint(*startFacts, reason));
        std::_Exit(badInput);
    }
    if (startFacts)
        heldMessages.append({type, context.category, text});
    else
        qtHandler(type, context, text);
}

QString valueOf(const QString &option, const QStringList &arguments)
{
    QString value;
    for (int place = 1; place < arguments.size(); ++place) {
        const QString &argument = arguments.at(place);
        const QString name = argument.mid(argument.startsWith(QLatin1String("--")) ? 2 : 1);
        if (name == option)
            value = arguments.value(place + 1);
        else if (name.startsWith(option + QLatin1Char('=')))
            value = name.mid(option.size() + 1);
    }
    return value;
}

} // namespace

PlatformStart::PlatformStart(const QStringList &qtArguments)
{
    startFacts = factsFor(qtArguments);
    isOffscreen = startFacts->platform.startsWith(QLatin1String("offscreen"));
    if (startFacts->platform.isEmpty() && startFacts->isWaylandAlone())
        qputenv("QT_QPA_PLATFORM", "wayland");
    if (!qtHandler)
        qtHandler = qInstallMessageHandler(handleMessage);
}

PlatformStart::~PlatformStart()
{
    startFacts.reset();
    for (const Message &message : qAsConst(heldMessages))
        qtHandler(message.type, QMessageLogContext(nullptr, 0, nullptr, message.category.constData()), message.text);
    heldMessages.clear();
}

PlatformStart::Facts PlatformStart::factsFor(const QStringList &qtArguments)
{
    Facts facts;
    facts.platform = valueOf(QStringLiteral("platform"), qtArguments);
    if (facts.platform.isEmpty())
        facts.platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    facts.display = valueOf(QStringLiteral("display"), qtArguments);
    if (facts.display.isEmpty())
        facts.display = qEnvironmentVariable("DISPLAY");
    facts.waylandDisplay = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QDir plugins(QLibraryInfo::location(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    facts.hasWaylandPlugin = !plugins.entryList({QStringLiteral("libqwayland*")}).isEmpty();
    return facts;
}

QString PlatformStart::complaint(const Facts &facts, const QString &reason)
{
    const QString headless = tr("QT_QPA_PLATFORM=offscreen runs without a window that anybody sees.");
    QString text;
    if (!facts.platform.isEmpty())
        text = tr("No window can be shown by Qt's platform \"%1\".").arg(facts.platform);
    else if (facts.isWaylandAlone() && !facts.hasWaylandPlugin)
        return tr("This is a Wayland session without X, and Qt's plug-in for Wayland is not installed: the package is "
                  "qtwayland5.");
    else if (facts.isWaylandAlone())
        text = tr("No window can be shown on the Wayland display \"%1\".").arg(facts.waylandDisplay);
    else if (facts.display.isEmpty())
        return tr("There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set. Log in to a desktop, or use ssh "
                  "-X. "
                  "%1")
            .arg(headless);
    else
        text = tr("No window can be shown on the display \"%1\".").arg(facts.display);
    if (!reason.isEmpty())
        text += QStringLiteral(" (%1)").arg(reason);
    return text + QLatin1Char(' ') + headless;
}

} // namespace host
