// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QPlainTextEdit>

namespace host {

/// Lines of plain text, of which those of warnings have an icon at their left. The oldest go when there are too many.
class LogView : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit LogView(int maximumLines, QWidget *parent = nullptr);

    /// \a line has no line feed.
    void appendLine(const QString &line, bool isWarning);
    /// Shows the last line of a warning that there is and puts the cursor there.
    void showLastWarning();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void placeMargin();
    void paintMargin();

    QWidget *margin = nullptr; // the icons' place
    QPixmap icon;
};

} // namespace host
