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

const QString kNoLists =
    QStringLiteral("No word lists are available. Please choose the Create Word List option first.");

// A run of the game on a scripted platform.
struct Run {
    FakePlatform fake;
    GameState state;
    Game game{state, fake.platform};
    QListWidget *list() { return game.mainMenu().findChild<QListWidget *>("lstStyle"); }
};

} // namespace

class TestFrmChoose : public QObject {
    Q_OBJECT

private slots:
    void opensReadyForEnterWithTheGeneratorSeeded();
    void countsWordListsAfresh();
    void escapeExitAndCloseBoxEndTheProgram();
    void failedSystemDirectoryEndsWithoutAWindow();
    void choicesSetTheGameStateAndTheMenuComesBackAsLeft();
};

void TestFrmChoose::opensReadyForEnterWithTheGeneratorSeeded()
{
    // The menu opens with its four choices, "Play a Puzzle" selected and the
    // focus in the list; Tab goes list, OK, Exit; the generator is seeded
    // once, from the seconds since midnight.
    Run run;
    run.fake.clock.seconds = 45296.25;
    QVERIFY(startGame(run.game));
    QCOMPARE(run.game.mainMenu().windowTitle(), QStringLiteral("Lexicove - Select Option"));
    QCOMPARE(entriesOf(run.list()), (QStringList{"Play a Puzzle", "Create Word List",
                                                 "Edit Existing Word List", "Count Word Lists"}));
    QVERIFY(run.list()->item(0)->isSelected());
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));
    QVERIFY(run.game.mainMenu().findChild<QPushButton *>("cmdOK")->isDefault());
    for (const char *name : {"cmdOK", "cmdExit", "lstStyle"}) {
        press(Qt::Key_Tab);
        QCOMPARE(focusName(), QString::fromLatin1(name));
    }
    press(Qt::Key_Down);
    QCOMPARE(run.fake.random.seeds, (QList<double>{45296.25}));
    QCOMPARE(run.state.systemDirectory, QStringLiteral("/usr/lib"));
}

void TestFrmChoose::countsWordListsAfresh()
{
    // "Count Word Lists" reports the *.wds files (any case of the extension,
    // empty ones too) read anew at each request, with no singular form; the menu stays, the
    // choice selected and the focus in its list.
    Run run;
    QVERIFY(startGame(run.game));
    const auto count = [&](int expected) {
        pickFromMenu(run.game, MenuChoice::CountLists);
        QCOMPARE(run.fake.dialogs.lastPrompt(),
                 QStringLiteral("You have a total of %1 word lists.").arg(expected));
        QCOMPARE(run.fake.dialogs.shown.last().title, kAppTitle);
        QVERIFY(run.game.mainMenu().isVisible());
        QCOMPARE(focusName(), QStringLiteral("lstStyle"));
        QCOMPARE(run.list()->currentRow(), 3);
    };
    count(0);
    for (const char *name : {"Birds.WDS", "empty.wds", "notes.txt", "old.wds.bak"})
        run.fake.writeFile(name, "");
    count(2);
    QVERIFY(QFile::remove(run.fake.path("empty.wds")));
    count(1);
}

void TestFrmChoose::escapeExitAndCloseBoxEndTheProgram()
{
    // Escape, the access key of "E&xit" and the close box each end the
    // program without asking anything.
    for (const char *keys : {"Esc", "Alt+X", ""}) {
        Run run;
        QVERIFY(startGame(run.game));
        pressKeys(keys);
        if (!*keys)
            run.game.mainMenu().close();
        QTRY_VERIFY(run.game.ended());
        QVERIFY(!run.game.mainMenu().isVisible());
        QVERIFY(run.fake.dialogs.shown.isEmpty());
    }
}

void TestFrmChoose::failedSystemDirectoryEndsWithoutAWindow()
{
    // A system folder shorter than 3 characters (a failed query included)
    // gives the "Error" message and ends the program before any window shows
    // or the generator is seeded; three characters are enough.
    for (const QString &answer : {QString(), QStringLiteral("C:"), QStringLiteral("C:\\")}) {
        Run run;
        run.fake.system.systemDir = answer;
        const bool starts = answer.size() >= 3;
        QCOMPARE(run.game.start(), starts);
        QCOMPARE(run.game.ended(), !starts);
        QCOMPARE(run.game.mainMenu().isVisible(), starts);
        QCOMPARE(run.fake.random.seeds.size(), starts ? 1 : 0);
        QCOMPARE(run.fake.dialogs.prompts(),
                 QStringList(!starts, "There was an error starting the program, please try "
                                      "again. The program will now exit."));
        QVERIFY(starts || run.fake.dialogs.shown.first().title == "Error");
    }
}

void TestFrmChoose::choicesSetTheGameStateAndTheMenuComesBackAsLeft()
{
    // Each choice sets its game state fields before the next window opens;
    // with no word lists the chooser sends the player straight back to a
    // visible menu, the focus in its list and the used choice selected.
    Run run;
    QVERIFY(startGame(run.game));
    for (const auto &[choice, mode, editing] :
         {std::tuple{MenuChoice::PlayPuzzle, "options", false},
          std::tuple{MenuChoice::EditList, "edit", true}}) {
        run.state.editingList = !editing;
        pickFromMenu(run.game, choice);
        QCOMPARE(run.state.chooserMode, mode);
        QCOMPARE(run.state.editingList, editing);
        QCOMPARE(run.fake.dialogs.lastPrompt(), kNoLists);
        QTRY_VERIFY(run.game.mainMenu().isVisible());
        QCOMPARE(run.list()->currentRow(), static_cast<int>(choice));
        QCOMPARE(focusName(), "lstStyle");
    }

    // Create Word List leaves the chooser mode as an earlier choice left it.
    QVERIFY(openFromMenu(run.game, MenuChoice::CreateList));
    QCOMPARE(run.state.chooserMode, QStringLiteral("edit"));
    QCOMPARE(run.state.editingList, false);
    QVERIFY(!run.game.mainMenu().isVisible());
    QVERIFY(run.fake.dialogs.unexpected.isEmpty());
}

QTEST_MAIN(TestFrmChoose)
#include "tst_frmchoose.moc"
