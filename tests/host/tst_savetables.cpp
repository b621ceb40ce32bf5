// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QSettings>
#include <QStatusBar>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace host;

/// The tables of the real module, saved by the operator.
class SaveTablesTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { end(); }

    void savesByKeys();
    void savesNothingWhenTheDialogIsLeft();
    void saysWhatFailed();
    void endsWhileItAsks();

private:
    /// Presses Ctrl+E and calls \a act with the dialog that it opens.
    void pressWith(const std::function<void(QFileDialog &)> &act);
    QString message() const { return host->window().statusBar()->currentMessage(); }
};

void SaveTablesTest::init()
{
    home = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, home->path());
    start({QStringLiteral(MODULES)});
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
}

void SaveTablesTest::pressWith(const std::function<void(QFileDialog &)> &act)
{
    bool acted = false;
    QTimer poll; // the dialog runs an event loop of its own
    connect(&poll, &QTimer::timeout, &poll, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog || acted)
            return;
        acted = true;
        act(*dialog);
    });
    poll.start(20);
    QTest::keyClick(&host->window(), Qt::Key_E, Qt::ControlModifier);
    QVERIFY(acted);
}

void SaveTablesTest::savesByKeys()
{
    const auto *table = host->window().findChild<QTableWidget *>(QStringLiteral("tableWidget3d"));
    QVERIFY(table);
    QTRY_VERIFY(table->rowCount() > 3);
    const QString folder = home->path();
    pressWith([&](QFileDialog &dialog) {
        auto *field = dialog.findChild<QLineEdit *>();
        QTest::keySequence(field, QKeySequence::SelectAll);
        QTest::keyClicks(field, folder);
        QTest::keyClick(field, Qt::Key_Return);
    });
    QCOMPARE(message(), QStringLiteral("Saved in %1: tableWidget6d.csv, tableWidget3d.csv").arg(folder));
    QFile file(folder + QStringLiteral("/tableWidget3d.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readLine(), QByteArray("3DOF ID,x [mm],y [mm],z [mm]\r\n"));
    QVERIFY(file.readAll().count("\r\n") > 3);
}

void SaveTablesTest::savesNothingWhenTheDialogIsLeft()
{
    pressWith([](QFileDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QCOMPARE(message(), QString());
}

void SaveTablesTest::saysWhatFailed()
{
    const QString folder = home->filePath(QStringLiteral("taken"));
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/tableWidget6d.csv")));
    pressWith([&](QFileDialog &dialog) {
        auto *field = dialog.findChild<QLineEdit *>();
        QTest::keySequence(field, QKeySequence::SelectAll);
        QTest::keyClicks(field, folder);
        QTest::keyClick(field, Qt::Key_Return);
    });
    const QString complaint = QStringLiteral("The table %1/tableWidget6d.csv can't be saved: ").arg(folder);
    QVERIFY2(message().startsWith(complaint), qPrintable(message()));
    QTRY_VERIFY(logText().contains(complaint));
}

void SaveTablesTest::endsWhileItAsks()
{
    QTimer::singleShot(0, &host->window(), [this] { pressWith([this](QFileDialog &) { host->end(); }); });
    QCOMPARE(host->run(), 0);
    QVERIFY(!host->window().isVisible() || QApplication::activeModalWidget() == nullptr);
}

QTEST_MAIN(SaveTablesTest)
#include "tst_savetables.moc"
