// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/structure/sourcetree.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

SourceTree::SourceTree(const QString &root)
    : rootFolder(root)
{
    const QDir top(root);
    QDirIterator folders(root, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (folders.hasNext()) {
        const QString file = top.relativeFilePath(folders.next());
        if (!file.startsWith(QLatin1String("build/")))
            allFiles.append(file);
    }
    allFiles.sort();
}

QString SourceTree::textOf(const QString &file) const
{
    QFile source(rootFolder + QLatin1Char('/') + file);
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}

QVector<IncludeLine> SourceTree::includesOf(const QString &file) const
{
    static const QRegularExpression include(QStringLiteral(R"(^\s*#\s*include\s*(["<])([^">]+)[">])"));
    QVector<IncludeLine> includes;
    const QStringList lines = textOf(file).split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QRegularExpressionMatch match = include.match(lines.at(i));
        if (match.hasMatch())
            includes.append({i + 1, match.captured(1) == QLatin1String("\""), match.captured(2)});
    }
    return includes;
}

QSet<QString> SourceTree::foreignIncludesOf(const QString &file) const
{
    QSet<QString> foreign;
    QSet<QString> seen{file};
    QStringList pending{file};
    while (!pending.isEmpty()) {
        const QString next = pending.takeLast();
        const QVector<IncludeLine> includes = includesOf(next);
        for (const IncludeLine &include : includes) {
            if (include.path.startsWith(QLatin1String("ui_"))) {
                foreign.insert(QStringLiteral("QtWidgets"));
            } else if (!include.quoted) {
                foreign.insert(include.path);
            } else if (!seen.contains(include.path)) {
                seen.insert(include.path);
                pending.append(include.path);
            }
        }
    }
    return foreign;
}

QString folderOf(const QString &file)
{
    return file.left(qMax(file.lastIndexOf(QLatin1Char('/')), 0));
}
