// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTranslator>

/// Translates every text to the name of its context, so that a test sees through which one a text went.
class ContextTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *, const char *, int) const override
    {
        return QString::fromLatin1(context);
    }
};
