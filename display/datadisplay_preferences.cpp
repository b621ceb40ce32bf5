// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/columns.h"
#include "display/datadisplay.h"
#include "channel/query.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

namespace {

const QLatin1String rootTag("VORNAK");
const QLatin1String widthAttribute("WIDTH");

/// A file of 17 column widths has a kilobyte; one that is larger than this was not written by us.
constexpr qint64 largestFile = 1 << 20; // bytes
constexpr int widthOfHiddenColumn = 60; // px
constexpr int indentation = 4;

QString elementName6d(int column)
{
    return QStringLiteral("TABLE_6D_COLUMN_%1").arg(column);
}

QString elementName3d(int column)
{
    return QStringLiteral("TABLE_3D_COLUMN_%1").arg(column);
}

void applyWidth(QTableWidget *table, int column, const QDomElement &element)
{
    const QString text = element.attribute(widthAttribute, QString::number(table->columnWidth(column)));
    bool isNumber = false;
    const int width = text.toInt(&isNumber, 10);
    if (isNumber)
        table->setColumnWidth(column, width);
}

void appendWidth(QDomDocument &document, QDomElement &root, const QString &name, int width)
{
    QDomElement element = document.createElement(name);
    root.appendChild(element);
    element.setAttribute(widthAttribute, width);
}

} // namespace

QString DataDisplay::preferencesFile() const
{
    return preferencesDir + QStringLiteral("/datadisplay-preferences.xml");
}

void DataDisplay::loadPreferences()
{
    const QString fileName = preferencesFile();
    const QFileInfo info(fileName);
    if (!info.exists())
        return;
    QFile file(fileName);
    // Anything but a plain file (a pipe, say) could keep us waiting for ever.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        logToHost(*ioManager,
                  QStringLiteral("Error: Loading data display preferences. File %1 cannot be opened for reading. "
                                 "Using built-in values")
                      .arg(fileName));
        return;
    }
    const QByteArray content = file.read(largestFile + 1);
    QDomDocument document;
    QString error;
    int line = 0;
    int column = 0;
    if (content.size() <= largestFile && !document.setContent(content, false, &error, &line, &column)) {
        logToHost(*ioManager,
                  QStringLiteral("Error: Loading data display preferences while parsing %1 (Line %2, Column %3) :\n%4. "
                                 "Using built-in values")
                      .arg(fileName, QString::number(line), QString::number(column), error));
        return;
    }
    const QDomElement root = document.documentElement();
    if (root.tagName() != rootTag) {
        logToHost(
            *ioManager,
            QStringLiteral("Error: Loading data display preferences Error while parsing %1 : The file doesn't look "
                           "like a valid preferences file. Using built-in values")
                .arg(fileName));
        return;
    }
    for (QDomNode node = root.firstChild(); !node.isNull(); node = node.nextSibling())
        applyPreference(node.toElement());
}

void DataDisplay::applyPreference(const QDomElement &element)
{
    if (element.isNull())
        return;
    for (int column = 0; column < Column6dCount; ++column) {
        if (element.tagName() == elementName6d(column))
            applyWidth(tableWidget6d, column, element);
    }
    for (int column = 0; column < Column3dCount; ++column) {
        if (element.tagName() == elementName3d(column))
            applyWidth(tableWidget3d, column, element);
    }
}

void DataDisplay::savePreferences()
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(QStringLiteral("xml"),
                                                              QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
    QDomElement root = document.createElement(rootTag);
    document.appendChild(root);
    for (int column = 0; column < Column6dCount; ++column) {
        // A hidden column has no width of its own to keep.
        const int width = tableWidget6d->columnWidth(column);
        appendWidth(document, root, elementName6d(column), width < 1 ? widthOfHiddenColumn : width);
    }
    for (int column = 0; column < Column3dCount; ++column)
        appendWidth(document, root, elementName3d(column), tableWidget3d->columnWidth(column));

    if (!QDir(preferencesDir).exists() && !QDir().mkpath(preferencesDir)) {
        logToHost(
            *ioManager,
            QStringLiteral("Error: Writing data display preferences. Directory %1 doesn't exist and cannot be created")
                .arg(preferencesDir));
        return;
    }
    // Written beside the old file and renamed over it, so that a full disk costs only the new widths. Where the
    // folder itself can't be written to, the file is, directly.
    QSaveFile file(preferencesFile());
    file.setDirectWriteFallback(true);
    bool written = file.open(QIODevice::WriteOnly | QIODevice::Text);
    if (written) {
        QTextStream stream(&file);
        document.save(stream, indentation, QDomNode::EncodingFromTextStream);
        stream.flush();
        // Asked of both: the file forgets a write that failed in the flush, and would be renamed as it is.
        written = stream.status() == QTextStream::Ok && file.commit();
    }
    if (!written)
        logToHost(*ioManager,
                  QStringLiteral("Error: Writing data display preferences. File %1 cannot be opened for writing")
                      .arg(preferencesFile()));
}
