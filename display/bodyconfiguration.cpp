// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/bodyconfiguration.h"

#include "channel/query.h"
#include "channel/version.h"
#include "interface/iomanager.h"

#include <QStringList>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

/// Unwinds a reading that is no longer wanted.
struct GivenUp { };

class Reader {
public:
    Reader(IOManager &ioManager, const BackendVersions &backendVersions, const ConfigurationSteps &betweenQuestions)
        : io(ioManager)
        , versions(backendVersions)
        , steps(betweenQuestions)
    {
    }

    BodyConfiguration read();

private:
    void readLayout();
    void readCalibrated();
    void readActive();
    void readRows();
    void readReference();
    void readSensorUse();
    bool hasHeadRow();
    bool isHeadTargetReady();
    qint32 headTargetCount();
    QString bodyDescription(int row);
    QByteArray sensor(int row);
    bool isAnySensorInUse();

    bool versionIsAtLeast(int major, int minor) const { return versionAtLeast(versions, major, minor); }
    void checkWanted() const
    {
        if (steps.isWanted && !steps.isWanted())
            throw GivenUp();
    }
    /// Passes on the \a result of a query, unless nobody wants it any more.
    int wanted(int result) const
    {
        checkWanted();
        return result;
    }

    IOManager &io;
    const BackendVersions &versions;
    const ConfigurationSteps &steps;
    BodyConfiguration configuration;
};

BodyConfiguration Reader::read()
{
    readLayout();
    if (steps.layoutRead)
        steps.layoutRead(configuration);
    checkWanted();
    readCalibrated();
    readActive();
    if (steps.listsRead)
        steps.listsRead();
    checkWanted();
    readRows();
    readReference();
    readSensorUse();
    checkWanted();
    return std::move(configuration);
}

void Reader::readLayout()
{
    Query query(io);
    configuration.numBodies =
        query.count(wanted(io.requestInt(query.intBuffer(), "standard number_of_bodies")), "get number of bodies");
    configuration.hasHeadRow = hasHeadRow();
    configuration.fixedAnglePresent = readFixedAngles(io, versions);
    checkWanted();
    configuration.rows.resize(qMax(configuration.numBodies + configuration.headRowCount(), 0));
}

bool Reader::hasHeadRow()
{
    Query query(io);
    if (!query.isNotNo(wanted(io.requestString(query.textBuffer(), "wandor multiuser_available")),
                       "get info multiuser wandor available"))
        return false;
    if (!query.isNotNo(wanted(io.requestString(query.textBuffer(), "wandor multiuser")),
                       "get info multiuser wandor activated"))
        return false;
    if (versionIsAtLeast(0, 13)
        && !query.isNotNo(wanted(io.requestString(query.textBuffer(), "wandor multiuser_with_head_available")),
                          "get info multiuser wandor with head available"))
        return false;
    if (!query.isNotNo(wanted(io.requestString(query.textBuffer(), "wandor multiuser_with_head")),
                       "get info multiuser wandor with head activated"))
        return false;
    return headTargetCount() > 0;
}

qint32 Reader::headTargetCount()
{
    Query query(io);
    return query.count(wanted(io.requestInt(query.intBuffer(), "body number_of_bodies multiuserwandor_head")),
                       "get number of multiuser head targets");
}

void Reader::readCalibrated()
{
    if (configuration.hasHeadRow && !configuration.rows.isEmpty())
        configuration.rows[0].calibrated = isHeadTargetReady();
    Query query(io);
    for (int row = configuration.headRowCount(); row < configuration.rows.size(); ++row) {
        configuration.rows[row].calibrated = query.isYes(wanted(io.requestString(
            query.textBuffer(), "body calibrated standard b%2.2d", configuration.bodyNumberOfRow(row))));
    }
}

bool Reader::isHeadTargetReady()
{
    const qint32 count = headTargetCount();
    Query query(io);
    bool ready = false;
    for (qint32 target = 1; target <= count; ++target) {
        const auto calibrated = query.text(
            wanted(io.requestString(query.textBuffer(), "body calibrated multiuserwandor_head b%2.2d", target)),
            "get info multiuser head target is calibrated");
        if (!calibrated)
            return false;
        if (*calibrated != "yes")
            continue;
        const auto active =
            query.text(wanted(io.requestString(query.textBuffer(), "body active multiuserwandor_head b%2.2d", target)),
                       "get info multiuser head target is activated");
        if (!active)
            return false;
        ready = ready || *active == "yes";
    }
    return ready;
}

void Reader::readActive()
{
    if (configuration.hasHeadRow && !configuration.rows.isEmpty())
        configuration.rows[0].active = true;
    Query query(io);
    for (int row = configuration.headRowCount(); row < configuration.rows.size(); ++row) {
        configuration.rows[row].active = query.isYes(wanted(
            io.requestString(query.textBuffer(), "body active standard b%2.2d", configuration.bodyNumberOfRow(row))));
    }
}

void Reader::readRows()
{
    for (int row = 0; row < configuration.rows.size(); ++row) {
        configuration.rows[row].name = bodyDescription(row);
        configuration.rows[row].filterActive = !filterActiveText(io, versions, configuration, row).isEmpty();
        checkWanted();
    }
    for (int row = configuration.headRowCount(); row < configuration.rows.size(); ++row)
        configuration.rows[row].sensor = sensor(row);
}

QString Reader::bodyDescription(int row)
{
    if (configuration.isHeadRow(row) || !configuration.rows.value(row).calibrated || !versionIsAtLeast(0, 16))
        return {};
    Query query(io);
    const auto answer = query.text(
        wanted(io.requestString(query.textBuffer(), "body desc standard b%.2d", configuration.bodyNumberOfRow(row))));
    return unquoted(answer.value_or(QByteArray()));
}

QByteArray Reader::sensor(int row)
{
    if (!versionIsAtLeast(1, 12))
        return "none";
    Query query(io);
    const auto answer = query.text(wanted(io.requestString(query.textBuffer(), "body inertial_sensor standard b%.2d",
                                                           configuration.bodyNumberOfRow(row))));
    return answer.value_or("none");
}

void Reader::readReference()
{
    if (!versionIsAtLeast(1, 24))
        return;
    Query query(io);
    const auto answer = query.text(wanted(io.requestString(query.textBuffer(), "tracking reference")));
    if (!answer || *answer == "none")
        return;
    const QStringList parts = QString::fromUtf8(*answer).split(QLatin1Char(' '));
    if (parts.size() < 2 || parts[0] != QLatin1String("standard"))
        return;
    bool isNumber = false;
    const int number = parts[1].midRef(1).toInt(&isNumber);
    if (!isNumber)
        return;
    // No body below 1, and no overflow.
    configuration.referenceRow = configuration.hasHeadRow ? number : qMax(number, 0) - 1;
    configuration.referenceName = bodyDescription(configuration.referenceRow).trimmed();
    if (configuration.referenceName.isEmpty())
        configuration.referenceName = QStringLiteral("reference");
}

void Reader::readSensorUse()
{
    if (!versionIsAtLeast(1, 12))
        return;
    Query query(io);
    configuration.inertialAvailable = query.isYes(wanted(io.requestString(query.textBuffer(), "inertial available")));
    if (configuration.inertialAvailable)
        configuration.inertialInUse = isAnySensorInUse();
}

bool Reader::isAnySensorInUse()
{
    Query query(io);
    const qint32 count = query.count(wanted(io.requestInt(query.intBuffer(), "inertial number_of_sensors")));
    for (qint32 number = 1; number <= count; ++number) {
        const auto id = query.text(wanted(io.requestString(query.textBuffer(), "inertial sensor d%.2d", number)));
        if (!id)
            return false;
        const auto body =
            query.text(wanted(io.requestString(query.textBuffer(), "inertial body_of_sensor %s", id->constData())));
        if (body.value_or("none") != "none")
            return true;
    }
    return false;
}

} // namespace

QVector<bool> BodyConfiguration::calibratedRows() const
{
    QVector<bool> calibrated;
    std::transform(rows.begin(), rows.end(), std::back_inserter(calibrated),
                   [](const BodyRow &row) { return row.calibrated; });
    return calibrated;
}

std::optional<BodyConfiguration> readBodyConfiguration(IOManager &io, const BackendVersions &versions,
                                                       const ConfigurationSteps &steps)
try {
    return Reader(io, versions, steps).read();
} catch (const GivenUp &) {
    return std::nullopt;
}

bool readFixedAngles(IOManager &io, const BackendVersions &versions)
{
    if (!versionAtLeast(versions, 1, 12))
        return false;
    Query query(io);
    return query.flag(io.requestBool(query.boolBuffer(), "standard fixed_angle_present"), "get fixed angle present");
}

QString filterActiveText(IOManager &io, const BackendVersions &versions, const BodyConfiguration &configuration,
                         int row)
{
    if (configuration.isHeadRow(row) || !configuration.rows.value(row).calibrated || !versionAtLeast(versions, 1, 12))
        return {};
    Query query(io);
    return filterActiveText(query.isYes(io.requestString(query.textBuffer(), "body filter6d_enabled standard b%.2d",
                                                         configuration.bodyNumberOfRow(row))));
}

QString filterActiveText(bool active)
{
    return active ? QStringLiteral("active") : QString();
}
