#include "fakenavigator.h"
#include "fakeplatform.h"
#include "keys.h"
#include "platform/brlapidisplay.h"
#include "play/frmsearch.h"
#include "pretenddisplay.h"
#include "puzzles.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QMessageBox>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

#ifdef LEXICOVE_HAVE_BRLAPI
#include <brlapi.h>
#endif

// The game on a braille display through brltty: a pretend display on brltty's virtual driver,
// the screen reader's braille beside it, and the puzzle window played by keys on a virtual X
// display. Run by with_brltty.sh, which starts brltty and says where.

using namespace lexicove;
using namespace lexicove::test;

namespace {

constexpr int kCells = 40;
const QString kScreenReaderSays = QStringLiteral("screen reader");

// "braille" lies across the first page's edge in row 2, "grid" backwards in row 4.
const QStringList kRows = {"dinsxchmrwbglqvafkpuzejotydinsxchmrwbglqvafkpuzejo",
                           "kpuzejotydinsxchmrwbglqvafkpuzejotydibraillewbglqv",
                           "rwbglqvafkpuzejotydinsxchmrwbglqvafkpuzejotydinsxc",
                           "yddirgchmrwbglqvafkpuzejotydinsxchmrwbglqvafkpuzej"};

#ifdef LEXICOVE_HAVE_BRLAPI
// The screen reader's braille as Orca keeps it: a client at the top of the X session's place in
// brltty's tty tree, shown whenever no client below it holds the display.
class ScreenReaderBraille {
public:
    bool open()
    {
        m_handle = static_cast<brlapi_handle_t *>(std::malloc(brlapi_getHandleSize()));
        // Like a screen reader, writes once the display is there: brltty refuses a write to a
        // display of no cells, and drops the connection.
        QDeadlineTimer deadline(5000);
        unsigned int width = 0, height = 0;
        while (!m_open || brlapi__getDisplaySize(m_handle, &width, &height) < 0 || width == 0) {
            if (deadline.hasExpired())
                return false;
            m_open = m_open || brlapi__openConnection(m_handle, nullptr, nullptr) >= 0;
            QThread::msleep(50);
        }
        const QByteArray text = kScreenReaderSays.toLatin1();
        return brlapi__enterTtyModeWithPath(m_handle, nullptr, 0, nullptr) >= 0 &&
               brlapi__writeText(m_handle, 0, text.constData()) >= 0;
    }
    ~ScreenReaderBraille()
    {
        if (m_open)
            brlapi__closeConnection(m_handle);
        std::free(m_handle);
    }

private:
    brlapi_handle_t *m_handle = nullptr;
    bool m_open = false;
};
#endif

// The puzzle window on the real braille display and real message boxes; sounds, the clock and
// files are the scripted ones.
struct BrailleRig {
#ifdef LEXICOVE_HAVE_BRLAPI
    BrlapiDisplay braille;
#else
    NullBrailleDisplay braille;
#endif
    FakePlatform fp;
    QtDialogs dialogs;
    Platform platform{dialogs,  fp.sound,       fp.clock,    fp.random, fp.system,
                      fp.files, fp.fileDialogs, fp.settings, braille};
    GameState state;
    FakeNavigator navigator;
    QPointer<FrmSearch> window;

    ~BrailleRig()
    {
        delete window.data();
    }
    bool open(const QStringList &rows, const QStringList &words)
    {
        setPuzzle(state, rows, words);
        window = new FrmSearch(state, platform, navigator);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->Form_Load();
        window->show();
        window->activateWindow();
        return QTest::qWaitForWindowActive(window);
    }
    PuzzleGrid *grid() const
    {
        return window->findChild<PuzzleGrid *>(QStringLiteral("flex"));
    }
};

// What the cursor's row should feel like with the cursor on (row, column), from 1: its page of
// kCells letters, the cursor on its cell, columns foundFrom to foundTo with dot 8.
QString rowFelt(int row, int column, int foundFrom = 0, int foundTo = -1)
{
    BrailleCells cells;
    const int first = (column - 1) / kCells * kCells;
    cells.text = kRows[row - 1].mid(first, kCells);
    cells.cursor = column - first;
    cells.dots.fill('\0', cells.text.size());
    for (int c = std::max(foundFrom, first + 1); c <= std::min(foundTo, first + kCells); ++c)
        if (c != column)
            cells.dots[c - first - 1] = static_cast<char>(BrailleCells::kDot8);
    return feel(cells);
}

} // namespace

// Waits for the display to feel as `felt`, failing with what it felt instead.
#define QVERIFY_FELT(felt)                                                                         \
    do {                                                                                           \
        const QString wanted = (felt);                                                             \
        QVERIFY2(displayFeels(wanted),                                                             \
                 qPrintable(wanted + " wanted, felt " + feel(m_display.shown())));                 \
    } while (false)

class TestBraille : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void withoutAServiceNothingChanges();
    void aWholePuzzleFromTheDisplay();
    void aServiceThatStopsAnsweringHoldsNothingUp();

private:
    // Closes the next `count` message boxes with Enter, noting each one's text and whether the
    // display showed the screen reader's braille while it was up.
    void closeBoxes(int count);
    // Presses a key of the display and waits for what it shows to change.
    bool pressOnDisplay(const QString &key)
    {
        const BrailleCells before = m_display.shown();
        m_display.press(key);
        return m_display.waitUntil([&] { return !(m_display.shown() == before); }, 2000);
    }
    bool screenReaderHasIt()
    {
        return m_display.waitUntil([&] { return m_display.shown().text == kScreenReaderSays; });
    }
    bool displayFeels(const QString &felt)
    {
        return m_display.waitUntil([&] { return feel(m_display.shown()) == felt; });
    }

    PretendDisplay m_display;
#ifdef LEXICOVE_HAVE_BRLAPI
    ScreenReaderBraille m_screenReader;
#endif
    QStringList m_boxes;
};

void TestBraille::initTestCase()
{
    const QString socket = qEnvironmentVariable("LEXICOVE_VR_SOCKET");
    if (socket.isEmpty())
        QSKIP("no brltty of the test's own: run through tests/platform/with_brltty.sh");
#ifndef LEXICOVE_HAVE_BRLAPI
    QFAIL("brltty is installed but the game was built without BrlAPI (apt-get install "
          "libbrlapi-dev)");
#else
    QVERIFY(m_display.open(socket, kCells));
    QVERIFY(m_screenReader.open());
    QVERIFY2(screenReaderHasIt(), qPrintable(feel(m_display.shown())));
#endif
}

void TestBraille::closeBoxes(int count)
{
    whenModal([this, count](QWidget *box) {
        const bool gaveWay = screenReaderHasIt();
        const auto *message = qobject_cast<QMessageBox *>(box);
        m_boxes << (message ? message->text() : QStringLiteral("?")) +
                       (gaveWay ? QString() : QStringLiteral(" (display not given back)"));
        QTest::keyClick(box, Qt::Key_Return);
        if (count > 1)
            closeBoxes(count - 1);
    });
}

// Where no braille service listens, the puzzle plays as it always has: every move's letter, at
// once, and the display stays the screen reader's.
void TestBraille::withoutAServiceNothingChanges()
{
    const QByteArray host = qgetenv("BRLAPI_HOST");
    int unused = 9000;
    while (QFileInfo::exists(QStringLiteral("/var/lib/BrlAPI/%1").arg(unused)))
        ++unused;
    qputenv("BRLAPI_HOST", ":" + QByteArray::number(unused));
    {
        BrailleRig rig;
        QVERIFY(rig.open(kAlphabet, {"abc"}));
        for (int i = 0; i < 3; ++i)
            press(Qt::Key_Right);
        QCOMPARE(rig.fp.sound.names(), (QStringList{"b.wav", "c.wav", "d.wav"}));
        QVERIFY(!m_display.read(300));
        QCOMPARE(m_display.shown().text, kScreenReaderSays);
    }
    qputenv("BRLAPI_HOST", host);
}

// The display shows the cursor's row at the page that holds the cursor after every kind of
// move, and a player who reads only the display finds every word: the pan keys turn the row's
// pages, the routing keys take the cursor to a word's ends (each letter heard as on a move),
// Space marks each end, a first mark carries dot 7 and a found word's letters dot 8, and Ctrl+L
// tells the place and the words found; a message box, and leaving, give the display back to the
// screen reader, and the row comes back with the focus.
void TestBraille::aWholePuzzleFromTheDisplay()
{
    BrailleRig rig;
    QVERIFY(rig.open(kRows, {"braille", "grid"}));
    QVERIFY_FELT(rowFelt(1, 1));
    const QKeyCombination moves[] = {
        Qt::Key_Right,          Qt::Key_Down, Qt::Key_End,    Qt::Key_Left, Qt::Key_Home,
        Qt::Key_PageDown,       Qt::Key_Up,   Qt::Key_PageUp, Qt::Key_End,  Qt::CTRL | Qt::Key_End,
        Qt::CTRL | Qt::Key_Home};
    for (const QKeyCombination move : moves) {
        press(move.key(), move.keyboardModifiers());
        QVERIFY_FELT(rowFelt(rig.grid()->currentRow() + 1, rig.grid()->currentColumn() + 1));
    }
    closeBoxes(1);
    press(Qt::Key_T, Qt::ControlModifier);
    QVERIFY_FELT(rowFelt(1, 1));

    int page = 0; // the page the display shows, as the player counts the pan keys
    const auto routeTo = [&](const QString &row, int column) {
        for (; page != (column - 1) / kCells; page += page < (column - 1) / kCells ? 1 : -1)
            QVERIFY(pressOnDisplay(page < (column - 1) / kCells ? "FWinRt" : "FWinLt"));
        rig.fp.sound.played.clear();
        QVERIFY(pressOnDisplay(QStringLiteral("Route %1").arg((column - 1) % kCells)));
        QCOMPARE(m_display.shown().text, row.mid(page * kCells, kCells));
        QCOMPARE(m_display.shown().cursor, (column - 1) % kCells + 1);
        QCOMPARE(rig.fp.sound.names(), QStringList{row.mid(column - 1, 1) + ".wav"});
    };
    // Where the words lie: "braille" across the first page's edge, "grid" backwards.
    const struct {
        int row, first, last;
    } words[] = {{2, 38, 44}, {4, 3, 6}};
    int column = 1, foundWords = 0;
    for (const auto &word : words) {
        while (rig.grid()->currentRow() + 1 < word.row)
            press(Qt::Key_Down);
        QVERIFY_FELT(rowFelt(word.row, column));
        routeTo(kRows[word.row - 1], word.first);
        press(Qt::Key_Space);
        routeTo(kRows[word.row - 1], word.last);
        if ((word.first - 1) / kCells == page)
            QCOMPARE(static_cast<quint8>(m_display.shown().dots.at((word.first - 1) % kCells)),
                     BrailleCells::kDot7);
        closeBoxes(++foundWords == 2 ? 2 : 1);
        press(Qt::Key_Space);
        column = word.last;
        QVERIFY_FELT(rowFelt(word.row, column, word.first, word.last));
        press(Qt::Key_L, Qt::ControlModifier);
        QVERIFY_FELT(
            QStringLiteral("r%1 c%2 %3 of 2 words").arg(word.row).arg(column).arg(foundWords));
    }
    closeBoxes(1);
    rig.window->close();
    QVERIFY(screenReaderHasIt());
    QCOMPARE(m_boxes, (QStringList{
                          "You have as much time as necessary to complete this puzzle.",
                          "Correct! You found the word braille!",
                          "Correct! You found the word grid!",
                          "You found all the words! Nice work! You may press escape to quit this "
                          "puzzle, or use one of the options in the puzzle menu to save, print, or "
                          "braille this puzzle. Thanks for playing!",
                          "Really exit this word search?",
                      }));
}

// A braille service that stops answering holds up neither a move, its letter sound, nor leaving
// the puzzle.
void TestBraille::aServiceThatStopsAnsweringHoldsNothingUp()
{
#ifdef Q_OS_UNIX
    const auto brltty = static_cast<pid_t>(qEnvironmentVariableIntValue("LEXICOVE_BRLTTY_PID"));
    QVERIFY(brltty > 0);
    constexpr int kMoves = 200;
    QElapsedTimer stopped;
    {
        BrailleRig rig;
        QVERIFY(rig.open(kRows, {"braille"}));
        QVERIFY(m_display.waitUntil([&] { return m_display.shown().cursor == 1; }));
        ::kill(brltty, SIGSTOP);
        stopped.start();
        for (int i = 0; i < kMoves; ++i)
            press(i % 2 ? Qt::Key_Left : Qt::Key_Right);
        QCOMPARE(rig.fp.sound.played.size(), kMoves);
        // Leaving, the puzzle gives the display back, which waits for an answer that never
        // comes.
    }
    const qint64 held = stopped.elapsed();
    ::kill(brltty, SIGCONT);
    // Quitting waits half a second for the link, then cuts its connection loose, which ends the
    // wait at once; a link left hanging would cost another half second.
    QVERIFY2(held < 900, qPrintable(QStringLiteral("held up %1 ms").arg(held)));
#else
    QSKIP("brltty runs on Linux");
#endif
}

QTEST_MAIN(TestBraille)
#include "tst_braille.moc"
