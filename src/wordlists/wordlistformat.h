#pragma once

// The byte layout of a word list file and its three readers. A file is
// 8-bit text, one word per line, every line ended by carriage return and line
// feed. The readers agree on every file the editor writes and differ on files
// made otherwise:
//
//   reader              blank line      last line without CR LF   comma in a line
//   line count          counted         counted                   no effect
//   entries for editing an empty entry  the last entry            two entries
//   words for a puzzle  an empty word   the last word             no effect
//
// A line is the text up to the next carriage return; CR LF ends it and both
// are consumed. A file that ends in CR LF has nothing after its last line.

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace lexicove {

// The lines of the file's text, as the line counter and the puzzle reader see
// them.
QStringList ReadLines(const QByteArray &bytes);

// The entries of the file for the editor: fields ended by a comma or a line
// end; a field that starts with a double quotation mark runs to the next one,
// and the marks are not part of the entry.
QStringList ReadEntries(const QByteArray &bytes);

// The bytes of a list of words: each word then CR LF.
QByteArray WriteWords(const QStringList &words);

} // namespace lexicove
