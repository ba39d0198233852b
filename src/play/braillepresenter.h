#pragma once

#include "core/gamestate.h"
#include "platform/brailledisplay.h"

#include <QList>
#include <QString>

namespace lexicove {

class Marking;

// One row of the grid, as a braille display shows it.
struct BrailleRow {
    // The row's letters, column 1 first, one character a column.
    QString letters;
    // Whether the letter of each column lies in a word found.
    QList<bool> found;
    // The column of a first mark waiting for its second, 0 for none.
    int pendingColumn = 0;
};

// Row `row` (from 1) of the puzzle, with its found letters and pending mark.
BrailleRow RowOnBraille(const GameState &state, const Marking &marking, int row);

// Lays the cursor's row out on a braille display, a page at a time.
//
// Cell i of the display is always column panStart + i of the row (cells from
// 0): no label, no separator. A row wider than the display is cut into pages
// of `width` columns (1 to 40, 41 to 80 on a 40-cell display); the cursor
// brings its page into view, and the pan keys turn a page either way. The
// letters are lower case (a capital's dot 7 would look like the cursor); the
// cursor cell is left to the display's own cursor style (dots 7 and 8 unless
// the player chose another); a letter of a word found carries dot 8, a
// pending first mark dot 7 (dot 7 alone where it stands on a found letter),
// so that the cursor stays the one cell with both.
class BraillePresenter {
public:
    enum class Pan { Left, Right };

    // The display's width in cells; the first page shows until follow().
    void setWidth(int cells);
    int width() const { return m_width; }
    // The column shown in the first cell, from 1.
    int panStart() const { return m_panStart; }

    // Turns to the page that holds column, unless it shows already.
    void follow(int column);
    // The cells of the page shown, the cursor on column.
    BrailleCells cells(const BrailleRow &row, int column) const;
    // The column under the routing key above cell (from 0) in a row of
    // `columns` letters; 0 past the row's end.
    int route(int cell, int columns) const;
    // Turns a page that way; false, with nothing changed, when the row has
    // none there.
    bool pan(Pan direction, int columns);

    // Where the cursor is and how far the puzzle is done, "r12 c7 3 of 14
    // words", in the longest form that fits width cells (cut to width on a
    // display too narrow for any).
    static QString status(int row, int column, int found, int total, int width);

private:
    int m_width = 0;
    int m_panStart = 1;
};

} // namespace lexicove
