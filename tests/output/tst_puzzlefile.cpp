#include "output/puzzlefile.h"
#include "puzzles.h"

#include <QDir>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QByteArray kGrid = "abcde\r\nfghij\r\nklmno\r\npqrst\r\nuvwxy\r\n";
const QString kQuestion = QStringLiteral(
    "Store word list in separate file? Choose yes to store word list in a different file, or no "
    "to store the word list along with the puzzle in the same file.");

struct SaveRig {
    explicit SaveRig(const QStringList &words)
    {
        setPuzzle(state, kAlphabet, words);
        // A word left over from a longer list is never written.
        state.words[words.size() + 1] = QStringLiteral("leftover");
    }
    // Saves to `path` (empty: the dialog is cancelled), answering the question with `answer`.
    SaveResult save(const QString &path, MessageResult answer = MessageResult::No)
    {
        fp.fileDialogs.savePaths = {path};
        fp.dialogs.answers = {answer};
        return SavePuzzle(state, fp.platform, nullptr);
    }
    QStringList files() const
    {
        return QDir(fp.dir.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    }

    FakePlatform fp;
    GameState state;
};

} // namespace

class TestPuzzleFile : public QObject {
    Q_OBJECT

private slots:
    void oneFileByteForByte();
    void twoFiles();
    void cancelWritesNothing();
    void everyCharacterKept();
    void failuresLoseNothing();
};

// One file holds the word list header, the numbered words, three empty lines, the puzzle header and
// the grid, every line ended by CR LF and one more at the end; saving again replaces the file.
void TestPuzzleFile::oneFileByteForByte()
{
    SaveRig rig({"cat", "dog"});
    const QString path = rig.fp.path("puzzle.txt");
    rig.fp.writeFile("puzzle.txt", QByteArray(500, 'z'));
    const SaveResult result = rig.save(path);
    QCOMPARE(result.end, SaveResult::End::Saved);
    QCOMPARE(SaveMessage(result), QString());
    QCOMPARE(rig.fp.readFile("puzzle.txt"),
             "***Lexicove Word List:\r\n\r\n1. cat\r\n2. dog\r\n\r\n\r\n\r\n***Lexicove Puzzle:\r\n"
             "\r\n" +
                 kGrid + "\r\n");
    QCOMPARE(rig.fp.fileDialogs.filters, QStringList{"Text Files (*.txt)"});
    QCOMPARE(rig.fp.dialogs.prompts(), QStringList{kQuestion});
    QCOMPARE(rig.fp.dialogs.shown.first().title, "Question");
    QCOMPARE(rig.fp.dialogs.shown.first().buttons, MessageButtons::YesNo);
    QCOMPARE(rig.files(), QStringList{"puzzle.txt"});
}

// Yes writes the word list file under the chosen name and the grid under that name less its last
// four characters, whatever they are, and "-puzzle.txt"; numbers are never padded.
void TestPuzzleFile::twoFiles()
{
    const QStringList words = {"w1", "w2", "w3", "w4", "w5", "w6", "w7", "w8", "w9", "w10"};
    QByteArray list = "***Lexicove Word List:\r\n\r\n";
    for (int i = 1; i <= 10; ++i)
        list += QByteArray::number(i) + ". w" + QByteArray::number(i) + "\r\n";
    list += "\r\n";
    for (const auto &[chosen, puzzle] :
         {std::pair{"puzzle.txt", "puzzle-puzzle.txt"}, std::pair{"mylist", "my-puzzle.txt"}}) {
        SaveRig rig(words);
        QCOMPARE(rig.save(rig.fp.path(chosen), MessageResult::Yes).end, SaveResult::End::Saved);
        QCOMPARE(rig.fp.readFile(chosen), list);
        QCOMPARE(rig.fp.readFile(puzzle), "***Lexicove Puzzle:\r\n\r\n" + kGrid + "\r\n");
        QCOMPARE(rig.files().size(), 2);
    }
}

// Cancelling the save dialog asks nothing and writes nothing.
void TestPuzzleFile::cancelWritesNothing()
{
    SaveRig rig({"cat"});
    const SaveResult result = rig.save(QString());
    QCOMPARE(result.end, SaveResult::End::Cancelled);
    QCOMPARE(SaveMessage(result), QString());
    rig.fp.dialogs.answers.clear();
    QVERIFY(rig.fp.dialogs.shown.isEmpty());
    QVERIFY(rig.files().isEmpty());
}

// A puzzle is 8-bit text unless a word or letter needs UTF-8: no character is ever replaced.
void TestPuzzleFile::everyCharacterKept()
{
    for (const auto &[word, bytes] : {std::pair{u"caf\u00e9", QByteArray("caf\xe9")},
                                      std::pair{u"\u0142\u00e9", QByteArray("\xc5\x82\xc3\xa9")}}) {
        SaveRig rig({QString::fromUtf16(word)});
        QCOMPARE(rig.save(rig.fp.path("p.txt")).end, SaveResult::End::Saved);
        QVERIFY(rig.fp.readFile("p.txt").contains("\r\n1. " + bytes + "\r\n"));
    }
}

// A file that can't be written is named with the reason and nothing else is written; when the
// puzzle file of two fails, the word list file stays complete and the player is told so.
void TestPuzzleFile::failuresLoseNothing()
{
    {
        SaveRig rig({"cat"});
        const QString path = rig.fp.path("gone") + QDir::separator() + "puzzle.txt";
        const SaveResult result = rig.save(path);
        QCOMPARE(result.end, SaveResult::End::Failed);
        QVERIFY2(
            SaveMessage(result).startsWith(
                QStringLiteral("The puzzle could not be saved in the file \"%1\": ").arg(path)),
            qPrintable(SaveMessage(result)));
        QVERIFY(rig.files().isEmpty());
    }
    {
        SaveRig rig({"cat"});
        QVERIFY(QDir(rig.fp.dir.path()).mkdir("%1-puzzle.txt")); // the puzzle file's name is taken
        const QString path = rig.fp.path("%1.txt");
        const SaveResult result = rig.save(path, MessageResult::Yes);
        QCOMPARE(result.end, SaveResult::End::Failed);
        QCOMPARE(rig.fp.readFile("%1.txt"), "***Lexicove Word List:\r\n\r\n1. cat\r\n\r\n");
        const QString message = SaveMessage(result);
        QVERIFY2(message.startsWith(QStringLiteral("The puzzle could not be saved in the file "
                                                   "\"%1\": ")
                                        .arg(rig.fp.path("%1-puzzle.txt"))),
                 qPrintable(message));
        QVERIFY2(message.endsWith(
                     QStringLiteral(". The word list was saved in the file \"%1\".").arg(path)),
                 qPrintable(message));
    }
}

QTEST_GUILESS_MAIN(TestPuzzleFile)
#include "tst_puzzlefile.moc"
