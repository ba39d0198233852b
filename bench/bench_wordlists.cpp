// Opening a 50 MB word list (4.4 million words of 3 to 15 letters, CR LF)
// where the game opens lists: loaded by the options window, counted by the
// chooser, and shown in the editor until its first screen is drawn. Each
// reports the process's resident memory after the opening (rss_MB) and its
// peak so far (peak_MB); run one at a time (--benchmark_filter) for the peak
// of each alone.

#include "core/gamestate.h"
#include "fakenavigator.h"
#include "fakeplatform.h"
#include "resident.h"
#include "setup/frmoptions.h"
#include "wordlists/frmcreate.h"
#include "wordlists/frmwords.h"
#include "wordlists/wordlists.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <random>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

using namespace lexicove;
using namespace lexicove::test;

namespace {

constexpr qint64 kListBytes = 50'000'000;
const QString kListFile = QStringLiteral("big.wds");

// The platform and its folder with the big list in it, made once.
FakePlatform &platformWithBigList()
{
    static FakePlatform *fp = [] {
        auto *made = new FakePlatform;
        std::mt19937 generator(20261126);
        QByteArray bytes;
        bytes.reserve(kListBytes + 32);
        while (bytes.size() < kListBytes) {
            const int length = 3 + static_cast<int>(generator() % 13);
            for (int k = 0; k < length; ++k)
                bytes += static_cast<char>('a' + generator() % 26);
            bytes += "\r\n";
        }
        made->writeFile(kListFile, bytes);
        return made;
    }();
    return *fp;
}

void reportMemory(benchmark::State &state)
{
#ifdef Q_OS_UNIX
    if (const double bytes = residentBytes())
        state.counters["rss_MB"] = bytes / 1e6;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1e3;
#endif
}

template <typename Window> void openWindow(benchmark::State &state, bool editing)
{
    FakePlatform &fp = platformWithBigList();
    GameState game;
    game.wordListPath = fp.path(kListFile);
    game.editingList = editing;
    FakeNavigator navigator;
    for (auto _ : state) {
        Window window(game, fp.platform, navigator);
        if (!window.Form_Load())
            state.SkipWithError("the list did not load");
        window.show();
        QApplication::processEvents();
        reportMemory(state);
    }
}

void BM_OptionsWindowLoads50MB(benchmark::State &state)
{
    openWindow<FrmOptions>(state, false);
}
BENCHMARK(BM_OptionsWindowLoads50MB)->Unit(benchmark::kMillisecond);

void BM_ChooserCounts50MB(benchmark::State &state)
{
    FakePlatform &fp = platformWithBigList();
    for (auto _ : state) {
        qint32 count = 0;
        FileFailure failure;
        CountWords(fp.files, fp.system.folder, kListFile, count, failure);
        benchmark::DoNotOptimize(count);
        reportMemory(state);
    }
}
BENCHMARK(BM_ChooserCounts50MB)->Unit(benchmark::kMillisecond);

void BM_EditorOpens50MB(benchmark::State &state)
{
    openWindow<FrmCreate>(state, true);
}
BENCHMARK(BM_EditorOpens50MB)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
