#include "setup/numberreader.h"

#include <QtTest>

using lexicove::ReadReplyNumber;

namespace {

// The row's reply reads as its expected whole number.
void checkReadsAsExpected()
{
    QFETCH(QString, reply);
    QFETCH(qint64, expected);
    QCOMPARE(ReadReplyNumber(reply), std::optional<qint64>(expected));
}

} // namespace

class TestNumberReader : public QObject {
    Q_OBJECT

private slots:
    void readsTheNumberTheReplyBeginsWith_data();
    void readsTheNumberTheReplyBeginsWith();
    void roundsHalvesToTheEvenNeighbour_data();
    void roundsHalvesToTheEvenNeighbour();
    void readsHexadecimalAndOctal_data();
    void readsHexadecimalAndOctal();
    void tooLargeIsOutOfRange_data();
    void tooLargeIsOutOfRange();
};

void TestNumberReader::readsTheNumberTheReplyBeginsWith_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<qint64>("expected");

    QTest::newRow("plain") << "20" << qint64(20);
    QTest::newRow("trailing letters") << "12abc" << qint64(12);
    QTest::newRow("leading blank") << " 7" << qint64(7);
    QTest::newRow("blank between digits") << "1 2" << qint64(12);
    QTest::newRow("tab and line feed between digits") << "\t1\n2\t" << qint64(12);
    QTest::newRow("blank between sign and digits") << "- 5" << qint64(-5);
    QTest::newRow("plus sign") << "+9" << qint64(9);
    QTest::newRow("minus sign") << "-30" << qint64(-30);
    QTest::newRow("letters only") << "abc" << qint64(0);
    QTest::newRow("empty reply") << "" << qint64(0);
    QTest::newRow("blanks only") << "   " << qint64(0);
    QTest::newRow("sign alone") << "-" << qint64(0);
    QTest::newRow("point alone") << "." << qint64(0);
    QTest::newRow("two signs") << "--5" << qint64(0);
    QTest::newRow("carriage return stops") << "1\r2" << qint64(1);
    QTest::newRow("comma stops") << "1,5" << qint64(1);
    QTest::newRow("second point stops") << "1.2.9" << qint64(1);
    QTest::newRow("leading point") << ".75" << qint64(1);
    QTest::newRow("trailing point") << "8." << qint64(8);
    QTest::newRow("exponent") << "1.2E1" << qint64(12);
    QTest::newRow("small exponent letter") << "3e1" << qint64(30);
    QTest::newRow("negative exponent") << "500e-1" << qint64(50);
    QTest::newRow("positive exponent sign") << "2E+1" << qint64(20);
    QTest::newRow("D exponent") << "4D1" << qint64(40);
    QTest::newRow("small d exponent") << "4d-1" << qint64(0);
    QTest::newRow("blank inside exponent") << "1 E 1" << qint64(10);
    QTest::newRow("exponent without digits") << "7E" << qint64(7);
    QTest::newRow("exponent sign without digits") << "7E-x" << qint64(7);
    QTest::newRow("exponent stops at letter") << "2e1x5" << qint64(20);
    QTest::newRow("tiny exponent") << "5e-400" << qint64(0);
    QTest::newRow("tiny fraction") << "0.000005e-399" << qint64(0);
    QTest::newRow("exponent far below any number") << "7e-99999999999999999999" << qint64(0);
    QTest::newRow("zero with huge exponent") << "0e99999" << qint64(0);
    QTest::newRow("other letter is no exponent") << "6F1" << qint64(6);
    QTest::newRow("ampersand alone") << "&" << qint64(0);
    QTest::newRow("ampersand other letter") << "&B1" << qint64(0);
    QTest::newRow("sign before hexadecimal") << "-&H10" << qint64(0);
}

// A reply gives the number it begins with: blanks, tabs and line feeds are
// skipped, reading stops at the first character that can't continue the
// number, and no number at all counts as 0.
void TestNumberReader::readsTheNumberTheReplyBeginsWith()
{
    checkReadsAsExpected();
}

void TestNumberReader::roundsHalvesToTheEvenNeighbour_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<qint64>("expected");

    QTest::newRow("50.4") << "50.4" << qint64(50);
    QTest::newRow("50.5") << "50.5" << qint64(50);
    QTest::newRow("50.6") << "50.6" << qint64(51);
    QTest::newRow("5.5") << "5.5" << qint64(6);
    QTest::newRow("4.5") << "4.5" << qint64(4);
    QTest::newRow("7.5") << "7.5" << qint64(8);
    QTest::newRow("6.5") << "6.5" << qint64(6);
    QTest::newRow("0.5") << "0.5" << qint64(0);
    QTest::newRow("-0.5") << "-0.5" << qint64(0);
    QTest::newRow("-1.5") << "-1.5" << qint64(-2);
    QTest::newRow("-2.5") << "-2.5" << qint64(-2);
    QTest::newRow("-0.4") << "-0.4" << qint64(0);
    QTest::newRow("4.9999") << "4.9999" << qint64(5);
    QTest::newRow("exponent half") << "45e-1" << qint64(4);
}

// A number with a fraction is rounded to the nearest whole number, a half
// going to the even neighbour.
void TestNumberReader::roundsHalvesToTheEvenNeighbour()
{
    checkReadsAsExpected();
}

void TestNumberReader::readsHexadecimalAndOctal_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<qint64>("expected");

    QTest::newRow("hexadecimal") << "&H1F" << qint64(31);
    QTest::newRow("hexadecimal small letters") << "&h1f" << qint64(31);
    QTest::newRow("hexadecimal stops") << "&H1G" << qint64(1);
    QTest::newRow("hexadecimal point stops") << "&H10.9" << qint64(16);
    QTest::newRow("hexadecimal no digits") << "&H" << qint64(0);
    QTest::newRow("hexadecimal with blanks") << " & H 2 0" << qint64(32);
    QTest::newRow("hexadecimal many leading zeros")
        << "&H00000000000000000000000A" << qint64(10);
    QTest::newRow("octal") << "&O17" << qint64(15);
    QTest::newRow("octal small letter") << "&o62" << qint64(50);
    QTest::newRow("octal stops at 8") << "&O78" << qint64(7);
    QTest::newRow("octal no digits") << "&O9" << qint64(0);
}

// After &H or &O the reply is read as a hexadecimal or octal whole number.
void TestNumberReader::readsHexadecimalAndOctal()
{
    checkReadsAsExpected();
}

void TestNumberReader::tooLargeIsOutOfRange_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("fits");
    QTest::addColumn<qint64>("expected");

    QTest::newRow("20 digits") << "99999999999999999999" << false << qint64(0);
    QTest::newRow("huge exponent") << "1E400" << false << qint64(0);
    QTest::newRow("huge negative") << "-1e30" << false << qint64(0);
    QTest::newRow("beyond a double, small mantissa") << "0.00001e310" << false << qint64(0);
    QTest::newRow("beyond a double, negative") << "-2e400" << false << qint64(0);
    QTest::newRow("exponent beyond any number") << "1e99999999999999999999" << false
                                                << qint64(0);
    QTest::newRow("2^63") << "9223372036854775808" << false << qint64(0);
    QTest::newRow("17 hexadecimal digits") << "&H10000000000000000" << false << qint64(0);
    QTest::newRow("16 hexadecimal digits, top bit") << "&H8000000000000000" << false
                                                    << qint64(0);
    QTest::newRow("largest hexadecimal") << "&H7FFFFFFFFFFFFFFF" << true
                                         << std::numeric_limits<qint64>::max();
    QTest::newRow("large but whole") << "1e15" << true << qint64(1000000000000000);
    QTest::newRow("beyond 16 bits") << "40000" << true << qint64(40000);
}

// A number too large to hold as a whole number gives no value (out of range),
// never a wrapped or clipped one.
void TestNumberReader::tooLargeIsOutOfRange()
{
    QFETCH(QString, reply);
    QFETCH(bool, fits);
    QFETCH(qint64, expected);
    const std::optional<qint64> number = ReadReplyNumber(reply);
    QCOMPARE(number.has_value(), fits);
    if (fits)
        QCOMPARE(*number, expected);
}

QTEST_APPLESS_MAIN(TestNumberReader)
#include "tst_numberreader.moc"
