#pragma once

// The inside of the placement search, shared by its two halves: the search
// itself (placement.cpp) and the counting bounds that prune it
// (placementbounds.cpp). Nothing else includes this.
//
// Data layout. The search works on bit masks, not on the grid's texts:
// rowFree[r] has bit c set when cell (r, c) is free; colFree, downRightFree and
// downLeftFree hold the same cells by column and by diagonal (bit r), for the
// run counts of the bounds. A level keeps its places as start masks by row
// and direction (see Level), and the place it keeps packed into one number,
// ((row - 1) * 50 + column - 1) * 4 + direction, so that the listing order is
// the numeric order. The grid's texts are written once, when the search has
// succeeded.

#include "setup/failedstates.h"
#include "setup/placement.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <functional>
#include <vector>

namespace lexicove::placing {

constexpr int kSide = GameState::kMaxSide;
constexpr int kMaxWords = GameState::kMaxWords;
constexpr int kDirectionCount = 4;
constexpr int kDiagonals = 2 * kSide; // indices 1 .. rows + columns - 1
constexpr int kPaddedRows = 2 * kSide + 2;
constexpr int kTimeCheckInterval = 16; // search nodes between looks at the clock
constexpr int kMatchingSlack = 2;      // see boundsHold

struct StepOf {
    int dr;
    int dc;
};
constexpr std::array<StepOf, kDirectionCount> kSteps{{{0, 1}, {1, 0}, {1, 1}, {1, -1}}};

constexpr int packPlace(int row, int column, int direction)
{
    return ((row - 1) * kSide + (column - 1)) * kDirectionCount + direction;
}

struct Unpacked {
    int row;
    int column;
    int direction;
};

constexpr Unpacked unpackPlace(int code)
{
    const int cell = code / kDirectionCount;
    return {cell / kSide + 1, cell % kSide + 1, code % kDirectionCount};
}

// Counts set bits without a library call where the processor has no
// instruction for it.
inline int bitCount(quint64 x)
{
#if defined(__POPCNT__) || defined(_MSC_VER)
    return std::popcount(x);
#else
    x = x - ((x >> 1) & 0x5555555555555555ULL);
    x = (x & 0x3333333333333333ULL) + ((x >> 2) & 0x3333333333333333ULL);
    x = (x + (x >> 4)) & 0x0F0F0F0F0F0F0F0FULL;
    return static_cast<int>((x * 0x0101010101010101ULL) >> 56);
#endif
}

inline int cellIndex(int row, int column)
{
    return (row - 1) * kSide + (column - 1);
}

// Start bits of the runs of `length` free cells along a row mask.
inline quint64 runStarts(quint64 freeMask, int length)
{
    quint64 x = freeMask;
    for (int have = 1; have < length;) {
        const int step = std::min(have, length - have);
        x &= x >> step;
        have += step;
    }
    return x;
}

inline double steadyMilliseconds()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

enum class Outcome { Complete, Failed, Aborted };

} // namespace lexicove::placing

namespace lexicove {

// Only the search's own files include this header.
using namespace placing;

struct WordPlacer::Impl {
    Impl(GameState &s, Random &r, TimeSource t, PlacementLimits l)
        : state(s), random(r), time(std::move(t)), limits(l)
    {
        if (!time)
            time = steadyMilliseconds;
    }

    // The places of one word slot and the search's progress through them.
    // The places are kept as start masks: bit c of starts[dir][r] is the place
    // (r, c, dir). The listing order numbers them row by row, in a row by
    // column, at a cell by direction; before[r] counts the places of the rows
    // above r, so that place k of the list is found without listing.
    struct Level {
        std::array<std::array<quint64, kPaddedRows>, kDirectionCount> starts{};
        std::array<int, kSide + 2> before{};
        int listedRows = 0; // rows of starts that hold this level's places
        int count = 0;
        std::vector<quint64> tried; // one bit per place of the list
        int chosen = -1;            // the place kept (packed), once complete
        bool reversed = false;

        void clear()
        {
            listedRows = 0;
            count = 0;
            chosen = -1;
        }
        // Makes rows 1 to rows hold places, the new ones none yet.
        void extendTo(int rows)
        {
            for (int r = listedRows + 1; r <= rows; ++r)
                for (auto &byRow : starts)
                    byRow[r] = 0;
            listedRows = std::max(listedRows, rows);
        }
        // Recounts before[] and count from the masks of the listed rows.
        void recount()
        {
            int total = 0;
            for (int r = 1; r <= listedRows; ++r) {
                before[r] = total;
                for (const auto &byRow : starts)
                    total += bitCount(byRow[r]);
            }
            before[listedRows + 1] = total;
            count = total;
        }
        // The packed place at position k (0-based) of the list.
        int placeAt(int k, int rows) const
        {
            const int r = static_cast<int>(
                std::upper_bound(before.begin() + 1, before.begin() + rows + 1, k) -
                before.begin() - 1);
            int j = k - before[r];
            quint64 any = starts[0][r] | starts[1][r] | starts[2][r] | starts[3][r];
            for (;; any &= any - 1) {
                const int c = std::countr_zero(any);
                for (int dir = 0; dir < kDirectionCount; ++dir) {
                    if ((starts[dir][r] >> c) & 1) {
                        if (j == 0)
                            return packPlace(r, c, dir);
                        --j;
                    }
                }
            }
        }
    };

    GameState &state;
    Random &random;
    TimeSource time;
    PlacementLimits limits;
    PlacementStatus status = PlacementStatus::Open;

    std::array<Level, kMaxWords + 2> levels;

    // The search's view of the grid (see the comment at the top).
    int rows = 0;
    int columns = 0;
    int wordCount = 0;
    std::array<bool, kDirectionCount> enabled{};
    std::array<int, kMaxWords + 2> length{};
    std::array<quint64, kPaddedRows> rowFree{};
    std::array<quint64, kSide + 2> colFree{};
    std::array<quint64, kDiagonals + 2> downRightFree{};
    std::array<quint64, kDiagonals + 2> downLeftFree{};
    Key128 occupiedKey;

    // The pruning, switched on at the first dead end.
    bool pruning = false;
    FailedStates failed;
    // For each level i: the lengths of words i..wordCount, longest first.
    std::array<std::array<quint8, kMaxWords + 1>, kMaxWords + 2> remainingLengths{};
    std::array<int, kMaxWords + 2> remainingCount{};
    // Scratch of the bounds: the reach of each free cell by direction, and
    // the best of them.
    std::array<std::array<std::array<quint8, kSide + 2>, kSide + 2>, kDirectionCount> reach{};
    std::array<std::array<quint8, kSide + 2>, kSide + 2> bestReach{};
    // Scratch of crossingRunsHold: the run of one word whose middle covers a
    // cell, by direction; the middles' cells of those runs.
    std::array<std::array<std::array<qint16, kSide + 2>, kSide + 2>, kDirectionCount> runOwner{};
    std::array<std::vector<int>, kDirectionCount> runFirstCell, runCells;
    std::vector<int> matchOf, seenAt;
    int seenStamp = 0;

    double callStart = 0.0;
    double attemptStart = 0.0;
    int restartCount = 0;
    qint64 nodes = 0;
    bool stoppedByTime = false;

    void readGrid();
    void occupy(int row, int column);
    void release(int row, int column);
    void layPlace(int code, int len, bool erase);
    void listPlaces(int index);
    int pickPlace(Level &level, int &triedCount);
    Outcome search(int index);
    bool timeUp();
    void prepareBounds(int firstIndex);
    bool boundsHold(int index);
    bool crossingRunsHold(int len, int need);
    void writeWords(int firstIndex);
};

} // namespace lexicove
