#pragma once

#include "platform/platform.h"

#include <QStringList>

#include <functional>

namespace lexicove {

struct GameState;

// How a print or braille job ended.
enum class JobEnd {
    TooWideForBraille, // the grid is wider than the braille line: nothing asked
    Cancelled,         // the print dialog was cancelled
    TooWideForPage,    // the grid is wider than the printed line: abandoned
    Printed,
    Failed, // the printer or the file refused the document
};

struct JobResult {
    JobEnd end = JobEnd::Cancelled;
    PrintDestination destination; // with Failed
    QString reason;               // with Failed
};

// What the player is told when a job ends: the two width messages, and for
// a failure the printer or file and the reason; nothing otherwise.
QString JobMessage(const JobResult &result);

// What a job needs of the window that runs it.
struct JobWindow {
    QWidget *parent = nullptr;
    // Shows the list window, modal, with `entries` and `selected` chosen,
    // and gives back the text of the entry chosen when it is closed.
    std::function<QString(const QString &title, const QStringList &entries, int selected)>
        chooseFromList;
    // Lets the window handle its pending events.
    std::function<void()> yield;
};

// The layout engine of printed and brailled puzzles. It lays the current
// puzzle out on the printer chosen in the print dialog, through the Printer
// operations alone, counting in character cells: a cell is as wide as "X"
// and a line as high as "X" in the current font. From the top of the first
// page: the "Word List" heading, the words in columns, two empty lines or a
// new page, the "Puzzle" heading, the grid, and, when asked for, a solution
// page that tells where each word starts.
//
// In braille mode a line is the player's braille line, and a page the
// player's braille page: the lines a printer page holds beyond it
// (brailleSurplusLines) are counted as used, and a new printer page starts as
// soon as a braille page is full.
//
// Rounding goes to the nearest whole number, halves to the even neighbour.
class OutputJob {
public:
    OutputJob(GameState &state, Platform &platform, JobWindow window);

    JobResult OutputPuzzle(OutputMode mode);

private:
    void ChooseFontSize();
    void PrintLine(const QString &text, bool stayOnLine);
    void PrintHeading(const QString &title);
    qint32 CharsPerLine() const;
    qint32 LinesLeft() const;
    qint32 LineWidth() const;
    qint16 WordColumns() const;
    void PrintWordList(int columnCount);
    void PrintGrid();
    void PrintSolution();

    GameState &m_state;
    Platform &m_platform;
    JobWindow m_window;
    Printer *m_printer = nullptr;
    OutputMode outputMode = OutputMode::Print;
    qint32 printFontSize = 0;
    qint32 fullPageLines = 0;
};

// The Braille Puzzle command's two questions: lines per braille page and
// cells per braille line, stored in the game state. An answer below 1, no
// number at all, a cancelled box or a number beyond 16 bits gives the
// default (23 lines, 35 cells).
void AskBraillePage(GameState &state, Dialogs &dialogs, QWidget *parent);

// Halves go to the even neighbour: 14.5 gives 14, 13.5 gives 14.
qint64 RoundHalfEven(double value);

} // namespace lexicove
