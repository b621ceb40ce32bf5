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

/// What the message handler knows. The main thread writes it while there is no other.
struct HandlerState {
    QtMessageHandler qts = nullptr;
    bool isOffscreen = false;
    std::optional<PlatformStart::Facts> facts; // while an application is being made
    QVector<Message> held; // of that time
};

HandlerState &handlerState()
{
    static auto *const state = new HandlerState; // for good: Qt may have something to say while the process ends
    return *state;
}

bool isNoise(const QString &text)
{
    return handlerState().isOffscreen
        && (text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))
            || text == QLatin1String("This plugin does not support propagateSizeHints()"));
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (isNoise(text))
        return;
    HandlerState &state = handlerState();
    if (state.facts && type == QtFatalMsg) {
        const QString reason = state.held.isEmpty() ? QString() : state.held.constFirst().text.trimmed();
        printError(PlatformStart::complaint(*state.facts, reason));
        std::_Exit(badInput);
    }
    if (state.facts)
        state.held.append({type, context.category, text});
    else
        state.qts(type, context, text);
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
    HandlerState &state = handlerState();
    state.facts = factsFor(qtArguments);
    state.isOffscreen = state.facts->platform.startsWith(QLatin1String("offscreen"));
    if (state.facts->platform.isEmpty() && state.facts->isWaylandAlone())
        qputenv("QT_QPA_PLATFORM", "wayland");
    if (!state.qts)
        state.qts = qInstallMessageHandler(handleMessage);
}

PlatformStart::~PlatformStart()
{
    HandlerState &state = handlerState();
    state.facts.reset();
    for (const Message &message : qAsConst(state.held)) {
        state.qts(message.type, QMessageLogContext(nullptr, 0, nullptr, message.category.constData()), message.text);
    }
    state.held.clear();
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
