// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "channel/version.h"
#include "interface/backendversions.h"

#include <QtTest>

#include <limits>

class TestVersion : public QObject {
    Q_OBJECT

private slots:
    void comparison_data();
    void comparison();
    void onlyTheBackendCounts();
};

void TestVersion::comparison_data()
{
    QTest::addColumn<int>("major");
    QTest::addColumn<int>("minor");
    QTest::addColumn<int>("patch");
    QTest::addColumn<int>("wantedMajor");
    QTest::addColumn<int>("wantedMinor");
    QTest::addColumn<bool>("passes");
    constexpr int largest = std::numeric_limits<int>::max();
    constexpr int smallest = std::numeric_limits<int>::min();
    QTest::newRow("the same version passes") << 1 << 12 << 0 << 1 << 12 << true;
    QTest::newRow("a patch of -1 passes") << 1 << 12 << -1 << 1 << 12 << true;
    QTest::newRow("a patch of -2 fails") << 1 << 12 << -2 << 1 << 12 << false;
    QTest::newRow("the smallest patch fails") << 1 << 12 << smallest << 1 << 12 << false;
    QTest::newRow("a higher minor version passes with any patch") << 1 << 13 << smallest << 1 << 12 << true;
    QTest::newRow("a lower minor version fails with any patch") << 1 << 11 << largest << 1 << 12 << false;
    QTest::newRow("a higher major version passes with a lower minor one") << 2 << 0 << -9 << 1 << 12 << true;
    QTest::newRow("a lower major version fails with a higher minor one") << 0 << 99 << 99 << 1 << 12 << false;
    QTest::newRow("1.9 is older than 1.12") << 1 << 9 << 0 << 1 << 12 << false;
    QTest::newRow("0.13 passes 0.13") << 0 << 13 << -1 << 0 << 13 << true;
    QTest::newRow("0.16 fails 1.9") << 0 << 16 << 0 << 1 << 9 << false;
    QTest::newRow("a negative major version fails") << -1 << 50 << 0 << 0 << 13 << false;
    QTest::newRow("nothing connected fails") << 0 << 0 << 0 << 0 << 13 << false;
    QTest::newRow("the largest numbers pass") << largest << largest << largest << 1 << 24 << true;
}

void TestVersion::comparison()
{
    QFETCH(const int, major);
    QFETCH(const int, minor);
    QFETCH(const int, patch);
    QFETCH(const int, wantedMajor);
    QFETCH(const int, wantedMinor);
    QFETCH(const bool, passes);
    BackendVersions versions;
    versions.backendMajor = major;
    versions.backendMinor = minor;
    versions.backendPatch = patch;
    QCOMPARE(versionAtLeast(versions, wantedMajor, wantedMinor), passes);
}

void TestVersion::onlyTheBackendCounts()
{
    BackendVersions versions;
    versions.hostMajor = 9;
    versions.hostMinor = 9;
    versions.hostPatch = 9;
    QVERIFY(!versionAtLeast(versions, 0, 13));
    versions.hostMajor = -9;
    versions.backendMajor = 1;
    QVERIFY(versionAtLeast(versions, 0, 13));
}

QTEST_APPLESS_MAIN(TestVersion)
#include "tst_version.moc"
