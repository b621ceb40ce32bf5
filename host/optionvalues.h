// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/faultybackend.h"
#include "backend/scenario.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QString>
#include <QVector>

#include <chrono>
#include <optional>

namespace host {

/// Reads one value of an option after another and keeps the first complaint.
class OptionValues {
    Q_DECLARE_TR_FUNCTIONS(OptionValues)

public:
    /// \a parser has parsed the command line and outlives this object.
    explicit OptionValues(const QCommandLineParser &parser);

    // Nothing, or no rules, when the option is not there or its value can't be followed.
    std::optional<std::chrono::milliseconds> milliseconds(const QString &option, std::chrono::milliseconds highest);
    std::optional<double> rate(const QString &option);
    std::optional<backend::ProtocolVersion> version(const QString &option);
    QVector<backend::FaultRule> faults(const QString &option);
    /// A file that a picture is saved in: the end of its name says in which format, PNG where it has none.
    QString picture(const QString &option);

    QString firstComplaint() const { return complaint; }

private:
    void complain(const QString &text);

    const QCommandLineParser &parser;
    QString complaint;
};

} // namespace host
