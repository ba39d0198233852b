// Laying the words of a list into the grid.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "setup/placement.h"

#include <QtTest>

#include <map>
#include <numeric>

using namespace lexicove;
using enum PlacementStatus;

namespace {

// The draw r that makes Int(r * n) + 1 give k.
const auto pick = [](int k, int n) { return (k - 0.5) / n; };

// A rows x columns puzzle of the words, in the directions dirs names (of H, V and D).
std::unique_ptr<GameState> makeState(int rows, int columns, const QString &dirs,
                                     const QStringList &words)
{
    auto s = std::make_unique<GameState>();
    s->rows = qint16(rows);
    s->columns = qint16(columns);
    s->allowHorizontal = dirs.contains(u'H');
    s->allowVertical = dirs.contains(u'V');
    s->allowDiagonal = dirs.contains(u'D');
    for (const QString &word : words) {
        s->words[++s->wordCount] = word;
        s->letterCount += int(word.size());
    }
    return s;
}

// Row by row, "." for a free cell, each row closed by "|": a run leaving the puzzle meets one or
// the end.
QString gridText(const GameState &s)
{
    QString text;
    for (int r = 1; r <= s.rows; ++r, text += u'|')
        for (int c = 1; c <= s.columns; ++c)
            text += s.grid[r][c].isEmpty() ? QStringLiteral(".") : s.grid[r][c];
    return text;
}

// Place k starts at cell k / 4 of gridText in direction k % 4 (right, down, downright, downleft): k
// counts in listing order.
const auto placeAt = [](const GameState &s, int k) {
    return CandidatePlace{k / 4 / (s.columns + 1) + 1, k / 4 % (s.columns + 1) + 1,
                          Direction(k % 4)};
};
// Where in gridText the i-th letter of place k lies.
const auto cellOf = [](const GameState &s, int k, int i) {
    return k / 4 + i * QList{1, s.columns + 1, s.columns + 2, int(s.columns)}[k % 4];
};

// The len letters of place k, "|" first when its direction is off or it starts on a "|".
QString readRun(const GameState &s, const QString &grid, int k, qsizetype len)
{
    const bool allowed = QList{s.allowHorizontal, s.allowVertical, s.allowDiagonal}[qMin(k % 4, 2)];
    QString text = allowed && grid[k / 4] != u'|' ? "" : "|";
    for (int i = 0; i < len; ++i)
        text += grid.mid(cellOf(s, k, i), 1);
    return text;
}

// The places of a word of len letters, by the rules written out plainly: runs on free cells.
QList<int> placesOf(const GameState &s, const QString &grid, qsizetype len)
{
    QList<int> places;
    for (int k = 0; k < grid.size() * 4; ++k)
        if (readRun(s, grid, k, len) == QString(len, u'.'))
            places += k;
    return places;
}

QString reversed(QString text)
{
    std::reverse(text.begin(), text.end());
    return text;
}

// True when the grid holds as many letters as the words and each word reads, forwards or reversed,
// along a run in an enabled direction.
bool holdsTheWords(const GameState &s)
{
    const QString grid = gridText(s);
    int found = 0;
    for (int i = 1; i <= s.wordCount; ++i)
        for (int k = 0, seen = 0; k < grid.size() * 4 && !seen; ++k)
            found += seen = QStringList{s.words[i], reversed(s.words[i])}.contains(
                readRun(s, grid, k, s.words[i].size()));
    return found == s.wordCount && grid.count(u'.') == s.rows * s.columns - s.letterCount;
}

// The chance of each puzzle the search can end with from word i on: a uniform pick among the places
// from which the later words can all be laid (each such place adds chances summing to one), then
// either way round with chance one half.
std::map<QString, double> lawFrom(const GameState &s, const QString &grid, int i)
{
    if (i > s.wordCount)
        return {{grid, 1.0}};
    std::map<QString, double> law;
    for (const int k : placesOf(s, grid, s.words[i].size()))
        for (const QString &text : {s.words[i], reversed(s.words[i])}) {
            QString next = grid;
            for (qsizetype j = 0; j < text.size(); ++j)
                next[cellOf(s, k, j)] = text.at(j);
            for (const auto &[puzzle, chance] : lawFrom(s, next, i + 1))
                law[puzzle] += chance / 2;
        }
    const double good =
        std::accumulate(law.begin(), law.end(), 0.0,
                        [](double sum, const auto &entry) { return sum + entry.second; });
    for (auto &entry : law)
        entry.second /= good;
    return law;
}

// A clock that each look moves on by one ms.
struct SteppingClock {
    double now = 0.0;
    double operator()() { return now += 1.0; }
};

} // namespace

class TestPlacement : public QObject {
    Q_OBJECT

private slots:
    void placesAreListedRowByRowThenByDirection()
    {
        // A word's places are listed by row, column, then right, down, downright, downleft, where
        // the run fits on free cells (an empty word at every cell), and AddCandidate keeps the same
        // rule.
        auto s = makeState(3, 4, "HVD", {"ab", "", "c"});
        test::FakeRandom random;
        WordPlacer placer(*s, random), byHand(*s, random);
        placer.LayWord("xy", 2, 3, Direction::DownLeft, false);
        QCOMPARE(gridText(*s), QStringLiteral("....|..x.|.y..|"));
        QList<CandidatePlace> expected;
        for (const int k : placesOf(*s, gridText(*s), 2))
            expected += placeAt(*s, k);
        for (int k = 0; k < 3 * 5 * 4; ++k)
            byHand.AddCandidate(placeAt(*s, k).row, placeAt(*s, k).column, 1, "ab", 2,
                                placeAt(*s, k).direction);
        placer.PlaceWord(1);
        QCOMPARE(placer.candidates(1) + byHand.candidates(1), expected + expected);
        QCOMPARE(candidateRecord(expected[2]) + u' ' + candidateRecord(expected[5]),
                 QStringLiteral("1,1,downright 1,2,downleft"));
        QCOMPARE(
            (QList{placer.candidates(2).size(), placer.candidates(3).size()}),
            (QList<qsizetype>{12 * 4, 8 * 4})); // empty: every cell; one letter: every free one
    }

    void drawsPickThePlaceAndOrientation()
    {
        // The first draw picks place Int(r * n) + 1, the next the orientation (below one half: as
        // written); a second word with no place sends the first on to a new drawn place.
        auto s = makeState(5, 5, "HVD", {"abc"});
        const QList<int> places = placesOf(*s, gridText(*s), 3);
        for (const auto &[k, reverse] :
             {std::pair{1, false}, {7, true}, {int(places.size()), true}}) {
            test::FakeRandom random;
            random.script = {pick(k, int(places.size())), reverse ? 0.75 : 0.25};
            WordPlacer placer(*s, random);
            placer.ClearPuzzle();
            placer.PlaceWord(1);
            QCOMPARE(readRun(*s, gridText(*s), places[k - 1], 3),
                     QLatin1String(reverse ? "cba" : "abc"));
        }
        auto row = makeState(1, 7, "H", {"abc", "defg"}); // abc at 2, 3 or 4 leaves defg no place
        test::FakeRandom random; // 2, 2 again (drawn anew), 3, 4; then, past half tried, the 2nd
                                 // untried place (5) reversed
        random.script = {pick(2, 5), 0.25,       pick(2, 5), pick(3, 5), 0.25, pick(4, 5),
                         0.25,       pick(2, 2), 0.75,       pick(1, 1), 0.25};
        WordPlacer placer(*row, random);
        placer.PlaceWord(1);
        QCOMPARE(gridText(*row), QStringLiteral("defgcba|"));
    }

    void listsEndCompleteWithTheWordsOrFailedEmpty()
    {
        // Over random lists, some too full to place, with empty, one-letter, equal and too long
        // words, a search never ends open: complete grids hold exactly the words, failed ones
        // nothing.
        std::mt19937 lists(7);
        test::FakeRandom random;
        SteppingClock clock; // a long search gives up after some 8000 steps
        int ended[3] = {0, 0, 0};
        for (int run = 0; run < 300; ++run) {
            const int rows = 5 + int(lists() % 4), columns = 5 + int(lists() % 4);
            QStringList words;
            for (int letters = 0; letters < rows * columns * 0.9;
                 letters += int(words.last().size()))
                words += QStringLiteral("abcdefghijkl")
                             .mid(int(lists() % 3), int(lists() % (std::min(rows, columns) - 1)) +
                                                        (run % 30 ? 0 : 9));
            auto s =
                makeState(rows, columns,
                          QStringList{"H", "V", "D", "HV", "HD", "VD", "HVD"}[lists() % 7], words);
            WordPlacer placer(*s, random, std::ref(clock));
            placer.PlaceWord(1);
            ++ended[int(placer.placementStatus())];
            QVERIFY2((run % 30 || placer.placementStatus() ==
                                      Failed) // every 30th list: words longer than both sides
                         && (placer.placementStatus() == Complete
                                 ? holdsTheWords(*s)
                                 : gridText(*s).count(u'.') == rows * columns),
                     qPrintable(words.join(u',')));
        }
        QVERIFY2(ended[int(Open)] == 0 && ended[int(Complete)] > 200 && ended[int(Failed)] > 20,
                 qPrintable(QString::number(ended[int(Failed)])));
    }

    void searchGivesUpAtTheTimeLimit()
    {
        // A search that runs out of time starts over every 100 ms and ends as failed, with the grid
        // empty, after 500 ms.
        auto s = makeState(8, 11, "H",
                           QStringList(8, "abcdefg") +
                               QStringList(9, "xyz")); // one too many: millions of steps to prove
        test::FakeRandom random;
        SteppingClock clock;
        WordPlacer placer(*s, random, std::ref(clock));
        placer.PlaceWord(1);
        QVERIFY(placer.placementStatus() == Failed && placer.stoppedByTime() &&
                placer.restarts() == 4 && gridText(*s).count(u'.') == 88);
        QVERIFY2(clock.now >= 500.0 && clock.now <= 505.0, qPrintable(QString::number(clock.now)));
    }

    void puzzlesFollowTheLawOfTheSearch()
    {
        // Puzzles come out by the search's law (at each word a uniform pick among the places that
        // still allow a complete placement, either way round), which a uniform pick among complete
        // puzzles fails.
        auto s = makeState(2, 3, "HVD", {"ab", "cd", "ef"});
        const auto law = lawFrom(*s, gridText(*s), 1);
        const double n = 20000, k = double(law.size() - 1), a = 2 / (9 * k),
                     critical =
                         k * std::pow(1 - a + 3.0902 * std::sqrt(a), 3); // exceeded by chance 0.001
        test::FakeRandom random;
        WordPlacer placer(*s, random);
        std::map<QString, double> seen;
        for (int run = 0; run < n; ++run, ++seen[gridText(*s)])
            placer.ClearPuzzle(), placer.PlaceWord(1);
        double statistic = 0.0,
               uniform = 0.0; // uniform: what a uniform pick among complete puzzles would give
        for (const auto &[puzzle, chance] : law)
            statistic += std::pow(seen[puzzle] - chance * n, 2) / (chance * n),
                uniform += std::pow(n / double(law.size()) - chance * n, 2) / (chance * n);
        QVERIFY2(seen.size() == law.size() && statistic < critical && uniform > critical,
                 qPrintable(QString::number(statistic))); // equal sizes: no puzzle outside the law
    }
};

QTEST_GUILESS_MAIN(TestPlacement)
#include "tst_placement.moc"
