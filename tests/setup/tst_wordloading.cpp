// Loading a word list for a puzzle, and the size test that the options window
// applies to it.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "setup/wordloading.h"

#include <QtTest>

#include <memory>

using namespace lexicove;
using namespace lexicove::test;

class TestWordLoading : public QObject {
    Q_OBJECT

    FakePlatform fake;

    // Writes the file and loads it into a fresh state.
    std::unique_ptr<GameState> load(const QByteArray &bytes)
    {
        auto state = std::make_unique<GameState>();
        fake.writeFile(QStringLiteral("list.wds"), bytes);
        state->wordListPath = fake.path(QStringLiteral("list.wds"));
        QString error;
        return LoadWords(*state, fake.files, error) ? std::move(state) : nullptr;
    }

private slots:
    void readsLinesLongestFirst_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("letters");

        QTest::newRow("ties keep the file order") << QByteArray("dog\r\nhorse\r\ncat\r\nmouse\r\n")
                                                  << QStringList{"horse", "mouse", "dog", "cat"}
                                                  << 16;
        QTest::newRow("lines as they stand, empty line")
            << QByteArray(" Cat \r\n\r\nDOG\r\n") << QStringList{" Cat ", "DOG", ""} << 8;
        QTest::newRow("no final line end") << QByteArray("cat\r\ndog")
                                           << QStringList{"cat", "dog"} << 6;
        QTest::newRow("empty last line") << QByteArray("cat\r\ndog\r\n\r\n")
                                         << QStringList{"cat", "dog", ""} << 6;
        QTest::newRow("empty file") << QByteArray() << QStringList() << 0;
        // Only the first 50 lines are read; the longer words after them would sort first.
        QTest::newRow("51 lines") << QByteArray("a\r\n").repeated(50) + "bbbbbb\r\n"
                                  << QStringList(50, "a") << 50;
    }

    void readsLinesLongestFirst()
    {
        // Each line is a word exactly as it stands, a line end after the last word adding
        // none; the words are sorted longest first, equal lengths keeping their file order.
        QFETCH(QByteArray, file);
        QFETCH(QStringList, words);
        QFETCH(int, letters);
        const auto state = load(file);
        QVERIFY(state);
        QCOMPARE(QStringList(state->words.begin() + 1, state->words.begin() + 1 + state->wordCount),
                 words);
        QCOMPARE(state->letterCount, letters);
    }

    void unreadableFileIsReported()
    {
        // A file that can't be read gives false and a reason, and leaves the loaded words alone.
        auto state = load("cat\r\ndog\r\n");
        QVERIFY(state);
        fake.files.failRead.insert(state->wordListPath);
        for (const QString &name : {QStringLiteral("list.wds"), QStringLiteral("missing.wds")}) {
            state->wordListPath = fake.path(name);
            QString error;
            QVERIFY(!LoadWords(*state, fake.files, error));
            QVERIFY(!error.isEmpty());
            QCOMPARE(state->wordCount, 2);
            QCOMPARE(state->letterCount, 6);
        }
    }

    void sizeTest()
    {
        // letters x 1.6, rounded, may not exceed rows x columns (nor the 16-bit range), and the
        // longest word plus 3 may not exceed the rows nor the columns.
        const struct {
            int rows, columns, longest, letters;
            bool passes;
        } cases[] = {
            {20, 20, 17, 17, true},   {20, 20, 18, 18, false},   {19, 20, 17, 17, false},
            {20, 19, 17, 17, false},  {20, 20, 3, 250, true},    {20, 20, 3, 251, false},
            {7, 7, 3, 30, true},      {7, 7, 3, 31, false},      // 48 and 49.6 of 49 cells
            {5, 6, 2, 19, true},      {50, 50, 3, 20480, false}, // 30.4 cells; 32768 cells
        };
        for (const auto &k : cases) {
            GameState state;
            state.rows = static_cast<qint16>(k.rows);
            state.columns = static_cast<qint16>(k.columns);
            state.words[1] = QString(k.longest, u'a');
            state.letterCount = k.letters;
            QVERIFY2(PassesSizeTest(state) == k.passes,
                     qPrintable(QString::asprintf("longest %d, %d letters on %d x %d", k.longest,
                                                  k.letters, k.rows, k.columns)));
        }
    }
};

QTEST_GUILESS_MAIN(TestWordLoading)
#include "tst_wordloading.moc"
