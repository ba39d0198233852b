#include "setup/placement.h"

#include "setup/placementsearch.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <bit>
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
//   - failed states: a set of (level, occupied cells) already found dead
//     (failedstates.h);
//   - counting bounds on what the free cells can still hold
//     (placementbounds.cpp).
// The bounds are checked once before the search, which refuses at once most
// lists that can't be placed; inside the search both start only once it has
// backtracked for the first time, so an easy puzzle pays nothing for them.
//
// One deliberate exception to the law: a search that has run for
// PlacementLimits::restartAfterMs starts over with fresh draws, and one that
// has run for giveUpAfterMs in all ends as failed.
//

namespace {

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
    return QString::number(place.row) + u',' + QString::number(place.column) + u',' +
           directionName(place.direction);
}

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
        const bool timeUp =
            outcome == Outcome::Aborted && (d->nodes >= d->limits.mostSteps ||
                                            d->time() - d->callStart >= d->limits.giveUpAfterMs);
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
