// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/livenesslook.h"

#include <QWidget>

class QLabel;

namespace host {

class ElidedLabel;

/// A text with an icon, in the colours of a level.
class LivenessLine : public QWidget {
    Q_OBJECT

public:
    /// \a name is that of the text's label.
    explicit LivenessLine(const QString &name, QWidget *parent = nullptr);

    void setText(const QString &text);
    /// The background stays the parent's where \a fills is false.
    void setLook(const LivenessLook &look, bool fills);
    QString text() const;

private:
    QLabel *icon = nullptr;
    ElidedLabel *label = nullptr;
};

} // namespace host
