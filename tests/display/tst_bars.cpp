// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "display/batterybar.h"
#include "display/temperaturebar.h"
#include "display/zeltablewidget.h"

#include <QHeaderView>
#include <QMetaMethod>
#include <QtTest>

#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// The whole style sheet of a bar of class \a name in \a level ("full", "good" or "low").
QString styleSheet(const QString &name, const QString &level)
{
    QString text = name;
    text += QStringLiteral(" {color:black;background-color:#c0c0c0;text-align: center; border-radius: 4px; "
                           "border-left: 0.5px solid white;border-right: 0.5px solid white;"
                           "border-top: 1px solid white;border-bottom: 1px solid white;"
                           "margin: 2px; margin-left: 5px; margin-right: 5px;\t}");
    text += name;
    if (level == QLatin1String("full"))
        text += QStringLiteral("::chunk { background-color: #4cff00;border-top-left-radius: 4px;"
                               "border-bottom-left-radius: 4px;border-top-right-radius: 4px;"
                               "border-bottom-right-radius: 4px; }");
    else if (level == QLatin1String("good"))
        text += QStringLiteral("::chunk { background-color: #4cff00;border-top-left-radius: 4px;"
                               "border-bottom-left-radius: 4px;border-top-right-radius: 0px;"
                               "border-bottom-right-radius: 0px; }");
    else
        text += QStringLiteral("::chunk { background-color: #ff0000;border-top-left-radius: 4px;"
                               "border-bottom-left-radius: 4px;border-top-right-radius: 0px;"
                               "border-bottom-right-radius: 0px; }");
    return text;
}

QByteArrayList ownMethods(const QMetaObject &type)
{
    QByteArrayList signatures;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i)
        signatures << type.method(i).methodSignature();
    return signatures;
}

/// A table on the screen with one bar in cell (0, 1).
struct BarTable {
    explicit BarTable(QWidget *bar)
    {
        table.setRowCount(2);
        table.setColumnCount(3);
        table.setCellWidget(0, 1, bar);
        table.show();
    }

    ZelTableWidget table;
};

} // namespace

class TestBars : public QObject {
    Q_OBJECT

private slots:
    void slotsAreInTheirOrder();
    void rangeAndText();
    void batteryPercent_data();
    void batteryPercent();
    void batteryCharge_data();
    void batteryCharge();
    void temperaturePercent_data();
    void temperaturePercent();
    void temperatureLevel_data();
    void temperatureLevel();
    void valuesNeverShowTheBar();
    void negativeValueKeepsTheStyle();
    void temperatureText_data();
    void temperatureText();
    void hiddenBarStaysHiddenInLayouts_data();
    void hiddenBarStaysHiddenInLayouts();
    void shownBarComesBack();
    void othersShowTheBar_data();
    void othersShowTheBar();
};

void TestBars::slotsAreInTheirOrder()
{
    QCOMPARE(ownMethods(BatteryBar::staticMetaObject), QByteArrayList({"setValue(int)", "setValue(double)"}));
    QCOMPARE(ownMethods(TemperatureBar::staticMetaObject),
             QByteArrayList({"setValue(int)", "setValue(double)", "setTemperature(double)"}));
    QCOMPARE(BatteryBar::staticMetaObject.className(), "BatteryBar");
    QCOMPARE(TemperatureBar::staticMetaObject.className(), "TemperatureBar");
}

void TestBars::rangeAndText()
{
    BatteryBar battery;
    QCOMPARE(battery.minimum(), 0);
    QCOMPARE(battery.maximum(), 100);
    battery.setValue(42);
    QCOMPARE(battery.text(), QLocale().toString(42) + QLatin1Char('%'));

    QWidget parent;
    const TemperatureBar temperature(&parent);
    QCOMPARE(temperature.minimum(), 0);
    QCOMPARE(temperature.maximum(), 100);
    QCOMPARE(temperature.parentWidget(), &parent);
}

void TestBars::batteryPercent_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("level");
    QTest::addColumn<int>("shownValue");
    QTest::newRow("0 is low, not hidden") << 0 << "low" << 0;
    QTest::newRow("19 is low") << 19 << "low" << 19;
    QTest::newRow("20 is good") << 20 << "good" << 20;
    QTest::newRow("99 is good") << 99 << "good" << 99;
    QTest::newRow("100 is full") << 100 << "full" << 100;
    QTest::newRow("150 is full, and the progress bar refuses it") << 150 << "full" << 50;
    QTest::newRow("below 0 hides") << -1 << "hidden" << 0;
    QTest::newRow("the smallest int hides") << std::numeric_limits<int>::min() << "hidden" << 0;
}

void TestBars::batteryPercent()
{
    QFETCH(const int, value);
    QFETCH(const QString, level);
    QFETCH(const int, shownValue);
    BatteryBar bar;
    bar.show();
    bar.setValue(50);
    bar.setValue(value);
    QCOMPARE(bar.value(), shownValue);
    QCOMPARE(bar.isVisible(), level != QLatin1String("hidden"));
    if (bar.isVisible())
        QCOMPARE(bar.styleSheet(), styleSheet(QStringLiteral("BatteryBar"), level));
}

void TestBars::batteryCharge_data()
{
    QTest::addColumn<double>("charge");
    QTest::addColumn<QString>("level");
    QTest::addColumn<int>("shownValue");
    QTest::newRow("0.5 is 50 percent") << 0.5 << "good" << 50;
    QTest::newRow("0.199 is cut to 19 and low") << 0.199 << "low" << 19;
    QTest::newRow("0.2 is good") << 0.2 << "good" << 20;
    QTest::newRow("0.29 times 100 is just below 29 and cut to 28") << 0.29 << "good" << 28;
    QTest::newRow("0.999 is not full yet") << 0.999 << "good" << 99;
    QTest::newRow("1 is full") << 1.0 << "full" << 100;
    QTest::newRow("1.7 is clamped to full") << 1.7 << "full" << 100;
    QTest::newRow("more than an int holds is clamped to full") << 1e300 << "full" << 100;
    QTest::newRow("infinity is clamped to full") << infinity << "full" << 100;
    QTest::newRow("a hundredth below 0 hides") << -0.01 << "hidden" << 0;
    QTest::newRow("less than a percent below 0 is cut to 0") << -0.005 << "low" << 0;
    QTest::newRow("minus infinity hides") << -infinity << "hidden" << 0;
    QTest::newRow("no number is 0") << notANumber << "low" << 0;
}

void TestBars::batteryCharge()
{
    QFETCH(const double, charge);
    QFETCH(const QString, level);
    QFETCH(const int, shownValue);
    BatteryBar bar;
    bar.show();
    bar.setValue(50);
    bar.setValue(charge);
    QCOMPARE(bar.value(), shownValue);
    QCOMPARE(bar.isVisible(), level != QLatin1String("hidden"));
    if (bar.isVisible())
        QCOMPARE(bar.styleSheet(), styleSheet(QStringLiteral("BatteryBar"), level));
}

void TestBars::temperaturePercent_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("level");
    QTest::addColumn<int>("shownValue");
    QTest::newRow("0 is low, not hidden") << 0 << "low" << 0;
    QTest::newRow("94 is low") << 94 << "low" << 94;
    QTest::newRow("95 is good") << 95 << "good" << 95;
    QTest::newRow("99 is good") << 99 << "good" << 99;
    QTest::newRow("100 is full") << 100 << "full" << 100;
    QTest::newRow("101 is full, and the progress bar refuses it") << 101 << "full" << 50;
    QTest::newRow("below 0 hides") << -1 << "hidden" << 0;
}

void TestBars::temperaturePercent()
{
    QFETCH(const int, value);
    QFETCH(const QString, level);
    QFETCH(const int, shownValue);
    TemperatureBar bar;
    bar.show();
    bar.setValue(50);
    bar.setValue(value);
    QCOMPARE(bar.value(), shownValue);
    QCOMPARE(bar.isVisible(), level != QLatin1String("hidden"));
    if (bar.isVisible())
        QCOMPARE(bar.styleSheet(), styleSheet(QStringLiteral("TemperatureBar"), level));
}

void TestBars::temperatureLevel_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("level");
    QTest::addColumn<int>("shownValue");
    QTest::newRow("just below 95 is cut to 94 and low") << 94.999 << "low" << 94;
    QTest::newRow("95 is good, not scaled") << 95.0 << "good" << 95;
    QTest::newRow("99.9 is good") << 99.9 << "good" << 99;
    QTest::newRow("100 is full") << 100.0 << "full" << 100;
    QTest::newRow("1 is one percent") << 1.0 << "low" << 1;
    QTest::newRow("-0.5 is cut to 0 and not hidden") << -0.5 << "low" << 0;
    QTest::newRow("-1 hides") << -1.0 << "hidden" << 0;
    QTest::newRow("100.5 is cut to 100") << 100.5 << "full" << 100;
    QTest::newRow("101 is not clamped, and the progress bar refuses it") << 101.0 << "full" << 50;
    QTest::newRow("more than an int holds is full") << 1e300 << "full" << 50;
    QTest::newRow("infinity is full") << infinity << "full" << 50;
    QTest::newRow("less than any int hides") << -1e300 << "hidden" << 0;
    QTest::newRow("no number is 0") << notANumber << "low" << 0;
}

void TestBars::temperatureLevel()
{
    QFETCH(const double, value);
    QFETCH(const QString, level);
    QFETCH(const int, shownValue);
    TemperatureBar bar;
    bar.show();
    bar.setValue(50);
    bar.setValue(value);
    QCOMPARE(bar.value(), shownValue);
    QCOMPARE(bar.isVisible(), level != QLatin1String("hidden"));
    if (bar.isVisible())
        QCOMPARE(bar.styleSheet(), styleSheet(QStringLiteral("TemperatureBar"), level));
}

void TestBars::valuesNeverShowTheBar()
{
    auto *battery = new BatteryBar;
    const BarTable holder(battery);
    battery->setValue(-1);
    battery->setValue(50);
    QVERIFY2(!battery->isVisible(), "a value showed the battery bar");
    battery->setValue(0.5);
    QVERIFY2(!battery->isVisible(), "a charge showed the battery bar");
    QCOMPARE(battery->value(), 50);

    auto *temperature = new TemperatureBar;
    const BarTable otherHolder(temperature);
    temperature->setValue(-1.0);
    temperature->setValue(99);
    temperature->setValue(99.0);
    temperature->setTemperature(20.0);
    QVERIFY2(!temperature->isVisible(), "a value showed the temperature bar");
    QCOMPARE(temperature->value(), 99);
}

void TestBars::negativeValueKeepsTheStyle()
{
    BatteryBar bar;
    bar.setValue(100);
    bar.setValue(-7);
    QCOMPARE(bar.styleSheet(), styleSheet(QStringLiteral("BatteryBar"), QStringLiteral("full")));
}

void TestBars::temperatureText_data()
{
    QTest::addColumn<double>("temperature");
    QTest::addColumn<QString>("text");
    const QString unit = QString(QChar(0xB0)) + QLatin1Char('C');
    QTest::newRow("one decimal") << 23.5 << QString(QStringLiteral("23.5") + unit);
    QTest::newRow("a whole number has its decimal") << 40.0 << QString(QStringLiteral("40.0") + unit);
    QTest::newRow("no padding, and rounded") << 7.26 << QString(QStringLiteral("7.3") + unit);
    QTest::newRow("below zero") << -3.21 << QString(QStringLiteral("-3.2") + unit);
    QTest::newRow("no exponent for large ones") << 1234567.0 << QString(QStringLiteral("1234567.0") + unit);
}

void TestBars::temperatureText()
{
    QFETCH(const double, temperature);
    QFETCH(const QString, text);
    TemperatureBar bar;
    bar.setValue(10);
    bar.setTemperature(temperature);
    QCOMPARE(bar.format(), text);
    QCOMPARE(bar.text(), text);
    bar.setValue(20);
    QCOMPARE(bar.text(), text);
    QCOMPARE(bar.value(), 20);
}

void TestBars::hiddenBarStaysHiddenInLayouts_data()
{
    QTest::addColumn<bool>("isBattery");
    QTest::newRow("battery") << true;
    QTest::newRow("temperature") << false;
}

void TestBars::hiddenBarStaysHiddenInLayouts()
{
    QFETCH(const bool, isBattery);
    QWidget *const bar = isBattery ? static_cast<QWidget *>(new BatteryBar) : new TemperatureBar;
    BarTable holder(bar);
    ZelTableWidget &table = holder.table;
    QVERIFY(QMetaObject::invokeMethod(bar, "setValue", Q_ARG(int, -1)));
    QVERIFY(!bar->isVisible());

    table.setColumnHidden(1, true);
    QCoreApplication::processEvents();
    table.setColumnHidden(1, false);
    QCoreApplication::processEvents();
    QVERIFY2(!bar->isVisible(), "seen after its column was hidden and shown");
    table.setColumnWidth(1, 150);
    QCoreApplication::processEvents();
    QVERIFY2(!bar->isVisible(), "seen after its column was resized");
    table.resize(table.width() + 80, table.height() + 40);
    QCoreApplication::processEvents();
    QVERIFY2(!bar->isVisible(), "seen after the window was resized");
    table.hide();
    table.show();
    QCoreApplication::processEvents();
    QVERIFY2(!bar->isVisible(), "seen after the table was hidden and shown");
    table.horizontalHeader()->resizeSections(QHeaderView::ResizeToContents);
    QCoreApplication::processEvents();
    QVERIFY2(!bar->isVisible(), "seen after the sections were fitted");
}

void TestBars::shownBarComesBack()
{
    auto *bar = new BatteryBar;
    BarTable holder(bar);
    bar->setValue(-1);
    holder.table.setCellWidgetShown(0, 1, true);
    bar->setValue(30);
    QVERIFY(bar->isVisible());
    holder.table.setColumnHidden(1, true);
    QCoreApplication::processEvents();
    QVERIFY(!bar->isVisible());
    holder.table.setColumnHidden(1, false);
    QCoreApplication::processEvents();
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->value(), 30);
}

void TestBars::othersShowTheBar_data()
{
    QTest::addColumn<bool>("isBattery");
    QTest::addColumn<bool>("bySetVisible");
    QTest::newRow("battery: show()") << true << false;
    QTest::newRow("battery: setVisible(true)") << true << true;
    QTest::newRow("temperature: show()") << false << false;
    QTest::newRow("temperature: setVisible(true)") << false << true;
}

void TestBars::othersShowTheBar()
{
    QFETCH(const bool, isBattery);
    QFETCH(const bool, bySetVisible);
    QWidget *const bar = isBattery ? static_cast<QWidget *>(new BatteryBar) : new TemperatureBar;
    BarTable holder(bar);
    QVERIFY(QMetaObject::invokeMethod(bar, "setValue", Q_ARG(int, -1)));
    QVERIFY(QMetaObject::invokeMethod(bar, "setValue", Q_ARG(int, 50)));
    if (bySetVisible)
        bar->setVisible(true);
    else
        bar->show();
    QVERIFY(bar->isVisible());
    holder.table.setColumnWidth(1, 150);
    QCoreApplication::processEvents();
    QVERIFY2(bar->isVisible(), "hidden by a layout");
}

QTEST_MAIN(TestBars)
#include "tst_bars.moc"
