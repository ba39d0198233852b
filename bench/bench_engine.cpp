// Speed of making a puzzle: placement, fill, and the two together, on fixed
// lists of a few families (short, mixed and long words; near the area limit
// and near the side limit of the size test; several direction sets).

#include "core/gamestate.h"
#include "platform/qtplatform.h"
#include "setup/placement.h"
#include "setup/wordloading.h"

#include <benchmark/benchmark.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace lexicove;

namespace {

struct Family {
    std::string name;
    int rows;
    int columns;
    QString directions;
    QStringList words;
};

// Random words of the given lengths, the same every run.
QStringList wordsOfLengths(const std::vector<int> &lengths, unsigned seed)
{
    std::mt19937 generator(seed);
    QStringList words;
    for (const int len : lengths) {
        QString word;
        for (int k = 0; k < len; ++k)
            word += QChar(u'a' + static_cast<int>(generator() % 26));
        words.append(word);
    }
    return words;
}

// Lengths from low to high, as many as fill `letters`, at most 50 words.
std::vector<int> lengthsUpTo(int letters, int low, int high, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<int> lengths;
    int total = 0;
    while (lengths.size() < 50) {
        const int len = low + static_cast<int>(generator() % (high - low + 1));
        if (total + len > letters)
            break;
        lengths.push_back(len);
        total += len;
    }
    return lengths;
}

std::vector<int> repeat(int length, int count)
{
    return std::vector<int>(static_cast<std::size_t>(count), length);
}

std::vector<Family> families()
{
    return {
        // Near the area limit: letters * 1.6 close to rows * columns.
        {"short/area/20x20/HV", 20, 20, "HV", wordsOfLengths(lengthsUpTo(250, 3, 5, 1), 1)},
        {"short/area/20x20/H", 20, 20, "H", wordsOfLengths(lengthsUpTo(250, 3, 5, 2), 2)},
        {"mixed/area/15x15/HVD", 15, 15, "HVD", wordsOfLengths(lengthsUpTo(140, 3, 12, 3), 3)},
        {"mixed/area/12x12/D", 12, 12, "D", wordsOfLengths(lengthsUpTo(90, 3, 8, 4), 4)},
        {"mixed/area/30x30/HVD", 30, 30, "HVD", wordsOfLengths(lengthsUpTo(562, 4, 15, 5), 5)},
        {"long/area/50x50/HVD", 50, 50, "HVD", wordsOfLengths(repeat(15, 40), 6)},
        {"equal/area/10x8/D", 10, 8, "D", wordsOfLengths(repeat(5, 10), 7)},
        // Near the side limit: the longest word 3 shorter than a side.
        {"long/side/20x20/H", 20, 20, "H", wordsOfLengths(repeat(17, 14), 8)},
        {"long/side/20x20/HV", 20, 20, "HV", wordsOfLengths(repeat(17, 14), 9)},
        {"long/side/20x20/D", 20, 20, "D", wordsOfLengths({17, 17, 12, 10, 9, 8, 6, 5}, 10)},
        {"mixed/side/12x9/HVD", 12, 9, "HVD", wordsOfLengths({6, 6, 5, 5, 4, 4, 4, 3, 3, 3}, 11)},
        // Lists that can't be placed, refused.
        {"refused/9x10/D", 9, 10, "D", wordsOfLengths(repeat(6, 9), 12)},
        {"refused/10x7/H", 10, 7, "H", wordsOfLengths(repeat(4, 11), 13)},
    };
}

std::unique_ptr<GameState> stateFor(const Family &family)
{
    auto state = std::make_unique<GameState>();
    state->rows = static_cast<qint16>(family.rows);
    state->columns = static_cast<qint16>(family.columns);
    state->allowHorizontal = family.directions.contains(u'H');
    state->allowVertical = family.directions.contains(u'V');
    state->allowDiagonal = family.directions.contains(u'D');
    for (const QString &word : family.words) {
        state->words[++state->wordCount] = word;
        state->letterCount += static_cast<qint32>(word.size());
    }
    SortWords(*state);
    return state;
}

void placeAndFill(benchmark::State &bench, const Family &family, bool fill)
{
    auto state = stateFor(family);
    SystemRandom random;
    random.seed(1.0);
    WordPlacer placer(*state, random);
    long complete = 0;
    long restarts = 0;
    for (auto _ : bench) {
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        if (placer.placementStatus() == PlacementStatus::Complete) {
            ++complete;
            if (fill)
                FillGrid(*state, random);
        }
        restarts += placer.restarts();
        benchmark::DoNotOptimize(state->grid[1][1]);
    }
    bench.counters["complete"] =
        benchmark::Counter(static_cast<double>(complete), benchmark::Counter::kAvgIterations);
    bench.counters["restarts"] =
        benchmark::Counter(static_cast<double>(restarts), benchmark::Counter::kAvgIterations);
    bench.counters["letters"] = state->letterCount;
}

void fillOnly(benchmark::State &bench, const Family &family)
{
    auto state = stateFor(family);
    SystemRandom random;
    random.seed(2.0);
    WordPlacer placer(*state, random);
    placer.ClearPuzzle();
    placer.PlaceWord(1);
    if (placer.placementStatus() != PlacementStatus::Complete) {
        bench.SkipWithError("the list can't be placed");
        return;
    }
    const auto placed = state->grid;
    for (auto _ : bench) {
        bench.PauseTiming();
        state->grid = placed;
        bench.ResumeTiming();
        FillGrid(*state, random);
        benchmark::DoNotOptimize(state->grid[1][1]);
    }
}

} // namespace

int main(int argc, char **argv)
{
    for (const Family &family : families()) {
        benchmark::RegisterBenchmark(("place/" + family.name).c_str(),
                                     [family](benchmark::State &s) { placeAndFill(s, family, false); })
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("place+fill/" + family.name).c_str(),
                                     [family](benchmark::State &s) { placeAndFill(s, family, true); })
            ->Unit(benchmark::kMicrosecond);
        if (!family.name.starts_with("refused"))
            benchmark::RegisterBenchmark(("fill/" + family.name).c_str(),
                                         [family](benchmark::State &s) { fillOnly(s, family); })
                ->Unit(benchmark::kMicrosecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
