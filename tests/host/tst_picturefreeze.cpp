// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/frozencover.h"
#include "host/livenesslook.h"
#include "host/picturefreeze.h"
#include "tests/host/livenessfixture.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

using namespace host;
using namespace std::chrono_literals;

/// The frozen picture: what freezes it, what it keeps out, and that nobody takes it for a live one.
class PictureFreezeTest : public QObject, private LivenessFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { end(); }

    void spaceInATableFreezes();
    void spaceInTheWindowFreezes();
    void aControlKeepsItsSpace();
    void controlAndSpaceFreezesFromAControl();
    void theMenuFreezes();
    void aHeldKeyFreezesOnce();
    void saysThatItIsFrozen();
    void saysNotThatDataGoOnWhereTheyDoNot();
    void everyPieceOfThePictureIsMarked();
    void thePictureStaysWhileDataGoOn();
    void theMouseDoesNotReachThePanel();
    void keysDoNotReachThePanel();
    void otherShortcutsGoOn();
    void floatingDocksAreCovered();
    void docksThatOpenLaterAreCovered();
    void aCoverFollowsItsDock();

private:
    QAction *freeze() const { return action("freezeAction"); }
    bool isFrozen() const { return host->window().findChild<PictureFreeze *>()->isFrozen(); }
    FrozenCover *coverOf(QDockWidget *dock) const { return dock->findChild<FrozenCover *>(); }
    QString pictureBanner() const { return bannerText("pictureBanner"); }
    template<typename Widget> Widget *addToLog();
};

void PictureFreezeTest::init()
{
    startPaced();
    feed();
    QTRY_VERIFY(!banner()->isVisible());
    table()->setFocus();
    QTRY_VERIFY(table()->hasFocus());
}

/// A control of its own in a dock of the program.
template<typename Widget> Widget *PictureFreezeTest::addToLog()
{
    auto *log = host->window().findChild<QDockWidget *>(QStringLiteral("logDock"));
    auto *control = new Widget;
    log->setWidget(control);
    control->show();
    control->setFocus();
    return control;
}

void PictureFreezeTest::spaceInATableFreezes()
{
    QTest::keyClick(table(), Qt::Key_Space);
    QVERIFY(isFrozen());
    QVERIFY(freeze()->isChecked());
    QTest::keyClick(table(), Qt::Key_Space);
    QVERIFY(!isFrozen());
    QVERIFY(!coverOf(panel()));
}

void PictureFreezeTest::spaceInTheWindowFreezes()
{
    QTest::keyClick(&host->window(), Qt::Key_Space);
    QVERIFY(isFrozen());
    QTest::keyClick(&host->window(), Qt::Key_Space);
    QVERIFY(!isFrozen());
}

void PictureFreezeTest::aControlKeepsItsSpace()
{
    auto *button = addToLog<QPushButton>();
    QSignalSpy clicks(button, &QPushButton::clicked);
    QTest::keyClick(button, Qt::Key_Space);
    QCOMPARE(clicks.size(), 1);
    QVERIFY(!isFrozen());
    auto *field = addToLog<QLineEdit>();
    QTest::keyClick(field, Qt::Key_Space);
    QCOMPARE(field->text(), QStringLiteral(" "));
    QVERIFY(!isFrozen());
}

void PictureFreezeTest::controlAndSpaceFreezesFromAControl()
{
    auto *field = addToLog<QLineEdit>();
    QTest::keyClick(field, Qt::Key_Space, Qt::ControlModifier);
    QVERIFY(isFrozen());
    QCOMPARE(field->text(), QString());
    QTest::keyClick(field, Qt::Key_Space); // it is covered now
    QVERIFY(!isFrozen());
    QCOMPARE(field->text(), QString());
}

void PictureFreezeTest::theMenuFreezes()
{
    QVERIFY(menuTexts("viewMenu").contains(freeze()->text()));
    QVERIFY(freeze()->isCheckable());
    freeze()->trigger();
    QVERIFY(isFrozen());
    freeze()->trigger();
    QVERIFY(!isFrozen());
}

void PictureFreezeTest::aHeldKeyFreezesOnce()
{
    QKeyEvent first(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QApplication::sendEvent(table(), &first);
    QApplication::sendEvent(table(), &repeated);
    QVERIFY(isFrozen());
}

void PictureFreezeTest::saysThatItIsFrozen()
{
    feed();
    freeze()->trigger();
    const QRegularExpression sentence(
        QString::fromUtf8("^Picture frozen since (\\d\\d:\\d\\d:\\d\\d) – data go on – Space: live$"));
    QTRY_VERIFY2(sentence.match(pictureBanner()).hasMatch(), qPrintable(pictureBanner()));
    const QRegularExpressionMatch match = sentence.match(pictureBanner());
    QVERIFY(title().startsWith(QStringLiteral("(picture frozen %1) ").arg(match.captured(1))));
    QCOMPARE(coverOf(panel())->accessibleName(), QStringLiteral("Picture frozen since %1").arg(match.captured(1)));
    const QColor text =
        host->window().findChild<QLabel *>(QStringLiteral("pictureBanner"))->palette().windowText().color();
    QCOMPARE(text, lookOfFrozenPicture().text);
    const QPixmap shown = host->window().grab();
    QVERIFY(shown.toImage().pixelColor(banner()->geometry().topLeft() + QPoint(3, 3))
            == lookOfFrozenPicture().background);
    freeze()->trigger();
    QVERIFY(!title().contains(QStringLiteral("frozen")));
    QVERIFY(!banner()->isVisible());
}

void PictureFreezeTest::saysNotThatDataGoOnWhereTheyDoNot()
{
    freeze()->trigger();
    QTRY_VERIFY(bannerText("sourceBanner").startsWith(QStringLiteral("DATA FROZEN")));
    QVERIFY(pictureBanner().startsWith(QStringLiteral("Picture frozen since ")));
    QVERIFY(!pictureBanner().contains(QStringLiteral("go on")));
    QVERIFY(title().contains(QStringLiteral("(frozen 1 s) ")));
    feed();
    QTRY_VERIFY(pictureBanner().contains(QStringLiteral("data go on")));
    QVERIFY(bannerText("sourceBanner").isEmpty());
}

void PictureFreezeTest::everyPieceOfThePictureIsMarked()
{
    const QImage live = panel()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    freeze()->trigger();
    const QImage frozen = panel()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    constexpr int piece = 48; // [pixels], some two cells
    for (int y = 0; y + piece <= panel()->height(); y += piece) {
        for (int x = 0; x + piece <= panel()->width(); x += piece)
            QVERIFY(live.copy(x, y, piece, piece) != frozen.copy(x, y, piece, piece));
    }
    const QList<QDockWidget *> docks =
        host->window().findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(docks.size() >= 3);
    for (QDockWidget *dock : docks)
        QVERIFY(coverOf(dock));
}

void PictureFreezeTest::thePictureStaysWhileDataGoOn()
{
    QTRY_VERIFY(table()->item(0, 4)->text() != QLatin1String("-"));
    QTest::qWait(300); // until the last frame has been drawn
    freeze()->trigger();
    const QImage picture = coverOf(panel())->grab().toImage();
    const QString x = table()->item(0, 4)->text();
    feed();
    QTRY_VERIFY(table()->item(0, 4)->text() != x);
    QCOMPARE(coverOf(panel())->grab().toImage(), picture);
}

void PictureFreezeTest::theMouseDoesNotReachThePanel()
{
    const auto click = [this] {
        const QRect cell = table()->visualItemRect(table()->item(1, 1));
        const QPoint place = table()->viewport()->mapTo(&host->window(), cell.center());
        QTest::mouseClick(host->window().windowHandle(), Qt::LeftButton, {}, place);
    };
    table()->setCurrentCell(0, 0);
    click();
    QCOMPARE(table()->currentRow(), 1); // the way is right
    table()->setCurrentCell(0, 0);
    freeze()->trigger();
    click();
    QCOMPARE(table()->currentRow(), 0);
    freeze()->trigger();
    click();
    QCOMPARE(table()->currentRow(), 1);
}

void PictureFreezeTest::keysDoNotReachThePanel()
{
    table()->setCurrentCell(0, 0);
    QTest::keyClick(host->window().windowHandle(), Qt::Key_Down);
    QCOMPARE(table()->currentRow(), 1); // the way is right
    freeze()->trigger();
    QTest::keyClick(host->window().windowHandle(), Qt::Key_Down);
    QTest::keyClick(host->window().windowHandle(), Qt::Key_Menu);
    QCOMPARE(table()->currentRow(), 1);
    QVERIFY(!QApplication::activePopupWidget());
    freeze()->trigger();
    QTest::keyClick(host->window().windowHandle(), Qt::Key_Down);
    QCOMPARE(table()->currentRow(), 2);
}

void PictureFreezeTest::otherShortcutsGoOn()
{
    freeze()->trigger();
    QVERIFY(panel()->isVisible());
    QTest::keyClick(host->window().windowHandle(), Qt::Key_F10);
    QVERIFY(!panel()->isVisible());
    QTest::keyClick(host->window().windowHandle(), Qt::Key_F10);
    QVERIFY(panel()->isVisible());
    QVERIFY(isFrozen());
    QTest::keyClick(host->window().windowHandle(), Qt::Key_Space, Qt::ControlModifier);
    QVERIFY(!isFrozen());
}

void PictureFreezeTest::floatingDocksAreCovered()
{
    panel()->setFloating(true);
    QVERIFY(panel()->isWindow());
    QTest::keyClick(panel(), Qt::Key_Space);
    QVERIFY(isFrozen());
    QVERIFY(coverOf(panel())->isVisible());
    QCOMPARE(coverOf(panel())->geometry(), panel()->rect());
    QCOMPARE(panel()->childAt(panel()->rect().center()), coverOf(panel()));
    panel()->setFloating(false);
    QCOMPARE(panel()->childAt(panel()->rect().center()), coverOf(panel()));
}

void PictureFreezeTest::docksThatOpenLaterAreCovered()
{
    auto *health = host->window().findChild<QDockWidget *>(QStringLiteral("healthDock"));
    QVERIFY(!health->isVisible());
    freeze()->trigger();
    health->toggleViewAction()->trigger();
    QVERIFY(coverOf(health)->isVisible());
    auto *late = new QDockWidget(QStringLiteral("Late"));
    late->setWidget(new QLabel(QStringLiteral("live")));
    host->window().addDockWidget(Qt::RightDockWidgetArea, late);
    QTRY_VERIFY(coverOf(late));
    delete late; // with its cover
    freeze()->trigger();
    QVERIFY(!coverOf(health));
}

void PictureFreezeTest::aCoverFollowsItsDock()
{
    freeze()->trigger();
    host->window().resize(host->window().size() + QSize(100, 80));
    QTRY_COMPARE(coverOf(panel())->geometry(), panel()->rect());
}

QTEST_MAIN(PictureFreezeTest)
#include "tst_picturefreeze.moc"
