#pragma once

#include "core/gamestate.h"

#include <QString>

#include <array>
#include <functional>

namespace lexicove {

// Where a word's first letter stands in the grid, from 1; -1 and -1 when no
// allowed direction spells the word from any cell.
struct WordPosition {
    qint32 row = -1;
    qint32 col = -1;
    friend bool operator==(const WordPosition &, const WordPosition &) = default;
};

// Searches the grid for a word the way the solution page reports it: from
// every cell, row by row, the runs of up to as many cells as the word has
// letters in each allowed direction (vertical: down and up; horizontal:
// right and left; diagonal: the four diagonals). The last cell, in row-by-row
// order, from which a run spells the word wins, so a word laid backwards is
// reported at its first letter, the far end of its run.
//
// Every run starts with its own cell, so a cell whose text does not begin
// the word is passed over at once; only the few cells that match are read
// further. A run that crosses the edge is shorter than the word and can't
// match.
WordPosition LocateWord(const GameState &state, const QString &word);

using WordPositions = std::array<WordPosition, GameState::kMaxWords + 1>;
// Every word of slots 1 to wordCount in turn, calling yield between words so
// that the window can handle its pending events.
WordPositions LocateWords(const GameState &state, const std::function<void()> &yield);

// "cat is at row 3, col 12".
QString SolutionLine(const QString &word, WordPosition at);

} // namespace lexicove
