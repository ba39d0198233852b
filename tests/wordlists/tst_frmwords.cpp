// The word list chooser, driven from the keyboard: its entries in both modes,
// the random draw, OK and Cancel, and deleting lists.

#include "core/frmchoose.h"
#include "core/game.h"
#include "core/gamestate.h"
#include "fakeplatform.h"
#include "keys.h"
#include "mainmenu.h"
#include "windowrig.h"
#include "wordlists/frmwords.h"

#include <QFile>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <cmath>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QString kNoLists = QStringLiteral(
    "No word lists are available. Please choose the Create Word List option first.");
const QString kNothingToRemove =
    QStringLiteral("Your list of files is empty. There is nothing to remove.");
const QString kDeleted = QStringLiteral("The word list was deleted.");

// The animals and birds lists of the examples: 12 lines and 1 line.
void writeAnimalsAndBirds(const FakePlatform &fp)
{
    QByteArray animals;
    for (int i = 1; i <= 12; ++i)
        animals += "animal" + QByteArray::number(i) + "\r\n";
    fp.writeFile(QStringLiteral("animals.wds"), animals);
    fp.writeFile(QStringLiteral("birds.wds"), "owl\r\n");
}

QListWidget *listOf(QWidget *window)
{
    return window->findChild<QListWidget *>(QStringLiteral("lstWords"));
}

// A chooser opened straight on a recording navigator, as the main menu would
// open it in the given mode.
struct ChooserRig : WindowRig<FrmWords> {
    explicit ChooserRig(const QString &mode)
    {
        state.chooserMode = mode;
        state.editingList = mode == kChooserEdit;
    }
};

} // namespace

class TestFrmWords : public QObject {
    Q_OBJECT

private slots:
    void entriesToPlay();
    void entriesToEdit();
    void emptyAndUnreadableFilesShowNoWords();
    void chosenListGoesToOptions();
    void randomDraw_data();
    void randomDraw();
    void singleListIsTheRandomChoice();
    void escapeAndCancelGoBack();
    void closeBoxIsCancel();
    void tabOrder();
    void editChoiceOpensEditor();
    void deleteEntry_data();
    void deleteEntry();
    void deleteAnsweredNo();
    void deleteIgnoredInPlayMode();
    void okOnEmptyList();
    void noListsAtAll_data();
    void noListsAtAll();
    void hyphenAndCaseInFileNames();
    void failedDeleteBringsEntryBack();
};

// To play, each list shows as name - count words, "Choose random list" last, the first selected.
void TestFrmWords::entriesToPlay()
{
    FakePlatform fp;
    writeAnimalsAndBirds(fp);
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QWidget *chooser = openFromMenu(game, MenuChoice::PlayPuzzle); // selected at start
    QVERIFY(chooser);
    QCOMPARE(chooser->objectName(), QStringLiteral("frmWords"));
    QCOMPARE(chooser->windowTitle(), QStringLiteral("Lexicove - Select Word List"));
    QVERIFY(!game.mainMenu().isVisible());
    QCOMPARE(entriesOf(listOf(chooser)),
             (QStringList{"animals - 12 words", "birds - 1 words", "Choose random list"}));
    QCOMPARE(listOf(chooser)->currentRow(), 0);
    QVERIFY(listOf(chooser)->currentItem()->isSelected());
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    QCOMPARE(listOf(chooser)->accessibleName(), QStringLiteral("Word lists"));
    QVERIFY(fp.dialogs.shown.isEmpty());
}

// To edit, only the lists are shown, without the random entry.
void TestFrmWords::entriesToEdit()
{
    FakePlatform fp;
    writeAnimalsAndBirds(fp);
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QWidget *chooser = openFromMenu(game, MenuChoice::EditList);
    QVERIFY(chooser);
    QCOMPARE(entriesOf(listOf(chooser)), (QStringList{"animals - 12 words", "birds - 1 words"}));
    QCOMPARE(listOf(chooser)->currentRow(), 0);
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
}

// A 0-byte file holds 0 words; a file that can't be read shows 0 words too.
void TestFrmWords::emptyAndUnreadableFilesShowNoWords()
{
    ChooserRig rig(kChooserOptions);
    rig.fp.writeFile(QStringLiteral("empty.wds"), QByteArray());
    rig.fp.writeFile(QStringLiteral("locked.wds"), "a\r\nb\r\n");
    rig.fp.writeFile(QStringLiteral("loose.wds"), "a\r\n\r\nb");
    rig.fp.files.failRead.insert(rig.fp.path(QStringLiteral("locked.wds")));
    QVERIFY(rig.open());
    QCOMPARE(entriesOf(listOf(rig.window)),
             (QStringList{"empty - 0 words", "locked - 0 words", "loose - 3 words",
                          "Choose random list"}));
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
}

// OK (by Enter) on a list stores its path and opens the options window; nothing is drawn.
void TestFrmWords::chosenListGoesToOptions()
{
    ChooserRig rig(kChooserOptions);
    writeAnimalsAndBirds(rig.fp);
    QVERIFY(rig.open());
    press(Qt::Key_Return);
    QCOMPARE(rig.state.wordListPath, rig.fp.system.folder + QDir::separator() + "animals.wds");
    QCOMPARE(rig.navigator.optionsOpened, 1);
    QCOMPARE(rig.navigator.mainMenuShown, 0);
    QCOMPARE(rig.fp.random.drawsTaken, 0);
    QVERIFY(!rig.state.editingList);
    QTRY_VERIFY(rig.window.isNull());

    ChooserRig second(kChooserOptions);
    writeAnimalsAndBirds(second.fp);
    QVERIFY(second.open());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QCOMPARE(second.state.wordListPath, second.fp.path(QStringLiteral("birds.wds")));
    QCOMPARE(second.navigator.optionsOpened, 1);
    QCOMPARE(second.navigator.editorsOpened, 0);
}

void TestFrmWords::randomDraw_data()
{
    QTest::addColumn<double>("r");
    QTest::addColumn<QString>("drawn");

    QTest::newRow("0") << 0.0 << "a.wds";
    QTest::newRow("just below 1/3") << std::nextafter(1.0 / 3.0, 0.0) << "a.wds";
    QTest::newRow("1/3") << 1.0 / 3.0 << "b.wds";
    QTest::newRow("just below 2/3") << std::nextafter(2.0 / 3.0, 0.0) << "b.wds";
    QTest::newRow("2/3") << 2.0 / 3.0 << "c.wds";
    QTest::newRow("just below 1") << std::nextafter(1.0, 0.0) << "c.wds";
}

// "Choose random list" draws r and takes list Int(r x 3) of three: thirds to each.
void TestFrmWords::randomDraw()
{
    QFETCH(double, r);
    QFETCH(QString, drawn);
    ChooserRig rig(kChooserOptions);
    for (const char *name : {"a.wds", "b.wds", "c.wds"})
        rig.fp.writeFile(QString::fromLatin1(name), "x\r\n");
    rig.fp.random.script = {r};
    QVERIFY(rig.open());
    press(Qt::Key_End);
    QCOMPARE(listOf(rig.window)->currentItem()->text(), QStringLiteral("Choose random list"));
    press(Qt::Key_Return);
    QCOMPARE(rig.fp.random.drawsTaken, 1);
    QCOMPARE(rig.state.wordListPath, rig.fp.path(drawn));
    QCOMPARE(rig.navigator.optionsOpened, 1);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
}

// With one list, the random entry always yields that list.
void TestFrmWords::singleListIsTheRandomChoice()
{
    for (double r : {0.0, 0.5, std::nextafter(1.0, 0.0)}) {
        ChooserRig rig(kChooserOptions);
        rig.fp.writeFile(QStringLiteral("only.wds"), "x\r\n");
        rig.fp.random.script = {r};
        QVERIFY(rig.open());
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        QCOMPARE(rig.state.wordListPath, rig.fp.path(QStringLiteral("only.wds")));
    }
}

// Escape and Cancel bring the main menu back as it was, the focus in its list.
void TestFrmWords::escapeAndCancelGoBack()
{
    FakePlatform fp;
    writeAnimalsAndBirds(fp);
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QPointer<QWidget> chooser = openFromMenu(game, MenuChoice::PlayPuzzle);
    QVERIFY(chooser);
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    QTRY_VERIFY(chooser.isNull());
    QVERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    auto *menuList = game.mainMenu().findChild<QListWidget *>(QStringLiteral("lstStyle"));
    QCOMPARE(menuList->currentRow(), 0);
    QVERIFY(state.wordListPath.isEmpty());

    // Again, leaving by the access key of Cancel.
    chooser = openFromMenu(game, MenuChoice::PlayPuzzle);
    QVERIFY(chooser);
    press(Qt::Key_C, Qt::AltModifier);
    QTRY_VERIFY(chooser.isNull());
    QVERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    QVERIFY(state.wordListPath.isEmpty());
    QVERIFY(fp.dialogs.shown.isEmpty());
}

// The close box does what Cancel does, once.
void TestFrmWords::closeBoxIsCancel()
{
    ChooserRig rig(kChooserEdit);
    writeAnimalsAndBirds(rig.fp);
    QVERIFY(rig.open());
    QVERIFY(rig.window->close());
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    QCOMPARE(rig.navigator.editorsOpened, 0);
    QTRY_VERIFY(rig.window.isNull());
    QCOMPARE(rig.navigator.mainMenuShown, 1);
}

// Tab goes list, OK, Cancel; Enter on a focused Cancel cancels.
void TestFrmWords::tabOrder()
{
    ChooserRig rig(kChooserOptions);
    writeAnimalsAndBirds(rig.fp);
    QVERIFY(rig.open());
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("cmdOK"));
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("cmdCancel"));
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    press(Qt::Key_Backtab);
    QCOMPARE(focusName(), QStringLiteral("cmdCancel"));
    press(Qt::Key_Return);
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    QCOMPARE(rig.navigator.optionsOpened, 0);
}

// OK in edit mode stores the path, sets editingList and opens the editor on that list.
void TestFrmWords::editChoiceOpensEditor()
{
    FakePlatform fp;
    writeAnimalsAndBirds(fp);
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QPointer<QWidget> chooser = openFromMenu(game, MenuChoice::EditList);
    QVERIFY(chooser);
    state.editingList = false; // OK sets it again
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QTRY_VERIFY(chooser.isNull());
    QCOMPARE(state.wordListPath, fp.path(QStringLiteral("birds.wds")));
    QVERIFY(state.editingList);
    QWidget *editor = game.currentWindow();
    QVERIFY(editor);
    QCOMPARE(editor->objectName(), QStringLiteral("frmCreate"));
    QVERIFY(QTest::qWaitForWindowActive(editor));
    QCOMPARE(entriesOf(listOf(editor)), QStringList{"owl"});
    QVERIFY(!game.mainMenu().isVisible());
    QCOMPARE(focusName(), QStringLiteral("txtWord"));
}

void TestFrmWords::deleteEntry_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("gone");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<int>("selected");

    QTest::newRow("first") << 0 << "ant.wds" << QStringList{"bee - 2 words", "cow - 3 words"}
                           << 0;
    QTest::newRow("middle") << 1 << "bee.wds" << QStringList{"ant - 1 words", "cow - 3 words"}
                            << 1;
    QTest::newRow("last") << 2 << "cow.wds" << QStringList{"ant - 1 words", "bee - 2 words"}
                          << 1;
}

// Delete, Yes: the entry goes, the next (or new last) is selected, the file is deleted.
void TestFrmWords::deleteEntry()
{
    QFETCH(int, row);
    QFETCH(QString, gone);
    QFETCH(QStringList, left);
    QFETCH(int, selected);

    ChooserRig rig(kChooserEdit);
    rig.fp.writeFile(QStringLiteral("ant.wds"), "a\r\n");
    rig.fp.writeFile(QStringLiteral("bee.wds"), "a\r\nb\r\n");
    rig.fp.writeFile(QStringLiteral("cow.wds"), "a\r\nb\r\nc\r\n");
    QVERIFY(rig.open());
    for (int i = 0; i < row; ++i)
        press(Qt::Key_Down);
    rig.fp.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Delete);

    QCOMPARE(rig.fp.dialogs.shown.size(), 2);
    const ShownDialog question = rig.fp.dialogs.shown.at(0);
    QCOMPARE(question.prompt, QStringLiteral("Are you sure you want to delete the %1 word list?")
                                  .arg(gone.chopped(4)));
    QCOMPARE(question.title, QStringLiteral("Delete Word List"));
    QCOMPARE(question.buttons, MessageButtons::YesNo);
    QCOMPARE(rig.fp.dialogs.shown.at(1).prompt, kDeleted);
    QCOMPARE(rig.fp.dialogs.shown.at(1).buttons, MessageButtons::Ok);
    QCOMPARE(rig.fp.dialogs.shown.at(1).title, kAppTitle);

    QCOMPARE(entriesOf(listOf(rig.window)), left);
    QCOMPARE(listOf(rig.window)->currentRow(), selected);
    QVERIFY(listOf(rig.window)->currentItem()->isSelected());
    QVERIFY(!QFile::exists(rig.fp.path(gone)));
    QCOMPARE(rig.fp.files.list(rig.fp.system.folder, QStringLiteral(".wds")).size(), 2);
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    QVERIFY(rig.window->isVisible());
    QCOMPARE(rig.navigator.mainMenuShown, 0);
}

// No to the question changes nothing; deleting the only list empties the chooser.
void TestFrmWords::deleteAnsweredNo()
{
    ChooserRig rig(kChooserEdit);
    rig.fp.writeFile(QStringLiteral("only.wds"), "x\r\ny\r\n");
    QVERIFY(rig.open());
    rig.fp.dialogs.answers = {MessageResult::No};
    press(Qt::Key_Delete);
    QCOMPARE(rig.fp.dialogs.prompts(),
             QStringList{"Are you sure you want to delete the only word list?"});
    QCOMPARE(entriesOf(listOf(rig.window)), QStringList{"only - 2 words"});
    QCOMPARE(listOf(rig.window)->currentRow(), 0);
    QCOMPARE(rig.fp.readFile(QStringLiteral("only.wds")), QByteArray("x\r\ny\r\n"));

    rig.fp.dialogs.clear();
    rig.fp.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Delete, Qt::ShiftModifier); // the shift state is not looked at
    QCOMPARE(rig.fp.dialogs.lastPrompt(), kDeleted);
    QCOMPARE(listOf(rig.window)->count(), 0);
    QCOMPARE(listOf(rig.window)->currentRow(), -1);
    QVERIFY(listOf(rig.window)->selectedItems().isEmpty());
    QVERIFY(!QFile::exists(rig.fp.path(QStringLiteral("only.wds"))));

    rig.fp.dialogs.clear();
    press(Qt::Key_Delete);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kNothingToRemove});
    QCOMPARE(rig.fp.dialogs.shown.at(0).buttons, MessageButtons::Ok);
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
}

// In play mode the Delete key does nothing, on a list or on the random entry.
void TestFrmWords::deleteIgnoredInPlayMode()
{
    ChooserRig rig(kChooserOptions);
    writeAnimalsAndBirds(rig.fp);
    QVERIFY(rig.open());
    rig.fp.dialogs.answers = {MessageResult::Yes, MessageResult::Yes, MessageResult::Yes};
    press(Qt::Key_Delete);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
    QCOMPARE(listOf(rig.window)->count(), 3);
    QCOMPARE(listOf(rig.window)->currentRow(), 2);
    QCOMPARE(rig.fp.files.list(rig.fp.system.folder, QStringLiteral(".wds")).size(), 2);
}

// OK once every list has been deleted says there is nothing to open, and the chooser stays.
void TestFrmWords::okOnEmptyList()
{
    ChooserRig rig(kChooserEdit);
    rig.fp.writeFile(QStringLiteral("only.wds"), "x\r\n");
    QVERIFY(rig.open());
    rig.fp.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Delete);
    rig.fp.dialogs.clear();
    press(Qt::Key_Return);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{"There is no word list to open."});
    QCOMPARE(rig.navigator.editorsOpened, 0);
    QCOMPARE(rig.navigator.mainMenuShown, 0);
    QVERIFY(rig.window);
    QVERIFY(rig.window->isVisible());
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    press(Qt::Key_Escape);
    QCOMPARE(rig.navigator.mainMenuShown, 1);
}

void TestFrmWords::noListsAtAll_data()
{
    QTest::addColumn<MenuChoice>("choice");
    QTest::newRow("play") << MenuChoice::PlayPuzzle;
    QTest::newRow("edit") << MenuChoice::EditList;
}

// With no lists the player is told so and stays on the visible main menu, the focus in its list.
void TestFrmWords::noListsAtAll()
{
    QFETCH(MenuChoice, choice);
    FakePlatform fp;
    fp.writeFile(QStringLiteral("notes.txt"), "cat\r\n");
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    pickFromMenu(game, choice);
    QCOMPARE(fp.dialogs.prompts(), QStringList{kNoLists});
    QCOMPARE(fp.dialogs.shown.at(0).buttons, MessageButtons::Ok);
    QCOMPARE(fp.dialogs.shown.at(0).title, kAppTitle);
    QVERIFY(!game.currentWindow());
    QVERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    auto *menuList = game.mainMenu().findChild<QListWidget *>(QStringLiteral("lstStyle"));
    QCOMPARE(menuList->currentRow(), static_cast<int>(choice));
}

// A list name holding a hyphen, or a file name in capitals, is shown, chosen and deleted by its real name.
void TestFrmWords::hyphenAndCaseInFileNames()
{
    ChooserRig rig(kChooserOptions);
    rig.fp.writeFile(QStringLiteral("my-list - old.wds"), "a\r\nb\r\nc\r\n");
    rig.fp.writeFile(QStringLiteral("Zoo.WDS"), "lion\r\n");
    QVERIFY(rig.open());
    QCOMPARE(entriesOf(listOf(rig.window)),
             (QStringList{"my-list - old - 3 words", "Zoo - 1 words", "Choose random list"}));
    press(Qt::Key_Return);
    QCOMPARE(rig.state.wordListPath, rig.fp.path(QStringLiteral("my-list - old.wds")));

    ChooserRig zoo(kChooserOptions);
    zoo.fp.writeFile(QStringLiteral("Zoo.WDS"), "lion\r\n");
    QVERIFY(zoo.open());
    press(Qt::Key_Return);
    QCOMPARE(zoo.state.wordListPath, zoo.fp.path(QStringLiteral("Zoo.WDS")));

    ChooserRig edit(kChooserEdit);
    edit.fp.writeFile(QStringLiteral("my-list.wds"), "a\r\n");
    edit.fp.writeFile(QStringLiteral("my.wds"), "b\r\n");
    QVERIFY(edit.open());
    // "-" sorts before ".".
    QCOMPARE(entriesOf(listOf(edit.window)), (QStringList{"my-list - 1 words", "my - 1 words"}));
    edit.fp.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Delete);
    QCOMPARE(edit.fp.dialogs.prompts(),
             (QStringList{"Are you sure you want to delete the my-list word list?", kDeleted}));
    QVERIFY(!QFile::exists(edit.fp.path(QStringLiteral("my-list.wds"))));
    QCOMPARE(edit.fp.readFile(QStringLiteral("my.wds")), QByteArray("b\r\n"));
    QCOMPARE(entriesOf(listOf(edit.window)), QStringList{"my - 1 words"});
}

// A list that can't be deleted is named with the reason, and its entry comes back selected.
void TestFrmWords::failedDeleteBringsEntryBack()
{
    ChooserRig rig(kChooserEdit);
    rig.fp.writeFile(QStringLiteral("ant.wds"), "a\r\n");
    rig.fp.writeFile(QStringLiteral("bee.wds"), "a\r\nb\r\n");
    rig.fp.writeFile(QStringLiteral("cow.wds"), "a\r\nb\r\nc\r\n");
    rig.fp.files.failRemove.insert(rig.fp.path(QStringLiteral("bee.wds")));
    QVERIFY(rig.open());
    press(Qt::Key_Down);
    rig.fp.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Delete);
    QCOMPARE(rig.fp.dialogs.shown.size(), 2);
    const QString told = rig.fp.dialogs.lastPrompt();
    QVERIFY2(told.contains(rig.fp.path(QStringLiteral("bee.wds"))), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral("could not be deleted")), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral("Permission denied")), qPrintable(told));
    QCOMPARE(entriesOf(listOf(rig.window)),
             (QStringList{"ant - 1 words", "bee - 2 words", "cow - 3 words"}));
    QCOMPARE(listOf(rig.window)->currentRow(), 1);
    QCOMPARE(rig.fp.readFile(QStringLiteral("bee.wds")), QByteArray("a\r\nb\r\n"));
    QCOMPARE(focusName(), QStringLiteral("lstWords"));

    // The entry still leads to its list.
    press(Qt::Key_Return);
    QCOMPARE(rig.state.wordListPath, rig.fp.path(QStringLiteral("bee.wds")));
    QCOMPARE(rig.navigator.editorsOpened, 1);
}

QTEST_MAIN(TestFrmWords)
#include "tst_frmwords.moc"
