// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

/// What a class declares by itself.
struct ClassSize {
    QString name;
    bool isStruct = false;
    int functions =
        0; ///< signals and slots too; no constructor, destructor, override, deleted or friend one, no on_a_b()
    int members = 0; ///< of objects: none that are static
};

/// The classes and structs that a source text defines, nested ones too, in the order of their ends.
/// Not supported: members that are pointers to functions, definitions by macro; both count as functions or not at all.
QVector<ClassSize> classesOf(const QString &text);
