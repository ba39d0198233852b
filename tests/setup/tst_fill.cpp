// Filling the free cells of a placed puzzle with letters.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "setup/wordloading.h"

#include <QSet>
#include <QtTest>

#include <memory>

using namespace lexicove;
using namespace lexicove::test;

namespace {

// The value r that makes Int(r * n) + 1 give k.
double pick(int k, int n)
{
    return (k - 0.5) / n;
}

// Lays text along row `row` from column 1, as placement would, and counts
// its letters.
void layRow(GameState &state, int row, const QString &text)
{
    for (int k = 0; k < text.size(); ++k)
        state.grid[row][k + 1] = QString(text.at(k));
    state.words[++state.wordCount] = text;
    state.letterCount += static_cast<int>(text.size());
}

struct Census {
    int empty = 0;
    int fromWords = 0;   // characters of the words' own letters
    int notInWords = 0;  // letters that no word holds
    int vowelsNotInWords = 0;
    bool onlyLowerCaseFillers = true;
};

// Counts the cells of the grid outside the words' own cells (given as the
// rows that layRow filled, with their lengths).
Census census(const GameState &state, const QList<int> &wordRowLengths)
{
    QString wordLetters;
    for (int i = 1; i <= state.wordCount; ++i)
        for (const QChar ch : state.words[i])
            if (!wordLetters.contains(ch))
                wordLetters += ch;
    Census c;
    for (int r = 1; r <= state.rows; ++r) {
        for (int col = 1; col <= state.columns; ++col) {
            const bool wordCell = r <= wordRowLengths.size() && col <= wordRowLengths[r - 1];
            if (wordCell)
                continue;
            const QString &cell = state.grid[r][col];
            if (cell.isEmpty()) {
                ++c.empty;
                continue;
            }
            if (cell.size() != 1 || cell.at(0) < u'a' || cell.at(0) > u'z')
                c.onlyLowerCaseFillers = false;
            if (wordLetters.contains(cell)) {
                ++c.fromWords;
            } else {
                ++c.notInWords;
                if (QStringLiteral("aeiou").contains(cell))
                    ++c.vowelsNotInWords;
            }
        }
    }
    return c;
}

} // namespace

class TestFill : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GameState> state;
    FakeRandom random;

private slots:
    void init()
    {
        state = std::make_unique<GameState>();
        random = FakeRandom();
    }

    void decoyCountFollowsTheDrawnPercentage_data()
    {
        QTest::addColumn<double>("percentDraw");
        QTest::addColumn<int>("decoys");
        // 80 free cells: 3 % is 2.4 cells, 8 % is 6.4.
        QTest::newRow("3 percent") << 0.0 << 2;
        QTest::newRow("8 percent") << 0.999 << 6;
        QTest::newRow("5 percent") << pick(3, 6) << 4;
    }

    void decoyCountFollowsTheDrawnPercentage()
    {
        // The whole part of p % of the free cells gets letters that no word holds, p drawn from 3 to 8.
        QFETCH(double, percentDraw);
        QFETCH(int, decoys);
        state->rows = 10;
        state->columns = 10;
        // All five vowels are in the words, so every other letter is a decoy.
        layRow(*state, 1, QStringLiteral("aeioubcdfg"));
        layRow(*state, 2, QStringLiteral("hjklmnpqrs"));
        random.script = {percentDraw};
        FillGrid(*state, random);
        const Census c = census(*state, {10, 10});
        QCOMPARE(c.empty, 0);
        QVERIFY(c.onlyLowerCaseFillers);
        QCOMPARE(c.notInWords, decoys);
        QCOMPARE(c.fromWords, 80 - decoys);
        // The words' cells are untouched.
        QCOMPARE(state->grid[1][1], QStringLiteral("a"));
        QCOMPARE(state->grid[2][10], QStringLiteral("s"));
    }

    void noDecoysFromTwentyTwoCharacters()
    {
        // Words of 22 distinct characters or more get no decoys; 21 still get them.
        state->rows = 12;
        state->columns = 12;
        // 21 letters with every vowel, and a digit as the 22nd character.
        layRow(*state, 1, QStringLiteral("aeioubcdfgh"));
        layRow(*state, 2, QStringLiteral("jklmnpqrst7"));
        FillGrid(*state, random);
        Census c = census(*state, {11, 11});
        QCOMPARE(c.empty, 0);
        QCOMPARE(c.notInWords, 0);

        // Without the digit: 21 characters, so 3 to 8 % of 123 free cells.
        state = std::make_unique<GameState>();
        state->rows = 12;
        state->columns = 12;
        layRow(*state, 1, QStringLiteral("aeioubcdfgh"));
        layRow(*state, 2, QStringLiteral("jklmnpqrst"));
        random.script = {0.0}; // p = 3: 3.69 cells
        FillGrid(*state, random);
        c = census(*state, {11, 10});
        QCOMPARE(c.empty, 0);
        QCOMPARE(c.notInWords, 3);
    }

    void capitalsNeverMatchFillerLetters()
    {
        // Words in capitals share no letter with the lower-case fillers, so apart from decoys only vowels fill.
        state->rows = 8;
        state->columns = 8;
        layRow(*state, 1, QStringLiteral("CAT"));
        layRow(*state, 2, QStringLiteral("DOG"));
        random.script = {0.999}; // p = 8: 4.64, so 4 decoys of 58 cells
        FillGrid(*state, random);
        const Census c = census(*state, {3, 3});
        QCOMPARE(c.empty, 0);
        QVERIFY(c.onlyLowerCaseFillers);
        QCOMPARE(c.fromWords, 0);
        QCOMPARE(c.notInWords, 58);
        // Every filler but the 4 decoys is a vowel.
        QVERIFY(c.vowelsNotInWords >= 54);
    }

    void emptyListFillsWithVowelsAndDecoys()
    {
        // With no words every cell is filled: 3 to 8 % arbitrary letters, the rest vowels.
        state->rows = 10;
        state->columns = 10;
        random.script = {pick(6, 6)}; // p = 8: 8 decoys of 100 cells
        FillGrid(*state, random);
        const Census c = census(*state, {});
        QCOMPARE(c.empty, 0);
        QVERIFY(c.onlyLowerCaseFillers);
        QCOMPARE(c.notInWords, 100);
        QVERIFY(c.vowelsNotInWords >= 92);
        // The cells outside the puzzle stay empty.
        QVERIFY(state->grid[1][11].isEmpty());
        QVERIFY(state->grid[11][1].isEmpty());
    }

    void drawsFollowTheOrder()
    {
        // Each cell is drawn first (row then column, both again while taken), then letter and chance are drawn until one is accepted.
        state->rows = 1;
        state->columns = 3;
        layRow(*state, 1, QStringLiteral("a"));
        random.script = {
            0.5,                           // p: 2 free cells give no decoy
            0.0, pick(1, 3),               // cell (1, 1) is taken: draw both again
            0.0, pick(3, 3),               // cell (1, 3)
            pick(2, 26), pick(1, 20),      // b is no word's letter nor a vowel
            pick(5, 26), pick(2, 20),      // e is a vowel but the chance is not 1
            pick(5, 26), pick(1, 20),      // e with chance 1: accepted
            0.0, pick(2, 3),               // cell (1, 2)
            pick(1, 26), pick(20, 20),     // a is a word's letter: accepted at any chance
        };
        FillGrid(*state, random);
        QVERIFY(random.script.isEmpty());
        QCOMPARE(random.drawsTaken, 15);
        QCOMPARE(state->grid[1][1], QStringLiteral("a"));
        QCOMPARE(state->grid[1][2], QStringLiteral("a"));
        QCOMPARE(state->grid[1][3], QStringLiteral("e"));
    }

    void decoysAreDrawnBeforeTheFill()
    {
        // Decoy cells are drawn first, each redrawing its letter while the letter is in the words.
        state->rows = 1;
        state->columns = 40;
        layRow(*state, 1, QStringLiteral("az"));
        // 38 free cells at 8 %: 3 decoys.
        random.script = {
            0.999,                              // p = 8
            0.0, pick(40, 40), pick(1, 26), pick(26, 26), pick(2, 26), // (1,40): a, z taken, b
            0.0, pick(1, 40), 0.0, pick(39, 40), pick(3, 26),          // (1,1) taken, (1,39): c
            0.0, pick(3, 40), pick(4, 26),                              // (1,3): d
        };
        FillGrid(*state, random);
        QVERIFY(random.script.isEmpty());
        QCOMPARE(state->grid[1][40], QStringLiteral("b"));
        QCOMPARE(state->grid[1][39], QStringLiteral("c"));
        QCOMPARE(state->grid[1][3], QStringLiteral("d"));
        // The rest is filled with the words' letters and rare vowels.
        for (int c = 4; c <= 38; ++c)
            QVERIFY(QStringLiteral("azeiou").contains(state->grid[1][c]));
    }
};

QTEST_GUILESS_MAIN(TestFill)
#include "tst_fill.moc"
