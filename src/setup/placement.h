#pragma once

#include "core/gamestate.h"
#include "platform/platform.h"

namespace lexicove {

enum class PlacementStatus { Open = 0, Failed = 1, Complete = 2 };

// Lays every word of state.words (slots 1 to wordCount) into the empty grid,
// no two words sharing a cell, each forwards or reversed, in the enabled
// directions. The implementation explains its search.
class WordPlacer {
public:
    WordPlacer(GameState &state, Random &random);
    ~WordPlacer();
    WordPlacer(const WordPlacer &) = delete;
    WordPlacer &operator=(const WordPlacer &) = delete;

    // Empties the grid and opens a new search.
    void ClearPuzzle();
    // Lays the word in slot index and, through the search, every word after
    // it. Called once with 1; afterwards placementStatus() is Failed or
    // Complete, never Open.
    void PlaceWord(int index);
    PlacementStatus placementStatus() const;

private:
    struct Impl;
    Impl *d;
};

} // namespace lexicove
