// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "storetext.h"

#include <QByteArrayList>

#include <mutex>
#include <stdexcept>

namespace {

template<std::size_t size> QByteArray joined(const std::array<float, size> &numbers)
{
    QByteArrayList words;
    for (const float number : numbers)
        words += QByteArray::number(static_cast<double>(number));
    return words.join(' ');
}

} // namespace

QByteArray bodiesText(const TrackingData &data)
{
    QByteArrayList bodies;
    for (const BodyRecord &body : data.bodyRecords) {
        bodies += QByteArray::number(body.id) + ' ' + QByteArray::number(static_cast<double>(body.quality)) + ' '
            + QByteArray::number(body.state) + ' ' + QByteArray::number(body.reserved) + " | " + joined(body.position)
            + " | " + joined(body.angles) + " | " + joined(body.rotation);
    }
    return bodies.join("; ");
}

QByteArray markersText(const TrackingData &data)
{
    QByteArrayList markers;
    for (const std::unique_ptr<MarkerRecord> &marker : data.markerRecords) {
        markers += QByteArray::number(marker->id) + ' ' + QByteArray::number(static_cast<double>(marker->quality))
            + " | " + joined(marker->position);
    }
    return markers.join("; ");
}

LineOutcome receiveCopy(TrackingData &data, const char *tag, const QByteArray &line)
{
    QByteArray copy(line.constData(), line.size());
    const LineOutcome outcome = data.receive(tag, copy.data());
    if (copy != line)
        throw std::logic_error("the line was changed");
    if (!std::unique_lock(data.dataMutex, std::try_to_lock).owns_lock())
        throw std::logic_error("the lock is still held");
    return outcome;
}
