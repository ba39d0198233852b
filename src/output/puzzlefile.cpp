#include "output/puzzlefile.h"

#include "core/gamestate.h"
#include "platform/textencoding.h"

#include <QtGlobal>

namespace lexicove {

namespace {

const QString kLineEnd = QStringLiteral("\r\n");
const QString kWordListHeader = QStringLiteral("***Lexicove Word List:");
const QString kPuzzleHeader = QStringLiteral("***Lexicove Puzzle:");
const QString kFilter = QStringLiteral("Text Files (*.txt)");
const QString kSeparateQuestion = QStringLiteral(
    "Store word list in separate file? Choose yes to store word list in a different file, or "
    "no to store the word list along with the puzzle in the same file.");
const QString kQuestionTitle = QStringLiteral("Question");
const QString kPuzzleSuffix = QStringLiteral("-puzzle.txt");
constexpr qsizetype kCutFromChosenPath = 4;

// Each piece written as a line: the text and CR LF.
QString lines(std::initializer_list<QString> pieces)
{
    QString text;
    for (const QString &piece : pieces)
        text += piece + kLineEnd;
    return text;
}

QString withoutFinalStop(const QString &reason)
{
    return reason.endsWith(QLatin1Char('.')) ? reason.chopped(1) : reason;
}

} // namespace

QString WordListText(const GameState &state)
{
    QString text;
    const int count = qBound(0, static_cast<int>(state.wordCount), GameState::kMaxWords);
    for (int i = 1; i <= count; ++i)
        text += QString::number(i) + QStringLiteral(". ") + state.words[i] + kLineEnd;
    return text;
}

QString GridText(const GameState &state)
{
    QString text;
    const int rows = qBound(0, static_cast<int>(state.rows), GameState::kMaxSide);
    const int columns = qBound(0, static_cast<int>(state.columns), GameState::kMaxSide);
    for (int r = 1; r <= rows; ++r) {
        for (int c = 1; c <= columns; ++c)
            text += state.grid[r][c];
        text += kLineEnd;
    }
    return text;
}

QString WordListFileText(const QString &wordListText)
{
    return lines({kWordListHeader, QString(), wordListText});
}

QString PuzzleFileText(const QString &gridText)
{
    return lines({kPuzzleHeader, QString(), gridText});
}

QString OneFileText(const QString &wordListText, const QString &gridText)
{
    return WordListFileText(wordListText) + lines({QString(), QString()}) +
           PuzzleFileText(gridText);
}

QString PuzzleFilePath(const QString &chosenPath)
{
    if (chosenPath.size() < kCutFromChosenPath)
        return QString();
    return chosenPath.chopped(kCutFromChosenPath) + kPuzzleSuffix;
}

SaveResult SavePuzzle(const GameState &state, const Platform &platform, QWidget *parent)
{
    SaveResult result;
    const QString path = platform.fileDialogs.saveFile(parent, kFilter);
    if (path.isEmpty())
        return result;
    const bool separate = platform.dialogs.message(parent, kSeparateQuestion, MessageButtons::YesNo,
                                                   kQuestionTitle) == MessageResult::Yes;
    const QString wordList = WordListText(state);
    const QString grid = GridText(state);

    const auto write = [&](const QString &file, const QString &text) {
        // 8-bit text unless a word or letter needs UTF-8, like a word list.
        TextFormat format;
        if (platform.files.write(file, EncodeText(text, format), result.reason))
            return true;
        result.end = SaveResult::End::Failed;
        result.path = file;
        return false;
    };
    if (!separate) {
        if (write(path, OneFileText(wordList, grid)))
            result.end = SaveResult::End::Saved;
        return result;
    }
    if (!write(path, WordListFileText(wordList)))
        return result;
    result.savedPath = path;
    // A path too short to make the puzzle file's name from ends the save
    // here, with the word list written (no save dialog gives one).
    const QString puzzlePath = PuzzleFilePath(path);
    if (!puzzlePath.isEmpty() && write(puzzlePath, PuzzleFileText(grid)))
        result.end = SaveResult::End::Saved;
    return result;
}

QString SaveMessage(const SaveResult &result)
{
    if (result.end != SaveResult::End::Failed)
        return QString();
    QString message = QStringLiteral("The puzzle could not be saved in the file \"%1\": %2.")
                          .arg(result.path, withoutFinalStop(result.reason));
    if (!result.savedPath.isEmpty())
        message +=
            QStringLiteral(" The word list was saved in the file \"%1\".").arg(result.savedPath);
    return message;
}

} // namespace lexicove
