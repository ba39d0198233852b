#include "setup/numberreader.h"

#include <limits>

namespace lexicove {

namespace {

bool isSkipped(QChar ch)
{
    return ch == u' ' || ch == u'\t' || ch == u'\n';
}

bool isDigit(QChar ch)
{
    return ch >= u'0' && ch <= u'9';
}

// The value of ch as a digit of the given base, or -1.
int digitValue(QChar ch, int base)
{
    int value = -1;
    if (isDigit(ch))
        value = ch.unicode() - u'0';
    else if (ch >= u'a' && ch <= u'f')
        value = ch.unicode() - u'a' + 10;
    else if (ch >= u'A' && ch <= u'F')
        value = ch.unicode() - u'A' + 10;
    return value < base ? value : -1;
}

// Digits in base 16 or 8; no digits at all count as 0.
std::optional<qint64> readRadix(const QString &text, qsizetype from, int base)
{
    quint64 value = 0;
    for (qsizetype i = from; i < text.size(); ++i) {
        const int digit = digitValue(text.at(i), base);
        if (digit < 0)
            break;
        if (value > (std::numeric_limits<quint64>::max() - digit) / base)
            return std::nullopt;
        value = value * base + digit;
    }
    if (value > static_cast<quint64>(std::numeric_limits<qint64>::max()))
        return std::nullopt;
    return static_cast<qint64>(value);
}

// A decimal number as written: its sign, its digits without the decimal
// point, where the point stands among them, and its exponent.
struct Decimal {
    bool negative = false;
    QString digits;
    qint64 point = 0;    // digits before the decimal point
    qint64 exponent = 0; // held within +-kExponentLimit
};

// Beyond this an exponent changes nothing: even with every digit a reply
// could hold, the value is then far too large to hold or rounds to 0.
constexpr qint64 kExponentLimit = qint64(1) << 52;

// The longest start of text that reads as a decimal number (an optional
// sign, digits, an optional point and fraction, an optional exponent written
// with E or D); false when there is none.
bool readDecimal(const QString &text, Decimal &number)
{
    qsizetype i = 0;
    const qsizetype size = text.size();
    if (i < size && (text.at(i) == u'+' || text.at(i) == u'-'))
        number.negative = text.at(i++) == u'-';
    while (i < size && isDigit(text.at(i)))
        number.digits.append(text.at(i++));
    number.point = number.digits.size();
    if (i < size && text.at(i) == u'.') {
        ++i;
        while (i < size && isDigit(text.at(i)))
            number.digits.append(text.at(i++));
    }
    if (number.digits.isEmpty())
        return false;
    // An exponent counts only when at least one digit follows its letter and
    // sign; otherwise reading stops before the letter.
    if (i < size && QStringLiteral("EeDd").contains(text.at(i))) {
        qsizetype j = i + 1;
        bool negative = false;
        if (j < size && (text.at(j) == u'+' || text.at(j) == u'-'))
            negative = text.at(j++) == u'-';
        qint64 exponent = 0;
        bool anyDigit = false;
        for (; j < size && isDigit(text.at(j)); ++j) {
            exponent = qMin(exponent * 10 + (text.at(j).unicode() - u'0'), kExponentLimit);
            anyDigit = true;
        }
        if (anyDigit)
            number.exponent = negative ? -exponent : exponent;
    }
    return true;
}

// The number rounded to a whole number, halves to the even neighbour, worked
// out on its exact value; no value when that lies outside 64 bits.
std::optional<qint64> roundExactly(const Decimal &number)
{
    // The value is 0.ddd... times 10 to the power `place`, its first digit
    // not 0.
    const QString &digits = number.digits;
    qsizetype first = 0;
    while (first < digits.size() && digits.at(first) == u'0')
        ++first;
    if (first == digits.size())
        return 0;
    const qint64 place = number.point - first + number.exponent;
    constexpr qint64 kMostWholeDigits = 19; // 10^19 is already beyond 64 bits
    if (place > kMostWholeDigits)
        return std::nullopt;
    if (place < 0)
        return 0; // below 0.1
    const qint64 count = digits.size() - first;
    const auto digitAt = [&](qint64 k) { // the k-th digit of 0.ddd..., 0 beyond them
        return k < count ? digits.at(first + k).unicode() - u'0' : 0;
    };
    quint64 whole = 0;
    for (qint64 k = 0; k < place; ++k)
        whole = whole * 10 + digitAt(k);
    // The fraction is above one half, exactly one half, or below it.
    const int next = digitAt(place);
    bool moreAfter = false;
    for (qint64 k = place + 1; k < count && !moreAfter; ++k)
        moreAfter = digitAt(k) != 0;
    if (next > 5 || (next == 5 && (moreAfter || whole % 2 == 1)))
        ++whole;
    constexpr quint64 kMagnitudeLimit = quint64(1) << 63;
    if (number.negative) {
        if (whole > kMagnitudeLimit)
            return std::nullopt;
        return static_cast<qint64>(0 - whole);
    }
    if (whole >= kMagnitudeLimit)
        return std::nullopt;
    return static_cast<qint64>(whole);
}

} // namespace

std::optional<qint64> ReadReplyNumber(const QString &reply)
{
    QString text;
    text.reserve(reply.size());
    for (const QChar ch : reply) {
        if (!isSkipped(ch))
            text.append(ch);
    }

    if (text.size() >= 2 && text.at(0) == u'&') {
        const QChar prefix = text.at(1).toUpper();
        if (prefix == u'H')
            return readRadix(text, 2, 16);
        if (prefix == u'O')
            return readRadix(text, 2, 8);
        return 0;
    }

    Decimal number;
    if (!readDecimal(text, number))
        return 0;
    return roundExactly(number);
}

} // namespace lexicove
