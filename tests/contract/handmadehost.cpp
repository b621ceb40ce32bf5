// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/handmadehost.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <iterator>

#include <cxxabi.h>

namespace {

struct KnownFormat {
    const char *operation;
    const char *format;
};

// Every text that may arrive as a format. Anything else would be the backend's words used as one.
const KnownFormat knownFormats[] = {
    {"requestBool", "standard fixed_angle_present"},
    {"requestInt", "standard number_of_bodies"},
    {"requestInt", "body number_of_bodies standard"},
    {"requestString", "body active standard b%2.2d"},
    {"requestString", "body calibrated standard b%2.2d"},
    {"requestString", "body calibrated standard b%.2d"},
    {"requestString", "body desc standard b%.2d"},
    {"requestString", "body inertial_sensor standard b%.2d"},
    {"requestString", "body inertial_sensor %s"},
    {"requestInt", "body number_of_bodies multiuserwandor_head"},
    {"requestString", "body calibrated multiuserwandor_head b%2.2d"},
    {"requestString", "body active multiuserwandor_head b%2.2d"},
    {"requestInt", "wandor number_of_devices"},
    {"requestString", "body calibrated wandor b%.2d"},
    {"requestString", "wandor multiuser_available"},
    {"requestString", "wandor multiuser"},
    {"requestString", "wandor multiuser_with_head_available"},
    {"requestString", "wandor multiuser_with_head"},
    {"requestString", "tracking reference"},
    {"requestString", "output available %s"},
    {"requestString", "output active chmon %s"},
    {"sendCommand", "output active chmon %s yes"},
    {"requestString", "inertial available"},
    {"requestInt", "inertial number_of_sensors"},
    {"requestString", "inertial sensor d%.2d"},
    {"requestString", "inertial body_of_sensor %s"},
    {"requestString", "inertial sensor_present %s"},
    {"requestDouble", "inertial sensor_battery %s"},
    {"requestDoubles", "inertial sensor_temperature %s"},
    {"requestString", "config is_changeable"},
    {"requestString", "filter6d available standard"},
    {"requestString", "filter6d available wandor"},
    {"requestDouble", "filter6d limit strength_min"},
    {"requestDouble", "filter6d limit strength_max"},
    {"requestDouble", "filter6d limit prediction_min"},
    {"requestDouble", "filter6d limit prediction_max"},
    {"requestInt", "filter6d number_of_modes"},
    {"requestInt", "filter6d number_of_presets"},
    {"requestString", "filter6d mode_id t%.2d"},
    {"requestString", "filter6d mode_id t%02d"},
    {"requestString", "filter6d preset_id t%.2d"},
    {"requestString", "filter6d preset_id t%02d"},
    {"requestString", "filter6d mode_desc %s"},
    {"requestString", "filter6d preset_desc %s"},
    {"requestBool", "body filter6d_mode_available %s %s"},
    {"requestBool", "body filter6d_preset_available %s %s"},
    {"requestString", "body filter6d_enabled standard b%.2d"},
    {"requestString", "body filter6d_enabled %s"},
    {"requestString", "body filter6d_mode %s"},
    {"requestString", "body filter6d_preset %s"},
    {"requestDouble", "body filter6d_strength %s"},
    {"requestDouble", "body filter6d_prediction %s"},
    {"sendCommand", "body filter6d_enabled %s %s"},
    {"sendCommand", "body filter6d_mode %s %s"},
    {"sendCommand", "body filter6d_preset %s %s"},
    {"sendCommand", "body filter6d_strength %s %f"},
    {"sendCommand", "body filter6d_prediction %s %f"},
};

bool isKnown(const char *operation, const char *format)
{
    return std::any_of(std::begin(knownFormats), std::end(knownFormats), [=](const KnownFormat &known) {
        return qstrcmp(known.operation, operation) == 0 && qstrcmp(known.format, format) == 0;
    });
}

HandMadeHost &enter(void *self, const char *operation, const QByteArray &text)
{
    auto &host = *static_cast<HandMadeHost *>(self);
    if (QThread::currentThread() != QCoreApplication::instance()->thread())
        qFatal("%s called on a thread other than the GUI's", operation);
    host.calls.append(text.isEmpty() ? QByteArray(operation) : QByteArray(operation) + ": " + text);
    if (host.onCall)
        host.onCall();
    return host;
}

/// Records the question or command and returns its text. A format that is not known is not used as one.
Q_ATTRIBUTE_FORMAT_PRINTF(3, 0)
QByteArray ask(void *self, const char *operation, const char *format, va_list arguments)
{
    if (!isKnown(operation, format)) {
        enter(self, operation, format).violations.append(QByteArray(operation) + " with the format " + format);
        return format;
    }
    char text[1024];
    std::vsnprintf(text, sizeof text, format, arguments);
    enter(self, operation, text);
    return text;
}

bool isAnswered(void *self, const QByteArray &question)
{
    return static_cast<HandMadeHost *>(self)->answers.contains(question);
}

QByteArray answerTo(void *self, const QByteArray &question)
{
    return static_cast<HandMadeHost *>(self)->answers.value(question);
}

int failureOf(void *self)
{
    return static_cast<HandMadeHost *>(self)->failure;
}

// On failure every storage gets a value that would be noticed if it were used.

Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) int requestString(void *self, char *answer, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QByteArray question = ask(self, "requestString", format, arguments);
    va_end(arguments);
    const bool answered = isAnswered(self, question);
    const QByteArray text = answered ? answerTo(self, question) : QByteArrayLiteral("yes");
    std::memcpy(answer, text.constData(), static_cast<std::size_t>(text.size()) + 1);
    return answered ? 0 : failureOf(self);
}

Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) int requestInt(void *self, qint32 *answer, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QByteArray question = ask(self, "requestInt", format, arguments);
    va_end(arguments);
    *answer = isAnswered(self, question) ? answerTo(self, question).toInt() : 7;
    return isAnswered(self, question) ? 0 : failureOf(self);
}

Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) int requestDouble(void *self, double *answer, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QByteArray question = ask(self, "requestDouble", format, arguments);
    va_end(arguments);
    *answer = isAnswered(self, question) ? answerTo(self, question).toDouble() : 0.7;
    return isAnswered(self, question) ? 0 : failureOf(self);
}

Q_ATTRIBUTE_FORMAT_PRINTF(3, 4) int requestBool(void *self, bool *answer, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QByteArray question = ask(self, "requestBool", format, arguments);
    va_end(arguments);
    *answer = isAnswered(self, question) ? answerTo(self, question) == "yes" : true;
    return isAnswered(self, question) ? 0 : failureOf(self);
}

Q_ATTRIBUTE_FORMAT_PRINTF(4, 5)
int requestDoubles(void *self, double *answers, qint32 count, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QByteArray question = ask(self, "requestDoubles", format, arguments);
    va_end(arguments);
    if (count != 2)
        static_cast<HandMadeHost *>(self)->violations.append("requestDoubles for " + QByteArray::number(count));
    const QByteArrayList numbers = answerTo(self, question).split(' ');
    for (int i = 0; i < count; ++i)
        answers[i] = numbers.value(i, "0.7").toDouble();
    return isAnswered(self, question) ? 0 : failureOf(self);
}

Q_ATTRIBUTE_FORMAT_PRINTF(2, 3) int sendCommand(void *self, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QByteArray command = ask(self, "sendCommand", format, arguments);
    va_end(arguments);
    return static_cast<HandMadeHost *>(self)->refusedCommands.contains(command) ? failureOf(self) : 0;
}

void checkRequester(HandMadeHost &host, const char *operation, const void *requester)
{
    if (!host.isRequesterRegistered || requester != host.requester)
        host.violations.append(QByteArray(operation) + " with a requester that is not registered");
}

void startOutput(void *self, const char *tag, void *requester)
{
    checkRequester(enter(self, "startOutput", tag), "startOutput", requester);
}

void stopOutput(void *self, const char *tag, void *requester)
{
    checkRequester(enter(self, "stopOutput", tag), "stopOutput", requester);
}

void registerRequester(void *self, void *requester)
{
    auto &host = *static_cast<HandMadeHost *>(self);
    if (host.isRequesterRegistered || !requester)
        host.violations.append("registerRequester twice or without a requester");
    host.requester = requester;
    host.isRequesterRegistered = true;
    enter(self, "registerRequester", {});
}

void unregisterRequester(void *self, void *requester)
{
    HandMadeHost &host = enter(self, "unregisterRequester", {});
    checkRequester(host, "unregisterRequester", requester);
    host.isRequesterRegistered = false;
}

void logMessage(void *self, const char *category, const char *sender, qint32 level, const char *text)
{
    enter(self, "logMessage", QByteArray(category) + ' ' + sender + ' ' + QByteArray::number(level) + ' ' + text);
}

[[noreturn]] void reserved(void *)
{
    qFatal("A reserved entry of the command channel was called");
}

template<typename Function> HandMadeHost::Entry entry(Function *function)
{
    return reinterpret_cast<HandMadeHost::Entry>(function);
}

// What stands in front of the first function: the distance to the start of the object and the type's name. The plug-in
// reads neither; the undefined-behaviour sanitizer does, before it lets a virtual call pass.
struct OperationTable {
    std::ptrdiff_t distanceToTop;
    const std::type_info *type;
    std::array<HandMadeHost::Entry, 17> entries;
};
static_assert(offsetof(OperationTable, entries) == 2 * sizeof(void *));

const abi::__class_type_info channelType("9IOManager");

const OperationTable operations = {
    0,
    &channelType,
    {entry(reserved), entry(reserved), entry(reserved), entry(reserved), entry(reserved), entry(requestString),
     entry(requestInt), entry(requestDouble), entry(requestBool), entry(requestDoubles), entry(reserved),
     entry(sendCommand), entry(startOutput), entry(stopOutput), entry(registerRequester), entry(unregisterRequester),
     entry(logMessage)},
};

} // namespace

HandMadeHost::HandMadeHost()
    : table(operations.entries.data())
{
}

void HandMadeHost::answerAsSmallSetup()
{
    answers.clear();
    changeScript(R"(
        standard number_of_bodies=2
        standard fixed_angle_present=no
        output available 6d=yes
        output available 6di=yes
        output available 3d=yes
        output active chmon 6d=yes
        output active chmon 6di=yes
        output active chmon 3d=yes
        wandor multiuser_available=no
        body calibrated standard b01=yes
        body calibrated standard b02=no
        body active standard b01=yes
        body active standard b02=yes
        body desc standard b01="Left hand"
        body filter6d_enabled standard b01=yes
        body inertial_sensor standard b01=none
        body inertial_sensor standard b02=none
        tracking reference=none
        inertial available=no
    )");
}

void HandMadeHost::changeScript(const char *changes)
{
    const QByteArrayList list = linesOf(changes);
    for (const QByteArray &change : list) {
        const int equals = change.indexOf('=');
        const QByteArray text = change.chopped(1);
        if (equals >= 0)
            answers.insert(change.left(equals), change.mid(equals + 1));
        else if (change.endsWith('~'))
            refusedCommands.insert(text);
        else if (!change.endsWith('!') || answers.remove(text) == 0)
            qFatal("Nothing to change: %s", change.constData());
    }
}

QByteArrayList HandMadeHost::takeCalls()
{
    QByteArrayList taken;
    for (const QByteArray &call : qAsConst(calls)) {
        if (!call.contains(": inertial sensor_"))
            taken.append(call);
    }
    calls.clear();
    return taken;
}

QByteArrayList HandMadeHost::takeLog()
{
    const QByteArray prefix = QByteArrayLiteral("logMessage: ");
    QByteArrayList log;
    const QByteArrayList taken = takeCalls();
    for (const QByteArray &call : taken) {
        if (call.startsWith(prefix))
            log.append(call.mid(prefix.size()));
    }
    return log;
}

QByteArrayList linesOf(const char *text)
{
    QByteArrayList lines;
    const QByteArrayList all = QByteArray(text).split('\n');
    for (const QByteArray &line : all) {
        if (const QByteArray trimmed = line.trimmed(); !trimmed.isEmpty())
            lines.append(trimmed);
    }
    return lines;
}
