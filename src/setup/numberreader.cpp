#include "setup/numberreader.h"

#include <QByteArray>

#include <cmath>
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

// The longest start of text that reads as a decimal number, in the C
// locale's spelling ("-12.5e3"); empty when there is none.
QByteArray decimalPrefix(const QString &text)
{
    QByteArray number;
    qsizetype i = 0;
    const qsizetype size = text.size();
    if (i < size && (text.at(i) == u'+' || text.at(i) == u'-'))
        number.append(static_cast<char>(text.at(i++).unicode()));
    bool anyDigit = false;
    while (i < size && isDigit(text.at(i))) {
        number.append(static_cast<char>(text.at(i++).unicode()));
        anyDigit = true;
    }
    if (i < size && text.at(i) == u'.') {
        number.append('.');
        ++i;
        while (i < size && isDigit(text.at(i))) {
            number.append(static_cast<char>(text.at(i++).unicode()));
            anyDigit = true;
        }
    }
    if (!anyDigit)
        return QByteArray();
    // An exponent counts only when at least one digit follows its letter and
    // sign; otherwise reading stops before the letter.
    if (i < size && QStringLiteral("EeDd").contains(text.at(i))) {
        qsizetype j = i + 1;
        QByteArray exponent("e");
        if (j < size && (text.at(j) == u'+' || text.at(j) == u'-'))
            exponent.append(static_cast<char>(text.at(j++).unicode()));
        bool exponentDigit = false;
        while (j < size && isDigit(text.at(j))) {
            exponent.append(static_cast<char>(text.at(j++).unicode()));
            exponentDigit = true;
        }
        if (exponentDigit)
            number.append(exponent);
    }
    return number;
}

// Reading a decimal number fails only when it lies beyond the range of a
// double: far too large, or so close to 0 that it is 0 for us. Tells which,
// from the place of the first non-zero digit and the exponent.
bool isTooLarge(const QByteArray &number)
{
    const qsizetype e = number.indexOf('e');
    const QByteArray mantissa = e < 0 ? number : number.left(e);
    qint64 exponent = 0;
    if (e >= 0) {
        const QByteArray digits = number.mid(e + 1);
        bool ok = false;
        exponent = digits.toLongLong(&ok);
        if (!ok)
            exponent = digits.startsWith('-') ? -1000000 : 1000000;
    }
    const qsizetype dot = mantissa.indexOf('.');
    const qsizetype point = dot < 0 ? mantissa.size() : dot;
    for (qsizetype i = 0; i < mantissa.size(); ++i) {
        const char ch = mantissa.at(i);
        if (ch >= '1' && ch <= '9') {
            // The power of ten of this digit's place.
            const qint64 place = i < point ? point - i - 1 : point - i;
            return place + exponent > 0;
        }
    }
    return false;
}

// Rounds to the nearest whole number, halves to the even neighbour.
std::optional<qint64> roundHalfEven(double value)
{
    if (!std::isfinite(value))
        return std::nullopt;
    double whole = std::floor(value);
    const double fraction = value - whole;
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(whole, 2.0) != 0.0))
        whole += 1.0;
    // 2^63 itself is already too large; every double below it converts.
    constexpr double kLimit = 9223372036854775808.0;
    if (whole >= kLimit || whole < -kLimit)
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

    const QByteArray number = decimalPrefix(text);
    if (number.isEmpty())
        return 0;
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (!ok) {
        if (isTooLarge(number))
            return std::nullopt;
        return 0;
    }
    return roundHalfEven(value);
}

} // namespace lexicove
