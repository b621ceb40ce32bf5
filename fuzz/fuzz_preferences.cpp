// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/columnwidths.h"
#include "display/datadisplay.h"
#include "fuzz/bytehost.h"
#include "fuzz/fuzztarget.h"
#include "interface/backendversions.h"

#include <QCoreApplication>
#include <QFile>
#include <QSet>
#include <QTableWidget>

#include <vector>

namespace {

const QString folder = QStringLiteral(".ZEL/VORNAK4/modules/datadisplay/v2.2.6/config");
const QString fileName = folder + QStringLiteral("/datadisplay-preferences.xml");
/// The first input gets a new panel beside the lasting one, too, and so does every one of a replayed corpus.
const quint64 inputsPerNewPanel = isReplay() ? 1 : 512;
constexpr int mostRemembered = 10000; // files
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

struct Bench {
    ByteSource noBytes{nullptr, 0};
    ByteHost host{noBytes, false};
    BackendVersions versions = supported();
    DataDisplay panel{&host, nullptr, &versions, QStringLiteral("v2.2.6")};

    static BackendVersions supported()
    {
        BackendVersions versions;
        versions.backendMajor = 1;
        versions.backendMinor = 24;
        return versions;
    }
};

QByteArray savedContent()
{
    QFile file(homePath(fileName));
    require(file.open(QIODevice::ReadOnly), "the preferences are saved");
    return file.readAll();
}

/// Starts a panel that finds \a content as its preferences, and returns what it leaves behind as such.
QByteArray savedByNewPanel(const QByteArray &content, QByteArrayList &logs)
{
    writeHomeFile(fileName, content);
    Bench bench;
    logs = bench.host.logs;
    checkWidths(bench.panel);
    bench.panel.prepareShutdown();
    return savedContent();
}

/// A panel that is used for one input after the other: all that loading changes of it are the widths of its columns,
/// and these are put back.
class LastingPanel {
public:
    LastingPanel()
    {
        for (QTableWidget *const table : {&bodies, &markers}) {
            for (int column = 0; column < table->columnCount(); ++column)
                columns.push_back({table, column, table->columnWidth(column)});
        }
    }

    /// What a new panel that finds \a content as its preferences would leave behind.
    QByteArray savedAfter(const QByteArray &content, QByteArrayList &logs)
    {
        for (const Column &column : columns)
            column.table->setColumnWidth(column.index, column.width);
        bench.host.logs.clear();
        writeHomeFile(fileName, content);
        preferences.loadPreferences();
        logs = bench.host.logs;
        checkWidths(bench.panel);
        preferences.savePreferences();
        QCoreApplication::processEvents(); // the tables keep a list of the changed columns until then
        return savedContent();
    }

private:
    struct Column {
        QTableWidget *table;
        int index;
        int width; ///< as built in [px]
    };

    QTableWidget &tableOf(const char *name)
    {
        auto *const table = bench.panel.findChild<QTableWidget *>(QLatin1String(name));
        require(table != nullptr, "the panel has its tables");
        return *table;
    }

    Bench bench;
    QTableWidget &bodies = tableOf("tableWidget6d");
    QTableWidget &markers = tableOf("tableWidget3d");
    ColumnWidths preferences{bench.host, bodies, markers, homePath(folder)};
    std::vector<Column> columns;
};

/// Requires that its own file is read without a message and saved as it was; once for each.
void checkOwnFile(LastingPanel &panel, const QByteArray &saved)
{
    static QSet<QByteArray> checked;
    if (checked.contains(saved))
        return;
    QByteArrayList logs;
    const QByteArray savedAgain = panel.savedAfter(saved, logs);
    require(logs.isEmpty(), "the panel's own file is read without a message");
    require(savedAgain == saved, "the panel's own file is saved as it was");
    if (checked.size() < mostRemembered)
        checked.insert(saved);
}

} // namespace

/// The input is the preferences file. Whatever it holds, the panel comes up and saves preferences that are read without
/// a message and saved alike.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    needApplication();
    static auto &panel =
        *new LastingPanel; // libFuzzer leaves through exit(), when Qt's own statics may be gone already
    static quint64 inputs = 0;
    const QByteArray content = bytesOf(data, size);
    QByteArrayList logs;
    const QByteArray saved = panel.savedAfter(content, logs);
    require(logs.size() <= 1, "one message at most for a file");
    require(logs.isEmpty() || logs[0].size() < longestMessage, "the message is no longer than a page");
    checkOwnFile(panel, saved);
    if (inputs++ % inputsPerNewPanel == 0) {
        QByteArrayList newLogs;
        require(savedByNewPanel(content, newLogs) == saved, "a new panel saves what the lasting one does");
        require(newLogs == logs, "a new panel says what the lasting one does");
    }
    return 0;
}
