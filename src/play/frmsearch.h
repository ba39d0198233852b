#pragma once

#include "platform/brailledisplay.h"
#include "platform/printer.h"
#include "play/braillepresenter.h"
#include "play/marking.h"
#include "play/puzzlegrid.h"

#include <QMainWindow>
#include <QMargins>

class QAction;
class QMenu;

namespace lexicove {

struct GameState;
struct Platform;
class Navigator;

// The puzzle window, where a puzzle is played. The table `flex` shows grid
// cell (r, c) in its row r - 1 and column c - 1; its row and column headers
// carry the numbers 1 to rows and 1 to columns, so the cursor can only rest
// on letters. Each move of the cursor plays the letter's sound; Space marks
// (Marking holds the game in progress), Escape asks to leave. Whenever the
// grid gets the focus (the window opening, coming back after a message, the
// words list or a command) the letter under the cursor plays again, once a
// screen reader has had time to announce the window.
//
// While the grid has the focus, a braille display (where there is one) shows
// the cursor's row, after each move's letter sound is asked for; its routing
// keys move the cursor, its pan keys turn the row's pages, and Ctrl+L shows
// the cursor's place and the words found for a few seconds. Any other focus
// gives the display back to the screen reader.
class FrmSearch final : public QMainWindow {
    Q_OBJECT
public:
    // How long Ctrl+L's place and progress stay on a braille display.
    static constexpr int kBrailleStatusMs = 5000;

    // How long after the grid gets the focus its letter plays. A screen
    // reader first announces the window and the grid, and a letter under
    // that speech is hard to make out: with Orca 43 at its default settings
    // (espeak-ng, key echo on) "return. Lexicove frame. Puzzle panel." ends
    // 2.2 s after the focus comes back, about 1.7 s without the key echo.
    static constexpr int kLetterAfterFocusMs = 2300;

    FrmSearch(GameState &state, Platform &platform, Navigator &navigator);
    ~FrmSearch() override;

    // Shows the puzzle of the game state and starts play. Always true: the
    // puzzle window has no reason to end itself while loading.
    bool Form_Load();

    const Marking &marking() const { return m_play; }
    // Shows the window again after the words-to-find list, as it was left.
    void ShowAgain();

    void mnuFind_Click();
    void mnuTimeRemaining_Click();
    void mnuSavePuzzle_Click();
    void mnuPrintPuzzle_Click();
    void mnuBraillePuzzle_Click();
    void mnuExit_Click();
    void ConfirmExit();

protected:
    // Key preview: the window sees the grid's typed characters first.
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void BuildMenu();
    void FillGridView();
    // Opens at the zoom kept from last time, as large as shows the whole
    // grid, centred on the game's screen, within the screen's free area.
    void OpenAtScreenSize();
    // The window's frame, guessed until the window system has drawn it.
    QMargins FrameMargins() const;
    // The screen's area free for windows.
    QRect Room() const;
    // The window's inner size around a grid of that size.
    QSize WindowSizeFor(const QSize &gridSize) const;
    // Draws the grid at percent; false, and nothing changed, when the screen
    // could not show the smallest puzzle whole at that size (100 % always
    // applies).
    bool ApplyZoom(int percent);
    // Grows or shrinks the window to show the whole grid, up to the screen's
    // free area, centred or kept where it is and moved back onto the screen.
    void FitToGrid(bool centre);
    // Ctrl+Plus, Ctrl+Minus, Ctrl+0: the grid at percent, kept for the next
    // games.
    void ChangeZoom(int percent);
    // Has the sounds of the grid's letters and of the marks loaded before the
    // first one plays.
    void PrepareSounds();
    // Returns true when the character was one the window acts on.
    bool Form_KeyPress(int code);
    void flex_RowColChange();
    // Plays the letter under the cursor once the screen reader has spoken,
    // unless the cursor moves or the grid loses the focus meanwhile.
    void ReplayLetterSoon();
    void PlayCurrentLetter();
    // The braille display while the grid has the focus.
    void TakeBraille();
    void ReleaseBraille();
    // The cursor's row on the display; follow turns to the cursor's page.
    void ShowRowOnBraille(bool follow);
    void ShowStatusOnBraille();
    void BrailleKeyPressed(BrailleDisplay::Key key);
    void MarkLetter();
    void Perform(const Replies &replies);
    void PlaySound(const QString &name);
    void ShowMessage(const QString &text);
    // Runs a print or braille job and tells the player how a failed one ended.
    void RunOutputJob(OutputMode mode);
    // The list window, modal over this one, with entries to choose from.
    QString ChooseFromList(const QString &title, const QStringList &entries, int selected);
    // After a command's dialogs: this window active, the grid focused on the
    // cell it was on.
    void BackToGrid();
    bool AskExit();

    GameState &m_state;
    Platform &m_platform;
    Navigator &m_navigator;
    Marking m_play;
    bool m_leaving = false;
    bool m_toldZoomNotKept = false;
    QMargins m_frameGuess;
    // Counts the moves and focus changes of the grid; a replay waiting for
    // an older count is dropped.
    quint64 m_gridEvents = 0;
    BraillePresenter m_braille;
    // The display is the grid's (taken), and its width known (ready).
    bool m_brailleTaken = false;
    bool m_brailleReady = false;
    // Counts what the display was given; a status waiting to give way to the
    // row for an older count is dropped.
    quint64 m_brailleShows = 0;

    PuzzleGrid *flex;
    QMenu *mnuPuzzle;
    QAction *mnuFind;
    QAction *mnuTimeRemaining;
    QAction *mnuSavePuzzle;
    QAction *mnuPrintPuzzle;
    QAction *mnuBraillePuzzle;
    QAction *mnuExit;
};

} // namespace lexicove
