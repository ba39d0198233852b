#include "output/solution.h"

#include <QList>
#include <QStringView>

namespace lexicove {

namespace {

struct Step {
    int rows;
    int columns;
};

// The directions the switches allow, each way.
QList<Step> AllowedSteps(const GameState &state)
{
    QList<Step> steps;
    if (state.allowVertical)
        steps += {{1, 0}, {-1, 0}};
    if (state.allowHorizontal)
        steps += {{0, 1}, {0, -1}};
    if (state.allowDiagonal)
        steps += {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
    return steps;
}

// Whether the cells read from (row, column) by step, up to as many cells as
// the word has letters and not past the edge, spell the word when put
// together.
bool Spells(const GameState &state, QStringView word, int row, int column, Step step)
{
    const int rows = state.rows;
    const int columns = state.columns;
    qsizetype used = 0;
    for (qsizetype k = 0; k < word.size(); ++k) {
        if (row < 1 || row > rows || column < 1 || column > columns)
            break;
        const QString &cell = state.grid[row][column];
        if (!word.mid(used).startsWith(cell))
            return false;
        used += cell.size();
        row += step.rows;
        column += step.columns;
    }
    return used == word.size();
}

} // namespace

WordPosition LocateWord(const GameState &state, const QString &word)
{
    WordPosition found;
    const QList<Step> steps = AllowedSteps(state);
    const int rows = qBound(0, static_cast<int>(state.rows), GameState::kMaxSide);
    const int columns = qBound(0, static_cast<int>(state.columns), GameState::kMaxSide);
    const QStringView wanted(word);
    for (int r = 1; r <= rows; ++r) {
        for (int c = 1; c <= columns; ++c) {
            // Most cells hold one letter, and most of those do not begin the word.
            const QString &cell = state.grid[r][c];
            if (!wanted.isEmpty() &&
                (cell.size() == 1 ? cell.front() != wanted.front() : !wanted.startsWith(cell)))
                continue;
            for (const Step &step : steps) {
                if (Spells(state, wanted, r, c, step)) {
                    found = {r, c};
                    break;
                }
            }
        }
    }
    return found;
}

WordPositions LocateWords(const GameState &state, const std::function<void()> &yield)
{
    WordPositions positions{};
    const int count = qBound(0, static_cast<int>(state.wordCount), GameState::kMaxWords);
    for (int i = 1; i <= count; ++i) {
        const WordPosition at = LocateWord(state, state.words[i]);
        if (yield)
            yield();
        positions[i] = at;
    }
    return positions;
}

QString SolutionLine(const QString &word, WordPosition at)
{
    return word + QStringLiteral(" is at row ") + QString::number(at.row) +
           QStringLiteral(", col ") + QString::number(at.col);
}

} // namespace lexicove
