// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "storetext.h"

#include "tests/support/lockstate.h"

#include <QByteArrayList>

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

QByteArray bodiesText(TrackingData &data)
{
    const TrackingData::Locked stores = data.lock();
    QByteArrayList bodies;
    for (const BodyRecord &body : stores->bodyRecords) {
        bodies += QByteArray::number(body.id) + ' ' + QByteArray::number(static_cast<double>(body.quality)) + ' '
            + QByteArray::number(body.state) + ' ' + QByteArray::number(body.reserved) + " | " + joined(body.position)
            + " | " + joined(body.angles) + " | " + joined(body.rotation);
    }
    return bodies.join("; ");
}

QByteArray markersText(TrackingData &data)
{
    const TrackingData::Locked stores = data.lock();
    QByteArrayList markers;
    for (const std::unique_ptr<MarkerRecord> &marker : stores->markerRecords) {
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
    if (!isLockFree(data))
        throw std::logic_error("the lock is still held");
    return outcome;
}
