// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>
#include <QVector>

class QMainWindow;
class QTableWidget;

namespace host {

/// A key and what it does.
struct KeyEntry {
    QString keys; ///< as written on this computer's keyboard, such as "Ctrl+O, F3"
    QString text; ///< with the menus that lead there, such as "File > Open Recording"
};

/// The keys of all actions and shortcuts of \a window, of its menus first, in their order. A shortcut that is no action
/// is listed if it has a text for "What's This?".
QVector<KeyEntry> keysOf(const QMainWindow &window);

/// The page of help that lists the keys, read from the window whenever it is shown, so that none is missing.
class KeysPage : public QDialog {
    Q_OBJECT

public:
    /// \a window owns the page.
    explicit KeysPage(QMainWindow *window);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QMainWindow &window;
    QTableWidget *table = nullptr;
};

} // namespace host
