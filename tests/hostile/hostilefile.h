// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Where the input \a name of \a folder ("lines") is kept.
QString hostilePath(const QString &folder, const QString &name);

/// What the input holds; a recipe is followed. Ends the process where there is no such file.
QByteArray hostileInput(const QString &folder, const QString &name);

/// The names of all inputs of \a folder, sorted, for a test that wants a row for each.
QStringList hostileNames(const QString &folder);
