// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

/// One #include line of a source file.
struct IncludeLine {
    int number = 0; ///< of the line, from 1
    bool quoted = false; ///< "..." and not <...>
    QString path; ///< as written
};

/// Reads the sources below a root folder. Files are named by their path from there.
class SourceTree {
public:
    explicit SourceTree(const QString &root);

    /// All C++ sources and headers, sorted; those of the build, which are not ours, left out.
    const QStringList &files() const { return allFiles; }
    /// Empty where there is no such file.
    QString textOf(const QString &file) const;
    QVector<IncludeLine> includesOf(const QString &file) const;
    /// What a file includes in <...>, by itself or by way of our headers. A form's header stands for <QtWidgets>.
    QSet<QString> foreignIncludesOf(const QString &file) const;

private:
    QString rootFolder;
    QStringList allFiles;
};

/// "a/b" of "a/b/c.h", and nothing of "c.h".
QString folderOf(const QString &file);
