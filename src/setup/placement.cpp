#include "setup/placement.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <functional>
#include <vector>

namespace lexicove {

// The search
// ----------
// One level per word, in slot order. At each level the word's places are
// listed afresh from the grid as the earlier words left it: for each row, for
// each column, the enabled directions in the order right, down, downright,
// downleft. The places are tried in a uniformly random order without repeats,
// each with a fair random orientation drawn after the place, until the words
// below have all found places too. The first draw of a level picks place
// Int(r * n) + 1 of the list, and while fewer than half are tried a marked
// place is simply drawn again; after that the next place is drawn by its index
// among the untried ones, which keeps the order uniform without spending many
// draws on marked places.
//
// So the puzzle that comes out is, level by level, a uniform pick among the
// places from which the later words can still all be laid. Two things skip
// subtrees that provably hold no complete placement, which leaves that law
// unchanged (the first place in a uniform order that has a completion is the
// same place whether or not dead places before it were explored):
//   - failed states: a set of (level, occupied cells) already found dead,
//     keyed by a 128-bit Zobrist hash in a table of bounded size;
//   - counting bounds on what the free cells can still hold (see
//     Impl::boundsHold).
// The bounds are checked once before the search, which refuses at once most
// lists that can't be placed; inside the search both start only once it has
// backtracked for the first time, so an easy puzzle pays nothing for them.
//
// One deliberate exception to the law: a search that has run for
// PlacementLimits::restartAfterMs starts over with fresh draws, and one that
// has run for giveUpAfterMs in all ends as failed.
//
// Data layout. The search works on bit masks, not on the grid's texts:
// rowFree[r] has bit c set when cell (r, c) is free; colFree, downRightFree and
// downLeftFree hold the same cells by column and by diagonal (bit r), for the
// run counts of the bounds. A level keeps its places as start masks by row
// and direction (see Level), and the place it keeps packed into one number,
// ((row - 1) * 50 + column - 1) * 4 + direction, so that the listing order is
// the numeric order. The grid's texts are written once, when the search has
// succeeded.

namespace {

constexpr int kSide = GameState::kMaxSide;
constexpr int kMaxWords = GameState::kMaxWords;
constexpr int kDirectionCount = 4;
constexpr int kDiagonals = 2 * kSide; // indices 1 .. rows + columns - 1
constexpr int kPaddedRows = 2 * kSide + 2;
constexpr int kTimeCheckInterval = 16; // search nodes between looks at the clock
constexpr int kMatchingSlack = 2;       // see boundsHold

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

struct Key128 {
    quint64 low = 0;
    quint64 high = 0;
    Key128 &operator^=(const Key128 &other)
    {
        low ^= other.low;
        high ^= other.high;
        return *this;
    }
    friend Key128 operator^(Key128 a, const Key128 &b) { return a ^= b; }
    friend bool operator==(const Key128 &, const Key128 &) = default;
};

quint64 splitMix64(quint64 &state)
{
    quint64 z = (state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

// Random keys of the cells and of the levels, the same for every search.
struct ZobristKeys {
    std::array<Key128, kSide * kSide> cell;
    std::array<Key128, kMaxWords + 2> level;
};

const ZobristKeys &zobristKeys()
{
    static const ZobristKeys keys = [] {
        ZobristKeys k;
        quint64 seed = 0x4C657869636F7665ULL;
        for (Key128 &key : k.cell)
            key = {splitMix64(seed), splitMix64(seed)};
        for (Key128 &key : k.level)
            key = {splitMix64(seed), splitMix64(seed)};
        return k;
    }();
    return keys;
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

// The states found dead: an open-addressed table that starts small, doubles
// as it fills, up to a fixed size. When a probe window of the full table is
// taken, an old entry is overwritten, which only forgets a dead end.
class FailedStates {
public:
    void reset()
    {
        if (m_slots.size() > kFirstSlots)
            std::vector<Key128>().swap(m_slots); // a big table is given back
        else
            std::fill(m_slots.begin(), m_slots.end(), Key128{});
        m_count = 0;
    }

    bool contains(Key128 key) const
    {
        if (m_count == 0)
            return false;
        key.high |= 1; // an all-zero slot is empty
        const std::size_t mask = m_slots.size() - 1;
        const std::size_t start = key.low & mask;
        for (std::size_t i = 0; i < kProbe; ++i) {
            const Key128 &slot = m_slots[(start + i) & mask];
            if (slot == key)
                return true;
            if (slot.high == 0)
                return false;
        }
        return false;
    }

    void insert(Key128 key)
    {
        if (m_slots.empty())
            m_slots.assign(kFirstSlots, Key128{});
        else if (2 * (m_count + 1) > m_slots.size() && m_slots.size() < kMostSlots)
            grow();
        key.high |= 1;
        place(key);
    }

    std::size_t bytes() const { return m_slots.capacity() * sizeof(Key128); }

private:
    static constexpr std::size_t kFirstSlots = std::size_t(1) << 12;  // 64 KiB
    static constexpr std::size_t kMostSlots = std::size_t(1) << 16;   // 1 MiB
    static constexpr std::size_t kProbe = 4;

    void place(const Key128 &key)
    {
        const std::size_t mask = m_slots.size() - 1;
        const std::size_t start = key.low & mask;
        for (std::size_t i = 0; i < kProbe; ++i) {
            Key128 &slot = m_slots[(start + i) & mask];
            if (slot == key)
                return;
            if (slot.high == 0) {
                slot = key;
                ++m_count;
                return;
            }
        }
        m_slots[(start + (key.high >> 60) % kProbe) & mask] = key;
    }

    void grow()
    {
        std::vector<Key128> old(2 * m_slots.size(), Key128{});
        old.swap(m_slots);
        m_count = 0;
        for (const Key128 &key : old)
            if (key.high != 0)
                place(key);
    }

    std::vector<Key128> m_slots; // allocated at the first dead end
    std::size_t m_count = 0;
};

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

// Single-character texts shared by every cell that holds that character, so
// that writing a cell does not allocate.
const QString &cellText(QChar ch)
{
    static const std::array<QString, 256> latin1 = [] {
        std::array<QString, 256> texts;
        for (int i = 0; i < 256; ++i)
            texts[i] = QString(QChar(i));
        return texts;
    }();
    static thread_local QString other;
    if (ch.unicode() < 256)
        return latin1[ch.unicode()];
    other = QString(ch);
    return other;
}

double steadyMilliseconds()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

enum class Outcome { Complete, Failed, Aborted };

} // namespace

QString directionName(Direction direction)
{
    switch (direction) {
    case Direction::Right:
        return QStringLiteral("right");
    case Direction::Down:
        return QStringLiteral("down");
    case Direction::DownRight:
        return QStringLiteral("downright");
    case Direction::DownLeft:
        return QStringLiteral("downleft");
    }
    return QString();
}

QString candidateRecord(const CandidatePlace &place)
{
    return QString::number(place.row) + u',' + QString::number(place.column) + u','
        + directionName(place.direction);
}

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
                std::upper_bound(before.begin() + 1, before.begin() + rows + 1, k)
                - before.begin() - 1);
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

void WordPlacer::Impl::occupy(int row, int column)
{
    rowFree[row] &= ~(quint64(1) << column);
    colFree[column] &= ~(quint64(1) << row);
    downRightFree[column - row + rows] &= ~(quint64(1) << row);
    downLeftFree[row + column - 1] &= ~(quint64(1) << row);
    occupiedKey ^= zobristKeys().cell[cellIndex(row, column)];
}

void WordPlacer::Impl::release(int row, int column)
{
    rowFree[row] |= quint64(1) << column;
    colFree[column] |= quint64(1) << row;
    downRightFree[column - row + rows] |= quint64(1) << row;
    downLeftFree[row + column - 1] |= quint64(1) << row;
    occupiedKey ^= zobristKeys().cell[cellIndex(row, column)];
}

// Takes the puzzle's size, directions and words, and the free cells from the
// grid as it stands.
void WordPlacer::Impl::readGrid()
{
    rows = std::clamp<int>(state.rows, 0, kSide);
    columns = std::clamp<int>(state.columns, 0, kSide);
    wordCount = std::clamp<int>(state.wordCount, 0, kMaxWords);
    enabled = {state.allowHorizontal, state.allowVertical, state.allowDiagonal,
               state.allowDiagonal};
    for (int i = 1; i <= wordCount; ++i)
        length[i] = static_cast<int>(state.words[i].size());
    rowFree.fill(0);
    colFree.fill(0);
    downRightFree.fill(0);
    downLeftFree.fill(0);
    occupiedKey = {};
    for (int r = 1; r <= rows; ++r) {
        for (int c = 1; c <= columns; ++c) {
            rowFree[r] |= quint64(1) << c;
            colFree[c] |= quint64(1) << r;
            downRightFree[c - r + rows] |= quint64(1) << r;
            downLeftFree[r + c - 1] |= quint64(1) << r;
        }
    }
    for (int r = 1; r <= rows; ++r)
        for (int c = 1; c <= columns; ++c)
            if (!state.grid[r][c].isEmpty())
                occupy(r, c);
}

void WordPlacer::Impl::layPlace(int code, int len, bool erase)
{
    const Unpacked p = unpackPlace(code);
    const StepOf step = kSteps[p.direction];
    for (int k = 0; k < len; ++k) {
        const int r = p.row + k * step.dr;
        const int c = p.column + k * step.dc;
        if (erase)
            release(r, c);
        else
            occupy(r, c);
    }
}

// Lists the places of word slot index, as AddCandidate would for every cell
// and enabled direction, but a whole row of cells at a time.
void WordPlacer::Impl::listPlaces(int index)
{
    Level &level = levels[index];
    auto &starts = level.starts;
    const int len = length[index];
    for (int dir = 0; dir < kDirectionCount; ++dir)
        std::fill(starts[dir].begin(), starts[dir].begin() + rows + 1, quint64(0));
    level.listedRows = rows;
    if (len == 0) {
        // An empty word needs no cell, so it fits everywhere.
        for (int dir = 0; dir < kDirectionCount; ++dir)
            if (enabled[dir])
                for (int r = 1; r <= rows; ++r)
                    starts[dir][r] = columns == 0 ? 0 : (((quint64(1) << columns) - 1) << 1);
    } else if (len <= std::max(rows, columns)) {
        const int padded = rows + len;
        // Right: runs along each row.
        if (enabled[0])
            for (int r = 1; r <= rows; ++r)
                starts[0][r] = runStarts(rowFree[r], len);
        // Down and the diagonals: doubling over the rows. After a pass, bit c
        // of a[r] tells whether `have` cells from (r, c) on in that direction
        // are free.
        for (int dir = 1; dir < kDirectionCount; ++dir) {
            if (!enabled[dir])
                continue;
            auto &a = starts[dir];
            std::copy(rowFree.begin(), rowFree.begin() + padded + 1, a.begin());
            for (int have = 1; have < len;) {
                const int step = std::min(have, len - have);
                if (dir == 1) {
                    for (int r = 1; r <= rows; ++r)
                        a[r] &= a[r + step];
                } else if (dir == 2) {
                    for (int r = 1; r <= rows; ++r)
                        a[r] &= a[r + step] >> step;
                } else {
                    for (int r = 1; r <= rows; ++r)
                        a[r] &= a[r + step] << step;
                }
                have += step;
            }
        }
    }
    level.recount();
}

// Draws the next untried place of a level, uniformly among the untried ones,
// and marks it.
int WordPlacer::Impl::pickPlace(Level &level, int &triedCount)
{
    const int n = level.count;
    int k; // 0-based position in the list
    if (2 * triedCount <= n) {
        do {
            k = random.draw(n) - 1;
        } while ((level.tried[k >> 6] >> (k & 63)) & 1);
    } else {
        // The j-th untried place, counting in listing order.
        int j = random.draw(n - triedCount) - 1;
        k = 0;
        for (std::size_t w = 0; w < level.tried.size(); ++w) {
            quint64 untried = ~level.tried[w];
            const int base = static_cast<int>(w) * 64;
            if (base + 64 > n)
                untried &= (quint64(1) << (n - base)) - 1;
            const int count = bitCount(untried);
            if (j < count) {
                for (; j > 0; --j)
                    untried &= untried - 1;
                k = base + std::countr_zero(untried);
                break;
            }
            j -= count;
        }
    }
    level.tried[k >> 6] |= quint64(1) << (k & 63);
    ++triedCount;
    return k;
}

bool WordPlacer::Impl::timeUp()
{
    if (nodes >= limits.mostSteps)
        return true;
    const double now = time();
    return now - attemptStart >= limits.restartAfterMs || now - callStart >= limits.giveUpAfterMs;
}

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
            rows, columns, [](int x, int y) { return Cell{x, y}; },
            [&](int x, int y, int delta, int len) {
                const int dir = delta == 0 ? 1 : (delta > 0 ? 2 : 3);
                return enabled[dir] && isFree(x, y) && isFree(x + 1, y + delta)
                    && reach[dir][x][y] >= len;
            });
        if (!rowsHold)
            return false;
    }
    if (!enabled[1]) {
        // Columns x and x + 1: right keeps the row, downright adds one, and
        // downleft runs from (y, x) up to (y - 1, x + 1).
        const bool columnsHold = sideHolds(
            columns, rows, [](int x, int y) { return Cell{y, x}; },
            [&](int x, int y, int delta, int len) {
                const int dir = delta == 0 ? 0 : (delta > 0 ? 2 : 3);
                return enabled[dir] && isFree(y, x) && isFree(y + delta, x + 1)
                    && reach[dir][y][x] >= len;
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
            quint64 mask = dir == 0 ? rowFree[x]
                : dir == 1          ? colFree[x]
                : dir == 2          ? downRightFree[x]
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
                    const int c = dir == 0 ? bit
                        : dir == 1         ? x
                        : dir == 2         ? bit + x - rows
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

Outcome WordPlacer::Impl::search(int index)
{
    if (index > wordCount)
        return Outcome::Complete;
    if (++nodes % kTimeCheckInterval == 0 && timeUp())
        return Outcome::Aborted;

    const Key128 key = occupiedKey ^ zobristKeys().level[index];
    if (pruning && (failed.contains(key) || !boundsHold(index)))
        return Outcome::Failed;

    Level &level = levels[index];
    listPlaces(index);
    const int n = level.count;
    if (n == 0)
        return Outcome::Failed;

    level.tried.assign((n + 63) / 64, 0);
    int triedCount = 0;
    const int len = length[index];
    for (int round = 0; round < n; ++round) {
        const int code = level.placeAt(pickPlace(level, triedCount), rows);
        const bool reversed = random.draw(2) != 1;
        layPlace(code, len, false);
        const Outcome below = search(index + 1);
        if (below == Outcome::Complete) {
            level.chosen = code;
            level.reversed = reversed;
            return Outcome::Complete;
        }
        layPlace(code, len, true);
        if (below == Outcome::Aborted)
            return Outcome::Aborted;
        if (!pruning && limits.pruneDeadEnds)
            prepareBounds(1);
    }
    if (pruning)
        failed.insert(key);
    return Outcome::Failed;
}

void WordPlacer::Impl::writeWords(int firstIndex)
{
    for (int i = firstIndex; i <= wordCount; ++i) {
        const Level &level = levels[i];
        QString text = state.words[i];
        if (level.reversed)
            std::reverse(text.begin(), text.end());
        const Unpacked p = unpackPlace(level.chosen);
        const StepOf step = kSteps[p.direction];
        for (int k = 0; k < text.size(); ++k)
            state.grid[p.row + k * step.dr][p.column + k * step.dc] = cellText(text.at(k));
    }
}

WordPlacer::WordPlacer(GameState &state, Random &random)
    : d(new Impl(state, random, TimeSource(), PlacementLimits()))
{
}

WordPlacer::WordPlacer(GameState &state, Random &random, TimeSource time, PlacementLimits limits)
    : d(new Impl(state, random, std::move(time), limits))
{
}

WordPlacer::~WordPlacer()
{
    delete d;
}

void WordPlacer::ClearPuzzle()
{
    d->status = PlacementStatus::Open;
    for (int r = 1; r <= kSide; ++r)
        for (int c = 1; c <= kSide; ++c)
            if (!d->state.grid[r][c].isNull())
                d->state.grid[r][c] = QString();
    for (auto &level : d->levels)
        level.clear();
}

void WordPlacer::PlaceWord(int index)
{
    if (index < 1)
        index = 1;
    d->readGrid();
    d->restartCount = 0;
    d->nodes = 0;
    d->stoppedByTime = false;
    d->pruning = false;
    d->failed.reset();
    if (index > d->wordCount) {
        d->status = PlacementStatus::Complete;
        return;
    }
    d->callStart = d->time();
    d->attemptStart = d->callStart;
    if (d->limits.pruneDeadEnds) {
        // A list that the counting bounds refute is refused at once.
        d->prepareBounds(index);
        const bool mayComplete = d->boundsHold(index);
        d->pruning = false;
        if (!mayComplete) {
            if (index == 1)
                d->status = PlacementStatus::Failed;
            return;
        }
    }
    for (;;) {
        const Outcome outcome = d->search(index);
        if (outcome == Outcome::Complete) {
            d->status = PlacementStatus::Complete;
            d->writeWords(index);
            return;
        }
        const bool timeUp = outcome == Outcome::Aborted
            && (d->nodes >= d->limits.mostSteps
                || d->time() - d->callStart >= d->limits.giveUpAfterMs);
        if (outcome == Outcome::Failed || timeUp) {
            d->stoppedByTime = timeUp;
            // Only the first word running out ends the whole search.
            if (index == 1)
                d->status = PlacementStatus::Failed;
            return;
        }
        ++d->restartCount;
        d->attemptStart = d->time();
    }
}

PlacementStatus WordPlacer::placementStatus() const
{
    return d->status;
}

void WordPlacer::AddCandidate(int row, int column, int index, const QString &word, int length,
                              Direction direction)
{
    Q_UNUSED(word);
    if (index < 1 || index > kMaxWords || row < 1 || column < 1)
        return;
    const int rows = std::clamp<int>(d->state.rows, 0, kSide);
    const int columns = std::clamp<int>(d->state.columns, 0, kSide);
    if (row > rows || column > columns)
        return;
    const int dir = static_cast<int>(direction);
    const StepOf step = kSteps[dir];
    // The room test: the run's last cell lies inside the puzzle.
    const int lastRow = row + (length - 1) * step.dr;
    const int lastColumn = column + (length - 1) * step.dc;
    if (length > 0 && (lastRow > rows || lastColumn > columns || lastColumn < 1))
        return;
    for (int k = 0; k < length; ++k)
        if (!d->state.grid[row + k * step.dr][column + k * step.dc].isEmpty())
            return;
    auto &level = d->levels[index];
    level.extendTo(rows);
    level.starts[dir][row] |= quint64(1) << column;
    level.recount();
}

void WordPlacer::LayWord(const QString &text, int row, int column, Direction direction, bool erase)
{
    const StepOf step = kSteps[static_cast<int>(direction)];
    for (int k = 0; k < text.size(); ++k) {
        QString &cell = d->state.grid[row + k * step.dr][column + k * step.dc];
        if (erase)
            cell = QString();
        else
            cell = cellText(text.at(k));
    }
}

QList<CandidatePlace> WordPlacer::candidates(int index) const
{
    QList<CandidatePlace> list;
    if (index < 1 || index > kMaxWords)
        return list;
    const auto &level = d->levels[index];
    for (int r = 1; r <= level.listedRows; ++r) {
        quint64 any = 0;
        for (const auto &byRow : level.starts)
            any |= byRow[r];
        for (; any; any &= any - 1) {
            const int c = std::countr_zero(any);
            for (int dir = 0; dir < kDirectionCount; ++dir)
                if ((level.starts[dir][r] >> c) & 1)
                    list.append({r, c, static_cast<Direction>(dir)});
        }
    }
    return list;
}

int WordPlacer::restarts() const
{
    return d->restartCount;
}

qint64 WordPlacer::searchNodes() const
{
    return d->nodes;
}

bool WordPlacer::stoppedByTime() const
{
    return d->stoppedByTime;
}

} // namespace lexicove
