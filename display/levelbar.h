// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QProgressBar>

/// A small progress bar from 0 to 100 in a table cell: green, or red below a limit, or not seen at all.
class LevelBar : public QProgressBar {
    Q_OBJECT

public:
    /// Shows or hides the bar. A hidden bar stays so when its view lays out, which shows every cell widget.
    void setShown(bool wanted);

    void setVisible(bool visible) override;

protected:
    /// \a styleClass: the class name that the style sheets name. \a lowBelow: values below it are shown in red.
    LevelBar(QWidget *parent, const char *styleClass, int lowBelow);

    /// Sets style and value; below 0 sets the value 0 and hides the bar. Never shows it: that is the caller's.
    void setLevel(int value);

private:
    QString styleSheetFor(int value) const;

    const char *const styleClass;
    const int lowBelow;
    bool shown = true;
};
