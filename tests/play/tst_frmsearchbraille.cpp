#include "keys.h"
#include "play/frmsearch.h"
#include "puzzles.h"
#include "windowrig.h"

#include <QtTest>

#include <functional>

// The puzzle window on a scripted braille display of 40 cells.

using namespace lexicove;
using namespace lexicove::test;

class TestFrmSearchBraille : public QObject {
    Q_OBJECT

private slots:
    void theDisplayShowsTheCursorsRow();
    void statusGivesWayToTheRow();
    void othersHaveTheDisplayBesideTheGrid();
};

namespace {

using Kind = BrailleDisplay::KeyKind;
const QString kLetters = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
const QString kFifty = kLetters + kLetters.left(24);
const QString kPage1 = kFifty.left(40);
const QString kStatus = QStringLiteral("r1 c5 1 of 2 words");

// Five rows of 50 letters, "cde" found and the cursor on its "e": row 1 felt "abc8d8e^8f...".
struct BrailleRig : WindowRig<FrmSearch> {
    ~BrailleRig()
    {
        QVERIFY2(fp.dialogs.unexpected.isEmpty(), qPrintable(fp.dialogs.unexpected.join('|')));
    }
    bool open()
    {
        setPuzzle(state, QStringList(5, kFifty), {"cde", "zzz"});
        return WindowRig::open() && fp.braille.held;
    }
    QString felt(int cells = 10) const { return feel(fp.braille.shown()).left(cells); }
    void findCde()
    {
        press(Qt::Key_Home);
        for (int i = 0; i < 2; ++i)
            press(Qt::Key_Right);
        press(Qt::Key_Space);
        QCOMPARE(felt(7), "abc^7de");
        press(Qt::Key_Right);
        press(Qt::Key_Right);
        QCOMPARE(felt(8), "abc7de^f");
        press(Qt::Key_Space);
        QCOMPARE(fp.dialogs.lastPrompt(), "Correct! You found the word cde!");
        QCOMPARE(felt(), "abc8d8e^8f");
    }
};

} // namespace

// While the grid has the focus the display shows the cursor's row, its page turning with the
// cursor, after each move's letter sound; a routing key moves the cursor as a key would (nothing
// on its own cell or past the row's end), and the pan keys turn pages.
void TestFrmSearchBraille::theDisplayShowsTheCursorsRow()
{
    BrailleRig rig;
    QVERIFY(rig.open());
    QCOMPARE(rig.felt(41), "a^" + kPage1.mid(1));
    FakeBrailleDisplay &braille = rig.fp.braille;
    // What each step sounds and shows: the display's text, its cursor cell.
    const struct {
        std::function<void()> act;
        QString heard;
        QString shown;
        int cursor;
    } steps[] = {
        {[] { press(Qt::Key_End); }, "x.wav", "opqrstuvwx", 10},
        {[&] {
             braille.press({Kind::PanLeft, 0});
         },
         "", kPage1, 0},
        {[&] {
             braille.press({Kind::Route, 2});
         },
         "c.wav", kPage1, 3},
        {[&] {
             braille.press({Kind::Route, 2});
         },
         "", kPage1, 3},
        {[&] {
             braille.press({Kind::PanRight, 0});
         },
         "", "opqrstuvwx", 0},
        {[&] {
             braille.press({Kind::Route, 10});
         },
         "", "opqrstuvwx", 0},
        {[&] {
             braille.press({Kind::Route, 9});
         },
         "x.wav", "opqrstuvwx", 10},
        {[] { press(Qt::Key_Down); }, "x.wav", "opqrstuvwx", 10},
        {[] { press(Qt::Key_Home); }, "a.wav", kPage1, 1},
    };
    QStringList actual, expected;
    for (const auto &step : steps) {
        rig.fp.sound.played.clear();
        step.act();
        const BrailleCells shown = braille.shown();
        actual << rig.fp.sound.names().join(' ') + " | " + shown.text + " " +
                      QString::number(shown.cursor);
        expected << step.heard + " | " + step.shown + " " + QString::number(step.cursor);
    }
    QCOMPARE(actual, expected);
}

// Ctrl+L shows the cursor's place and the words found in place of the row until the status time
// has passed, or a routing key, a pan key or a move brings the row back sooner; a first mark
// carries dot 7 until the second finds the word, whose letters carry dot 8.
void TestFrmSearchBraille::statusGivesWayToTheRow()
{
    BrailleRig rig;
    QVERIFY(rig.open());
    rig.findCde();
    FakeBrailleDisplay &braille = rig.fp.braille;
    const std::function<void()> backs[] = {
        [&] {
            braille.press({Kind::Route, 4});
        },
        [&] {
            braille.press({Kind::PanLeft, 0});
        },
        [] {
            press(Qt::Key_Right);
            press(Qt::Key_Left);
        },
        [&] { rig.fp.clock.advance(1); },
    };
    for (const auto &back : backs) {
        press(Qt::Key_L, Qt::ControlModifier);
        QCOMPARE(braille.shown().text, kStatus);
        rig.fp.clock.advance(FrmSearch::kBrailleStatusMs - 1);
        QCOMPARE(braille.shown().text, kStatus);
        back();
        QCOMPARE(rig.felt(), "abc8d8e^8f");
    }
}

// A message box has the display while it is up and the row comes back with the focus; leaving
// the puzzle gives the display back.
void TestFrmSearchBraille::othersHaveTheDisplayBesideTheGrid()
{
    BrailleRig rig;
    QVERIFY(rig.open());
    rig.findCde();
    bool heldUnderBox = true;
    rig.fp.dialogs.onShow = [&](const ShownDialog &) {
        standInBox([&] { heldUnderBox = rig.fp.braille.held; });
    };
    rig.fp.braille.cells.clear();
    press(Qt::Key_T, Qt::ControlModifier);
    QVERIFY(QTest::qWaitForWindowActive(rig.window));
    QVERIFY(!heldUnderBox);
    QCOMPARE(rig.felt(), "abc8d8e^8f");
    rig.fp.dialogs.answers = {MessageResult::Yes};
    press(Qt::Key_Escape);
    QTRY_VERIFY(!rig.window);
    QVERIFY(!rig.fp.braille.held);
}

QTEST_MAIN(TestFrmSearchBraille)
#include "tst_frmsearchbraille.moc"
