#pragma once

#include <QStyledItemDelegate>
#include <QTableWidget>

#include <functional>

namespace lexicove {

// The letter grid of the puzzle window: a table for the eye, one silent
// object for a screen reader.
//
// Sighted players see a table of letters with numbered row and column
// headers. Assistive technology sees a single focusable pane named "Puzzle"
// with no children (no table, rows or cells), and the table's own focus and
// selection events for the cell under the cursor are never sent: a move gives
// a screen reader nothing to say, so the game's letter sound is the one
// announcement. Asked for its description (Orca's "where am I"), the pane
// tells the cursor's row and column; but a screen reader also reads the
// description, unasked, when it announces the grid taking the focus, so from
// each focus-in until the window calls focusAnnounced() or the cursor moves
// the description is empty.
//
// Whatever follows the cursor (the letter sound, a braille display) hangs on
// the three signals below. Typed characters never move the cursor (a plain
// table would jump to the next cell starting with the letter).
//
// Found words and a pending first mark are drawn by the cells' delegate from
// what the game says of each cell as it is painted; nothing of them is in the
// table's items, so showing them changes nothing a screen reader could hear.
// Nor does scrolling: the scroll bars have no value to tell.
//
// Letters and numbers are drawn at a zoom of the desktop's own font size.
// Every letter column has one width: 200 twips (1/1440 inch each) at that
// zoom, or more when a letter or a column number would not fit (numbers are bold on
// the cursor's row and column, so they are measured bold); every row the
// height of a bold letter and a margin. Whatever the size, the cursor's cell
// stays in view.
class PuzzleGrid final : public QTableWidget {
    Q_OBJECT
public:
    // How a cell is drawn besides its letter.
    struct CellMarks {
        bool found = false;   // part of a word found: a tint of the highlight colour
        bool pending = false; // the first mark of a selection: a frame
        bool operator==(const CellMarks &other) const = default;
    };
    // Tells the marks of the cell in row and column, numbered from 1.
    using MarksSource = std::function<CellMarks(int row, int column)>;

    explicit PuzzleGrid(QWidget *parent = nullptr);

    void setMarksSource(MarksSource source) { m_marks = std::move(source); }
    // The marks the cell at index is drawn with.
    CellMarks marksAt(const QModelIndex &index) const;
    // Draws the marks again after the game changed them.
    void showMarks() { viewport()->update(); }

    // Draws letters and numbers at percent of the desktop's font size.
    void setZoom(int percent);
    int zoom() const { return m_zoom; }
    // The size that shows rows by columns of letters with their numbers at
    // the zoom, with nothing to scroll.
    QSize sizeFor(int rows, int columns) const;

    // The letter under the cursor, without blanks; empty when none.
    QString currentLetter() const;
    // "row R, column C" of the cursor, numbered from 1, for a screen reader's
    // "where am I"; empty when there is no cursor or the focus has just come.
    QString whereText() const;
    // A screen reader has announced the grid taking the focus: from now on
    // the description tells the cursor's place.
    void focusAnnounced() { m_tellPlace = true; }

    void keyboardSearch(const QString &) override {}

signals:
    // The cursor has moved onto the cell in row and column, numbered from 1.
    void cursorMoved(int row, int column);
    void focusEntered();
    void focusLeft();

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    bool m_tellPlace = false;
    MarksSource m_marks;
    QFont m_baseFont;
    int m_zoom = 100;
};

// Draws each letter with the marks its grid gives it.
class LetterDelegate final : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit LetterDelegate(PuzzleGrid *grid);
    // What the drawing of the cell at index uses.
    PuzzleGrid::CellMarks marks(const QModelIndex &index) const { return m_grid->marksAt(index); }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    PuzzleGrid *m_grid;
};

} // namespace lexicove
