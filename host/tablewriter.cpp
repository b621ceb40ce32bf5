// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/tablewriter.h"

#include "interface/moduleinterface.h"

#include <QAbstractItemDelegate>
#include <QAction>
#include <QDir>
#include <QDockWidget>
#include <QHeaderView>
#include <QLocale>
#include <QProgressBar>
#include <QSaveFile>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <algorithm>

namespace host {

namespace {

QString plainText(const QString &text)
{
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

/// The text that \a widget shows: its own, or those of the widgets in it.
QString textOf(const QWidget &widget)
{
    if (const auto *bar = qobject_cast<const QProgressBar *>(&widget))
        return bar->isTextVisible() ? bar->text() : QString();
    // Of labels, buttons and fields; of boxes; of texts with several lines.
    for (const char *property : {"text", "currentText", "plainText"}) {
        const QVariant text = widget.property(property);
        if (text.isValid())
            return plainText(text.toString());
    }
    QStringList texts;
    const QList<QWidget *> children = widget.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *child : children) {
        const QString text = child->isHidden() ? QString() : textOf(*child);
        if (!text.isEmpty())
            texts << text;
    }
    return texts.join(QLatin1Char(' '));
}

QString cellText(const QTableView &table, const QModelIndex &index)
{
    const QWidget *widget = table.indexWidget(index);
    if (widget && !widget->isHidden())
        return textOf(*widget);
    const QVariant value = index.data(Qt::DisplayRole);
    const auto *delegate = qobject_cast<const QStyledItemDelegate *>(table.itemDelegate(index));
    QString text = delegate && value.isValid() ? delegate->displayText(value, QLocale::c()) : value.toString();
    return text.replace(QChar::LineSeparator, QLatin1Char('\n')); // what delegates break lines by
}

QByteArray field(const QString &text)
{
    const bool isPlain = std::none_of(text.begin(), text.end(), [](QChar character) {
        return character == QLatin1Char(',') || character == QLatin1Char('"') || character == QLatin1Char('\n')
            || character == QLatin1Char('\r');
    });
    if (isPlain)
        return text.toUtf8();
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return '"' + quoted.toUtf8() + '"';
}

/// The visible sections in their order on the screen.
QVector<int> visibleSections(const QHeaderView &header)
{
    QVector<int> sections;
    for (int place = 0; place < header.count(); ++place) {
        const int section = header.logicalIndex(place);
        if (!header.isSectionHidden(section))
            sections << section;
    }
    return sections;
}

/// Whether \a table can be seen in \a dock, if need be after another page was turned to.
bool isOpen(const QTableView &table, const QDockWidget &dock)
{
    if (!dock.toggleViewAction()->isChecked())
        return false;
    for (const QWidget *widget = &table; widget != &dock; widget = widget->parentWidget()) {
        if (widget->isHidden() && !qobject_cast<const QStackedWidget *>(widget->parentWidget()))
            return false;
    }
    return true;
}

QString writeFile(const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    // flush() and commit() each know of failures that the other does not.
    const bool written = file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    const QString reason = file.errorString();
    return written && file.commit() ? QString() : written ? file.errorString() : reason;
}

} // namespace

QByteArray csvOf(const QTableView &table)
{
    QByteArray csv;
    const QAbstractItemModel *model = table.model();
    if (!model)
        return csv;
    QVector<int> columns;
    QByteArrayList fields;
    const QVector<int> visibleColumns = visibleSections(*table.horizontalHeader());
    for (const int column : visibleColumns) {
        const QString name = model->headerData(column, Qt::Horizontal).toString();
        if (name.trimmed().isEmpty())
            continue;
        columns << column;
        fields << field(name);
    }
    csv += fields.join(',') + "\r\n";
    const QVector<int> rows = visibleSections(*table.verticalHeader());
    for (const int row : rows) {
        fields.clear();
        for (const int column : qAsConst(columns))
            fields << field(cellText(table, model->index(row, column, table.rootIndex())));
        csv += fields.join(',') + "\r\n";
    }
    return csv;
}

TableWriter::TableWriter(const QList<ModuleEntry *> &entries)
{
    for (const ModuleEntry *entry : entries) {
        const auto *dock = qobject_cast<const QDockWidget *>(entry->widget);
        if (!dock)
            continue;
        const QList<QTableView *> tables = dock->findChildren<QTableView *>();
        for (const QTableView *table : tables) {
            if (isOpen(*table, *dock))
                tableFiles.append({freeName(table->objectName()), csvOf(*table)});
        }
    }
}

QString TableWriter::write(const QString &folder) const
{
    if (tableFiles.isEmpty())
        return tr("No module shows a table that could be saved in %1.").arg(folder);
    if (!QDir().mkpath(folder))
        return tr("The folder %1 for the tables can't be made.").arg(folder);
    for (const TableFile &file : tableFiles) {
        const QString path = QDir(folder).filePath(file.name);
        const QString reason = writeFile(path, file.content);
        if (!reason.isEmpty())
            return tr("The table %1 can't be saved: %2.").arg(path, reason);
    }
    return {};
}

QString TableWriter::freeName(const QString &objectName) const
{
    QString name = objectName.isEmpty() ? QStringLiteral("table") : objectName;
    // A name is no way into another folder, and no hidden file.
    std::replace_if(
        name.begin(), name.end(), [](QChar character) { return character == QLatin1Char('/') || !character.isPrint(); },
        QLatin1Char('_'));
    if (name.startsWith(QLatin1Char('.')))
        name.prepend(QLatin1Char('_'));
    name.truncate(100); // with any letters well within what file systems take
    const auto isTaken = [this](const QString &file) {
        return std::any_of(tableFiles.begin(), tableFiles.end(),
                           [&](const TableFile &other) { return other.name == file; });
    };
    QString file = name + QLatin1String(".csv");
    for (int number = 2; isTaken(file); ++number)
        file = QStringLiteral("%1-%2.csv").arg(name).arg(number);
    return file;
}

} // namespace host
