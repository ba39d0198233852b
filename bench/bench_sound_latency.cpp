// How soon a puzzle's letters can be heard, and how long a move holds up the
// player before its letter is on its way.
//
// The puzzle window and the sound player are the game's own (FrmSearch,
// QtSound on the game's sounds); only the navigator is a stand-in, since no
// other window opens. The puzzle is 50 by 50 and holds 100 different letters
// from every script the game speaks, every other cell a capital. Runs
// headless (offscreen); the samples are only loaded where there is an audio
// device, so run it with a sound server (tests/platform/with_pulse.sh gives a
// private one) for figures that mean anything (audio_device 1).
//
// BM_OpenPuzzle: from the window being made to every sound of its grid and
// of the marks loaded, each time on letters the puzzle before did not have
// (two sets of 100 in turn, so each opening loads 100 letter files and lets
// go of the 100 before). first_ms is the first opening of the run, when the sound
// system itself starts; rss_first_MB and rss_last_MB the memory after it and
// after the last. BM_KeyToSoundRequest: from the arrow key reaching
// the window to the sound player's play request returning, for bursts of 200
// quick moves, per move: median_us, p99_us and max_us. BM_PlayRequest: the
// play request alone.
//
// With a braille display (bench/measure_braille.sh starts brltty of its own
// on a pretend display and says where in LEXICOVE_VR_SOCKET), the game's own
// braille display is attached to brltty's, and a second measure runs: from
// the arrow key to the new row arriving at the pretend display, through the
// game's braille thread and brltty.
//
//   [tests/platform/with_pulse.sh] build/bench/bench_sound_latency [--benchmark_repetitions=N]
//   bench/measure_braille.sh build [--benchmark_repetitions=N]

#include "core/gamestate.h"
#include "core/navigator.h"
#include "platform/qtfiledialogs.h"
#include "platform/qtplatform.h"
#include "play/frmlist.h"
#include "play/frmsearch.h"
#include "pretenddisplay.h"
#include "resident.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QAudioDevice>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMediaDevices>
#include <QTableWidget>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using lexicove::GameState;

constexpr int kSide = 50;
constexpr int kLetters = 100;
constexpr int kBurst = 200;
// The pretend braille display's width.
constexpr int kDisplayCells = 40;

// The game's sounds: the build copies them beside the executable; from a
// bench folder they are found in the source tree they are copied from.
QString soundFolder()
{
    const QStringList candidates = {
        QFileInfo(QStringLiteral(__FILE__)).absolutePath() + QStringLiteral("/../assets/sounds"),
        QCoreApplication::applicationDirPath() + QStringLiteral("/../bin"),
        QCoreApplication::applicationDirPath(),
    };
    for (const QString &folder : candidates) {
        if (QFileInfo::exists(QDir(folder).filePath(QStringLiteral("ж.wav"))))
            return QDir(folder).absolutePath();
    }
    return QString();
}

class SoundFolderInfo final : public lexicove::SystemInfo {
public:
    explicit SoundFolderInfo(QString folder) : m_folder(std::move(folder)) {}
    QString systemDirectory() override { return m_real.systemDirectory(); }
    QString programFolder() override { return m_folder; }
    QString wordListFolder() override { return m_folder; }
    bool screenReaderRunning() override { return m_real.screenReaderRunning(); }

private:
    QString m_folder;
    lexicove::QtSystemInfo m_real;
};

// The real player, with the moment each play request returns.
class TimedSound final : public lexicove::Sound {
public:
    explicit TimedSound(lexicove::QtSound &real) : m_real(real) {}
    void prepare(const QStringList &paths) override { m_real.prepare(paths); }
    void play(const QString &path) override
    {
        m_real.play(path);
        returned = Clock::now();
        ++plays;
    }
    Clock::time_point returned;
    int plays = 0;

private:
    lexicove::QtSound &m_real;
};

// Nothing else opens during the bench.
class StayNavigator final : public lexicove::Navigator {
public:
    void showMainMenu() override {}
    bool openChooser() override { return false; }
    bool openEditor() override { return false; }
    bool openOptions() override { return false; }
    bool openPuzzle() override { return false; }
    lexicove::FrmList &listWindow() override { return m_list; }
    void endProgram() override {}

private:
    lexicove::FrmList m_list;
};

struct Rig {
    lexicove::QtSound sound;
    TimedSound timed{sound};
    lexicove::QtDialogs dialogs;
    lexicove::SystemClock clock;
    lexicove::SystemRandom random;
    SoundFolderInfo system{soundFolder()};
    lexicove::QtFiles files;
    lexicove::QtFileDialogs fileDialogs;
    // Never written: the puzzle is drawn at its usual size.
    lexicove::QtSettings settings{QDir::temp().filePath(QStringLiteral("lexicove-bench.ini"))};
    // The game's own: with no braille service running, as good as none.
    std::unique_ptr<lexicove::BrailleDisplay> braille = lexicove::MakeSystemBrailleDisplay();
    // The display brltty shows the game's cells on, when there is one.
    lexicove::test::PretendDisplay display;
    bool displayAttached = false;
    lexicove::Platform platform{dialogs, timed,       clock,    random,  system,
                                files,   fileDialogs, settings, *braille};
    StayNavigator navigator;
    GameState state;
};

Rig *rig = nullptr;

// The letters that have a sound of their own, in two sets of kLetters.
QStringList shippedLetters(const QString &folder)
{
    QStringList letters;
    const QStringList names =
        QDir(folder).entryList({QStringLiteral("?.wav")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        if (name.at(0).isLetter())
            letters << name.left(1);
    }
    return letters;
}

// set 0 or 1: kLetters letters of the game's, every other cell in capitals.
void fillPuzzle(GameState &state, const QStringList &letters, int set)
{
    state.rows = kSide;
    state.columns = kSide;
    for (int r = 1; r <= kSide; ++r)
        for (int c = 1; c <= kSide; ++c) {
            const QChar letter = letters[set * kLetters + (r * 7 + c * 3) % kLetters].at(0);
            // A cell holds one character: the capital by the simple mapping
            // ("ß" stays "ß", never "SS").
            state.grid[r][c] = QString((r + c) % 2 ? letter.toUpper() : letter);
        }
    state.wordCount = 2;
    state.words[1] = QStringLiteral("cat");
    state.words[2] = QStringLiteral("dog");
    state.letterCount = 6;
}

// The keys of a burst: along a row, down one, back along the next, so that
// every key is a move.
std::vector<Qt::Key> snake()
{
    std::vector<Qt::Key> keys;
    int column = 0;
    int step = 1;
    while (static_cast<int>(keys.size()) < kBurst) {
        if (column + step >= 0 && column + step < kSide) {
            column += step;
            keys.push_back(step > 0 ? Qt::Key_Right : Qt::Key_Left);
        } else {
            step = -step;
            keys.push_back(Qt::Key_Down);
        }
    }
    return keys;
}

void report(benchmark::State &state, std::vector<double> &micros)
{
    if (micros.empty())
        return;
    std::sort(micros.begin(), micros.end());
    const auto at = [&](double fraction) {
        const auto index = static_cast<size_t>(fraction * static_cast<double>(micros.size() - 1));
        return micros[index];
    };
    state.counters["median_us"] = at(0.5);
    state.counters["p99_us"] = at(0.99);
    state.counters["max_us"] = micros.back();
    state.counters["moves"] = static_cast<double>(micros.size());
}

// The process's resident memory in MB (Linux); 0 elsewhere.
double residentMB()
{
    return residentBytes() / (1 << 20);
}

void BM_OpenPuzzle(benchmark::State &state)
{
    const QStringList letters = shippedLetters(rig->system.programFolder());
    if (letters.size() < 2 * kLetters) {
        state.SkipWithError("fewer than 200 letters have a sound");
        return;
    }
    std::vector<double> millis;
    double firstMB = 0;
    int set = 0;
    for (auto _ : state) {
        fillPuzzle(rig->state, letters, set);
        set = 1 - set;
        const auto start = Clock::now();
        lexicove::FrmSearch window(rig->state, rig->platform, rig->navigator);
        window.Form_Load();
        window.show();
        if (!rig->sound.waitUntilIdle(5000)) {
            state.SkipWithError("the sounds did not load within 5 s");
            return;
        }
        const double took = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        millis.push_back(took);
        state.SetIterationTime(took / 1e3);
        if (millis.size() == 1)
            firstMB = residentMB();
    }
    state.counters["first_ms"] = millis.front();
    // With one puzzle's sounds held (the first), and after the last: the
    // samples of letters no longer in the grid are let go of.
    state.counters["rss_first_MB"] = firstMB;
    state.counters["rss_last_MB"] = residentMB();
    std::sort(millis.begin(), millis.end());
    state.counters["median_ms"] = millis[millis.size() / 2];
    state.counters["max_ms"] = millis.back();
    state.counters["audio_device"] = QMediaDevices::defaultAudioOutput().isNull() ? 0 : 1;
}
BENCHMARK(BM_OpenPuzzle)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

// What a move is timed to.
enum class Until { SoundRequest, BrailleRow };

void TimeMoves(benchmark::State &state, Until until)
{
    if (until == Until::BrailleRow && !rig->displayAttached) {
        state.SkipWithError("no braille display: run bench/measure_braille.sh");
        return;
    }
    fillPuzzle(rig->state, shippedLetters(rig->system.programFolder()), 0);
    lexicove::FrmSearch window(rig->state, rig->platform, rig->navigator);
    window.Form_Load();
    window.show();
    window.activateWindow();
    auto *grid = window.findChild<QTableWidget *>(QStringLiteral("flex"));
    if (!grid) {
        state.SkipWithError("the puzzle window has no grid named flex");
        return;
    }
    rig->sound.waitUntilIdle(5000);
    QElapsedTimer shown;
    shown.start();
    while (shown.elapsed() < 200) {
        QCoreApplication::processEvents();
        rig->display.read();
    }
    if (rig->displayAttached && rig->display.shown().cursor != 1) {
        state.SkipWithError("the puzzle's row never reached the braille display");
        return;
    }

    // The display shows the cursor's row from its page's first column, the
    // cursor on its cell.
    const auto rowArrived = [&] {
        const int row = grid->currentRow() + 1;
        const int column = grid->currentColumn() + 1;
        const int first = (column - 1) / kDisplayCells * kDisplayCells + 1;
        QString page;
        for (int c = first; c < first + kDisplayCells && c <= rig->state.columns; ++c)
            page += rig->state.grid[row][c];
        const lexicove::BrailleCells shown = rig->display.shown();
        return shown.cursor == column - first + 1 && shown.text == page.toLower();
    };
    const std::vector<Qt::Key> keys = snake();
    std::vector<double> micros;
    micros.reserve(static_cast<size_t>(state.max_iterations) * kBurst);
    for (auto _ : state) {
        grid->setCurrentCell(0, 0);
        QCoreApplication::processEvents();
        rig->display.read(20);
        double burst = 0;
        for (const Qt::Key key : keys) {
            const int before = rig->timed.plays;
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            const auto start = Clock::now();
            QApplication::sendEvent(grid, &press);
            if (rig->timed.plays != before + 1) {
                state.SkipWithError("a move did not ask for exactly one sound");
                return;
            }
            Clock::time_point end = rig->timed.returned;
            if (until == Until::BrailleRow) {
                // brltty may show two quick writes as one: wait for this
                // move's cells, not for any.
                const QDeadlineTimer deadline(100);
                while (!rowArrived()) {
                    if (deadline.hasExpired()) {
                        state.SkipWithError("a move's row did not reach the braille display");
                        return;
                    }
                    rig->display.read(1);
                }
                end = Clock::now();
            }
            const double took = std::chrono::duration<double, std::micro>(end - start).count();
            micros.push_back(took);
            burst += took;
            QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
            QApplication::sendEvent(grid, &release);
            // The rest of the event loop's turn (painting), and what brltty
            // has shown meanwhile, outside the timing.
            QCoreApplication::processEvents();
            rig->display.read();
        }
        state.SetIterationTime(burst / 1e6);
    }
    report(state, micros);
}

void BM_KeyToSoundRequest(benchmark::State &state)
{
    TimeMoves(state, Until::SoundRequest);
    state.SetLabel(rig->displayAttached ? "braille display attached" : "no braille display");
}
BENCHMARK(BM_KeyToSoundRequest)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_KeyToBrailleRow(benchmark::State &state)
{
    TimeMoves(state, Until::BrailleRow);
}
BENCHMARK(BM_KeyToBrailleRow)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

// The play request alone, letters in turn, for comparison.
void BM_PlayRequest(benchmark::State &state)
{
    const QString folder = rig->system.programFolder();
    QStringList paths;
    for (char letter = 'a'; letter <= 'z'; ++letter)
        paths << lexicove::joinPath(folder, QString(QChar(letter)) + QStringLiteral(".wav"));
    std::vector<double> micros;
    micros.reserve(static_cast<size_t>(state.max_iterations) * kBurst);
    for (auto _ : state) {
        double burst = 0;
        for (int i = 0; i < kBurst; ++i) {
            const auto start = Clock::now();
            rig->sound.play(paths[(i * 7) % paths.size()]);
            const double took =
                std::chrono::duration<double, std::micro>(Clock::now() - start).count();
            micros.push_back(took);
            burst += took;
            QCoreApplication::processEvents();
        }
        state.SetIterationTime(burst / 1e6);
    }
    report(state, micros);
}
BENCHMARK(BM_PlayRequest)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    {
        Rig bench;
        rig = &bench;
        if (bench.system.programFolder().isEmpty()) {
            std::fprintf(stderr, "bench_sound_latency: the game's sounds were not found\n");
            return 1;
        }
        const QString socket = qEnvironmentVariable("LEXICOVE_VR_SOCKET");
        bench.displayAttached = !socket.isEmpty() && bench.display.open(socket, kDisplayCells);
        if (!socket.isEmpty() && !bench.displayAttached)
            std::fprintf(stderr, "bench_sound_latency: no pretend display at %s\n",
                         qPrintable(socket));
        benchmark::RunSpecifiedBenchmarks();
        bench.sound.shutdown();
        rig = nullptr;
    }
    benchmark::Shutdown();
    return 0;
}
