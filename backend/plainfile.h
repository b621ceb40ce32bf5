// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFileInfo>

namespace backend {

/// Whether \a fileName is there and neither a file nor a folder: opening or reading it could take for ever.
inline bool isPipeOrDevice(const QString &fileName)
{
    const QFileInfo info(fileName);
    return info.exists() && !info.isFile() && !info.isDir();
}

} // namespace backend
