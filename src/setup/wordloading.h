#pragma once

#include "core/gamestate.h"
#include "platform/platform.h"

namespace lexicove {

// Reads the list at state.wordListPath into words, wordCount and letterCount
// and sorts the words longest first (equal lengths keep their file order).
// Each line is one word, exactly as it stands (an empty line is an empty
// word); a line end after the last word adds none. Only the first
// GameState::kMaxWords lines are read. Returns false, with the reason in
// error and the state untouched, when the file can't be read.
bool LoadWords(GameState &state, Files &files, QString &error);

// Sorts slots 1 to wordCount longest first by bubble sort: only a strictly
// shorter word moves back, so words of equal length keep their order.
void SortWords(GameState &state);

// The options window's size test: round(letterCount * 1.6) cells at most,
// and the longest word (slot 1) plus 3 at most rows and at most columns.
bool PassesSizeTest(const GameState &state);

// Puts a letter into every free cell after a complete placement.
void FillGrid(GameState &state, Random &random);

} // namespace lexicove
