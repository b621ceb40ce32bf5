// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace host {

class BackendReader;
struct BackendChoice;

/// What the status bar says about the file that is being read: its name, how far it is, and a button that gives it up.
/// Hidden while nothing is read.
class ReadingStatus : public QWidget {
    Q_OBJECT

public:
    /// \a reader outlives this widget.
    explicit ReadingStatus(BackendReader &reader, QWidget *parent = nullptr);

private:
    void showReading(const BackendChoice &choice);
    void showProgress();

    BackendReader &reader;
    QLabel *label = nullptr;
    QProgressBar *bar = nullptr;
    QPushButton *button = nullptr;
    QTimer timer;
};

} // namespace host
