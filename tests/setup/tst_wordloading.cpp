// Loading a word list for a puzzle.

#include "core/gamestate.h"
#include "fakeplatform.h"
#include "setup/wordloading.h"

#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

class TestWordLoading : public QObject {
    Q_OBJECT

private slots:
    void readsLinesLongestFirst()
    {
        // Each of the first 50 lines is a word exactly as it stands, a line end after the last
        // adding none; longest first, equal lengths in file order; the rest of the file is not
        // read; an unreadable file gives false and a reason and leaves the loaded words alone.
        const struct {
            QByteArray file;
            QStringList words;
            int letters;
        } cases[] = {
            {"dog\r\nhorse\r\ncat\r\nmouse\r\n", {"horse", "mouse", "dog", "cat"}, 16},
            {" Cat \r\n\r\nDOG", {" Cat ", "DOG", ""}, 8},
            {"cat\r\ndog\r\n\r\n", {"cat", "dog", ""}, 6},
            {"", {}, 0},
            // The longer word on line 51 would sort first.
            {QByteArray("a\r\n").repeated(50) + "bbbbbb\r\n", QStringList(50, "a"), 50},
        };
        FakePlatform fake;
        GameState state;
        state.wordListPath = fake.path(QStringLiteral("list.wds"));
        QString error;
        // Past the 50th line nothing is read, unless a byte above 127 in the words makes their
        // characters depend on whether the whole file is UTF-8 (here it is not: "\xff").
        fake.files.pieceSize = 64;
        const QByteArray rest = QByteArray("a\r\n").repeated(60) + QByteArray(1 << 20, 'z');
        for (const QByteArray &first : {QByteArray("ab"), QByteArray("\xc3\xa9")}) {
            fake.writeFile(QStringLiteral("list.wds"), first + "\r\n" + rest + "\xff");
            QVERIFY(LoadWords(state, fake.files, error));
            QCOMPARE(state.words[1], first == "ab" ? "ab" : "\u00c3\u00a9");
            QCOMPARE(fake.files.bytesRead > (1 << 20), first != "ab");
        }
        for (const auto &k : cases) {
            fake.writeFile(QStringLiteral("list.wds"), k.file);
            QVERIFY(LoadWords(state, fake.files, error));
            QCOMPARE(QList(state.words.begin() + 1, state.words.begin() + 1 + state.wordCount),
                     k.words);
            QCOMPARE(state.letterCount, k.letters);
        }
        fake.files.failRead.insert(state.wordListPath);
        QVERIFY(!LoadWords(state, fake.files, error));
        QVERIFY(!error.isEmpty());
        QCOMPARE(state.wordCount, 50);
        QCOMPARE(state.letterCount, 50);
    }
};

QTEST_GUILESS_MAIN(TestWordLoading)
#include "tst_wordloading.moc"
