#pragma once

// The byte layout of a word list file and its three readers. A file is text,
// one word per line, every line ended by carriage return and line feed; its
// characters are read and written by the rule of platform/textencoding.h. The
// readers agree on every file the editor writes and differ on files made
// otherwise:
//
//   reader              blank line      last line without line end  comma in a line
//   line count          counted         counted                     no effect
//   entries for editing an empty entry  the last entry              two entries
//   words for a puzzle  an empty word   the last word               no effect
//
// A line ends at CR LF, at a lone CR or at a lone LF (text editors on Linux
// and macOS end lines with LF alone), and the line end is not part of it. A
// file that ends in a line end has nothing after its last line, and a byte
// order mark at the start is not part of the first line. Files are always
// written with CR LF.
//
// The line ends, commas and quotation marks are found in the bytes: they are
// ASCII, and no byte of a longer character in UTF-8 or an ANSI code page can
// be taken for one, so each line or entry decodes on its own as it would in
// the whole text.

#include "platform/textencoding.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <functional>
#include <limits>
#include <vector>

namespace lexicove {

// Counts a file's lines piece by piece, without building them.
class LineCounter {
public:
    static constexpr qint64 kAll = std::numeric_limits<qint64>::max();

    // Adds the next piece of the file. Returns how many of its bytes were
    // taken: all of them, unless the line end that completes `most` lines
    // came first (then up to and including it).
    qsizetype add(QByteArrayView piece, qint64 most = kAll);
    // The lines of the bytes added so far, as the whole file.
    qint64 lines() const;
    // The line ends met so far (a CR LF is one).
    qint64 lineEnds() const { return m_ends; }

private:
    qint64 m_ends = 0;
    qint64 m_offset = 0;
    bool m_open = false;    // a line has begun since the last line end
    bool m_afterCR = false; // an LF now would end no further line
    bool m_mark = true;     // every byte so far is the start of a byte order mark
};

// A run of bytes in a file: an entry or a line, without its delimiter.
struct ByteSpan {
    qsizetype start = 0;
    qsizetype size = 0;
};

// The lines of body (a file less its byte order mark), at most `most` of them.
QStringList ReadLines(QByteArrayView body, TextEncoding encoding, qsizetype most);
// The lines of a whole file, as the line counter and the puzzle reader see them.
QStringList ReadLines(QByteArrayView bytes);

// Where the editor's entries lie in body (a file less its byte order mark):
// fields ended by a comma or a line end; a field that starts with a double
// quotation mark runs to the next one, and the marks are not part of it.
std::vector<ByteSpan> EntrySpans(QByteArrayView body);
// The entries of a whole file for the editor; format tells how it was read.
QStringList ReadEntries(QByteArrayView bytes, TextFormat *format = nullptr);

// The bytes of a list of words: each word then CR LF, in format if it holds
// them, else in UTF-8 (format is set to the one used).
QByteArray WriteWords(qsizetype count, const std::function<QString(qsizetype)> &wordAt,
                      TextFormat &format);
QByteArray WriteWords(const QStringList &words, TextFormat &format);

} // namespace lexicove
