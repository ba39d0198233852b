// Any reply to a number question: the reader's answer must be the exact
// value of the number the reply begins with, rounded half to even, or no
// value exactly when that lies outside 64 bits. The check works apart from
// the reader: it parses the reply itself and tests the answer against the
// exact rational value with whole numbers of any size.

#include "fuzzsupport.h"
#include "setup/numberreader.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

using lexicove::ReadReplyNumber;

namespace {

// A whole number of any size, 32 bits a limb, lowest first.
class Big {
public:
    explicit Big(uint64_t value = 0)
    {
        for (; value != 0; value >>= 32)
            m_limbs.push_back(static_cast<uint32_t>(value));
    }
    Big &times(uint32_t factor, uint32_t plus = 0)
    {
        uint64_t carry = plus;
        for (uint32_t &limb : m_limbs) {
            carry += static_cast<uint64_t>(limb) * factor;
            limb = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0)
            m_limbs.push_back(static_cast<uint32_t>(carry));
        trim();
        return *this;
    }
    Big &timesPowerOfTen(int64_t power)
    {
        for (int64_t i = 0; i < power; ++i)
            times(10);
        return *this;
    }
    friend int compare(const Big &a, const Big &b)
    {
        if (a.m_limbs.size() != b.m_limbs.size())
            return a.m_limbs.size() < b.m_limbs.size() ? -1 : 1;
        for (size_t i = a.m_limbs.size(); i-- > 0;) {
            if (a.m_limbs[i] != b.m_limbs[i])
                return a.m_limbs[i] < b.m_limbs[i] ? -1 : 1;
        }
        return 0;
    }
    bool isZero() const { return m_limbs.empty(); }
    uint64_t low64() const
    {
        return (m_limbs.size() > 0 ? m_limbs[0] : 0) |
               (m_limbs.size() > 1 ? uint64_t(m_limbs[1]) << 32 : 0);
    }

private:
    void trim()
    {
        while (!m_limbs.empty() && m_limbs.back() == 0)
            m_limbs.pop_back();
    }
    std::vector<uint32_t> m_limbs;
};

// 2k + delta for a magnitude k, as a Big (delta is -1, 0 or 1).
Big twiceAnd(uint64_t k, int delta)
{
    Big result(k);
    result.times(2);
    if (delta > 0)
        result.times(1, 1);
    if (delta < 0) { // k > 0 here
        result = Big(k - 1);
        result.times(2, 1);
    }
    return result;
}

struct Reply {
    bool radix = false;
    bool negative = false;
    Big mantissa;           // all digits, the point left out
    int64_t digitCount = 0; // significant digits of the mantissa
    int64_t scale = 0;      // the value is mantissa x 10^scale
    bool tooLarge = false;  // a radix number beyond 64 bits
    uint64_t radixValue = 0;
};

// The reply read by the rules: blanks, tabs and line feeds dropped; &H or &O
// and digits, or a sign, digits, a point and digits, and an exponent.
Reply parse(const QString &typed)
{
    QString text;
    for (const QChar c : typed) {
        if (c != u' ' && c != u'\t' && c != u'\n')
            text += c;
    }
    Reply reply;
    qsizetype i = 0;
    const auto digit = [&](qsizetype at, int base) {
        if (at >= text.size())
            return -1;
        const char16_t c = text.at(at).unicode();
        int value = c >= u'0' && c <= u'9'   ? c - u'0'
                    : c >= u'a' && c <= u'f' ? c - u'a' + 10
                    : c >= u'A' && c <= u'F' ? c - u'A' + 10
                                             : -1;
        return value < base ? value : -1;
    };
    if (text.startsWith(u'&') && text.size() >= 2) {
        reply.radix = true;
        const QChar kind = text.at(1).toUpper();
        const int base = kind == u'H' ? 16 : kind == u'O' ? 8 : 0;
        Big value;
        for (i = 2; base != 0 && digit(i, base) >= 0; ++i)
            value.times(static_cast<uint32_t>(base), static_cast<uint32_t>(digit(i, base)));
        reply.tooLarge = compare(value, Big(INT64_MAX)) > 0;
        reply.radixValue = reply.tooLarge ? 0 : value.low64();
        return reply;
    }
    if (i < text.size() && (text.at(i) == u'+' || text.at(i) == u'-'))
        reply.negative = text.at(i++) == u'-';
    bool significant = false;
    const auto take = [&](int d) {
        reply.mantissa.times(10, static_cast<uint32_t>(d));
        significant = significant || d != 0;
        reply.digitCount += significant ? 1 : 0;
    };
    for (; digit(i, 10) >= 0; ++i)
        take(digit(i, 10));
    if (i < text.size() && text.at(i) == u'.') {
        for (++i; digit(i, 10) >= 0; ++i) {
            take(digit(i, 10));
            --reply.scale;
        }
    }
    // Without digits the mantissa is 0, and so is the value, whatever follows.
    if (i < text.size() && QStringLiteral("EeDd").contains(text.at(i))) {
        qsizetype j = i + 1;
        bool negative = false;
        if (j < text.size() && (text.at(j) == u'+' || text.at(j) == u'-'))
            negative = text.at(j++) == u'-';
        if (digit(j, 10) >= 0) {
            int64_t exponent = 0;
            for (; digit(j, 10) >= 0; ++j)
                exponent = std::min<int64_t>(exponent * 10 + digit(j, 10), int64_t(1) << 40);
            reply.scale += negative ? -exponent : exponent;
        }
    }
    return reply;
}

// Whether `answer` is the value of the decimal reply rounded half to even,
// or no value exactly when that lies beyond 64 bits.
bool decimalAnswerIsRight(const Reply &reply, std::optional<qint64> answer)
{
    const uint64_t limit = uint64_t(1) << 63;
    if (reply.mantissa.isZero())
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
        left.times(2);
        Big right = twiceAnd(k, delta);
        if (reply.scale >= 0)
            left.timesPowerOfTen(reply.scale);
        else
            right.timesPowerOfTen(-reply.scale);
        return compare(left, right);
    };
    if (!answer) {
        // Out of range: above 2^63 - 1/2 (a tie goes to the even 2^63), or
        // for a negative value beyond 2^63 + 1/2.
        return reply.negative ? compareTwice(limit, 1) > 0 : compareTwice(limit, -1) >= 0;
    }
    if (*answer != 0 && (*answer < 0) != reply.negative)
        return false;
    const uint64_t k = *answer < 0 ? 0 - static_cast<uint64_t>(*answer) : *answer;
    const int below = k == 0 ? 1 : compareTwice(k, -1); // 2|v| against 2k - 1
    const int above = compareTwice(k, 1);               // 2|v| against 2k + 1
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
            FUZZ_CHECK(reply.tooLarge ? !answer : answer == qint64(reply.radixValue));
        } else {
            FUZZ_CHECK(decimalAnswerIsRight(reply, answer));
        }
    }
    return 0;
}
