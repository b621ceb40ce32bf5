// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/hostiomanager.h"

#include "backend/trackingbackend.h"
#include "host/commandformat.h"
#include "host/hostlog.h"
#include "interface/requester.h"

#include <QList>

#include <algorithm>
#include <cstring>
#include <vector>

namespace host {

// The variable arguments must be read by the function that received them.
#define FORMAT_ARGUMENTS(text, format)                                                                                 \
    va_list values;                                                                                                    \
    va_start(values, format);                                                                                          \
    const QByteArray text = formatCommand(format, values);                                                             \
    va_end(values)

namespace {

constexpr int failed = -1;
constexpr int longestAnswer = 199; // modules reserve 200 bytes, one of them for the zero

QByteArray cutToAnswer(const QByteArray &text)
{
    if (text.size() <= longestAnswer)
        return text;
    int end = longestAnswer;
    while (end > longestAnswer - 3 && (static_cast<uchar>(text.at(end)) & 0xC0U) == 0x80U)
        --end;
    return text.left(end);
}

} // namespace

HostIOManager::HostIOManager(HostLog &log)
    : log(log)
{
}

int HostIOManager::requestString(char *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    const std::optional<QByteArray> text = ask(query);
    if (!text)
        return failed;
    const QByteArray shortened = cutToAnswer(*text);
    std::memcpy(answer, shortened.constData(), static_cast<std::size_t>(shortened.size()) + 1);
    return 0;
}

int HostIOManager::requestInt(qint32 *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    const std::optional<QByteArray> text = ask(query);
    if (!text)
        return failed;
    bool valid = false;
    const qint32 number = text->trimmed().toInt(&valid);
    if (!valid)
        return refuse(query, *text);
    *answer = number;
    return 0;
}

int HostIOManager::requestDouble(double *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    const std::optional<QByteArray> text = ask(query);
    if (!text)
        return failed;
    bool valid = false;
    const double number = text->trimmed().toDouble(&valid);
    if (!valid)
        return refuse(query, *text);
    *answer = number;
    return 0;
}

int HostIOManager::requestBool(bool *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    const std::optional<QByteArray> text = ask(query);
    if (!text)
        return failed;
    const QByteArray word = text->trimmed();
    const bool isTrue = word == "yes" || word == "true" || word == "1";
    if (!isTrue && word != "no" && word != "false" && word != "0")
        return refuse(query, *text);
    *answer = isTrue;
    return 0;
}

int HostIOManager::requestDoubles(double *answers, qint32 count, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    const std::optional<QByteArray> text = ask(query);
    if (!text)
        return failed;
    const QByteArray words = text->simplified();
    const QList<QByteArray> parts = words.isEmpty() ? QList<QByteArray>() : words.split(' ');
    if (parts.size() != count)
        return refuse(query, *text);
    std::vector<double> numbers;
    for (const QByteArray &part : parts) {
        bool valid = false;
        numbers.push_back(part.toDouble(&valid));
        if (!valid)
            return refuse(query, *text);
    }
    std::copy(numbers.begin(), numbers.end(), answers);
    return 0;
}

int HostIOManager::sendCommand(const char *format, ...)
{
    FORMAT_ARGUMENTS(command, format);
    const std::shared_ptr<backend::TrackingBackend> target = connectedBackend();
    if (target && target->command(command))
        return 0;
    const QString reason = target ? tr("The backend refused the command \"%1\".")
                                  : tr("No backend is connected to take the command \"%1\".");
    log.warning(reason.arg(QString::fromUtf8(command)));
    return failed;
}

void HostIOManager::startOutput(const char *tag, Requester *requester)
{
    if (outputSubscriptions.subscribe(QByteArray(tag), requester))
        return;
    log.warning(tr("Output \"%1\" was asked for by a requester that is not registered.").arg(QString::fromUtf8(tag)));
}

void HostIOManager::stopOutput(const char *tag, Requester *requester)
{
    outputSubscriptions.unsubscribe(QByteArray(tag), requester);
}

void HostIOManager::registerRequester(Requester *requester)
{
    outputSubscriptions.add(requester);
}

void HostIOManager::unregisterRequester(Requester *requester)
{
    outputSubscriptions.remove(requester);
}

void HostIOManager::logMessage(const char *category, const char *sender, qint32 level, const char *text)
{
    log.add(level, QString::fromLatin1(category), QString::fromLatin1(sender), QString::fromLatin1(text));
}

void HostIOManager::setBackend(std::shared_ptr<backend::TrackingBackend> newBackend)
{
    names.clear();
    const std::lock_guard lock(backendMutex);
    backend.swap(newBackend); // the old one is destroyed with the argument, after the lock
}

void HostIOManager::announceConfiguration()
{
    announce(&Requester::configurationChanged);
}

void HostIOManager::announceDisconnect()
{
    announce(&Requester::clearData);
}

void HostIOManager::announce(void (Requester::*call)())
{
    for (Requester *requester : outputSubscriptions.all()) {
        if (!outputSubscriptions.contains(requester)) // one may have removed another
            continue;
        try {
            (requester->*call)();
        } catch (...) {
            log.warning(tr("A module failed when the backend was connected or disconnected."));
        }
    }
}

std::optional<QByteArray> HostIOManager::ask(const QByteArray &query)
{
    const std::shared_ptr<backend::TrackingBackend> source = connectedBackend();
    if (!source) {
        log.warning(tr("No backend is connected to answer \"%1\".").arg(QString::fromUtf8(query)));
        return std::nullopt;
    }
    std::optional<QByteArray> answer = source->request(query);
    if (answer)
        names.note(query, *answer);
    else
        log.warning(tr("The backend has no answer to \"%1\".").arg(QString::fromUtf8(query)));
    return answer;
}

int HostIOManager::refuse(const QByteArray &query, const QByteArray &answer)
{
    log.warning(tr(R"(The backend's answer to "%1" can't be used: "%2".)")
                    .arg(QString::fromUtf8(query), QString::fromUtf8(answer)));
    return failed;
}

std::shared_ptr<backend::TrackingBackend> HostIOManager::connectedBackend()
{
    const std::lock_guard lock(backendMutex);
    return backend;
}

} // namespace host
