// The word list chooser by keys: its entries, choosing, the random draw and deleting.

#include "keys.h"
#include "windowrig.h"
#include "wordlists/frmwords.h"

#include <QListWidget>

using namespace lexicove;
using namespace lexicove::test;

// A chooser in play or edit mode on a folder of n files, the first holding n - 1 lines, the
// next one fewer, the last none.
struct ChooserRig : WindowRig<FrmWords> {
    ChooserRig(bool edit, const QStringList &files)
    {
        state.chooserMode = edit ? kChooserEdit : kChooserOptions;
        state.editingList = edit;
        for (int i = 0; i < files.size(); ++i)
            fp.writeFile(files[i], QByteArray("a\r\n").repeated(files.size() - 1 - i));
    }
};

class TestFrmWords : public QObject {
    Q_OBJECT

private slots:
    // Lists show as "name - count words", names exactly as they are, the random entry last only
    // to play; Enter opens the options, or the editor in edit mode, on the list; the random entry
    // takes list Int(r x n).
    void choosing()
    {
        const QStringList files{"50%1 off.wds", "a.wds", "my-list - x.wds", "Zoo.WDS"};
        const struct {
            bool edit;
            QString keys;
            double r;
            int chosen;
        } cases[] = {{false, "Return", -1, 0},
                     {true, "Down, Return", -1, 1},
                     {false, "End, Return", 0.2499999, 0},
                     {false, "End, Return", 0.25, 1},
                     {false, "End, Return", 0.7499999, 2},
                     {false, "End, Return", 0.75, 3}};
        for (const auto &c : cases) {
            ChooserRig rig(c.edit, files);
            rig.fp.random.script = {c.r};
            QVERIFY(rig.open());
            QStringList shown{"50%1 off - 3 words", "a - 2 words", "my-list - x - 1 words",
                              "Zoo - 0 words"};
            QCOMPARE(entriesOf(rig.window->findChild<QListWidget *>("lstWords")),
                     c.edit ? shown : shown << "Choose random list");
            QTest::keySequence(focused(), QKeySequence::fromString(c.keys));
            QTRY_VERIFY(rig.window.isNull());
            QCOMPARE(rig.state.wordListPath, rig.fp.path(files[c.chosen]));
            QCOMPARE(rig.navigator.editorsOpened, c.edit ? 1 : 0);
            QCOMPARE(rig.navigator.optionsOpened, c.edit ? 0 : 1);
        }
    }

    // Delete asks by name; Yes removes the list and selects the next or new last entry, the
    // focus back in the list; with none left it says so; Escape, then reopening, gives the menu.
    void deleting()
    {
        ChooserRig rig(true, {"ant.wds", "bee.wds", "cow.wds"});
        QVERIFY(rig.open());
        rig.messagesTakeFocus();
        const auto del = [&](const QStringList &prompts) {
            rig.fp.dialogs.clear();
            rig.fp.dialogs.answers = {prompts.size() > 1 ? MessageResult::Yes : MessageResult::No};
            press(Qt::Key_Delete);
            QCOMPARE(rig.fp.dialogs.prompts(), prompts);
            QCOMPARE(focusName(), QStringLiteral("lstWords"));
        };
        const QString asked = QStringLiteral("Are you sure you want to delete the %1 word list?");
        const QString deleted = QStringLiteral("The word list was deleted.");
        del({asked.arg("ant"), deleted});
        QCOMPARE(rig.fp.dialogs.shown.at(0).title, QStringLiteral("Delete Word List"));
        del({asked.arg("bee")});
        press(Qt::Key_End);
        del({asked.arg("cow"), deleted});
        del({asked.arg("bee"), deleted});
        del({"Your list of files is empty. There is nothing to remove."});
        press(Qt::Key_Escape);
        QVERIFY(!rig.open());
        QCOMPARE(rig.fp.dialogs.lastPrompt(), "No word lists are available. Please choose the "
                                              "Create Word List option first.");
        QCOMPARE(rig.navigator.mainMenuShown, 2);
    }
};

QTEST_MAIN(TestFrmWords)
#include "tst_frmwords.moc"
