#include "setup/wordloading.h"

#include "wordlists/wordlistformat.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace lexicove {

namespace {

constexpr int kLetterCount = 26;   // filler letters a to z
constexpr int kFirstLetterCode = 96; // letter k is the character 96 + k
constexpr int kMostLettersForDecoys = 21;
constexpr int kVowelChance = 20;   // a vowel the words lack: 1 chance in 20
constexpr double kCellsPerLetter = 1.6;
constexpr double kLargestInteger = 32767.0;

// The filler letters as shared single-character texts, so that filling a
// cell does not allocate.
const std::array<QString, kLetterCount + 1> &fillerTexts()
{
    static const std::array<QString, kLetterCount + 1> texts = [] {
        std::array<QString, kLetterCount + 1> t;
        for (int k = 1; k <= kLetterCount; ++k)
            t[k] = QString(QChar(kFirstLetterCode + k));
        return t;
    }();
    return texts;
}

bool isVowel(int k)
{
    const char letter = static_cast<char>(kFirstLetterCode + k);
    return letter == 'a' || letter == 'e' || letter == 'i' || letter == 'o' || letter == 'u';
}

} // namespace

bool LoadWords(GameState &state, Files &files, QString &error)
{
    // Only the lines that become words are kept. The rest of the file is read
    // only when those lines hold a byte above 127, whose character depends on
    // whether the whole file is UTF-8; ASCII reads the same either way.
    QByteArray head;
    LineCounter counter;
    TextFormatDetector detector;
    bool headDone = false;
    bool headAscii = true;
    const bool read = files.readPieces(
        state.wordListPath,
        [&](QByteArrayView piece) {
            detector.add(piece);
            if (!headDone) {
                const qsizetype taken = counter.add(piece, GameState::kMaxWords);
                head += piece.first(taken);
                headDone = counter.lineEnds() == GameState::kMaxWords;
                if (headDone && detector.sawNonAscii()) {
                    TextFormatDetector kept; // the kept lines alone
                    kept.add(head);
                    headAscii = !kept.sawNonAscii();
                }
            }
            return !headDone || (!headAscii && !detector.settled());
        },
        error);
    if (!read)
        return false;
    const TextFormat format = detector.format();
    const QStringList lines =
        ReadLines(WithoutByteOrderMark(head, format), format.encoding, GameState::kMaxWords);
    state.wordCount = 0;
    state.letterCount = 0;
    for (const QString &line : lines) {
        ++state.wordCount;
        state.words[state.wordCount] = line;
        state.letterCount += static_cast<qint32>(line.size());
    }
    SortWords(state);
    return true;
}

void SortWords(GameState &state)
{
    const int count = std::clamp<int>(state.wordCount, 0, GameState::kMaxWords);
    for (int pass = 1; pass <= count - 1; ++pass)
        for (int j = 1; j <= count - pass; ++j)
            if (state.words[j].size() < state.words[j + 1].size())
                std::swap(state.words[j], state.words[j + 1]);
}

bool PassesSizeTest(const GameState &state)
{
    // Rounded half to even, as the conversion to a whole number does; a
    // count past the 16-bit range can only be too big.
    const double needed = std::nearbyint(state.letterCount * kCellsPerLetter);
    if (needed > kLargestInteger)
        return false;
    const int cells = state.rows * state.columns;
    const qsizetype longest = state.words[1].size();
    return needed <= cells && longest + 3 <= state.rows && longest + 3 <= state.columns;
}

void FillGrid(GameState &state, Random &random)
{
    const int rows = std::clamp<int>(state.rows, 0, GameState::kMaxSide);
    const int columns = std::clamp<int>(state.columns, 0, GameState::kMaxSide);
    auto &grid = state.grid;

    // The words' characters, each once, in the order first met; and which of
    // the filler letters are among them.
    QString wordLetters;
    std::array<bool, kLetterCount + 1> inWords{};
    int emptyCells = 0;
    for (int r = 1; r <= rows; ++r) {
        for (int c = 1; c <= columns; ++c) {
            const QString &cell = grid[r][c];
            if (cell.isEmpty()) {
                ++emptyCells;
                continue;
            }
            if (!wordLetters.contains(cell)) {
                wordLetters += cell;
                const int k = cell.at(0).unicode() - kFirstLetterCode;
                if (cell.size() == 1 && k >= 1 && k <= kLetterCount)
                    inWords[k] = true;
            }
        }
    }

    // Draws an empty cell: a row, then a column, both again while the cell
    // is taken. Returns false when no empty cell is left, which a complete
    // placement never allows, so that a wrong letter count can't hang here.
    auto drawEmptyCell = [&](int &r, int &c) {
        if (emptyCells == 0)
            return false;
        do {
            r = random.draw(rows);
            c = random.draw(columns);
        } while (!grid[r][c].isEmpty());
        --emptyCells;
        return true;
    };

    int free = rows * columns - state.letterCount;
    int decoys = 0;
    if (wordLetters.size() <= kMostLettersForDecoys) {
        const int percent = random.draw(6) + 2; // 3 to 8
        decoys = static_cast<int>((percent / 100.0) * free);
    }
    const auto &letters = fillerTexts();
    for (int i = 0; i < decoys; ++i) {
        int r, c;
        if (!drawEmptyCell(r, c))
            break;
        int k;
        do {
            k = random.draw(kLetterCount);
        } while (inWords[k]);
        grid[r][c] = letters[k];
    }
    free -= decoys;
    for (int i = 0; i < free; ++i) {
        int r, c;
        if (!drawEmptyCell(r, c))
            break;
        for (;;) {
            const int k = random.draw(kLetterCount);
            const int chance = random.draw(kVowelChance);
            if (inWords[k] || (isVowel(k) && chance == 1)) {
                grid[r][c] = letters[k];
                break;
            }
        }
    }
}

} // namespace lexicove
