#include "output/solution.h"
#include "puzzles.h"

#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QString kSolutionQuestion =
    QStringLiteral("Do you want to print a solution page as well? The solution page specifies "
                   "where in the puzzle the words can be found.");

// A line of the page: each text at its cell.
QString placed(std::initializer_list<std::pair<int, QString>> texts)
{
    QString line;
    for (const auto &[cell, text] : texts)
        line = line.leftJustified(cell, QLatin1Char(' ')) + text;
    return line;
}

// The document's lines, pages apart; a last line without its CR LF shows.
QList<QStringList> pagesOf(const OutputRig &rig)
{
    QList<QStringList> all;
    for (const QString &page : rig.fp.fileDialogs.record.text().split(QLatin1Char('\f'))) {
        QStringList lines = page.split(QStringLiteral("\r\n"));
        if (lines.takeLast() != QString())
            lines << QStringLiteral("<no line end>");
        all << lines;
    }
    return all;
}

// The embosser-like printer: its page is the braille page, or holds pageLines lines.
void embosserPage(OutputRig &rig, int lineLength, int linesPerPage, int pageLines = 0)
{
    rig.fp.fileDialogs.script.width = lineLength;
    rig.fp.fileDialogs.script.height = pageLines > 0 ? pageLines : linesPerPage;
}

} // namespace

class TestPageLayout : public QObject {
    Q_OBJECT

private slots:
    void brailleDocument();
    void wordListColumns();
    void braillePageBreaks();
    void printModeMeasuresAtEachSize();
    void gridWiderThanTheLine();
    void jobsThatStopEarly();
    void locateWord();
    void brailleQuestions();
};

// A braille document is the word list heading, the words in columns, the grid heading and the
// grid, each heading centred on the 35-cell line (indents 13, 14 and, on the solution page, 10);
// the solution page lists every word in full, hidden or not, at its first letter or at -1, -1.
void TestPageLayout::brailleDocument()
{
    for (const bool hidden : {false, true}) {
        OutputRig rig;
        setPuzzle(rig.state, kAlphabet, {"abc", "yxw", "agmsy", "zzz"});
        rig.state.hideWords = hidden;
        embosserPage(rig, 35, 23);
        QCOMPARE(rig.braille(35, 23, true).end, JobEnd::Printed);
        const QString firstRow = hidden ? placed({{0, "xxx"}, {12, "xxx"}, {24, "xxxxx"}})
                                        : placed({{0, "abc"}, {12, "yxw"}, {24, "agmsy"}});
        const QList<QStringList> expected = {
            {placed({{13, "Word List"}}), "", "", firstRow, hidden ? "xxx" : "zzz", "", "",
             placed({{14, "Puzzle"}}), "", "", "abcde", "fghij", "klmno", "pqrst", "uvwxy"},
            {placed({{10, "Puzzle Solution"}}), "", "", "abc is at row 1, col 1",
             "yxw is at row 5, col 5", "agmsy is at row 1, col 1", "zzz is at row -1, col -1"}};
        QCOMPARE(pagesOf(rig), expected);
        QCOMPARE(rig.fp.fileDialogs.record.log.first(), "copies 1");
        QVERIFY(rig.fp.fileDialogs.record.log.contains("font Courier New"));
        QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kSolutionQuestion});
        QCOMPARE(rig.fp.dialogs.shown.first().title, "Solution?");
        // The solution search lets the window breathe between words; no font size is offered.
        QCOMPARE(rig.yields, 4);
        QVERIFY(rig.listShown.isEmpty());
    }
}

// The word list has floor(cells per line / (longest word + 4)) columns, at least one, each the line
// divided by the columns, rounded halves to even; the words run left to right, then down, and a
// full last row gets no extra line end.
void TestPageLayout::wordListColumns()
{
    const QStringList seven = {"elephant", "cat", "dog", "emu", "yak", "owl", "ant"};
    const QStringList sixInRows = {placed({{0, "elephant"}, {12, "cat"}, {24, "dog"}}),
                                   placed({{0, "emu"}, {12, "yak"}, {24, "owl"}})};
    const QString longest = "abcdefghijklmnopqrstuvwxyzabcdefgh";
    const struct {
        int lineLength;
        QStringList words, rows;
        int puzzleIndent;
    } table[] = {
        {36, seven, sixInRows + QStringList{"ant"}, 15},
        {36, seven.mid(0, 6), sixInRows, 15},
        {37, {"crocodile", "cat", "dog"}, {placed({{0, "crocodile"}, {18, "cat"}}), "dog"}, 16},
        {35, {"rhinoceros", "cat", "dog"}, {placed({{0, "rhinoceros"}, {18, "cat"}}), "dog"}, 14},
        {35, {longest, "cat"}, {longest, "cat"}, 14}};
    for (const auto &row : table) {
        OutputRig rig;
        setPuzzle(rig.state, kAlphabet, row.words);
        embosserPage(rig, row.lineLength, 50);
        QCOMPARE(rig.braille(row.lineLength, 50, false).end, JobEnd::Printed);
        const QStringList lines = pagesOf(rig).first();
        // After the heading and its empty lines, the rows of words, then the two empty lines.
        const QString heading = placed({{row.puzzleIndent, "Puzzle"}});
        QCOMPARE(lines.mid(3, row.rows.size() + 3), (row.rows + QStringList{"", "", heading}));
    }
}

// On braille pages a new printer page starts as soon as a braille page is full: a printer page of
// 66 lines with 23 braille lines leaves a surplus of 43, so each page holds 23 lines, in the middle
// of the word list too. The grid stays below the list when its rows are at most the lines left
// less 7, else it starts a page; solution lines run on without the braille page rule.
void TestPageLayout::braillePageBreaks()
{
    QStringList words;
    for (int i = 1; i <= 50; ++i)
        words << QStringLiteral("word%1").arg(i, 5, 10, QLatin1Char('0'));
    const struct {
        int rows;
        bool solution;
        QList<int> pageLines;
    } table[] = {{9, false, {23, 23, 7 + 2 + 3 + 9}},
                 {10, false, {23, 23, 7, 3 + 10}},
                 {5, true, {23, 23, 17, 3 + 50}}};
    for (const auto &c : table) {
        OutputRig rig;
        setPuzzle(rig.state, QStringList(c.rows, "abcde"), words); // one column: 12 / 13 is 0
        embosserPage(rig, 12, 23, 66);
        QCOMPARE(rig.braille(12, 23, c.solution).end, JobEnd::Printed);
        QCOMPARE(rig.state.brailleSurplusLines, qint16(43));
        const QList<QStringList> pages = pagesOf(rig);
        QList<int> counts;
        for (const QStringList &page : pages)
            counts << static_cast<int>(page.size());
        QCOMPARE(counts, c.pageLines);
        QCOMPARE(pages[1].first(), "word00021");
        QCOMPARE(pages[2].first(), "word00044");
    }
}

// In print mode the line is the printable width in cells of "X" at the size in force: headings
// are centred at the chosen size plus 4, the list and the grid laid at the chosen size, columns
// share the whole width; copies and the typeface are set first.
void TestPageLayout::printModeMeasuresAtEachSize()
{
    OutputRig rig;
    setPuzzle(rig.state, kAlphabet, {"abc", "yxw", "agmsy", "zzz"});
    rig.state.brailleLinesPerPage = 23;
    // 120 x 240 units a cell at 12 points, growing with the size; 80 x 60 cells at 12 points.
    rig.fp.fileDialogs.script = {9600, 14400, 120, 240, 12, true, {}};
    rig.fp.fileDialogs.copies = 2;
    rig.fontSize = "18 point";
    QCOMPARE(rig.run(OutputMode::Print, false).end, JobEnd::Printed);
    QCOMPARE(rig.listShown, QStringList{"Select Font Size for Printing: 8 point,10 point,12 "
                                        "point,14 point,16 point,18 point at 2"});
    // 60 lines at the starting size, less the 23 of the braille page asked last time.
    QCOMPARE(rig.state.brailleSurplusLines, qint16(37));
    QStringList expected = {"copies 2", "font Courier", "font Courier New",
                            // 44 cells at 22 points: (44 - 9) / 2 = 17.5 gives 18
                            "size 22", "x 3960", "print Word List", "print ", "size 18", "print ",
                            // 53 cells at 18 points: 5 columns of 9600 / 5 units
                            "x 0", "print abc;", "x 1920", "print yxw;", "x 3840", "print agmsy;",
                            "x 5760", "print zzz;", "print ", "print ", "print ",
                            // (44 - 6) / 2 = 19
                            "size 22", "x 4180", "print Puzzle", "print ", "print ", "size 18"};
    for (const QString &gridRow : kAlphabet) {
        for (const QChar letter : gridRow)
            expected << QStringLiteral("print ") + letter + ';';
        expected << "print ";
    }
    expected << "end";
    QCOMPARE(rig.fp.fileDialogs.record.log, expected);
}

// A grid exactly as wide as the line prints; one column more abandons the whole document after the
// solution question has been answered, searches nothing, and gives the width message.
void TestPageLayout::gridWiderThanTheLine()
{
    for (const int columns : {5, 6}) {
        OutputRig rig;
        QStringList rows;
        for (const QString &row : kAlphabet)
            rows << row.leftJustified(columns, QLatin1Char('z'));
        setPuzzle(rig.state, rows, {"abc"});
        // 5 cells of 120 units at 12 points.
        rig.fp.fileDialogs.script = {600, 14400, 120, 240, 12, true, {}};
        const JobResult result = rig.run(OutputMode::Print, true);
        QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kSolutionQuestion});
        const QStringList &log = rig.fp.fileDialogs.record.log;
        if (columns == 5) {
            QCOMPARE(result.end, JobEnd::Printed);
            QCOMPARE(log.last(), "end");
            QCOMPARE(rig.yields, 1);
        } else {
            QCOMPARE(result.end, JobEnd::TooWideForPage);
            QCOMPARE(JobMessage(result),
                     "Error. The puzzle will not fit on the page. Please make the puzzle smaller, "
                     "use a different printer, or choose a smaller font size.");
            QCOMPARE(log.last(), "abandon");
            QVERIFY(!log.contains("end"));
            QCOMPARE(rig.yields, 0);
        }
    }
}

// A braille grid wider than the braille line stops before any dialog with its message, and a
// cancelled print dialog asks nothing more.
void TestPageLayout::jobsThatStopEarly()
{
    for (const bool wide : {true, false}) {
        OutputRig rig;
        setPuzzle(rig.state, kAlphabet, {"abc"});
        rig.fp.fileDialogs.cancel = true;
        const JobResult result = rig.braille(wide ? 4 : 5, 23, false);
        QCOMPARE(result.end, wide ? JobEnd::TooWideForBraille : JobEnd::Cancelled);
        QCOMPARE(JobMessage(result), wide ? "The puzzle is too wide for your braille page. Please "
                                            "create a smaller puzzle and try again."
                                          : "");
        QCOMPARE(rig.fp.fileDialogs.requests.size(), wide ? 0 : 1);
        QVERIFY(rig.fp.dialogs.shown.isEmpty());
    }
}

// A word is reported at its first letter in the direction that spells it, the last such cell in
// row-by-row order winning, in the allowed directions only; a word found nowhere at -1, -1.
void TestPageLayout::locateWord()
{
    const QStringList grid = {"abaxq", "bxxxd", "axxxo", "xxxxg", "xxxxx"};
    const struct {
        QString word;
        bool horizontal, vertical, diagonal;
        WordPosition at;
    } table[] = {
        {"aba", true, false, false, {1, 3}},  // reads the same both ways
        {"aba", false, true, false, {3, 1}},  // down from (1, 1), up from (3, 1)
        {"abab", true, true, true, {-1, -1}}, // runs off the edge
        {"god", false, true, false, {4, 5}},  // laid upwards
        {"god", true, false, true, {-1, -1}}, // only horizontal and diagonal allowed
        {"q", false, false, true, {1, 5}},    // one letter: its last cell
        {"x", true, false, false, {5, 5}},    {"cat", true, true, true, {-1, -1}},
        {"xxxx", false, false, true, {5, 5}}, // up-left from the corner
    };
    for (const auto &row : table) {
        GameState state;
        setPuzzle(state, grid, {row.word});
        state.allowHorizontal = row.horizontal;
        state.allowVertical = row.vertical;
        state.allowDiagonal = row.diagonal;
        const WordPosition at = LocateWord(state, row.word);
        const auto shown = [&](WordPosition p) {
            return QStringLiteral("%1 %2,%3").arg(row.word).arg(p.row).arg(p.col);
        };
        QCOMPARE(shown(at), shown(row.at));
    }
}

// The braille sizes are asked each time with their defaults filled in; an answer below 1, no number
// at all, a cancelled box or a number beyond 16 bits gives the default; any other is taken.
void TestPageLayout::brailleQuestions()
{
    const struct {
        QString reply;
        QString page;
    } table[] = {{"", "23 x 35"},     {"0", "23 x 35"},          {"-4", "23 x 35"},
                 {"abc", "23 x 35"},  {"32768", "23 x 35"},      {"1", "1 x 1"},
                 {"40.5", "40 x 40"}, {"32767", "32767 x 32767"}};
    for (const auto &row : table) {
        FakePlatform fp;
        GameState state;
        fp.dialogs.replies = {row.reply, row.reply};
        AskBraillePage(state, fp.dialogs, nullptr);
        QCOMPARE(row.reply + ": " + QString::number(state.brailleLinesPerPage) + " x " +
                     QString::number(state.brailleLineLength),
                 row.reply + ": " + row.page);
        QStringList asked;
        for (const ShownDialog &shown : fp.dialogs.shown)
            asked << shown.title + "|" + shown.defaultText + "|" + shown.prompt;
        QCOMPARE(asked, (QStringList{"Lines Per Page|23|How many lines on your braille page? If "
                                     "you are unsure, try the default by pressing enter",
                                     "Line Length|35|What is your braille line length? If you "
                                     "are unsure, try the default by pressing enter"}));
    }
}

QTEST_GUILESS_MAIN(TestPageLayout)
#include "tst_pagelayout.moc"
