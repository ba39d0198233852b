#include "wordlists/wordlists.h"

#include "platform/platform.h"
#include "wordlists/wordlistformat.h"
#include "wordlists/wordlistmodel.h"

#include <QDir>

#include <algorithm>
#include <limits>

namespace lexicove {

namespace {

constexpr QChar kBlank = u' ';

// Removes blanks (the space character alone, not tabs) from both ends.
QString trimBlanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text.at(first) == kBlank)
        ++first;
    while (last > first && text.at(last - 1) == kBlank)
        --last;
    return text.mid(first, last - first);
}

QString withoutLastFour(const QString &text)
{
    return text.left(std::max<qsizetype>(0, text.size() - 4));
}

bool isListNameCharacter(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= u'a' && code <= u'z') || (code >= u'0' && code <= u'9') || code == kBlank;
}

} // namespace

QStringList EnumerateLists(Files &files, const QString &folder)
{
    QStringList names = files.list(folder, kListExtension);
    // Names equal but for case (possible where case counts) keep one fixed
    // order between them.
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

int CountLists(Files &files, const QString &folder)
{
    return static_cast<int>(EnumerateLists(files, folder).size());
}

QString ListPath(const QString &folder, const QString &listName)
{
    return joinPath(folder, listName + kListExtension);
}

QString ExistingListPath(Files &files, const QString &folder, const QString &listName)
{
    const QString fileName = listName + kListExtension;
    const QStringList names = EnumerateLists(files, folder);
    if (names.contains(fileName))
        return joinPath(folder, fileName);
    for (const QString &name : names) {
        if (name.compare(fileName, Qt::CaseInsensitive) == 0)
            return joinPath(folder, name);
    }
    return joinPath(folder, fileName);
}

QString ListNameOfFileName(const QString &fileName)
{
    return withoutLastFour(fileName);
}

QString ListNameOfPath(const QString &path)
{
    const qsizetype cut = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(QDir::separator()));
    return withoutLastFour(path.mid(cut + 1));
}

bool CountWords(Files &files, const QString &folder, const QString &fileName, qint32 &count,
                FileFailure &failure)
{
    count = 0;
    const QString path = joinPath(folder, fileName);
    LineCounter counter;
    QString reason;
    const bool read = files.readPieces(
        path,
        [&counter](QByteArrayView piece) {
            counter.add(piece);
            return true;
        },
        reason);
    if (!read) {
        failure = {path, reason};
        return false;
    }
    count = static_cast<qint32>(qMin<qint64>(counter.lines(), std::numeric_limits<qint32>::max()));
    return true;
}

bool ReadForEditing(Files &files, const QString &path, WordListModel &entries, TextFormat &format,
                    FileFailure &failure)
{
    QByteArray bytes;
    QString reason;
    if (!files.read(path, bytes, reason)) {
        failure = {path, reason};
        return false;
    }
    format = entries.load(std::move(bytes));
    return true;
}

bool WriteList(Files &files, const QString &folder, const QString &listName, qsizetype count,
               const std::function<QString(qsizetype)> &wordAt, TextFormat &format, QString &path,
               FileFailure &failure)
{
    path = ExistingListPath(files, folder, listName);
    QString reason;
    if (!files.write(path, WriteWords(count, wordAt, format), reason)) {
        failure = {path, reason};
        return false;
    }
    return true;
}

bool DeleteList(Files &files, const QString &folder, const QString &fileName,
                FileFailure &failure)
{
    const QString path = joinPath(folder, fileName);
    QString reason;
    if (!files.remove(path, reason)) {
        failure = {path, reason};
        return false;
    }
    return true;
}

CheckedName CheckListName(const QString &typed)
{
    const QString candidate = trimBlanks(typed.toLower());
    if (candidate.isEmpty())
        return {NameCheck::Abandon, QString()};
    if (!std::all_of(candidate.begin(), candidate.end(), isListNameCharacter))
        return {NameCheck::Invalid, QString()};
    return {NameCheck::Valid, candidate};
}

MadeWord MakeWord(const QString &typed, int wordsInList)
{
    if (wordsInList >= kMaxListWords)
        return {MadeWordOutcome::ListFull, QString()};
    const QString trimmed = trimBlanks(typed);
    if (trimmed.isEmpty())
        return {MadeWordOutcome::NoWord, QString()};
    if (trimmed.size() > kMaxWordLength)
        return {MadeWordOutcome::TooLong, QString()};
    QString word = trimmed.toLower();
    word.remove(kBlank);
    return {MadeWordOutcome::Word, word};
}

} // namespace lexicove
