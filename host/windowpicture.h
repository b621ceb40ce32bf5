// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPixmap>

class QMainWindow;
class QString;

namespace host {

/// The format that the end of \a fileName stands for, PNG where it has none; empty for one that Qt can't write.
QByteArray pictureFormat(const QString &fileName);

/// The window and, at their places on the screen, its docks that float. GUI thread.
QPixmap pictureOf(QMainWindow &window);

} // namespace host
