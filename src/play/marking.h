#pragma once

#include "core/gamestate.h"
#include "platform/platform.h"
#include "play/masking.h"

#include <QList>
#include <QString>

#include <optional>

namespace lexicove {

// One thing the puzzle window does in answer to a mark: play a sound file of
// the program folder, show a message with OK alone, or play the closing sound
// (Marking::ClosingSound, chosen when its turn comes: the time taken over the
// word-found messages before it counts). A mark's replies are carried out in
// their order.
struct Reply {
    enum class Kind { Sound, Message, ClosingSound };
    Kind kind = Kind::Sound;
    QString text; // the sound's file name ("mark.wav") or the message

    static Reply sound(const QString &name) { return {Kind::Sound, name}; }
    static Reply message(const QString &text) { return {Kind::Message, text}; }
    static Reply closingSound() { return {Kind::ClosingSound, QString()}; }
    bool operator==(const Reply &other) const = default;
};
using Replies = QList<Reply>;

// A cell of grid, row and column numbered from 1.
struct GridCell {
    int row = 0;
    int column = 0;
    bool operator==(const GridCell &other) const = default;
};

// The line two marks make, the first mark being the upper one.
enum class RunKind { Vertical, Horizontal, Diagonal, NotInLine };

// dr = lastRow - firstRow (0 or more), dc = lastCol - firstCol. One column
// is tested first, then one row, then dr = |dc|.
RunKind KindOfRun(int dr, int dc);

// The cells between two marks that are in line, the first mark the upper
// one, in reading order: a column top to bottom, a row left to right, a
// diagonal from the upper mark down whichever way it slopes.
QList<GridCell> RunCells(RunKind kind, int firstRow, int firstCol, int lastRow, int lastCol);

// The letters of grid in those cells, joined in their order.
QString ReadRun(const GameState &state, const QList<GridCell> &cells);

void SwapValues(qint16 &a, qint16 &b);

// The game in progress in a puzzle window: which words are found, how many
// remain, when play began and a pending first mark. Marks are cells of grid
// (rows and columns from 1); the letters are always read from GameState,
// never from what the window shows.
//
// Where the found words lie is kept too, for whatever shows the grid (the
// window's drawing, a braille display's dots): a table of rows by columns
// that says at once whether a cell belongs to a found word.
class Marking {
public:
    Marking(const GameState &state, Clock &clock);

    // Every word slot back to "to find".
    void ClearFound();
    // Starts play: every word to find, the clock read as the start, no mark
    // pending.
    void Begin();

    // The space bar on cell (row, column): the first press of a selection
    // remembers the cell, the second reads the run between the two and
    // checks it.
    Replies MarkLetter(int row, int column);
    // Finds every word still to find that reads as run, either way.
    Replies CheckWord(const QString &run);

    bool markPending() const { return m_markPending; }
    // The cell of the first mark while it waits for the second.
    std::optional<GridCell> pendingMark() const;
    // Whether the cell lies in a word found; false outside the grid.
    bool isFound(int row, int column) const;
    int wordsRemaining() const { return m_wordsRemaining; }
    const WordFoundFlags &wordFound() const { return m_wordFound; }
    quint32 startTick() const { return m_startTick; }
    // Milliseconds since play began, read from the clock now.
    quint32 elapsed() const;
    // The sound for the last word found, by the clock now: "cheer2.wav" past
    // the time limit, else "cheer1.wav".
    QString ClosingSound() const;
    // Every sound a mark can play: "mark.wav", "wrong.wav", "cheer1.wav" and
    // "cheer2.wav".
    static QStringList Sounds();

private:
    const GameState &m_state;
    Clock &m_clock;
    WordFoundFlags m_wordFound{};
    std::array<std::array<bool, GameState::kMaxSide + 1>, GameState::kMaxSide + 1> m_foundGrid{};
    qint32 m_wordsRemaining = 0;
    quint32 m_startTick = 0;
    bool m_markPending = false;
    qint16 m_firstRow = 0;
    qint16 m_firstCol = 0;
    qint16 m_lastRow = 0;
    qint16 m_lastCol = 0;
};

} // namespace lexicove
