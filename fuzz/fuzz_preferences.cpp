// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/datadisplay.h"
#include "fuzz/bytehost.h"
#include "fuzz/fuzztarget.h"
#include "module/interface/backendversions.h"

#include <QFile>
#include <QTableWidget>

namespace {

const QString fileName = QStringLiteral(".ZEL/VORNAK4/modules/datadisplay/v2.2.6/config/datadisplay-preferences.xml");
constexpr int longestMessage = 10000; // characters; a file name, a place and what the parser says of them

void checkWidths(const DataDisplay &panel)
{
    for (const char *const name : {"tableWidget6d", "tableWidget3d"}) {
        const auto *table = panel.findChild<QTableWidget *>(QLatin1String(name));
        require(table != nullptr, "the panel has its tables");
        for (int column = 0; column < table->columnCount(); ++column)
            require(table->columnWidth(column) >= 0, "a column has a width");
    }
}

/// Starts a panel that finds \a content as its preferences, and returns what it leaves behind as such.
QByteArray savedAfter(const QByteArray &content, QByteArrayList &logs)
{
    const QString path = writeHomeFile(fileName, content);
    ByteSource noBytes(nullptr, 0);
    ByteHost host(noBytes, false);
    BackendVersions versions;
    versions.backendMajor = 1;
    versions.backendMinor = 24;
    DataDisplay panel(&host, nullptr, &versions, QStringLiteral("v2.2.6"));
    logs = host.logs;
    checkWidths(panel);
    panel.prepareShutdown();
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "the preferences are saved");
    return file.readAll();
}

} // namespace

/// The input is the preferences file. Whatever it holds, the panel comes up and saves preferences that are read without
/// a message and saved alike.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    needApplication();
    QByteArrayList logs;
    const QByteArray saved = savedAfter(bytesOf(data, size), logs);
    require(logs.size() <= 1, "one message at most for a file");
    require(logs.isEmpty() || logs[0].size() < longestMessage, "the message is no longer than a page");
    const QByteArray savedAgain = savedAfter(saved, logs);
    require(logs.isEmpty(), "the panel's own file is read without a message");
    require(savedAgain == saved, "the panel's own file is saved as it was");
    return 0;
}
