#include "core/frmchoose.h"
#include "core/game.h"
#include "core/gamestate.h"
#include "fakeplatform.h"
#include "keys.h"
#include "mainmenu.h"

#include <QListWidget>
#include <QPushButton>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QString kNoLists = QStringLiteral(
    "No word lists are available. Please choose the Create Word List option first.");

} // namespace

class TestFrmChoose : public QObject {
    Q_OBJECT

private slots:
    void opensWithFirstChoiceSelectedAndFocused();
    void seedsTheGeneratorOnceFromTheTimeOfDay();
    void countsWordListsAfresh();
    void escapeAndExitEndTheProgram();
    void closeBoxEndsTheProgram();
    void failedSystemDirectoryEndsWithoutAWindow();
    void choicesSetTheGameStateAndKeepTheMenuWhenNothingOpens();
    void tabOrderIsListOkExit();
};

void TestFrmChoose::opensWithFirstChoiceSelectedAndFocused()
{
    // The menu opens titled, with its four choices in order, "Play a Puzzle"
    // selected and the focus in the list, so Enter alone starts a puzzle.
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));
    FrmChoose &menu = game.mainMenu();
    QCOMPARE(menu.windowTitle(), QStringLiteral("Lexicove - Select Option"));
    auto *list = menu.findChild<QListWidget *>(QStringLiteral("lstStyle"));
    QVERIFY(list);
    QCOMPARE(entriesOf(list), (QStringList{"Play a Puzzle", "Create Word List",
                                           "Edit Existing Word List", "Count Word Lists"}));
    QCOMPARE(list->currentRow(), 0);
    QVERIFY(list->item(0)->isSelected());
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));
    QCOMPARE(menu.findChild<QPushButton *>("cmdOK")->text(), QStringLiteral("&OK"));
    QVERIFY(menu.findChild<QPushButton *>("cmdOK")->isDefault());
    QCOMPARE(menu.findChild<QPushButton *>("cmdExit")->text(), QStringLiteral("E&xit"));
    QCOMPARE(list->accessibleName().isEmpty(), false);
    QCOMPARE(menu.findChild<QPushButton *>("cmdExit")->accessibleName(), QStringLiteral("Exit"));
}

void TestFrmChoose::seedsTheGeneratorOnceFromTheTimeOfDay()
{
    // Start-up seeds the one random generator from the seconds since
    // midnight, and nothing else seeds it.
    FakePlatform fake;
    fake.clock.seconds = 45296.25;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(game.start());
    QCOMPARE(fake.random.seeds, (QList<double>{45296.25}));
    QVERIFY(QTest::qWaitForWindowActive(&game.mainMenu()));
    press(Qt::Key_Up);
    press(Qt::Key_Down);
    QCOMPARE(fake.random.seeds.size(), 1);
    QCOMPARE(state.systemDirectory, QStringLiteral("/usr/lib"));
}

void TestFrmChoose::countsWordListsAfresh()
{
    // "Count Word Lists" reports the *.wds files of the folder, read anew at
    // each request, with no singular form; the menu stays with the focus in
    // its list and the choice still selected.
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));
    FrmChoose &menu = game.mainMenu();
    auto *list = menu.findChild<QListWidget *>(QStringLiteral("lstStyle"));

    press(Qt::Key_End);
    QCOMPARE(list->currentRow(), 3);
    press(Qt::Key_Return);
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("You have a total of 0 word lists."));
    QCOMPARE(fake.dialogs.shown.last().title, kAppTitle);
    QVERIFY(menu.isVisible());
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));

    fake.writeFile(QStringLiteral("animals.wds"), "cat\r\n");
    press(Qt::Key_Return);
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("You have a total of 1 word lists."));

    fake.writeFile(QStringLiteral("Birds.WDS"), "owl\r\n");
    fake.writeFile(QStringLiteral("fruit.wds"), "");
    fake.writeFile(QStringLiteral("notes.txt"), "not a list\r\n");
    fake.writeFile(QStringLiteral("old.wds.bak"), "not a list\r\n");
    press(Qt::Key_Return);
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("You have a total of 3 word lists."));

    QVERIFY(QFile::remove(fake.path(QStringLiteral("fruit.wds"))));
    press(Qt::Key_Return);
    QCOMPARE(fake.dialogs.lastPrompt(), QStringLiteral("You have a total of 2 word lists."));
    QCOMPARE(list->currentRow(), 3);
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));
    QVERIFY(fake.dialogs.unexpected.isEmpty());
}

void TestFrmChoose::escapeAndExitEndTheProgram()
{
    // Escape ends the program at once without asking, and so does the access
    // key of "E&xit".
    {
        FakePlatform fake;
        GameState state;
        Game game(state, fake.platform);
        QVERIFY(startGame(game));
        press(Qt::Key_Escape);
        QVERIFY(game.ended());
        QVERIFY(!game.mainMenu().isVisible());
        QVERIFY(fake.dialogs.shown.isEmpty());
    }
    {
        FakePlatform fake;
        GameState state;
        Game game(state, fake.platform);
        QVERIFY(startGame(game));
        press(Qt::Key_X, Qt::AltModifier);
        QTRY_VERIFY(game.ended());
        QVERIFY(!game.mainMenu().isVisible());
    }
}

void TestFrmChoose::closeBoxEndsTheProgram()
{
    // Closing the main menu by its own close command ends the program.
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));
    game.mainMenu().close();
    QVERIFY(game.ended());
    QVERIFY(fake.dialogs.shown.isEmpty());
}

void TestFrmChoose::failedSystemDirectoryEndsWithoutAWindow()
{
    // A system folder shorter than 3 characters (a failed query included)
    // gives the "Error" message and ends the program with no window shown.
    for (const QString &answer : {QString(), QStringLiteral("C:")}) {
        FakePlatform fake;
        fake.system.systemDir = answer;
        GameState state;
        Game game(state, fake.platform);
        QVERIFY(!game.start());
        QVERIFY(game.ended());
        QVERIFY(!game.mainMenu().isVisible());
        QCOMPARE(fake.dialogs.shown.size(), 1);
        QCOMPARE(fake.dialogs.shown.first().prompt,
                 QStringLiteral("There was an error starting the program, please try again. "
                                "The program will now exit."));
        QCOMPARE(fake.dialogs.shown.first().title, QStringLiteral("Error"));
        QCOMPARE(fake.dialogs.shown.first().buttons, MessageButtons::Ok);
        QVERIFY(fake.random.seeds.isEmpty());
    }
    // Three characters are enough.
    FakePlatform fake;
    fake.system.systemDir = QStringLiteral("C:\\");
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(game.start());
    QVERIFY(fake.dialogs.shown.isEmpty());
}

void TestFrmChoose::choicesSetTheGameStateAndKeepTheMenuWhenNothingOpens()
{
    // Each choice sets the game state fields of its row; with no word lists
    // the chooser sends the player straight back to a visible menu, the
    // focus in its list and the used choice still selected.
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));
    FrmChoose &menu = game.mainMenu();
    auto *list = menu.findChild<QListWidget *>(QStringLiteral("lstStyle"));

    state.editingList = true;
    press(Qt::Key_Return); // Play a Puzzle
    QCOMPARE(state.chooserMode, QStringLiteral("options"));
    QCOMPARE(state.editingList, false);
    QCOMPARE(fake.dialogs.lastPrompt(), kNoLists);
    QTRY_VERIFY(menu.isVisible());
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));
    QCOMPARE(list->currentRow(), 0);

    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return); // Edit Existing Word List
    QCOMPARE(state.chooserMode, QStringLiteral("edit"));
    QCOMPARE(state.editingList, true);
    QCOMPARE(fake.dialogs.lastPrompt(), kNoLists);
    QTRY_VERIFY(menu.isVisible());
    QCOMPARE(list->currentRow(), 2);
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));

    // Create Word List leaves the chooser mode as an earlier choice left it.
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    QCOMPARE(state.chooserMode, QStringLiteral("edit"));
    QCOMPARE(state.editingList, false);
    QVERIFY(fake.dialogs.unexpected.isEmpty());
}

void TestFrmChoose::tabOrderIsListOkExit()
{
    // Tab goes from the list to OK to Exit and back to the list.
    FakePlatform fake;
    GameState state;
    Game game(state, fake.platform);
    QVERIFY(startGame(game));
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("cmdOK"));
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("cmdExit"));
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));
}

QTEST_MAIN(TestFrmChoose)
#include "tst_frmchoose.moc"
