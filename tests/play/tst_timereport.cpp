#include "puzzles.h"

#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

class TestTimeReport : public QObject {
    Q_OBJECT

private slots:
    void reportByElapsedTime_data();
    void reportByElapsedTime();
};

void TestTimeReport::reportByElapsedTime_data()
{
    QTest::addColumn<qint32>("timeLimit");
    QTest::addColumn<quint32>("startTick");
    QTest::newRow("5 minutes") << 5 << 1000u;
    // Started one second before the tick counter wraps.
    QTest::newRow("5 minutes, the counter wrapping") << 5 << 0xFFFFFC18u;
    QTest::newRow("no limit") << 0 << 0xFFFFFC18u;
}

// Ctrl+T reports the whole minutes and seconds left, rounded down, and "over" only past the limit, the same across the counter's wrap; with no limit, the no-limit message however long the play.
void TestTimeReport::reportByElapsedTime()
{
    QFETCH(qint32, timeLimit);
    QFETCH(quint32, startTick);
    const QString over = QStringLiteral("You've spent more than your allowed time on this puzzle.");
    const struct {
        quint32 elapsed;
        QString report;
    } table[] = {
        {0, "You have 5 minutes, 0 seconds remaining."},
        {61500, "You have 3 minutes, 58 seconds remaining."},
        {240000, "You have 1 minutes, 0 seconds remaining."},
        {240001, "You only have 59 seconds remaining!"},
        {299999, "You only have 0 seconds remaining!"},
        {300000, "You only have 0 seconds remaining!"},
        {300001, over},
        {86400000, over},
    };
    PuzzleRig rig;
    rig.fp.clock.ticks = startTick;
    QVERIFY(rig.open(Alphabet(), {"abc"}, timeLimit));
    QStringList expected;
    for (const auto &row : table) {
        rig.fp.clock.ticks = startTick + row.elapsed;
        press(Qt::Key_T, Qt::ControlModifier);
        expected.append(timeLimit != 0
                            ? row.report
                            : "You have as much time as necessary to complete this puzzle.");
    }
    QCOMPARE(rig.fp.dialogs.prompts(), expected);
    QCOMPARE(rig.fp.dialogs.shown.last().buttons, MessageButtons::Ok);
}

QTEST_MAIN(TestTimeReport)
#include "tst_timereport.moc"
