// Laying the words of a list into the grid.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "platform/qtplatform.h"
#include "setup/placement.h"

#include <QHash>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <tuple>
#include <vector>

using namespace lexicove;
using namespace lexicove::test;

namespace {

constexpr std::array<Direction, 4> kAllDirections{Direction::Right, Direction::Down,
                                                  Direction::DownRight, Direction::DownLeft};
constexpr int kStep[4][2] = {{0, 1}, {1, 0}, {1, 1}, {1, -1}}; // row, column step by direction
using Cells = std::vector<std::pair<int, int>>;

// The value r that makes Int(r * n) + 1 give k.
double pick(int k, int n) { return (k - 0.5) / n; }

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

// Runs the whole search from a cleared grid, as the options window does.
PlacementStatus placeAll(WordPlacer &placer)
{
    placer.ClearPuzzle();
    placer.PlaceWord(1);
    return placer.placementStatus();
}

// The cells of a run of len from the place in an enabled direction; none when
// the direction is off or the run leaves the puzzle.
std::optional<Cells> runCells(const GameState &state, const CandidatePlace &p, int len)
{
    const int d = static_cast<int>(p.direction);
    if (!(d == 0 ? state.allowHorizontal : d == 1 ? state.allowVertical : state.allowDiagonal))
        return std::nullopt;
    Cells cells;
    for (int k = 0, r = p.row, c = p.column; k < len; ++k, r += kStep[d][0], c += kStep[d][1]) {
        if (r < 1 || r > state.rows || c < 1 || c > state.columns)
            return std::nullopt;
        cells.emplace_back(r, c);
    }
    return cells;
}

// The places of a word of length len, by the rules written out plainly: every
// cell, every enabled direction in order, the run inside the puzzle and free.
QList<CandidatePlace> expectedPlaces(const GameState &state, int len)
{
    QList<CandidatePlace> list;
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            for (const Direction d : kAllDirections)
                if (const auto cells = runCells(state, {r, c, d}, len);
                    cells && std::all_of(cells->begin(), cells->end(),
                                   [&](auto rc) { return state.grid[rc.first][rc.second].isEmpty(); }))
                    list.append({r, c, d});
    return list;
}

void paint(GameState &state, const CandidatePlace &p, int len, const QString &mark)
{
    for (const auto &[r, c] : runCells(state, p, len).value_or(Cells()))
        state.grid[r][c] = mark;
}

int filledCells(const GameState &state)
{
    int count = 0;
    for (const auto &row : state.grid)
        count += static_cast<int>(std::count_if(row.begin(), row.end(), [](auto &t) { return !t.isEmpty(); }));
    return count;
}

QString readRun(const GameState &state, const CandidatePlace &p, int len)
{
    QString text;
    for (const auto &[r, c] : runCells(state, p, len).value_or(Cells()))
        text += state.grid[r][c];
    return text;
}

// True when the words can be found in the grid in runs of enabled directions
// (forwards or reversed) that cover every filled cell exactly once.
bool gridHoldsExactlyTheWords(const GameState &state)
{
    std::set<std::pair<int, int>> used;
    std::function<bool(int)> cover = [&](int i) {
        if (i > state.wordCount)
            return true;
        const QString &word = state.words[i];
        QString backwards = word;
        std::reverse(backwards.begin(), backwards.end());
        const int len = static_cast<int>(word.size());
        for (int r = 1; r <= state.rows; ++r)
            for (int c = 1; c <= state.columns; ++c)
                for (const Direction d : kAllDirections) {
                    const QString text = readRun(state, {r, c, d}, len);
                    const auto cells = runCells(state, {r, c, d}, len);
                    if (!cells || (text != word && text != backwards)
                        || std::any_of(cells->begin(), cells->end(), [&](auto rc) { return used.count(rc); }))
                        continue;
                    used.insert(cells->begin(), cells->end());
                    if (cover(i + 1))
                        return true;
                    for (const auto &rc : *cells)
                        used.erase(rc);
                }
        return false;
    };
    return filledCells(state) == state.letterCount && cover(1);
}

QStringList records(const QList<CandidatePlace> &places)
{
    QStringList list;
    for (const CandidatePlace &p : places)
        list.append(candidateRecord(p));
    return list;
}

// A time source for the tests: each look at it moves it on by `step` ms.
struct SteppingClock {
    double now = 0.0;
    double step = 1.0;
    double operator()() { return now += step; }
};

// ---- The law of the search, computed from its rules ------------------------
//
// At each word the places are listed, then drawn in a uniformly random order
// without repeats; the first drawn place from which the later words can all be
// laid is kept. When `good` places have such a completion and `dead` have
// none, a given good place is kept with the probability below.
double keptProbability(int good, int dead)
{
    if (dead == 0)
        return 1.0 / good;
    const double total = good + dead;
    return 1.0 / total + (dead / total) * keptProbability(good, dead - 1);
}

// The puzzles that can come out from word i on, the grid as it stands, as
// patterns (for each cell, row by row, the number of the word covering it or
// ".") with their probabilities; empty when the words can't all be laid.
// deadPlaces counts the places without a completion met on the way.
std::map<QString, double> lawFrom(GameState &s, int i, int &deadPlaces)
{
    std::map<QString, double> law;
    if (i > s.wordCount) {
        QString pattern;
        for (int r = 1; r <= s.rows; ++r)
            for (int c = 1; c <= s.columns; ++c)
                pattern += s.grid[r][c].isEmpty() ? QStringLiteral(".") : s.grid[r][c];
        law[pattern] = 1.0;
        return law;
    }
    const int len = static_cast<int>(s.words[i].size());
    const QList<CandidatePlace> places = expectedPlaces(s, len);
    std::vector<std::map<QString, double>> good;
    for (const CandidatePlace &p : places) {
        paint(s, p, len, QString::number(i));
        if (auto below = lawFrom(s, i + 1, deadPlaces); !below.empty())
            good.push_back(std::move(below));
        paint(s, p, len, QString());
    }
    const int dead = static_cast<int>(places.size() - good.size());
    deadPlaces += dead;
    for (const auto &below : good)
        for (const auto &[pattern, p] : below)
            law[pattern] += p * keptProbability(static_cast<int>(good.size()), dead);
    return law;
}

// The same pattern read from a grid holding the words' own letters (the words
// of a law case have letters of their own).
QString patternOf(const GameState &state, const QStringList &words)
{
    QString pattern;
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c) {
            QChar mark = u'.';
            for (int i = 0; i < words.size(); ++i)
                if (!state.grid[r][c].isEmpty() && words[i].contains(state.grid[r][c]))
                    mark = QChar(u'1' + i);
            pattern += mark;
        }
    return pattern;
}

double chiSquare(const std::map<QString, double> &expected, const QHash<QString, int> &observed,
                 int samples)
{
    double statistic = 0.0;
    for (const auto &[pattern, p] : expected) {
        const double e = p * samples, o = observed.value(pattern, 0);
        statistic += (o - e) * (o - e) / e;
    }
    return statistic;
}

// The chi-square value that a true law exceeds with probability 0.001
// (Wilson and Hilferty's approximation).
double criticalValue(int degreesOfFreedom)
{
    const double k = degreesOfFreedom, z = 3.0902, a = 2.0 / (9.0 * k);
    return k * std::pow(1.0 - a + z * std::sqrt(a), 3.0);
}

} // namespace

class TestPlacement : public QObject {
    Q_OBJECT

private slots:
    void placesAreListedRowByRowThenByDirection()
    {
        // A word's places are listed by row, column, then right, down, downright, downleft, where the run fits on free cells; AddCandidate keeps the same rule and records read "row,column,direction".
        auto state = makeState(3, 4, QStringLiteral("HVD"), {QStringLiteral("ab")});
        state->grid[2][2] = QStringLiteral("x");
        const QList<CandidatePlace> expected = expectedPlaces(*state, 2);
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), PlacementStatus::Complete);
        const QList<CandidatePlace> listed = placer.candidates(1);
        QCOMPARE(listed, expected);
        // (2,2) is taken: no downright from (1,1), no down from (1,2), no downleft from column 1.
        QCOMPARE(records(listed.mid(0, 6)), (QStringList{"1,1,right", "1,1,down", "1,2,right",
                                                         "1,2,downright", "1,2,downleft", "1,3,right"}));

        auto other = makeState(3, 4, QStringLiteral("HVD"), {});
        other->grid[2][2] = QStringLiteral("x");
        WordPlacer byHand(*other, random);
        for (int r = 1; r <= 3; ++r)
            for (int c = 1; c <= 4; ++c)
                for (const Direction d : kAllDirections)
                    byHand.AddCandidate(r, c, 1, QStringLiteral("ab"), 2, d);
        QCOMPARE(byHand.candidates(1), listed);

        // A one-letter word has a place per free cell in every enabled direction.
        auto single = makeState(1, 2, QStringLiteral("HVD"), {QStringLiteral("d")});
        WordPlacer one(*single, random);
        single->grid[1][1] = QStringLiteral("q");
        one.PlaceWord(1);
        QCOMPARE(records(one.candidates(1)), (QStringList{"1,2,right", "1,2,down", "1,2,downright", "1,2,downleft"}));
    }

    void drawsPickThePlaceAndOrientation()
    {
        // The first draw picks place Int(r * n) + 1, the next the orientation (below one half: as written); a second word with no place sends the first on to a new drawn place, drawn among the untried once half are tried.
        auto state = makeState(5, 5, QStringLiteral("HVD"), {QStringLiteral("abc")});
        const QList<CandidatePlace> places = expectedPlaces(*state, 3);
        const int n = static_cast<int>(places.size());
        QCOMPARE(n, 15 + 15 + 9 + 9);
        for (const int k : {1, 7, n}) {
            for (const bool reverse : {false, true}) {
                FakeRandom random;
                random.script = {pick(k, n), reverse ? 0.75 : 0.25};
                WordPlacer placer(*state, random);
                QCOMPARE(placeAll(placer), PlacementStatus::Complete);
                QCOMPARE(random.drawsTaken, 2);
                QCOMPARE(readRun(*state, places[k - 1], 3), QLatin1String(reverse ? "cba" : "abc"));
                QCOMPARE(filledCells(*state), 3);
            }
        }

        auto row = makeState(1, 5, QStringLiteral("H"), {QStringLiteral("abc"), QStringLiteral("de")});
        FakeRandom random;
        random.script = {
            pick(2, 3), 0.25, // abc at column 2: "de" has no place
            pick(2, 3),       // place 2 again is already tried: drawn anew
            pick(1, 3), 0.75, // abc reversed at column 1
            pick(1, 1), 0.25, // de at column 4, its only place
        };
        WordPlacer placer(*row, random);
        QCOMPARE(placeAll(placer), PlacementStatus::Complete);
        QVERIFY(random.script.isEmpty());
        QCOMPARE(random.drawsTaken, 7);
        QCOMPARE(readRun(*row, {1, 1, Direction::Right}, 5), QStringLiteral("cbade"));

        // Past half tried, the draw counts among the untried in listing order. "jk" has 11
        // places in a row of 12; from columns 3 to 9 no run of 9 is left for the second word.
        auto longRow = makeState(1, 12, QStringLiteral("H"), {QStringLiteral("jk"), QStringLiteral("abcdefghi")});
        FakeRandom draws;
        for (int column = 3; column <= 8; ++column)
            draws.script << pick(column, 11) << 0.25;
        // Untried now: columns 1, 2, 9, 10 and 11; the fifth is column 11, then the long word at 2.
        draws.script << pick(5, 5) << 0.75 << pick(2, 2) << 0.25;
        WordPlacer later(*longRow, draws);
        QCOMPARE(placeAll(later), PlacementStatus::Complete);
        QCOMPARE(draws.drawsTaken, 16);
        QVERIFY(longRow->grid[1][1].isEmpty());
        QCOMPARE(readRun(*longRow, {1, 2, Direction::Right}, 11), QStringLiteral("abcdefghikj"));
    }

    void edgeListsEndAsTheRulesSay_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("directions");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<bool>("complete");
        QTest::addColumn<int>("lastPlaces"); // places listed for the last word, -1 not checked
        QTest::addColumn<int>("draws");      // draws taken, -1 not checked
        QTest::newRow("no words") << 5 << 5 << "H" << QStringList{} << true << -1 << 0;
        QTest::newRow("longer than both sides") << 5 << 5 << "HVD" << QStringList{"abcdef"} << false << 0 << 0;
        // An empty word fits at every cell in every enabled direction, taken or not.
        QTest::newRow("empty word") << 5 << 5 << "HVD" << QStringList{"abcd", ""} << true << 100 << -1;
        QTest::newRow("only an empty word") << 5 << 5 << "H" << QStringList{""} << true << 25 << -1;
        QTest::newRow("one letter beside a word") << 3 << 3 << "HVD" << QStringList{"abc", "d"} << true << 6 * 4 << -1;
        QTest::newRow("one letter, down only") << 3 << 3 << "V" << QStringList{"d"} << true << 9 << 2;
        // Two 3-letter diagonals of a 3 x 3 grid always share the centre.
        QTest::newRow("diagonals that must cross") << 3 << 3 << "D" << QStringList{"abc", "def"} << false << -1 << -1;
    }

    void edgeListsEndAsTheRulesSay()
    {
        // Lists at the edges end complete with exactly their words in the grid, or failed with the grid empty, having listed and drawn what the rules say.
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(QString, directions);
        QFETCH(QStringList, words);
        QFETCH(bool, complete);
        QFETCH(int, lastPlaces);
        QFETCH(int, draws);
        auto state = makeState(rows, columns, directions, words);
        state->grid[1][1] = QStringLiteral("q"); // left from an earlier puzzle
        state->grid[50][50] = QStringLiteral("z");
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.ClearPuzzle();
        QCOMPARE(placer.placementStatus(), PlacementStatus::Open);
        QCOMPARE(filledCells(*state), 0);
        placer.PlaceWord(1);
        QCOMPARE(placer.placementStatus(), complete ? PlacementStatus::Complete : PlacementStatus::Failed);
        if (complete)
            QVERIFY(gridHoldsExactlyTheWords(*state));
        else
            QCOMPARE(filledCells(*state), 0);
        if (lastPlaces >= 0)
            QCOMPARE(placer.candidates(static_cast<int>(words.size())).size(), lastPlaces);
        if (draws >= 0)
            QCOMPARE(random.drawsTaken, draws);
    }

    void randomListsEndCompleteWithTheWordsOrFailedEmpty()
    {
        // After the top call the status is complete or failed, never open: complete grids hold exactly the words (equal words in runs of their own, diagonal-only lists on diagonals), failed ones nothing.
        for (int seed = 1; seed <= 10; ++seed) {
            for (const auto &[rows, columns, dirs, words] :
                 {std::tuple{1, 6, QStringLiteral("H"), QStringList{"abc", "abc"}},
                  std::tuple{7, 6, QStringLiteral("D"), QStringList{"abcde", "fghi", "jkl", "mn"}}}) {
                auto state = makeState(rows, columns, dirs, words);
                SystemRandom random;
                random.seed(seed);
                WordPlacer placer(*state, random);
                QCOMPARE(placeAll(placer), PlacementStatus::Complete);
                QVERIFY(gridHoldsExactlyTheWords(*state));
            }
        }

        // Random lists, fuller than the size test allows so that some fail.
        std::mt19937 lists(7);
        const QStringList directionSets{"H", "V", "D", "HV", "HD", "VD", "HVD"};
        int ended[3] = {0, 0, 0};
        for (int run = 0; run < 300; ++run) {
            const int rows = 5 + static_cast<int>(lists() % 4), columns = 5 + static_cast<int>(lists() % 4);
            const QString dirs = directionSets[static_cast<int>(lists() % 7)];
            QStringList words;
            for (int letters = 0, len = 0; words.size() < 16; letters += len) {
                len = 2 + static_cast<int>(lists() % (std::min(rows, columns) - 3));
                if ((letters + len) > rows * columns * 0.95)
                    break;
                words.append(QString());
                for (int k = 0; k < len; ++k)
                    words.last() += QChar(u'a' + static_cast<int>(lists() % 26));
            }
            std::stable_sort(words.begin(), words.end(), [](auto &a, auto &b) { return a.size() > b.size(); });
            auto state = makeState(rows, columns, dirs, words);
            SystemRandom random;
            random.seed(run);
            SteppingClock clock; // a long search gives up after some 8000 steps
            WordPlacer placer(*state, random, std::ref(clock));
            const PlacementStatus status = placeAll(placer);
            ++ended[static_cast<int>(status)];
            if (status == PlacementStatus::Complete)
                QVERIFY2(gridHoldsExactlyTheWords(*state), qPrintable(words.join(u',')));
            else
                QCOMPARE(filledCells(*state), 0);
        }
        QCOMPARE(ended[static_cast<int>(PlacementStatus::Open)], 0);
        QVERIFY(ended[static_cast<int>(PlacementStatus::Complete)] > 200);
        QVERIFY(ended[static_cast<int>(PlacementStatus::Failed)] > 20);
    }

    void layWordWritesAndErasesARun()
    {
        // LayWord writes the text along the run from its start cell, or empties as many cells.
        auto state = makeState(5, 5, QStringLiteral("HVD"), {});
        FakeRandom random;
        WordPlacer placer(*state, random);
        placer.LayWord(QStringLiteral("cat"), 2, 3, Direction::Right, false);
        placer.LayWord(QStringLiteral("dog"), 1, 3, Direction::DownLeft, false);
        QCOMPARE(readRun(*state, {2, 2, Direction::Right}, 4), QStringLiteral("ocat"));
        QCOMPARE(readRun(*state, {1, 3, Direction::DownLeft}, 3), QStringLiteral("dog"));
        placer.LayWord(QStringLiteral("cat"), 2, 3, Direction::Right, true);
        QCOMPARE(filledCells(*state), 3);
        QVERIFY(state->grid[2][2] == u"o" && state->grid[2][4].isEmpty());
    }

    void searchGivesUpAtTheTimeLimit()
    {
        // A search that runs out of time starts over every 100 ms and ends as failed after 500 ms; under a clock that never moves a step count still ends it, and never cuts short a list that can be placed.
        // Eight 7-letter words fill one row of 11 each, leaving room for at most one 3-letter
        // word beside each: nine can't be placed, and proving it takes millions of steps.
        QStringList words(8, QStringLiteral("abcdefg"));
        words += QStringList(9, QStringLiteral("xyz"));
        auto state = makeState(8, 11, QStringLiteral("H"), words);
        FakeRandom random;
        SteppingClock clock;
        WordPlacer placer(*state, random, std::ref(clock));
        QCOMPARE(placeAll(placer), PlacementStatus::Failed);
        QVERIFY(placer.stoppedByTime());
        QCOMPARE(placer.restarts(), 4);
        QVERIFY(clock.now >= 500.0 && clock.now <= 505.0);
        QCOMPARE(filledCells(*state), 0);

        SteppingClock frozen{0.0, 0.0};
        PlacementLimits fewSteps;
        fewSteps.mostSteps = 20000;
        WordPlacer backstop(*state, random, std::ref(frozen), fewSteps);
        QCOMPARE(placeAll(backstop), PlacementStatus::Failed);
        QVERIFY(backstop.stoppedByTime() && backstop.searchNodes() <= 20000 + 16);
        auto easy = makeState(8, 11, QStringLiteral("H"), words.mid(0, 12));
        WordPlacer other(*easy, random, std::ref(frozen));
        QCOMPARE(placeAll(other), PlacementStatus::Complete);
        QCOMPARE(other.restarts(), 0);
        QVERIFY(gridHoldsExactlyTheWords(*easy));
    }

    void puzzlesFollowTheLawOfTheSearch_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("directions");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("2x3 all directions") << 2 << 3 << "HVD" << QStringList{"ab", "cd", "ef"};
        QTest::newRow("3x3 across and down") << 3 << 3 << "HV" << QStringList{"abc", "de", "fg", "hi"};
        QTest::newRow("2x4 diagonals") << 2 << 4 << "D" << QStringList{"ab", "cd", "ef"};
        // Half the places of the first word leave no run of 6 for the second.
        QTest::newRow("1x11 mostly dead ends") << 1 << 11 << "H" << QStringList{"abcd", "efghij"};
    }

    void puzzlesFollowTheLawOfTheSearch()
    {
        // The puzzles that come out are distributed as the plain search's: at each word, a uniform pick among the places that still allow a complete placement, each orientation with chance one half.
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(QString, directions);
        QFETCH(QStringList, words);
        int deadPlaces = 0;
        const auto law = lawFrom(*makeState(rows, columns, directions, words), 1, deadPlaces);
        QVERIFY(deadPlaces > 0); // the search has to back up
        const auto [low, high] = std::minmax_element(law.begin(), law.end(), [](auto &a, auto &b) { return a.second < b.second; });
        QVERIFY(high->second > 1.5 * low->second); // not uniform over the complete placements

        constexpr int kSamples = 20000;
        auto state = makeState(rows, columns, directions, words);
        SystemRandom random;
        random.seed(20240611.0);
        WordPlacer placer(*state, random);
        QHash<QString, int> observed;
        std::vector<int> reversedCount(words.size(), 0);
        for (int run = 0; run < kSamples; ++run) {
            QCOMPARE(placeAll(placer), PlacementStatus::Complete);
            const QString pattern = patternOf(*state, words);
            QVERIFY2(law.count(pattern) == 1, qPrintable(pattern));
            ++observed[pattern];
            // Reading a word's cells row by row gives it as written unless it was reversed.
            for (int i = 0; i < words.size(); ++i) {
                QString text;
                for (int cell = 0; cell < pattern.size(); ++cell)
                    if (pattern.at(cell) == QChar(u'1' + i))
                        text += state->grid[cell / columns + 1][cell % columns + 1];
                reversedCount[i] += text != words[i];
            }
        }
        const int freedom = static_cast<int>(law.size()) - 1;
        const double statistic = chiSquare(law, observed, kSamples);
        QVERIFY2(statistic < criticalValue(freedom),
                 qPrintable(QStringLiteral("chi-square %1, %2 degrees of freedom").arg(statistic).arg(freedom)));
        for (int count : reversedCount)
            QVERIFY(std::abs(count - kSamples / 2) < 4 * std::sqrt(kSamples / 4.0));

        // The test tells a wrong sampler apart: a uniform pick among the complete placements.
        std::mt19937 wrong(99);
        QHash<QString, int> uniform;
        for (int run = 0; run < kSamples; ++run)
            ++uniform[std::next(law.begin(), static_cast<long>(wrong() % law.size()))->first];
        QVERIFY(chiSquare(law, uniform, kSamples) > criticalValue(freedom));
    }
};

QTEST_GUILESS_MAIN(TestPlacement)
#include "tst_placement.moc"
