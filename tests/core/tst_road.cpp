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

struct Cell {
    int row = 0;
    int column = 0;
};

// The first and last cell of a word in the grid, in any of the 8 directions.
bool locate(const GameState &s, const QString &word, Cell &first, Cell &last)
{
    const int n = static_cast<int>(word.size());
    for (int r = 1; r <= s.rows; ++r)
        for (int c = 1; c <= s.columns; ++c)
            for (int d = 0; d < 9; ++d) {
                const int dr = d / 3 - 1, dc = d % 3 - 1;
                const int er = r + (n - 1) * dr, ec = c + (n - 1) * dc;
                if (d == 4 || er < 1 || er > s.rows || ec < 1 || ec > s.columns)
                    continue;
                int k = 0;
                while (k < n && s.grid[r + k * dr][c + k * dc] == word.at(k))
                    ++k;
                if (k == n) {
                    first = {r, c};
                    last = {er, ec};
                    return true;
                }
            }
    return false;
}

// Moves the puzzle's cursor with the arrow keys, as a player would.
void moveTo(const QTableWidget *flex, Cell target)
{
    while (flex->currentRow() + 1 != target.row)
        press(flex->currentRow() + 1 < target.row ? Qt::Key_Down : Qt::Key_Up);
    while (flex->currentColumn() + 1 != target.column)
        press(flex->currentColumn() + 1 < target.column ? Qt::Key_Right : Qt::Key_Left);
}

// The options window's Rows and Columns, by their access keys, answered with
// the sizes given; true once the game state holds them.
[[nodiscard]] bool setSize(FakePlatform &fake, const GameState &state, int rows, int columns)
{
    fake.dialogs.replies = {QString::number(rows)};
    press(Qt::Key_R, Qt::AltModifier);
    if (!QTest::qWaitFor([&] { return state.rows == rows; }))
        return false;
    fake.dialogs.replies = {QString::number(columns)};
    press(Qt::Key_C, Qt::AltModifier);
    return QTest::qWaitFor([&] { return state.columns == columns; });
}

} // namespace

class TestRoad : public QObject {
    Q_OBJECT

private slots:
    void playsAWholeGameFromTheMainMenuAndBack();
    void createsEditsAndDeletesAListFromTheMainMenu();
    void everyLetterOfAnyListIsHeard();
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

    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmWords")));
    QCOMPARE(entriesOf(qobject_cast<QListWidget *>(focused())),
             (QStringList{"animals - 3 words", "Choose random list"}));
    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmOptions")));
    QCOMPARE(state.wordListPath, fake.path(QStringLiteral("animals.wds")));
    QCOMPARE(focusName(), QStringLiteral("cmdRows"));

    QVERIFY(setSize(fake, state, 8, 9));
    press(Qt::Key_D, Qt::AltModifier);
    press(Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmSearch")));
    QVERIFY(state.allowDiagonal && state.allowHorizontal && state.allowVertical);
    auto *flex = qobject_cast<QTableWidget *>(focused());
    QVERIFY(flex);

    for (int i = 1; i <= 3; ++i) {
        Cell first, last;
        QVERIFY(locate(state, state.words[i], first, last));
        // Marked from the last letter to the first: either order finds it.
        moveTo(flex, last);
        press(Qt::Key_Space);
        QCOMPARE(fake.sound.names().last(), QStringLiteral("mark.wav"));
        moveTo(flex, first);
        QCOMPARE(fake.sound.names().last(), state.grid[first.row][first.column] + ".wav");
        press(Qt::Key_Space);
        QVERIFY(fake.dialogs.prompts().contains("Correct! You found the word " + state.words[i] +
                                                "!"));
    }
    QVERIFY(!fake.sound.names().contains(QStringLiteral("wrong.wav")));
    QCOMPARE(fake.sound.names().last(), QStringLiteral("cheer1.wav"));
    QVERIFY(fake.dialogs.lastPrompt().startsWith(QStringLiteral("You found all the words!")));

    fake.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Escape);
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("Really exit this word search?"));
    QTRY_VERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    QTRY_VERIFY(!game.currentWindow());
    press(Qt::Key_Escape);
    QVERIFY(game.ended());
    QVERIFY(fake.dialogs.unexpected.isEmpty());
}

void TestRoad::createsEditsAndDeletesAListFromTheMainMenu()
{
    // Create a list and save it, edit it and save under the offered name,
    // then delete it from the chooser; the main menu comes back after each,
    // its last choice still selected.
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));

    QVERIFY(openFromMenu(game, MenuChoice::CreateList));
    QCOMPARE(focusName(), QStringLiteral("txtWord"));
    for (const char *word : {"  Big Cat  ", "owl"}) {
        type(QString::fromLatin1(word));
        press(Qt::Key_Return);
    }
    fake.dialogs.replies = {QStringLiteral("Zoo")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(game.mainMenu().isVisible());
    QCOMPARE(fake.readFile(QStringLiteral("zoo.wds")), QByteArray("bigcat\r\nowl\r\n"));
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("Your word list has been saved"));

    QVERIFY(openFromMenu(game, MenuChoice::EditList));
    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmCreate")));
    type(QStringLiteral("emu"));
    press(Qt::Key_Return);
    fake.dialogs.onShow = [](const ShownDialog &box) { QCOMPARE(box.defaultText, "zoo"); };
    fake.dialogs.replies = {QStringLiteral("zoo")};
    press(Qt::Key_S, Qt::AltModifier);
    fake.dialogs.onShow = nullptr;
    QTRY_VERIFY(game.mainMenu().isVisible());
    QCOMPARE(fake.readFile(QStringLiteral("zoo.wds")), QByteArray("bigcat\r\nowl\r\nemu\r\n"));

    QVERIFY(openFromMenu(game, MenuChoice::EditList));
    QCOMPARE(entriesOf(qobject_cast<QListWidget *>(focused())), QStringList{"zoo - 3 words"});
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

void TestRoad::everyLetterOfAnyListIsHeard()
{
    // A puzzle made from a list typed in a text editor, with capitals and Polish, Greek and
    // Cyrillic words: its letters' sounds and the marks' are made ready as it opens, and every
    // cell the cursor is walked over asks for its letter's file and finds the game's sound for
    // it: a capital, or final sigma, finds the one of its lower-case letter.
    FakePlatform fake;
    const QDir sounds(QStringLiteral(LEXICOVE_SOURCE_DIR "/assets/sounds"));
    fake.system.sounds = sounds.path();
    fake.writeFile(
        QStringLiteral("world.wds"),
        QStringLiteral("Paris\r\nŁódź\r\nΑθήνα\r\nΣπάρτη\r\nΡόδος\r\nКиїв\r\nМосква\r\n").toUtf8());
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));
    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmWords")));
    press(Qt::Key_Return);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmOptions")));
    QVERIFY(setSize(fake, state, 9, 9));
    press(Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmSearch")));
    auto *flex = qobject_cast<QTableWidget *>(focused());
    QVERIFY(flex);

    QSet<QString> ready = {sounds.filePath("mark.wav"), sounds.filePath("wrong.wav"),
                           sounds.filePath("cheer1.wav"), sounds.filePath("cheer2.wav")};
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            ready.insert(sounds.filePath(state.grid[r][c] + ".wav"));
    QCOMPARE(fake.sound.prepared.size(), 1);
    QCOMPARE(QSet<QString>(fake.sound.prepared[0].cbegin(), fake.sound.prepared[0].cend()), ready);

    QStringList unheard;
    for (int r = 1; r <= state.rows; ++r)
        for (int i = 1; i <= state.columns; ++i) {
            const Cell cell{r, r % 2 ? i : state.columns + 1 - i};
            fake.sound.played.clear();
            moveTo(flex, cell);
            const QString letter = state.grid[cell.row][cell.column];
            if (r + i == 2) // the cursor starts there
                continue;
            const QStringList asked = fake.sound.names(), found = fake.sound.found();
            if (asked != QStringList{letter + ".wav"} ||
                found != QStringList{sounds.filePath(letter.toCaseFolded() + ".wav")})
                unheard << letter + ": " + asked.join(' ') + " -> " + found.join(' ');
        }
    QVERIFY2(unheard.isEmpty(), qPrintable(unheard.join('\n')));
    const QString grid = [&] {
        QString all;
        for (int r = 1; r <= state.rows; ++r)
            for (int c = 1; c <= state.columns; ++c)
                all += state.grid[r][c];
        return all;
    }();
    for (const QString letter : {"P", "Ł", "ź", "Σ", "ς", "ї", "М"})
        QVERIFY2(grid.contains(letter), qPrintable(letter + " is not in the grid"));
}

QTEST_MAIN(TestRoad)
#include "tst_road.moc"
