#pragma once

#include "core/gamestate.h"
#include "core/masking.h"

#include <QStringList>

#include <array>

namespace lexicove {

// Found flags of the word slots 0 to 50 (slot 0 unused).
using WordFoundFlags = std::array<bool, GameState::kMaxWords + 1>;

// The entries of the words-to-find list: every word of slots 1 to wordCount
// not yet found, in slot order, masked when hideWords is set.
QStringList WordsToFind(const GameState &state, const WordFoundFlags &wordFound);

} // namespace lexicove
