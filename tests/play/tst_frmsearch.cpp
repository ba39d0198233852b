#include "puzzles.h"

#include <QMenu>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {
const QString kExitQuestion = QStringLiteral("Really exit this word search?");
} // namespace

class TestFrmSearch : public QObject {
    Q_OBJECT

private slots:
    void setUpShowsEveryCell_data();
    void setUpShowsEveryCell();
    void keysMoveAndPlayTheLetter();
    void shortcutsWorkFromTheGrid();
    void leavingAsks_data();
    void leavingAsks();
};

void TestFrmSearch::setUpShowsEveryCell_data()
{
    QTest::addColumn<int>("side");
    QTest::newRow("5 x 5") << 5;
    QTest::newRow("50 x 50") << 50;
}

// The grid shows cell (r, c) of the puzzle, and nothing of an earlier, larger one, in row r and column c numbered from 1; the cursor starts on (1, 1) and its letter is heard.
void TestFrmSearch::setUpShowsEveryCell()
{
    QFETCH(int, side);
    PuzzleRig rig;
    SetPuzzle(rig.state, QStringList(50, QString(50, QLatin1Char('q'))), {});
    QStringList rows;
    for (int r = 0; r < side; ++r) {
        rows.append(QString());
        for (int c = 0; c < side; ++c)
            rows.last() += QChar('a' + (r * 7 + c * 3) % 26);
    }
    QVERIFY(rig.open(rows, {QStringLiteral("never")}));

    const QTableWidget *flex = rig.grid();
    QCOMPARE(flex->rowCount(), side);
    QCOMPARE(flex->columnCount(), side);
    QCOMPARE(flex->verticalHeaderItem(side - 1)->text(), QString::number(side));
    QCOMPARE(flex->horizontalHeaderItem(side - 1)->text(), QString::number(side));
    for (int r = 0; r < side; ++r) {
        for (int c = 0; c < side; ++c) {
            const QTableWidgetItem *cell = flex->item(r, c);
            QVERIFY(cell);
            QCOMPARE(cell->text(), rows[r].mid(c, 1));
            // What a screen reader reads for the cell.
            QCOMPARE(cell->data(Qt::AccessibleTextRole).toString(), rows[r].mid(c, 1));
        }
    }
    QCOMPARE(rig.cursor(), (Cell{1, 1}));
    QCOMPARE(rig.fp.sound.played, QStringList{joinPath(rig.fp.system.folder, "a.wav")});
}

// Each cursor key moves the cursor and plays its letter's file; at the grid's edge (there is no row 0 or column 0 to go to), onto a cell without a letter and for a typed letter nothing moves or plays.
void TestFrmSearch::keysMoveAndPlayTheLetter()
{
    PuzzleRig rig;
    QStringList rows = Alphabet();
    rows[2][3] = QLatin1Char(' '); // (3, 4) holds no letter
    QVERIFY(rig.open(rows, {QStringLiteral("abc")}));
    const struct {
        QKeyCombination key;
        Cell to;
        QString heard;
    } steps[] = {
        {Qt::Key_Up, {1, 1}, ""},
        {Qt::Key_Left, {1, 1}, ""},
        {Qt::Key_PageUp, {1, 1}, ""},
        {Qt::Key_Down, {2, 1}, "f.wav"},
        {Qt::Key_Right, {2, 2}, "g.wav"},
        {Qt::Key_End, {2, 5}, "j.wav"},
        {Qt::Key_Home, {2, 1}, "f.wav"},
        {Qt::Key_PageDown, {5, 1}, "u.wav"},
        {Qt::Key_PageUp, {1, 1}, "a.wav"},
        {Qt::CTRL | Qt::Key_End, {5, 5}, "y.wav"},
        {Qt::Key_Down, {5, 5}, ""},
        {Qt::Key_Right, {5, 5}, ""},
        {Qt::CTRL | Qt::Key_Home, {1, 1}, "a.wav"},
        {Qt::Key_P, {1, 1}, ""}, // a plain table would jump to the "p" below
        {Qt::Key_Down, {2, 1}, "f.wav"},
        {Qt::Key_Down, {3, 1}, "k.wav"},
        {Qt::Key_End, {3, 5}, "o.wav"},
        {Qt::Key_Left, {3, 4}, ""},
        {Qt::Key_Left, {3, 3}, "m.wav"},
    };
    const auto where = [](Cell cell, const QString &heard) {
        return QStringLiteral("(%1, %2) %3").arg(cell.row).arg(cell.column).arg(heard);
    };
    QStringList expected;
    QStringList actual;
    for (const auto &step : steps) {
        rig.fp.sound.played.clear();
        press(step.key.key(), step.key.keyboardModifiers());
        actual.append(where(rig.cursor(), rig.fp.sound.names().join(' ')));
        expected.append(where(step.to, step.heard));
    }
    QCOMPARE(actual, expected);
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
}

// Ctrl+W, Ctrl+T, Ctrl+S, Ctrl+P and Ctrl+B work from the grid, and a pending mark stays pending.
void TestFrmSearch::shortcutsWorkFromTheGrid()
{
    PuzzleRig rig;
    QVERIFY(rig.open(Alphabet(), {QStringLiteral("abc"), QStringLiteral("fgh")}));
    rig.mark({{1, 3}});
    press(Qt::Key_W, Qt::ControlModifier);
    QVERIFY(QTest::qWaitForWindowActive(&rig.navigator.listWindow()));
    press(Qt::Key_Escape);
    QVERIFY(QTest::qWaitForWindowActive(rig.window));
    for (const Qt::Key key : {Qt::Key_T, Qt::Key_S, Qt::Key_P, Qt::Key_B})
        press(key, Qt::ControlModifier);
    QCOMPARE(rig.fp.dialogs.prompts(),
             (QStringList{"You have as much time as necessary to complete this puzzle.",
                          "Saving puzzles is not available yet.",
                          "Printing puzzles is not available yet.",
                          "Brailling puzzles is not available yet."}));
    QCOMPARE(rig.mark({{1, 1}}), QStringList{FoundMessage("abc")});
}

void TestFrmSearch::leavingAsks_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("Escape") << "Escape";
    QTest::newRow("close box") << "close box";
    QTest::newRow("Alt+P, X") << "Exit Puzzle";
}

// Escape, the close box and "E&xit Puzzle" ask to leave: No goes on as it was, a pending mark included; Yes brings the main menu back and closes the window, and a new window has no mark pending.
void TestFrmSearch::leavingAsks()
{
    QFETCH(QString, how);
    PuzzleRig rig;
    QVERIFY(rig.open(Alphabet(), {QStringLiteral("abc"), QStringLiteral("fgh")}));
    const auto leave = [&] {
        if (how == "Escape") {
            press(Qt::Key_Escape);
        } else if (how == "close box") {
            rig.window->close();
        } else {
            press(Qt::Key_P, Qt::AltModifier);
            auto *menu = rig.window->findChild<QMenu *>(QStringLiteral("mnuPuzzle"));
            QTRY_VERIFY(menu->isVisible());
            QTest::keyClick(menu, Qt::Key_X);
        }
    };
    rig.fp.dialogs.answers = {MessageResult::No, MessageResult::Yes};
    rig.mark({{1, 3}});
    leave();
    QTRY_COMPARE(rig.fp.dialogs.shown.size(), 1);
    const ShownDialog asked = rig.fp.dialogs.shown.first();
    QCOMPARE(asked.prompt, kExitQuestion);
    QCOMPARE(asked.title, QStringLiteral("Confirmation"));
    QCOMPARE(asked.buttons, MessageButtons::YesNo);
    QVERIFY(QTest::qWaitForWindowActive(rig.window));
    QCOMPARE(focused(), rig.grid());
    QCOMPARE(rig.navigator.mainMenuShown, 0);
    QCOMPARE(rig.mark({{1, 1}}), QStringList{FoundMessage("abc")});

    rig.mark({{2, 1}});
    leave();
    QTRY_VERIFY(rig.window.isNull());
    QCOMPARE(rig.navigator.mainMenuShown, 1);
    // Closing itself after Yes asks nothing more.
    QCOMPARE(rig.fp.dialogs.prompts(),
             (QStringList{kExitQuestion, FoundMessage("abc"), kExitQuestion}));

    QVERIFY(rig.open());
    QCOMPARE(rig.mark({{1, 1}}), QStringList{"mark.wav"});
}

QTEST_MAIN(TestFrmSearch)
#include "tst_frmsearch.moc"
