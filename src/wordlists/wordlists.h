#pragma once

// The player's word lists: one file per list, "<list name>.wds", directly in
// the word list folder. The set of lists is exactly the set of files there
// whose extension is ".wds" in any case; nothing else records them.
//
// Every operation here reports its result; none shows anything. A file that
// can't be read, written or deleted comes back as a FileFailure (which file,
// and why) for the window to tell the player.
//
// On a file system that tells case apart, a file such as "Zoo.WDS" is a list
// all the same, and it is always opened by its real name: the chooser keeps
// each list's file name, and saving a list looks for an existing file of
// that list name in any case before making a new "<name>.wds".

#include "platform/textencoding.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>

namespace lexicove {

class Files;
class WordListModel;

inline const QString kListExtension = QStringLiteral(".wds");

// The editor's bounds: a list of 40 words is full, and a typed word may be
// 15 characters long, blanks inside it included.
inline constexpr int kMaxListWords = 40;
inline constexpr int kMaxWordLength = 15;

// A file operation that failed: the file's full path and the reason in plain
// words.
struct FileFailure {
    QString path;
    QString reason;
};

// The file names (with extension) of the lists in folder, in ascending order
// of name without regard to case. Read afresh at each call.
QStringList EnumerateLists(Files &files, const QString &folder);
int CountLists(Files &files, const QString &folder);

// folder + separator + list name + ".wds".
QString ListPath(const QString &folder, const QString &listName);

// The path of the file that holds the list called listName: the file
// "<listName>.wds" when it exists, else a list file whose name matches it
// without regard to case, else ListPath (a file still to be made).
QString ExistingListPath(Files &files, const QString &folder, const QString &listName);

// The file name less its last four characters, whatever they are.
QString ListNameOfFileName(const QString &fileName);
// The text after the last separator of path, less its last four characters.
QString ListNameOfPath(const QString &path);

// The number of lines of the list file fileName in folder, counted without
// holding the file.
bool CountWords(Files &files, const QString &folder, const QString &fileName, qint32 &count,
                FileFailure &failure);

// The entries of the list file at path, as the editor loads them, and the
// format they were read in.
bool ReadForEditing(Files &files, const QString &path, WordListModel &entries, TextFormat &format,
                    FileFailure &failure);

// Creates the list file of listName, or replaces the existing one whole, with
// the words in order (count of them, wordAt giving each), in format when it
// holds them (else in UTF-8: format is set to the one written). A failed
// write leaves any old file as it was. path is set to the file written (or
// that could not be).
bool WriteList(Files &files, const QString &folder, const QString &listName, qsizetype count,
               const std::function<QString(qsizetype)> &wordAt, TextFormat &format, QString &path,
               FileFailure &failure);
inline bool WriteList(Files &files, const QString &folder, const QString &listName,
                      const QStringList &words, TextFormat &format, QString &path,
                      FileFailure &failure)
{
    return WriteList(
        files, folder, listName, words.size(), [&words](qsizetype i) { return words.at(i); },
        format, path, failure);
}

// Removes the list file fileName (a name from EnumerateLists) from folder.
bool DeleteList(Files &files, const QString &folder, const QString &fileName,
                FileFailure &failure);

enum class NameCheck { Valid, Abandon, Invalid };

struct CheckedName {
    NameCheck outcome = NameCheck::Abandon;
    // The list name, lower-cased and without blanks at its ends, when valid.
    QString name;
};

// The save's name rule: lower-case the typed text and remove its leading and
// trailing blanks; nothing left means abandon the save; otherwise it is a
// valid list name when it holds only a to z, 0 to 9 and blanks.
CheckedName CheckListName(const QString &typed);

enum class MadeWordOutcome { Word, ListFull, NoWord, TooLong };

struct MadeWord {
    MadeWordOutcome outcome = MadeWordOutcome::NoWord;
    QString word;
};

// The editor's Add rule, the first refusal that applies deciding: a list that
// already holds kMaxListWords words or more is full; text that is empty once
// its blanks at both ends are removed is no word; that trimmed text longer
// than kMaxWordLength is too long. Otherwise the word is the trimmed text
// lower-cased with every blank removed.
MadeWord MakeWord(const QString &typed, int wordsInList);

} // namespace lexicove
