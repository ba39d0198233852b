#include "fakeplatform.h"
#include "setup/wordloading.h"

#include <QtTest>

using namespace lexicove;

class TestFill : public QObject {
    Q_OBJECT

private slots:
    void fillsTheFreeCells()
    {
        // p is drawn first (3 to 8; not at all from 22 distinct characters), then the whole part
        // of p % of the free cells get a letter no word holds (compared exactly) at a drawn row
        // and column, both again while taken; the rest a word's letter or, at 1 in 20, a vowel.
        const auto pick = [](int k, int n) { return (k - 0.5) / n; }; // Int(draw * n) + 1 = k
        struct {
            qint16 rows, cols;
            QStringList words;
            QList<qreal> draws;
            int decoys;
        } cases[] = {
            {10, 10, {"aeioubcdfg", "hjklmnpqrs"}, {0.0}, 2},   // all vowels: p = 3 of 80 free
            {10, 10, {"aeioubcdfg", "hjklmnpqrs"}, {0.999}, 6}, // p = 8 of 80
            {12, 12, {"aeioubcdfgh", "jklmnpqrst"}, {0.0}, 3},  // 21 characters, p = 3 of 123
            {12, 12, {"aeioubcdfgh", "jklmnpqrst7"}, {0.0}, 0}, // 22 characters
            {10, 10, {"CAT", "DOG", "aeiou"}, {0.999}, 7},      // no c, t, d, g; p = 8 of 89
            {2,
             20,
             {"az"},
             {0.0,          0.0,          0.0,          pick(2, 2),
              pick(20, 20),                                          // p = 3: 1 decoy. (1,1) taken
              pick(1, 26),  pick(26, 26), pick(2, 26),               // so (2,20): a, z held, b
              0.0,          pick(3, 20),  pick(2, 26),  pick(1, 20), // (1,3): b refused,
              pick(5, 26),  pick(2, 20),  pick(5, 26),  pick(1, 20), // e at chance 2, then 1
              pick(2, 2),   0.0,          pick(26, 26), pick(20, 20)},
             1}, // (2,1): z at any chance
        };
        for (const auto &k : cases) {
            GameState s;
            s.rows = k.rows;
            s.columns = k.cols;
            const QString held = k.words.join(QString());
            s.letterCount = static_cast<int>(held.size());
            for (int w = 0; w < k.words.size(); ++w)
                for (int c = 0; c < k.words[w].size(); ++c)
                    s.grid[w + 1][c + 1] = k.words[w].at(c);
            test::FakeRandom random;
            random.script = k.draws;
            FillGrid(s, random);
            int foreign = 0; // cells holding anything but one letter of the words or a vowel
            for (int r = 1; r <= k.rows; ++r)
                for (int c = 1; c <= k.cols; ++c)
                    foreign += s.grid[r][c].size() != 1 || !(held + "aeiou").contains(s.grid[r][c]);
            QCOMPARE(foreign, k.decoys);
            QVERIFY(random.script.isEmpty());
            if (k.rows == 2)
                QCOMPARE(s.grid[1][3] + s.grid[2][1] + s.grid[2][20], QStringLiteral("ezb"));
        }
    }
};

QTEST_GUILESS_MAIN(TestFill)
#include "tst_fill.moc"
