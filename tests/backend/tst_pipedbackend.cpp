// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/pipedbackend.h"
#include "backend/simulatedbackend.h"

#include <QTemporaryFile>
#include <QTest>

#include <array>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

using namespace backend;

using namespace std::chrono_literals;

namespace {

using Clock = LineStream::Clock;
using Phase = StreamState::Phase;

const QByteArray body("[0 1.0][1 2 3 4 5 6][1 0 0 0 1 0 0 0 1]");

/// A pipe whose one end the backend reads.
class Pipe {
public:
    Pipe()
    {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            qFatal("there is no pipe");
    }
    ~Pipe()
    {
        closeWriting();
        ::close(ends[0]);
    }
    Q_DISABLE_COPY(Pipe)

    int reading() const { return ends[0]; }
    void write(const QByteArray &bytes)
    {
        for (int done = 0; done < bytes.size();) {
            const ssize_t size =
                ::write(ends[1], bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
            if (size <= 0)
                qFatal("the pipe is broken");
            done += static_cast<int>(size);
        }
    }
    void closeWriting()
    {
        if (ends[1] >= 0)
            ::close(std::exchange(ends[1], -1));
    }

private:
    std::array<int, 2> ends{-1, -1};
};

/// The next \a count lines, or fewer when they don't come.
QVector<ReceivedLine> takeLines(LineStream *stream, int count)
{
    QVector<ReceivedLine> lines;
    const auto deadline = Clock::now() + 30s;
    while (lines.size() < count && Clock::now() < deadline && stream->state().phase != Phase::Ended)
        lines += stream->take(Clock::now() + 10ms);
    return lines;
}

/// All lines up to the end.
QByteArrayList textsToTheEnd(LineStream *stream)
{
    QByteArrayList texts;
    for (const ReceivedLine &line : takeLines(stream, std::numeric_limits<int>::max()))
        texts.append(line.line.text);
    return texts;
}

} // namespace

class TestPipedBackend : public QObject {
    Q_OBJECT

private slots:
    void deliversLinesAsTheyCome();
    void tellsWhenALineCame();
    void endsWithItsInput_data();
    void endsWithItsInput();
    void readsAnythingWithADescriptor();
    void endsWithoutAnInput();
    void accountsForHostileInput();
    void stopsWhileItWaits();
    void stopsWhileMoreComes();
    void isWoken();
    void answersFromWhatItHasSeen();
    void letsAnotherBackendAnswer();
    void forgetsWhatCameWithoutAStream();
    void countsForEachStreamAnew();
};

void TestPipedBackend::deliversLinesAsTheyCome()
{
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    QCOMPARE(backend.name(), QStringLiteral("standard input"));
    const auto stream = backend.open(Clock::now());
    QVERIFY(stream->state().phase == Phase::Live);
    for (int i = 0; i < 20; ++i) {
        const QByteArray text = "3d 0 " + QByteArray::number(i) + '\r';
        pipe.write(text.left(4));
        pipe.write(text.mid(4) + '\n');
        const QVector<ReceivedLine> lines = takeLines(stream.get(), 1);
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines[0].line.tag, QByteArray("3d"));
        QCOMPARE(lines[0].line.text, text);
        QCOMPARE(lines[0].sequence, static_cast<quint64>(i));
    }
}

void TestPipedBackend::tellsWhenALineCame()
{
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    const auto epoch = Clock::now() - 1h;
    const auto stream = backend.open(epoch);
    const auto before = Clock::now();
    pipe.write("6d 0\n");
    const QVector<ReceivedLine> lines = takeLines(stream.get(), 1);
    QCOMPARE(lines.size(), 1);
    QVERIFY(epoch + lines[0].time >= before);
    QVERIFY(epoch + lines[0].time <= Clock::now());
}

void TestPipedBackend::endsWithItsInput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::newRow("with a whole line") << QByteArray("6d 0\n3d 0\n") << QByteArrayList{"6d 0", "3d 0"};
    QTest::newRow("with half a line, the modules' to read")
        << QByteArray("6d 0\n3d 1 [0 1") << QByteArrayList{"6d 0", "3d 1 [0 1"};
    QTest::newRow("without a line") << QByteArray() << QByteArrayList{};
    QTest::newRow("with nothing to show") << QByteArray("\n\nhello") << QByteArrayList{};
}

void TestPipedBackend::endsWithItsInput()
{
    QFETCH(const QByteArray, input);
    QFETCH(const QByteArrayList, lines);
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    const auto stream = backend.open(Clock::now());
    pipe.write(input);
    pipe.closeWriting();
    QCOMPARE(textsToTheEnd(stream.get()), lines);
    QVERIFY(stream->state().phase == Phase::Ended); // once all is taken
    QVERIFY(stream->state().reason.isEmpty());
    const auto deadline = Clock::now() + 20ms;
    QVERIFY(stream->take(deadline).isEmpty());
    QVERIFY(Clock::now() >= deadline); // the end is no reason to come back at once, time and again
}

void TestPipedBackend::readsAnythingWithADescriptor()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("3d 0\n6d 0\n");
    QVERIFY(file.seek(0));
    PipedBackend backend(file.handle());
    const auto stream = backend.open(Clock::now());
    QCOMPARE(textsToTheEnd(stream.get()), (QByteArrayList{"3d 0", "6d 0"}));
}

void TestPipedBackend::endsWithoutAnInput()
{
    std::array<int, 2> ends{-1, -1};
    QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[0]);
    ::close(ends[1]);
    for (const int input : {ends[0], -1}) {
        PipedBackend backend(input);
        const auto stream = backend.open(Clock::now());
        QCOMPARE(textsToTheEnd(stream.get()), QByteArrayList());
        QVERIFY(stream->state().phase == Phase::Ended);
    }
}

void TestPipedBackend::accountsForHostileInput()
{
    QByteArray noise;
    for (int i = 0; i < 100000; ++i)
        noise += static_cast<char>((i * 7919 + i / 251) % 255 + 1); // every byte but zero
    noise.replace('\n', ' ');
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    const auto stream = backend.open(Clock::now());
    std::thread writer([&] {
        pipe.write("6d 0\n" + noise + "\n\n\r\n" + QByteArray(3'000'000, '[') + "\n6d 1 [5000 1]" + body.mid(7) + "\n");
        pipe.write("6d -1 " + QByteArray(100000, '[') + "\n3d 0\n" + QByteArray(100, '\0') + "\n6d 7 " + body
                   + "\nlast");
        pipe.closeWriting();
    });
    const QByteArrayList texts = textsToTheEnd(stream.get());
    writer.join();
    QCOMPARE(texts.size() + static_cast<int>(stream->losses().late), 4);
    QCOMPARE(stream->losses().refused, 2U); // three megabytes, and a body beyond the thousandth
    QCOMPARE(stream->losses().unknown, std::optional<quint64>(3)); // noise, zeros, and the half line
    QCOMPARE(stream->takeWarnings().size(), 5);
    QCOMPARE(backend.request("standard number_of_bodies"), std::optional<QByteArray>("1"));
}

void TestPipedBackend::stopsWhileItWaits()
{
    Pipe pipe; // nothing is written, and the end stays open
    for (int round = 0; round < 20; ++round) {
        PipedBackend backend(pipe.reading());
        const auto stream = backend.open(Clock::now());
    }
    pipe.write("half a line");
    PipedBackend backend(pipe.reading());
    const auto stream = backend.open(Clock::now());
}

void TestPipedBackend::stopsWhileMoreComes()
{
    const int zeros = ::open("/dev/zero", O_RDONLY | O_CLOEXEC); // without an end
    QVERIFY(zeros >= 0);
    {
        PipedBackend backend(zeros);
        const auto stream = backend.open(Clock::now());
        QVERIFY(stream->take(Clock::now() + 50ms).isEmpty());
        QVERIFY(stream->state().phase == Phase::Live);
    }
    ::close(zeros);
}

void TestPipedBackend::isWoken()
{
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    const auto stream = backend.open(Clock::now());
    stream->wake();
    const auto begin = Clock::now();
    QVERIFY(stream->take(begin + 60s).isEmpty());
    QVERIFY(Clock::now() < begin + 60s);
}

void TestPipedBackend::answersFromWhatItHasSeen()
{
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    QCOMPARE(backend.request("standard number_of_bodies"), std::optional<QByteArray>("0"));
    QCOMPARE(backend.version().major, 2);
    const auto stream = backend.open(Clock::now());
    QCOMPARE(stream->configurationChanges(), 0U);
    pipe.write("6d 1 " + body + '\n');
    QCOMPARE(takeLines(stream.get(), 1).size(), 1);
    QCOMPARE(backend.request("standard number_of_bodies"), std::optional<QByteArray>("1"));
    QCOMPARE(stream->configurationChanges(), 1U);
    QVERIFY(backend.command("output active chmon 6d yes"));
    QVERIFY(!backend.command("output active chmon 6di yes"));
    QVERIFY(!backend.command("output active chmon 6d no"));
    QVERIFY(!backend.command("standard number_of_bodies"));
}

void TestPipedBackend::letsAnotherBackendAnswer()
{
    Scenario scenario;
    scenario.version = {1, 21, 7};
    scenario.bodies.resize(3);
    Pipe pipe;
    PipedBackend backend(pipe.reading(), std::make_unique<SimulatedBackend>(scenario));
    QCOMPARE(backend.version().patch, 7);
    const auto stream = backend.open(Clock::now());
    pipe.write("6d 1 " + body + '\n');
    const QVector<ReceivedLine> lines = takeLines(stream.get(), 1);
    QCOMPARE(lines.size(), 1); // the pipe's, and none of the scenario's
    QCOMPARE(lines[0].line.text, "6d 1 " + body);
    QCOMPARE(backend.request("standard number_of_bodies"), std::optional<QByteArray>("3"));
    QCOMPARE(stream->configurationChanges(), 0U); // what was seen changes no answer
    QCOMPARE(backend.request("output active chmon 6d"), std::optional<QByteArray>("no"));
    QVERIFY(backend.command("output active chmon 6d yes"));
    QCOMPARE(backend.request("output active chmon 6d"), std::optional<QByteArray>("yes"));
}

void TestPipedBackend::forgetsWhatCameWithoutAStream()
{
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    pipe.write("3d 0\n"); // it waits in the pipe until the first stream
    auto stream = backend.open(Clock::now());
    QCOMPARE(takeLines(stream.get(), 1).size(), 1);
    stream.reset();
    pipe.write("3d 0\n3d 0\n6d 1 " + body + '\n');
    QTRY_COMPARE(backend.request("standard number_of_bodies"), std::optional<QByteArray>("1"));
    stream = backend.open(Clock::now());
    pipe.write("3d 0 new\n");
    QVector<ReceivedLine> lines = takeLines(stream.get(), 1);
    QVERIFY(!lines.isEmpty());
    if (lines[0].line.tag == "6d") { // the one that told of the body may be on its way still
        lines.removeFirst();
        lines += takeLines(stream.get(), lines.isEmpty() ? 1 : 0);
    }
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].line.text, QByteArray("3d 0 new"));
    QCOMPARE(lines[0].sequence, 4U);
    QCOMPARE(stream->configurationChanges(), 1U); // nobody was told of it
}

void TestPipedBackend::countsForEachStreamAnew()
{
    Pipe pipe;
    PipedBackend backend(pipe.reading());
    auto stream = backend.open(Clock::now());
    pipe.write("unknown\n" + QByteArray(LineSplitter::longestLine + 1, 'x') + "\n3d 0\n");
    QCOMPARE(takeLines(stream.get(), 1).size(), 1);
    QCOMPARE(stream->losses().unknown, std::optional<quint64>(1));
    QCOMPARE(stream->losses().refused, 1U);
    stream = nullptr;
    stream = backend.open(Clock::now());
    QCOMPARE(stream->losses().unknown, std::optional<quint64>(0));
    pipe.write("unknown\n3d 0\n");
    QCOMPARE(takeLines(stream.get(), 1).size(), 1);
    QCOMPARE(stream->losses().unknown, std::optional<quint64>(1));
    QCOMPARE(stream->losses().refused, 0U);
    QCOMPARE(stream->losses().late, 0U);
}

QTEST_GUILESS_MAIN(TestPipedBackend)
#include "tst_pipedbackend.moc"
