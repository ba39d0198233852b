#include "core/frmchoose.h"
#include "core/game.h"
#include "core/gamestate.h"
#include "fakeplatform.h"
#include "keys.h"
#include "mainmenu.h"

#include <QListWidget>
#include <QTableWidget>
#include <QtTest>

#include <optional>

using namespace lexicove;
using namespace lexicove::test;

namespace {

struct Cell {
    int row;
    int column;
};

// Where a word lies in the grid: its first and last cell, read forwards.
std::optional<std::pair<Cell, Cell>> locate(const GameState &state, const QString &word)
{
    const int length = static_cast<int>(word.size());
    for (int r = 1; r <= state.rows; ++r) {
        for (int c = 1; c <= state.columns; ++c) {
            for (int dr = -1; dr <= 1; ++dr) {
                for (int dc = -1; dc <= 1; ++dc) {
                    if (dr == 0 && dc == 0)
                        continue;
                    const int endRow = r + (length - 1) * dr;
                    const int endColumn = c + (length - 1) * dc;
                    if (endRow < 1 || endRow > state.rows || endColumn < 1 ||
                        endColumn > state.columns)
                        continue;
                    bool match = true;
                    for (int k = 0; k < length && match; ++k)
                        match = state.grid[r + k * dr][c + k * dc] == word.at(k);
                    if (match)
                        return std::make_pair(Cell{r, c}, Cell{endRow, endColumn});
                }
            }
        }
    }
    return std::nullopt;
}

// Moves the puzzle's cursor with the arrow keys, as a player would.
void moveTo(QTableWidget *flex, Cell target)
{
    while (flex->currentRow() + 1 < target.row)
        press(Qt::Key_Down);
    while (flex->currentRow() + 1 > target.row)
        press(Qt::Key_Up);
    while (flex->currentColumn() + 1 < target.column)
        press(Qt::Key_Right);
    while (flex->currentColumn() + 1 > target.column)
        press(Qt::Key_Left);
}

} // namespace

class TestRoad : public QObject {
    Q_OBJECT

private slots:
    void playsAWholeGameFromTheMainMenuAndBack();
    void createsEditsAndDeletesAListFromTheMainMenu();
};

void TestRoad::playsAWholeGameFromTheMainMenuAndBack()
{
    // A whole game by keyboard alone: chooser, options, every word found with
    // the arrow keys and Space, the cheer and the closing message, then
    // Escape and Yes back to the main menu, and Escape to end.
    FakePlatform fake;
    fake.writeFile(QStringLiteral("animals.wds"), "cat\r\nhorse\r\nowl\r\n");
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));

    press(Qt::Key_Return); // Play a Puzzle
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmWords")));
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    QVERIFY(!game.mainMenu().isVisible());
    auto *lists = qobject_cast<QListWidget *>(focused());
    QVERIFY(lists);
    QCOMPARE(lists->item(0)->text(), QStringLiteral("animals - 3 words"));
    QCOMPARE(lists->item(1)->text(), QStringLiteral("Choose random list"));

    press(Qt::Key_Return); // OK: the options window
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmOptions")));
    QCOMPARE(state.wordListPath, fake.path(QStringLiteral("animals.wds")));
    QCOMPARE(focusName(), QStringLiteral("cmdRows"));
    QCOMPARE(state.wordCount, 3);
    QCOMPARE(state.words[1], QStringLiteral("horse"));

    // Rows: 8, by the access key and the input box.
    fake.dialogs.replies = {QStringLiteral("8")};
    press(Qt::Key_R, Qt::AltModifier);
    QTRY_COMPARE(state.rows, qint16(8));
    // Alt+C belongs to Columns and Cancel alike, so it only moves the focus:
    // Tab to the columns button and press it with Space.
    QTRY_COMPARE(focusName(), QStringLiteral("cmdRows"));
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("cmdCols"));
    fake.dialogs.replies = {QStringLiteral("9")};
    press(Qt::Key_Space);
    QTRY_COMPARE(state.columns, qint16(9));
    press(Qt::Key_D, Qt::AltModifier); // diagonal words too
    press(Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmSearch")));
    QVERIFY(state.allowDiagonal && state.allowHorizontal && state.allowVertical);

    auto *flex = qobject_cast<QTableWidget *>(focused());
    QVERIFY(flex);
    QCOMPARE(flex->objectName(), QStringLiteral("flex"));
    QCOMPARE(flex->currentRow(), 0);
    QCOMPARE(flex->currentColumn(), 0);
    fake.sound.played.clear();
    fake.dialogs.shown.clear();

    const QStringList found = {state.words[1], state.words[2], state.words[3]};
    for (const QString &word : found) {
        const auto place = locate(state, word);
        QVERIFY2(place.has_value(), qPrintable(word));
        // Mark from the last letter to the first: either order finds it.
        moveTo(flex, place->second);
        press(Qt::Key_Space);
        QCOMPARE(fake.sound.names().last(), QStringLiteral("mark.wav"));
        moveTo(flex, place->first);
        const QString letterSound = state.grid[place->first.row][place->first.column] + ".wav";
        if (place->first.row != place->second.row || place->first.column != place->second.column)
            QCOMPARE(fake.sound.names().last(), letterSound);
        press(Qt::Key_Space);
        QVERIFY(fake.dialogs.prompts().contains("Correct! You found the word " + word + "!"));
    }
    QVERIFY(!fake.sound.names().contains(QStringLiteral("wrong.wav")));
    QCOMPARE(fake.sound.names().last(), QStringLiteral("cheer1.wav"));
    QCOMPARE(fake.dialogs.lastPrompt(),
             QStringLiteral("You found all the words! Nice work! You may press escape to quit "
                            "this puzzle, or use one of the options in the puzzle menu to save, "
                            "print, or braille this puzzle. Thanks for playing!"));

    fake.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Escape);
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("Really exit this word search?"));
    QCOMPARE(fake.dialogs.shown.last().title, QStringLiteral("Confirmation"));
    QTRY_VERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    QTRY_VERIFY(!game.currentWindow());
    press(Qt::Key_Escape);
    QVERIFY(game.ended());
    QVERIFY(fake.dialogs.unexpected.isEmpty());
}

void TestRoad::createsEditsAndDeletesAListFromTheMainMenu()
{
    // The word list roads: create a list and save it, open it again to edit
    // and save under the same name, then delete it from the chooser; the main
    // menu comes back after each, its last choice still selected.
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));

    press(Qt::Key_Down);
    press(Qt::Key_Return); // Create Word List
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmCreate")));
    QCOMPARE(focusName(), QStringLiteral("txtWord"));
    for (const char *word : {"  Big Cat  ", "owl"}) {
        QTest::keyClicks(focused(), QString::fromLatin1(word));
        press(Qt::Key_Return);
    }
    fake.dialogs.replies = {QStringLiteral("Zoo")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(game.mainMenu().isVisible());
    QCOMPARE(fake.readFile(QStringLiteral("zoo.wds")), QByteArray("bigcat\r\nowl\r\n"));
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("Your word list has been saved"));
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));

    press(Qt::Key_Down);
    press(Qt::Key_Return); // Edit Existing Word List
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmWords")));
    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmCreate")));
    QTest::keyClicks(focused(), QStringLiteral("emu"));
    press(Qt::Key_Return);
    fake.dialogs.replies = {QStringLiteral("zoo")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(game.mainMenu().isVisible());
    QCOMPARE(fake.dialogs.shown.at(fake.dialogs.shown.size() - 2).defaultText,
             QStringLiteral("zoo"));
    QCOMPARE(fake.readFile(QStringLiteral("zoo.wds")), QByteArray("bigcat\r\nowl\r\nemu\r\n"));

    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    press(Qt::Key_Return); // Edit Existing Word List again
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmWords")));
    QCOMPARE(qobject_cast<QListWidget *>(focused())->item(0)->text(),
             QStringLiteral("zoo - 3 words"));
    fake.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Delete);
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("The word list was deleted."));
    QVERIFY(!QFile::exists(fake.path(QStringLiteral("zoo.wds"))));
    press(Qt::Key_Escape);
    QTRY_VERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    QCOMPARE(game.mainMenu().findChild<QListWidget *>("lstStyle")->currentRow(), 2);
    QVERIFY(fake.dialogs.unexpected.isEmpty());
}

QTEST_MAIN(TestRoad)
#include "tst_road.moc"
