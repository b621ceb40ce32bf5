// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/fuzztarget.h"

#include <QDir>
#include <QFile>

#include <cstdio>

bool isReplay()
{
    return true;
}

/// Runs the target on every file of the folders given, and fails where there is none.
int main(int argumentCount, char *arguments[])
{
    int inputs = 0;
    for (int i = 1; i < argumentCount; ++i) {
        const QDir folder(QFile::decodeName(arguments[i]));
        const QFileInfoList files = folder.entryInfoList(QDir::Files, QDir::Name);
        for (const QFileInfo &info : files) {
            QFile file(info.filePath());
            require(file.open(QIODevice::ReadOnly), "a file of the corpus can't be read");
            const QByteArray content = file.readAll();
            // Before the run, so that the last line names the input that ends the process.
            std::printf("%s\n", qPrintable(info.fileName()));
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(content.constData()),
                                   static_cast<std::size_t>(content.size()));
            ++inputs;
        }
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
