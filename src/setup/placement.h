#pragma once

#include "core/gamestate.h"
#include "platform/platform.h"

#include <QList>
#include <QString>

#include <functional>

namespace lexicove {

enum class PlacementStatus { Open = 0, Failed = 1, Complete = 2 };

// The four ways a word can run from its start cell, in the order in which the
// places of a word are listed for each cell.
enum class Direction { Right = 0, Down = 1, DownRight = 2, DownLeft = 3 };

// "right", "down", "downright", "downleft".
QString directionName(Direction direction);

// One place a word can take: its start cell and direction.
struct CandidatePlace {
    int row = 0;
    int column = 0;
    Direction direction = Direction::Right;
    friend bool operator==(const CandidatePlace &, const CandidatePlace &) = default;
};

// The record text of a place: row, ",", column, ",", direction ("3,12,downright").
QString candidateRecord(const CandidatePlace &place);

// How long one search may run. A search that has run restartAfterMs starts over
// with fresh draws (what it has learnt about dead ends is kept); once
// giveUpAfterMs have passed since PlaceWord was called it ends as failed.
struct PlacementLimits {
    double restartAfterMs = 100.0;
    double giveUpAfterMs = 500.0;
    // A backstop for a time source that does not move: the search also ends
    // as failed after this many steps in all (some seconds of work).
    qint64 mostSteps = 5'000'000;
    // Off only to measure the plain search: no dead end is then recognised
    // before it has been explored.
    bool pruneDeadEnds = true;
};

// Lays every word of state.words (slots 1 to wordCount) into the empty grid,
// no two words sharing a cell, each forwards or reversed, in the enabled
// directions. The implementation explains its search.
class WordPlacer {
public:
    // Milliseconds from any fixed moment; only differences are used.
    using TimeSource = std::function<double()>;

    WordPlacer(GameState &state, Random &random);
    WordPlacer(GameState &state, Random &random, TimeSource time,
               PlacementLimits limits = PlacementLimits());
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

    // Appends the place (row, column, direction) to the places of word slot
    // index when a word of `length` characters fits there: the run stays
    // inside the puzzle and every cell of it is free.
    void AddCandidate(int row, int column, int index, const QString &word, int length,
                      Direction direction);
    // Writes text into the run of cells from (row, column) in direction, or
    // empties as many cells of that run when erase is set. No test is made.
    void LayWord(const QString &text, int row, int column, Direction direction, bool erase);

    // The places listed for word slot index by the latest search for it (or
    // by AddCandidate since), in the order listed.
    QList<CandidatePlace> candidates(int index) const;

    // Figures of the latest PlaceWord call, for measuring tools.
    int restarts() const;
    qint64 searchNodes() const;
    // True when the search ended failed because its time (or its steps) ran
    // out, not because every arrangement had been ruled out.
    bool stoppedByTime() const;

private:
    struct Impl;
    Impl *d;
};

} // namespace lexicove
