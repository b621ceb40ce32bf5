// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/numberreader.h"

#include "tests/endurance/amounts.h"

#include <QtTest>

#include <array>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstring>
#include <thread>
#include <vector>

namespace {

constexpr quint64 allFloats = quint64{1} << 32U;
constexpr quint64 portion = quint64{1} << 20U; // so much at a time for each thread

float floatOf(quint32 bits)
{
    float number = 0.0F;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

/// Whether the float of these bits, printed in as few digits as name it alone, reads back as the same. Of a nan only
/// that it is one.
bool readsBack(quint32 bits)
{
    const float number = floatOf(bits);
    std::array<char, 64> text{};
    const char *const end = std::to_chars(text.begin(), text.end() - 1, number).ptr;
    const ReadNumber<float> read = readFloat(text.data());
    if (read.end != end)
        return false;
    return std::isnan(number) ? std::isnan(read.value) : std::memcmp(&read.value, &number, sizeof number) == 0;
}

} // namespace

/// Every float there is, or in a short run every 1021st.
class TestEveryFloat : public QObject {
    Q_OBJECT

private slots:
    void printedShortestReadsBack();
};

void TestEveryFloat::printedShortestReadsBack()
{
    const auto step = static_cast<quint64>(isLongRun() ? 1 : 1021);
    const TimeLimit limit(30'000);
    std::atomic<quint64> next{0};
    std::atomic<quint64> tried{0};
    std::atomic<qint64> wrong{-1};
    const auto work = [&] {
        while (wrong < 0 && !limit.isOver()) {
            const quint64 begin = next.fetch_add(portion * step);
            if (begin >= allFloats)
                return;
            const quint64 end = std::min(begin + portion * step, allFloats);
            for (quint64 bits = begin; bits < end; bits += step) {
                if (!readsBack(static_cast<quint32>(bits)))
                    wrong = static_cast<qint64>(bits);
            }
            tried += (end - begin + step - 1) / step;
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < qMax(1U, std::thread::hardware_concurrency()); ++i)
        threads.emplace_back(work);
    for (std::thread &thread : threads)
        thread.join();
    qInfo("%llu of %llu floats read back", tried.load(), allFloats);
    QVERIFY2(wrong < 0, qPrintable(QStringLiteral("the float of the bits 0x%1").arg(wrong.load(), 0, 16)));
    QVERIFY(tried >= portion);
}

QTEST_APPLESS_MAIN(TestEveryFloat)
#include "tst_everyfloat.moc"
