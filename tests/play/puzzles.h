#pragma once

// Puzzles for the play tests, written straight into a game state as the
// options window would leave it, and a puzzle window opened on one and played
// from the keyboard on the scripted platform.

#include "core/gamestate.h"
#include "keys.h"
#include "play/frmsearch.h"
#include "windowrig.h"

#include <QStringList>
#include <QTableWidget>

namespace lexicove::test {

// rows: one text per grid row, one character per cell ("catzz").
inline void SetPuzzle(GameState &state, const QStringList &rows, const QStringList &words,
                      qint32 timeLimit = 0, bool hideWords = false)
{
    state.rows = static_cast<qint16>(rows.size());
    state.columns = static_cast<qint16>(rows.isEmpty() ? 0 : rows.first().size());
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            state.grid[r][c] = rows[r - 1].mid(c - 1, 1);
    state.wordCount = static_cast<qint32>(words.size());
    state.letterCount = 0;
    for (int i = 1; i <= state.wordCount; ++i) {
        state.words[i] = words[i - 1];
        state.letterCount += static_cast<qint32>(words[i - 1].size());
    }
    state.allowHorizontal = state.allowVertical = state.allowDiagonal = true;
    state.timeLimit = timeLimit;
    state.hideWords = hideWords;
}

// 5 x 5 with a different letter in every cell: a sound or a run tells the cells.
inline QStringList Alphabet()
{
    return {"abcde", "fghij", "klmno", "pqrst", "uvwxy"};
}

inline const QString kSameCellMessage = QStringLiteral(
    "You didn't select any letters. Move to the first letter in the word you have found, and "
    "press spacebar. Then, move to the last letter of the word, and press spacebar again. You "
    "will be notified if you have correctly found a word, at which point it will be removed from "
    "the list of words that you must find. If you did not correctly find a word, a buzzer will "
    "notify you and you may continue searching through the puzzle and marking a new word.");
inline const QString kNotInLineMessage = QStringLiteral(
    "You have not selected a valid word. Only vertical, horizontal, or diagonal selections are "
    "allowed.");
inline const QString kAllFoundMessage = QStringLiteral(
    "You found all the words! Nice work! You may press escape to quit this puzzle, or use one of "
    "the options in the puzzle menu to save, print, or braille this puzzle. Thanks for playing!");

inline QString FoundMessage(const QString &word)
{
    return QStringLiteral("Correct! You found the word %1!").arg(word);
}

// A grid cell, rows and columns from 1.
struct Cell {
    int row;
    int column;
    bool operator==(const Cell &) const = default;
};

inline char *toString(const Cell &cell)
{
    return QTest::toString(QStringLiteral("(%1, %2)").arg(cell.row).arg(cell.column));
}

// A puzzle window on the scripted platform, played by keys.
struct PuzzleRig : WindowRig<FrmSearch> {
    ~PuzzleRig()
    {
        QVERIFY2(fp.dialogs.unexpected.isEmpty(), qPrintable(fp.dialogs.unexpected.join('|')));
    }

    // Opens the window on the game state as it is.
    using WindowRig::open;
    // Opens the window on a new puzzle; true once the grid has the focus.
    bool open(const QStringList &rows, const QStringList &words, qint32 timeLimit = 0,
              bool hideWords = false)
    {
        SetPuzzle(state, rows, words, timeLimit, hideWords);
        return open() && focused() == grid();
    }

    QTableWidget *grid() const
    {
        return window->findChild<QTableWidget *>(QStringLiteral("flex"));
    }
    Cell cursor() const { return {grid()->currentRow() + 1, grid()->currentColumn() + 1}; }

    void moveTo(Cell cell)
    {
        for (int step = 0; step < 20 && cursor() != cell; ++step) {
            const Cell at = cursor();
            if (at.row != cell.row)
                press(at.row < cell.row ? Qt::Key_Down : Qt::Key_Up);
            else
                press(at.column < cell.column ? Qt::Key_Right : Qt::Key_Left);
        }
        QCOMPARE(cursor(), cell);
    }

    // Space on each cell in turn, moving there by the arrow keys: the sounds
    // (file names) and the messages the presses gave, in order.
    QStringList mark(const QList<Cell> &cells)
    {
        QStringList heard;
        qsizetype seen = 0;
        const auto newSounds = [&] {
            heard += fp.sound.names().mid(seen);
            seen = fp.sound.played.size();
        };
        fp.dialogs.onShow = [&](const ShownDialog &shown) {
            newSounds();
            heard.append(shown.prompt);
        };
        for (const Cell &cell : cells) {
            moveTo(cell);
            seen = fp.sound.played.size();
            press(Qt::Key_Space);
            newSounds();
        }
        fp.dialogs.onShow = nullptr;
        return heard;
    }
};

} // namespace lexicove::test

Q_DECLARE_METATYPE(lexicove::test::Cell)
