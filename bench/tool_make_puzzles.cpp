// Makes puzzles from word lists given on standard input and reports how each
// went, for measuring the puzzle engine.
//
// Input: one list per line, "ROWSxCOLUMNS DIRECTIONS word,word,...", where
// DIRECTIONS is any combination of H, V and D. Anything before a tab is a
// label and is ignored; empty lines and lines starting with # are skipped.
//
// Output: one line per puzzle: the placement status (2 complete, 1 failed),
// the CPU milliseconds of placement and fill together, and for status 2 the
// filled grid, its rows joined by "/".
//
// Options:
//   --seed N       seed of the first puzzle (default 1); puzzle i of a run uses
//                  N + i, counting every repeat of every line
//   --repeat K     make each line K times (default 1)
//   --summary      also print counts, restarts, refusals and percentiles of
//                  the milliseconds to standard error
//   --trace        print each puzzle's search nodes, restarts and whether the
//                  clock ended it to standard error
//   --restart-ms X, --give-up-ms Y   the search's time limits
//   --most-steps N the search's step backstop (for long exact checks)
//   --plain        search without recognising dead ends early (to compare)
//   --cpu-clock    time the search's limits by this thread's CPU time instead
//                  of the steady clock, so that a busy machine does not
//                  trigger restarts (the game uses the steady clock)

#include "core/gamestate.h"
#include "platform/qtplatform.h"
#include "setup/placement.h"
#include "setup/wordloading.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

using namespace lexicove;

namespace {

// This thread's CPU time; the process's where a thread clock isn't offered.
double cpuMilliseconds()
{
#if defined(CLOCK_THREAD_CPUTIME_ID)
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1000.0 + ts.tv_nsec / 1.0e6;
#else
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}

bool parseList(const std::string &rawLine, GameState &state)
{
    std::string line = rawLine;
    const auto tab = line.rfind('\t');
    if (tab != std::string::npos)
        line = line.substr(tab + 1);
    const QString text = QString::fromStdString(line).trimmed();
    if (text.isEmpty() || text.startsWith(u'#'))
        return false;
    const QStringList fields = text.split(u' ', Qt::SkipEmptyParts);
    if (fields.size() < 2)
        return false;
    const QStringList size = fields[0].toLower().split(u'x');
    if (size.size() != 2)
        return false;
    state.rows = static_cast<qint16>(size[0].toInt());
    state.columns = static_cast<qint16>(size[1].toInt());
    const QString directions = fields[1].toUpper();
    state.allowHorizontal = directions.contains(u'H');
    state.allowVertical = directions.contains(u'V');
    state.allowDiagonal = directions.contains(u'D');
    const QStringList words =
        fields.size() > 2 ? fields[2].split(u',', Qt::KeepEmptyParts) : QStringList();
    state.wordCount = 0;
    state.letterCount = 0;
    for (const QString &word : words) {
        if (state.wordCount == GameState::kMaxWords)
            break;
        state.words[++state.wordCount] = word;
        state.letterCount += static_cast<qint32>(word.size());
    }
    SortWords(state);
    return true;
}

double percentile(std::vector<double> sorted, double p)
{
    if (sorted.empty())
        return 0.0;
    std::sort(sorted.begin(), sorted.end());
    const double rank = p / 100.0 * (sorted.size() - 1);
    const auto low = static_cast<std::size_t>(rank);
    const std::size_t high = std::min(low + 1, sorted.size() - 1);
    return sorted[low] + (rank - low) * (sorted[high] - sorted[low]);
}

} // namespace

int main(int argc, char **argv)
{
    long long seed = 1;
    long long repeat = 1;
    bool summary = false;
    bool trace = false;
    bool cpuClock = false;
    PlacementLimits limits;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](const char *name) -> const char * {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "%s needs a value\n", name);
                std::exit(2);
            }
            return argv[++i];
        };
        if (arg == "--seed")
            seed = std::atoll(value("--seed"));
        else if (arg == "--repeat")
            repeat = std::max(1LL, std::atoll(value("--repeat")));
        else if (arg == "--summary")
            summary = true;
        else if (arg == "--trace")
            trace = true;
        else if (arg == "--cpu-clock")
            cpuClock = true;
        else if (arg == "--plain")
            limits.pruneDeadEnds = false;
        else if (arg == "--restart-ms")
            limits.restartAfterMs = std::atof(value("--restart-ms"));
        else if (arg == "--most-steps")
            limits.mostSteps = std::atoll(value("--most-steps"));
        else if (arg == "--give-up-ms")
            limits.giveUpAfterMs = std::atof(value("--give-up-ms"));
        else {
            std::fprintf(stderr,
                         "usage: %s [--seed N] [--repeat K] [--summary] [--trace] [--plain]"
                         " [--cpu-clock] [--restart-ms X] [--give-up-ms Y] [--most-steps N]"
                         " < lists\n",
                         argv[0]);
            return 2;
        }
    }

    auto state = std::make_unique<GameState>();
    SystemRandom random;

    std::vector<double> times;
    long long made = 0, complete = 0, failed = 0, restartRuns = 0, restarts = 0,
              refusedByTime = 0, failedSizeTest = 0;
    std::string line;
    std::string out;
    while (std::getline(std::cin, line)) {
        if (!parseList(line, *state))
            continue;
        if (!PassesSizeTest(*state))
            ++failedSizeTest;
        for (long long k = 0; k < repeat; ++k) {
            random.seed(static_cast<double>(seed + made));
            ++made;
            const double start = cpuMilliseconds();
            // A placer for each puzzle, as the options window makes one for
            // each OK.
            WordPlacer placer(*state, random,
                              cpuClock ? WordPlacer::TimeSource(cpuMilliseconds)
                                       : WordPlacer::TimeSource(),
                              limits);
            placer.ClearPuzzle();
            placer.PlaceWord(1);
            const bool ok = placer.placementStatus() == PlacementStatus::Complete;
            if (ok)
                FillGrid(*state, random);
            const double ms = cpuMilliseconds() - start;
            times.push_back(ms);
            restarts += placer.restarts();
            if (placer.restarts() > 0)
                ++restartRuns;
            out.clear();
            out += ok ? "2 " : "1 ";
            char number[32];
            std::snprintf(number, sizeof number, "%.4f", ms);
            out += number;
            if (ok) {
                ++complete;
                out += ' ';
                for (int r = 1; r <= state->rows; ++r) {
                    if (r > 1)
                        out += '/';
                    for (int c = 1; c <= state->columns; ++c)
                        out += state->grid[r][c].toStdString();
                }
            } else {
                ++failed;
                if (placer.stoppedByTime())
                    ++refusedByTime;
            }
            out += '\n';
            std::fwrite(out.data(), 1, out.size(), stdout);
            if (trace)
                std::fprintf(stderr, "nodes %lld restarts %d %s\n",
                             static_cast<long long>(placer.searchNodes()), placer.restarts(),
                             placer.stoppedByTime() ? "stopped by time" : "");
        }
    }
    if (summary) {
        std::fprintf(stderr,
                     "puzzles %lld  complete %lld  failed %lld (of them by the time limit %lld)"
                     "  lists failing the size test %lld\n"
                     "runs that restarted %lld  restarts %lld\n"
                     "ms: median %.4f  p90 %.4f  p99 %.4f  p99.9 %.4f  max %.4f\n",
                     made, complete, failed, refusedByTime, failedSizeTest, restartRuns, restarts,
                     percentile(times, 50), percentile(times, 90), percentile(times, 99),
                     percentile(times, 99.9), percentile(times, 100));
    }
    return 0;
}
