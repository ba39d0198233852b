#pragma once

// Puzzles for the play tests, written straight into a game state as the
// options window would leave it.

#include "core/gamestate.h"

#include <QStringList>

namespace lexicove::test {

// rows: one text per grid row, one character per cell ("catzz").
inline void SetPuzzle(GameState &state, const QStringList &rows, const QStringList &words,
                      qint32 timeLimit = 0, bool hideWords = false)
{
    state.rows = static_cast<qint16>(rows.size());
    state.columns = static_cast<qint16>(rows.isEmpty() ? 0 : rows.first().size());
    for (int r = 1; r <= state.rows; ++r)
        for (int c = 1; c <= state.columns; ++c)
            state.grid[r][c] = rows[r - 1].mid(c - 1, 1);
    state.wordCount = static_cast<qint32>(words.size());
    state.letterCount = 0;
    for (int i = 1; i <= state.wordCount; ++i) {
        state.words[i] = words[i - 1];
        state.letterCount += static_cast<qint32>(words[i - 1].size());
    }
    state.allowHorizontal = true;
    state.allowVertical = true;
    state.allowDiagonal = true;
    state.timeLimit = timeLimit;
    state.hideWords = hideWords;
}

// A side x side grid of one letter everywhere.
inline QStringList PlainRows(int side, QChar letter = QLatin1Char('z'))
{
    return QStringList(side, QString(side, letter));
}

inline const QString kSameCellMessage = QStringLiteral(
    "You didn't select any letters. Move to the first letter in the word you have found, and "
    "press spacebar. Then, move to the last letter of the word, and press spacebar again. You "
    "will be notified if you have correctly found a word, at which point it will be removed from "
    "the list of words that you must find. If you did not correctly find a word, a buzzer will "
    "notify you and you may continue searching through the puzzle and marking a new word.");
inline const QString kNotInLineMessage = QStringLiteral(
    "You have not selected a valid word. Only vertical, horizontal, or diagonal selections are "
    "allowed.");
inline const QString kAllFoundMessage = QStringLiteral(
    "You found all the words! Nice work! You may press escape to quit this puzzle, or use one of "
    "the options in the puzzle menu to save, print, or braille this puzzle. Thanks for playing!");

inline QString FoundMessage(const QString &word)
{
    return QStringLiteral("Correct! You found the word %1!").arg(word);
}

} // namespace lexicove::test
