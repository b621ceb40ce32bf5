// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

class QMimeData;

namespace host {

class BackendMenu;
struct BackendChoice;

/// The menu "&File": recordings and scenarios from files, chosen, recent or dropped.
class FileMenu : public QMenu {
    Q_OBJECT

public:
    /// \a backend, which opens what is chosen here, outlives the menu.
    FileMenu(BackendMenu &backend, QWidget *parent);

    /// The files that \a data stand for; empty when they are none of this computer.
    static QStringList filesOf(const QMimeData &data);
    /// Opens one scenario, or recordings, each of which is a body. A scenario is told by its content.
    void open(const QStringList &files);

signals:
    void failed(const QString &text); ///< nothing was opened

private:
    void chooseRecordings();
    void showRecentFiles();
    void openRecent(const BackendChoice &choice);

    BackendMenu &backend;
    QMenu *recent = nullptr;
};

} // namespace host
