// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace host {

/// Arguments in the form that an application object wants and that has to outlive it.
class QtArguments {
public:
    explicit QtArguments(const QStringList &arguments)
    {
        texts.reserve(static_cast<std::size_t>(arguments.size()));
        for (const QString &argument : arguments) {
            texts.push_back(argument.toLocal8Bit());
            pointers.push_back(texts.back().data());
        }
        pointers.push_back(nullptr);
        number = arguments.size();
    }
    QtArguments(const QtArguments &) = delete;
    QtArguments &operator=(const QtArguments &) = delete;

    int &count() { return number; }
    char **values() { return pointers.data(); }

private:
    std::vector<QByteArray> texts;
    std::vector<char *> pointers;
    int number = 0;
};

} // namespace host
