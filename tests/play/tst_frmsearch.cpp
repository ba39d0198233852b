#include "keys.h"
#include "play/frmsearch.h"
#include "puzzles.h"
#include "screen.h"
#include "windowrig.h"

#include <QHeaderView>
#include <QListWidget>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

using Cell = std::pair<int, int>; // row, column, from 1

const QString kMark = QStringLiteral("mark.wav");
const QString kExit = QStringLiteral("Really exit this word search?");
const QString kSameCell = QStringLiteral(
    "You didn't select any letters. Move to the first letter in the word you have found, and "
    "press spacebar. Then, move to the last letter of the word, and press spacebar again. You "
    "will be notified if you have correctly found a word, at which point it will be removed from "
    "the list of words that you must find. If you did not correctly find a word, a buzzer will "
    "notify you and you may continue searching through the puzzle and marking a new word.");
const QString kNotInLine = QStringLiteral("You have not selected a valid word. Only vertical, "
                                          "horizontal, or diagonal selections are allowed.");
const QString kAllFound = QStringLiteral(
    "You found all the words! Nice work! You may press escape to quit this puzzle, or use one of "
    "the options in the puzzle menu to save, print, or braille this puzzle. Thanks for playing!");

const auto Found = [](const QString &word) { return "Correct! You found the word " + word + "!"; };

// A side by side puzzle (its letters don't matter to the window's size).
const auto squarePuzzle = [](int side) { return QStringList(side, QString(side, u'a')); };

struct PuzzleRig : WindowRig<FrmSearch> {
    ~PuzzleRig()
    {
        QVERIFY2(fp.dialogs.unexpected.isEmpty(), qPrintable(fp.dialogs.unexpected.join('|')));
    }

    // A 5 x 5 puzzle, one text per row; true once the grid has the focus.
    bool open(const QStringList &rows, const QStringList &words, qint32 timeLimit = 0,
              bool hide = false)
    {
        setPuzzle(state, rows, words);
        state.timeLimit = timeLimit;
        state.hideWords = hide;
        return WindowRig::open() && focused() == grid();
    }
    PuzzleGrid *grid() const { return window->findChild<PuzzleGrid *>(QStringLiteral("flex")); }
    Cell cursor() const { return {grid()->currentRow() + 1, grid()->currentColumn() + 1}; }
    bool showsWholeGrid() const
    {
        return grid()->horizontalScrollBar()->maximum() == 0 &&
               grid()->verticalScrollBar()->maximum() == 0;
    }
    QRect screenRoom() const { return window->screen()->availableGeometry(); }

    // Space on each cell in turn, moving there by the arrow keys: the sounds
    // (file names) and the messages the presses gave, in order.
    QStringList mark(const QList<Cell> &cells)
    {
        QStringList heard;
        const auto sounds = [&] {
            heard += fp.sound.names();
            fp.sound.played.clear();
        };
        fp.dialogs.onShow = [&](const ShownDialog &shown) {
            sounds();
            heard << shown.prompt;
            fp.clock.ticks += boxUpMs;
        };
        for (const auto &[row, column] : cells) {
            for (int step = 0; step < 10 && cursor() != Cell{row, column}; ++step)
                press(cursor().first != row
                          ? (cursor().first < row ? Qt::Key_Down : Qt::Key_Up)
                          : (cursor().second < column ? Qt::Key_Right : Qt::Key_Left));
            fp.sound.played.clear();
            press(Qt::Key_Space);
            sounds();
        }
        fp.dialogs.onShow = nullptr;
        return heard;
    }
    // How long the player takes over each message box that mark() meets.
    quint32 boxUpMs = 0;

    // The grid as its cells are drawn, a text per row: a found letter in
    // capitals, the pending mark in brackets.
    QStringList drawn() const
    {
        const auto *delegate = qobject_cast<LetterDelegate *>(grid()->itemDelegate());
        QStringList rows;
        for (int r = 0; r < grid()->rowCount(); ++r) {
            rows.append(QString());
            for (int c = 0; c < grid()->columnCount(); ++c) {
                const PuzzleGrid::CellMarks marks = delegate->marks(grid()->model()->index(r, c));
                const QString letter = grid()->item(r, c)->text();
                const QString shown = marks.found ? letter.toUpper() : letter;
                rows.last() += marks.pending ? "[" + shown + "]" : shown;
            }
        }
        return rows;
    }
};

} // namespace

class TestFrmSearch : public QObject {
    Q_OBJECT

public:
    static void initMain() { useOffscreenScreen(1024, 768); }

private slots:
    void gridAndMoves();
    void selection();
    void foundAndPendingDrawn();
    void lastWord();
    void timeReport();
    void wordsToFind();
    void leavingAsks();
    void outputCommands();
    void focusBackReplaysTheLetter();
    void zoomStepsAndIsKept();
    void largestZoomOnASmallScreen();
    void opensShowingTheGrid();
};

// The grid shows cell (r, c) of the puzzle in row r and column c numbered from 1, the cursor on
// (1, 1); each cursor key moves it and plays its letter's file, nothing at the grid's edge, onto a
// cell without a letter or for a typed letter, and a letter never moves the cursor.
void TestFrmSearch::gridAndMoves()
{
    PuzzleRig rig;
    QStringList rows = kAlphabet;
    rows[1][2] = QLatin1Char(' '); // (2, 3) holds no letter
    QVERIFY(rig.open(rows, {"abc"}));
    QCOMPARE(rig.drawn(), (QStringList{"abcde", "fg ij", "klmno", "pqrst", "uvwxy"}));
    QStringList numbers;
    for (int i = 0; i < 5; ++i)
        numbers << rig.grid()->verticalHeaderItem(i)->text() +
                       rig.grid()->horizontalHeaderItem(i)->text();
    QCOMPARE(numbers, (QStringList{"11", "22", "33", "44", "55"}));
    QStringList heard;
    for (const Qt::Key key :
         {Qt::Key_Up, Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_P}) {
        rig.fp.sound.played.clear();
        press(key);
        heard << QStringLiteral("%1,%2 ").arg(rig.cursor().first).arg(rig.cursor().second) +
                     rig.fp.sound.names().join(' ');
    }
    QCOMPARE(heard, (QStringList{"1,1 ", "2,1 f.wav", "2,2 g.wav", "2,3 ", "2,4 i.wav", "2,4 "}));
}

// Two marks find every word still to find that reads either way as the run between them, read from
// the upper mark (a message each); else a buzz, or the not-in-line or same-cell message.
void TestFrmSearch::selection()
{
    struct Case {
        QStringList words;
        QList<Cell> marks;
        QStringList heard;
        int left;
    };
    QList<Case> cases = {
        {{"abc"}, {{1, 1}, {3, 4}}, {kMark, kNotInLine}, 1},
        {{"m", "abc"}, {{3, 3}, {3, 3}}, {kMark, kSameCell}, 2},
        {{"abc", "fgh"},
         {{1, 1}, {1, 3}, {1, 3}, {1, 1}},
         {kMark, Found("abc"), kMark, "wrong.wav"},
         1},
        {{"cba", "fgh", "abc"}, {{1, 3}, {1, 1}}, {kMark, Found("cba"), Found("abc")}, 1}};
    // Across, down, down to the right, down to the left: each word laid either way, marked from
    // either end.
    for (const auto &[forwards, backwards, a, b] :
         {std::tuple{"bcd", "dcb", Cell{1, 2}, Cell{1, 4}},
          std::tuple{"ins", "sni", Cell{2, 4}, Cell{4, 4}},
          std::tuple{"flr", "rlf", Cell{2, 1}, Cell{4, 3}},
          std::tuple{"eimqu", "uqmie", Cell{1, 5}, Cell{5, 1}}})
        for (const QString word : {forwards, backwards})
            for (const QList<Cell> &marks : {QList<Cell>{a, b}, QList<Cell>{b, a}})
                cases.append({{word, "never"}, marks, {kMark, Found(word)}, 1});
    QStringList actual, expected;
    for (const Case &c : cases) {
        PuzzleRig rig;
        QVERIFY(rig.open(kAlphabet, c.words));
        const QString key = QStringLiteral("%1 from %2,%3: ")
                                .arg(c.words.first())
                                .arg(c.marks[0].first)
                                .arg(c.marks[0].second);
        const QStringList heard = rig.mark(c.marks);
        actual << key + heard.join(" | ") + ", left " +
                      QString::number(rig.window->marking().wordsRemaining());
        expected << key + c.heard.join(" | ") + ", left " + QString::number(c.left);
    }
    QCOMPARE(actual, expected);
}

// The cells of each word found are drawn found from its message on, and the first mark's cell while
// it waits: the second mark ends it whatever it finds, No on the exit question keeps it.
void TestFrmSearch::foundAndPendingDrawn()
{
    PuzzleRig rig;
    QVERIFY(rig.open(kAlphabet, {"abc", "eimqu", "fgh"}));
    const auto after = [&](const QList<Cell> &marks) {
        QStringList seenWithMessage;
        rig.fp.dialogs.onShow = [&](const ShownDialog &) { seenWithMessage = rig.drawn(); };
        rig.mark(marks);
        rig.fp.dialogs.onShow = nullptr;
        return seenWithMessage.isEmpty() ? rig.drawn() : seenWithMessage;
    };
    QCOMPARE(after({{1, 2}}), (QStringList{"a[b]cde", "fghij", "klmno", "pqrst", "uvwxy"}));
    rig.fp.dialogs.answers = {MessageResult::No};
    press(Qt::Key_Escape);
    QCOMPARE(rig.drawn(), (QStringList{"a[b]cde", "fghij", "klmno", "pqrst", "uvwxy"}));
    QCOMPARE(after({{1, 3}}), (QStringList{"abcde", "fghij", "klmno", "pqrst", "uvwxy"}));
    QCOMPARE(after({{1, 3}, {1, 1}}), (QStringList{"ABCde", "fghij", "klmno", "pqrst", "uvwxy"}));
    QCOMPARE(after({{5, 1}, {1, 5}, {1, 2}}),
             (QStringList{"A[B]CdE", "fghIj", "klMno", "pQrst", "Uvwxy"}));
    QCOMPARE(after({{3, 3}}), (QStringList{"ABCdE", "fghIj", "klMno", "pQrst", "Uvwxy"}));
}

// The last word gives its message, then "cheer1.wav" up to and at the time limit or "cheer2.wav"
// past it, the time taken once that message is closed (the tick counter wrapping meanwhile), then
// the all-found message; after that a selection plays only "mark.wav".
void TestFrmSearch::lastWord()
{
    for (const auto &[beforeBox, boxUp, cheer] :
         {std::tuple{60000u, 0u, "cheer1.wav"}, std::tuple{59999u, 2u, "cheer2.wav"}}) {
        PuzzleRig rig;
        rig.fp.clock.ticks = 0xFFFFFFF0u;
        QVERIFY(rig.open(kAlphabet, {"abc"}, 1));
        rig.mark({{1, 1}});
        rig.fp.clock.ticks = 0xFFFFFFF0u + beforeBox;
        rig.boxUpMs = boxUp;
        QCOMPARE(rig.mark({{1, 3}}), (QStringList{Found("abc"), cheer, kAllFound}));
        QCOMPARE(rig.mark({{1, 3}, {1, 1}, {2, 1}, {4, 1}}), (QStringList{kMark, kMark}));
    }
}

// Ctrl+T reports the whole minutes and seconds left, rounded down, and "over" only past the limit;
// with no limit, the no-limit message.
void TestFrmSearch::timeReport()
{
    const struct {
        qint32 limit;
        quint32 elapsed;
        QString report;
    } table[] = {{5, 0, "You have 5 minutes, 0 seconds remaining."},
                 {5, 61500, "You have 3 minutes, 58 seconds remaining."},
                 {5, 240000, "You have 1 minutes, 0 seconds remaining."},
                 {5, 240001, "You only have 59 seconds remaining!"},
                 {5, 300000, "You only have 0 seconds remaining!"},
                 {5, 300001, "You've spent more than your allowed time on this puzzle."},
                 {0, 86400000, "You have as much time as necessary to complete this puzzle."}};
    for (const auto &row : table) {
        PuzzleRig rig;
        QVERIFY(rig.open(kAlphabet, {"abc"}, row.limit));
        rig.fp.clock.ticks += row.elapsed;
        press(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(rig.fp.dialogs.prompts(), QStringList{row.report});
    }
}

// Ctrl+W lists the words still to find in slot order, as "x " per letter when hidden, in place of
// the puzzle; Escape brings the puzzle back as it was, a pending mark included; with every word
// found it says so instead.
void TestFrmSearch::wordsToFind()
{
    for (const bool hidden : {false, true}) {
        PuzzleRig rig;
        QVERIFY(rig.open(kAlphabet, {"abcde", "fgh", "klm"}, 0, hidden));
        rig.mark({{2, 1}, {2, 3}, {1, 5}}); // "fgh" found, a mark pending at the end of "abcde"
        press(Qt::Key_W, Qt::ControlModifier);
        FrmList &list = rig.navigator.listWindow();
        QVERIFY(QTest::qWaitForWindowActive(&list));
        QVERIFY(!rig.window->isVisible());
        QCOMPARE(list.windowTitle(), "Word List - Words Remaining");
        QCOMPARE(entriesOf(qobject_cast<QListWidget *>(focused())),
                 (hidden ? QStringList{"x x x x x ", "x x x "} : QStringList{"abcde", "klm"}));
        press(Qt::Key_Escape);
        QVERIFY(QTest::qWaitForWindowActive(rig.window));
        QCOMPARE(rig.mark({{1, 1}}), QStringList{Found("abcde")});
        rig.mark({{3, 1}, {3, 3}});
        rig.fp.dialogs.shown.clear();
        press(Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(rig.fp.dialogs.prompts(), QStringList{"You've found all the words!"});
        QCOMPARE(focused(), rig.grid());
    }
}

// Escape and the close box ask to leave: No goes on as it was, a pending mark included; Yes brings
// the main menu back once and closes the window without asking again.
void TestFrmSearch::leavingAsks()
{
    for (const bool closeBox : {false, true}) {
        PuzzleRig rig;
        QVERIFY(rig.open(kAlphabet, {"abc", "fgh"}));
        const auto leave = [&] { closeBox ? void(rig.window->close()) : press(Qt::Key_Escape); };
        rig.fp.dialogs.answers = {MessageResult::No, MessageResult::Yes};
        rig.mark({{1, 3}});
        leave();
        QVERIFY(QTest::qWaitForWindowActive(rig.window));
        QCOMPARE(rig.mark({{1, 1}}), QStringList{Found("abc")});
        leave();
        QTRY_VERIFY(rig.window.isNull());
        QCOMPARE(rig.navigator.mainMenuShown, 1);
        QCOMPARE(rig.fp.dialogs.prompts(), (QStringList{kExit, Found("abc"), kExit}));
        QCOMPARE(rig.fp.dialogs.shown.first().buttons, MessageButtons::YesNo);
    }
}

// Ctrl+S, Ctrl+P and Ctrl+B work from the grid by keyboard: the save writes every word, found ones
// too; print offers the font sizes over the shown puzzle, 12 point at first (kept by the close box)
// and Down picks 14; a printer that fails is named. After each the grid has the focus on its cell
// and a pending mark is kept.
void TestFrmSearch::outputCommands()
{
    PuzzleRig rig;
    QVERIFY(rig.open(kAlphabet, {"abc", "fgh", "klm"}));
    rig.mark({{1, 1}, {1, 3}, {2, 3}}); // "abc" found, a mark pending at (2, 3)
    const auto backInGrid = [&] {
        QVERIFY(QTest::qWaitForWindowActive(rig.window));
        QCOMPARE(focused(), rig.grid());
        QCOMPARE(rig.cursor(), (Cell{2, 3}));
    };
    rig.fp.fileDialogs.savePaths = {rig.fp.path("out.txt")};
    rig.fp.dialogs.answers = {MessageResult::No};
    press(Qt::Key_S, Qt::ControlModifier);
    backInGrid();
    QVERIFY(rig.fp.readFile("out.txt").contains("\r\n1. abc\r\n2. fgh\r\n"));

    for (const bool down : {true, false}) {
        bool puzzleShown = false;
        QString title;
        whenModal([&](QWidget *list) {
            puzzleShown = rig.window->isVisible();
            title = list->windowTitle();
            down ? pressKeys("Down, Return") : void(list->close());
        });
        rig.fp.dialogs.answers = {MessageResult::No};
        press(Qt::Key_P, Qt::ControlModifier);
        backInGrid();
        QVERIFY(puzzleShown);
        QCOMPARE(title, "Select Font Size for Printing");
        const QStringList &log = rig.fp.fileDialogs.record.log;
        QVERIFY2(log.contains(down ? "size 14" : "size 12") &&
                     log.contains(down ? "size 18" : "size 16") && log.last() == "end",
                 qPrintable(log.join('|')));
    }

    rig.fp.fileDialogs.script.failure = "the print system is not running";
    rig.fp.dialogs.replies = {"23", "35"};
    rig.fp.dialogs.answers = {MessageResult::No};
    press(Qt::Key_B, Qt::ControlModifier);
    backInGrid();
    QCOMPARE(rig.fp.dialogs.lastPrompt(), "The puzzle could not be printed on the printer "
                                          "\"recorder\": the print system is not running.");
    QCOMPARE(rig.mark({{2, 1}}), QStringList{Found("fgh")});
}

// The letter under the cursor plays once when the puzzle opens, and whenever the grid gets the
// focus back (after each kind of message box, No on the exit question, the words list, a save or a
// braille command), after a screen reader has had time to announce the window (at once without
// one); a move meanwhile plays its own letter alone.
void TestFrmSearch::focusBackReplaysTheLetter()
{
    PuzzleRig alone;
    alone.fp.system.screenReader = false;
    QVERIFY(alone.open(kAlphabet, {"never"}));
    alone.fp.clock.advance(0);
    QCOMPARE(alone.fp.sound.names(), QStringList{"a.wav"});

    PuzzleRig rig;
    QVERIFY(rig.open(kAlphabet, {"abc", "fgh"}));
    rig.fp.clock.advance(FrmSearch::kLetterAfterFocusMs - 1);
    QCOMPARE(rig.fp.sound.names(), QStringList{});
    // What the keys play, then what plays once the announcement is over.
    const struct {
        QString what, keys;
    } steps[] = {{"opened", ""},
                 {"time report", "Ctrl+T"},
                 {"not in line", "Space, Right, Right, Down, Space"},
                 {"same cell", "Space, Space"},
                 {"word found", "Space, Left, Left, Space"},
                 {"exit, No", "Esc"},
                 {"close box, No", ""},
                 {"words list", "Ctrl+W"},
                 {"save", "Ctrl+S"},
                 {"braille", "Ctrl+B"},
                 {"moved meanwhile", "Ctrl+T, Right"}};
    QStringList actual;
    for (const auto &step : steps) {
        // A real box takes the focus; the save asks no question that is not answered at once.
        rig.fp.dialogs.onShow = [&](const ShownDialog &) {
            if (step.what != "save")
                standInBox();
        };
        rig.fp.dialogs.answers = {MessageResult::No};
        rig.fp.dialogs.replies = {"23", "4"};
        rig.fp.fileDialogs.savePaths = {rig.fp.path("out.txt")};
        rig.fp.sound.played.clear();
        if (step.what == "close box, No")
            rig.window->close();
        pressKeys(step.keys);
        if (step.what == "words list") {
            QVERIFY(QTest::qWaitForWindowActive(&rig.navigator.listWindow()));
            press(Qt::Key_Escape);
        }
        QVERIFY(QTest::qWaitForWindowActive(rig.window));
        const QStringList before = rig.fp.sound.names();
        rig.fp.sound.played.clear();
        rig.fp.clock.advance(FrmSearch::kLetterAfterFocusMs);
        actual << step.what + ": " + before.join(' ') + " | " + rig.fp.sound.names().join(' ');
    }
    QCOMPARE(actual,
             (QStringList{"opened:  | a.wav", "time report:  | a.wav",
                          "not in line: mark.wav b.wav c.wav h.wav | h.wav",
                          "same cell: mark.wav | h.wav", "word found: mark.wav g.wav f.wav | f.wav",
                          "exit, No:  | f.wav", "close box, No:  | f.wav", "words list:  | f.wav",
                          "save:  | f.wav", "braille:  | f.wav", "moved meanwhile: g.wav | "}));
}

// Ctrl+Plus and Ctrl+Equals draw the letters and numbers a step larger, Ctrl+Minus a step smaller
// and Ctrl+0 at the desktop's size again, never smaller; each letter column stays 200 twips wide
// at least at the zoom, the window grows to show the whole grid, and the next puzzle opens at the
// same zoom, after a restart too. A zoom that can't be kept is said once, and holds for the game.
void TestFrmSearch::zoomStepsAndIsKept()
{
    PuzzleRig rig;
    const QStringList puzzle = squarePuzzle(10);
    QVERIFY(rig.open(puzzle, {"abc"}));
    // Zoom, letters' points, a cell's width and height, the window's width and height.
    const auto sizes = [&] {
        return QList<qreal>{qreal(rig.grid()->zoom()),         rig.grid()->font().pointSizeF(),
                            qreal(rig.grid()->columnWidth(0)), qreal(rig.grid()->rowHeight(0)),
                            qreal(rig.window->width()),        qreal(rig.window->height())};
    };
    const auto restart = [&] {
        rig.fp.dialogs.answers = {MessageResult::Yes};
        press(Qt::Key_Escape);
        QTRY_VERIFY(rig.window.isNull());
        rig.fp.settings.restart();
        QVERIFY(rig.open(puzzle, {"abc"}));
    };
    const QList<qreal> normal = sizes();
    pressKeys("Ctrl++, Ctrl++");
    QCOMPARE(rig.grid()->zoom(), 150);
    QCOMPARE(rig.grid()->font().pointSizeF(), normal[1] * 1.5);
    QCOMPARE(rig.grid()->horizontalHeader()->font(), rig.grid()->font());
    QVERIFY(rig.grid()->columnWidth(0) >= 200.0 / 1440 * rig.grid()->logicalDpiX() * 1.5);
    QVERIFY(rig.showsWholeGrid() && rig.window->width() > normal[4]);
    const QList<qreal> larger = sizes();
    restart();
    QCOMPARE(sizes(), larger);
    QStringList zooms;
    for (const char *keys : {"Ctrl+=", "Ctrl+-", "Ctrl+0", "Ctrl+-"}) {
        pressKeys(keys);
        zooms << QString::number(rig.grid()->zoom());
    }
    QCOMPARE(zooms, (QStringList{"175", "150", "100", "100"}));
    QCOMPARE(sizes(), normal);
    restart();
    QCOMPARE(sizes(), normal);

    rig.fp.settings.failWrites = true;
    rig.fp.dialogs.shown.clear();
    pressKeys("Ctrl++, Ctrl++");
    QCOMPARE(rig.grid()->zoom(), 150);
    QCOMPARE(rig.fp.dialogs.prompts(),
             QStringList{"The size of the letters could not be kept for your next game: \"" +
                         rig.fp.dir.filePath("settings.ini") + "\" could not be written."});
    QCOMPARE(focused(), rig.grid());
}

// On a 1024 x 768 screen a 50 x 50 puzzle zooms up to 400 %, its window kept on the screen with
// the cursor's cell in view; at every step each column's number fits its width in bold (the
// cursor's column is numbered in bold), and each row's its header.
void TestFrmSearch::largestZoomOnASmallScreen()
{
    PuzzleRig rig;
    QVERIFY(rig.open(squarePuzzle(50), {"abc"}));
    QCOMPARE(rig.screenRoom(), QRect(0, 0, 1024, 768));
    pressKeys("Ctrl+End, Left, Left");
    QStringList misfits;
    for (int zoom = 0; zoom != rig.grid()->zoom(); press(Qt::Key_Plus, Qt::ControlModifier)) {
        zoom = rig.grid()->zoom();
        for (QHeaderView *header : {rig.grid()->horizontalHeader(), rig.grid()->verticalHeader()}) {
            QFont bold = header->font();
            bold.setBold(true);
            const int margins = 2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin);
            for (int i = 0; i < 50; ++i) {
                const QString number = QString::number(i + 1);
                const int room = header->orientation() == Qt::Horizontal ? header->sectionSize(i)
                                                                         : header->width();
                if (QFontMetrics(bold).horizontalAdvance(number) + margins > room)
                    misfits << QStringLiteral("%1 at %2 %").arg(number).arg(zoom);
            }
        }
    }
    QCOMPARE(misfits, QStringList());
    QCOMPARE(rig.grid()->zoom(), 400);
    QCOMPARE(rig.cursor(), (Cell{50, 48}));
    QVERIFY(rig.grid()->viewport()->rect().contains(
        rig.grid()->visualRect(rig.grid()->currentIndex())));
    QVERIFY(rig.screenRoom().contains(rig.window->frameGeometry()));
}

// The window opens as large as shows the whole grid at the zoom kept from last time, centred on
// the screen, or as large as the screen's free area allows.
void TestFrmSearch::opensShowingTheGrid()
{
    const struct {
        int side, zoom;
        bool whole;
    } table[] = {{20, 100, true}, {50, 100, false}, {20, 200, false}, {5, 400, true}};
    for (const auto &row : table) {
        PuzzleRig rig;
        QString error;
        QVERIFY(rig.fp.settings.setNumber(QStringLiteral("puzzle/zoom"), row.zoom, error));
        QVERIFY(rig.open(squarePuzzle(row.side), {"abc"}));
        const QString what = QStringLiteral("%1 x %1 at %2 %").arg(row.side).arg(row.zoom);
        QCOMPARE(rig.grid()->zoom(), row.zoom);
        QVERIFY2(rig.showsWholeGrid() == row.whole, qPrintable(what));
        const QRect frame = rig.window->frameGeometry();
        QVERIFY2(rig.screenRoom().contains(frame), qPrintable(what));
        const QPoint offCentre = frame.center() - rig.screenRoom().center();
        // Centred as well as a frame not yet drawn can be guessed.
        QVERIFY2(std::abs(offCentre.x()) <= 10 && std::abs(offCentre.y()) <= 20, qPrintable(what));
    }
}

QTEST_MAIN(TestFrmSearch)
#include "tst_frmsearch.moc"
