#pragma once

// How the game reads and writes the characters of its text files (word lists
// and saved puzzles). No character is ever replaced:
//
// Reading a file:
//   1. A UTF-8 byte order mark (EF BB BF) at the start is taken off; it is
//      never part of the text.
//   2. When the rest is valid UTF-8 and holds a byte above 127, it is UTF-8
//      (another editor's file, or one of ours holding a letter that the
//      8-bit code page lacks). A byte order mark followed by valid UTF-8 is
//      UTF-8 too, even when every byte is below 128.
//   3. Otherwise it is 8-bit text: the ANSI code page on Windows, Latin-1
//      elsewhere, so that a list moves between systems byte for byte. Pure
//      ASCII reads the same either way and counts as 8-bit.
//   A Latin-1 file whose bytes happen to be valid UTF-8 ("ß°" is DF B0) is
//   shown as UTF-8 would have it (one other character), but it is still
//   written back byte for byte, so nothing is lost.
//
// Writing a file: in the format it was read in (a new file: 8-bit, as the
// game has always written), with its byte order mark if it had one, when that
// encoding holds every character and the bytes read back as the same text by
// the rule above; otherwise in UTF-8. So an untouched file stays byte for
// byte the same, and a file that gains a character its encoding can't hold
// ("ł", "€" on Linux, Greek, CJK) becomes UTF-8. A UTF-8 text that starts
// with the character U+FEFF gets a byte order mark before it, so that the
// character is not taken for one.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>
#include <functional>

namespace lexicove {

enum class TextEncoding { EightBit, Utf8 };

struct TextFormat {
    TextEncoding encoding = TextEncoding::EightBit;
    bool byteOrderMark = false;
    friend bool operator==(const TextFormat &, const TextFormat &) = default;
};

inline constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");

// Finds a file's format by the reading rule, from its bytes in pieces, so
// that a file need not be held whole to be judged.
class TextFormatDetector {
public:
    void add(QByteArrayView piece);
    // The format of the bytes added so far, taken as the whole file.
    TextFormat format() const;
    // Once the bytes can't be UTF-8, nothing more changes the format.
    bool settled() const { return m_invalid; }
    // True when a byte above 127 came after the byte order mark.
    bool sawNonAscii() const;

private:
    void judgeStart();
    void validate(QByteArrayView bytes);
    // This detector as if the file ended here.
    TextFormatDetector finished() const;

    std::array<char, 3> m_start{}; // the first bytes: the mark, or text
    qsizetype m_startSize = 0;     // once full, the start has been judged
    bool m_marked = false;
    int m_continuations = 0;                   // continuation bytes still due in a sequence
    unsigned char m_low = 0x80, m_high = 0xBF; // the range of the next one
    bool m_invalid = false;
    bool m_nonAscii = false;
};

TextFormat DetectTextFormat(QByteArrayView bytes);

// bytes less its byte order mark, when the format has one.
QByteArrayView WithoutByteOrderMark(QByteArrayView bytes, const TextFormat &format);

// The text of bytes (without a byte order mark) in the encoding.
QString DecodeText(QByteArrayView bytes, TextEncoding encoding);

// The bytes of text by the writing rule; format is set to the one used. The
// text may come in pieces (count of them, in order), so that it need not be
// held whole.
QByteArray EncodeText(qsizetype count, const std::function<QString(qsizetype)> &textAt,
                      TextFormat &format);
QByteArray EncodeText(const QString &text, TextFormat &format);

} // namespace lexicove
