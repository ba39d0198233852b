#pragma once

#include "core/gamestate.h"
#include "platform/platform.h"

namespace lexicove {

// Reads the list at state.wordListPath into words, wordCount and letterCount
// and sorts the words longest first (equal lengths keep their file order).
// Returns false, with the reason in error, when the file can't be read.
bool LoadWords(GameState &state, Files &files, QString &error);

// The options window's size test: round(letterCount * 1.6) cells at most,
// and the longest word plus 3 at most rows and at most columns.
bool PassesSizeTest(const GameState &state);

// Puts a letter into every free cell after a complete placement.
void FillGrid(GameState &state, Random &random);

} // namespace lexicove
