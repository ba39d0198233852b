// The word list editor, driven from the keyboard: adding, removing, saving
// and cancelling, with the files checked byte for byte.

#include "core/frmchoose.h"
#include "core/game.h"
#include "core/gamestate.h"
#include "fakenavigator.h"
#include "fakeplatform.h"
#include "keys.h"
#include "mainmenu.h"
#include "platform/qtplatform.h"
#include "windowrig.h"
#include "wordlists/frmcreate.h"

#include <QElapsedTimer>
#include <QFile>
#include <QMessageBox>
#include <QTimer>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QString kListFull = QStringLiteral("You have entered the maximum number of words");
const QString kNoWord = QStringLiteral(
    "You did not enter a word. Please enter a word into the edit box, then choose Add.");
const QString kTooLong = QStringLiteral("This word is too long. Please enter a shorter word");
const QString kNothingToRemove =
    QStringLiteral("Your word list is empty. There is nothing to remove.");
const QString kNothingToSave =
    QStringLiteral("You have not entered any words into the word list. Please type some "
                   "words into the edit box, and then choose save");
const QString kNamePrompt = QStringLiteral(
    "Please enter a name for this word list, using only letters, numbers, and spaces");
const QString kInvalidNamePrompt =
    QStringLiteral("Invalid word list name! Please enter a name for this word list, using "
                   "only letters, numbers, and spaces");
const QString kSaved = QStringLiteral("Your word list has been saved");

// An editor opened straight on a recording navigator: empty, or on a list
// file of the folder as the chooser would open it.
struct EditorRig : WindowRig<FrmCreate> {
    bool open(const QString &editing = QString())
    {
        state.editingList = !editing.isEmpty();
        if (state.editingList)
            state.wordListPath = fp.path(editing);
        return WindowRig::open();
    }
    // Writes a list file to the folder and opens the editor on it.
    bool openOn(const QString &file, const QByteArray &bytes)
    {
        fp.writeFile(file, bytes);
        return open(file);
    }

    QListWidget *list() const { return window->findChild<QListWidget *>("lstWords"); }
    QLineEdit *text() const { return window->findChild<QLineEdit *>("txtWord"); }
    QStringList entries() const { return entriesOf(list()); }
    // Puts the focus in the list, by Tab from the text box as a player would.
    void tabToList()
    {
        QCOMPARE(focusName(), QStringLiteral("txtWord"));
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        QCOMPARE(focusName(), QStringLiteral("lstWords"));
    }
    void addWord(const QString &word)
    {
        type(word);
        press(Qt::Key_Return);
    }
};

QByteArray linesOf(int count)
{
    QByteArray bytes;
    for (int i = 1; i <= count; ++i)
        bytes += "w" + QByteArray::number(i) + "\r\n";
    return bytes;
}

} // namespace

class TestFrmCreate : public QObject {
    Q_OBJECT

private slots:
    void opensEmptyFromMainMenu();
    void tabOrder();
    void addWithBlanksAndCapitals();
    void refusals_data();
    void refusals();
    void fullListRefusesWhateverIsTyped();
    void focusComesBackAfterMessage();
    void focusComesBackAfterRealMessageBox();
    void removeByButton_data();
    void removeByButton();
    void deleteKeyInListOnly();
    void enterInListPressesAdd();
    void saveEmptyList();
    void saveNewList();
    void invalidNameAskedAgain();
    void emptyNameAbandonsSave_data();
    void emptyNameAbandonsSave();
    void editAndSaveSameName();
    void editAndSaveUnderTheNameGiven_data();
    void editAndSaveUnderTheNameGiven();
    void editFileWithCommasAndBlanks();
    void editUnreadableFile();
    void cancelLeavesFiles_data();
    void cancelLeavesFiles();
    void failedWriteKeepsWords();
};

// Create Word List opens the editor empty, titled, with the focus in the text box.
void TestFrmCreate::opensEmptyFromMainMenu()
{
    FakePlatform fp;
    fp.writeFile(QStringLiteral("animals.wds"), "cat\r\n");
    GameState state;
    state.chooserMode = kChooserEdit;
    state.wordListPath = fp.path(QStringLiteral("animals.wds"));
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QWidget *editor = openFromMenu(game, MenuChoice::CreateList);
    QVERIFY(editor);
    QCOMPARE(editor->objectName(), QStringLiteral("frmCreate"));
    QCOMPARE(editor->windowTitle(), QStringLiteral("Lexicove - Enter Words"));
    QVERIFY(!game.mainMenu().isVisible());
    QVERIFY(!state.editingList);
    QCOMPARE(state.chooserMode, kChooserEdit);
    auto *list = editor->findChild<QListWidget *>(QStringLiteral("lstWords"));
    QCOMPARE(list->count(), 0);
    QCOMPARE(list->currentRow(), -1);
    QCOMPARE(focusName(), QStringLiteral("txtWord"));
    QVERIFY(!editor->findChild<QLineEdit *>(QStringLiteral("txtWord"))->accessibleName().isEmpty());
    QVERIFY(!list->accessibleName().isEmpty());
    QVERIFY(fp.dialogs.shown.isEmpty());

    // Escape goes back to the menu, which shows the choice used last.
    press(Qt::Key_Escape);
    QTRY_VERIFY(!game.currentWindow());
    QVERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    QCOMPARE(game.mainMenu().findChild<QListWidget *>("lstStyle")->currentRow(), 1);
}

// Tab visits the text box, Add, Remove, the list, Save and Cancel in turn.
void TestFrmCreate::tabOrder()
{
    EditorRig rig;
    QVERIFY(rig.open());
    QStringList visited{focusName()};
    for (int i = 0; i < 6; ++i) {
        press(Qt::Key_Tab);
        visited.append(focusName());
    }
    QCOMPARE(visited, (QStringList{"txtWord", "cmdAdd", "cmdRemove", "lstWords", "cmdSave",
                                   "cmdCancel", "txtWord"}));
}

// Enter in the text box adds the word trimmed, lower-cased and without blanks, selected.
void TestFrmCreate::addWithBlanksAndCapitals()
{
    EditorRig rig;
    QVERIFY(rig.open());
    rig.addWord(QStringLiteral("  Big Cat  "));
    QCOMPARE(rig.entries(), QStringList{"bigcat"});
    QCOMPARE(rig.list()->currentRow(), 0);
    QVERIFY(rig.text()->text().isEmpty());
    QCOMPARE(focusName(), QStringLiteral("txtWord"));

    rig.addWord(QStringLiteral("Ice Cream Cones"));
    rig.addWord(QStringLiteral("bigcat"));
    QCOMPARE(rig.entries(), (QStringList{"bigcat", "icecreamcones", "bigcat"}));
    QCOMPARE(rig.list()->currentRow(), 2);
    QVERIFY(rig.list()->currentItem()->isSelected());

    // The access key of Add does the same.
    type(QStringLiteral("Owl"));
    press(Qt::Key_A, Qt::AltModifier);
    QTRY_COMPARE(rig.list()->count(), 4);
    QCOMPARE(rig.entries().last(), QStringLiteral("owl"));
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
}

void TestFrmCreate::refusals_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("message");

    QTest::newRow("nothing") << "" << kNoWord;
    QTest::newRow("blanks") << "    " << kNoWord;
    QTest::newRow("16 characters") << "abcdefghijklmnop" << kTooLong;
    QTest::newRow("16 with blanks") << "ice cream  cones" << kTooLong;
}

// A refused Add shows its message and keeps both the list and the typed text.
void TestFrmCreate::refusals()
{
    QFETCH(QString, typed);
    QFETCH(QString, message);
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("pets.wds"), "cat\r\ndog\r\n"));
    type(typed);
    press(Qt::Key_Return);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{message});
    QCOMPARE(rig.fp.dialogs.shown.at(0).title, kAppTitle);
    QCOMPARE(rig.fp.dialogs.shown.at(0).buttons, MessageButtons::Ok);
    QCOMPARE(rig.entries(), (QStringList{"cat", "dog"}));
    QCOMPARE(rig.list()->currentRow(), 0);
    QCOMPARE(rig.text()->text(), typed);
    QCOMPARE(focusName(), QStringLiteral("txtWord"));
}

// A list of 40 (or, loaded from a file, more) refuses Add first, even with nothing typed.
void TestFrmCreate::fullListRefusesWhateverIsTyped()
{
    EditorRig rig;
    QVERIFY(rig.open());
    for (int i = 1; i <= 40; ++i)
        rig.addWord(QStringLiteral("w%1").arg(i));
    QCOMPARE(rig.list()->count(), 40);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
    press(Qt::Key_Return);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kListFull});
    type(QStringLiteral("abcdefghijklmnopq"));
    press(Qt::Key_Return);
    rig.text()->clear();
    type(QStringLiteral("cat"));
    press(Qt::Key_Return);
    QCOMPARE(rig.fp.dialogs.prompts(), (QStringList{kListFull, kListFull, kListFull}));
    QCOMPARE(rig.list()->count(), 40);
    QCOMPARE(rig.text()->text(), QStringLiteral("cat"));

    // Removing one makes room again; Enter in the list adds the typed word.
    rig.tabToList();
    press(Qt::Key_Delete);
    QCOMPARE(rig.list()->count(), 39);
    press(Qt::Key_Return);
    QCOMPARE(rig.list()->count(), 40);
    QCOMPARE(rig.entries().last(), QStringLiteral("cat"));

    EditorRig big;
    QVERIFY(big.openOn(QStringLiteral("big.wds"), linesOf(41)));
    QCOMPARE(big.list()->count(), 41);
    big.addWord(QStringLiteral("cat"));
    QCOMPARE(big.fp.dialogs.prompts(), QStringList{kListFull});
    QCOMPARE(big.list()->count(), 41);
}

// After a message box the focus is back in the control the player was in.
void TestFrmCreate::focusComesBackAfterMessage()
{
    EditorRig rig;
    QVERIFY(rig.open());
    // A real message box takes the focus while it is up.
    QPointer<FrmCreate> window = rig.window;
    rig.fp.dialogs.onShow = [window](const ShownDialog &) {
        if (window)
            window->findChild<QWidget *>(QStringLiteral("cmdCancel"))->setFocus();
    };
    press(Qt::Key_Return);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kNoWord});
    QCOMPARE(focusName(), QStringLiteral("txtWord"));

    rig.tabToList();
    press(Qt::Key_Delete);
    QCOMPARE(rig.fp.dialogs.lastPrompt(), kNothingToRemove);
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
}

// With the real message box, answered by Enter, the focus is back in the text box.
void TestFrmCreate::focusComesBackAfterRealMessageBox()
{
    FakePlatform fp;
    QtDialogs dialogs;
    Platform platform{dialogs, fp.sound, fp.clock, fp.random, fp.system, fp.files};
    GameState state;
    FakeNavigator navigator;
    QPointer<FrmCreate> window = new FrmCreate(state, platform, navigator);
    window->setAttribute(Qt::WA_DeleteOnClose);
    QVERIFY(window->Form_Load());
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));

    // Answers the box once it is up and active; closes it after 2 s whatever happens.
    QString seen;
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    connect(&poll, &QTimer::timeout, this, [&] {
        QWidget *box = QApplication::activeModalWidget();
        if (box && box == QApplication::activeWindow()) {
            if (auto *message = qobject_cast<QMessageBox *>(box))
                seen = message->text();
            QTest::keyClick(box, Qt::Key_Return);
        } else if (box && clock.elapsed() > 2000) {
            box->close();
        }
    });
    poll.start(10);
    press(Qt::Key_Return);
    poll.stop();
    QCOMPARE(seen, kNoWord);
    QTRY_COMPARE(focusName(), QStringLiteral("txtWord"));
    QVERIFY(window->isActiveWindow());
    delete window.data();
}

void TestFrmCreate::removeByButton_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<int>("selected");

    QTest::newRow("first") << 0 << QStringList{"bee", "cow"} << 0;
    QTest::newRow("middle") << 1 << QStringList{"ant", "cow"} << 1;
    QTest::newRow("last") << 2 << QStringList{"ant", "bee"} << 1;
}

// Remove takes the selected entry out and selects the one that followed, or the new last.
void TestFrmCreate::removeByButton()
{
    QFETCH(int, row);
    QFETCH(QStringList, left);
    QFETCH(int, selected);
    EditorRig rig;
    QVERIFY(rig.open());
    for (const char *word : {"ant", "bee", "cow"})
        rig.addWord(QString::fromLatin1(word));
    rig.tabToList();
    press(Qt::Key_Home);
    for (int i = 0; i < row; ++i)
        press(Qt::Key_Down);
    press(Qt::Key_Backtab);
    QCOMPARE(focusName(), QStringLiteral("cmdRemove"));
    press(Qt::Key_Space);
    QCOMPARE(rig.entries(), left);
    QCOMPARE(rig.list()->currentRow(), selected);
    QVERIFY(rig.list()->currentItem()->isSelected());
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
    QCOMPARE(focusName(), QStringLiteral("cmdRemove"));
}

// The Delete key removes in the list, whatever the shift state, and only edits text in the text box.
void TestFrmCreate::deleteKeyInListOnly()
{
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("one.wds"), "owl\r\n"));
    type(QStringLiteral("cat"));
    press(Qt::Key_Home);
    press(Qt::Key_Delete);
    QCOMPARE(rig.text()->text(), QStringLiteral("at"));
    QCOMPARE(rig.entries(), QStringList{"owl"});

    rig.tabToList();
    press(Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(rig.list()->count(), 0);
    QCOMPARE(rig.list()->currentRow(), -1);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
    press(Qt::Key_Delete);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kNothingToRemove});
    // Remove on the empty list says the same.
    rig.fp.dialogs.clear();
    press(Qt::Key_R, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.prompts(), QStringList{kNothingToRemove});
    QCOMPARE(rig.text()->text(), QStringLiteral("at"));
}

// Enter in the list presses the default button, Add.
void TestFrmCreate::enterInListPressesAdd()
{
    EditorRig rig;
    QVERIFY(rig.open());
    rig.addWord(QStringLiteral("ant"));
    type(QStringLiteral("bee"));
    rig.tabToList();
    press(Qt::Key_Return);
    QCOMPARE(rig.entries(), (QStringList{"ant", "bee"}));
    QVERIFY(rig.text()->text().isEmpty());
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    press(Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kNoWord});
    QCOMPARE(rig.list()->count(), 2);
}

// Save with an empty list says so and asks no name.
void TestFrmCreate::saveEmptyList()
{
    EditorRig rig;
    QVERIFY(rig.open());
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.prompts(), QStringList{kNothingToSave});
    QCOMPARE(rig.fp.dialogs.shown.at(0).kind, ShownDialog::Kind::Message);
    QVERIFY(rig.window->isVisible());
    QCOMPARE(rig.navigator.mainMenuShown, 0);
    QVERIFY(rig.fp.files.list(rig.fp.system.folder, QStringLiteral(".wds")).isEmpty());
}

// A new list saved as Animals becomes animals.wds, the words one per line, and the menu comes back.
void TestFrmCreate::saveNewList()
{
    FakePlatform fp;
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QPointer<QWidget> editor = openFromMenu(game, MenuChoice::CreateList);
    QVERIFY(editor);
    for (const char *word : {"cat", "dog", "cat"}) {
        type(QString::fromLatin1(word));
        press(Qt::Key_Return);
    }
    fp.dialogs.replies = {QStringLiteral("  Animals ")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(fp.dialogs.shown.size(), 2);

    const ShownDialog ask = fp.dialogs.shown.at(0);
    QCOMPARE(ask.kind, ShownDialog::Kind::Input);
    QCOMPARE(ask.prompt, kNamePrompt);
    QCOMPARE(ask.title, QStringLiteral("Save"));
    QCOMPARE(ask.defaultText, QString());
    QCOMPARE(fp.dialogs.shown.at(1).prompt, kSaved);
    QCOMPARE(fp.dialogs.shown.at(1).title, kAppTitle);
    QCOMPARE(fp.readFile(QStringLiteral("animals.wds")), QByteArray("cat\r\ndog\r\ncat\r\n"));
    QCOMPARE(fp.files.list(fp.system.folder, QStringLiteral(".wds")), QStringList{"animals.wds"});
    QVERIFY(state.wordListPath.isEmpty());

    QTRY_VERIFY(editor.isNull());
    QVERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    QVERIFY(fp.dialogs.unexpected.isEmpty());
}

// An invalid name is asked for again with the invalid-name prompt until a valid one comes.
void TestFrmCreate::invalidNameAskedAgain()
{
    EditorRig rig;
    QVERIFY(rig.open());
    rig.addWord(QStringLiteral("cat"));
    rig.fp.dialogs.replies = {QStringLiteral("my-list"), QStringLiteral("caf\u00e9"),
                              QStringLiteral("My List 2")};
    rig.tabToList();
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("cmdSave"));
    press(Qt::Key_Return);

    QCOMPARE(rig.fp.dialogs.prompts(),
             (QStringList{kNamePrompt, kInvalidNamePrompt, kInvalidNamePrompt, kSaved}));
    for (int i = 1; i <= 2; ++i) {
        QCOMPARE(rig.fp.dialogs.shown.at(i).title, QStringLiteral("Save"));
        QCOMPARE(rig.fp.dialogs.shown.at(i).defaultText, QString());
    }
    QCOMPARE(rig.fp.files.list(rig.fp.system.folder, QStringLiteral(".wds")),
             QStringList{"my list 2.wds"});
    QCOMPARE(rig.fp.readFile(QStringLiteral("my list 2.wds")), QByteArray("cat\r\n"));
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    QTRY_VERIFY(rig.window.isNull());
}

void TestFrmCreate::emptyNameAbandonsSave_data()
{
    QTest::addColumn<QStringList>("replies");
    QTest::addColumn<int>("asked");

    QTest::newRow("cancelled") << QStringList{""} << 1;
    QTest::newRow("blanks") << QStringList{"   "} << 1;
    QTest::newRow("invalid then cancelled") << QStringList{"my-list", ""} << 2;
    QTest::newRow("invalid then blanks") << QStringList{"x.y", "a_b", "  "} << 3;
}

// An empty answer abandons the save silently: nothing written, the editor open with its words.
void TestFrmCreate::emptyNameAbandonsSave()
{
    QFETCH(QStringList, replies);
    QFETCH(int, asked);
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("pets.wds"), "cat\r\n"));
    rig.addWord(QStringLiteral("dog"));
    rig.fp.dialogs.replies = replies;
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.shown.size(), asked);
    QTest::qWait(50);
    QCOMPARE(rig.fp.dialogs.shown.size(), asked);
    for (const ShownDialog &shown : std::as_const(rig.fp.dialogs.shown))
        QCOMPARE(shown.kind, ShownDialog::Kind::Input);
    QCOMPARE(rig.fp.dialogs.shown.at(0).defaultText, QStringLiteral("pets"));
    QCOMPARE(rig.fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\n"));
    QCOMPARE(rig.fp.files.list(rig.fp.system.folder, QStringLiteral(".wds")),
             QStringList{"pets.wds"});
    QVERIFY(rig.window);
    QVERIFY(rig.window->isVisible());
    QCOMPARE(rig.entries(), (QStringList{"cat", "dog"}));
    QCOMPARE(rig.navigator.mainMenuShown, 0);
}

// Editing animals offers its name, and keeping it replaces animals.wds.
void TestFrmCreate::editAndSaveSameName()
{
    FakePlatform fp;
    fp.writeFile(QStringLiteral("animals.wds"), "cat\r\ndog\r\nemu\r\n");
    fp.writeFile(QStringLiteral("birds.wds"), "owl\r\n");
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QVERIFY(openFromMenu(game, MenuChoice::EditList)); // the chooser
    press(Qt::Key_Return); // animals: the editor
    QPointer<QWidget> editor = game.currentWindow();
    QVERIFY(editor);
    QCOMPARE(editor->objectName(), QStringLiteral("frmCreate"));
    QVERIFY(QTest::qWaitForWindowActive(editor));
    auto *list = editor->findChild<QListWidget *>(QStringLiteral("lstWords"));
    QCOMPARE(entriesOf(list), (QStringList{"cat", "dog", "emu"}));
    QCOMPARE(list->currentRow(), 0);
    QCOMPARE(focusName(), QStringLiteral("txtWord"));

    type(QStringLiteral("Yak"));
    press(Qt::Key_Return);
    // Take out dog.
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    QCOMPARE(entriesOf(list), (QStringList{"cat", "emu", "yak"}));

    fp.dialogs.replies = {QStringLiteral("animals")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(fp.dialogs.prompts(), (QStringList{kNamePrompt, kSaved}));
    QCOMPARE(fp.dialogs.shown.at(0).defaultText, QStringLiteral("animals"));
    QCOMPARE(fp.readFile(QStringLiteral("animals.wds")), QByteArray("cat\r\nemu\r\nyak\r\n"));
    QCOMPARE(fp.readFile(QStringLiteral("birds.wds")), QByteArray("owl\r\n"));
    QCOMPARE(fp.files.list(fp.system.folder, QStringLiteral(".wds")).size(), 2);
    QCOMPARE(state.wordListPath, fp.path(QStringLiteral("animals.wds")));
    QTRY_VERIFY(editor.isNull());
    QVERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
}

void TestFrmCreate::editAndSaveUnderTheNameGiven_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("offered");
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QStringList>("files");

    QTest::newRow("new name: a new file, the old one as it was")
        << "animals.wds" << QByteArray("cat\r\ndog\r\n") << "Zoo" << "animals" << "zoo.wds"
        << QStringList{"animals.wds", "zoo.wds"};
    QTest::newRow("own name, file name in capitals: that file kept")
        << "Farm.WDS" << QByteArray("pig\r\n") << "Farm" << "Farm" << "Farm.WDS"
        << QStringList{"Farm.WDS"};
}

// Saving an edited list offers the list's name as its file spells it and writes the named file.
void TestFrmCreate::editAndSaveUnderTheNameGiven()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reply);
    QFETCH(QString, offered);
    QFETCH(QString, saved);
    QFETCH(QStringList, files);
    EditorRig rig;
    QVERIFY(rig.openOn(file, bytes));
    rig.addWord(QStringLiteral("gnu"));
    rig.fp.dialogs.replies = {reply};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.prompts(), (QStringList{kNamePrompt, kSaved}));
    QCOMPARE(rig.fp.dialogs.shown.at(0).defaultText, offered);
    QStringList listed = rig.fp.files.list(rig.fp.system.folder, QStringLiteral(".wds"));
    listed.sort();
    QCOMPARE(listed, files);
    QCOMPARE(rig.fp.readFile(saved), bytes + "gnu\r\n");
    if (saved != file)
        QCOMPARE(rig.fp.readFile(file), bytes);
}

// A line a,b opens as two entries and is saved as two lines; a blank line is an empty entry.
void TestFrmCreate::editFileWithCommasAndBlanks()
{
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("odd.wds"), "a,b\r\n\r\n\"c,d\"\r\ne"));
    QCOMPARE(rig.entries(), (QStringList{"a", "b", "", "c,d", "e"}));
    rig.fp.dialogs.replies = {QStringLiteral("odd")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.lastPrompt(), kSaved);
    QCOMPARE(rig.fp.readFile(QStringLiteral("odd.wds")), QByteArray("a\r\nb\r\n\r\nc,d\r\ne\r\n"));

    EditorRig empty;
    QVERIFY(empty.openOn(QStringLiteral("empty.wds"), QByteArray()));
    QCOMPARE(empty.list()->count(), 0);
    QCOMPARE(empty.list()->currentRow(), -1);
    QVERIFY(empty.fp.dialogs.shown.isEmpty());
}

// A list that can't be read is named with the reason, and the player is back at the main menu.
void TestFrmCreate::editUnreadableFile()
{
    FakePlatform fp;
    fp.writeFile(QStringLiteral("locked.wds"), "cat\r\n");
    fp.files.failRead.insert(fp.path(QStringLiteral("locked.wds")));
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QPointer<QWidget> chooser = openFromMenu(game, MenuChoice::EditList);
    QVERIFY(chooser);
    QCOMPARE(entriesOf(chooser->findChild<QListWidget *>("lstWords")),
             QStringList{"locked - 0 words"});
    press(Qt::Key_Return);

    QCOMPARE(fp.dialogs.shown.size(), 1);
    const QString told = fp.dialogs.lastPrompt();
    QVERIFY2(told.contains(fp.path(QStringLiteral("locked.wds"))), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral("could not be opened")), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral("Permission denied")), qPrintable(told));
    QTRY_VERIFY(chooser.isNull());
    QVERIFY(!game.currentWindow());
    QVERIFY(game.mainMenu().isVisible());
    QTRY_COMPARE(focusName(), QStringLiteral("lstStyle"));
    QCOMPARE(fp.readFile(QStringLiteral("locked.wds")), QByteArray("cat\r\n"));

    // The same straight on the editor, for a file that has vanished.
    EditorRig rig;
    QVERIFY(!rig.open(QStringLiteral("gone.wds")));
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    QVERIFY(rig.fp.dialogs.lastPrompt().contains(rig.fp.path(QStringLiteral("gone.wds"))));
}

void TestFrmCreate::cancelLeavesFiles_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("Escape") << 0;
    QTest::newRow("Cancel button") << 1;
    QTest::newRow("close box") << 2;
}

// Leaving by Escape, Cancel or the close box after changes writes nothing and shows the menu once.
void TestFrmCreate::cancelLeavesFiles()
{
    QFETCH(int, how);
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("animals.wds"), "cat\r\ndog\r\n"));
    rig.addWord(QStringLiteral("gnu"));
    rig.tabToList();
    press(Qt::Key_Home);
    press(Qt::Key_Delete);
    QCOMPARE(rig.entries(), (QStringList{"dog", "gnu"}));
    switch (how) {
    case 0:
        press(Qt::Key_Escape);
        break;
    case 1:
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        QCOMPARE(focusName(), QStringLiteral("cmdCancel"));
        press(Qt::Key_Space);
        break;
    default:
        QVERIFY(rig.window->close());
        break;
    }
    QTRY_VERIFY(rig.window.isNull());
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
    QCOMPARE(rig.fp.readFile(QStringLiteral("animals.wds")), QByteArray("cat\r\ndog\r\n"));
    QCOMPARE(rig.fp.files.list(rig.fp.system.folder, QStringLiteral(".wds")),
             QStringList{"animals.wds"});
}

// A write that fails names the file and the reason; the editor stays with every word.
void TestFrmCreate::failedWriteKeepsWords()
{
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("pets.wds"), "cat\r\n"));
    rig.addWord(QStringLiteral("dog"));
    rig.fp.files.failAllWrites = true;
    rig.fp.dialogs.replies = {QStringLiteral("pets")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.shown.size(), 2);
    const QString told = rig.fp.dialogs.lastPrompt();
    QVERIFY2(told.contains(rig.fp.path(QStringLiteral("pets.wds"))), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral("Permission denied")), qPrintable(told));
    QVERIFY(!told.contains(kSaved));
    QVERIFY(rig.window);
    QVERIFY(rig.window->isVisible());
    QCOMPARE(rig.entries(), (QStringList{"cat", "dog"}));
    QCOMPARE(rig.navigator.mainMenuShown, 0);
    QCOMPARE(rig.fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\n"));

    // Once writing works again the same words are saved.
    rig.fp.files.failAllWrites = false;
    rig.fp.dialogs.clear();
    rig.fp.dialogs.replies = {QStringLiteral("pets")};
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.prompts(), (QStringList{kNamePrompt, kSaved}));
    QCOMPARE(rig.fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\ndog\r\n"));
    QCOMPARE(rig.navigator.mainMenuShown, 1);
}

QTEST_MAIN(TestFrmCreate)
#include "tst_frmcreate.moc"
