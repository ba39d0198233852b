#include "wordlists/wordlistformat.h"

#include "platform/platform.h"

namespace lexicove {

namespace {

constexpr QChar kCarriageReturn = u'\r';
constexpr QChar kLineFeed = u'\n';
constexpr QChar kComma = u',';
constexpr QChar kQuote = u'"';

} // namespace

QStringList ReadLines(const QByteArray &bytes)
{
    const QString text = decode8Bit(bytes);
    QStringList lines;
    qsizetype pos = 0;
    while (pos < text.size()) {
        qsizetype end = text.indexOf(kCarriageReturn, pos);
        if (end < 0) {
            lines.append(text.mid(pos));
            break;
        }
        lines.append(text.mid(pos, end - pos));
        pos = end + 1;
        if (pos < text.size() && text.at(pos) == kLineFeed)
            ++pos;
    }
    return lines;
}

QStringList ReadEntries(const QByteArray &bytes)
{
    const QString text = decode8Bit(bytes);
    QStringList entries;
    qsizetype pos = 0;
    const qsizetype size = text.size();
    auto atLineEnd = [&](qsizetype i) {
        return text.at(i) == kCarriageReturn || text.at(i) == kLineFeed;
    };
    // Consumes the delimiter that ends a field: a comma, or a line end (CR LF,
    // or a lone CR or LF).
    auto consumeDelimiter = [&]() {
        if (pos >= size)
            return;
        if (text.at(pos) == kComma) {
            ++pos;
        } else if (text.at(pos) == kCarriageReturn) {
            ++pos;
            if (pos < size && text.at(pos) == kLineFeed)
                ++pos;
        } else if (text.at(pos) == kLineFeed) {
            ++pos;
        }
    };
    while (pos < size) {
        QString entry;
        if (text.at(pos) == kQuote) {
            const qsizetype close = text.indexOf(kQuote, pos + 1);
            if (close < 0) {
                entry = text.mid(pos + 1);
                pos = size;
            } else {
                entry = text.mid(pos + 1, close - pos - 1);
                pos = close + 1;
                // Anything between the closing mark and the delimiter is
                // dropped.
                while (pos < size && text.at(pos) != kComma && !atLineEnd(pos))
                    ++pos;
            }
        } else {
            qsizetype end = pos;
            while (end < size && text.at(end) != kComma && !atLineEnd(end))
                ++end;
            entry = text.mid(pos, end - pos);
            pos = end;
        }
        consumeDelimiter();
        entries.append(entry);
    }
    return entries;
}

QByteArray WriteWords(const QStringList &words)
{
    QByteArray bytes;
    for (const QString &word : words) {
        bytes += encode8Bit(word);
        bytes += "\r\n";
    }
    return bytes;
}

} // namespace lexicove
