#include "play/timereport.h"

#include <QtTest>

using namespace lexicove;

namespace {

const QString kNoLimit =
    QStringLiteral("You have as much time as necessary to complete this puzzle.");
const QString kOver = QStringLiteral("You've spent more than your allowed time on this puzzle.");

} // namespace

class TestTimeReport : public QObject {
    Q_OBJECT

private slots:
    void fiveMinuteLimit_data();
    void fiveMinuteLimit();
    void noLimit_data();
    void noLimit();
    void otherLimits_data();
    void otherLimits();
    void elapsedAcrossTheWrap_data();
    void elapsedAcrossTheWrap();
    void pastLimitBoundary();
};

void TestTimeReport::fiveMinuteLimit_data()
{
    QTest::addColumn<quint32>("elapsed");
    QTest::addColumn<QString>("report");
    QTest::newRow("0 s") << 0u << QStringLiteral("You have 5 minutes, 0 seconds remaining.");
    QTest::newRow("61.5 s") << 61500u << QStringLiteral("You have 3 minutes, 58 seconds remaining.");
    QTest::newRow("240 s") << 240000u << QStringLiteral("You have 1 minutes, 0 seconds remaining.");
    QTest::newRow("240.001 s") << 240001u << QStringLiteral("You only have 59 seconds remaining!");
    QTest::newRow("299.999 s") << 299999u << QStringLiteral("You only have 0 seconds remaining!");
    QTest::newRow("300 s") << 300000u << QStringLiteral("You only have 0 seconds remaining!");
    QTest::newRow("300.001 s") << 300001u << kOver;
    QTest::newRow("an hour") << 3600000u << kOver;
}

// With a 5-minute limit the report gives whole minutes and seconds left, rounded down, "over" only past the limit.
void TestTimeReport::fiveMinuteLimit()
{
    QFETCH(quint32, elapsed);
    QFETCH(QString, report);
    QCOMPARE(TimeReport(5, elapsed), report);
}

void TestTimeReport::noLimit_data()
{
    QTest::addColumn<quint32>("elapsed");
    QTest::newRow("at once") << 0u;
    QTest::newRow("a day") << 86400000u;
    QTest::newRow("the counter's whole range") << 0xFFFFFFFFu;
}

// With no limit the report is always the no-limit message.
void TestTimeReport::noLimit()
{
    QFETCH(quint32, elapsed);
    QCOMPARE(TimeReport(0, elapsed), kNoLimit);
}

void TestTimeReport::otherLimits_data()
{
    QTest::addColumn<qint32>("limit");
    QTest::addColumn<quint32>("elapsed");
    QTest::addColumn<QString>("report");
    QTest::newRow("1 minute, at once") << 1 << 0u
                                       << QStringLiteral("You have 1 minutes, 0 seconds remaining.");
    QTest::newRow("1 minute, 1 ms in") << 1 << 1u
                                       << QStringLiteral("You only have 59 seconds remaining!");
    QTest::newRow("60 minutes, at once")
        << 60 << 0u << QStringLiteral("You have 60 minutes, 0 seconds remaining.");
    QTest::newRow("60 minutes, 1 s left")
        << 60 << 3599000u << QStringLiteral("You only have 1 seconds remaining!");
    QTest::newRow("60 minutes, exactly") << 60 << 3600000u
                                         << QStringLiteral("You only have 0 seconds remaining!");
    QTest::newRow("60 minutes, 1 ms past") << 60 << 3600001u << kOver;
}

// Counts of one keep the plural and limits up to an hour report the same way.
void TestTimeReport::otherLimits()
{
    QFETCH(qint32, limit);
    QFETCH(quint32, elapsed);
    QFETCH(QString, report);
    QCOMPARE(TimeReport(limit, elapsed), report);
}

void TestTimeReport::elapsedAcrossTheWrap_data()
{
    QTest::addColumn<quint32>("start");
    QTest::addColumn<quint32>("now");
    QTest::addColumn<quint32>("elapsed");
    QTest::newRow("no wrap") << 1000u << 62500u << 61500u;
    QTest::newRow("wrap: 61.5 s from 1 s before the top") << 0xFFFFFC18u << 60500u << 61500u;
    QTest::newRow("wrap: from the top itself") << 0xFFFFFFFFu << 0u << 1u;
    QTest::newRow("nothing passed") << 0xFFFFFFFFu << 0xFFFFFFFFu << 0u;
}

// Elapsed play time is taken modulo 2^32, so a puzzle started before the counter wraps reports as any other.
void TestTimeReport::elapsedAcrossTheWrap()
{
    QFETCH(quint32, start);
    QFETCH(quint32, now);
    QFETCH(quint32, elapsed);
    QCOMPARE(ElapsedSince(start, now), elapsed);
    QCOMPARE(TimeReport(5, ElapsedSince(start, now)), TimeReport(5, elapsed));
}

// Being late starts one millisecond past the limit; without a limit nobody is late.
void TestTimeReport::pastLimitBoundary()
{
    QVERIFY(!IsPastLimit(1, 60000));
    QVERIFY(IsPastLimit(1, 60001));
    QVERIFY(!IsPastLimit(60, 3600000));
    QVERIFY(IsPastLimit(60, 3600001));
    QVERIFY(!IsPastLimit(0, 0xFFFFFFFFu));
}

QTEST_GUILESS_MAIN(TestTimeReport)
#include "tst_timereport.moc"
