// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/hostile/hostilefile.h"

#include <QDir>
#include <QFile>

QString hostilePath(const QString &folder, const QString &name)
{
    return QStringLiteral(HOSTILE_FOLDER "/") + folder + QLatin1Char('/') + name;
}

QByteArray hostileInput(const QString &folder, const QString &name)
{
    QFile file(hostilePath(folder, name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s can't be read", qPrintable(file.fileName()));
    if (!name.endsWith(QLatin1String(".recipe")))
        return file.readAll();
    QByteArray input;
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        if (line.endsWith('\n'))
            line.chop(1);
        const int blank = line.indexOf(' ');
        input += line.mid(blank + 1).repeated(line.left(blank).toInt());
    }
    return input;
}

QStringList hostileNames(const QString &folder)
{
    return QDir(hostilePath(folder, QString())).entryList(QDir::Files, QDir::Name);
}
