// Laying the words of a list into the grid.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "platform/qtplatform.h"
#include "setup/placement.h"

#include <QHash>
#include <QtTest>

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <vector>

using namespace lexicove;
using namespace lexicove::test;

namespace {

constexpr std::array<Direction, 4> kAllDirections{Direction::Right, Direction::Down,
                                                  Direction::DownRight, Direction::DownLeft};

struct Step {
    int dr;
    int dc;
};

Step stepOf(Direction d)
{
    switch (d) {
    case Direction::Right:
        return {0, 1};
    case Direction::Down:
        return {1, 0};
    case Direction::DownRight:
        return {1, 1};
    case Direction::DownLeft:
        return {1, -1};
    }
    return {0, 0};
}

// The value r that makes Int(r * n) + 1 give k.
double pick(int k, int n)
{
    return (k - 0.5) / n;
}

std::unique_ptr<GameState> makeState(int rows, int columns, const QString &directions,
                                     const QStringList &words)
{
    auto state = std::make_unique<GameState>();
    state->rows = static_cast<qint16>(rows);
    state->columns = static_cast<qint16>(columns);
    state->allowHorizontal = directions.contains(u'H');
    state->allowVertical = directions.contains(u'V');
    state->allowDiagonal = directions.contains(u'D');
    for (const QString &word : words) {
        state->words[++state->wordCount] = word;
        state->letterCount += static_cast<int>(word.size());
    }
    return state;
}

bool enabled(const GameState &state, Direction d)
{
    switch (d) {
    case Direction::Right:
        return state.allowHorizontal;
    case Direction::Down:
        return state.allowVertical;
    default:
        return state.allowDiagonal;
    }
}

// The places of a word of length len on the grid as it stands, by the rules
// written out plainly: every cell, every enabled direction in order, the run
// inside the puzzle and all its cells empty.
QList<CandidatePlace> expectedPlaces(const GameState &state, int len)
{
    QList<CandidatePlace> list;
    for (int r = 1; r <= state.rows; ++r) {
        for (int c = 1; c <= state.columns; ++c) {
            for (const Direction d : kAllDirections) {
                if (!enabled(state, d))
                    continue;
                const Step s = stepOf(d);
                bool fits = true;
                for (int k = 0; k < len && fits; ++k) {
                    const int rr = r + k * s.dr;
                    const int cc = c + k * s.dc;
                    fits = rr >= 1 && rr <= state.rows && cc >= 1 && cc <= state.columns
                        && state.grid[rr][cc].isEmpty();
                }
                if (fits)
                    list.append({r, c, d});
            }
        }
    }
    return list;
}

int filledCells(const GameState &state)
{
    int count = 0;
    for (int r = 1; r <= GameState::kMaxSide; ++r)
        for (int c = 1; c <= GameState::kMaxSide; ++c)
            count += !state.grid[r][c].isEmpty();
    return count;
}

QString readRun(const GameState &state, const CandidatePlace &p, int len)
{
    const Step s = stepOf(p.direction);
    QString text;
    for (int k = 0; k < len; ++k)
        text += state.grid[p.row + k * s.dr][p.column + k * s.dc];
    return text;
}

QString reversed(QString text)
{
    std::reverse(text.begin(), text.end());
    return text;
}

// True when the words can be found in the grid in runs of enabled directions
// (forwards or reversed) that cover every filled cell exactly once.
bool gridHoldsExactlyTheWords(const GameState &state)
{
    const int rows = state.rows;
    const int columns = state.columns;
    std::vector<std::vector<std::vector<int>>> runs(state.wordCount + 1);
    for (int i = 1; i <= state.wordCount; ++i) {
        const QString &word = state.words[i];
        const int len = static_cast<int>(word.size());
        for (int r = 1; r <= rows; ++r) {
            for (int c = 1; c <= columns; ++c) {
                for (const Direction d : kAllDirections) {
                    if (!enabled(state, d))
                        continue;
                    const Step s = stepOf(d);
                    const int lr = r + (len - 1) * s.dr;
                    const int lc = c + (len - 1) * s.dc;
                    if (lr > rows || lc < 1 || lc > columns)
                        continue;
                    const QString text = readRun(state, {r, c, d}, len);
                    if (text != word && text != reversed(word))
                        continue;
                    std::vector<int> cells;
                    for (int k = 0; k < len; ++k)
                        cells.push_back((r + k * s.dr) * 64 + c + k * s.dc);
                    runs[i].push_back(cells);
                }
            }
        }
    }
    std::vector<char> used(64 * 64, 0);
    std::function<bool(int)> cover = [&](int i) {
        if (i > state.wordCount)
            return true;
        for (const auto &cells : runs[i]) {
            bool free = true;
            for (int cell : cells)
                free = free && !used[cell];
            if (!free)
                continue;
            for (int cell : cells)
                used[cell] = 1;
            if (cover(i + 1))
                return true;
            for (int cell : cells)
                used[cell] = 0;
        }
        return false;
    };
    return filledCells(state) == state.letterCount && cover(1);
}

// A time source for the tests: each look at it moves it on by `step` ms.
struct SteppingClock {
    double now = 0.0;
    double step = 1.0;
    int looks = 0;
    double operator()()
    {
        ++looks;
        now += step;
        return now;
    }
};

// ---- The law of the search, computed from its rules ------------------------
//
// At each word the places are listed, then drawn in a uniformly random order
// without repeats; each drawn place is tried, and the first from which the
// later words can all be laid is kept. The probability that a given place
// with a completion is kept, when `good` places have one and `dead` have none
// and are still untried, follows the draws one at a time.
double keptProbability(int good, int dead)
{
    if (dead == 0)
        return 1.0 / good;
    const double total = good + dead;
    return 1.0 / total + (dead / total) * keptProbability(good, dead - 1);
}

struct LawCase {
    int rows;
    int columns;
    QString directions;
    QStringList words;
};

// The outcome of a placement, orientation aside: for each cell, row by row,
// the number of the word that covers it, or "." (words have letters of their
// own, so the grid tells them apart).
QString patternOf(const GameState &state, const QStringList &words)
{
    QString pattern;
    for (int r = 1; r <= state.rows; ++r) {
        for (int c = 1; c <= state.columns; ++c) {
            const QString &cell = state.grid[r][c];
            QChar mark = u'.';
            for (int i = 0; i < words.size(); ++i)
                if (!cell.isEmpty() && words[i].contains(cell))
                    mark = QChar(u'1' + i);
            pattern += mark;
        }
    }
    return pattern;
}

struct Law {
    std::map<QString, double> probability; // by pattern
    int deadPlaces = 0;                    // places without a completion met on the way
};

Law lawOf(const LawCase &lc)
{
    auto state = makeState(lc.rows, lc.columns, lc.directions, lc.words);
    GameState &s = *state;
    std::function<bool(int)> completable = [&](int i) -> bool {
        if (i > s.wordCount)
            return true;
        const int len = static_cast<int>(s.words[i].size());
        for (const CandidatePlace &p : expectedPlaces(s, len)) {
            const Step st = stepOf(p.direction);
            for (int k = 0; k < len; ++k)
                s.grid[p.row + k * st.dr][p.column + k * st.dc] = QString::number(i);
            const bool ok = completable(i + 1);
            for (int k = 0; k < len; ++k)
                s.grid[p.row + k * st.dr][p.column + k * st.dc].clear();
            if (ok)
                return true;
        }
        return false;
    };
    Law law;
    std::function<void(int, double)> walk = [&](int i, double probability) {
        if (i > s.wordCount) {
            QString pattern;
            for (int r = 1; r <= s.rows; ++r)
                for (int c = 1; c <= s.columns; ++c)
                    pattern += s.grid[r][c].isEmpty() ? QStringLiteral(".") : s.grid[r][c];
            law.probability[pattern] += probability;
            return;
        }
        const int len = static_cast<int>(s.words[i].size());
        const QList<CandidatePlace> places = expectedPlaces(s, len);
        QList<CandidatePlace> good;
        for (const CandidatePlace &p : places) {
            const Step st = stepOf(p.direction);
            for (int k = 0; k < len; ++k)
                s.grid[p.row + k * st.dr][p.column + k * st.dc] = QString::number(i);
            if (completable(i + 1))
                good.append(p);
            for (int k = 0; k < len; ++k)
                s.grid[p.row + k * st.dr][p.column + k * st.dc].clear();
        }
        const int dead = static_cast<int>(places.size() - good.size());
        law.deadPlaces += dead;
        const double kept = keptProbability(static_cast<int>(good.size()), dead);
        for (const CandidatePlace &p : good) {
            const Step st = stepOf(p.direction);
            for (int k = 0; k < len; ++k)
                s.grid[p.row + k * st.dr][p.column + k * st.dc] = QString::number(i);
            walk(i + 1, probability * kept);
            for (int k = 0; k < len; ++k)
                s.grid[p.row + k * st.dr][p.column + k * st.dc].clear();
        }
    };
    walk(1, 1.0);
    return law;
}

double chiSquare(const std::map<QString, double> &expected, const QHash<QString, int> &observed,
                 int samples)
{
    double statistic = 0.0;
    for (const auto &[pattern, p] : expected) {
        const double e = p * samples;
        const double o = observed.value(pattern, 0);
        statistic += (o - e) * (o - e) / e;
    }
    return statistic;
}

// The chi-square value that a true law exceeds with probability 0.001
// (Wilson and Hilferty's approximation).
double criticalValue(int degreesOfFreedom)
{
    const double k = degreesOfFreedom;
    const double z = 3.0902;
    const double a = 2.0 / (9.0 * k);
    return k * std::pow(1.0 - a + z * std::sqrt(a), 3.0);
}

} // namespace

class TestPlacement : public QObject {
    Q_OBJECT

private slots:
    void placesAreListedRowByRowThenByDirection()
    {
        // The places of a word are listed for each row, each column, then right, down, downright, downleft, where the run fits and its cells are free.
        auto state = makeState(3, 4, QStringLiteral("HVD"), {QStringLiteral("ab")});
        state->grid[2][2] = QStringLiteral("x");
        const QList<CandidatePlace> expected = expectedPlaces(*state, 2);
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        const QList<CandidatePlace> listed = placer.candidates(1);
        QCOMPARE(listed, expected);
        QStringList firstRecords;
        for (int i = 0; i < 6; ++i)
            firstRecords.append(candidateRecord(listed[i]));
        // (2,2) is taken: no downright from (1,1), no down from (1,2); and
        // no downleft from column 1.
        QCOMPARE(firstRecords, (QStringList{"1,1,right", "1,1,down", "1,2,right",
                                            "1,2,downright", "1,2,downleft", "1,3,right"}));

        // AddCandidate, called for every cell and direction in that order,
        // gives the same list.
        auto other = makeState(3, 4, QStringLiteral("HVD"), {QStringLiteral("ab")});
        WordPlacer byHand(*other, random);
        byHand.ClearPuzzle();
        other->grid[2][2] = QStringLiteral("x");
        for (int r = 1; r <= 3; ++r)
            for (int c = 1; c <= 4; ++c)
                for (const Direction d : kAllDirections)
                    if (enabled(*other, d))
                        byHand.AddCandidate(r, c, 1, QStringLiteral("ab"), 2, d);
        QCOMPARE(byHand.candidates(1), listed);
        QCOMPARE(candidateRecord({3, 12, Direction::DownRight}), QStringLiteral("3,12,downright"));
    }

    void firstPlaceAndOrientationFollowTheDraws()
    {
        // The first draw picks place Int(r * n) + 1 of the list and the next the orientation, 1 meaning as written.
        auto state = makeState(5, 5, QStringLiteral("HVD"), {QStringLiteral("abc")});
        const QList<CandidatePlace> places = expectedPlaces(*state, 3);
        const int n = static_cast<int>(places.size());
        QCOMPARE(n, 3 * 5 * 2 + 9 + 9); // right and down 15 each, each diagonal 9
        for (const int k : {1, 7, n}) {
            for (const bool reverse : {false, true}) {
                FakeRandom random;
                random.script = {pick(k, n), reverse ? 0.75 : 0.25};
                WordPlacer placer(*state, random);
                placer.ClearPuzzle();
                placer.PlaceWord(1);
                QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
                QCOMPARE(random.drawsTaken, 2);
                QCOMPARE(readRun(*state, places[k - 1], 3),
                         reverse ? QStringLiteral("cba") : QStringLiteral("abc"));
                QCOMPARE(filledCells(*state), 3);
            }
        }
    }

    void secondWordWithNoPlaceSendsTheFirstOn()
    {
        // When the second word fits nowhere, the first is taken up again and tried at its next drawn place.
        auto state = makeState(1, 5, QStringLiteral("H"), {QStringLiteral("abc"), QStringLiteral("de")});
        FakeRandom random;
        random.script = {
            pick(2, 3), 0.25, // abc at column 2: "de" has no place
            pick(2, 3),       // place 2 again is already tried: drawn anew
            pick(1, 3), 0.75, // abc reversed at column 1
            pick(1, 1), 0.25, // de at column 4, its only place
        };
        WordPlacer placer(*state, random);
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        QVERIFY(random.script.isEmpty());
        QCOMPARE(random.drawsTaken, 7);
        QCOMPARE(readRun(*state, {1, 1, Direction::Right}, 5), QStringLiteral("cbade"));
    }

    void laterPlacesAreDrawnAmongTheUntried()
    {
        // Once more than half of a word's places are tried, the next is drawn by its position among the untried ones, in listing order.
        // "jk" has 11 places in a row of 12; from columns 3 to 9 it leaves
        // no run of 9 for the second word.
        auto state = makeState(1, 12, QStringLiteral("H"),
                               {QStringLiteral("jk"), QStringLiteral("abcdefghi")});
        FakeRandom random;
        for (int column = 3; column <= 8; ++column)
            random.script << pick(column, 11) << 0.25;
        // Untried now: columns 1, 2, 9, 10 and 11; the fifth is column 11.
        random.script << pick(5, 5) << 0.75;
        // The long word then has columns 1 and 2.
        random.script << pick(2, 2) << 0.25;
        WordPlacer placer(*state, random);
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        QVERIFY(random.script.isEmpty());
        QCOMPARE(random.drawsTaken, 16);
        QVERIFY(state->grid[1][1].isEmpty());
        QCOMPARE(readRun(*state, {1, 2, Direction::Right}, 11), QStringLiteral("abcdefghikj"));
    }

    void failsOnlyWhenEveryFirstPlaceHasFailed()
    {
        // The search fails only when every place of the first word has failed, and then leaves the grid empty.
        // Two 3-letter diagonals of a 3 x 3 grid always share the centre.
        auto state = makeState(3, 3, QStringLiteral("D"),
                               {QStringLiteral("abc"), QStringLiteral("def")});
        FakeRandom random;
        random.script = {pick(1, 2), 0.25, pick(1, 2), pick(2, 2), 0.75};
        PlacementLimits plain;
        plain.pruneDeadEnds = false; // explore as the rules say, without refuting early
        WordPlacer placer(*state, random, WordPlacer::TimeSource(), plain);
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Failed);
        QVERIFY(random.script.isEmpty());
        QCOMPARE(random.drawsTaken, 5);
        QCOMPARE(filledCells(*state), 0);

        // Refuting it early gives the same end.
        FakeRandom other;
        WordPlacer quick(*state, other);
        quick.ClearPuzzle();
        quick.PlaceWord(1);
        QCOMPARE(quick.placementStatus(), PlacementStatus::Failed);
        QCOMPARE(filledCells(*state), 0);
        QVERIFY(!quick.stoppedByTime());
    }

    void equalWordsTakeRunsOfTheirOwn()
    {
        // Two equal words are laid in two different runs.
        for (int seed = 1; seed <= 20; ++seed) {
            auto state = makeState(1, 6, QStringLiteral("H"),
                                   {QStringLiteral("abc"), QStringLiteral("abc")});
            SystemRandom random;
            random.seed(seed);
            WordPlacer placer(*state, random);
            placer.ClearPuzzle();
            placer.PlaceWord(1);
            QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
            QVERIFY(gridHoldsExactlyTheWords(*state));
            const QString row = readRun(*state, {1, 1, Direction::Right}, 6);
            QVERIFY(row.left(3) == u"abc" || row.left(3) == u"cba");
            QVERIFY(row.mid(3) == u"abc" || row.mid(3) == u"cba");
        }
    }

    void emptyWordFitsEverywhere()
    {
        // An empty word has a place at every cell in every enabled direction, taken or not, and lays nothing.
        auto state = makeState(5, 5, QStringLiteral("HVD"),
                               {QStringLiteral("abcd"), QString()});
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        QCOMPARE(placer.candidates(2).size(), 100);
        QCOMPARE(filledCells(*state), 4);
        QVERIFY(gridHoldsExactlyTheWords(*state));

        auto onlyEmpty = makeState(5, 5, QStringLiteral("H"), {QString()});
        WordPlacer second(*onlyEmpty, random);
        second.ClearPuzzle();
        second.PlaceWord(1);
        QCOMPARE(second.placementStatus(), PlacementStatus::Complete);
        QCOMPARE(second.candidates(1).size(), 25);
        QCOMPARE(filledCells(*onlyEmpty), 0);
    }

    void oneLetterWordHasAPlacePerFreeCellAndDirection()
    {
        // A one-letter word gets a place for every free cell in each enabled direction.
        auto state = makeState(3, 3, QStringLiteral("HVD"),
                               {QStringLiteral("abc"), QStringLiteral("d")});
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        QCOMPARE(placer.candidates(2).size(), 6 * 4);
        for (const CandidatePlace &p : placer.candidates(2))
            QVERIFY(state->grid[p.row][p.column] != u"a" && state->grid[p.row][p.column] != u"b"
                    && state->grid[p.row][p.column] != u"c");

        auto vertical = makeState(3, 3, QStringLiteral("V"), {QStringLiteral("d")});
        WordPlacer second(*vertical, random);
        second.ClearPuzzle();
        second.PlaceWord(1);
        QCOMPARE(second.candidates(1).size(), 9);
    }

    void wordLongerThanBothSidesFails()
    {
        // A first word longer than the rows and the columns has no place and ends the search as failed.
        auto state = makeState(5, 5, QStringLiteral("HVD"), {QStringLiteral("abcdef")});
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Failed);
        QCOMPARE(random.drawsTaken, 0);
        QCOMPARE(filledCells(*state), 0);
        QVERIFY(placer.candidates(1).isEmpty());
    }

    void emptyListCompletesAtOnce()
    {
        // A list of no words is complete at once, with an empty grid and no draw.
        auto state = makeState(5, 5, QStringLiteral("H"), {});
        state->grid[1][1] = QStringLiteral("q");
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.ClearPuzzle();
        QCOMPARE(placer.placementStatus(), PlacementStatus::Open);
        QCOMPARE(filledCells(*state), 0);
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        QCOMPARE(random.drawsTaken, 0);
    }

    void onlyDiagonals()
    {
        // With only diagonals on, every word of two letters or more lies on a diagonal.
        const QStringList words{"abcde", "fghi", "jkl", "mn"};
        for (int seed = 1; seed <= 30; ++seed) {
            auto state = makeState(7, 6, QStringLiteral("D"), words);
            SystemRandom random;
            random.seed(seed);
            WordPlacer placer(*state, random);
            placer.ClearPuzzle();
            placer.PlaceWord(1);
            QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
            QVERIFY(gridHoldsExactlyTheWords(*state));
            // No two letters of a word share a row or a column.
            for (const QString &word : words) {
                QSet<int> rowsSeen, columnsSeen;
                for (int r = 1; r <= 7; ++r)
                    for (int c = 1; c <= 6; ++c)
                        if (!state->grid[r][c].isEmpty() && word.contains(state->grid[r][c])) {
                            QVERIFY(!rowsSeen.contains(r));
                            QVERIFY(!columnsSeen.contains(c));
                            rowsSeen.insert(r);
                            columnsSeen.insert(c);
                        }
                QCOMPARE(rowsSeen.size(), word.size());
            }
        }
    }

    void endsCompleteWithTheWordsOrFailedEmpty()
    {
        // After the top call the status is complete or failed, never open; complete grids hold exactly the words, failed ones nothing.
        std::mt19937 lists(7);
        int complete = 0;
        int failed = 0;
        const QStringList directionSets{"H", "V", "D", "HV", "HD", "VD", "HVD"};
        for (int run = 0; run < 300; ++run) {
            const int rows = 5 + static_cast<int>(lists() % 4);
            const int columns = 5 + static_cast<int>(lists() % 4);
            const QString dirs = directionSets[static_cast<int>(lists() % 7)];
            QStringList words;
            int letters = 0;
            while (words.size() < 16) {
                const int len = 2 + static_cast<int>(lists() % (std::min(rows, columns) - 3));
                // Fuller than the size test allows, so that some fail.
                if ((letters + len) > rows * columns * 0.95)
                    break;
                QString word;
                for (int k = 0; k < len; ++k)
                    word += QChar(u'a' + static_cast<int>(lists() % 26));
                words.append(word);
                letters += len;
            }
            std::stable_sort(words.begin(), words.end(),
                             [](const QString &a, const QString &b) { return a.size() > b.size(); });
            auto state = makeState(rows, columns, dirs, words);
            SystemRandom random;
            random.seed(run);
            SteppingClock clock; // a long search gives up after some 8000 steps
            WordPlacer placer(*state, random, std::ref(clock));
            placer.ClearPuzzle();
            placer.PlaceWord(1);
            QVERIFY(placer.placementStatus() != PlacementStatus::Open);
            if (placer.placementStatus() == PlacementStatus::Complete) {
                ++complete;
                QVERIFY2(gridHoldsExactlyTheWords(*state), qPrintable(words.join(u',')));
            } else {
                ++failed;
                QCOMPARE(filledCells(*state), 0);
            }
        }
        QVERIFY(complete > 200);
        QVERIFY(failed > 20);
    }

    void clearPuzzleEmptiesTheWholeGrid()
    {
        // ClearPuzzle empties every cell of the grid, inside the puzzle or not, and opens a new search.
        auto state = makeState(5, 5, QStringLiteral("H"), {QStringLiteral("abc")});
        state->grid[50][50] = QStringLiteral("z");
        state->grid[7][9] = QStringLiteral("y");
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        placer.ClearPuzzle();
        QCOMPARE(placer.placementStatus(), PlacementStatus::Open);
        QCOMPARE(filledCells(*state), 0);
        QVERIFY(placer.candidates(1).isEmpty());
    }

    void layWordWritesAndErasesARun()
    {
        // LayWord writes the text along the run from its start cell, or empties as many cells.
        auto state = makeState(5, 5, QStringLiteral("HVD"), {});
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.LayWord(QStringLiteral("cat"), 2, 3, Direction::Right, false);
        QCOMPARE(state->grid[2][3], QStringLiteral("c"));
        QCOMPARE(state->grid[2][5], QStringLiteral("t"));
        placer.LayWord(QStringLiteral("dog"), 1, 3, Direction::DownLeft, false);
        QCOMPARE(state->grid[3][1], QStringLiteral("g"));
        placer.LayWord(QStringLiteral("cat"), 2, 3, Direction::Right, true);
        QCOMPARE(filledCells(*state), 3);
        QVERIFY(state->grid[2][4].isEmpty());
    }

    void searchGivesUpAtTheTimeLimit()
    {
        // A search that runs out of time starts over every 100 ms and ends as failed after 500 ms.
        // Eight 7-letter words fill one row of 11 each, leaving room for
        // at most one 3-letter word beside each: nine can't be placed, and
        // proving it takes millions of steps.
        QStringList words;
        for (int i = 0; i < 8; ++i)
            words.append(QStringLiteral("abcdefg"));
        for (int i = 0; i < 9; ++i)
            words.append(QStringLiteral("xyz"));
        auto state = makeState(8, 11, QStringLiteral("H"), words);
        FakeRandom random;
        SteppingClock clock;
        WordPlacer placer(*state, random, std::ref(clock));
        placer.ClearPuzzle();
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Failed);
        QVERIFY(placer.stoppedByTime());
        QCOMPARE(placer.restarts(), 4);
        QVERIFY(clock.now >= 500.0);
        QVERIFY(clock.now <= 505.0);
        QCOMPARE(filledCells(*state), 0);

        // Under a clock that never moves, a step count still ends it.
        auto stuck = makeState(8, 11, QStringLiteral("H"), words);
        SteppingClock frozen;
        frozen.step = 0.0;
        PlacementLimits fewSteps;
        fewSteps.mostSteps = 20000;
        WordPlacer backstop(*stuck, random, std::ref(frozen), fewSteps);
        backstop.ClearPuzzle();
        backstop.PlaceWord(1);
        QCOMPARE(backstop.placementStatus(), PlacementStatus::Failed);
        QVERIFY(backstop.stoppedByTime());
        QVERIFY(backstop.searchNodes() <= 20000 + 16);

        // A list that can be placed, under a clock that never moves, is
        // never cut short.
        auto easy = makeState(8, 11, QStringLiteral("H"), words.mid(0, 12));
        SteppingClock still;
        still.step = 0.0;
        WordPlacer other(*easy, random, std::ref(still));
        other.ClearPuzzle();
        other.PlaceWord(1);
        QCOMPARE(other.placementStatus(), PlacementStatus::Complete);
        QCOMPARE(other.restarts(), 0);
        QVERIFY(gridHoldsExactlyTheWords(*easy));
    }

    void puzzlesFollowTheLawOfTheSearch_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("directions");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("2x3 all directions") << 2 << 3 << QStringLiteral("HVD")
                                            << QStringList{"ab", "cd", "ef"};
        QTest::newRow("3x3 across and down") << 3 << 3 << QStringLiteral("HV")
                                             << QStringList{"abc", "de", "fg", "hi"};
        QTest::newRow("3x5 across and down") << 3 << 5 << QStringLiteral("HV")
                                             << QStringList{"abcd", "efgh", "ijkl", "mn"};
        QTest::newRow("2x4 diagonals") << 2 << 4 << QStringLiteral("D")
                                       << QStringList{"ab", "cd", "ef"};
        // Half the places of the first word leave no run of 6 for the second.
        QTest::newRow("1x11 mostly dead ends") << 1 << 11 << QStringLiteral("H")
                                               << QStringList{"abcd", "efghij"};
    }

    void puzzlesFollowTheLawOfTheSearch()
    {
        // The puzzles that come out are distributed as the plain search's: at each word, a uniform pick among the places that still allow a complete placement, each orientation with chance one half.
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(QString, directions);
        QFETCH(QStringList, words);
        const Law law = lawOf({rows, columns, directions, words});
        QVERIFY(law.deadPlaces > 0); // the search has to back up
        // The law is not uniform over the complete placements.
        double low = 1.0, high = 0.0;
        for (const auto &[pattern, p] : law.probability) {
            low = std::min(low, p);
            high = std::max(high, p);
        }
        QVERIFY(high > 1.5 * low);

        constexpr int kSamples = 20000;
        auto state = makeState(rows, columns, directions, words);
        SystemRandom random;
        random.seed(20240611.0);
        WordPlacer placer(*state, random);
        QHash<QString, int> observed;
        std::vector<int> reversedCount(words.size(), 0);
        for (int run = 0; run < kSamples; ++run) {
            placer.ClearPuzzle();
            placer.PlaceWord(1);
            QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
            const QString pattern = patternOf(*state, words);
            QVERIFY2(law.probability.count(pattern) == 1, qPrintable(pattern));
            ++observed[pattern];
            // Reading a word's cells row by row gives it as written unless it was reversed.
            for (int i = 0; i < words.size(); ++i) {
                QString text;
                for (int r = 1; r <= rows; ++r)
                    for (int c = 1; c <= columns; ++c)
                        if (pattern.at((r - 1) * columns + c - 1) == QChar(u'1' + i))
                            text += state->grid[r][c];
                reversedCount[i] += text != words[i];
            }
        }
        const int freedom = static_cast<int>(law.probability.size()) - 1;
        const double statistic = chiSquare(law.probability, observed, kSamples);
        QVERIFY2(statistic < criticalValue(freedom),
                 qPrintable(QStringLiteral("chi-square %1 with %2 degrees of freedom")
                                .arg(statistic)
                                .arg(freedom)));
        for (int count : reversedCount)
            QVERIFY(std::abs(count - kSamples / 2) < 4 * std::sqrt(kSamples / 4.0));

        // The test tells a wrong sampler apart: picking uniformly among the
        // complete placements.
        std::vector<QString> patterns;
        for (const auto &entry : law.probability)
            patterns.push_back(entry.first);
        std::mt19937 wrong(99);
        QHash<QString, int> uniform;
        for (int run = 0; run < kSamples; ++run)
            ++uniform[patterns[wrong() % patterns.size()]];
        QVERIFY(chiSquare(law.probability, uniform, kSamples) > criticalValue(freedom));
    }
};

QTEST_GUILESS_MAIN(TestPlacement)
#include "tst_placement.moc"
