#include "core/game.h"
#include "core/gamestate.h"
#include "fakeplatform.h"
#include "keys.h"
#include "mainmenu.h"

#include <QDir>
#include <QSet>
#include <QTableWidget>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

using Cell = std::pair<int, int>; // row, column, from 1

// The first and last cell of a word in the grid, read in any of the 8 directions; a cell past the
// edge reads as nothing.
std::pair<Cell, Cell> locate(const GameState &s, const QString &word)
{
    const int n = static_cast<int>(word.size());
    for (int r = 1; r <= s.rows; ++r)
        for (int c = 1; c <= s.columns; ++c)
            for (int dr = -1; dr <= 1; ++dr)
                for (int dc = -1; dc <= 1; ++dc) {
                    QString run;
                    for (int k = 0; k < n && (dr || dc); ++k)
                        run += s.grid[qBound(0, r + k * dr, 50)][qBound(0, c + k * dc, 50)];
                    if (run == word)
                        return {{r, c}, {r + (n - 1) * dr, c + (n - 1) * dc}};
                }
    return {};
}

// Moves the puzzle's cursor with the arrow keys, as a player would.
void moveTo(const QTableWidget *flex, Cell target)
{
    while (flex->currentRow() + 1 != target.first)
        press(flex->currentRow() + 1 < target.first ? Qt::Key_Down : Qt::Key_Up);
    while (flex->currentColumn() + 1 != target.second)
        press(flex->currentColumn() + 1 < target.second ? Qt::Key_Right : Qt::Key_Left);
}

// Sets the puzzle's size with the options window's Rows and Columns buttons, answering their input
// boxes; true once the game holds that size.
bool setSize(FakePlatform &fake, const GameState &state, int rows, int columns)
{
    fake.dialogs.replies = {QString::number(rows), QString::number(columns)};
    press(Qt::Key_R, Qt::AltModifier);
    press(Qt::Key_C, Qt::AltModifier);
    return QTest::qWaitFor([&] { return state.columns == columns; }) && state.rows == rows;
}

} // namespace

class TestRoad : public QObject {
    Q_OBJECT

private slots:
    void makesAListAndPlaysIt();
    void everyLetterOfAnyListIsHeard();
};

// A whole game by keyboard alone: a list made in the editor and saved, back to the main menu; the
// list chosen, the puzzle's size set, every word found with the arrow keys and Space, the cheer and
// the closing message; Escape and Yes back to the main menu, and Escape to end.
void TestRoad::makesAListAndPlaysIt()
{
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));

    QVERIFY(openFromMenu(game, MenuChoice::CreateList));
    QCOMPARE(focusName(), "txtWord");
    for (const char *word : {" Cat ", "horse", "owl"}) {
        type(QString::fromLatin1(word));
        press(Qt::Key_Return);
    }
    fake.dialogs.replies = {"Animals"};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(game.mainMenu().isVisible());
    QCOMPARE(fake.dialogs.lastPrompt(), "Your word list has been saved");
    QCOMPARE(fake.readFile("animals.wds"), QByteArray("cat\r\nhorse\r\nowl\r\n"));

    QVERIFY(openFromMenu(game, MenuChoice::PlayPuzzle));
    QCOMPARE(entriesOf(qobject_cast<QListWidget *>(focused())),
             (QStringList{"animals - 3 words", "Choose random list"}));
    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed("frmOptions"));
    QCOMPARE(state.wordListPath, fake.path("animals.wds"));
    QCOMPARE(focusName(), "cmdRows");
    QVERIFY(setSize(fake, state, 8, 9));
    press(Qt::Key_D, Qt::AltModifier);
    press(Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(activeWindowNamed("frmSearch"));
    QVERIFY(state.allowDiagonal && state.allowHorizontal && state.allowVertical);
    auto *flex = qobject_cast<QTableWidget *>(focused());
    QVERIFY(flex);

    for (int i = 1; i <= 3; ++i) {
        const auto [first, last] = locate(state, state.words[i]);
        // Marked from the last letter to the first: either order finds it.
        moveTo(flex, last);
        press(Qt::Key_Space);
        QCOMPARE(fake.sound.names().last(), "mark.wav");
        moveTo(flex, first);
        QCOMPARE(fake.sound.names().last(), state.grid[first.first][first.second] + ".wav");
        press(Qt::Key_Space);
        QVERIFY(
            fake.dialogs.prompts().contains("Correct! You found the word " + state.words[i] + "!"));
    }
    QVERIFY(!fake.sound.names().contains("wrong.wav"));
    QCOMPARE(fake.sound.names().last(), "cheer1.wav");
    QVERIFY(fake.dialogs.lastPrompt().startsWith("You found all the words!"));

    fake.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Escape);
    QCOMPARE(fake.dialogs.lastPrompt(), "Really exit this word search?");
    QTRY_VERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), "lstStyle");
    QTRY_VERIFY(!game.currentWindow());
    press(Qt::Key_Escape);
    QVERIFY(game.ended());
    QVERIFY(fake.dialogs.unexpected.isEmpty());
}

// A puzzle made from a list typed in a text editor, with capitals and Polish, Greek and Cyrillic
// words: its letters' sounds and the marks' are made ready as it opens, and every cell the cursor
// is walked over asks for its letter's file and finds the game's sound for it: a capital, or final
// sigma, finds the one of its lower-case letter.
void TestRoad::everyLetterOfAnyListIsHeard()
{
    FakePlatform fake;
    const QDir sounds(LEXICOVE_SOURCE_DIR "/assets/sounds");
    fake.system.sounds = sounds.path();
    fake.writeFile(
        "world.wds",
        QString("Paris\r\nŁódź\r\nΑθήνα\r\nΣπάρτη\r\nΡόδος\r\nКиїв\r\nМосква\r\n").toUtf8());
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));
    QVERIFY(openFromMenu(game, MenuChoice::PlayPuzzle));
    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed("frmOptions"));
    QVERIFY(setSize(fake, state, 9, 9));
    press(Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(activeWindowNamed("frmSearch"));
    auto *flex = qobject_cast<QTableWidget *>(focused());
    QVERIFY(flex);

    QSet<QString> ready = {sounds.filePath("mark.wav"), sounds.filePath("wrong.wav"),
                           sounds.filePath("cheer1.wav"), sounds.filePath("cheer2.wav")};
    QString grid;
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c) {
            ready.insert(sounds.filePath(state.grid[r][c] + ".wav"));
            grid += state.grid[r][c];
        }
    for (const QString letter : {"P", "Ł", "ź", "Σ", "ς", "ї", "М"})
        QVERIFY2(grid.contains(letter), qPrintable(letter + " is not in the grid"));
    QCOMPARE(fake.sound.prepared.size(), 1);
    QCOMPARE(QSet<QString>(fake.sound.prepared[0].cbegin(), fake.sound.prepared[0].cend()), ready);

    QStringList unheard;
    for (int r = 1; r <= state.rows; ++r)
        for (int i = 1; i <= state.columns; ++i) {
            const Cell cell{r, r % 2 ? i : state.columns + 1 - i};
            fake.sound.played.clear();
            moveTo(flex, cell);
            if (r + i == 2) // the cursor starts there
                continue;
            const QString letter = state.grid[cell.first][cell.second];
            const QStringList asked = fake.sound.names(), found = fake.sound.found();
            if (asked != QStringList{letter + ".wav"} ||
                found != QStringList{sounds.filePath(letter.toCaseFolded() + ".wav")})
                unheard << letter + ": " + asked.join(' ') + " -> " + found.join(' ');
        }
    QVERIFY2(unheard.isEmpty(), qPrintable(unheard.join('\n')));
}

QTEST_MAIN(TestRoad)
#include "tst_road.moc"
