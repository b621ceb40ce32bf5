// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QDir>

PanelFixture::PanelFixture(int major, int minor, int patch)
{
    versions.backendMajor = major;
    versions.backendMinor = minor;
    versions.backendPatch = patch;
    qputenv("HOME", QFile::encodeName(home.path()));
    answer("standard number_of_bodies", "0");
    answer("standard fixed_angle_present", "false");
    answer("wandor multiuser_available", "no");
    answer("inertial available", "no");
    answer("tracking reference", "none");
    for (const char *const tag : {"6d", "6di", "3d"}) {
        answer(QStringLiteral("output available %1").arg(QLatin1String(tag)), QStringLiteral("yes"));
        answer(QStringLiteral("output active chmon %1").arg(QLatin1String(tag)), QStringLiteral("yes"));
    }
}

DataDisplay &PanelFixture::createPanel()
{
    panel = std::make_unique<DataDisplay>(&host, nullptr, &versions, QStringLiteral("v2.2.6"));
    return *panel;
}

DataDisplay &PanelFixture::createConfiguredPanel()
{
    createPanel();
    panel->configurationChanged();
    takeCalls();
    return *panel;
}

void PanelFixture::answerBodies(int count)
{
    answer(QStringLiteral("standard number_of_bodies"), QString::number(count));
    for (int i = 1; i <= count; ++i) {
        const QString number = QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0'));
        answer(QStringLiteral("body calibrated standard b%1").arg(number), QStringLiteral("yes"));
        answer(QStringLiteral("body active standard b%1").arg(number), QStringLiteral("yes"));
        answer(QStringLiteral("body desc standard b%1").arg(number), QStringLiteral("Body %1").arg(i));
        answer(QStringLiteral("body filter6d_enabled standard b%1").arg(number), QStringLiteral("no"));
        answer(QStringLiteral("body inertial_sensor standard b%1").arg(number), QStringLiteral("none"));
    }
}

void PanelFixture::answerHead()
{
    for (const char *const question : {"wandor multiuser_available", "wandor multiuser",
                                       "wandor multiuser_with_head_available", "wandor multiuser_with_head"})
        answer(question, "yes");
    answer("body number_of_bodies multiuserwandor_head", "1");
    answer("body calibrated multiuserwandor_head b01", "yes");
    answer("body active multiuserwandor_head b01", "yes");
}

void PanelFixture::answerSensors(const QList<int> &bodies)
{
    answer("inertial available", "yes");
    answer(QStringLiteral("inertial number_of_sensors"), QString::number(bodies.size()));
    for (int i = 1; i <= bodies.size(); ++i) {
        const QString body = QStringLiteral("standard b%1").arg(bodies.at(i - 1), 2, 10, QLatin1Char('0'));
        const QString sensor = QStringLiteral("d%1").arg(i, 2, 10, QLatin1Char('0'));
        answer(QStringLiteral("inertial sensor %1").arg(sensor), sensor);
        answer(QStringLiteral("inertial body_of_sensor %1").arg(sensor), body);
        answer(QStringLiteral("body inertial_sensor %1").arg(body), sensor);
        answer(QStringLiteral("inertial sensor_present %1").arg(sensor), QStringLiteral("yes"));
        answer(QStringLiteral("inertial sensor_battery %1").arg(sensor), QStringLiteral("0.5"));
        answer(QStringLiteral("inertial sensor_temperature %1").arg(sensor), QStringLiteral("31.5 0.97"));
    }
}

void PanelFixture::answer(const char *command, const char *text)
{
    answer(QLatin1String(command), QString::fromUtf8(text));
}

QStringList PanelFixture::takeCalls()
{
    QStringList taken;
    for (const QByteArray &call : host.takeCalls())
        taken << QString::fromLatin1(call); // as log texts are
    return taken;
}

QStringList PanelFixture::logs(const QStringList &calls)
{
    QStringList texts;
    for (const QString &call : calls) {
        if (call.startsWith(QLatin1String("log ")))
            texts << call.mid(4);
    }
    return texts;
}

QString PanelFixture::text(int row, int column) const
{
    const QTableWidgetItem *const item = table6d().item(row, column);
    return item ? item->text() : QStringLiteral("<no item>");
}

QStringList PanelFixture::reconfigure()
{
    takeCalls();
    panel->configurationChanged();
    return takeCalls();
}

QString PanelFixture::preferencesDir() const
{
    return home.path() + QStringLiteral("/.ZEL/VORNAK4/modules/datadisplay/v2.2.6/config");
}

void PanelFixture::writePreferences(const QByteArray &content) const
{
    QDir().mkpath(preferencesDir());
    QFile file(preferencesFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("the test can't write its preferences file");
}

QByteArray bodyText(int id, const char *state, const char *quality, const char *position)
{
    return "[" + QByteArray::number(id) + ' ' + state + ' ' + quality + "][" + position + "][1 0 0 0 1 0 0 0 1]";
}
