#include "output/pagelayout.h"

#include "core/gamestate.h"
#include "core/masking.h"
#include "output/solution.h"
#include "setup/numberreader.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lexicove {

namespace {

const QString kTooWideForBraille = QStringLiteral(
    "The puzzle is too wide for your braille page. Please create a smaller puzzle and try again.");
const QString kTooWideForPage =
    QStringLiteral("Error. The puzzle will not fit on the page. Please make the puzzle smaller, "
                   "use a different printer, or choose a smaller font size.");
const QString kSolutionQuestion =
    QStringLiteral("Do you want to print a solution page as well? The solution page specifies "
                   "where in the puzzle the words can be found.");
const QString kSolutionTitle = QStringLiteral("Solution?");
const QString kFontSizeTitle = QStringLiteral("Select Font Size for Printing");
const QStringList kFontSizes = {QStringLiteral("8 point"),  QStringLiteral("10 point"),
                                QStringLiteral("12 point"), QStringLiteral("14 point"),
                                QStringLiteral("16 point"), QStringLiteral("18 point")};
constexpr int kFontSizeAtStart = 2; // "12 point"
constexpr qint32 kBrailleFontSize = 8;
constexpr qint32 kHeadingLarger = 4;
// Lines the grid's heading and the gap before it take.
constexpr qint32 kLinesAboveGrid = 7;
// A column is at least this much wider than the longest word.
constexpr int kColumnGap = 4;

struct BrailleQuestion {
    QString prompt;
    QString title;
    qint16 fallback;
};
const BrailleQuestion kLinesPerPage{
    QStringLiteral("How many lines on your braille page? If you are unsure, try the default by "
                   "pressing enter"),
    QStringLiteral("Lines Per Page"), 23};
const BrailleQuestion kLineLength{
    QStringLiteral("What is your braille line length? If you are unsure, try the default by "
                   "pressing enter"),
    QStringLiteral("Line Length"), 35};

qint16 AskBrailleSize(Dialogs &dialogs, QWidget *parent, const BrailleQuestion &question)
{
    const QString reply =
        dialogs.input(parent, question.prompt, question.title, QString::number(question.fallback));
    const std::optional<qint64> number = ReadReplyNumber(reply);
    if (!number || *number < 1 || *number > std::numeric_limits<qint16>::max())
        return question.fallback;
    return static_cast<qint16>(*number);
}

// How many cells of `cell` (a width or a line height) `space` holds, rounded;
// none when a cell has no size.
qint32 CellsIn(double space, double cell)
{
    return cell > 0 ? static_cast<qint32>(RoundHalfEven(space / cell)) : 0;
}

QString WithoutFinalStop(const QString &reason)
{
    return reason.endsWith(QLatin1Char('.')) ? reason.chopped(1) : reason;
}

} // namespace

qint64 RoundHalfEven(double value)
{
    const double below = std::floor(value);
    const double fraction = value - below;
    double rounded = below;
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(below, 2.0) != 0.0))
        rounded += 1.0;
    return static_cast<qint64>(rounded);
}

QString JobMessage(const JobResult &result)
{
    switch (result.end) {
    case JobEnd::TooWideForBraille:
        return kTooWideForBraille;
    case JobEnd::TooWideForPage:
        return kTooWideForPage;
    case JobEnd::Failed:
        return (result.destination.kind == PrintDestination::Kind::File
                    ? QStringLiteral("The puzzle could not be printed to the file \"%1\": %2.")
                    : QStringLiteral("The puzzle could not be printed on the printer \"%1\": %2."))
            .arg(result.destination.name, WithoutFinalStop(result.reason));
    case JobEnd::Cancelled:
    case JobEnd::Printed:
        break;
    }
    return QString();
}

void AskBraillePage(GameState &state, Dialogs &dialogs, QWidget *parent)
{
    state.brailleLinesPerPage = AskBrailleSize(dialogs, parent, kLinesPerPage);
    state.brailleLineLength = AskBrailleSize(dialogs, parent, kLineLength);
}

OutputJob::OutputJob(GameState &state, Platform &platform, JobWindow window)
    : m_state(state), m_platform(platform), m_window(std::move(window))
{
}

JobResult OutputJob::OutputPuzzle(OutputMode mode)
{
    outputMode = mode;
    if (mode == OutputMode::Braille && m_state.brailleLineLength < m_state.columns)
        return {JobEnd::TooWideForBraille, {}, {}};

    PrintChoice choice = m_platform.fileDialogs.choosePrinter(
        m_window.parent, {mode, m_state.brailleLineLength, m_state.brailleLinesPerPage});
    if (!choice.printer)
        return {JobEnd::Cancelled, {}, {}};
    Printer &printer = *choice.printer;
    m_printer = &printer;

    printer.setCopies(choice.copies);
    // Where no "Courier New" is to be had, "Courier" stands.
    printer.setFontName(QStringLiteral("Courier"));
    printer.setFontName(QStringLiteral("Courier New"));

    // The whole page, in lines of the font the printer starts with.
    fullPageLines =
        CellsIn(static_cast<double>(RoundHalfEven(printer.printableHeight())) - printer.currentY(),
                printer.textHeight(QStringLiteral("X")));
    m_state.brailleSurplusLines = static_cast<qint16>(
        std::clamp<qint32>(fullPageLines - m_state.brailleLinesPerPage,
                           std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max()));

    printFontSize = kBrailleFontSize;
    if (mode == OutputMode::Print)
        ChooseFontSize();

    // Asked in both modes, and even when the grid then turns out too wide.
    const bool solution =
        m_platform.dialogs.message(m_window.parent, kSolutionQuestion, MessageButtons::YesNo,
                                   kSolutionTitle) == MessageResult::Yes;

    printer.setFontSize(printFontSize + kHeadingLarger);
    PrintHeading(QStringLiteral("Word List"));
    printer.setFontSize(printFontSize);
    PrintLine(QString(), false);

    // With a word too long for even one column, the list takes one column.
    PrintWordList(std::max<int>(1, WordColumns()));

    if (m_state.rows <= LinesLeft() - kLinesAboveGrid) {
        PrintLine(QString(), false);
        PrintLine(QString(), false);
    } else {
        printer.newPage();
    }

    printer.setFontSize(printFontSize + kHeadingLarger);
    PrintHeading(QStringLiteral("Puzzle"));
    PrintLine(QString(), false);
    printer.setFontSize(printFontSize);

    if (m_state.columns > CharsPerLine()) {
        printer.abandonDocument();
        return {JobEnd::TooWideForPage, {}, {}};
    }
    PrintGrid();
    if (solution)
        PrintSolution();
    QString error;
    if (!printer.endDocument(error))
        return {JobEnd::Failed, choice.destination, error};
    return {JobEnd::Printed, {}, {}};
}

void OutputJob::ChooseFontSize()
{
    const QString chosen =
        m_window.chooseFromList
            ? m_window.chooseFromList(kFontSizeTitle, kFontSizes, kFontSizeAtStart)
            : kFontSizes.at(kFontSizeAtStart);
    // The number the entry starts with: "14 point" gives 14.
    printFontSize = static_cast<qint32>(ReadReplyNumber(chosen).value_or(0));
}

void OutputJob::PrintLine(const QString &text, bool stayOnLine)
{
    m_printer->print(text, stayOnLine);
    if (outputMode == OutputMode::Braille && LinesLeft() <= 0)
        m_printer->newPage();
}

void OutputJob::PrintHeading(const QString &title)
{
    const qint32 width = CharsPerLine();
    const qint64 indent = RoundHalfEven((width - static_cast<double>(title.size())) / 2.0);
    m_printer->setCurrentX(m_printer->textWidth(QStringLiteral("X")) * static_cast<double>(indent));
    PrintLine(title, false);
    PrintLine(QString(), false);
}

qint32 OutputJob::CharsPerLine() const
{
    if (outputMode == OutputMode::Braille)
        return m_state.brailleLineLength;
    return CellsIn(static_cast<double>(RoundHalfEven(m_printer->printableWidth())),
                   m_printer->textWidth(QStringLiteral("X")));
}

qint32 OutputJob::LinesLeft() const
{
    const qint32 printerLines = CellsIn(
        static_cast<double>(RoundHalfEven(m_printer->printableHeight())) - m_printer->currentY(),
        m_printer->textHeight(QStringLiteral("X")));
    if (outputMode == OutputMode::Braille)
        return printerLines - m_state.brailleSurplusLines;
    return printerLines;
}

qint32 OutputJob::LineWidth() const
{
    if (outputMode == OutputMode::Braille)
        return static_cast<qint32>(
            RoundHalfEven(m_printer->textWidth(QStringLiteral("X")) * m_state.brailleLineLength));
    return static_cast<qint32>(RoundHalfEven(m_printer->printableWidth()));
}

qint16 OutputJob::WordColumns() const
{
    qsizetype longest = 0;
    const int count = qBound(0, static_cast<int>(m_state.wordCount), GameState::kMaxWords);
    for (int i = 1; i <= count; ++i)
        longest = std::max(longest, m_state.words[i].size());
    const double columns =
        std::floor(static_cast<double>(CharsPerLine()) / static_cast<double>(longest + kColumnGap));
    return static_cast<qint16>(qBound(0.0, columns, double(std::numeric_limits<qint16>::max())));
}

void OutputJob::PrintWordList(int columnCount)
{
    const qint64 columnWidth = RoundHalfEven(static_cast<double>(LineWidth()) / columnCount);
    int column = 0;
    const int count = qBound(0, static_cast<int>(m_state.wordCount), GameState::kMaxWords);
    for (int i = 1; i <= count; ++i) {
        m_printer->setCurrentX(static_cast<double>(column * columnWidth));
        const QString &word = m_state.words[i];
        PrintLine(m_state.hideWords ? MaskWord(word) : word, true);
        if (++column == columnCount) {
            column = 0;
            PrintLine(QString(), false);
        }
    }
    if (column != 0)
        PrintLine(QString(), false);
}

void OutputJob::PrintGrid()
{
    const int rows = qBound(0, static_cast<int>(m_state.rows), GameState::kMaxSide);
    const int columns = qBound(0, static_cast<int>(m_state.columns), GameState::kMaxSide);
    for (int r = 1; r <= rows; ++r) {
        for (int c = 1; c <= columns; ++c)
            PrintLine(m_state.grid[r][c], true);
        PrintLine(QString(), false);
    }
}

void OutputJob::PrintSolution()
{
    const WordPositions positions = LocateWords(m_state, m_window.yield);
    m_printer->newPage();
    m_printer->setFontSize(printFontSize + kHeadingLarger);
    PrintHeading(QStringLiteral("Puzzle Solution"));
    m_printer->setFontSize(printFontSize);
    PrintLine(QString(), false);
    // Straight to the printer: these lines keep no braille page rule.
    const int count = qBound(0, static_cast<int>(m_state.wordCount), GameState::kMaxWords);
    for (int i = 1; i <= count; ++i)
        m_printer->print(SolutionLine(m_state.words[i], positions[i]), false);
}

} // namespace lexicove
