// Making a puzzle from any options and any word list, as the options window
// does: the first bytes choose the rows, the columns, the directions and the
// random draws, the rest is the list file. A list that the window would
// refuse (no letters, too big for the grid, no direction) is left there.
// Whenever the placement succeeds, every word must lie in the grid forwards
// or reversed in an enabled direction, the words filling exactly as many
// cells as they have letters (so no two share one), and the fill must leave
// every word's letters alone and no cell empty.

#include "core/gamestate.h"
#include "fuzzsupport.h"
#include "setup/placement.h"
#include "setup/wordloading.h"

#include <random>

using namespace lexicove;
using lexicove::fuzz::MemoryFile;

namespace {

class SeededRandom final : public Random {
public:
    explicit SeededRandom(uint32_t seed) : m_engine(seed) {}
    void seed(double) override {}
    double next() override { return static_cast<double>(m_engine() >> 11) * 0x1.0p-53; }

private:
    std::mt19937_64 m_engine;
};

struct Step {
    int dr, dc;
};

// Whether word lies in the grid from some cell in one of the directions,
// forwards or reversed.
bool liesInGrid(const GameState &state, const QString &word, const std::vector<Step> &steps)
{
    QString reversed = word;
    std::reverse(reversed.begin(), reversed.end());
    const auto holds = [&](qsizetype row, qsizetype column, QChar letter) {
        return row >= 1 && row <= state.rows && column >= 1 && column <= state.columns &&
               state.grid[row][column] == QString(letter);
    };
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            for (const Step step : steps)
                for (const QString &text : {word, reversed}) {
                    qsizetype k = 0;
                    while (k < text.size() && holds(r + k * step.dr, c + k * step.dc, text.at(k)))
                        ++k;
                    if (k == text.size())
                        return true;
                }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr size_t kOptionBytes = 4;
    if (size < kOptionBytes || size > 4096)
        return 0;
    GameState state;
    state.rows = static_cast<qint16>(5 + data[0] % 46);
    state.columns = static_cast<qint16>(5 + data[1] % 46);
    state.allowHorizontal = data[2] & 1;
    state.allowVertical = data[2] & 2;
    state.allowDiagonal = data[2] & 4;
    MemoryFile file(QByteArray(reinterpret_cast<const char *>(data) + kOptionBytes,
                               static_cast<qsizetype>(size - kOptionBytes)),
                    Files::kPieceSize);
    QString error;
    FUZZ_CHECK(LoadWords(state, file, error));
    if (state.wordCount == 0 || state.letterCount == 0 || !PassesSizeTest(state) ||
        !(state.allowHorizontal || state.allowVertical || state.allowDiagonal))
        return 0;

    // Time stands still: only the step backstop can end a long search, so
    // that a run gives the same answer every time.
    SeededRandom random(data[3]);
    PlacementLimits limits;
    limits.mostSteps = 30'000;
    WordPlacer placer(
        state, random, [] { return 0.0; }, limits);
    placer.ClearPuzzle();
    placer.PlaceWord(1);
    if (placer.placementStatus() != PlacementStatus::Complete)
        return 0;

    std::vector<Step> steps;
    for (const auto &[allowed, step] : {std::pair{state.allowHorizontal, Step{0, 1}},
                                        {state.allowVertical, Step{1, 0}},
                                        {state.allowDiagonal, Step{1, 1}},
                                        {state.allowDiagonal, Step{1, -1}}})
        if (allowed)
            steps.push_back(step);
    int filled = 0;
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            filled += state.grid[r][c].isEmpty() ? 0 : 1;
    FUZZ_CHECK(filled == state.letterCount);
    for (int i = 1; i <= state.wordCount; ++i)
        FUZZ_CHECK(liesInGrid(state, state.words[i], steps));

    const GameState placed = state;
    FillGrid(state, random);
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            FUZZ_CHECK(state.grid[r][c].size() == 1 &&
                       (placed.grid[r][c].isEmpty() || placed.grid[r][c] == state.grid[r][c]));
    return 0;
}
