#include "setup/numberreader.h"

#include <QtTest>

#include <limits>

using lexicove::ReadReplyNumber;
using Number = std::optional<qint64>;

namespace {

constexpr Number kOutOfRange = std::nullopt;

// Replies and the numbers they give.
const std::pair<const char *, Number> kReplies[] = {
    // Blanks, tabs and line feeds are skipped wherever they stand.
    {"12", 12}, {" 7", 7}, {"1 2", 12}, {"\t1\n2\t", 12}, {"- 5", -5}, {"1 E 1", 10},
    {" & H 2 0", 32},
    // Signs, digits, a decimal point, an exponent written with E or D.
    {"+9", 9}, {"-30", -30}, {".75", 1}, {"8.", 8}, {"1.2E1", 12}, {"3e1", 30},
    {"500e-1", 50}, {"2E+1", 20}, {"4d1", 40}, {"7E", 7}, {"7E-x", 7}, {"5e-400", 0},
    {"7e-99999999999999999999", 0}, {"0e99999", 0},
    // Hexadecimal and octal whole numbers.
    {"&H1F", 31}, {"&h1f", 31}, {"&O17", 15}, {"&o62", 50}, {"&H", 0},
    {"&H00000000000000000000000A", 10},
    {"&H7FFFFFFFFFFFFFFF", std::numeric_limits<qint64>::max()},
    // Reading stops at the first character that can't continue the number.
    {"12abc", 12}, {"1\r2", 1}, {"1,5", 1}, {"1.2.9", 1}, {"2e1x5", 20}, {"6F1", 6},
    {"&H1G", 1}, {"&H10.9", 16}, {"&O78", 7},
    // No number at all counts as 0.
    {"", 0}, {"abc", 0}, {"   ", 0}, {"-", 0}, {".", 0}, {"--5", 0}, {"&", 0}, {"&B1", 0},
    {"-&H10", 0}, {"&O9", 0},
    // Halves go to the even neighbour.
    {"50.4", 50}, {"50.5", 50}, {"50.6", 51}, {"5.5", 6}, {"4.5", 4}, {"7.5", 8}, {"6.5", 6},
    {"-0.5", 0}, {"-1.5", -2}, {"-2.5", -2}, {"45e-1", 4}, {"4.9999", 5},
    // Too large to hold as a whole number: out of range, never wrapped or clipped.
    {"99999999999999999999", kOutOfRange}, {"9223372036854775808", kOutOfRange},
    {"1E400", kOutOfRange}, {"-1e30", kOutOfRange}, {"0.00001e310", kOutOfRange},
    {"1e99999999999999999999", kOutOfRange}, {"&H8000000000000000", kOutOfRange},
    {"&H10000000000000000", kOutOfRange}, {"40000", 40000},
};

} // namespace

class TestNumberReader : public QObject {
    Q_OBJECT

private slots:
    void readsTheNumberTheReplyBeginsWith_data()
    {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<Number>("expected");
        for (const auto &[reply, expected] : kReplies) {
            // The tag shows the reply in quotes, its control characters escaped.
            QByteArray tag(reply);
            tag.replace('\t', "\\t").replace('\n', "\\n").replace('\r', "\\r");
            QTest::addRow("\"%s\"", tag.constData()) << QString::fromLatin1(reply) << expected;
        }
    }

    void readsTheNumberTheReplyBeginsWith()
    {
        // A reply gives the whole number it begins with, rounded half to even; 0 when it holds
        // none, and no value when the number is too large to hold.
        QFETCH(QString, reply);
        QFETCH(Number, expected);
        QCOMPARE(ReadReplyNumber(reply), expected);
    }
};

QTEST_APPLESS_MAIN(TestNumberReader)
#include "tst_numberreader.moc"
