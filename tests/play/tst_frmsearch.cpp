#include "core/frmchoose.h"
#include "core/game.h"
#include "fakenavigator.h"
#include "fakeplatform.h"
#include "keys.h"
#include "play/frmlist.h"
#include "play/frmsearch.h"
#include "puzzles.h"

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

#include <memory>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QString kExitQuestion = QStringLiteral("Really exit this word search?");

// 5 x 5 with a different letter in every cell: a sound tells the cell.
QStringList Alphabet()
{
    return {"abcde", "fghij", "klmno", "pqrst", "uvwxy"};
}

// A word in each kind of line: "cat" across row 1 from column 2, "dog" up
// column 5 from row 4 to row 2, "pig" down the slope from (3,3) to (5,1),
// "owl" up the other slope from (4,3) to (2,1).
QStringList Farm()
{
    return {"zcatz", "lzzzg", "zwpzo", "ziozd", "gzzzz"};
}

QStringList FarmWords()
{
    return {"cat", "dog", "pig", "owl"};
}

struct Cell {
    int row;
    int column;
};

} // namespace

Q_DECLARE_METATYPE(Cell)

class TestFrmSearch : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void setUpShowsEveryCell_data();
    void setUpShowsEveryCell();
    void windowAndMenu();
    void movesPlayTheLetter_data();
    void movesPlayTheLetter();
    void largeGridPagesAndEnds();
    void edgesHoldTheCursorSilently();
    void emptyCellIsSilent();
    void typedLettersDoNotMove();
    void wordsFoundByKeys();
    void lastWordMessagesInOrder_data();
    void lastWordMessagesInOrder();
    void missAndSelectionMessagesByKeys();
    void shortcutsWorkFromTheGrid();
    void timeRemainingReport();
    void escapeNoKeepsPendingMark();
    void exitMenuAsks();
    void closeBoxAsks();
    void escapeYesThroughGame();
    void wordsToFindList_data();
    void wordsToFindList();
    void wordsToFindMasked();
    void wordsToFindWhenAllFound();

private:
    // Opens a puzzle window on the state as it is and waits until it is active.
    bool open();
    // Moves the cursor to (row, column) of the grid with the arrow keys.
    void moveTo(int row, int column);
    QTableWidget *grid() const { return m_window->findChild<QTableWidget *>("flex"); }
    Cell cursor() const { return {grid()->currentRow() + 1, grid()->currentColumn() + 1}; }

    std::unique_ptr<FakePlatform> m_fake;
    std::unique_ptr<GameState> m_state;
    // The main menu and the other windows are not part of these tests: the
    // navigator only counts what it is asked, and keeps the shared list window.
    std::unique_ptr<FakeNavigator> m_navigator;
    std::unique_ptr<FrmSearch> m_window;
};

void TestFrmSearch::init()
{
    m_fake = std::make_unique<FakePlatform>();
    m_state = std::make_unique<GameState>();
    m_navigator = std::make_unique<FakeNavigator>();
}

void TestFrmSearch::cleanup()
{
    m_window.reset();
    m_navigator.reset();
    QVERIFY2(m_fake->dialogs.unexpected.isEmpty(),
             qPrintable(m_fake->dialogs.unexpected.join(QLatin1Char('|'))));
    m_state.reset();
    m_fake.reset();
}

bool TestFrmSearch::open()
{
    m_window = std::make_unique<FrmSearch>(*m_state, m_fake->platform, *m_navigator);
    if (!m_window->Form_Load())
        return false;
    m_window->show();
    m_window->activateWindow();
    return QTest::qWaitForWindowActive(m_window.get()) && focused() == grid();
}

void TestFrmSearch::moveTo(int row, int column)
{
    while (cursor().row < row)
        press(Qt::Key_Down);
    while (cursor().row > row)
        press(Qt::Key_Up);
    while (cursor().column < column)
        press(Qt::Key_Right);
    while (cursor().column > column)
        press(Qt::Key_Left);
}

void TestFrmSearch::setUpShowsEveryCell_data()
{
    QTest::addColumn<int>("side");
    QTest::newRow("5 x 5") << 5;
    QTest::newRow("50 x 50") << 50;
}

// The grid shows cell (r, c) of the puzzle in row r, column c, numbered from 1, with nothing of an earlier, larger puzzle.
void TestFrmSearch::setUpShowsEveryCell()
{
    QFETCH(int, side);
    // An earlier puzzle left letters everywhere.
    SetPuzzle(*m_state, PlainRows(50, QLatin1Char('q')), {});
    QStringList rows;
    for (int r = 0; r < side; ++r) {
        QString row;
        for (int c = 0; c < side; ++c)
            row += QChar('a' + (r * 7 + c * 3) % 26);
        rows.append(row);
    }
    SetPuzzle(*m_state, rows, {QStringLiteral("never")});
    QVERIFY(open());

    QTableWidget *flex = grid();
    QCOMPARE(flex->rowCount(), side);
    QCOMPARE(flex->columnCount(), side);
    int shown = 0;
    for (int r = 1; r <= side; ++r) {
        QCOMPARE(flex->verticalHeaderItem(r - 1)->text(), QString::number(r));
        for (int c = 1; c <= side; ++c) {
            const QTableWidgetItem *cell = flex->item(r - 1, c - 1);
            QVERIFY(cell);
            QCOMPARE(cell->text(), m_state->grid[r][c]);
            QCOMPARE(cell->data(Qt::AccessibleTextRole).toString(), m_state->grid[r][c]);
            QVERIFY(!(cell->flags() & Qt::ItemIsEditable));
            ++shown;
        }
    }
    for (int c = 1; c <= side; ++c)
        QCOMPARE(flex->horizontalHeaderItem(c - 1)->text(), QString::number(c));
    QCOMPARE(shown, side * side);

    // The cursor starts on row 1, column 1, and its letter is heard.
    QCOMPARE(cursor().row, 1);
    QCOMPARE(cursor().column, 1);
    QCOMPARE(m_fake->sound.played,
             QStringList{joinPath(m_fake->system.folder, m_state->grid[1][1] + ".wav")});
    QCOMPARE(m_window->marking().wordsRemaining(), 1);
    QVERIFY(!m_window->marking().markPending());
    QCOMPARE(m_window->marking().startTick(), m_fake->clock.ticks);
}

// The window, its grid and its menu carry the names and shortcuts players and screen readers rely on.
void TestFrmSearch::windowAndMenu()
{
    SetPuzzle(*m_state, Alphabet(), {QStringLiteral("abc")});
    QVERIFY(open());
    QCOMPARE(m_window->objectName(), QStringLiteral("frmSearch"));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Lexicove"));
    QCOMPARE(grid()->accessibleName(), QStringLiteral("Puzzle"));
    // Letter columns are 200 twips wide.
    QCOMPARE(grid()->columnWidth(0), qRound(200.0 / 1440.0 * m_window->logicalDpiX()));

    auto *menu = m_window->findChild<QMenu *>("mnuPuzzle");
    QVERIFY(menu);
    QCOMPARE(menu->title(), QStringLiteral("&Puzzle"));
    struct Item {
        const char *name;
        const char *caption;
        QKeySequence keys;
    };
    const QList<Item> items = {
        {"mnuFind", "&Words To Find", QKeySequence(Qt::CTRL | Qt::Key_W)},
        {"mnuTimeRemaining", "&Time Remaining", QKeySequence(Qt::CTRL | Qt::Key_T)},
        {"mnuSavePuzzle", "&Save Puzzle", QKeySequence(Qt::CTRL | Qt::Key_S)},
        {"mnuPrintPuzzle", "&Print Puzzle", QKeySequence(Qt::CTRL | Qt::Key_P)},
        {"mnuBraillePuzzle", "&Braille Puzzle", QKeySequence(Qt::CTRL | Qt::Key_B)},
        {"mnuExit", "E&xit Puzzle", QKeySequence()},
    };
    const QList<QAction *> actions = menu->actions();
    QCOMPARE(actions.size(), items.size());
    for (int i = 0; i < items.size(); ++i) {
        QCOMPARE(actions[i]->objectName(), QLatin1String(items[i].name));
        QCOMPARE(actions[i]->text(), QLatin1String(items[i].caption));
        QCOMPARE(actions[i]->shortcut(), items[i].keys);
        QVERIFY(!actions[i]->isSeparator());
    }

    // A screen reader hears the letter of the cell under the cursor.
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(grid());
    QVERIFY(table && table->tableInterface());
    QAccessibleInterface *cell = table->tableInterface()->cellAt(0, 1);
    QVERIFY(cell);
    QCOMPARE(cell->text(QAccessible::Name), QStringLiteral("b"));
}

void TestFrmSearch::movesPlayTheLetter_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<Cell>("from");
    QTest::addColumn<Cell>("to");
    const int none = Qt::NoModifier;
    const int ctrl = Qt::ControlModifier;
    QTest::newRow("Right") << int(Qt::Key_Right) << none << Cell{3, 3} << Cell{3, 4};
    QTest::newRow("Left") << int(Qt::Key_Left) << none << Cell{3, 3} << Cell{3, 2};
    QTest::newRow("Down") << int(Qt::Key_Down) << none << Cell{3, 3} << Cell{4, 3};
    QTest::newRow("Up") << int(Qt::Key_Up) << none << Cell{3, 3} << Cell{2, 3};
    QTest::newRow("Home") << int(Qt::Key_Home) << none << Cell{3, 3} << Cell{3, 1};
    QTest::newRow("End") << int(Qt::Key_End) << none << Cell{3, 3} << Cell{3, 5};
    QTest::newRow("Page Down") << int(Qt::Key_PageDown) << none << Cell{2, 3} << Cell{5, 3};
    QTest::newRow("Page Up") << int(Qt::Key_PageUp) << none << Cell{4, 3} << Cell{1, 3};
    QTest::newRow("Ctrl+Right") << int(Qt::Key_Right) << ctrl << Cell{3, 3} << Cell{3, 4};
    QTest::newRow("Ctrl+Left") << int(Qt::Key_Left) << ctrl << Cell{3, 3} << Cell{3, 2};
    QTest::newRow("Ctrl+Down") << int(Qt::Key_Down) << ctrl << Cell{3, 3} << Cell{4, 3};
    QTest::newRow("Ctrl+Up") << int(Qt::Key_Up) << ctrl << Cell{3, 3} << Cell{2, 3};
    QTest::newRow("Ctrl+Home") << int(Qt::Key_Home) << ctrl << Cell{3, 3} << Cell{1, 1};
    QTest::newRow("Ctrl+End") << int(Qt::Key_End) << ctrl << Cell{3, 3} << Cell{5, 5};
    QTest::newRow("Ctrl+Page Down") << int(Qt::Key_PageDown) << ctrl << Cell{2, 3} << Cell{5, 3};
    QTest::newRow("Ctrl+Page Up") << int(Qt::Key_PageUp) << ctrl << Cell{4, 3} << Cell{1, 3};
}

// Each cursor key moves the cursor and plays the sound file of the letter it lands on, at once.
void TestFrmSearch::movesPlayTheLetter()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(Cell, from);
    QFETCH(Cell, to);
    SetPuzzle(*m_state, Alphabet(), {QStringLiteral("abc")});
    QVERIFY(open());
    moveTo(from.row, from.column);
    m_fake->sound.played.clear();

    press(Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(cursor().row, to.row);
    QCOMPARE(cursor().column, to.column);
    const QString letter = m_state->grid[to.row][to.column];
    QCOMPARE(m_fake->sound.played, QStringList{joinPath(m_fake->system.folder, letter + ".wav")});
    QVERIFY(m_fake->dialogs.shown.isEmpty());
}

// On a 50 x 50 grid the page and end keys reach far cells, each heard as it is reached.
void TestFrmSearch::largeGridPagesAndEnds()
{
    QStringList rows;
    for (int r = 0; r < 50; ++r) {
        QString row;
        for (int c = 0; c < 50; ++c)
            row += QChar('a' + (r + c) % 26);
        rows.append(row);
    }
    SetPuzzle(*m_state, rows, {QStringLiteral("never")});
    QVERIFY(open());
    m_fake->sound.played.clear();

    press(Qt::Key_PageDown);
    const Cell paged = cursor();
    QVERIFY(paged.row > 1 && paged.row < 50);
    QCOMPARE(paged.column, 1);
    press(Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(cursor().row, 50);
    QCOMPARE(cursor().column, 50);
    press(Qt::Key_Home);
    QCOMPARE(cursor().column, 1);
    QCOMPARE(m_fake->sound.names(),
             (QStringList{m_state->grid[paged.row][1] + ".wav", m_state->grid[50][50] + ".wav",
                          m_state->grid[50][1] + ".wav"}));
}

// The cursor stays put at the grid's edges (it can't reach the number headers) and such a key plays nothing.
void TestFrmSearch::edgesHoldTheCursorSilently()
{
    SetPuzzle(*m_state, Alphabet(), {QStringLiteral("abc")});
    QVERIFY(open());
    m_fake->sound.played.clear();
    press(Qt::Key_Up);
    press(Qt::Key_Left);
    press(Qt::Key_PageUp);
    press(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(cursor().row, 1);
    QCOMPARE(cursor().column, 1);
    QCOMPARE(m_fake->sound.names(), QStringList{});
    // The next move plays normally.
    press(Qt::Key_Down);
    QCOMPARE(m_fake->sound.names(), QStringList{"f.wav"});

    moveTo(5, 5);
    m_fake->sound.played.clear();
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    press(Qt::Key_End);
    press(Qt::Key_PageDown);
    QCOMPARE(cursor().row, 5);
    QCOMPARE(cursor().column, 5);
    QCOMPARE(m_fake->sound.names(), QStringList{});
}

// A cell without a letter plays nothing; a letter is played by its text with blanks trimmed.
void TestFrmSearch::emptyCellIsSilent()
{
    SetPuzzle(*m_state, Alphabet(), {QStringLiteral("abc")});
    m_state->grid[1][2] = QString();
    m_state->grid[1][3] = QStringLiteral(" ");
    m_state->grid[1][4] = QStringLiteral(" d ");
    QVERIFY(open());
    m_fake->sound.played.clear();
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    QCOMPARE(cursor().column, 3);
    QCOMPARE(m_fake->sound.names(), QStringList{});
    press(Qt::Key_Right);
    QCOMPARE(m_fake->sound.played, QStringList{joinPath(m_fake->system.folder, "d.wav")});
}

// Typed letters, digits and other keys with no part in the game neither move the cursor nor play anything.
void TestFrmSearch::typedLettersDoNotMove()
{
    SetPuzzle(*m_state, Alphabet(), {QStringLiteral("abc")});
    QVERIFY(open());
    press(Qt::Key_Right);
    m_fake->sound.played.clear();
    // Each letter a search of its own: a table would jump down its column to
    // "q", "g", "l" or "v".
    const int interval = QApplication::keyboardInputInterval();
    QApplication::setKeyboardInputInterval(0);
    QTest::keyClicks(focused(), QStringLiteral("qglvQ1."));
    QApplication::setKeyboardInputInterval(interval);
    press(Qt::Key_Tab);
    QCOMPARE(focused(), grid());
    QCOMPARE(cursor().row, 1);
    QCOMPARE(cursor().column, 2);
    QCOMPARE(m_fake->sound.names(), QStringList{});
    QVERIFY(m_fake->dialogs.shown.isEmpty());
    QVERIFY(!m_window->marking().markPending());
}

// Words are found by Space on their two ends, in any kind of line, marked from either end.
void TestFrmSearch::wordsFoundByKeys()
{
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(open());
    const struct {
        Cell first;
        Cell second;
        QString word;
    } finds[] = {
        {{1, 4}, {1, 2}, "cat"},
        {{2, 5}, {4, 5}, "dog"},
        {{5, 1}, {3, 3}, "pig"},
    };
    for (const auto &find : finds) {
        moveTo(find.first.row, find.first.column);
        m_fake->sound.played.clear();
        press(Qt::Key_Space);
        QCOMPARE(m_fake->sound.names(), QStringList{"mark.wav"});
        QVERIFY(m_window->marking().markPending());
        moveTo(find.second.row, find.second.column);
        const int sounds = m_fake->sound.played.size();
        press(Qt::Key_Space);
        // The answer to the second press is the message alone.
        QCOMPARE(m_fake->sound.played.size(), sounds);
        QCOMPARE(m_fake->dialogs.lastPrompt(), FoundMessage(find.word));
        QVERIFY(!m_window->marking().markPending());
    }
    QCOMPARE(m_fake->dialogs.shown.size(), 3);
    QCOMPARE(m_window->marking().wordsRemaining(), 1);
    QCOMPARE(cursor().row, 3);
    QCOMPARE(cursor().column, 3);
}

void TestFrmSearch::lastWordMessagesInOrder_data()
{
    QTest::addColumn<qint32>("timeLimit");
    QTest::addColumn<quint32>("startTick");
    QTest::addColumn<quint32>("elapsed");
    QTest::addColumn<QString>("cheer");
    QTest::newRow("no limit") << 0 << 1000u << 7200000u << "cheer1.wav";
    QTest::newRow("exactly at the limit") << 1 << 1000u << 60000u << "cheer1.wav";
    QTest::newRow("1 ms past the limit") << 1 << 1000u << 60001u << "cheer2.wav";
    QTest::newRow("at the limit, counter wrapped") << 1 << 0xFFFFFFF0u << 60000u << "cheer1.wav";
    QTest::newRow("1 ms past, counter wrapped") << 1 << 0xFFFFFFF0u << 60001u << "cheer2.wav";
}

// The last word: its message, then the cheer for the time kept or not, then the all-found message; afterwards only "mark.wav".
void TestFrmSearch::lastWordMessagesInOrder()
{
    QFETCH(qint32, timeLimit);
    QFETCH(quint32, startTick);
    QFETCH(quint32, elapsed);
    QFETCH(QString, cheer);
    SetPuzzle(*m_state, Farm(), {QStringLiteral("owl")}, timeLimit);
    m_fake->clock.ticks = startTick;
    QVERIFY(open());
    // What had been played when each message came up.
    QList<QStringList> soundsAtMessage;
    m_fake->dialogs.onShow = [this, &soundsAtMessage](const ShownDialog &) {
        soundsAtMessage.append(m_fake->sound.names());
    };

    moveTo(4, 3);
    press(Qt::Key_Space);
    moveTo(2, 1);
    m_fake->clock.ticks = startTick + elapsed;
    m_fake->sound.played.clear();
    press(Qt::Key_Space);
    QCOMPARE(m_fake->dialogs.prompts(), (QStringList{FoundMessage("owl"), kAllFoundMessage}));
    QCOMPARE(soundsAtMessage, (QList<QStringList>{{}, {cheer}}));
    QCOMPARE(m_fake->sound.names(), QStringList{cheer});
    m_fake->dialogs.onShow = nullptr;

    // The puzzle is done: a valid selection gets nothing beyond "mark.wav".
    m_fake->sound.played.clear();
    press(Qt::Key_Space);
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    QCOMPARE(m_fake->sound.names(), (QStringList{"mark.wav", "z.wav", "w.wav", "i.wav", "o.wav"}));
    QCOMPARE(m_fake->dialogs.shown.size(), 2);
    QVERIFY(m_window->isVisible());
}

// A miss buzzes, the same cell twice and marks out of line get their messages, and each drops the selection.
void TestFrmSearch::missAndSelectionMessagesByKeys()
{
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(open());
    m_fake->sound.played.clear();
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    QCOMPARE(m_fake->dialogs.prompts(), QStringList{kSameCellMessage});
    QCOMPARE(m_fake->sound.names(), QStringList{"mark.wav"});
    QVERIFY(!m_window->marking().markPending());

    m_fake->dialogs.clear();
    m_fake->sound.played.clear();
    press(Qt::Key_Space);
    moveTo(3, 4);
    press(Qt::Key_Space);
    QCOMPARE(m_fake->dialogs.prompts(), QStringList{kNotInLineMessage});
    QCOMPARE(m_fake->sound.names().first(), QStringLiteral("mark.wav"));
    QVERIFY(!m_fake->sound.names().contains("wrong.wav"));

    m_fake->dialogs.clear();
    m_fake->sound.played.clear();
    press(Qt::Key_Space);
    moveTo(3, 5);
    press(Qt::Key_Space);
    QCOMPARE(m_fake->dialogs.shown.size(), 0);
    QCOMPARE(m_fake->sound.names(), (QStringList{"mark.wav", "o.wav", "wrong.wav"}));
    QVERIFY(!m_window->marking().markPending());
    QCOMPARE(m_window->marking().wordsRemaining(), 4);
}

// Ctrl+T, Ctrl+S, Ctrl+P and Ctrl+B answer from the grid without opening the menu and leave the game as it was.
void TestFrmSearch::shortcutsWorkFromTheGrid()
{
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(open());
    moveTo(1, 2);
    press(Qt::Key_Space);
    m_fake->sound.played.clear();
    press(Qt::Key_T, Qt::ControlModifier);
    press(Qt::Key_S, Qt::ControlModifier);
    press(Qt::Key_P, Qt::ControlModifier);
    press(Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(m_fake->dialogs.prompts(),
             (QStringList{"You have as much time as necessary to complete this puzzle.",
                          "Saving puzzles is not available yet.",
                          "Printing puzzles is not available yet.",
                          "Brailling puzzles is not available yet."}));
    QVERIFY(!m_window->findChild<QMenu *>("mnuPuzzle")->isVisible());
    QCOMPARE(focused(), grid());
    QCOMPARE(cursor().column, 2);
    QCOMPARE(m_fake->sound.names(), QStringList{});
    QVERIFY(m_window->marking().markPending());
    moveTo(1, 4);
    press(Qt::Key_Space);
    QCOMPARE(m_fake->dialogs.lastPrompt(), FoundMessage("cat"));
}

// Time Remaining reports the time left from the tick counter, the same across its wrap.
void TestFrmSearch::timeRemainingReport()
{
    SetPuzzle(*m_state, Farm(), FarmWords(), 5);
    m_fake->clock.ticks = 0xFFFFFC18u; // one second before the counter wraps
    QVERIFY(open());
    m_fake->clock.ticks = 60500u;      // 61.5 s later
    press(Qt::Key_T, Qt::ControlModifier);
    m_fake->clock.ticks = 0xFFFFFC18u + 300001u;
    press(Qt::Key_T, Qt::ControlModifier);
    QCOMPARE(m_fake->dialogs.prompts(),
             (QStringList{"You have 3 minutes, 58 seconds remaining.",
                          "You've spent more than your allowed time on this puzzle."}));
    QCOMPARE(m_fake->dialogs.shown.first().title, QStringLiteral("Lexicove"));
    QCOMPARE(m_fake->dialogs.shown.first().buttons, MessageButtons::Ok);
}

// Escape asks "Really exit this word search?"; No leaves the game exactly as it was, a pending mark included.
void TestFrmSearch::escapeNoKeepsPendingMark()
{
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(open());
    moveTo(1, 2);
    press(Qt::Key_Space);
    m_fake->dialogs.answers = {MessageResult::No};
    press(Qt::Key_Escape);
    QCOMPARE(m_fake->dialogs.shown.size(), 1);
    QCOMPARE(m_fake->dialogs.shown[0].prompt, kExitQuestion);
    QCOMPARE(m_fake->dialogs.shown[0].title, QStringLiteral("Confirmation"));
    QCOMPARE(m_fake->dialogs.shown[0].buttons, MessageButtons::YesNo);
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_navigator->mainMenuShown, 0);
    QCOMPARE(focused(), grid());
    QVERIFY(m_window->marking().markPending());

    moveTo(1, 4);
    m_fake->sound.played.clear();
    press(Qt::Key_Space);
    QCOMPARE(m_fake->dialogs.lastPrompt(), FoundMessage("cat"));
    QCOMPARE(m_fake->sound.names(), QStringList{});
}

// "E&xit Puzzle" (Alt+P, X) asks the same question: No stays, Yes shows the main menu and closes the window.
void TestFrmSearch::exitMenuAsks()
{
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(open());
    auto *menu = m_window->findChild<QMenu *>("mnuPuzzle");
    m_fake->dialogs.answers = {MessageResult::No, MessageResult::Yes};

    press(Qt::Key_P, Qt::AltModifier);
    QTRY_VERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_X);
    QTRY_COMPARE(m_fake->dialogs.shown.size(), 1);
    QCOMPARE(m_fake->dialogs.lastPrompt(), kExitQuestion);
    QTRY_VERIFY(!menu->isVisible());
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_navigator->mainMenuShown, 0);

    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    press(Qt::Key_P, Qt::AltModifier);
    QTRY_VERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_X);
    QTRY_VERIFY(!m_window->isVisible());
    QCOMPARE(m_navigator->mainMenuShown, 1);
    // The window closing itself asks nothing more.
    QCOMPARE(m_fake->dialogs.shown.size(), 2);
}

// The close box asks as Escape does: No keeps the window and the game, Yes brings the main menu back.
void TestFrmSearch::closeBoxAsks()
{
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(open());
    press(Qt::Key_Space);
    m_fake->dialogs.answers = {MessageResult::No, MessageResult::Yes};
    QVERIFY(!m_window->close());
    QCOMPARE(m_fake->dialogs.prompts(), QStringList{kExitQuestion});
    QVERIFY(m_window->isVisible());
    QVERIFY(m_window->marking().markPending());
    QCOMPARE(m_navigator->mainMenuShown, 0);

    QVERIFY(m_window->close());
    QCOMPARE(m_fake->dialogs.prompts(), (QStringList{kExitQuestion, kExitQuestion}));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_navigator->mainMenuShown, 1);
}

// Escape then Yes brings back the main menu with the focus in its list and unloads the window; the next puzzle starts with no mark pending.
void TestFrmSearch::escapeYesThroughGame()
{
    Game game(*m_state, m_fake->platform);
    QVERIFY(game.start());
    game.mainMenu().hide(); // as when the options window opened the puzzle
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(game.openPuzzle());
    QPointer<QWidget> first = game.currentWindow();
    QVERIFY(first && first->objectName() == QLatin1String("frmSearch"));
    QVERIFY(QTest::qWaitForWindowActive(first));
    press(Qt::Key_Space);
    QCOMPARE(m_fake->sound.names().last(), QStringLiteral("mark.wav"));

    m_fake->dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Escape);
    QTRY_VERIFY(first.isNull());
    QVERIFY(game.mainMenu().isVisible());
    QVERIFY(QTest::qWaitForWindowActive(&game.mainMenu()));
    QCOMPARE(focused(), game.mainMenu().findChild<QWidget *>("lstStyle"));

    // A new puzzle: its first Space is a first mark again.
    game.mainMenu().hide();
    QVERIFY(game.openPuzzle());
    QPointer<QWidget> second = game.currentWindow();
    QVERIFY(QTest::qWaitForWindowActive(second));
    m_fake->sound.played.clear();
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    QCOMPARE(m_fake->sound.names(), (QStringList{"c.wav", "mark.wav"}));
    QCOMPARE(m_fake->dialogs.prompts(), QStringList{kExitQuestion});
}

void TestFrmSearch::wordsToFindList_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("Escape") << "Escape";
    QTest::newRow("Enter") << "Enter";
    QTest::newRow("Return") << "Return";
    QTest::newRow("Alt+O") << "Alt+O";
    QTest::newRow("close box") << "close box";
}

// Ctrl+W lists the words still to find, the first selected and focused, in place of the puzzle; leaving the list brings the puzzle back exactly as it was.
void TestFrmSearch::wordsToFindList()
{
    QFETCH(QString, how);
    SetPuzzle(*m_state, Farm(), FarmWords());
    QVERIFY(open());
    moveTo(2, 5);
    press(Qt::Key_Space);
    moveTo(4, 5);
    press(Qt::Key_Space); // "dog" found
    moveTo(1, 2);
    press(Qt::Key_Space); // a mark pending at the start of "cat"
    m_fake->dialogs.clear();
    m_fake->sound.played.clear();

    press(Qt::Key_W, Qt::ControlModifier);
    FrmList &list = m_navigator->listWindow();
    QVERIFY(QTest::qWaitForWindowActive(&list));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(list.windowTitle(), QStringLiteral("Word List - Words Remaining"));
    QListWidget *entries = list.findChild<QListWidget *>("lstList");
    QCOMPARE(focused(), entries);
    QStringList shown;
    for (int i = 0; i < entries->count(); ++i)
        shown.append(entries->item(i)->text());
    QCOMPARE(shown, (QStringList{"cat", "pig", "owl"}));
    QCOMPARE(entries->currentRow(), 0);
    QVERIFY(entries->item(0)->isSelected());
    QVERIFY(!entries->accessibleName().isEmpty());
    press(Qt::Key_Down);
    QCOMPARE(entries->currentRow(), 1);

    if (how == "Escape")
        press(Qt::Key_Escape);
    else if (how == "Enter")
        press(Qt::Key_Enter);
    else if (how == "Return")
        press(Qt::Key_Return);
    else if (how == "Alt+O")
        press(Qt::Key_O, Qt::AltModifier);
    else
        QVERIFY(!list.close());

    QTRY_VERIFY(!list.isVisible());
    QVERIFY(m_window->isVisible());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QCOMPARE(focused(), grid());
    QCOMPARE(cursor().row, 1);
    QCOMPARE(cursor().column, 2);
    QVERIFY(m_window->marking().markPending());
    QCOMPARE(m_window->marking().wordsRemaining(), 3);
    QCOMPARE(m_fake->sound.names(), QStringList{});
    QVERIFY(m_fake->dialogs.shown.isEmpty());

    moveTo(1, 4);
    press(Qt::Key_Space);
    QCOMPARE(m_fake->dialogs.lastPrompt(), FoundMessage("cat"));
}

// With hidden words the list shows "x " per letter, and a word found since the last showing is gone.
void TestFrmSearch::wordsToFindMasked()
{
    SetPuzzle(*m_state, Farm(), FarmWords(), 0, true);
    QVERIFY(open());
    FrmList &list = m_navigator->listWindow();
    QListWidget *entries = list.findChild<QListWidget *>("lstList");
    const auto listed = [entries] {
        QStringList shown;
        for (int i = 0; i < entries->count(); ++i)
            shown.append(entries->item(i)->text());
        return shown;
    };

    press(Qt::Key_W, Qt::ControlModifier);
    QVERIFY(QTest::qWaitForWindowActive(&list));
    QCOMPARE(listed(), (QStringList{"x x x ", "x x x ", "x x x ", "x x x "}));
    press(Qt::Key_Escape);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));

    moveTo(5, 1);
    press(Qt::Key_Space);
    moveTo(3, 3);
    press(Qt::Key_Space); // "pig" found
    press(Qt::Key_W, Qt::ControlModifier);
    QVERIFY(QTest::qWaitForWindowActive(&list));
    QCOMPARE(listed(), (QStringList{"x x x ", "x x x ", "x x x "}));
    QCOMPARE(entries->currentRow(), 0);
    press(Qt::Key_Escape);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));

    m_state->hideWords = false; // read afresh each time the list is filled
    press(Qt::Key_W, Qt::ControlModifier);
    QVERIFY(QTest::qWaitForWindowActive(&list));
    QCOMPARE(listed(), (QStringList{"cat", "dog", "owl"}));
    press(Qt::Key_Return);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

// With every word found, Words To Find says "You've found all the words!" and shows no list.
void TestFrmSearch::wordsToFindWhenAllFound()
{
    SetPuzzle(*m_state, Farm(), {QStringLiteral("cat")});
    QVERIFY(open());
    moveTo(1, 2);
    press(Qt::Key_Space);
    moveTo(1, 4);
    press(Qt::Key_Space);
    m_fake->dialogs.clear();
    press(Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(m_fake->dialogs.prompts(), QStringList{"You've found all the words!"});
    QVERIFY(!m_navigator->listWindow().isVisible());
    QVERIFY(m_window->isVisible());
    QCOMPARE(focused(), grid());
}

QTEST_MAIN(TestFrmSearch)
#include "tst_frmsearch.moc"
