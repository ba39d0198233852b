// The real sound player through a real sound server for as long as a game:
// letter requests played into a private PulseAudio (tests/platform/
// with_pulse.sh) and heard on its output pipe, with quick moves that cut the
// letter before them off and slow ones that let it end; and puzzle after
// puzzle, each loading sounds the one before did not have. Without that pipe
// the tests are skipped.

#include "platform/qtsound.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>
#include <thread>
#include <vector>

using namespace lexicove;

namespace {

constexpr int kRate = 16000;        // samples per second of the sounds and of what is heard
constexpr int kFrame = kRate / 100; // 10 ms
constexpr int kTones = 12;
constexpr int kToneMs = 40;
constexpr int kPadMs = 200; // silence after each tone: PulseAudio cuts a sound's end
// Milliseconds from one request to the next, in turn: quick moves cut the
// sound off, the slow one lets it end (each tone's sound then plays again,
// once ended, every few requests).
constexpr std::array kGapsMs = {80, 80, 320, 80};

// Tone k sits on frequency bin 5 + 2k of a 10 ms frame.
double toneHz(int k)
{
    return 100.0 * (5 + 2 * k);
}

QByteArray waveFile(double hz)
{
    const int tone = kRate * kToneMs / 1000;
    const int samples = tone + kRate * kPadMs / 1000;
    QByteArray data(samples * 2, '\0');
    const int fade = kRate / 200; // 5 ms each way, so the start and end don't click
    for (int i = 0; i < tone; ++i) {
        const double edge = std::min({1.0, double(i) / fade, double(tone - i) / fade});
        const auto value = static_cast<qint16>(16000 * edge * std::sin(2 * M_PI * hz * i / kRate));
        qToLittleEndian(value, data.data() + 2 * i);
    }
    QByteArray file("RIFF....WAVEfmt ");
    const auto le32 = [&](quint32 v) { file.append(reinterpret_cast<const char *>(&v), 4); };
    const auto le16 = [&](quint16 v) { file.append(reinterpret_cast<const char *>(&v), 2); };
    le32(16), le16(1), le16(1), le32(kRate), le32(kRate * 2), le16(2), le16(16);
    file.append("data");
    le32(quint32(data.size()));
    file.append(data);
    qToLittleEndian(quint32(file.size() - 8), file.data() + 4);
    return file;
}

// Reads the pipe in a thread of its own from construction to stop().
class Listener {
public:
    explicit Listener(const QString &path) : m_file(path)
    {
        if (m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            m_thread = std::thread([this] { run(); });
    }
    ~Listener() { stop(); }
    bool listening() const { return m_thread.joinable(); }
    qsizetype heardSoFar()
    {
        std::lock_guard lock(m_mutex);
        return qsizetype(m_samples.size());
    }
    std::vector<qint16> stop()
    {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
        return std::move(m_samples);
    }

private:
    void run()
    {
        // The pipe gives 48 kHz stereo; every third sample of the left
        // channel is kept (the sounds hold nothing above 8 kHz).
        constexpr int kFrameBytes = 2 * 2 * 3;
        QByteArray pending;
        while (!m_stop) {
            const QByteArray got = m_file.read(4096);
            if (got.isEmpty())
                break;
            pending += got;
            const qsizetype whole = pending.size() / kFrameBytes;
            std::lock_guard lock(m_mutex);
            for (qsizetype i = 0; i < whole; ++i)
                m_samples.push_back(
                    qFromLittleEndian<qint16>(pending.constData() + i * kFrameBytes));
            pending.remove(0, whole * kFrameBytes);
        }
    }

    QFile m_file;
    std::thread m_thread;
    std::mutex m_mutex;
    std::vector<qint16> m_samples;
    std::atomic<bool> m_stop{false};
};

// The tones heard, in order: for each 10 ms frame the tone that stands out
// (Goertzel power on its bin), a tone heard in frames one after another
// counted once.
QList<int> tonesHeard(const std::vector<qint16> &samples, qsizetype from)
{
    QList<int> heard;
    int last = -1;
    for (qsizetype at = from; at + kFrame <= qsizetype(samples.size()); at += kFrame) {
        std::array<double, kTones> power{};
        for (int k = 0; k < kTones; ++k) {
            const double coefficient = 2 * std::cos(2 * M_PI * toneHz(k) / kRate);
            double s1 = 0, s2 = 0;
            for (int i = 0; i < kFrame; ++i) {
                const double s = samples[at + i] + coefficient * s1 - s2;
                s2 = s1;
                s1 = s;
            }
            power[k] = s1 * s1 + s2 * s2 - coefficient * s1 * s2;
        }
        const auto best = std::max_element(power.begin(), power.end()) - power.begin();
        if (power[best] < 1e10)
            continue; // silence; the same tone after it is still the same sound
        if (best != last)
            heard.append(int(best));
        last = int(best);
    }
    return heard;
}

// Which requests were never heard: those outside a longest common
// subsequence of what was asked for and what was heard.
QList<int> lostRequests(const QList<int> &asked, const QList<int> &heard)
{
    const qsizetype n = asked.size(), m = heard.size();
    std::vector<std::vector<int>> common(n + 1, std::vector<int>(m + 1, 0));
    for (qsizetype i = n - 1; i >= 0; --i)
        for (qsizetype j = m - 1; j >= 0; --j)
            common[i][j] = asked[i] == heard[j] ? common[i + 1][j + 1] + 1
                                                : std::max(common[i + 1][j], common[i][j + 1]);
    QList<int> lost;
    for (qsizetype i = 0, j = 0; i < n;) {
        if (j < m && asked[i] == heard[j]) {
            ++i, ++j;
        } else if (j < m && common[i][j + 1] >= common[i + 1][j]) {
            ++j;
        } else {
            lost.append(int(i));
            ++i;
        }
    }
    return lost;
}

} // namespace

class TestSoundSoak : public QObject {
    Q_OBJECT

private slots:
    void everyRequestIsHeard();
    void everyPuzzlesSoundsLoad();
};

// Every sound asked for is heard, over 2,000 requests (LEXICOVE_SOAK_MOVES to change it) at a
// player's quick and slow pace.
void TestSoundSoak::everyRequestIsHeard()
{
    const QString pipe = qEnvironmentVariable("LEXICOVE_SOUND_PIPE");
    if (pipe.isEmpty())
        QSKIP("needs a sound server that can be heard: run through tests/platform/with_pulse.sh");
    const int moves = qEnvironmentVariableIntValue("LEXICOVE_SOAK_MOVES") > 0
                          ? qEnvironmentVariableIntValue("LEXICOVE_SOAK_MOVES")
                          : 2000;
    QTemporaryDir folder;
    QStringList paths;
    for (int k = 0; k < kTones; ++k) {
        paths << QDir(folder.path()).filePath(QStringLiteral("%1.wav").arg(k));
        QFile file(paths.last());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(waveFile(toneHz(k))) > 0);
    }

    Listener listener(pipe);
    QVERIFY2(listener.listening(), qPrintable("can't read " + pipe));
    QtSound sound;
    sound.prepare(paths);
    QVERIFY(sound.waitUntilIdle(5000));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const qsizetype start = listener.heardSoFar();

    QList<int> asked;
    auto next = std::chrono::steady_clock::now();
    for (int i = 0; i < moves; ++i) {
        std::this_thread::sleep_until(next);
        asked.append(i % kTones);
        sound.play(paths[i % kTones]);
        next += std::chrono::milliseconds(kGapsMs[i % kGapsMs.size()]);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    sound.shutdown();
    const std::vector<qint16> samples = listener.stop();

    const QList<int> lost = lostRequests(asked, tonesHeard(samples, start));
    QStringList where;
    for (const int i : lost.mid(0, 20))
        where << QStringLiteral("#%1 (play %2 of its sound)").arg(i).arg(i / kTones + 1);
    qInfo("%d requests, %d heard", moves, int(moves - lost.size()));
    QVERIFY2(lost.isEmpty(), qPrintable(QStringLiteral("%1 of %2 never heard: %3")
                                            .arg(lost.size())
                                            .arg(moves)
                                            .arg(where.join(", "))));
}

// Puzzles opened one after another each get their sounds loaded soon, every time: 300 rounds of
// 100 files the round before did not have. (Qt's loading can stall; the player restarts it.)
void TestSoundSoak::everyPuzzlesSoundsLoad()
{
    if (qEnvironmentVariableIsEmpty("LEXICOVE_SOUND_PIPE"))
        QSKIP("needs a sound server: run through tests/platform/with_pulse.sh");
    QTemporaryDir folder;
    QList<QStringList> sets(2);
    for (int k = 0; k < 200; ++k) {
        sets[k % 2] << QDir(folder.path()).filePath(QStringLiteral("%1.wav").arg(k));
        QFile file(sets[k % 2].last());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(waveFile(200.0 + 10 * k)) > 0);
    }
    QtSound sound;
    // The window is being made meanwhile, and the desktop is busy: the loads compete for the
    // processor, as a stall needs.
    std::atomic<bool> done{false};
    std::thread desktop([&done] {
        while (!done) {
        }
    });
    int slow = 0;
    for (int round = 0; round < 300; ++round) {
        sound.prepare(sets[round % 2]);
        QElapsedTimer busy;
        busy.start();
        while (busy.elapsed() < 10) {
        }
        // A stall lasts until the next puzzle; a busy processor only slows the loads.
        slow += !sound.waitUntilIdle(3000);
    }
    done = true;
    desktop.join();
    QCOMPARE(slow, 0);
}

QTEST_MAIN(TestSoundSoak)
#include "tst_soundsoak.moc"
