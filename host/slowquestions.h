// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QTimer>

class QLabel;
class QTableWidget;

namespace backend {
class ExchangeTimes;
} // namespace backend

namespace host {

/// The questions and commands that took the backend long, the slowest first. Follows the times while it is shown.
class SlowQuestions : public QDialog {
    Q_OBJECT

public:
    enum Column { TextColumn, CountColumn, MedianColumn, WorstColumn, ColumnCount };

    /// \a times outlives the dialog.
    explicit SlowQuestions(const backend::ExchangeTimes &times, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void refresh();
    void setCell(int row, int column, const QString &text);

    const backend::ExchangeTimes &times;
    QLabel *summary = nullptr;
    QTableWidget *table = nullptr;
    QTimer timer;
};

} // namespace host
