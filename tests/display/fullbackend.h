// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/panelfixture.h"

/// Every question there is has an answer, and the output has to be switched on.
struct FullBackend : PanelFixture {
    FullBackend()
    {
        answerBodies(3);
        answerHead();
        answerSensors({1, 3});
        answer("inertial body_of_sensor d01", "none");
        answer("tracking reference", "standard b02");
        answer("output active chmon 6di", "no");
    }

    /// The backend after a restart: its output is off, and the k-th of the next questions and commands fails.
    void restart(int failing = 0)
    {
        answer("output active chmon 6di", "no");
        host.failCall = failing;
    }

    /// All that is seen in the table of bodies, and which of its columns.
    QStringList everything() const
    {
        QStringList texts;
        for (int row = 0; row < table6d().rowCount(); ++row) {
            for (int column = 0; column < Column6dCount; ++column) {
                const QTableWidgetItem *const item = table6d().item(row, column);
                if (item)
                    texts << item->text() + item->background().color().name(QColor::HexArgb) + item->whatsThis();
            }
        }
        for (int column = 0; column < Column6dCount; ++column)
            texts << (table6d().isColumnHidden(column) ? QStringLiteral("hidden") : QStringLiteral("shown"));
        return texts;
    }
};
