#include "play/masking.h"

namespace lexicove {

QStringList WordsToFind(const GameState &state, const WordFoundFlags &wordFound)
{
    QStringList entries;
    const int count = qBound(0, static_cast<int>(state.wordCount), GameState::kMaxWords);
    for (int i = 1; i <= count; ++i) {
        if (wordFound[i])
            continue;
        entries.append(state.hideWords ? MaskWordSpaced(state.words[i]) : state.words[i]);
    }
    return entries;
}

} // namespace lexicove
