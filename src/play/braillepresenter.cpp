#include "play/braillepresenter.h"

#include "play/marking.h"

#include <algorithm>
#include <array>

namespace lexicove {

namespace {

// The status, longest form first: the first that fits the display is shown.
// The last fits a 12-cell display with a 50 by 50 puzzle of 50 words.
const std::array kStatusForms = {
    QStringLiteral("r%1 c%2 %3 of %4 words"),
    QStringLiteral("r%1 c%2 %3/%4"),
    QStringLiteral("r%1c%2 %3/%4"),
};

} // namespace

BrailleRow RowOnBraille(const GameState &state, const Marking &marking, int row)
{
    BrailleRow shown;
    if (row < 1 || row > std::min<int>(state.rows, GameState::kMaxSide))
        return shown;
    const int columns = std::clamp<int>(state.columns, 0, GameState::kMaxSide);
    for (int c = 1; c <= columns; ++c) {
        const QString &letter = state.grid[row][c];
        shown.letters += letter.isEmpty() ? QChar(u' ') : letter.at(0);
        shown.found.append(marking.isFound(row, c));
    }
    if (const std::optional<GridCell> pending = marking.pendingMark();
        pending && pending->row == row)
        shown.pendingColumn = pending->column;
    return shown;
}

void BraillePresenter::setWidth(int cells)
{
    m_width = std::max(cells, 0);
    m_panStart = 1;
}

void BraillePresenter::follow(int column)
{
    if (m_width <= 0 || column < 1)
        return;
    if (column < m_panStart || column >= m_panStart + m_width)
        m_panStart = (column - 1) / m_width * m_width + 1;
}

BrailleCells BraillePresenter::cells(const BrailleRow &row, int column) const
{
    BrailleCells shown;
    const qsizetype first = m_panStart - 1;
    const qsizetype count = std::clamp<qsizetype>(row.letters.size() - first, 0, m_width);
    shown.text.reserve(count);
    shown.dots.fill('\0', count);
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype c = first + i; // the column, from 0
        shown.text += row.letters.at(c).toLower();
        if (c + 1 == row.pendingColumn)
            shown.dots[i] = static_cast<char>(BrailleCells::kDot7);
        else if (c < row.found.size() && row.found.at(c))
            shown.dots[i] = static_cast<char>(BrailleCells::kDot8);
    }
    if (column >= m_panStart && column - first <= count)
        shown.cursor = column - m_panStart + 1;
    return shown;
}

int BraillePresenter::route(int cell, int columns) const
{
    if (cell < 0 || cell >= m_width)
        return 0;
    const int column = m_panStart + cell;
    return column <= columns ? column : 0;
}

bool BraillePresenter::pan(Pan direction, int columns)
{
    if (m_width <= 0)
        return false;
    const int start = direction == Pan::Left ? m_panStart - m_width : m_panStart + m_width;
    if (start < 1 || start > columns)
        return false;
    m_panStart = start;
    return true;
}

QString BraillePresenter::status(int row, int column, int found, int total, int width)
{
    QString text;
    for (const QString &form : kStatusForms) {
        text = form.arg(row).arg(column).arg(found).arg(total);
        if (text.size() <= width)
            return text;
    }
    // A display narrower than any puzzle's status shows what fits.
    return text.left(std::max(width, 0));
}

} // namespace lexicove
