#pragma once

// Puzzles put straight into the game state, and print or braille jobs run on
// them through the scripted platform.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "output/pagelayout.h"

#include <QStringList>

namespace lexicove::test {

// 5 x 5 with a different letter in every cell: a sound, a run or a place
// tells the cells apart.
inline const QStringList kAlphabet = {"abcde", "fghij", "klmno", "pqrst", "uvwxy"};

// One text per grid row; the words in slots from 1; every direction allowed.
inline void setPuzzle(GameState &state, const QStringList &rows, const QStringList &words)
{
    state.rows = static_cast<qint16>(rows.size());
    state.columns = static_cast<qint16>(rows.first().size());
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            state.grid[r][c] = rows[r - 1].mid(c - 1, 1);
    state.wordCount = static_cast<qint32>(words.size());
    for (int i = 1; i <= state.wordCount; ++i)
        state.words[i] = words[i - 1];
    state.allowHorizontal = state.allowVertical = state.allowDiagonal = true;
}

// A print or braille job on the puzzle in `state`. The print dialog gives
// the scripted printer unless told otherwise; the list window picks
// `fontSize` (the entry it opens on when empty) and the solution question is
// answered as asked.
struct OutputRig {
    JobResult run(OutputMode mode, bool solution)
    {
        fp.dialogs.answers = {solution ? MessageResult::Yes : MessageResult::No};
        JobWindow window;
        window.chooseFromList = [this](const QString &title, const QStringList &entries,
                                       int selected) {
            listShown << title + ": " + entries.join(',') + " at " + QString::number(selected);
            return fontSize.isEmpty() ? entries.value(selected) : fontSize;
        };
        window.yield = [this] { ++yields; };
        return OutputJob(state, fp.platform, window).OutputPuzzle(mode);
    }
    // Braille pages of lineLength cells by linesPerPage lines.
    JobResult braille(int lineLength, int linesPerPage, bool solution)
    {
        state.brailleLineLength = static_cast<qint16>(lineLength);
        state.brailleLinesPerPage = static_cast<qint16>(linesPerPage);
        return run(OutputMode::Braille, solution);
    }

    FakePlatform fp;
    GameState state;
    QString fontSize;
    QStringList listShown;
    int yields = 0;
};

} // namespace lexicove::test
