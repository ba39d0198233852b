#include "play/marking.h"

#include "play/timereport.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace lexicove {

namespace {

const QString kSoundMark = QStringLiteral("mark.wav");
const QString kSoundWrong = QStringLiteral("wrong.wav");
const QString kSoundInTime = QStringLiteral("cheer1.wav");
const QString kSoundLate = QStringLiteral("cheer2.wav");

const QString kSameCell = QStringLiteral(
    "You didn't select any letters. Move to the first letter in the word you have found, and "
    "press spacebar. Then, move to the last letter of the word, and press spacebar again. You "
    "will be notified if you have correctly found a word, at which point it will be removed from "
    "the list of words that you must find. If you did not correctly find a word, a buzzer will "
    "notify you and you may continue searching through the puzzle and marking a new word.");
const QString kNotInLine = QStringLiteral(
    "You have not selected a valid word. Only vertical, horizontal, or diagonal selections are "
    "allowed.");
const QString kAllFound = QStringLiteral(
    "You found all the words! Nice work! You may press escape to quit this puzzle, or use one of "
    "the options in the puzzle menu to save, print, or braille this puzzle. Thanks for playing!");

QString WordFoundMessage(const QString &word)
{
    return QStringLiteral("Correct! You found the word ") + word + QLatin1Char('!');
}

QString Reversed(const QString &text)
{
    QString reversed = text;
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
}

} // namespace

RunKind KindOfRun(int dr, int dc)
{
    if (dc == 0)
        return RunKind::Vertical;
    if (dr == 0)
        return RunKind::Horizontal;
    if (dr == std::abs(dc))
        return RunKind::Diagonal;
    return RunKind::NotInLine;
}

QList<GridCell> RunCells(RunKind kind, int firstRow, int firstCol, int lastRow, int lastCol)
{
    QList<GridCell> cells;
    switch (kind) {
    case RunKind::Vertical:
        for (int r = firstRow; r <= lastRow; ++r)
            cells.append({r, firstCol});
        break;
    case RunKind::Horizontal:
        for (int c = std::min(firstCol, lastCol); c <= std::max(firstCol, lastCol); ++c)
            cells.append({firstRow, c});
        break;
    case RunKind::Diagonal: {
        const int step = lastCol > firstCol ? 1 : -1;
        for (int k = 0; k <= lastRow - firstRow; ++k)
            cells.append({firstRow + k, firstCol + k * step});
        break;
    }
    case RunKind::NotInLine:
        break;
    }
    return cells;
}

QString ReadRun(const GameState &state, const QList<GridCell> &cells)
{
    QString run;
    for (const GridCell &cell : cells)
        run += state.grid[cell.row][cell.column];
    return run;
}

void SwapValues(qint16 &a, qint16 &b)
{
    std::swap(a, b);
}

Marking::Marking(const GameState &state, Clock &clock) : m_state(state), m_clock(clock) {}

void Marking::ClearFound()
{
    m_wordFound.fill(false);
    for (auto &row : m_foundGrid)
        row.fill(false);
}

std::optional<GridCell> Marking::pendingMark() const
{
    if (!m_markPending)
        return std::nullopt;
    return GridCell{m_firstRow, m_firstCol};
}

bool Marking::isFound(int row, int column) const
{
    const bool inside =
        row >= 1 && row <= GameState::kMaxSide && column >= 1 && column <= GameState::kMaxSide;
    return inside && m_foundGrid[row][column];
}

void Marking::Begin()
{
    m_wordsRemaining = m_state.wordCount;
    m_startTick = m_clock.tickCount();
    m_markPending = false;
}

quint32 Marking::elapsed() const
{
    return ElapsedSince(m_startTick, m_clock.tickCount());
}

QStringList Marking::Sounds()
{
    return {kSoundMark, kSoundWrong, kSoundInTime, kSoundLate};
}

QString Marking::ClosingSound() const
{
    const bool late = m_state.timeLimit != 0 && IsPastLimit(m_state.timeLimit, elapsed());
    return late ? kSoundLate : kSoundInTime;
}

Replies Marking::MarkLetter(int row, int column)
{
    if (!m_markPending) {
        m_firstRow = static_cast<qint16>(row);
        m_firstCol = static_cast<qint16>(column);
        m_markPending = true;
        return {Reply::sound(kSoundMark)};
    }

    // Whatever the second press finds, the selection ends with it.
    m_markPending = false;
    m_lastRow = static_cast<qint16>(row);
    m_lastCol = static_cast<qint16>(column);
    if (m_firstRow == m_lastRow && m_firstCol == m_lastCol)
        return {Reply::message(kSameCell)};

    if (m_firstRow > m_lastRow) {
        SwapValues(m_firstRow, m_lastRow);
        SwapValues(m_firstCol, m_lastCol);
    }
    const RunKind kind = KindOfRun(m_lastRow - m_firstRow, m_lastCol - m_firstCol);
    if (kind == RunKind::NotInLine)
        return {Reply::message(kNotInLine)};
    const QList<GridCell> cells = RunCells(kind, m_firstRow, m_firstCol, m_lastRow, m_lastCol);
    const qint32 remainingBefore = m_wordsRemaining;
    const Replies replies = CheckWord(ReadRun(m_state, cells));
    // A selection that found a word is where that word lies.
    if (m_wordsRemaining != remainingBefore) {
        for (const GridCell &cell : cells)
            m_foundGrid[cell.row][cell.column] = true;
    }
    return replies;
}

Replies Marking::CheckWord(const QString &run)
{
    Replies replies;
    if (m_wordsRemaining == 0)
        return replies;

    // Every slot is tried: the same word listed twice, or one word forwards
    // and another backwards, are all found by one selection.
    const QString reversed = Reversed(run);
    bool foundAny = false;
    const int count = qBound(0, static_cast<int>(m_state.wordCount), GameState::kMaxWords);
    for (int i = 1; i <= count; ++i) {
        const QString &word = m_state.words[i];
        if (!m_wordFound[i] && (word == reversed || word == run)) {
            foundAny = true;
            m_wordFound[i] = true;
            --m_wordsRemaining;
            replies.append(Reply::message(WordFoundMessage(word)));
        }
    }
    if (!foundAny)
        replies.append(Reply::sound(kSoundWrong));
    if (m_wordsRemaining != 0)
        return replies;

    replies.append(Reply::closingSound());
    replies.append(Reply::message(kAllFound));
    return replies;
}

} // namespace lexicove
