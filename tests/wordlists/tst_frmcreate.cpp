// The word list editor, driven from the keyboard: adding, removing, saving
// and cancelling, with the files checked byte for byte.

#include "core/gamestate.h"
#include "keys.h"
#include "windowrig.h"
#include "wordlists/frmcreate.h"
#include "wordlists/wordlists.h"

#include <QLineEdit>
#include <QListWidget>
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
const QString kNamePrompt = QStringLiteral(
    "Please enter a name for this word list, using only letters, numbers, and spaces");
const QString kInvalidNamePrompt = "Invalid word list name! " + kNamePrompt;
const QString kSaved = QStringLiteral("Your word list has been saved");

// An editor opened straight on a recording navigator: empty, or on a list
// file of the folder as the chooser opens it.
struct EditorRig : WindowRig<FrmCreate> {
    bool openOn(const QString &file = QString(), const QByteArray &bytes = QByteArray())
    {
        state.editingList = !file.isEmpty();
        if (state.editingList) {
            fp.writeFile(file, bytes);
            state.wordListPath = fp.path(file);
        }
        return open();
    }
    QListWidget *list() const { return window->findChild<QListWidget *>("lstWords"); }
    QLineEdit *text() const { return window->findChild<QLineEdit *>("txtWord"); }
    QStringList entries() const { return entriesOf(list()); }
    QStringList listFiles() { return fp.files.list(fp.system.folder, kListExtension); }
    void addWord(const QString &word)
    {
        type(word);
        press(Qt::Key_Return);
    }
};

} // namespace

class TestFrmCreate : public QObject {
    Q_OBJECT

private slots:
    void add_data();
    void add();
    void removing();
    void save_data();
    void save();
    void unreadableList();
    void leavingSavesNothing_data();
    void leavingSavesNothing();
    void failedWriteKeepsWords();
};

void TestFrmCreate::add_data()
{
    QTest::addColumn<int>("words"); // already in the list
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("added");
    QTest::addColumn<QString>("message"); // none: the word is added

    QTest::newRow("blanks and capitals") << 0 << "  Big Cat  " << "bigcat" << "";
    QTest::newRow("15 with blanks, the 40th") << 39 << "Ice Cream Cones" << "icecreamcones" << "";
    QTest::newRow("a repeat") << 2 << "w" << "w" << "";
    QTest::newRow("nothing") << 2 << "" << "" << kNoWord;
    QTest::newRow("blanks") << 2 << "    " << "" << kNoWord;
    QTest::newRow("16 with blanks") << 39 << "ice cream  cones" << "" << kTooLong;
    QTest::newRow("full, nothing typed") << 40 << "" << "" << kListFull;
    QTest::newRow("full, too long") << 40 << "abcdefghijklmnopq" << "" << kListFull;
    QTest::newRow("full, a good word") << 40 << "cat" << "" << kListFull;
}

// Enter appends the typed text trimmed, lower-cased and without blanks, selects it
// and empties the box; a refusal (a full list first, then no word, then too long)
// keeps the list and the text; the focus stays in the box, after a message too.
void TestFrmCreate::add()
{
    QFETCH(int, words);
    QFETCH(QString, typed);
    QFETCH(QString, added);
    QFETCH(QString, message);
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("list.wds"), QByteArray("w\r\n").repeated(words)));
    rig.messagesTakeFocus();
    rig.addWord(typed);
    QCOMPARE(focusName(), QStringLiteral("txtWord"));
    if (message.isEmpty()) {
        QVERIFY(rig.fp.dialogs.shown.isEmpty());
        QCOMPARE(rig.entries().last(), added);
        QCOMPARE(rig.list()->count(), words + 1);
        QCOMPARE(rig.list()->currentRow(), words);
        QVERIFY(rig.text()->text().isEmpty());
    } else {
        QCOMPARE(rig.fp.dialogs.prompts(), QStringList{message});
        QCOMPARE(rig.fp.dialogs.shown.at(0).buttons, MessageButtons::Ok);
        QCOMPARE(rig.list()->count(), words);
        QCOMPARE(rig.list()->currentRow(), words ? 0 : -1);
        QCOMPARE(rig.text()->text(), typed);
    }
}

// Remove and the Delete key in the list take out the selected entry and select the
// one that followed, or the new last, or none; Delete in the text box only edits
// the text; on an empty list Delete, Remove and Save each say so.
void TestFrmCreate::removing()
{
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("abcd.wds"), "ant\r\nbee\r\ncow\r\ndog\r\n"));
    rig.messagesTakeFocus();
    type(QStringLiteral("cat"));
    press(Qt::Key_Home);
    press(Qt::Key_Delete);
    QCOMPARE(rig.text()->text(), QStringLiteral("at"));
    QCOMPARE(rig.list()->count(), 4);

    tabTo(QStringLiteral("lstWords"));
    press(Qt::Key_Delete, Qt::ControlModifier); // the first
    QCOMPARE(rig.entries(), (QStringList{"bee", "cow", "dog"}));
    QCOMPARE(rig.list()->currentRow(), 0);
    press(Qt::Key_Down);
    press(Qt::Key_Backtab);
    QCOMPARE(focusName(), QStringLiteral("cmdRemove"));
    press(Qt::Key_Space); // the middle
    QCOMPARE(rig.entries(), (QStringList{"bee", "dog"}));
    QCOMPARE(rig.list()->currentRow(), 1);
    press(Qt::Key_Space); // the last
    QCOMPARE(rig.entries(), QStringList{"bee"});
    QCOMPARE(rig.list()->currentRow(), 0);
    press(Qt::Key_Space); // the only one
    QCOMPARE(rig.list()->count(), 0);
    QCOMPARE(rig.list()->currentRow(), -1);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());

    press(Qt::Key_Space);
    QCOMPARE(focusName(), QStringLiteral("cmdRemove"));
    press(Qt::Key_Tab);
    press(Qt::Key_Delete);
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    press(Qt::Key_S, Qt::AltModifier);
    QTRY_COMPARE(rig.fp.dialogs.prompts(),
                 (QStringList{kNothingToRemove, kNothingToRemove,
                              "You have not entered any words into the word list. Please type "
                              "some words into the edit box, and then choose save"}));
    QCOMPARE(rig.fp.readFile(QStringLiteral("abcd.wds")),
             QByteArray("ant\r\nbee\r\ncow\r\ndog\r\n"));
    QCOMPARE(rig.text()->text(), QStringLiteral("at"));
}

void TestFrmCreate::save_data()
{
    QTest::addColumn<QString>("file"); // none: a new list
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("replies");
    QTest::addColumn<QStringList>("prompts");
    QTest::addColumn<QString>("saved"); // none: the save was abandoned
    QTest::addColumn<QByteArray>("written");

    const QByteArray animals("cat\r\ndog\r\n");
    const QStringList asked{kNamePrompt, kSaved};
    QTest::newRow("new, valid") << "" << QByteArray() << QStringList{"  Animals "} << asked
                                << "animals.wds" << QByteArray("gnu\r\n");
    QTest::newRow("new, invalid twice, then valid")
        << "" << QByteArray() << QStringList{"my-list", QStringLiteral("caf\u00e9"), "My List 2"}
        << QStringList{kNamePrompt, kInvalidNamePrompt, kInvalidNamePrompt, kSaved}
        << "my list 2.wds" << QByteArray("gnu\r\n");
    QTest::newRow("new, cancelled") << "" << QByteArray() << QStringList{""}
                                    << QStringList{kNamePrompt} << "" << QByteArray();
    QTest::newRow("invalid, then blanks")
        << "animals.wds" << animals << QStringList{"my-list", "  "}
        << QStringList{kNamePrompt, kInvalidNamePrompt} << "" << QByteArray();
    QTest::newRow("same name") << "animals.wds" << animals << QStringList{"animals"} << asked
                               << "animals.wds" << QByteArray("cat\r\ndog\r\ngnu\r\n");
    QTest::newRow("new name, the old file kept") << "animals.wds" << animals << QStringList{"Zoo"}
                                                 << asked << "zoo.wds"
                                                 << QByteArray("cat\r\ndog\r\ngnu\r\n");
    QTest::newRow("own name in capitals") << "Farm.WDS" << QByteArray("pig\r\n")
                                          << QStringList{"Farm"} << asked << "Farm.WDS"
                                          << QByteArray("pig\r\ngnu\r\n");
    QTest::newRow("commas, quotes, blank lines")
        << "odd.wds" << QByteArray("a,b\r\n\r\n\"c,d\"\r\ne") << QStringList{"odd"} << asked
        << "odd.wds" << QByteArray("a\r\nb\r\n\r\nc,d\r\ne\r\ngnu\r\n");
    QTest::newRow("empty file") << "empty.wds" << QByteArray() << QStringList{"empty"} << asked
                                << "empty.wds" << QByteArray("gnu\r\n");
}

// A list opens with its first entry selected (none when empty); Save asks a name,
// offering the edited list's own, asks again with no default after an invalid one,
// and writes the named file byte for byte, leaving any other as it was, and goes
// back to the menu; an empty name abandons the save silently, the editor open.
void TestFrmCreate::save()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, replies);
    QFETCH(QStringList, prompts);
    QFETCH(QString, saved);
    QFETCH(QByteArray, written);
    EditorRig rig;
    QVERIFY(rig.openOn(file, bytes));
    QCOMPARE(rig.list()->currentRow(), bytes.isEmpty() ? -1 : 0);
    rig.addWord(QStringLiteral("gnu"));
    const QStringList before = rig.entries();
    rig.fp.dialogs.replies = replies;
    tabTo(QStringLiteral("cmdSave"));
    press(Qt::Key_Space);

    QCOMPARE(rig.fp.dialogs.prompts(), prompts);
    for (int i = 0; i < replies.size(); ++i) {
        const ShownDialog &asked = rig.fp.dialogs.shown.at(i);
        QCOMPARE(asked.kind, ShownDialog::Kind::Input);
        QCOMPARE(asked.title, QStringLiteral("Save"));
        QCOMPARE(asked.defaultText, i == 0 ? file.left(file.size() - 4) : QString());
    }
    if (!file.isEmpty())
        QCOMPARE(rig.fp.readFile(file), saved == file ? written : bytes);
    if (saved.isEmpty()) {
        QCOMPARE(rig.listFiles().size(), file.isEmpty() ? 0 : 1);
        QCOMPARE(rig.entries(), before);
        QVERIFY(rig.window->isVisible());
        QCOMPARE(rig.navigator.mainMenuShown, 0);
    } else {
        QCOMPARE(rig.fp.readFile(saved), written);
        QCOMPARE(rig.listFiles().size(), file.isEmpty() || saved == file ? 1 : 2);
        QCOMPARE(rig.navigator.mainMenuShown, 1);
        QTRY_VERIFY(rig.window.isNull());
    }
}

// A list that can't be read is named with the reason, and the player is back at the main menu.
void TestFrmCreate::unreadableList()
{
    EditorRig rig;
    rig.fp.files.failRead.insert(rig.fp.path(QStringLiteral("locked.wds")));
    QVERIFY(!rig.openOn(QStringLiteral("locked.wds"), "cat\r\n"));
    QVERIFY(!rig.loaded);
    QCOMPARE(rig.fp.dialogs.prompts(),
             QStringList{"The word list file \"" + rig.fp.path(QStringLiteral("locked.wds")) +
                         "\" could not be opened: Permission denied."});
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    QCOMPARE(rig.fp.readFile(QStringLiteral("locked.wds")), QByteArray("cat\r\n"));
}

void TestFrmCreate::leavingSavesNothing_data()
{
    QTest::addColumn<QKeySequence>("keys"); // none: the close box
    QTest::newRow("Escape") << QKeySequence(Qt::Key_Escape);
    QTest::newRow("Tab to Cancel, Space") << QKeySequence(Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space);
    QTest::newRow("close box") << QKeySequence();
}

// Escape, Cancel or the close box after changes writes nothing, asks nothing and
// shows the menu once.
void TestFrmCreate::leavingSavesNothing()
{
    QFETCH(QKeySequence, keys);
    EditorRig rig;
    QVERIFY(rig.openOn(QStringLiteral("animals.wds"), "cat\r\ndog\r\n"));
    rig.addWord(QStringLiteral("gnu"));
    tabTo(QStringLiteral("lstWords"));
    press(Qt::Key_Home);
    press(Qt::Key_Delete);
    QCOMPARE(rig.entries(), (QStringList{"dog", "gnu"}));
    for (int i = 0; i < keys.count(); ++i)
        press(keys[i].key(), keys[i].keyboardModifiers());
    if (keys.isEmpty())
        QVERIFY(rig.window->close());
    QTRY_VERIFY(rig.window.isNull());
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
    QCOMPARE(rig.fp.readFile(QStringLiteral("animals.wds")), QByteArray("cat\r\ndog\r\n"));
    QCOMPARE(rig.listFiles(), QStringList{"animals.wds"});
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
    QCOMPARE(rig.fp.dialogs.lastPrompt(),
             "The word list could not be saved in the file \"" +
                 rig.fp.path(QStringLiteral("pets.wds")) +
                 "\": Permission denied. Your words are still in the list.");
    QVERIFY(rig.window->isVisible());
    QCOMPARE(rig.entries(), (QStringList{"cat", "dog"}));
    QCOMPARE(rig.navigator.mainMenuShown, 0);
    QCOMPARE(rig.fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\n"));
}

QTEST_MAIN(TestFrmCreate)
#include "tst_frmcreate.moc"
