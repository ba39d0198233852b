#include "play/frmlist.h"
#include "play/masking.h"
#include "puzzles.h"

#include <QListWidget>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

class TestMasking : public QObject {
    Q_OBJECT

private slots:
    void wordsToFind_data();
    void wordsToFind();
    void hiddenWordsMasked();
};

void TestMasking::wordsToFind_data()
{
    QTest::addColumn<bool>("closeBox");
    QTest::newRow("Escape") << false;
    QTest::newRow("close box") << true;
}

// Ctrl+W lists the words still to find in slot order, the first selected and focused, in place of the puzzle; leaving the list brings the puzzle back as it was; with every word found it says so and shows no list.
void TestMasking::wordsToFind()
{
    QFETCH(bool, closeBox);
    PuzzleRig rig;
    SetPuzzle(rig.state, Alphabet(), {"abc", "fgh", "klm", "pqr"}); // an earlier, longer list
    QVERIFY(rig.open(Alphabet(), {"abc", "fgh", "klm"}));
    rig.mark({{2, 1}, {2, 3}, {1, 3}}); // "fgh" found, a mark pending at the end of "abc"
    rig.fp.dialogs.clear();
    rig.fp.sound.played.clear();

    press(Qt::Key_W, Qt::ControlModifier);
    FrmList &list = rig.navigator.listWindow();
    QVERIFY(QTest::qWaitForWindowActive(&list));
    QVERIFY(!rig.window->isVisible());
    QCOMPARE(list.windowTitle(), QStringLiteral("Word List - Words Remaining"));
    auto *entries = list.findChild<QListWidget *>(QStringLiteral("lstList"));
    QCOMPARE(focused(), entries);
    QCOMPARE(entriesOf(entries), (QStringList{"abc", "klm"}));
    QVERIFY(entries->item(0)->isSelected());
    press(Qt::Key_Down);
    if (closeBox)
        QVERIFY(!list.close());
    else
        press(Qt::Key_Escape);

    QVERIFY(QTest::qWaitForWindowActive(rig.window));
    QVERIFY(!list.isVisible());
    QCOMPARE(focused(), rig.grid());
    QCOMPARE(rig.cursor(), (Cell{1, 3}));
    QCOMPARE(rig.fp.sound.names(), QStringList{});
    QCOMPARE(rig.mark({{1, 1}}), QStringList{FoundMessage("abc")});

    rig.mark({{3, 1}, {3, 3}});
    rig.fp.dialogs.clear();
    press(Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{"You've found all the words!"});
    QVERIFY(!list.isVisible());
    QCOMPARE(focused(), rig.grid());
}

// With hidden words each word still to find is listed as "x " per letter, so words of one length look alike; printed pages get one "x" per letter.
void TestMasking::hiddenWordsMasked()
{
    PuzzleRig rig;
    QVERIFY(rig.open(Alphabet(), {"abcde", "fgh", "klm"}, 0, true));
    rig.mark({{2, 1}, {2, 3}});
    press(Qt::Key_W, Qt::ControlModifier);
    FrmList &list = rig.navigator.listWindow();
    QVERIFY(QTest::qWaitForWindowActive(&list));
    QCOMPARE(entriesOf(list.findChild<QListWidget *>(QStringLiteral("lstList"))),
             (QStringList{"x x x x x ", "x x x "}));
    press(Qt::Key_Escape);
    QVERIFY(QTest::qWaitForWindowActive(rig.window));
    QCOMPARE(MaskWord("abc"), QStringLiteral("xxx"));
}

QTEST_MAIN(TestMasking)
#include "tst_masking.moc"
