// Any reply to a number question: the reader's answer must be the exact
// value of the number the reply begins with, rounded half to even, or no
// value exactly when that lies outside 64 bits. The check works apart from
// the reader: it parses the reply itself and tests the answer against the
// exact rational value with whole numbers of any size.

#include "fuzzsupport.h"
#include "setup/numberreader.h"

#include <QRegularExpression>
#include <QString>

#include <algorithm>
#include <compare>
#include <cstdint>
#include <optional>
#include <vector>

using lexicove::ReadReplyNumber;

namespace {

// A whole number of any size, 32 bits a limb, lowest first, no zero limb on top.
struct Big {
    explicit Big(uint64_t value = 0)
    {
        for (; value != 0; value >>= 32)
            limbs.push_back(static_cast<uint32_t>(value));
    }
    // Multiplies by factor (not 0) and adds plus.
    Big &times(uint32_t factor, uint32_t plus = 0)
    {
        uint64_t carry = plus;
        for (uint32_t &limb : limbs) {
            carry += static_cast<uint64_t>(limb) * factor;
            limb = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0)
            limbs.push_back(static_cast<uint32_t>(carry));
        return *this;
    }
    Big &timesPowerOfTen(int64_t power)
    {
        for (; power > 0; --power)
            times(10);
        return *this;
    }
    friend std::strong_ordering operator<=>(const Big &a, const Big &b)
    {
        if (const auto bySize = a.limbs.size() <=> b.limbs.size(); bySize != 0)
            return bySize;
        return std::lexicographical_compare_three_way(a.limbs.rbegin(), a.limbs.rend(),
                                                      b.limbs.rbegin(), b.limbs.rend());
    }
    bool operator==(const Big &) const = default;
    std::vector<uint32_t> limbs;
};

struct Reply {
    bool radix = false;
    bool negative = false;
    Big mantissa;           // all digits, the point left out
    int64_t digitCount = 0; // significant digits of the mantissa
    int64_t scale = 0;      // the value is mantissa x 10^scale
    Big radixValue;
};

// The reply read by the rules: blanks, tabs and line feeds dropped; &H or &O
// and digits, or a sign, digits, a point and digits, and an exponent.
Reply parse(QString text)
{
    text.remove(u' ').remove(u'\t').remove(u'\n');
    static const QRegularExpression radix(QStringLiteral("^&(?:[Hh]([0-9A-Fa-f]*)|[Oo]([0-7]*))?")),
        decimal(QStringLiteral("^([+-]?)([0-9]*)(?:\\.([0-9]*))?(?:[EeDd]([+-]?)([0-9]+))?"));
    const auto digit = [](QChar c) -> uint32_t { // of an ASCII digit or letter a-f, A-F
        return c.unicode() <= u'9' ? c.unicode() - u'0' : (c.unicode() | 0x20) - u'a' + 10;
    };
    Reply reply;
    if (const auto m = radix.match(text); m.hasMatch()) {
        reply.radix = true;
        for (const QChar c : m.captured(1))
            reply.radixValue.times(16, digit(c));
        for (const QChar c : m.captured(2))
            reply.radixValue.times(8, digit(c));
        return reply;
    }
    const auto m = decimal.match(text); // all of it optional: it always matches
    reply.negative = m.captured(1) == u"-";
    const QString digits = m.captured(2) + m.captured(3);
    for (const QChar c : digits)
        reply.mantissa.times(10, digit(c));
    reply.digitCount = digits.end() - std::find_if(digits.begin(), digits.end(),
                                                   [](QChar c) { return c != u'0'; });
    int64_t exponent = 0;
    for (const QChar c : m.captured(5))
        exponent = std::min<int64_t>(exponent * 10 + digit(c), int64_t(1) << 40);
    reply.scale = (m.captured(4) == u"-" ? -exponent : exponent) - m.captured(3).size();
    return reply;
}

// Whether `answer` is the value of the decimal reply rounded half to even,
// or no value exactly when that lies beyond 64 bits.
bool decimalAnswerIsRight(const Reply &reply, std::optional<qint64> answer)
{
    const uint64_t limit = uint64_t(1) << 63;
    if (reply.mantissa == Big())
        return answer == 0;
    // |value| >= 10^(digitCount - 1 + scale): from 10^20 on it is out of range.
    if (reply.digitCount - 1 + reply.scale >= 20)
        return !answer;
    // |value| < 10^(digitCount + scale) <= 10^-1: it rounds to 0.
    if (reply.digitCount + reply.scale <= -1)
        return answer == 0;
    // Compares 2|value| with 2k + delta: 2 M 10^s against (2k + delta), or
    // 2 M against (2k + delta) 10^-s.
    const auto compareTwice = [&](uint64_t k, int delta) {
        Big left = reply.mantissa;
        left.times(2).timesPowerOfTen(reply.scale);
        // 2k + delta, delta being -1, 0 or 1 (k > 0 when it is -1)
        Big right = delta < 0 ? Big(k - 1).times(2, 1) : Big(k).times(2, uint32_t(delta));
        return left <=> right.timesPowerOfTen(-reply.scale);
    };
    if (!answer) {
        // Out of range: above 2^63 - 1/2 (a tie goes to the even 2^63), or
        // for a negative value beyond 2^63 + 1/2.
        return reply.negative ? compareTwice(limit, 1) > 0 : compareTwice(limit, -1) >= 0;
    }
    if (*answer != 0 && (*answer < 0) != reply.negative)
        return false;
    const uint64_t k = *answer < 0 ? 0 - static_cast<uint64_t>(*answer) : *answer;
    const auto below = k == 0 ? std::strong_ordering::greater : compareTwice(k, -1); // vs 2k - 1
    const auto above = compareTwice(k, 1);                                           // vs 2k + 1
    if (below < 0 || above > 0)
        return false;
    return (below != 0 && above != 0) || k % 2 == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size > 4096)
        return 0; // longer replies only make the check slower
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    for (const QString &typed : {QString::fromUtf8(bytes), QString::fromLatin1(bytes)}) {
        const std::optional<qint64> answer = ReadReplyNumber(typed);
        const Reply reply = parse(typed);
        if (reply.radix) {
            FUZZ_CHECK(reply.radixValue > Big(INT64_MAX)
                           ? !answer
                           : answer && *answer >= 0 && Big(uint64_t(*answer)) == reply.radixValue);
        } else {
            FUZZ_CHECK(decimalAnswerIsRight(reply, answer));
        }
    }
    return 0;
}
