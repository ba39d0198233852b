#include "setup/numberreader.h"

#include <QtTest>

using lexicove::ReadReplyNumber;

class TestNumberReader : public QObject {
    Q_OBJECT

private slots:
    void readsTheNumberTheReplyBeginsWith()
    {
        // A reply gives the whole number it begins with, blanks skipped and halves rounded to
        // even on the exact value, whatever its length or exponent; 0 when it holds none, and no
        // value when the number is too large to hold.
        // Each case is the reply, "|" and what it gives ("none": no value), cases apart by ";".
        const QStringList cases =
            QString::fromLatin1(
                "12abc|12; 7|7;1 2|12;-30|-30;abc|0;|0;--5|0;\t1\n2\t|12;1\r2|1; & H 2 0|32;"
                "1,5|1;1.2.9|1;50.4|50;50.5|50;50.6|51;5.5|6;4.5|4;-2.5|-2;&H1F|31;&h1G|1;"
                "&O17|15;&o78|7;&H|0;&B1|0;1.2E1|12;4d1|40;500e-1|50;45e-1|4;2e1x5|20;7E|7;"
                "&H7FFFFFFFFFFFFFFF|9223372036854775807;1E400|none;9223372036854775808|none;"
                "-1e30|none;&H8000000000000000|none;99999999999999999999|none;"
                "27D9223372036854775807|none;27D-9223372036854775808|0;"
                "1e99999999999999999999999|none;0e99999999999999999999999|0;"
                "0.000000000000000000000000000051e30|51;2.50000000000000000000001|3;"
                "0.50000000000000000000001|1;-2.50000000000000000000001|-3;"
                "9223372036854775806.5|9223372036854775806;"
                "9223372036854775807.4999|9223372036854775807;9223372036854775807.5|none;"
                "-9223372036854775808.5|-9223372036854775808;-9223372036854775808.50001|none")
                .split(u';');
        for (const QString &text : cases) {
            const QStringList c = text.split(u'|');
            const std::optional<qint64> got = ReadReplyNumber(c[0]);
            QVERIFY2(c[1] == "none" ? !got : got && *got == c[1].toLongLong(), qPrintable(text));
        }
    }
};

QTEST_APPLESS_MAIN(TestNumberReader)
#include "tst_numberreader.moc"
