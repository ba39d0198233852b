#include "fakeplatform.h"
#include "play/marking.h"
#include "puzzles.h"

#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

// Replies as readable text, so a failed comparison shows what happened.
QStringList Described(const Replies &replies)
{
    QStringList lines;
    for (const Reply &reply : replies)
        lines.append((reply.kind == Reply::Kind::Sound ? QStringLiteral("sound ")
                                                       : QStringLiteral("message ")) +
                     reply.text);
    return lines;
}

QString SoundLine(const QString &name)
{
    return QStringLiteral("sound ") + name;
}

QString MessageLine(const QString &text)
{
    return QStringLiteral("message ") + text;
}

// Grid of unique letters: cell (r, c) is 'A' + 5(r-1) + (c-1), so a run tells
// exactly which cells it was read from and in what order.
QStringList LetteredRows()
{
    return {QStringLiteral("ABCDE"), QStringLiteral("FGHIJ"), QStringLiteral("KLMNO"),
            QStringLiteral("PQRST"), QStringLiteral("UVWXY")};
}

struct Cell {
    int row;
    int column;
};

// The puzzle's state and clock, kept beside the marking that reads them.
struct PuzzleAndClock {
    GameState state;
    FakeClock clock;
};

struct PlaySetting {
    qint32 timeLimit = 0;
    quint32 startTick = 1000;
};

// A game under way on a puzzle: the words cleared and play begun, as the
// puzzle window begins it.
struct Playing : PuzzleAndClock, Marking {
    Playing(const QStringList &rows, const QStringList &words, PlaySetting setting = {})
        : Marking(state, clock)
    {
        SetPuzzle(state, rows, words, setting.timeLimit);
        clock.ticks = setting.startTick;
        ClearFound();
        Begin();
    }

    // Marks the first cell, then the second: what the second press answers.
    QStringList select(Cell first, Cell second)
    {
        MarkLetter(first.row, first.column);
        return Described(MarkLetter(second.row, second.column));
    }
};

} // namespace

Q_DECLARE_METATYPE(Cell)
Q_DECLARE_METATYPE(lexicove::RunKind)

class TestMarking : public QObject {
    Q_OBJECT

private slots:
    void beginStartsPlay();
    void firstPressPlaysMark();
    void wordFoundInEveryLine_data();
    void wordFoundInEveryLine();
    void kindOfRun_data();
    void kindOfRun();
    void runReadInOrder_data();
    void runReadInOrder();
    void diagonalMarkedFromBelowReadsFromUpperMark();
    void swapValuesExchanges();
    void sameCellTwice();
    void notInLine_data();
    void notInLine();
    void missPlaysWrong_data();
    void missPlaysWrong();
    void wordAlreadyFoundPlaysWrong();
    void oneRunFindsEveryMatchingSlot_data();
    void oneRunFindsEveryMatchingSlot();
    void lastWordChoosesCheer_data();
    void lastWordChoosesCheer();
    void nothingAfterTheEndButMark();
};

// Starting play sets every word to find, reads the clock and drops a mark.
void TestMarking::beginStartsPlay()
{
    Playing play(PlainRows(5), {QStringLiteral("cat"), QStringLiteral("dog")},
                 {.startTick = 123456});
    QCOMPARE(play.wordsRemaining(), 2);
    QCOMPARE(play.startTick(), quint32(123456));
    QVERIFY(!play.markPending());

    play.MarkLetter(1, 1);
    QVERIFY(play.markPending());
    // A fresh start never keeps the mark of the game before.
    play.Begin();
    QVERIFY(!play.markPending());
    play.clock.ticks = 123456 + 2500;
    QCOMPARE(play.elapsed(), quint32(2500));
}

// The first press of a selection plays "mark.wav" and nothing else.
void TestMarking::firstPressPlaysMark()
{
    Playing play(PlainRows(5), {QStringLiteral("cat")});
    QCOMPARE(Described(play.MarkLetter(3, 4)), QStringList{SoundLine(QStringLiteral("mark.wav"))});
    QVERIFY(play.markPending());
    QCOMPARE(play.wordsRemaining(), 1);
}

void TestMarking::wordFoundInEveryLine_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<Cell>("first");
    QTest::addColumn<Cell>("second");

    const QStringList across = {"zcatz", "zzzzz", "zzzzz", "zzzzz", "zzzzz"};
    const QStringList acrossBack = {"ztacz", "zzzzz", "zzzzz", "zzzzz", "zzzzz"};
    const QStringList down = {"zzzzz", "zzzcz", "zzzaz", "zzztz", "zzzzz"};
    const QStringList downBack = {"zzzzz", "zzztz", "zzzaz", "zzzcz", "zzzzz"};
    const QStringList slopeRight = {"zzzzz", "czzzz", "zazzz", "zztzz", "zzzzz"};
    const QStringList slopeRightBack = {"zzzzz", "tzzzz", "zazzz", "zzczz", "zzzzz"};
    const QStringList slopeLeft = {"zzzzc", "zzzaz", "zztzz", "zzzzz", "zzzzz"};
    const QStringList slopeLeftBack = {"zzzzt", "zzzaz", "zzczz", "zzzzz", "zzzzz"};

    struct Line {
        const char *name;
        QStringList rows;
        Cell a;
        Cell b;
    };
    const QList<Line> lines = {
        {"horizontal", across, {1, 2}, {1, 4}},
        {"horizontal reversed", acrossBack, {1, 2}, {1, 4}},
        {"vertical", down, {2, 4}, {4, 4}},
        {"vertical reversed", downBack, {2, 4}, {4, 4}},
        {"diagonal down-right", slopeRight, {2, 1}, {4, 3}},
        {"diagonal down-right reversed", slopeRightBack, {2, 1}, {4, 3}},
        {"diagonal down-left", slopeLeft, {1, 5}, {3, 3}},
        {"diagonal down-left reversed", slopeLeftBack, {1, 5}, {3, 3}},
    };
    for (const Line &line : lines) {
        QTest::addRow("%s, marked from its start", line.name) << line.rows << line.a << line.b;
        QTest::addRow("%s, marked from its end", line.name) << line.rows << line.b << line.a;
    }
}

// A word is found in each kind of line, lying either way, marked from either end.
void TestMarking::wordFoundInEveryLine()
{
    QFETCH(QStringList, rows);
    QFETCH(Cell, first);
    QFETCH(Cell, second);
    // The second word keeps the puzzle open, so a find answers with its message alone.
    Playing play(rows, {QStringLiteral("cat"), QStringLiteral("never")});
    QCOMPARE(play.select(first, second),
             QStringList{MessageLine(FoundMessage(QStringLiteral("cat")))});
    QVERIFY(play.wordFound()[1]);
    QVERIFY(!play.wordFound()[2]);
    QCOMPARE(play.wordsRemaining(), 1);
    QVERIFY(!play.markPending());
}

void TestMarking::kindOfRun_data()
{
    QTest::addColumn<int>("dr");
    QTest::addColumn<int>("dc");
    QTest::addColumn<RunKind>("kind");
    QTest::newRow("one column") << 3 << 0 << RunKind::Vertical;
    QTest::newRow("one row, rightwards") << 0 << 4 << RunKind::Horizontal;
    QTest::newRow("one row, leftwards") << 0 << -4 << RunKind::Horizontal;
    QTest::newRow("slope down-right") << 2 << 2 << RunKind::Diagonal;
    QTest::newRow("slope down-left") << 4 << -4 << RunKind::Diagonal;
    QTest::newRow("two rows, three columns") << 2 << 3 << RunKind::NotInLine;
    QTest::newRow("three rows, two columns back") << 3 << -2 << RunKind::NotInLine;
    QTest::newRow("one row, two columns") << 1 << 2 << RunKind::NotInLine;
}

// Marks make a column, a row, a diagonal of equal steps, or no line at all.
void TestMarking::kindOfRun()
{
    QFETCH(int, dr);
    QFETCH(int, dc);
    QFETCH(RunKind, kind);
    QCOMPARE(KindOfRun(dr, dc), kind);
}

void TestMarking::runReadInOrder_data()
{
    QTest::addColumn<Cell>("upper");
    QTest::addColumn<Cell>("lower");
    QTest::addColumn<QString>("run");
    QTest::newRow("column, top to bottom") << Cell{1, 1} << Cell{5, 1} << QStringLiteral("AFKPU");
    QTest::newRow("row marked right to left, read left to right")
        << Cell{2, 5} << Cell{2, 1} << QStringLiteral("FGHIJ");
    QTest::newRow("row part") << Cell{3, 2} << Cell{3, 4} << QStringLiteral("LMN");
    QTest::newRow("diagonal down-right") << Cell{1, 1} << Cell{5, 5} << QStringLiteral("AGMSY");
    QTest::newRow("diagonal down-left") << Cell{1, 5} << Cell{5, 1} << QStringLiteral("EIMQU");
    QTest::newRow("short diagonal down-left") << Cell{2, 4} << Cell{4, 2}
                                              << QStringLiteral("IMQ");
}

// A run is read downwards from the upper mark, a row from left to right.
void TestMarking::runReadInOrder()
{
    QFETCH(Cell, upper);
    QFETCH(Cell, lower);
    QFETCH(QString, run);
    GameState state;
    SetPuzzle(state, LetteredRows(), {});
    const RunKind kind = KindOfRun(lower.row - upper.row, lower.column - upper.column);
    QVERIFY(kind != RunKind::NotInLine);
    QCOMPARE(ReadRun(state, kind, upper.row, upper.column, lower.row, lower.column), run);
}

// Marks at row 5 column 1 then row 1 column 5 read the cells (1,5), (2,4), (3,3), (4,2), (5,1).
void TestMarking::diagonalMarkedFromBelowReadsFromUpperMark()
{
    // Only the cells of that slope spell a word of the list.
    Playing play(LetteredRows(), {QStringLiteral("EIMQU"), QStringLiteral("AGMSY")});
    play.MarkLetter(5, 1);
    QCOMPARE(Described(play.MarkLetter(1, 5)),
             QStringList{MessageLine(FoundMessage(QStringLiteral("EIMQU")))});
    // The other slope, read from the lower mark, is found too (the check reads both ways).
    play.MarkLetter(5, 5);
    const QStringList last = Described(play.MarkLetter(1, 1));
    QCOMPARE(last.value(0), MessageLine(FoundMessage(QStringLiteral("AGMSY"))));
}

// SwapValues exchanges its two values.
void TestMarking::swapValuesExchanges()
{
    qint16 a = 4;
    qint16 b = -7;
    SwapValues(a, b);
    QCOMPARE(a, qint16(-7));
    QCOMPARE(b, qint16(4));
}

// Marking the same cell twice gives the how-to message, no sound, and drops the selection.
void TestMarking::sameCellTwice()
{
    Playing play(PlainRows(5, QLatin1Char('a')), {QStringLiteral("a"), QStringLiteral("b")});
    play.MarkLetter(2, 3);
    // Even a one-letter word can't be selected this way.
    QCOMPARE(Described(play.MarkLetter(2, 3)), QStringList{MessageLine(kSameCellMessage)});
    QVERIFY(!play.markPending());
    QCOMPARE(play.wordsRemaining(), 2);
    QVERIFY(!play.wordFound()[1]);
}

void TestMarking::notInLine_data()
{
    QTest::addColumn<Cell>("first");
    QTest::addColumn<Cell>("second");
    QTest::newRow("two rows and three columns apart") << Cell{1, 1} << Cell{3, 4};
    QTest::newRow("the same, marked from below") << Cell{3, 4} << Cell{1, 1};
    QTest::newRow("knight's move to the left") << Cell{2, 3} << Cell{3, 1};
}

// Marks that are not in one line give the not-valid message, no sound, and drop the selection.
void TestMarking::notInLine()
{
    QFETCH(Cell, first);
    QFETCH(Cell, second);
    Playing play(LetteredRows(), {QStringLiteral("AFK")});
    QCOMPARE(play.select(first, second),
             QStringList{MessageLine(kNotInLineMessage)});
    QVERIFY(!play.markPending());
    QCOMPARE(play.wordsRemaining(), 1);
}

void TestMarking::missPlaysWrong_data()
{
    QTest::addColumn<Cell>("first");
    QTest::addColumn<Cell>("second");
    QTest::newRow("one letter too long") << Cell{1, 1} << Cell{1, 4};
    QTest::newRow("one letter too short") << Cell{1, 1} << Cell{1, 2};
    QTest::newRow("another line") << Cell{1, 1} << Cell{3, 1};
}

// A run that matches no word plays "wrong.wav" alone and drops the selection.
void TestMarking::missPlaysWrong()
{
    QFETCH(Cell, first);
    QFETCH(Cell, second);
    Playing play(LetteredRows(), {QStringLiteral("ABC")});
    QCOMPARE(play.select(first, second),
             QStringList{SoundLine(QStringLiteral("wrong.wav"))});
    QVERIFY(!play.markPending());
    QCOMPARE(play.wordsRemaining(), 1);
}

// Marking a word that is already found plays "wrong.wav" and counts nothing.
void TestMarking::wordAlreadyFoundPlaysWrong()
{
    Playing play(LetteredRows(), {QStringLiteral("ABC"), QStringLiteral("FGH")});
    play.MarkLetter(1, 1);
    QCOMPARE(Described(play.MarkLetter(1, 3)),
             QStringList{MessageLine(FoundMessage(QStringLiteral("ABC")))});
    play.MarkLetter(1, 3);
    QCOMPARE(Described(play.MarkLetter(1, 1)), QStringList{SoundLine(QStringLiteral("wrong.wav"))});
    QCOMPARE(play.wordsRemaining(), 1);
}

void TestMarking::oneRunFindsEveryMatchingSlot_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("found");
    QTest::addColumn<int>("remaining");
    QTest::newRow("the same word twice")
        << QStringList{"ABC", "FGH", "ABC"} << QStringList{"ABC", "ABC"} << 1;
    QTest::newRow("one word each way")
        << QStringList{"CBA", "FGH", "ABC"} << QStringList{"CBA", "ABC"} << 1;
}

// One selection finds every slot that reads as the run either way: a message each, in slot order.
void TestMarking::oneRunFindsEveryMatchingSlot()
{
    QFETCH(QStringList, words);
    QFETCH(QStringList, found);
    QFETCH(int, remaining);
    Playing play(LetteredRows(), words);
    play.MarkLetter(1, 3);
    QStringList expected;
    for (const QString &word : found)
        expected.append(MessageLine(FoundMessage(word)));
    QCOMPARE(Described(play.MarkLetter(1, 1)), expected);
    QCOMPARE(play.wordsRemaining(), remaining);
}

void TestMarking::lastWordChoosesCheer_data()
{
    QTest::addColumn<qint32>("timeLimit");
    QTest::addColumn<quint32>("startTick");
    QTest::addColumn<quint32>("elapsed");
    QTest::addColumn<QString>("cheer");
    const QString inTime = QStringLiteral("cheer1.wav");
    const QString late = QStringLiteral("cheer2.wav");
    QTest::newRow("no limit, a day later") << 0 << 5000u << 86400000u << inTime;
    QTest::newRow("no limit, counter wrapped") << 0 << 0xFFFFF000u << 0xFFFFFFF0u << inTime;
    QTest::newRow("1 minute, half a minute") << 1 << 5000u << 30000u << inTime;
    QTest::newRow("1 minute, exactly at the limit") << 1 << 5000u << 60000u << inTime;
    QTest::newRow("1 minute, 1 ms past the limit") << 1 << 5000u << 60001u << late;
    QTest::newRow("1 minute, at the limit across the wrap") << 1 << 0xFFFFFFF0u << 60000u << inTime;
    QTest::newRow("1 minute, 1 ms past across the wrap") << 1 << 0xFFFFFFF0u << 60001u << late;
    QTest::newRow("1 minute, started at the counter's top") << 1 << 0xFFFFFFFFu << 60001u << late;
    QTest::newRow("60 minutes, exactly") << 60 << 7u << 3600000u << inTime;
    QTest::newRow("60 minutes, 1 ms past") << 60 << 7u << 3600001u << late;
}

// The last word: its message, then the cheer (in time up to and at the limit, late after it), then the all-found message.
void TestMarking::lastWordChoosesCheer()
{
    QFETCH(qint32, timeLimit);
    QFETCH(quint32, startTick);
    QFETCH(quint32, elapsed);
    QFETCH(QString, cheer);
    Playing play(LetteredRows(), {QStringLiteral("ABC")},
                 {.timeLimit = timeLimit, .startTick = startTick});
    play.clock.ticks = startTick + elapsed; // wraps modulo 2^32, as the counter does
    play.MarkLetter(1, 1);
    QCOMPARE(Described(play.MarkLetter(1, 3)),
             (QStringList{MessageLine(FoundMessage(QStringLiteral("ABC"))), SoundLine(cheer),
                          MessageLine(kAllFoundMessage)}));
    QCOMPARE(play.wordsRemaining(), 0);
}

// After every word is found a selection answers with nothing but the first press's "mark.wav" (and the two selection messages).
void TestMarking::nothingAfterTheEndButMark()
{
    Playing play(LetteredRows(), {QStringLiteral("ABC"), QStringLiteral("ABC")});
    play.MarkLetter(1, 1);
    QCOMPARE(Described(play.MarkLetter(1, 3)),
             (QStringList{MessageLine(FoundMessage(QStringLiteral("ABC"))),
                          MessageLine(FoundMessage(QStringLiteral("ABC"))),
                          SoundLine(QStringLiteral("cheer1.wav")), MessageLine(kAllFoundMessage)}));

    QCOMPARE(Described(play.MarkLetter(1, 1)), QStringList{SoundLine(QStringLiteral("mark.wav"))});
    QCOMPARE(Described(play.MarkLetter(1, 3)), QStringList{}); // found again: silent
    play.MarkLetter(2, 1);
    QCOMPARE(Described(play.MarkLetter(4, 1)), QStringList{}); // a miss: silent too
    QCOMPARE(Described(play.CheckWord(QStringLiteral("ABC"))), QStringList{});
    play.MarkLetter(2, 2);
    QCOMPARE(Described(play.MarkLetter(2, 2)), QStringList{MessageLine(kSameCellMessage)});
    play.MarkLetter(1, 1);
    QCOMPARE(Described(play.MarkLetter(3, 4)), QStringList{MessageLine(kNotInLineMessage)});
    QCOMPARE(play.wordsRemaining(), 0);
}

QTEST_GUILESS_MAIN(TestMarking)
#include "tst_marking.moc"
