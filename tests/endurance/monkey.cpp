// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/monkey.h"

#include "module/datadisplaymodule.h"
#include "tests/support/filterscript.h"

#include <QApplication>
#include <QDockWidget>
#include <QTest>

#include <array>

namespace {

constexpr int mostIdlePumps = 100'000;

struct Line {
    const char *tag;
    const char *text;
    bool good;
};

constexpr std::array<Line, 8> lineKinds{{
    {"6di", "6di 2 [0 2 1.0][1 2 3][1 0 0 0 1 0 0 0 1][1 1 1.0][4 5 6][1 0 0 0 1 0 0 0 1]", true},
    {"6d", "6d 1 [0 1.0][1 2 3 0 0 0][1 0 0 0 1 0 0 0 1]", true},
    {"3d", "3d 3 [1 1.0][1 2 3][2 1.0][1 2 3][3 1.0][1 2 3]", true},
    {"6di", "6di 0", true},
    {"3d", "3d 0", true},
    {"6di", "6di 3 [0 2 1.0][1 2", false},
    {"3d", "3d", false},
    {"stats", "stats 1 2 3", true},
}};

/// All bodies of the complete configuration, each with a pose: what is lost keeps the last one that was shown.
constexpr char fullLine[] = "6di 3 [0 2 1.0][1 2 3][1 0 0 0 1 0 0 0 1][1 1 0.8][4 5 6][0 1 0 -1 0 0 0 0 1]"
                            "[2 3 0.5][-7 8.5 9][1 0 0 0 0 1 0 -1 0]";

/// The windows and widgets that are nobody's but the module's.
int moduleWidgets()
{
    int count = 0;
    const QWidgetList all = QApplication::allWidgets();
    for (const QWidget *const widget : all) {
        const QLatin1String name(widget->metaObject()->className());
        if (name == QLatin1String("DataDisplay") || name == QLatin1String("ZelTableWidget")
            || name == QLatin1String("FilterDialog") || name == QLatin1String("FilterHelp"))
            ++count;
    }
    return count;
}

} // namespace

Monkey::Monkey()
    : backend(2, 0)
    , host(backend.host)
{
    ScriptedHost filters;
    scriptFilters(filters);
    backend.answerBodies(3);
    backend.answerSensors({1, 3});
    for (auto answer = filters.answers.cbegin(); answer != filters.answers.cend(); ++answer) {
        if (!backend.host.answers.contains(answer.key()))
            backend.host.answers.insert(answer.key(), answer.value());
    }
    fullAnswers = backend.host.answers;
    window.resize(1000, 200);
    window.show();
    load();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the monkey's window does not show");
    panel->configurationChanged();
    QCoreApplication::processEvents(); // for the places of the cells
    configureCompletely(true);
    fullRows = rows();
}

Monkey::~Monkey()
{
    unload();
}

void Monkey::load()
{
    if (module)
        return;
    module = std::make_unique<DataDisplayModule>();
    module->setModuleProperty(QStringLiteral("CommandManager"), QVariant::fromValue<IOManager *>(&host));
    module->setModuleProperty(QStringLiteral("ModuleParent"), QVariant::fromValue<QWidget *>(&window));
    module->setModuleProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(&backend.versions));
    auto *const dock = qobject_cast<QDockWidget *>(module->moduleEntries().constFirst()->widget);
    window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    panel = dock->findChild<DataDisplay *>();
    lines.setRequester(panel);
}

void Monkey::unload()
{
    if (!module)
        return;
    module->aboutToUnload(); // with lines arriving until the requester is unregistered
    lines.setRequester(nullptr);
    module->releaseWidgets();
    module.reset();
}

QString Monkey::play(const QByteArray &bytes)
{
    progress.sequence = bytes;
    progress.position = 0;
    progress.idlePumps = 0;
    firstProblem.clear();
    // One in four is painted, too: that takes a third of the time.
    window.setUpdatesEnabled(progress.sequence.at(1) % 4 == 0);
    while (progress.position + 1 < progress.sequence.size() && firstProblem.isEmpty()) {
        step();
        QCoreApplication::processEvents();
    }
    while (isAnythingOpen()) {
        pump();
        QCoreApplication::processEvents();
    }
    if (firstProblem.isEmpty())
        firstProblem = problemAfterRest();
    return firstProblem;
}

bool Monkey::isAnythingOpen()
{
    return QApplication::activePopupWidget() || QApplication::activeModalWidget();
}

void Monkey::queuePump()
{
    if (progress.pumpIsQueued)
        return;
    progress.pumpIsQueued = true;
    QMetaObject::invokeMethod(this, &Monkey::pump, Qt::QueuedConnection);
}

void Monkey::pump()
{
    progress.pumpIsQueued = false;
    if (++progress.idlePumps > mostIdlePumps)
        qFatal("an event loop runs on without a menu or dialog");
    if (isAnythingOpen()) {
        if (progress.position + 1 < progress.sequence.size() && firstProblem.isEmpty() && progress.depth > 0) {
            ++nestedSteps;
            step();
        } else if (QWidget *const popup = QApplication::activePopupWidget()) {
            popup->close();
        } else if (QWidget *const dialog = QApplication::activeModalWidget()) {
            dialog->close();
        }
    }
    if (progress.depth > 0)
        queuePump();
}

void Monkey::step()
{
    const int action = static_cast<unsigned char>(progress.sequence.at(progress.position)) % 20;
    const int operand = static_cast<unsigned char>(progress.sequence.at(progress.position + 1));
    progress.position += 2;
    progress.idlePumps = 0;
    ++progress.depth;
    queuePump(); // for the event loop that the action may open
    act(action, operand);
    --progress.depth;
    if (firstProblem.isEmpty())
        firstProblem = problem();
    if (!firstProblem.isEmpty() && !firstProblem.contains(QLatin1String("step")))
        firstProblem += QStringLiteral(" (step %1)").arg(progress.position / 2);
}

void Monkey::act(int action, int operand)
{
    DataDisplay *const shown = panel;
    switch (action) {
    case 0:
    case 1:
        answerEverything(operand);
        if (shown)
            shown->configurationChanged();
        return;
    case 2:
        if (shown)
            shown->clearData();
        return;
    case 3:
        if (module)
            module->moduleEntries().constFirst()->widget->setVisible(operand % 2 == 0);
        return;
    case 4:
    case 5:
        return deliverLines(operand);
    case 6:
    case 7:
        return clickCell(Qt::RightButton, operand);
    case 8:
        return clickCell(Qt::LeftButton, operand);
    case 9:
    case 10:
        return pressKey(operand);
    case 11:
        return chooseInMenu();
    case 12:
        if (shown)
            QMetaObject::invokeMethod(shown->findChild<QWidget *>(QStringLiteral("tableWidget6d")), "displayFilterDlg");
        return;
    case 13:
    case 14:
        return clickInDialog(operand);
    case 15:
        return host.fail(1 + operand % 16, operand < 128 ? 1 + operand % 16 : 1'000'000);
    case 16:
        return operand % 2 == 0 ? unload() : load();
    case 17:
        if (shown)
            shown->timerUpdateInertialSensorInfo();
        return;
    case 18:
        backend.versions.backendMajor = operand % 4 == 0 ? 2 : 1;
        backend.versions.backendMinor = operand % 30;
        return;
    default:
        if (shown) {
            shown->updateView6d();
            shown->updateView3d();
        }
        return;
    }
}

void Monkey::answerEverything(int operand)
{
    backend.host.answers = fullAnswers;
    host.failNothing();
    if (operand % 4 != 3)
        backend.answer(QStringLiteral("standard number_of_bodies"), QString::number(operand % 4));
    if ((operand & 4) != 0)
        backend.answerHead();
    if ((operand & 8) != 0)
        backend.answer("inertial available", "no");
    if ((operand & 16) != 0)
        backend.answer("standard fixed_angle_present", "true");
    if ((operand & 96) == 96)
        backend.host.answers.clear();
    if ((operand & 128) != 0)
        backend.answer("body calibrated standard b01", "no");
}

void Monkey::deliverLines(int operand)
{
    const Line &line = lineKinds[static_cast<std::size_t>(operand) % lineKinds.size()];
    lines.post(line.tag, line.text, 1 + operand / 8, line.good);
}

const QTableWidget &Monkey::tableOf(const DataDisplay &display, const char *name)
{
    const auto *const table = display.findChild<const QTableWidget *>(QLatin1String(name));
    if (!table)
        qFatal("the panel has no %s", name);
    return *table;
}

QString Monkey::problem()
{
    backend.host.takeCalls();
    if (lines.refusals() > 0)
        return QStringLiteral("a good line was refused");
    if (host.registered.size() != (module ? 1 : 0))
        return QStringLiteral("%1 requesters are registered").arg(host.registered.size());
    if (!module) {
        if (panel || moduleWidgets() > 0)
            return QStringLiteral("a widget of the module is left over");
        return {};
    }
    // No lock may be held between two steps: a good line is stored, and shown by the next redraw. All lines go at once,
    // as each wait for the other thread costs as much as a step.
    lines.drain();
    const quint64 stored = panel->storedLines();
    const quint64 dropped = panel->droppedLines();
    const QByteArray place = QByteArray::number(++probes % 1000);
    lines.post("3d", "3d 1 [7 1.0][" + place + " 2 3]", 1, true);
    lines.post("6d", "6d 0", 1, true);
    lines.post("6di", "6di 0", 1, true);
    lines.drain();
    if (lines.refusals() > 0)
        return QStringLiteral("the next good line was refused");
    if (panel->storedLines() != stored + 2 || panel->droppedLines() != dropped)
        return QStringLiteral("the next good lines were not stored");
    panel->updateView3d();
    const QTableWidget &table = tableOf(*panel, "tableWidget3d");
    if (table.rowCount() != 1 || table.item(0, 1)->text() != QString::fromLatin1(place + ".00"))
        return QStringLiteral("the next good line was not shown");
    return {};
}

QStringList Monkey::rows() const
{
    const QTableWidget &table = tableOf(*panel, "tableWidget6d");
    QStringList texts;
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < Column6dCount; ++column) {
            const QTableWidgetItem *const item = table.item(row, column);
            texts << (item ? item->text() + item->background().color().name() : QStringLiteral("no item"));
        }
    }
    return texts;
}

/// Without running the event loop, in which the sensors' timer could strike.
void Monkey::configureCompletely(bool clearing)
{
    DataDisplay *const shown = panel;
    if (!shown)
        qFatal("there is no panel after loading");
    if (clearing)
        shown->clearData();
    shown->configurationChanged();
    lines.deliver("6di", fullLine);
    shown->updateView6d();
}

QString Monkey::problemAfterRest()
{
    backend.versions.backendMajor = 2;
    backend.versions.backendMinor = 0;
    backend.host.answers = fullAnswers;
    host.failNothing();
    load();
    lines.drain();
    module->moduleEntries().constFirst()->widget->show();
    // A host need not clear before it configures anew, and nothing of what was shown may stay.
    configureCompletely(progress.sequence.at(0) % 4 == 0);
    if (rows() != fullRows)
        return QStringLiteral("the configuration after it is not complete: ") + rows().join(QLatin1Char('|'));
    if (host.outputs != QSet<QByteArray>{"6di", "3d"})
        return QStringLiteral("the subscriptions after it are not those of a shown panel");
    return problem();
}
