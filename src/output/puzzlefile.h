#pragma once

// The saved puzzle: a numbered list of the puzzle's words and its letter
// grid, one text line per grid row, in one file or in two. Every line ends in
// CR LF. Nothing reads these files back.
//
// One file:  "***Lexicove Word List:", an empty line, the word list, three
//            empty lines, "***Lexicove Puzzle:", an empty line, the grid, an
//            empty line.
// Two files: the chosen file holds the part up to the first empty line
//            after the word list; the puzzle file (the chosen path less its
//            last four characters, then "-puzzle.txt") holds the rest, from
//            "***Lexicove Puzzle:".

#include "platform/platform.h"

#include <QString>

namespace lexicove {

struct GameState;

// "1. cat\r\n2. dog\r\n": every word of slots 1 to wordCount, found or not.
QString WordListText(const GameState &state);
// Each row's letters side by side, then "\r\n".
QString GridText(const GameState &state);

QString OneFileText(const QString &wordListText, const QString &gridText);
QString WordListFileText(const QString &wordListText);
QString PuzzleFileText(const QString &gridText);
// Exactly four characters come off whatever they are: "mylist" gives
// "my-puzzle.txt". Empty when the path is too short to lose four.
QString PuzzleFilePath(const QString &chosenPath);

// How a save ended. `path` is the file that failed; `savedPath` the word
// list file already written when the puzzle file of a two-file save failed.
struct SaveResult {
    enum class End { Cancelled, Saved, Failed };
    End end = End::Cancelled;
    QString path;
    QString reason;
    QString savedPath;
};

// The Save Puzzle command: the save dialog, the one-or-two-files question,
// then the file or files, each written whole or not at all.
SaveResult SavePuzzle(const GameState &state, const Platform &platform, QWidget *parent);

// What the player is told after a save: nothing after a save or a cancel;
// the file and the reason after a failure.
QString SaveMessage(const SaveResult &result);

} // namespace lexicove
