// What the game's windows tell a screen reader, read through Qt's own
// accessibility interfaces and the events Qt sends to the accessibility bus.
// Qt sends those events only while a bridge to assistive technology is
// active, so this test runs on a virtual display with an accessibility bus
// (tests/platform/with_atspi.sh); offscreen it is skipped.

#include "keys.h"
#include "mainmenu.h"
#include "play/frmsearch.h"
#include "puzzles.h"
#include "windowrig.h"
#include "wordlists/frmcreate.h"

#include <QAccessible>
#include <QScrollBar>
#include <QTableWidget>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

// Every accessibility event Qt hands to the bridge while a recorder lives.
struct AccessRecorder {
    struct Event {
        QAccessible::Event type;
        QPointer<QObject> object;
        int child;
        QString focusName; // of what took the focus, for a focus event
        // Qt's bridges to assistive technology pass a value change on only
        // from an object that has a value.
        bool passedOn;
    };
    static inline QList<Event> events;

    AccessRecorder()
    {
        events.clear();
        previous = QAccessible::installUpdateHandler([](QAccessibleEvent *event) {
            QAccessibleInterface *source = event->accessibleInterface();
            const bool focus = event->type() == QAccessible::Focus && source;
            const bool passedOn =
                event->type() != QAccessible::ValueChanged || (source && source->valueInterface());
            events.append({event->type(), event->object(), event->child(),
                           focus ? source->text(QAccessible::Name) : QString(), passedOn});
        });
    }
    ~AccessRecorder() { QAccessible::installUpdateHandler(previous); }
    static QString lastFocus()
    {
        for (auto event = events.crbegin(); event != events.crend(); ++event)
            if (event->type == QAccessible::Focus)
                return event->focusName;
        return QString();
    }
    QAccessible::UpdateHandler previous;
};

bool isInside(const QObject *object, const QObject *ancestor)
{
    for (; object; object = object->parent())
        if (object == ancestor)
            return true;
    return false;
}

// A scroll bar (or the box that holds it) coming or going: no screen reader speaks of it.
bool isScrollBarShownOrHidden(const AccessRecorder::Event &event)
{
    const bool showing =
        event.type == QAccessible::ObjectShow || event.type == QAccessible::ObjectHide;
    return showing && event.object &&
           (qobject_cast<QScrollBar *>(event.object) ||
            event.object->findChild<QScrollBar *>(QString(), Qt::FindDirectChildrenOnly));
}

} // namespace

class TestScreenReader : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (QGuiApplication::platformName() == QLatin1String("offscreen"))
            QSKIP("needs an accessibility bus: run through tests/platform/with_atspi.sh");
        QTRY_VERIFY_WITH_TIMEOUT(QAccessible::isActive(), 10000);
    }
    void puzzleIsOneSilentObject();
    void listsSayTheirEntryOnTakingTheFocus();
};

// The grid is one focusable object named "Puzzle", without children, whose description tells
// its row and column once the announcement of the focus is over; no move of the cursor and no
// mark sends a screen reader anything about it.
void TestScreenReader::puzzleIsOneSilentObject()
{
    WindowRig<FrmSearch> rig;
    QStringList rows;
    for (int r = 0; r < 50; ++r) // more rows than the window shows: moves scroll
        rows << kAlphabet[r % 5] + kAlphabet[(r + 1) % 5];
    setPuzzle(rig.state, rows, {"abc"});
    QVERIFY(rig.open());
    auto *grid = rig.window->findChild<QTableWidget *>(QStringLiteral("flex"));
    QTRY_COMPARE(focused(), grid);

    QAccessibleInterface *puzzle = QAccessible::queryAccessibleInterface(grid);
    QVERIFY(puzzle);
    QAccessibleInterface *window = QAccessible::queryAccessibleInterface(rig.window);
    QVERIFY(window->indexOfChild(puzzle) >= 0);
    QCOMPARE(puzzle->role(), QAccessible::Pane);
    QCOMPARE(puzzle->text(QAccessible::Name), "Puzzle");
    QCOMPARE(puzzle->childCount(), 0);
    QVERIFY(!puzzle->tableInterface());
    QVERIFY(puzzle->state().focusable && puzzle->state().focused);
    // Read unasked in the announcement of the focus, the place is told only after it.
    QCOMPARE(puzzle->text(QAccessible::Description), "");
    rig.fp.clock.advance(FrmSearch::kLetterAfterFocusMs);
    QCOMPARE(puzzle->text(QAccessible::Description), "row 1, column 1");

    AccessRecorder recorder;
    // Marks too: a word found and a first mark left pending are drawn, and told to nobody.
    pressKeys(
        "Space, Right, Right, Space, Down, Space, Left, Up, End, Home, PgDown, PgUp, Ctrl+End, "
        "Ctrl+Home, PgDown, Ctrl++, Ctrl++, Right, Ctrl+-");
    QCoreApplication::processEvents();
    QStringList told;
    for (const auto &event : AccessRecorder::events)
        if (isInside(event.object, grid) && event.passedOn && !isScrollBarShownOrHidden(event))
            told << QStringLiteral("%1 on %2 child %3")
                        .arg(event.type)
                        .arg(event.object ? event.object->metaObject()->className() : "?")
                        .arg(event.child);
    QCOMPARE(told, QStringList());
    QVERIFY(grid->currentRow() > 10 && grid->verticalScrollBar()->value() > 0);
    QVERIFY(rig.window->marking().markPending() && rig.window->marking().wordsRemaining() == 0);
    QCOMPARE(puzzle->text(QAccessible::Description),
             QStringLiteral("row %1, column 2").arg(grid->currentRow() + 1));
}

// Every list box that takes the focus makes its current entry the last thing a screen reader
// hears of: the main menu at start and after a message, the chooser, the editor's words and the
// words to find.
void TestScreenReader::listsSayTheirEntryOnTakingTheFocus()
{
    AccessRecorder recorder;
    FakePlatform fp;
    fp.writeFile(QStringLiteral("animals.wds"), "cat\r\nhorse\r\n");
    GameState state;
    Game game(state, fp.platform);
    QVERIFY(startGame(game));
    QTRY_COMPARE(AccessRecorder::lastFocus(), "Play a Puzzle");

    fp.dialogs.onShow = [](const ShownDialog &) { standInBox(); };
    pickFromMenu(game, MenuChoice::CountLists);
    AccessRecorder::events.clear();
    QTRY_COMPARE(AccessRecorder::lastFocus(), "Count Word Lists");
    fp.dialogs.onShow = nullptr;

    pickFromMenu(game, MenuChoice::PlayPuzzle);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmWords")));
    QTRY_COMPARE(AccessRecorder::lastFocus(), "animals - 2 words");
    press(Qt::Key_Escape);
    QTRY_VERIFY(activeWindowNamed(QStringLiteral("frmChoose")));

    WindowRig<FrmCreate> editor;
    editor.state.editingList = true;
    editor.state.wordListPath = fp.path(QStringLiteral("animals.wds"));
    QVERIFY(editor.open());
    tabTo(QStringLiteral("lstWords"));
    QTRY_COMPARE(AccessRecorder::lastFocus(), "cat");

    WindowRig<FrmSearch> puzzle;
    setPuzzle(puzzle.state, kAlphabet, {"klm", "abc"});
    QVERIFY(puzzle.open());
    press(Qt::Key_W, Qt::ControlModifier);
    QTRY_COMPARE(focusName(), QStringLiteral("lstList"));
    QTRY_COMPARE(AccessRecorder::lastFocus(), "klm");
}

QTEST_MAIN(TestScreenReader)
#include "tst_screenreader.moc"
