#include "puzzles.h"

#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QString kMark = QStringLiteral("mark.wav");

// A 5 x 5 grid of "z" with word laid from a cell in steps of (dr, dc).
QStringList Laid(const QString &word, Cell from, int dr, int dc)
{
    QStringList rows(5, QStringLiteral("zzzzz"));
    for (int i = 0; i < word.size(); ++i)
        rows[from.row - 1 + i * dr][from.column - 1 + i * dc] = word[i];
    return rows;
}

} // namespace

class TestMarking : public QObject {
    Q_OBJECT

private slots:
    void selection_data();
    void selection();
    void lastWord_data();
    void lastWord();
};

void TestMarking::selection_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QList<Cell>>("marks");
    QTest::addColumn<QStringList>("heard");
    QTest::addColumn<int>("remaining");

    // "cat" in each kind of line, lying either way, marked from either end;
    // "never" keeps the puzzle open.
    const struct {
        const char *name;
        Cell from;
        int dr;
        int dc;
    } lines[] = {{"across", {1, 2}, 0, 1},
                 {"down", {2, 4}, 1, 0},
                 {"down-right slope", {2, 1}, 1, 1},
                 {"down-left slope", {1, 5}, 1, -1}};
    for (const auto &line : lines) {
        const Cell to{line.from.row + 2 * line.dr, line.from.column + 2 * line.dc};
        for (const QString laid : {"cat", "tac"}) {
            for (const bool upperFirst : {true, false}) {
                QTest::addRow("%s, \"%s\" laid, %s mark first", line.name, qPrintable(laid),
                              upperFirst ? "upper" : "lower")
                    << Laid(laid, line.from, line.dr, line.dc)
                    << QStringList{"cat", "never"}
                    << (upperFirst ? QList<Cell>{line.from, to} : QList<Cell>{to, line.from})
                    << QStringList{kMark, FoundMessage("cat")} << 1;
            }
        }
    }

    const QStringList abc = Alphabet();
    QTest::newRow("(5, 1) then (1, 5) read (1, 5), (2, 4), (3, 3), (4, 2), (5, 1)")
        << abc << QStringList{"eimqu", "never"} << QList<Cell>{{5, 1}, {1, 5}}
        << QStringList{kMark, FoundMessage("eimqu")} << 1;
    QTest::newRow("two rows and three columns apart") << abc << QStringList{"abc"}
        << QList<Cell>{{1, 1}, {3, 4}} << QStringList{kMark, kNotInLineMessage} << 1;
    QTest::newRow("one row and two columns back") << abc << QStringList{"abc"}
        << QList<Cell>{{2, 3}, {3, 1}} << QStringList{kMark, kNotInLineMessage} << 1;
    QTest::newRow("the same cell twice, a one-letter word there")
        << abc << QStringList{"m", "abc"} << QList<Cell>{{3, 3}, {3, 3}}
        << QStringList{kMark, kSameCellMessage} << 2;
    QTest::newRow("a run that is no word") << abc << QStringList{"abc"}
        << QList<Cell>{{1, 1}, {1, 4}} << QStringList{kMark, "wrong.wav"} << 1;
    QTest::newRow("a word already found")
        << abc << QStringList{"abc", "fgh"} << QList<Cell>{{1, 1}, {1, 3}, {1, 3}, {1, 1}}
        << QStringList{kMark, FoundMessage("abc"), kMark, "wrong.wav"} << 1;
    QTest::newRow("one word in two slots") << abc << QStringList{"abc", "fgh", "abc"}
        << QList<Cell>{{1, 3}, {1, 1}}
        << QStringList{kMark, FoundMessage("abc"), FoundMessage("abc")} << 1;
    QTest::newRow("one word each way") << abc << QStringList{"cba", "fgh", "abc"}
        << QList<Cell>{{1, 3}, {1, 1}}
        << QStringList{kMark, FoundMessage("cba"), FoundMessage("abc")} << 1;
}

// Two marks find every word still to find that reads either way as the run between them, read from the upper mark (a message each, no sound); else a buzz, or the not-in-line or same-cell message.
void TestMarking::selection()
{
    QFETCH(QStringList, rows);
    QFETCH(QStringList, words);
    QFETCH(QList<Cell>, marks);
    QFETCH(QStringList, heard);
    QFETCH(int, remaining);
    PuzzleRig rig;
    QVERIFY(rig.open(rows, words));
    QCOMPARE(rig.mark(marks), heard);
    QVERIFY(!rig.window->marking().markPending());
    QCOMPARE(rig.window->marking().wordsRemaining(), remaining);
}

void TestMarking::lastWord_data()
{
    QTest::addColumn<qint32>("timeLimit");
    QTest::addColumn<quint32>("startTick");
    QTest::addColumn<quint32>("elapsed");
    QTest::addColumn<QString>("cheer");
    QTest::newRow("no limit, a day") << 0 << 1000u << 86400000u << "cheer1.wav";
    QTest::newRow("1 minute, exactly") << 1 << 1000u << 60000u << "cheer1.wav";
    QTest::newRow("1 minute, 1 ms past") << 1 << 1000u << 60001u << "cheer2.wav";
    QTest::newRow("exactly, across the wrap") << 1 << 0xFFFFFFF0u << 60000u << "cheer1.wav";
    QTest::newRow("1 ms past, across the wrap") << 1 << 0xFFFFFFF0u << 60001u << "cheer2.wav";
}

// The last word gives its message, then "cheer1.wav" up to and at the time limit or "cheer2.wav" past it, then the all-found message; after that a selection plays only "mark.wav".
void TestMarking::lastWord()
{
    QFETCH(qint32, timeLimit);
    QFETCH(quint32, startTick);
    QFETCH(quint32, elapsed);
    QFETCH(QString, cheer);
    PuzzleRig rig;
    rig.fp.clock.ticks = startTick;
    QVERIFY(rig.open(Alphabet(), {"abc"}, timeLimit));
    rig.mark({{1, 1}});
    rig.fp.clock.ticks = startTick + elapsed; // the counter wraps modulo 2^32
    QCOMPARE(rig.mark({{1, 3}}), (QStringList{FoundMessage("abc"), cheer, kAllFoundMessage}));
    // The word again, then a miss.
    QCOMPARE(rig.mark({{1, 3}, {1, 1}, {2, 1}, {4, 1}}), (QStringList{kMark, kMark}));
}

QTEST_MAIN(TestMarking)
#include "tst_marking.moc"
