// Loading a word list for a puzzle, and the size test that the options window
// applies to it.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "setup/wordloading.h"

#include <QtTest>

#include <memory>

using namespace lexicove;
using namespace lexicove::test;

namespace {

QStringList wordsOf(const GameState &state)
{
    QStringList list;
    for (int i = 1; i <= state.wordCount; ++i)
        list.append(state.words[i]);
    return list;
}

} // namespace

class TestWordLoading : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<FakePlatform> fake;
    std::unique_ptr<GameState> state;

    // Writes the file, points the state at it and loads it.
    bool load(const QByteArray &bytes, QString *error = nullptr)
    {
        fake->writeFile(QStringLiteral("list.wds"), bytes);
        state->wordListPath = fake->path(QStringLiteral("list.wds"));
        QString reason;
        const bool ok = LoadWords(*state, fake->files, reason);
        if (error)
            *error = reason;
        return ok;
    }

private slots:
    void init()
    {
        fake = std::make_unique<FakePlatform>();
        state = std::make_unique<GameState>();
    }

    void sortKeepsFileOrderAmongEqualLengths()
    {
        // Words are sorted longest first and words of equal length keep their order from the file.
        QVERIFY(load("dog\r\nhorse\r\ncat\r\nmouse\r\n"));
        QCOMPARE(wordsOf(*state), (QStringList{"horse", "mouse", "dog", "cat"}));
        QCOMPARE(state->wordCount, 4);
        QCOMPARE(state->letterCount, 16);

        QVERIFY(load("ab\r\nc\r\nlongest\r\nde\r\nfgh\r\ni\r\n"));
        QCOMPARE(wordsOf(*state), (QStringList{"longest", "fgh", "ab", "de", "c", "i"}));
    }

    void linesAreTakenExactlyAsTheyStand()
    {
        // A line is a word with nothing trimmed or changed, and an empty line is an empty word of no letters.
        QVERIFY(load(" Cat \r\n\r\nDOG\r\n"));
        QCOMPARE(wordsOf(*state), (QStringList{" Cat ", "DOG", ""}));
        QCOMPARE(state->wordCount, 3);
        QCOMPARE(state->letterCount, 8);
    }

    void finalLineEndAddsNoWord()
    {
        // A line end after the last word adds no word; a last line without one is still a word.
        QVERIFY(load("cat\r\ndog\r\n"));
        QCOMPARE(state->wordCount, 2);
        QVERIFY(load("cat\r\ndog"));
        QCOMPARE(wordsOf(*state), (QStringList{"cat", "dog"}));
        QVERIFY(load("cat\r\ndog\r\n\r\n"));
        QCOMPARE(wordsOf(*state), (QStringList{"cat", "dog", ""}));
        QVERIFY(load(""));
        QCOMPARE(state->wordCount, 0);
        QCOMPARE(state->letterCount, 0);
    }

    void onlyTheFirstFiftyLinesAreRead()
    {
        // A file of more than 50 lines gives the words of its first 50 lines.
        QByteArray bytes;
        QStringList expected;
        int letters = 0;
        for (int i = 1; i <= 60; ++i) {
            const QString word = QString(QChar(u'a' + (i - 1) % 26)).repeated(1 + i % 7);
            bytes += word.toLatin1() + "\r\n";
            if (i <= 50) {
                expected.append(word);
                letters += static_cast<int>(word.size());
            }
        }
        QVERIFY(load(bytes));
        QCOMPARE(state->wordCount, 50);
        QCOMPARE(state->letterCount, letters);
        // Same words as the first 50 lines, longest first, ties in file order.
        std::stable_sort(expected.begin(), expected.end(),
                         [](const QString &a, const QString &b) { return a.size() > b.size(); });
        QCOMPARE(wordsOf(*state), expected);
    }

    void slotsAboveTheCountKeepOlderWords()
    {
        // Loading a shorter list leaves the slots above its count as they were.
        QVERIFY(load("alpha\r\nbeta\r\ngamma\r\n"));
        QVERIFY(load("x\r\n"));
        QCOMPARE(state->wordCount, 1);
        QCOMPARE(state->words[1], QStringLiteral("x"));
        QCOMPARE(state->words[2], QStringLiteral("gamma"));
    }

    void unreadableFileIsReported()
    {
        // A file that can't be read gives false and a reason, and leaves the loaded words alone.
        QVERIFY(load("cat\r\ndog\r\n"));
        fake->files.failRead.insert(state->wordListPath);
        QString error;
        QVERIFY(!LoadWords(*state, fake->files, error));
        QVERIFY(!error.isEmpty());
        QCOMPARE(wordsOf(*state), (QStringList{"cat", "dog"}));
        QCOMPARE(state->letterCount, 6);

        state->wordListPath = fake->path(QStringLiteral("missing.wds"));
        error.clear();
        QVERIFY(!LoadWords(*state, fake->files, error));
        QVERIFY(!error.isEmpty());
    }

    void eightBitTextIsRead()
    {
        // The file is 8-bit text: a byte above 127 is one character.
        QVERIFY(load("caf\xe9\r\n"));
        QCOMPARE(state->words[1], QString::fromLatin1("caf\xe9"));
        QCOMPARE(state->letterCount, 4);
    }

    void sizeTestLongestWord()
    {
        // The longest word plus 3 may not exceed the rows nor the columns.
        state->rows = 20;
        state->columns = 20;
        state->wordCount = 1;
        state->words[1] = QString(18, u'a');
        state->letterCount = 18;
        QVERIFY(!PassesSizeTest(*state));
        state->words[1] = QString(17, u'a');
        state->letterCount = 17;
        QVERIFY(PassesSizeTest(*state));
        state->rows = 19;
        QVERIFY(!PassesSizeTest(*state));
        state->rows = 20;
        state->columns = 19;
        QVERIFY(!PassesSizeTest(*state));
    }

    void sizeTestLetterArea()
    {
        // round(letters * 1.6) may be at most rows * columns, rounded to the nearest whole number.
        state->rows = 20;
        state->columns = 20;
        state->wordCount = 1;
        state->words[1] = QStringLiteral("abc");
        state->letterCount = 250; // exactly 400 cells
        QVERIFY(PassesSizeTest(*state));
        state->letterCount = 251; // 401.6
        QVERIFY(!PassesSizeTest(*state));

        state->rows = 7;
        state->columns = 7;
        state->letterCount = 30; // 48 of 49
        QVERIFY(PassesSizeTest(*state));
        state->letterCount = 31; // 49.6 rounds up to 50
        QVERIFY(!PassesSizeTest(*state));

        state->rows = 5;
        state->columns = 6;
        state->words[1] = QStringLiteral("ab");
        state->letterCount = 19; // 30.4 rounds down to 30 cells
        QVERIFY(PassesSizeTest(*state));
    }

    void sizeTestHugeLetterCount()
    {
        // A letter count whose cells leave the 16-bit range fails, whatever the grid.
        state->rows = 50;
        state->columns = 50;
        state->wordCount = 1;
        state->words[1] = QStringLiteral("abc");
        state->letterCount = 20480; // 32768 cells
        QVERIFY(!PassesSizeTest(*state));
        state->letterCount = 2000000000;
        QVERIFY(!PassesSizeTest(*state));
    }
};

QTEST_GUILESS_MAIN(TestWordLoading)
#include "tst_wordloading.moc"
