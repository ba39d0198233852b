// Any bytes as a word list file, through the three readers and the writer:
// the chooser's count, the puzzle's words and the editor's entries agree
// with the whole-file readers whatever the pieces the file comes in; a UTF-8
// file decodes without a replaced character; and words written (with any
// typed characters added) read back as the same words, and again as the same
// bytes.

#include "core/gamestate.h"
#include "fuzzsupport.h"
#include "setup/wordloading.h"
#include "wordlists/wordlistformat.h"
#include "wordlists/wordlistmodel.h"

#include <QStringDecoder>

#include <algorithm>

using namespace lexicove;
using lexicove::fuzz::MemoryFile;

namespace {

bool holdsAny(const QString &word, QStringView characters)
{
    return std::any_of(word.begin(), word.end(), [&](QChar c) { return characters.contains(c); });
}

// The bytes written for words, read back by both readers, give them again;
// read and written again, they give the same bytes.
void checkRoundTrip(const QStringList &words, const TextFormat &format)
{
    QStringList lines, entries;
    for (const QString &word : words) {
        if (holdsAny(word, u"\r\n"))
            continue; // a line end can't be written inside a word
        lines << word;
        if (!holdsAny(word, u",") && !word.startsWith(u'"'))
            entries << word;
    }
    TextFormat written = format;
    FUZZ_CHECK(ReadLines(WriteWords(lines, written)) == lines);
    written = format;
    const QByteArray bytes = WriteWords(entries, written);
    TextFormat reread;
    FUZZ_CHECK(ReadEntries(bytes, &reread) == entries);
    FUZZ_CHECK(WriteWords(entries, reread) == bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype piece = size == 0 ? 1 : 1 + data[0] % 8;

    // The format, judged piece by piece or whole.
    const TextFormat format = DetectTextFormat(bytes);
    TextFormatDetector detector;
    fuzz::inPieces(bytes, piece, [&](QByteArrayView part) { return detector.add(part), true; });
    FUZZ_CHECK(detector.format() == format);
    const QByteArrayView body = WithoutByteOrderMark(bytes, format);
    if (format.encoding == TextEncoding::Utf8) {
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        (void)utf8.decode(body);
        FUZZ_CHECK(!utf8.hasError());
    }

    // The chooser's count and the puzzle's words.
    const QStringList lines = ReadLines(bytes);
    LineCounter counter;
    fuzz::inPieces(bytes, piece, [&](QByteArrayView part) { return counter.add(part), true; });
    FUZZ_CHECK(counter.lines() == lines.size());
    MemoryFile file(bytes, piece);
    GameState state;
    QString error;
    FUZZ_CHECK(LoadWords(state, file, error));
    QStringList expected = lines.mid(0, GameState::kMaxWords);
    std::stable_sort(expected.begin(), expected.end(),
                     [](const QString &a, const QString &b) { return a.size() > b.size(); });
    FUZZ_CHECK(QStringList(state.words.begin() + 1, state.words.begin() + 1 + state.wordCount) ==
               expected);

    // The editor's entries, as the list box holds them.
    TextFormat entriesFormat;
    const QStringList entries = ReadEntries(bytes, &entriesFormat);
    FUZZ_CHECK(entriesFormat == format);
    WordListModel model;
    FUZZ_CHECK(model.load(bytes) == format);
    FUZZ_CHECK(model.size() == entries.size());
    for (qsizetype row = 0; row < model.size(); ++row)
        FUZZ_CHECK(model.entry(row) == entries.at(row));

    // Written back, with the bytes also typed in as new words.
    checkRoundTrip(entries, format);
    checkRoundTrip(lines + QStringList{QString::fromUtf8(bytes), QString::fromLatin1(bytes)},
                   TextFormat());
    return 0;
}
