// How soon the main menu appears and how much memory the game holds there,
// for this build's game and any other given (a build of an earlier version,
// to compare side by side).
//
// Each run starts the program as a player does, on the X display of DISPLAY
// (xvfb-run gives one), and times it from the start to the main menu's first
// expose event (Qt's own event log tells when it arrives). A second later,
// once anything the game does in the background at start is over, it reads
// the program's resident memory, then ends it. Each program keeps to its own
// program folder (sounds, word lists) as a build does. With a sound server
// (tests/platform/with_pulse.sh) the game meets one as on a desktop.
//
// Reports per program: the manual time of an iteration is its time to the
// menu; median_ms, max_ms and rss_MB (median, Linux only).
//
//   xvfb-run -a [tests/platform/with_pulse.sh] build/bench/bench_startup
//       [--program=OTHER/lexicove ...] [--benchmark_repetitions=N
//        --benchmark_enable_random_interleaving=true]

#include "resident.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMenuWaitMs = 20000;
// How long the game may go on at start after its menu has appeared.
constexpr int kSettleMs = 1000;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

void BM_StartUp(benchmark::State &state, const QString &program)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        state.SkipWithError("needs an X display: run under xvfb-run -a");
        return;
    }
    QTemporaryDir home;
    QFile::setPermissions(home.path(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                       QStringLiteral("qt.qpa.events.debug=true"));
    // A new player's empty home: nothing of the machine's own settings.
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    environment.remove(QStringLiteral("XDG_DATA_HOME"));

    std::vector<double> millis;
    std::vector<double> megabytes;
    for (auto _ : state) {
        QProcess game;
        game.setProcessEnvironment(environment);
        game.setProcessChannelMode(QProcess::MergedChannels);
        const auto start = Clock::now();
        game.start(program, {});
        QByteArray log;
        const QDeadlineTimer deadline(kMenuWaitMs);
        bool shown = false;
        // Quiet spells are normal while the program loads its libraries.
        while (!shown && !deadline.hasExpired() && game.state() != QProcess::NotRunning) {
            game.waitForReadyRead(10);
            log += game.readAll();
            shown = log.contains("XCB_EXPOSE");
        }
        const double took = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        if (!shown) {
            game.kill();
            game.waitForFinished();
            state.SkipWithError("the main menu did not appear");
            return;
        }
        QThread::msleep(kSettleMs);
        megabytes.push_back(residentBytes(game.processId()) / (1 << 20));
        game.kill();
        game.waitForFinished();
        millis.push_back(took);
        state.SetIterationTime(took / 1e3);
    }
    state.counters["median_ms"] = median(millis);
    state.counters["max_ms"] = *std::max_element(millis.begin(), millis.end());
    state.counters["rss_MB"] = median(megabytes);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QStringList programs = {QCoreApplication::applicationDirPath() + "/../bin/lexicove"};
    std::vector<char *> rest;
    for (int i = 0; i < argc; ++i) {
        if (std::strncmp(argv[i], "--program=", 10) == 0)
            programs << QString::fromLocal8Bit(argv[i] + 10);
        else
            rest.push_back(argv[i]);
    }
    int restCount = static_cast<int>(rest.size());
    for (const QString &program : programs) {
        const QString path = QFileInfo(program).absoluteFilePath();
        if (!QFileInfo(path).isExecutable()) {
            std::fprintf(stderr, "bench_startup: %s is not a program\n", qPrintable(path));
            return 1;
        }
        benchmark::RegisterBenchmark(
            qPrintable("BM_StartUp/" + QFileInfo(path).canonicalFilePath()), BM_StartUp, path)
            ->Iterations(20)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&restCount, rest.data());
    if (benchmark::ReportUnrecognizedArguments(restCount, rest.data()))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
