#include "wordlists/wordlistformat.h"

#include <algorithm>

namespace lexicove {

namespace {

constexpr char kCarriageReturn = '\r';
constexpr char kLineFeed = '\n';
constexpr char kComma = ',';
constexpr char kQuote = '"';
const QString kLineEnd = QStringLiteral("\r\n");

bool isLineEnd(char c)
{
    return c == kCarriageReturn || c == kLineFeed;
}

// The position after the line end at pos: CR LF, or a lone CR or LF.
qsizetype pastLineEnd(QByteArrayView text, qsizetype pos)
{
    if (text[pos] == kCarriageReturn && pos + 1 < text.size() && text[pos + 1] == kLineFeed)
        return pos + 2;
    return pos + 1;
}

} // namespace

qsizetype LineCounter::add(QByteArrayView piece, qint64 most)
{
    for (qsizetype i = 0; i < piece.size(); ++i) {
        const char c = piece[i];
        const qint64 at = m_offset++;
        if (m_mark && at < kByteOrderMark.size()) {
            if (c == kByteOrderMark[at])
                continue;
            // Not a mark after all: what looked like one is text.
            m_mark = false;
            m_open = m_open || at > 0;
        }
        const bool afterCR = m_afterCR;
        m_afterCR = c == kCarriageReturn;
        if (c == kLineFeed && afterCR)
            continue;
        if (isLineEnd(c)) {
            m_open = false;
            if (++m_ends == most)
                return i + 1;
        } else {
            m_open = true;
        }
    }
    return piece.size();
}

qint64 LineCounter::lines() const
{
    // A file cut short inside a byte order mark holds that much text.
    const bool partMark = m_mark && m_offset > 0 && m_offset < kByteOrderMark.size();
    return m_ends + (m_open || partMark ? 1 : 0);
}

QStringList ReadLines(QByteArrayView body, TextEncoding encoding, qsizetype most)
{
    QStringList lines;
    qsizetype pos = 0;
    while (pos < body.size() && lines.size() != most) {
        qsizetype end = pos;
        while (end < body.size() && !isLineEnd(body[end]))
            ++end;
        lines.append(DecodeText(body.sliced(pos, end - pos), encoding));
        pos = end < body.size() ? pastLineEnd(body, end) : end;
    }
    return lines;
}

QStringList ReadLines(QByteArrayView bytes)
{
    const TextFormat format = DetectTextFormat(bytes);
    return ReadLines(WithoutByteOrderMark(bytes, format), format.encoding, -1);
}

std::vector<ByteSpan> EntrySpans(QByteArrayView body)
{
    const auto isDelimiter = [](char c) { return c == kComma || isLineEnd(c); };
    // Room for as many entries as there can be, so that the spans are never
    // copied while they grow; what is never filled takes no memory.
    std::vector<ByteSpan> spans;
    spans.reserve(static_cast<size_t>(std::count_if(body.begin(), body.end(), isDelimiter)) + 1);
    qsizetype pos = 0;
    const qsizetype size = body.size();
    const auto atDelimiter = [&](qsizetype i) { return isDelimiter(body[i]); };
    while (pos < size) {
        ByteSpan span;
        if (body[pos] == kQuote) {
            const qsizetype close = body.indexOf(kQuote, pos + 1);
            span.start = pos + 1;
            if (close < 0) {
                span.size = size - span.start;
                pos = size;
            } else {
                span.size = close - span.start;
                pos = close + 1;
                // Anything between the closing mark and the delimiter is
                // dropped.
                while (pos < size && !atDelimiter(pos))
                    ++pos;
            }
        } else {
            span.start = pos;
            while (pos < size && !atDelimiter(pos))
                ++pos;
            span.size = pos - span.start;
        }
        // The comma or line end that ends the field is consumed with it.
        if (pos < size)
            pos = body[pos] == kComma ? pos + 1 : pastLineEnd(body, pos);
        spans.push_back(span);
    }
    return spans;
}

QStringList ReadEntries(QByteArrayView bytes, TextFormat *format)
{
    const TextFormat found = DetectTextFormat(bytes);
    if (format)
        *format = found;
    const QByteArrayView body = WithoutByteOrderMark(bytes, found);
    QStringList entries;
    for (const ByteSpan &span : EntrySpans(body))
        entries.append(DecodeText(body.sliced(span.start, span.size), found.encoding));
    return entries;
}

QByteArray WriteWords(qsizetype count, const std::function<QString(qsizetype)> &wordAt,
                      TextFormat &format)
{
    return EncodeText(
        count, [&wordAt](qsizetype i) { return wordAt(i) + kLineEnd; }, format);
}

QByteArray WriteWords(const QStringList &words, TextFormat &format)
{
    return WriteWords(
        words.size(), [&words](qsizetype i) { return words.at(i); }, format);
}

} // namespace lexicove
