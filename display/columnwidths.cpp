// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/columnwidths.h"

#include "channel/query.h"
#include "display/columns.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTableWidget>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <utility>

namespace {

const QLatin1String rootTag("VORNAK");
const QLatin1String widthAttribute("WIDTH");

constexpr qint64 largestFile = 64 << 20; // bytes; ours has one kilobyte
constexpr int deepestElement = 100; // ours has 2
constexpr int widthOfHiddenColumn = 60; // px
constexpr int indentation = 4;

} // namespace

ColumnWidths::ColumnWidths(IOManager &io, QTableWidget &bodies, QTableWidget &markers, QString directory)
    : ioManager(io)
    , preferencesDir(std::move(directory))
{
    for (int index = 0; index < Column6dCount; ++index) {
        const QString name = QStringLiteral("TABLE_6D_COLUMN_%1").arg(index);
        columns.append({&bodies, index, name, widthOfHiddenColumn});
    }
    for (int index = 0; index < Column3dCount; ++index)
        columns.append({&markers, index, QStringLiteral("TABLE_3D_COLUMN_%1").arg(index), 0});
}

QString ColumnWidths::fileName() const
{
    return preferencesDir + QStringLiteral("/datadisplay-preferences.xml");
}

void ColumnWidths::log(const QString &text) const
{
    logToHost(ioManager, text);
}

void ColumnWidths::loadPreferences() const
{
    const QFileInfo info(fileName());
    if (!info.exists())
        return;
    QFile file(fileName());
    // Anything but a plain file (a pipe, say) could keep us waiting for ever.
    if (!info.isFile() || info.size() > largestFile || !file.open(QIODevice::ReadOnly)) {
        log(QStringLiteral("Error: Loading data display preferences. File %1 cannot be opened for reading. "
                           "Using built-in values")
                .arg(fileName()));
        return;
    }
    QXmlStreamReader xml(&file);
    xml.setNamespaceProcessing(false);
    QString rootName;
    const QVector<Width> widths = readWidths(xml, rootName);
    if (xml.hasError()) {
        log(QStringLiteral("Error: Loading data display preferences while parsing %1 (Line %2, Column %3) :\n%4. "
                           "Using built-in values")
                .arg(fileName(), QString::number(xml.lineNumber()), QString::number(xml.columnNumber()),
                     xml.errorString()));
        return;
    }
    if (rootName != rootTag) {
        log(QStringLiteral("Error: Loading data display preferences Error while parsing %1 : The file doesn't look "
                           "like a valid preferences file. Using built-in values")
                .arg(fileName()));
        return;
    }
    for (const Width &width : widths)
        width.column->table->setColumnWidth(width.column->index, width.width);
}

QVector<ColumnWidths::Width> ColumnWidths::readWidths(QXmlStreamReader &xml, QString &rootName) const
{
    QVector<Width> widths;
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement)
            --depth;
        if (token != QXmlStreamReader::StartElement)
            continue;
        ++depth;
        if (depth == 1)
            rootName = xml.qualifiedName().toString();
        else if (depth == 2)
            appendWidths(xml, widths);
        else if (depth > deepestElement)
            xml.raiseError(QStringLiteral("nested too deep"));
    }
    return widths;
}

void ColumnWidths::appendWidths(const QXmlStreamReader &element, QVector<Width> &widths) const
{
    for (const Column &column : columns) {
        if (element.qualifiedName() != column.elementName)
            continue;
        const QXmlStreamAttributes attributes = element.attributes();
        if (attributes.hasAttribute(widthAttribute)) {
            bool isNumber = false;
            const int width = attributes.value(widthAttribute).toInt(&isNumber, 10);
            if (isNumber)
                widths.append({&column, width});
        } else if (column.table->isColumnHidden(column.index)) {
            widths.append({&column, 0}); // without the attribute it is the present width, which a hidden column has not
        }
    }
}

void ColumnWidths::savePreferences() const
{
    if (!QDir(preferencesDir).exists() && !QDir().mkpath(preferencesDir)) {
        log(QStringLiteral("Error: Writing data display preferences. Directory %1 doesn't exist and cannot be created")
                .arg(preferencesDir));
        return;
    }
    // Written beside the old file and renamed over it, so that a full disk costs only the new widths. Where the
    // folder itself can't be written to, the file is, directly.
    QSaveFile file(fileName());
    file.setDirectWriteFallback(true);
    bool written = file.open(QIODevice::WriteOnly | QIODevice::Text);
    if (written) {
        QXmlStreamWriter xml(&file);
        xml.setAutoFormatting(true);
        xml.setAutoFormattingIndent(indentation);
        xml.writeStartDocument();
        xml.writeStartElement(rootTag);
        for (const Column &column : columns) {
            const int width = column.table->columnWidth(column.index);
            xml.writeEmptyElement(column.elementName);
            xml.writeAttribute(widthAttribute, QString::number(width < 1 ? column.widthOfNone : width));
        }
        xml.writeEndDocument();
        // Check both: QSaveFile does not remember a failed write and would commit.
        written = !xml.hasError() && file.flush() && file.commit();
    }
    if (!written)
        log(QStringLiteral("Error: Writing data display preferences. File %1 cannot be opened for writing")
                .arg(fileName()));
}
