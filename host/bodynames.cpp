// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/bodynames.h"

namespace host {

void BodyNames::note(const QByteArray &query, const QByteArray &answer)
{
    static const QByteArray nameOfBody = QByteArrayLiteral("body desc standard b");
    if (query.startsWith(nameOfBody)) {
        bool isNumber = false;
        const int number = query.mid(nameOfBody.size()).toInt(&isNumber);
        // Operators see the name without the quotes of the command channel.
        const QString name = QString::fromUtf8(answer).remove(QLatin1Char('"')).simplified();
        const std::lock_guard lock(mutex);
        if (isNumber)
            names.insert(number, name);
    } else if (query == "wandor multiuser_with_head") {
        const std::lock_guard lock(mutex);
        usesHeads = answer.trimmed() == "yes";
    } else if (query == "body number_of_bodies multiuserwandor_head") {
        const std::lock_guard lock(mutex);
        headCount = answer.trimmed().toInt();
    }
}

void BodyNames::clear()
{
    const std::lock_guard lock(mutex);
    names.clear();
    usesHeads = false;
    headCount = 0;
}

QString BodyNames::label(qint32 id) const
{
    const std::lock_guard lock(mutex);
    const bool hasHead = usesHeads && headCount > 0;
    if (hasHead && id == 0)
        return tr("MUH");
    const qint64 number = qint64(id) + 1;
    const QString name = names.value(static_cast<int>(hasHead ? number - 1 : number));
    return name.isEmpty() ? tr("body %1").arg(number) : tr("%1 %2").arg(QString::number(number), name);
}

} // namespace host
