#include "play/masking.h"
#include "puzzles.h"

#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

class TestMasking : public QObject {
    Q_OBJECT

private slots:
    void masks_data();
    void masks();
    void plainListLeavesOutFoundWords();
    void maskedListShowsLengthsOnly();
    void slotsAboveTheCountAreNotListed();
};

void TestMasking::masks_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("masked");
    QTest::addColumn<QString>("spaced");
    QTest::newRow("three letters") << "cat" << "xxx" << "x x x ";
    QTest::newRow("one letter") << "a" << "x" << "x ";
    QTest::newRow("accented") << QStringLiteral("caf\u00e9") << "xxxx" << "x x x x ";
    QTest::newRow("empty") << "" << "" << "";
}

// MaskWord gives one "x" per character, MaskWordSpaced one "x " per character.
void TestMasking::masks()
{
    QFETCH(QString, word);
    QFETCH(QString, masked);
    QFETCH(QString, spaced);
    QCOMPARE(MaskWord(word), masked);
    QCOMPARE(MaskWordSpaced(word), spaced);
    QCOMPARE(MaskWordSpaced(word).size(), 2 * word.size());
}

// The list holds the words not yet found, in slot order.
void TestMasking::plainListLeavesOutFoundWords()
{
    GameState state;
    SetPuzzle(state, PlainRows(5), {"elephant", "tiger", "ant", "cat"});
    WordFoundFlags found{};
    QCOMPARE(WordsToFind(state, found), (QStringList{"elephant", "tiger", "ant", "cat"}));
    found[2] = true;
    QCOMPARE(WordsToFind(state, found), (QStringList{"elephant", "ant", "cat"}));
    found[1] = found[3] = found[4] = true;
    QCOMPARE(WordsToFind(state, found), QStringList{});
}

// With hidden words each entry is "x " per letter, so words of one length look alike.
void TestMasking::maskedListShowsLengthsOnly()
{
    GameState state;
    SetPuzzle(state, PlainRows(5), {"tiger", "cat", "dog"}, 0, true);
    WordFoundFlags found{};
    found[1] = true;
    QCOMPARE(WordsToFind(state, found), (QStringList{"x x x ", "x x x "}));
}

// Words an earlier, longer list left above wordCount are never listed.
void TestMasking::slotsAboveTheCountAreNotListed()
{
    GameState state;
    SetPuzzle(state, PlainRows(5), {"one", "two", "three", "four"});
    SetPuzzle(state, PlainRows(5), {"ant", "bee"});
    QCOMPARE(state.words[3], QStringLiteral("three"));
    QCOMPARE(WordsToFind(state, WordFoundFlags{}), (QStringList{"ant", "bee"}));
}

QTEST_GUILESS_MAIN(TestMasking)
#include "tst_masking.moc"
