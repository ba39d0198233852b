// The word list editor by keys: adding, removing, saving and cancelling, the files byte for byte.

#include "keys.h"
#include "windowrig.h"
#include "wordlists/frmcreate.h"

using namespace lexicove;
using namespace lexicove::test;

struct EditorRig : WindowRig<FrmCreate> {
    bool openOn(const QString &file, const QByteArray &bytes)
    {
        state.editingList = true;
        fp.writeFile(file, bytes);
        state.wordListPath = fp.path(file);
        return open();
    }
    QStringList entries() const
    {
        return entriesOf(window->findChild<QAbstractItemView *>("lstWords"));
    }
};

class TestFrmCreate : public QObject {
    Q_OBJECT

private slots:
    // Enter adds the text lower-cased without blanks; refused: full, empty, too long; focus kept.
    void add()
    {
        EditorRig rig;
        QVERIFY(rig.openOn("l.wds", QByteArray("w\r\n").repeated(39)));
        rig.messagesTakeFocus();
        const auto add = [&](const QString &typed, const QString &message) {
            rig.fp.dialogs.clear();
            press(Qt::Key_A, Qt::ControlModifier);
            type(typed + "\r");
            QCOMPARE(rig.fp.dialogs.prompts().join(""), message);
            QCOMPARE(focusName(), "txtWord");
            QCOMPARE(focused()->property("text").toString(), message.isEmpty() ? "" : typed);
        };
        add("ice cream  cones", "This word is too long. Please enter a shorter word");
        add("  ", "You did not enter a word. Please enter a word into the edit box, then "
                  "choose Add.");
        add(" Ice Cream Cones ", "");
        QCOMPARE(rig.entries(), QStringList(39, "w") << "icecreamcones");
        add("", "You have entered the maximum number of words");
    }

    // Remove, or Delete in the list but not in the box, takes out the selected word and selects
    // the next or new last; an empty list says so; Cancel then leaves the file as it was.
    void removeThenCancel()
    {
        EditorRig rig;
        QVERIFY(rig.openOn("l.wds", "ant\r\nbee\r\ncow\r\ndog\r\n"));
        press(Qt::Key_Delete);
        tabTo("lstWords");
        press(Qt::Key_Delete); // the first
        QCOMPARE(rig.entries(), (QStringList{"bee", "cow", "dog"}));
        press(Qt::Key_Down);
        tabTo("cmdRemove");
        press(Qt::Key_Space); // the middle
        QCOMPARE(rig.entries(), (QStringList{"bee", "dog"}));
        press(Qt::Key_Space); // the last
        QCOMPARE(rig.entries(), QStringList{"bee"});
        press(Qt::Key_Space);
        press(Qt::Key_Space);
        tabTo("cmdCancel");
        press(Qt::Key_Space);
        QTRY_COMPARE(rig.navigator.mainMenuShown, 1);
        QCOMPARE(rig.fp.dialogs.prompts(),
                 QStringList{"Your word list is empty. There is nothing to remove."});
        QCOMPARE(rig.fp.readFile("l.wds"), "ant\r\nbee\r\ncow\r\ndog\r\n");
    }

    // Save offers the list's name and asks again after an invalid one; an empty name, or a write
    // that fails as the disk fills, saves nothing and keeps the old file and the words; a save
    // after it writes the file with CR LF line ends and every character kept (in UTF-8 when 8
    // bits can't hold one); a new name leaves the old file.
    void save()
    {
        EditorRig rig;
        QVERIFY(rig.openOn("pets.wds", "cat\n"));
        type("łoś\r");
        const auto save = [&](qint64 limit, const QStringList &replies,
                              const QStringList &prompts) {
            rig.fp.files.writeLimit = limit;
            rig.fp.dialogs.clear();
            rig.fp.dialogs.replies = replies;
            press(Qt::Key_S, Qt::AltModifier);
            QTRY_COMPARE(rig.fp.dialogs.prompts(), prompts);
            QCOMPARE(rig.fp.dialogs.shown[0].defaultText, "pets");
            QCOMPARE(rig.fp.readFile("pets.wds"), "cat\n");
        };
        const QString asked = "Please enter a name for this word list, using only letters, "
                              "numbers, and spaces";
        save(-1, {"my-list", "  "}, {asked, "Invalid word list name! " + asked});
        save(4, {"pets"},
             {asked, "The word list could not be saved in the file \"" + rig.fp.path("pets.wds") +
                         "\": File too large. Your words are still in the list."});
        QCOMPARE(QDir(rig.fp.dir.path()).entryList(QDir::Files), QStringList{"pets.wds"});
        QCOMPARE(rig.entries(), (QStringList{"cat", "\u0142o\u015b"}));
        QCOMPARE(focusName(), "txtWord");
        save(-1, {" My Zoo 2 "}, {asked, "Your word list has been saved"});
        QCOMPARE(rig.fp.readFile("my zoo 2.wds"), "cat\r\n\xc5\x82o\xc5\x9b\r\n");
        QCOMPARE(rig.fp.files.list(rig.fp.system.folder, ".wds").size(), 2);
        QCOMPARE(rig.navigator.mainMenuShown, 1);
    }
};

QTEST_MAIN(TestFrmCreate)
#include "tst_frmcreate.moc"
