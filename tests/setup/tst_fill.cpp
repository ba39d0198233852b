// Filling the free cells of a placed puzzle with letters.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "setup/wordloading.h"

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

// A grid with each word laid along its own row from column 1, as placement
// would leave it.
std::unique_ptr<GameState> placed(int rows, int columns, const QStringList &words)
{
    auto state = std::make_unique<GameState>();
    state->rows = static_cast<qint16>(rows);
    state->columns = static_cast<qint16>(columns);
    for (const QString &word : words) {
        for (int k = 0; k < word.size(); ++k)
            state->grid[state->wordCount + 1][k + 1] = QString(word.at(k));
        state->words[++state->wordCount] = word;
        state->letterCount += static_cast<int>(word.size());
    }
    return state;
}

// What the fill put into the cells that were free before it.
struct Census {
    int odd = 0;       // cells left empty or given anything but one letter a to z
    int fromWords = 0; // letters that stand in the words
    int foreign = 0;   // consonants that don't
};

Census fill(GameState &state, Random &random)
{
    QString wordLetters;
    QList<QString *> freeCells;
    for (int r = 1; r <= state.rows; ++r) {
        for (int c = 1; c <= state.columns; ++c) {
            if (state.grid[r][c].isEmpty())
                freeCells.append(&state.grid[r][c]);
            else if (!wordLetters.contains(state.grid[r][c]))
                wordLetters += state.grid[r][c];
        }
    }
    FillGrid(state, random);
    Census census;
    for (const QString *cell : std::as_const(freeCells)) {
        if (cell->size() != 1 || cell->at(0) < u'a' || cell->at(0) > u'z')
            ++census.odd;
        else if (wordLetters.contains(*cell))
            ++census.fromWords;
        else if (!QStringLiteral("aeiou").contains(*cell))
            ++census.foreign;
    }
    return census;
}

} // namespace

class TestFill : public QObject {
    Q_OBJECT

    FakeRandom random;

private slots:
    void init() { random = FakeRandom(); }

    void fillersAreTheWordsLettersButForDecoysAndRareVowels_data()
    {
        QTest::addColumn<int>("side");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<double>("percentDraw");
        QTest::addColumn<int>("decoys");

        // Every vowel is in these words, so every letter that isn't is a decoy.
        const QStringList letters20{"aeioubcdfg", "hjklmnpqrs"};
        QTest::newRow("p = 3 of 80 free cells") << 10 << letters20 << 0.0 << 2;
        QTest::newRow("p = 8 of 80 free cells") << 10 << letters20 << 0.999 << 6;
        QTest::newRow("21 characters, p = 3 of 123 cells")
            << 12 << QStringList{"aeioubcdfgh", "jklmnpqrst"} << 0.0 << 3;
        QTest::newRow("22 characters, one a digit")
            << 12 << QStringList{"aeioubcdfgh", "jklmnpqrst7"} << 0.0 << 0;
        // No lower-case letter in the words: apart from the decoys, only vowels fill.
        QTest::newRow("capitals, p = 8 of 94 cells") << 10 << QStringList{"CAT", "DOG"} << 0.999
                                                     << 7;
        QTest::newRow("no words, p = 8 of 100 cells") << 10 << QStringList() << 0.999 << 8;
    }

    void fillersAreTheWordsLettersButForDecoysAndRareVowels()
    {
        // Every free cell gets a letter a to z: the whole part of p % of them (p drawn from 3 to
        // 8; none with 22 distinct characters or more) a letter no word holds, the others a
        // letter of the words (compared exactly) or, rarely, a vowel the words lack.
        QFETCH(int, side);
        QFETCH(QStringList, words);
        QFETCH(double, percentDraw);
        QFETCH(int, decoys);
        const auto state = placed(side, side, words);
        random.script = {percentDraw};
        const int free = side * side - state->letterCount;
        const Census c = fill(*state, random);
        QCOMPARE(c.odd, 0);
        // Letters that no word holds: at least the decoys, and among them no consonant but
        // the decoys' own.
        QVERIFY2(c.foreign <= decoys && free - c.fromWords >= decoys,
                 qPrintable(QStringLiteral("%1 consonants and %2 letters not in the words")
                                .arg(c.foreign)
                                .arg(free - c.fromWords)));
    }

    void drawsFollowTheOrder()
    {
        // p is drawn first; then each decoy's cell (row and column, both again while taken)
        // and letter (again while in the words); then each other cell, which keeps its place
        // while a letter and a chance are drawn until the letter is a word's or a vowel at 1.
        const auto state = placed(1, 40, {"az"});
        random.script = {
            0.999,                                                     // p = 8: 3 decoys of 38
            0.0, pick(40, 40), pick(1, 26), pick(26, 26), pick(2, 26), // (1,40): a, z taken, b
            0.0, pick(1, 40), 0.0, pick(39, 40), pick(3, 26),          // (1,1) taken, (1,39): c
            0.0, pick(3, 40), pick(4, 26),                             // (1,3): d
            0.0, pick(4, 40), pick(2, 26), pick(1, 20),                // (1,4): b refused,
            pick(5, 26), pick(2, 20), pick(5, 26), pick(1, 20),        // e at chance 2, then 1
            0.0, pick(5, 40), pick(26, 26), pick(20, 20),              // (1,5): z at any chance
        };
        const Census c = fill(*state, random);
        QVERIFY(random.script.isEmpty());
        QCOMPARE(c.odd, 0);
        QCOMPARE(c.foreign, 3); // the rest from the words' letters and rare vowels
        QString row;
        for (const int col : {1, 2, 3, 4, 5, 39, 40})
            row += state->grid[1][col];
        QCOMPARE(row, QStringLiteral("azdezcb"));
    }
};

QTEST_GUILESS_MAIN(TestFill)
#include "tst_fill.moc"
