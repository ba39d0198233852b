#include "keys.h"
#include "play/frmsearch.h"
#include "puzzles.h"
#include "windowrig.h"

#include <QtTest>

#include <functional>

// The puzzle window on a scripted braille display of 40 cells; the real display's path, message
// boxes and a whole puzzle played from it are in tests/platform/tst_braille.cpp.

using namespace lexicove;
using namespace lexicove::test;

class TestFrmSearchBraille : public QObject {
    Q_OBJECT

private slots:
    void displayKeysAndStatus();
};

// A routing key moves the cursor as a key would (nothing on its own cell or past the row's end)
// and the pan keys turn pages; Ctrl+L shows the place and the words found in place of the row
// until the status time has passed, or a routing key, a pan key or a move brings the row back.
void TestFrmSearchBraille::displayKeysAndStatus()
{
    WindowRig<FrmSearch> rig;
    const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    const QString fifty = letters + letters.left(24);
    setPuzzle(rig.state, QStringList(5, fifty), {"cde", "zzz"});
    QVERIFY(rig.open());
    FakeBrailleDisplay &braille = rig.fp.braille;
    using Kind = BrailleDisplay::KeyKind;
    const auto key = [&](Kind kind, int cell = 0) {
        return [&braille, kind, cell] { braille.press({kind, cell}); };
    };
    const auto status = [] { press(Qt::Key_L, Qt::ControlModifier); };
    const auto almost = [&] { rig.fp.clock.advance(FrmSearch::kBrailleStatusMs - 1); };
    const QString page1 = fifty.left(40), page2 = fifty.mid(40);
    const QString place = QStringLiteral("r1 c41 0 of 2 words");
    // What each step sounds and shows: the display's text, its cursor cell.
    const struct {
        std::function<void()> act;
        QString heard;
        QString shown;
        int cursor;
    } steps[] = {
        {[] {}, "", page1, 1},
        {[] { press(Qt::Key_End); }, "x.wav", page2, 10},
        {key(Kind::PanLeft), "", page1, 0},
        {key(Kind::Route, 2), "c.wav", page1, 3},
        {key(Kind::Route, 2), "", page1, 3},
        {key(Kind::PanRight), "", page2, 0},
        {key(Kind::Route, 10), "", page2, 0},
        {key(Kind::Route, 0), "o.wav", page2, 1},
        {status, "", place, 0},
        {almost, "", place, 0},
        {[&] { rig.fp.clock.advance(1); }, "", page2, 1},
        {status, "", place, 0},
        {key(Kind::Route, 0), "", page2, 1},
        {status, "", place, 0},
        {key(Kind::PanLeft), "", page1, 0},
        {status, "", place, 0},
        {[] { press(Qt::Key_Left); }, "n.wav", page1, 40},
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

QTEST_MAIN(TestFrmSearchBraille)
#include "tst_frmsearchbraille.moc"
