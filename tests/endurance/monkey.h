// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endurance/faultyhost.h"
#include "tests/endurance/linethread.h"
#include "tests/support/panelfixture.h"

#include <QByteArray>
#include <QMainWindow>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>

class DataDisplayModule;

/// Acts on the module as host, backend and user do, in the order that a byte string gives: two bytes are one step. A
/// step that opens a menu or a dialog has the next ones run inside of it. GUI thread.
class Monkey : public QObject {
    Q_OBJECT

public:
    Monkey();
    ~Monkey() override;

    /// Plays \a bytes and brings everything to rest. Returns the first thing that was not as it must be, or nothing.
    QString play(const QByteArray &bytes);
    /// Lets the module go as before its library is unloaded.
    void unload();

    qint64 stepsInside() const { return nestedSteps; } ///< how many steps ran inside a menu or dialog

private:
    /// How far a sequence has come.
    struct Progress {
        QByteArray sequence;
        int position = 0;
        int depth = 0; ///< steps under way
        bool pumpIsQueued = false;
        int idlePumps = 0;
    };

    void step();
    void pump();
    void queuePump();
    void act(int action, int operand);
    void click(Qt::MouseButton button, const QWidget *target, QPoint place);
    void clickCell(Qt::MouseButton button, int operand);
    void clickInDialog(int operand);
    void pressKey(int operand);
    void chooseInMenu();
    void deliverLines(int operand);
    void load();
    void answerEverything(int operand);
    QString problem();
    void configureCompletely(bool clearing);
    QString problemAfterRest();
    QStringList rows() const;
    static bool isAnythingOpen();
    static const QTableWidget &tableOf(const DataDisplay &display, const char *name);

    PanelFixture backend; // answers, version and home; its own panel is not used
    FaultyHost host;
    LineThread lines;
    QMainWindow window;
    std::unique_ptr<DataDisplayModule> module;
    QPointer<DataDisplay> panel;
    QHash<QByteArray, QByteArray> fullAnswers;
    QStringList fullRows; ///< what the table shows after a complete configuration, with all bodies seen

    Progress progress;
    int probes = 0;
    qint64 nestedSteps = 0;
    QString firstProblem;
};
