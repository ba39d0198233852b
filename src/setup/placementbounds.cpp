// The counting bounds of the placement search: cheap tests on the free
// cells that any complete placement from a level must pass, so that the
// search can skip a subtree that provably holds none. They are checked once
// before the search and, once it has backtracked for the first time, at
// every level.

#include "setup/placementsearch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <vector>

namespace lexicove {

void WordPlacer::Impl::prepareBounds(int firstIndex)
{
    for (int i = wordCount; i >= firstIndex; --i) {
        auto &lens = remainingLengths[i];
        int count = 0;
        if (i < wordCount) {
            count = remainingCount[i + 1];
            std::copy(remainingLengths[i + 1].begin(), remainingLengths[i + 1].begin() + count,
                      lens.begin());
        }
        // Keep the lengths longest first; empty words need no room.
        if (length[i] > 0) {
            int pos = count;
            const int len = std::min(length[i], 255);
            while (pos > 0 && lens[pos - 1] < len) {
                lens[pos] = lens[pos - 1];
                --pos;
            }
            lens[pos] = static_cast<quint8>(len);
            ++count;
        }
        remainingCount[i] = count;
    }
    pruning = true;
}

// Counting bounds that any completion from level index must meet. Each free
// cell gets its reach in each enabled direction: the length of the maximal
// free run through it; a word of length L can only cover cells of reach L or
// more in its own direction. Then, for each length L of the words left:
//   - cells: the cells of reach L or more (in some direction) are at least as
//     many as the letters of the words left that are L long or longer;
//   - runs: the maximal free runs hold, side by side, at least as many words
//     as are left with length L or more (a run of m cells holds at most as
//     many of them as the shortest of them fill; counting each direction's
//     runs over-counts, so the bound is safe).
// And the crossing lines: with horizontal words off, every run of L rows
// shares the rows from rows - L + 1 to L, so a word of length L covers one
// cell of each of those rows:
//   - each such row needs a cell of reach L or more for each of those words;
//   - two such neighbouring rows need as many pairs of cells, one in each row
//     and linked by a free run of reach L or more (down, downright or
//     downleft), no cell in two pairs: a largest such matching is counted
//     exactly, column by column. This is what refutes lists that diagonals
//     alone can't hold for parity: a diagonal never changes the colour of a
//     chessboard's cell.
// The same for columns with vertical words off.
bool WordPlacer::Impl::boundsHold(int index)
{
    const int left = remainingCount[index];
    if (left == 0)
        return true;
    const auto &lens = remainingLengths[index];
    const int shortest = lens[left - 1];
    const int longest = lens[0];
    if (longest > kSide)
        return false;

    for (int r = 1; r <= rows; ++r)
        std::fill(bestReach[r].begin(), bestReach[r].begin() + columns + 1, quint8(0));
    std::array<int, 65> runs{}; // maximal runs by length; a line has at most 50 cells
    // Walks the maximal free runs of one line in direction dir, writing the
    // reach of each of their cells; cellAt(bit) gives the cell of a bit of the
    // line's mask.
    auto walk = [&](int dir, quint64 mask, auto cellAt) {
        while (mask) {
            const int start = std::countr_zero(mask);
            const int run = std::countr_one(mask >> start);
            mask &= ~(((quint64(1) << run) - 1) << start);
            if (run >= shortest)
                ++runs[run];
            const auto length8 = static_cast<quint8>(run);
            for (int bit = start; bit < start + run; ++bit) {
                const auto [r, c] = cellAt(bit);
                reach[dir][r][c] = length8;
                bestReach[r][c] = std::max(bestReach[r][c], length8);
            }
        }
    };
    using Cell = std::pair<int, int>;
    if (enabled[0])
        for (int r = 1; r <= rows; ++r)
            walk(0, rowFree[r], [&](int c) { return Cell{r, c}; });
    if (enabled[1])
        for (int c = 1; c <= columns; ++c)
            walk(1, colFree[c], [&](int r) { return Cell{r, c}; });
    if (enabled[2]) {
        for (int d = 1; d < rows + columns; ++d) {
            walk(2, downRightFree[d], [&](int r) { return Cell{r, r + d - rows}; });
            walk(3, downLeftFree[d], [&](int r) { return Cell{r, d + 1 - r}; });
        }
    }

    // The free cells by their best reach, then those of reach L or more.
    std::array<int, kSide + 2> atLeastReach{};
    for (int r = 1; r <= rows; ++r) {
        for (quint64 mask = rowFree[r]; mask; mask &= mask - 1)
            ++atLeastReach[bestReach[r][std::countr_zero(mask)]];
    }
    for (int m = kSide - 1; m >= 0; --m)
        atLeastReach[m] += atLeastReach[m + 1];

    int letters = 0;
    for (int pos = 0; pos < left;) {
        const int len = lens[pos];
        while (pos < left && lens[pos] == len)
            letters += lens[pos++];
        // pos words are left with length len or more, holding `letters`.
        if (atLeastReach[len] < letters)
            return false;
        // A run of m cells holds k of these words side by side only if the
        // k shortest of them (lens[pos - 1], lens[pos - 2], ...) fit in m.
        int capacity = 0;
        int k = 0;
        int shortestK = 0; // letters of the k shortest
        for (int m = len; m <= kSide; ++m) {
            while (k < pos && shortestK + lens[pos - 1 - k] <= m)
                shortestK += lens[pos - 1 - k++];
            capacity += runs[m] * k;
        }
        if (capacity < pos)
            return false;
    }

    auto atLeast = [&](int len) {
        int count = 0;
        while (count < left && lens[count] >= len)
            ++count;
        return count;
    };
    const int longestCount = atLeast(longest);
    // Line x of a side of size `side` must be crossed by the words at least
    // max(x, side - x + 1) long.
    auto threshold = [](int x, int side) { return std::max(x, side - x + 1); };
    auto isFree = [&](int r, int c) {
        return r >= 1 && r <= rows && c >= 1 && c <= columns && ((rowFree[r] >> c) & 1);
    };

    // One side's crossing lines. cellAt(x, y) is the cell at position y of
    // line x; link(x, y, delta, len) tells whether that cell and position
    // y + delta of line x + 1 lie on one free run of reach len or more.
    auto sideHolds = [&](int side, int across, auto cellAt, auto link) {
        std::array<int, kSide + 2> crossing{};
        std::array<int, kSide + 2> slack{};
        for (int x = 1; x <= side; ++x) {
            const int t = threshold(x, side);
            crossing[x] = t <= longest ? atLeast(t) : 0;
            if (crossing[x] == 0)
                continue;
            int wide = 0;
            int widest = 0;
            for (int y = 1; y <= across; ++y) {
                const auto [r, c] = cellAt(x, y);
                wide += bestReach[r][c] >= t;
                widest += bestReach[r][c] >= longest;
            }
            if (wide < crossing[x] || widest < longestCount)
                return false;
            slack[x] = wide - crossing[x];
        }
        for (int x = 1; x < side; ++x) {
            const int need = std::min(crossing[x], crossing[x + 1]);
            // A pair of lines with room to spare can't fail the matching
            // by much; only tight pairs are worth the count.
            if (need == 0 || std::min(slack[x], slack[x + 1]) > kMatchingSlack)
                continue;
            const int len = std::max(threshold(x, side), threshold(x + 1, side));
            // dp[s]: best matching so far; bit 0 of s: position y - 1 of
            // line x + 1 is taken, bit 1: position y is taken.
            constexpr int kNone = -1000;
            std::array<int, 4> dp{kNone, kNone, kNone, kNone};
            dp[1] = 0; // position 0 does not exist
            for (int y = 1; y <= across; ++y) {
                std::array<int, 4> next{kNone, kNone, kNone, kNone};
                const bool toPrevious = link(x, y, -1, len);
                const bool toSame = link(x, y, 0, len);
                const bool toNext = y < across && link(x, y, 1, len);
                for (int st = 0; st < 4; ++st) {
                    if (dp[st] == kNone)
                        continue;
                    const bool previousTaken = st & 1;
                    const bool sameTaken = st & 2;
                    const int shifted = sameTaken ? 1 : 0; // position y becomes y - 1
                    next[shifted] = std::max(next[shifted], dp[st]);
                    if (toPrevious && !previousTaken)
                        next[shifted] = std::max(next[shifted], dp[st] + 1);
                    if (toSame && !sameTaken)
                        next[1] = std::max(next[1], dp[st] + 1);
                    if (toNext)
                        next[shifted | 2] = std::max(next[shifted | 2], dp[st] + 1);
                }
                dp = next;
            }
            if (*std::max_element(dp.begin(), dp.end()) < need)
                return false;
        }
        return true;
    };

    if (!enabled[0]) {
        // Rows x and x + 1: down keeps the column, downright adds one,
        // downleft takes one away.
        const bool rowsHold = sideHolds(
            rows, columns,
            [](int x, int y) {
                return Cell{x, y};
            },
            [&](int x, int y, int delta, int len) {
                const int dir = delta == 0 ? 1 : (delta > 0 ? 2 : 3);
                return enabled[dir] && isFree(x, y) && isFree(x + 1, y + delta) &&
                       reach[dir][x][y] >= len;
            });
        if (!rowsHold)
            return false;
    }
    if (!enabled[1]) {
        // Columns x and x + 1: right keeps the row, downright adds one, and
        // downleft runs from (y, x) up to (y - 1, x + 1).
        const bool columnsHold = sideHolds(
            columns, rows,
            [](int x, int y) {
                return Cell{y, x};
            },
            [&](int x, int y, int delta, int len) {
                const int dir = delta == 0 ? 0 : (delta > 0 ? 2 : 3);
                return enabled[dir] && isFree(y, x) && isFree(y + delta, x + 1) &&
                       reach[dir][y][x] >= len;
            });
        if (!columnsHold)
            return false;
    }
    if (longest >= 3 && !crossingRunsHold(longest, longestCount))
        return false;
    return true;
}

// A bound on how many words of length len (the longest left) the free runs
// can still hold, for `need` of them. A free run of m cells with
// len <= m < 2 * len holds one such word at most, and that word covers the
// run's middle cells, from position m - len + 1 to len, whatever its place.
// So two such runs of different directions whose middles share a cell can't
// both hold one: the runs used form an independent set of the graph of
// crossing middles. Runs of one direction never cross, so with two
// directions a largest matching gives that set's size exactly (König); with
// k directions, each pair's bound counts every run k - 1 times, so their sum
// divided by k - 1 bounds it. Longer runs are counted at their full room.
bool WordPlacer::Impl::crossingRunsHold(int len, int need)
{
    int room = 0; // words that runs of two words or more can hold
    std::array<int, kDirectionCount> nodes{};
    std::array<std::vector<int>, kDirectionCount> &firstCell = runFirstCell;
    std::array<std::vector<int>, kDirectionCount> &cells = runCells; // packed r * 64 + c
    int directions = 0;
    for (int dir = 0; dir < kDirectionCount; ++dir) {
        firstCell[dir].clear();
        cells[dir].clear();
        if (!enabled[dir])
            continue;
        auto &owner = runOwner[dir];
        for (int r = 1; r <= rows; ++r)
            std::fill(owner[r].begin(), owner[r].begin() + columns + 1, qint16(-1));
        const int lines = dir == 0 ? rows : (dir == 1 ? columns : rows + columns - 1);
        for (int x = 1; x <= lines; ++x) {
            quint64 mask = dir == 0   ? rowFree[x]
                           : dir == 1 ? colFree[x]
                           : dir == 2 ? downRightFree[x]
                                      : downLeftFree[x];
            while (mask) {
                const int start = std::countr_zero(mask);
                const int run = std::countr_one(mask >> start);
                mask &= ~(((quint64(1) << run) - 1) << start);
                if (run < len)
                    continue;
                if (run >= 2 * len) {
                    room += run / len;
                    continue;
                }
                firstCell[dir].push_back(static_cast<int>(cells[dir].size()));
                for (int bit = start + run - len; bit < start + len; ++bit) {
                    const int r = dir == 0 ? x : bit;
                    const int c = dir == 0   ? bit
                                  : dir == 1 ? x
                                  : dir == 2 ? bit + x - rows
                                             : x + 1 - bit;
                    owner[r][c] = static_cast<qint16>(nodes[dir]);
                    cells[dir].push_back(r * 64 + c);
                }
                ++nodes[dir];
            }
        }
        firstCell[dir].push_back(static_cast<int>(cells[dir].size()));
        if (nodes[dir] > 0)
            ++directions;
    }
    int total = 0;
    for (int count : nodes)
        total += count;
    if (room + total < need)
        return false;
    if (directions < 2)
        return true;
    // Each pair's independent set is at least its larger side: if even that
    // leaves room enough, no matching can refute.
    int pairSum = 0;
    for (int a = 0; a < kDirectionCount; ++a)
        for (int b = a + 1; b < kDirectionCount; ++b)
            if (nodes[a] > 0 && nodes[b] > 0)
                pairSum += std::max(nodes[a], nodes[b]);
    if (room + pairSum / (directions - 1) >= need)
        return true;

    // Largest matchings, by augmenting paths from each run of b.
    std::function<bool(int, int, int)> augment = [&](int a, int b, int v) {
        for (int i = firstCell[b][v]; i < firstCell[b][v + 1]; ++i) {
            const int cell = cells[b][i];
            const int u = runOwner[a][cell / 64][cell % 64];
            if (u < 0 || seenAt[u] == seenStamp)
                continue;
            seenAt[u] = seenStamp;
            if (matchOf[u] < 0 || augment(a, b, matchOf[u])) {
                matchOf[u] = v;
                return true;
            }
        }
        return false;
    };
    int independent = 0; // the sum over pairs
    for (int a = 0; a < kDirectionCount; ++a) {
        for (int b = a + 1; b < kDirectionCount; ++b) {
            if (nodes[a] == 0 || nodes[b] == 0)
                continue;
            matchOf.assign(nodes[a], -1);
            seenAt.assign(nodes[a], 0);
            int matched = 0;
            for (int v = 0; v < nodes[b]; ++v) {
                ++seenStamp;
                matched += augment(a, b, v);
            }
            independent += nodes[a] + nodes[b] - matched;
        }
    }
    // Directions without such runs add their (zero) nodes to no pair; the
    // pairs among the others count each run directions - 1 times.
    return room + independent / (directions - 1) >= need;
}

} // namespace lexicove
