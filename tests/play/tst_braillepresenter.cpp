#include "fakeplatform.h"
#include "play/braillepresenter.h"

#include <QtTest>

using lexicove::BrailleCells;
using lexicove::BraillePresenter;
using lexicove::BrailleRow;
using lexicove::test::feel;

namespace {

// A row of `length` letters "AbCdEf..." (capitals, to feel them lowered), found in columns
// foundFrom to foundTo, a first mark pending at column pending.
BrailleRow makeRow(int length, int foundFrom = 0, int foundTo = -1, int pending = 0)
{
    BrailleRow row;
    for (int c = 1; c <= length; ++c) {
        const QChar letter(u'a' + (c - 1) % 26);
        row.letters += c % 2 ? letter.toUpper() : letter;
        row.found.append(c >= foundFrom && c <= foundTo);
    }
    row.pendingColumn = pending;
    return row;
}

} // namespace

Q_DECLARE_METATYPE(BrailleRow)

class TestBraillePresenter : public QObject {
    Q_OBJECT

private slots:
    void showsTheCursorsPage_data();
    void showsTheCursorsPage();
    void panKeysTurnWholePages();
    void statusFitsTheDisplay();
};

void TestBraillePresenter::showsTheCursorsPage_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<BrailleRow>("row");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("panStart");
    QTest::addColumn<QString>("felt");
    QTest::addColumn<int>("cell");
    QTest::addColumn<int>("routed");
    const auto add = [](const char *name, int width, const BrailleRow &row, int cursor,
                        int panStart, const QString &felt, int cell, int routed) {
        QTest::newRow(name) << width << row << cursor << panStart << felt << cell << routed;
    };
    add("12/5 first", 12, makeRow(5), 1, 1, "a^bcde", 4, 5);
    add("12/5 last, found and pending", 12, makeRow(5, 2, 4, 3), 5, 1, "ab8c7d8e^", 5, 0);
    add("12/20 page end", 12, makeRow(20), 12, 1, "abcdefghijkl^", 11, 12);
    add("12/20 next page", 12, makeRow(20, 12, 14), 13, 13, "m^8n8opqrst", 0, 13);
    add("12/20 last", 12, makeRow(20, 0, -1, 13), 20, 13, "m7nopqrst^", 8, 0);
    add("12/50 last, pending", 12, makeRow(50, 0, -1, 50), 50, 49, "wx^7", 1, 50);
    add("40/5 all found", 40, makeRow(5, 1, 5), 5, 1, "a8b8c8d8e^8", 39, 0);
    add("40/20 last, pending first", 40, makeRow(20, 0, -1, 1), 20, 1, "a7bcdefghijklmnopqrst^", 19,
        20);
    add("40/50 page end", 40, makeRow(50, 38, 43), 40, 1,
        "abcdefghijklmnopqrstuvwxyzabcdefghijkl8m8n^8", 39, 40);
    add("40/50 next page, pending on found", 40, makeRow(50, 38, 43, 41), 41, 41, "o^7p8q8rstuvwx",
        0, 41);
    add("40/50 last", 40, makeRow(50), 50, 41, "opqrstuvwx^", 10, 0);
    add("80/5 first", 80, makeRow(5), 1, 1, "a^bcde", 79, 0);
    add("80/20 last", 80, makeRow(20, 1, 2), 20, 1, "a8b8cdefghijklmnopqrst^", 0, 1);
    add("80/50 last, found", 80, makeRow(50, 49, 50), 50, 1,
        "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvw8x^8", 49, 50);
}

// The display shows the page of the cursor's row that holds the cursor, one lower-case letter
// per column from the page's first column and the cursor on its cell; found letters carry dot 8
// and a pending first mark dot 7 alone, even on a found letter. A routing key gives the column
// under it on that page, none past the row's end or the display's.
void TestBraillePresenter::showsTheCursorsPage()
{
    QFETCH(int, width);
    QFETCH(BrailleRow, row);
    QFETCH(int, cursor);
    BraillePresenter presenter;
    presenter.setWidth(width);
    presenter.follow(cursor);
    const BrailleCells cells = presenter.cells(row, cursor);
    QTEST(presenter.panStart(), "panStart");
    QTEST(feel(cells), "felt");
    QCOMPARE(cells.dots.size(), cells.text.size());
    QFETCH(int, cell);
    QTEST(presenter.route(cell, static_cast<int>(row.letters.size())), "routed");
}

// The pan keys turn whole pages as far as the row goes, leaving the cursor out of view; the
// cursor's next move keeps a page that holds it and otherwise turns to its page.
void TestBraillePresenter::panKeysTurnWholePages()
{
    using Pan = BraillePresenter::Pan;
    BraillePresenter presenter;
    presenter.setWidth(12);
    QStringList starts;
    for (const Pan pan :
         {Pan::Left, Pan::Right, Pan::Right, Pan::Right, Pan::Right, Pan::Right, Pan::Left}) {
        const bool turned = presenter.pan(pan, 50);
        starts << QString(turned ? "" : "x") + QString::number(presenter.panStart());
    }
    QCOMPARE(starts, (QStringList{"x1", "13", "25", "37", "49", "x49", "37"}));
    QCOMPARE(presenter.cells(makeRow(50), 5).cursor, 0);
    presenter.follow(48);
    QCOMPARE(presenter.panStart(), 37);
    presenter.follow(5);
    QCOMPARE(presenter.panStart(), 1);
    presenter.setWidth(80);
    QVERIFY(!presenter.pan(Pan::Right, 50));
}

// The status tells row, column, words found and words in all, in the longest form that fits:
// every puzzle's fits a 12-cell display, and a narrower one shows what fits.
void TestBraillePresenter::statusFitsTheDisplay()
{
    QCOMPARE(BraillePresenter::status(12, 7, 3, 14, 20), "r12 c7 3 of 14 words");
    QCOMPARE(BraillePresenter::status(50, 50, 50, 50, 20), "r50 c50 50/50");
    QCOMPARE(BraillePresenter::status(50, 50, 50, 50, 12), "r50c50 50/50");
    QCOMPARE(BraillePresenter::status(1, 1, 0, 2, 12), "r1 c1 0/2");
    QCOMPARE(BraillePresenter::status(50, 50, 50, 50, 8), "r50c50 5");
}

QTEST_GUILESS_MAIN(TestBraillePresenter)
#include "tst_braillepresenter.moc"
