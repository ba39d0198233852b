// Speed of the puzzle output: laying out a 50 x 50 puzzle of 50 words with
// its solution page against the recording printer, and the solution search
// alone (LocateWords); and the whole job on the real printers, to a file.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "output/pagelayout.h"
#include "output/solution.h"
#include "platform/brailleprinter.h"
#include "platform/pageprinter.h"
#include "setup/placement.h"
#include "setup/wordloading.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>

#include <random>

using namespace lexicove;
using namespace lexicove::test;

namespace {

// The biggest puzzle: 50 x 50, 50 words of 3 to 12 letters laid in every
// direction and the rest filled, the same every run.
GameState BiggestPuzzle()
{
    GameState state;
    state.rows = state.columns = 50;
    state.allowHorizontal = state.allowVertical = state.allowDiagonal = true;
    std::mt19937 generator(20261125);
    state.wordCount = 50;
    for (int i = 1; i <= 50; ++i) {
        QString word;
        const int length = 3 + static_cast<int>(generator() % 10);
        for (int k = 0; k < length; ++k)
            word += QChar(u'a' + static_cast<int>(generator() % 26));
        state.words[i] = word;
        state.letterCount += length;
    }
    SortWords(state);
    FakeRandom random;
    WordPlacer placer(state, random);
    placer.ClearPuzzle();
    placer.PlaceWord(1);
    FillGrid(state, random);
    return state;
}

void yieldToWindow()
{
    QGuiApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void BM_LayOutBiggestPuzzleWithSolution(benchmark::State &run)
{
    GameState state = BiggestPuzzle();
    FakePlatform fp;
    // A printer page of 80 x 60 cells at 12 points, as on A4.
    fp.fileDialogs.script = {9600, 14400, 120, 240, 12, true, {}};
    JobWindow window;
    window.chooseFromList = [](const QString &, const QStringList &entries, int selected) {
        return entries.value(selected);
    };
    window.yield = yieldToWindow;
    for (auto _ : run) {
        fp.dialogs.answers = {MessageResult::Yes};
        fp.dialogs.shown.clear();
        const JobResult result =
            OutputJob(state, fp.platform, window).OutputPuzzle(OutputMode::Print);
        if (result.end != JobEnd::Printed)
            run.SkipWithError("the puzzle did not print");
        benchmark::DoNotOptimize(fp.fileDialogs.record.log.size());
    }
}
BENCHMARK(BM_LayOutBiggestPuzzleWithSolution)->Unit(benchmark::kMillisecond);

// The same on the real printers, to a file: drawn into a PDF, or written as
// braille pages.
void BM_PrintBiggestPuzzleToFile(benchmark::State &run, OutputMode mode)
{
    GameState state = BiggestPuzzle();
    state.brailleLineLength = 50;
    state.brailleLinesPerPage = 25;
    FakePlatform fp;
    const PrintDestination file{PrintDestination::Kind::File, fp.path("puzzle.out")};
    fp.fileDialogs.makePrinter = [&](const PrintRequest &) {
        PrintChoice choice;
        const QPageLayout a4(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                             QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
        if (mode == OutputMode::Print)
            choice.printer = std::make_unique<PagePrinter>(a4, file);
        else
            choice.printer = std::make_unique<BraillePrinter>(50, 25, file);
        choice.destination = file;
        return choice;
    };
    JobWindow window;
    window.chooseFromList = [](const QString &, const QStringList &entries, int) {
        return entries.value(0); // 8 points: the 50 columns fit on A4
    };
    window.yield = yieldToWindow;
    for (auto _ : run) {
        fp.dialogs.answers = {MessageResult::Yes};
        fp.dialogs.shown.clear();
        if (OutputJob(state, fp.platform, window).OutputPuzzle(mode).end != JobEnd::Printed)
            run.SkipWithError("the puzzle did not print");
    }
}
BENCHMARK_CAPTURE(BM_PrintBiggestPuzzleToFile, pdf, OutputMode::Print)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PrintBiggestPuzzleToFile, braille, OutputMode::Braille)
    ->Unit(benchmark::kMillisecond);

void BM_LocateWordsBiggestPuzzle(benchmark::State &run)
{
    const GameState state = BiggestPuzzle();
    for (auto _ : run) {
        const WordPositions positions = LocateWords(state, yieldToWindow);
        benchmark::DoNotOptimize(positions);
    }
    const WordPositions positions = LocateWords(state, nullptr);
    int found = 0;
    for (int i = 1; i <= 50; ++i)
        found += positions[i].row > 0 ? 1 : 0;
    run.counters["found"] = found;
}
BENCHMARK(BM_LocateWordsBiggestPuzzle)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    // The PDF printer measures and draws text, which needs the GUI's fonts.
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
