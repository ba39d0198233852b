#include "platform/textencoding.h"

#include <QStringDecoder>
#include <QStringView>

#include <algorithm>

namespace lexicove {

namespace {

constexpr QChar kMarkCharacter = QChar(0xFEFF);

} // namespace

void TextFormatDetector::add(QByteArrayView piece)
{
    // The first three bytes wait until it is known whether they are the mark.
    qsizetype i = 0;
    while (m_startSize < kByteOrderMark.size() && i < piece.size())
        m_start[m_startSize++] = piece[i++];
    if (i > 0 && m_startSize == kByteOrderMark.size()) // the start just filled
        judgeStart();
    validate(piece.sliced(i));
}

void TextFormatDetector::judgeStart()
{
    const QByteArrayView start(m_start.data(), m_startSize);
    m_marked = start == kByteOrderMark;
    if (!m_marked)
        validate(start);
}

void TextFormatDetector::validate(QByteArrayView bytes)
{
    for (const char c : bytes) {
        if (m_invalid)
            return;
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80)
            m_nonAscii = true;
        if (m_continuations > 0) {
            if (byte < m_low || byte > m_high) {
                m_invalid = true;
                return;
            }
            --m_continuations;
            m_low = 0x80;
            m_high = 0xBF;
            continue;
        }
        // The well-formed UTF-8 sequences: no overlong forms, no surrogates,
        // nothing above U+10FFFF.
        if (byte < 0x80) {
            continue;
        } else if (byte >= 0xC2 && byte <= 0xDF) {
            m_continuations = 1;
        } else if (byte >= 0xE0 && byte <= 0xEF) {
            m_continuations = 2;
            if (byte == 0xE0)
                m_low = 0xA0;
            else if (byte == 0xED)
                m_high = 0x9F;
        } else if (byte >= 0xF0 && byte <= 0xF4) {
            m_continuations = 3;
            if (byte == 0xF0)
                m_low = 0x90;
            else if (byte == 0xF4)
                m_high = 0x8F;
        } else {
            m_invalid = true;
        }
    }
}

TextFormatDetector TextFormatDetector::finished() const
{
    TextFormatDetector whole = *this;
    if (whole.m_startSize < kByteOrderMark.size())
        whole.judgeStart(); // a file shorter than the mark
    return whole;
}

bool TextFormatDetector::sawNonAscii() const
{
    return finished().m_nonAscii;
}

TextFormat TextFormatDetector::format() const
{
    const TextFormatDetector whole = finished();
    // A file cut short inside a sequence is no UTF-8.
    const bool valid = !whole.m_invalid && whole.m_continuations == 0;
    if (whole.m_marked)
        return {valid ? TextEncoding::Utf8 : TextEncoding::EightBit, true};
    return {valid && whole.m_nonAscii ? TextEncoding::Utf8 : TextEncoding::EightBit, false};
}

TextFormat DetectTextFormat(QByteArrayView bytes)
{
    TextFormatDetector detector;
    detector.add(bytes);
    return detector.format();
}

QByteArrayView WithoutByteOrderMark(QByteArrayView bytes, const TextFormat &format)
{
    return format.byteOrderMark ? bytes.sliced(kByteOrderMark.size()) : bytes;
}

QString DecodeText(QByteArrayView bytes, TextEncoding encoding)
{
    if (encoding == TextEncoding::Utf8) {
        // A U+FEFF here is a character of the text, not a mark to drop.
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                      QStringDecoder::Flag::ConvertInitialBom);
        return utf8.decode(bytes);
    }
#ifdef Q_OS_WIN
    return QString::fromLocal8Bit(bytes); // the ANSI code page
#else
    return QString::fromLatin1(bytes);
#endif
}

namespace {

// Appends text in 8 bits; false, with out as it was, when the code page
// can't hold one of its characters.
bool AppendEightBit(QByteArray &out, QStringView text)
{
#ifdef Q_OS_WIN
    // The code page puts "?" for what it lacks: only a text that comes back
    // the same was held whole.
    const QByteArray bytes = text.toLocal8Bit();
    if (QString::fromLocal8Bit(bytes) != text)
        return false;
    out += bytes;
    return true;
#else
    if (std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xFF; }))
        return false;
    out += text.toLatin1();
    return true;
#endif
}

// Whether bytes written in format would be read back as that format (or as
// text that decodes the same). body is the bytes after any byte order mark.
bool ReadsBackAs(QByteArrayView body, const TextFormat &format)
{
    TextFormatDetector detector;
    if (format.byteOrderMark)
        detector.add(kByteOrderMark);
    detector.add(body);
    const TextFormat seen = detector.format();
    return seen.byteOrderMark == format.byteOrderMark &&
           (seen.encoding == format.encoding || !detector.sawNonAscii());
}

} // namespace

QByteArray EncodeText(qsizetype count, const std::function<QString(qsizetype)> &textAt,
                      TextFormat &format)
{
    QByteArray body;
    bool written = false;
    if (format.encoding == TextEncoding::EightBit) {
        written = true;
        for (qsizetype i = 0; i < count && written; ++i)
            written = AppendEightBit(body, textAt(i));
        written = written && ReadsBackAs(body, format);
    }
    if (!written) {
        format.encoding = TextEncoding::Utf8;
        body.clear();
        for (qsizetype i = 0; i < count; ++i) {
            const QString text = textAt(i);
            // A first character U+FEFF would be taken for the mark.
            if (body.isEmpty() && text.startsWith(kMarkCharacter))
                format.byteOrderMark = true;
            body += text.toUtf8();
        }
    }
    return format.byteOrderMark ? kByteOrderMark.toByteArray() + body : body;
}

QByteArray EncodeText(const QString &text, TextFormat &format)
{
    return EncodeText(
        1, [&text](qsizetype) { return text; }, format);
}

} // namespace lexicove
