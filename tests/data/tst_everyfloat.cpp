// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/numberreader.h"

#include "tests/support/repetitions.h"
#include "tests/support/rivalnumbers.h"

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

bool sameBits(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

enum class Reading {
    Itself,
    AsStrtod, ///< another float, but the one that strtod's double is narrowed to
    Wrong
};

/// How the float of these bits, printed in as few digits as name it alone, is read back. Of a nan only that it is one.
Reading readingOf(quint32 bits)
{
    const float number = floatOf(bits);
    std::array<char, 64> text{};
    const char *const end = std::to_chars(text.begin(), text.end() - 1, number).ptr;
    const ReadNumber<float> read = readFloat(text.data());
    const ReadNumber<float> rival = rivalFloat(text.data());
    if (read.end != end || rival.end != end || !sameBits(read.value, rival.value))
        return Reading::Wrong;
    const bool isItself = std::isnan(number) ? std::isnan(read.value) : sameBits(read.value, number);
    return isItself ? Reading::Itself : Reading::AsStrtod;
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
    std::atomic<quint64> others{0};
    std::atomic<qint64> wrong{-1};
    const auto work = [&] {
        while (wrong < 0 && !limit.isOver()) {
            const quint64 begin = next.fetch_add(portion * step);
            if (begin >= allFloats)
                return;
            const quint64 end = std::min(begin + portion * step, allFloats);
            for (quint64 bits = begin; bits < end; bits += step) {
                const Reading reading = readingOf(static_cast<quint32>(bits));
                if (reading == Reading::Wrong)
                    wrong = static_cast<qint64>(bits);
                if (reading == Reading::AsStrtod)
                    ++others;
            }
            tried += (end - begin + step - 1) / step;
        }
    };
    readingOf(1); // makes the locales, with guards of the compiler's that helgrind does not know
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < qMax(1U, std::thread::hardware_concurrency()); ++i)
        threads.emplace_back(work);
    for (std::thread &thread : threads)
        thread.join();
    qInfo("%llu of %llu floats read as strtod reads them, %llu of these not as themselves", tried.load(),
          (allFloats + step - 1) / step, others.load());
    QVERIFY2(wrong < 0, qPrintable(QStringLiteral("the float of the bits 0x%1").arg(wrong.load(), 0, 16)));
    // 7.038531e-26 and its negative: strtod's double falls exactly between two floats, and rounds to the other one.
    QVERIFY(others <= 2);
    QVERIFY(tried >= static_cast<quint64>(repetitions(allFloats / 1021, allFloats).least));
}

QTEST_APPLESS_MAIN(TestEveryFloat)
#include "tst_everyfloat.moc"
