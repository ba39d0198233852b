// The word list chooser, driven from the keyboard: its entries in both modes,
// the random draw, OK and Cancel, and deleting lists.

#include "core/gamestate.h"
#include "keys.h"
#include "windowrig.h"
#include "wordlists/frmwords.h"
#include "wordlists/wordlists.h"

#include <QFile>
#include <QListWidget>
#include <QTest>

#include <cmath>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QString kRandom = QStringLiteral("Choose random list");
const QString kDeleted = QStringLiteral("The word list was deleted.");

// A chooser opened straight on a recording navigator, as the main menu opens
// it in the given mode, on a folder holding the given files.
struct ChooserRig : WindowRig<FrmWords> {
    ChooserRig(const QString &mode, const QList<std::pair<QString, QByteArray>> &files)
    {
        state.chooserMode = mode;
        state.editingList = mode == kChooserEdit;
        for (const auto &[name, bytes] : files)
            fp.writeFile(name, bytes);
    }
    QListWidget *list() const { return window->findChild<QListWidget *>("lstWords"); }
    QStringList entries() const { return entriesOf(list()); }
    QStringList listFiles() { return fp.files.list(fp.system.folder, kListExtension); }
};

// The lists of the examples: animals of 12 lines, birds of 1.
const QList<std::pair<QString, QByteArray>> kAnimalsAndBirds = {
    {"animals.wds", QByteArray("a\r\n").repeated(12)}, {"birds.wds", "owl\r\n"}};

} // namespace

class TestFrmWords : public QObject {
    Q_OBJECT

private slots:
    void entries();
    void choosing_data();
    void choosing();
    void deleting();
    void noListsAtAll();
};

// Each list shows as name - count words (0 for an empty or unreadable file), the
// random entry last only to play, the first entry selected; Delete does nothing in play mode.
void TestFrmWords::entries()
{
    ChooserRig play(kChooserOptions, kAnimalsAndBirds);
    QVERIFY(play.open());
    QCOMPARE(play.entries(), (QStringList{"animals - 12 words", "birds - 1 words", kRandom}));
    QCOMPARE(play.list()->currentRow(), 0);
    QVERIFY(play.list()->currentItem()->isSelected());
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    play.fp.dialogs.answers = {MessageResult::Yes, MessageResult::Yes};
    press(Qt::Key_Delete);
    press(Qt::Key_End);
    press(Qt::Key_Delete);
    QVERIFY(play.fp.dialogs.shown.isEmpty());
    QCOMPARE(play.list()->count(), 3);

    ChooserRig edit(kChooserEdit, kAnimalsAndBirds);
    edit.fp.writeFile(QStringLiteral("empty.wds"), QByteArray());
    edit.fp.writeFile(QStringLiteral("locked.wds"), "a\r\n");
    edit.fp.files.failRead.insert(edit.fp.path(QStringLiteral("locked.wds")));
    QVERIFY(edit.open());
    QCOMPARE(edit.entries(), (QStringList{"animals - 12 words", "birds - 1 words",
                                          "empty - 0 words", "locked - 0 words"}));
    QCOMPARE(edit.list()->currentRow(), 0);
    QVERIFY(edit.fp.dialogs.shown.isEmpty());
}

void TestFrmWords::choosing_data()
{
    QTest::addColumn<bool>("edit");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QKeySequence>("keys"); // none: the close box
    QTest::addColumn<double>("r"); // the draw scripted; none when negative
    QTest::addColumn<QString>("chosen"); // none: back to the main menu

    const QStringList abc{"a.wds", "b.wds", "c.wds"}, odd{"my-list - x.wds", "Zoo.WDS"};
    const QKeySequence enter(Qt::Key_Return), second(Qt::Key_Down, Qt::Key_Return),
        random(Qt::Key_End, Qt::Key_Return);
    QTest::newRow("first") << false << abc << enter << -1.0 << "a.wds";
    QTest::newRow("hyphenated") << false << odd << enter << -1.0 << "my-list - x.wds";
    QTest::newRow("capitals") << false << odd << second << -1.0 << "Zoo.WDS";
    QTest::newRow("edit") << true << abc << second << -1.0 << "b.wds";
    QTest::newRow("random below 1/3") << false << abc << random << std::nextafter(1.0 / 3, 0.0)
                                      << "a.wds";
    QTest::newRow("random 1/3") << false << abc << random << 1.0 / 3 << "b.wds";
    QTest::newRow("random below 2/3") << false << abc << random << std::nextafter(2.0 / 3, 0.0)
                                      << "b.wds";
    QTest::newRow("random 2/3") << false << abc << random << 2.0 / 3 << "c.wds";
    QTest::newRow("random, one list") << false << QStringList{"a.wds"} << random
                                      << std::nextafter(1.0, 0.0) << "a.wds";
    QTest::newRow("Escape") << false << abc << QKeySequence(Qt::Key_Down, Qt::Key_Escape) << -1.0
                            << "";
    QTest::newRow("Alt+C") << true << abc << QKeySequence(Qt::ALT | Qt::Key_C) << -1.0 << "";
    QTest::newRow("Tab to Cancel, Enter")
        << false << abc << QKeySequence(Qt::Key_Down, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return)
        << -1.0 << "";
    QTest::newRow("close box") << false << abc << QKeySequence() << -1.0 << "";
}

// Enter stores the chosen list's path and opens the options window, or in edit
// mode sets editingList and opens the editor; the random entry takes list Int(r x n);
// Escape, Cancel and the close box bring the main menu back once and change nothing.
void TestFrmWords::choosing()
{
    QFETCH(bool, edit);
    QFETCH(QStringList, files);
    QFETCH(QKeySequence, keys);
    QFETCH(double, r);
    QFETCH(QString, chosen);
    ChooserRig rig(edit ? kChooserEdit : kChooserOptions, {});
    for (const QString &file : files)
        rig.fp.writeFile(file, "x\r\n");
    if (r >= 0)
        rig.fp.random.script = {r};
    QVERIFY(rig.open());
    rig.state.editingList = false; // OK sets it in edit mode
    for (int i = 0; i < keys.count(); ++i)
        press(keys[i].key(), keys[i].keyboardModifiers());
    if (keys.isEmpty())
        QVERIFY(rig.window->close());
    QTRY_VERIFY(rig.window.isNull());
    const bool ok = !chosen.isEmpty();
    QCOMPARE(rig.state.wordListPath, ok ? rig.fp.path(chosen) : QString());
    QCOMPARE(rig.fp.random.drawsTaken, r >= 0 ? 1 : 0);
    QCOMPARE(rig.state.editingList, edit && ok);
    QCOMPARE(rig.navigator.editorsOpened, edit && ok ? 1 : 0);
    QCOMPARE(rig.navigator.optionsOpened, !edit && ok ? 1 : 0);
    QCOMPARE(rig.navigator.mainMenuShown, ok ? 0 : 1);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
}

// Delete asks by name; No keeps everything; Yes removes the entry and its file and
// selects the entry that followed, or the new last, or none; a failed delete names
// the file and brings the entry back; the focus is back in the list after each box.
void TestFrmWords::deleting()
{
    ChooserRig rig(kChooserEdit, {{"ant.wds", "a\r\n"}, {"bee-fly.wds", "a\r\nb\r\n"},
                                  {"cow.wds", "a\r\nb\r\nc\r\n"}});
    QVERIFY(rig.open());
    rig.messagesTakeFocus();
    auto deleteAnswering = [&](MessageResult answer, Qt::KeyboardModifiers shift = {}) {
        rig.fp.dialogs.clear();
        rig.fp.dialogs.answers = {answer};
        press(Qt::Key_Delete, shift); // the shift state is not looked at
    };
    auto asked = [](const QString &name) {
        return "Are you sure you want to delete the " + name + " word list?";
    };
    deleteAnswering(MessageResult::Yes);
    QCOMPARE(rig.fp.dialogs.prompts(), (QStringList{asked("ant"), kDeleted}));
    QCOMPARE(rig.fp.dialogs.shown.at(0).title, QStringLiteral("Delete Word List"));
    QCOMPARE(rig.fp.dialogs.shown.at(0).buttons, MessageButtons::YesNo);
    QCOMPARE(rig.fp.dialogs.shown.at(1).buttons, MessageButtons::Ok);
    QCOMPARE(rig.entries(), (QStringList{"bee-fly - 2 words", "cow - 3 words"}));
    QCOMPARE(rig.list()->currentRow(), 0);
    QCOMPARE(rig.listFiles(), (QStringList{"bee-fly.wds", "cow.wds"}));
    QCOMPARE(focusName(), QStringLiteral("lstWords"));

    press(Qt::Key_End);
    deleteAnswering(MessageResult::No);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{asked("cow")});
    QCOMPARE(rig.list()->count(), 2);
    QCOMPARE(rig.fp.readFile(QStringLiteral("cow.wds")), QByteArray("a\r\nb\r\nc\r\n"));
    deleteAnswering(MessageResult::Yes, Qt::ShiftModifier);
    QCOMPARE(rig.entries(), QStringList{"bee-fly - 2 words"});
    QVERIFY(rig.list()->currentItem()->isSelected());

    const QString beeFly = rig.fp.path(QStringLiteral("bee-fly.wds"));
    rig.fp.files.failRemove.insert(beeFly);
    deleteAnswering(MessageResult::Yes);
    QCOMPARE(rig.fp.dialogs.prompts(),
             (QStringList{asked("bee-fly"), "The word list file \"" + beeFly +
                                                "\" could not be deleted: Permission denied."}));
    QCOMPARE(rig.entries(), QStringList{"bee-fly - 2 words"});
    QCOMPARE(rig.list()->currentRow(), 0);
    QVERIFY(QFile::exists(beeFly));
    rig.fp.files.failRemove.clear();
    deleteAnswering(MessageResult::Yes);
    QCOMPARE(rig.list()->count(), 0);
    QVERIFY(rig.list()->selectedItems().isEmpty());
    QVERIFY(rig.listFiles().isEmpty());

    // Nothing left: Delete and Enter say so, and the chooser stays until Escape.
    rig.fp.dialogs.clear();
    press(Qt::Key_Delete);
    press(Qt::Key_Return);
    QCOMPARE(rig.fp.dialogs.prompts(),
             (QStringList{"Your list of files is empty. There is nothing to remove.",
                          "There is no word list to open."}));
    QCOMPARE(rig.navigator.editorsOpened, 0);
    QCOMPARE(focusName(), QStringLiteral("lstWords"));
    press(Qt::Key_Escape);
    QCOMPARE(rig.navigator.mainMenuShown, 1);
}

// With no lists, in either mode, the player is told so and sent back to the main menu unshown.
void TestFrmWords::noListsAtAll()
{
    for (const QString &mode : {kChooserOptions, kChooserEdit}) {
        ChooserRig rig(mode, {{"notes.txt", "cat\r\n"}});
        QVERIFY(!rig.open());
        QVERIFY(!rig.loaded);
        QCOMPARE(rig.fp.dialogs.prompts(),
                 QStringList{"No word lists are available. Please choose the Create Word List "
                             "option first."});
        QCOMPARE(rig.fp.dialogs.shown.at(0).buttons, MessageButtons::Ok);
        QCOMPARE(rig.navigator.mainMenuShown, 1);
    }
}

QTEST_MAIN(TestFrmWords)
#include "tst_frmwords.moc"
