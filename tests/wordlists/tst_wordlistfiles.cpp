// The word list files: the byte layout, the listing, the readers and the name and word rules.

#include "fakeplatform.h"
#include "wordlists/wordlistformat.h"
#include "wordlists/wordlists.h"

#include <QTest>

using namespace lexicove;
using namespace lexicove::test;

class TestWordListFiles : public QObject {
    Q_OBJECT

private slots:
    // A list is each word then CR LF, a failed write keeps the old file, and the lists
    // are the folder's .wds files in any case, sorted without regard to case.
    void files()
    {
        FakePlatform fp;
        QString path;
        FileFailure failure;
        QVERIFY(WriteList(fp.files, fp.system.folder, "pets", {"cat", "dog"}, path, failure));
        QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\ndog\r\n"));
        fp.files.failAllWrites = true;
        QVERIFY(!WriteList(fp.files, fp.system.folder, "pets", {"owl"}, path, failure));
        QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\ndog\r\n"));
        for (const char *name : {"Zoo.WDS", "apple.wds", "notes.txt", "old.wds.bak"})
            fp.writeFile(QString::fromLatin1(name), "a\r\n");
        QCOMPARE(EnumerateLists(fp.files, fp.system.folder),
                 (QStringList{"apple.wds", "pets.wds", "Zoo.WDS"}));
    }

    // The lines (counted, and a puzzle's words) and the editor's entries differ, as
    // tabled, on blank lines, a last line without CR LF, commas and quotes.
    void readers()
    {
        const struct {
            QByteArray bytes;
            QStringList lines, entries;
        } files[] = {{"a\r\n\r\nb,c", {"a", "", "b,c"}, {"a", "", "b", "c"}},
                     {"\"a,b\"\r\n\"i\",c\r\n", {"\"a,b\"", "\"i\",c"}, {"a,b", "i", "c"}}};
        for (const auto &file : files) {
            QCOMPARE(ReadLines(file.bytes), file.lines);
            QCOMPARE(ReadEntries(file.bytes), file.entries);
        }
    }

    // A saved name is trimmed and lower-cased, blanks alone abandon, only a-z, 0-9 and blank
    // pass; a word is refused for a full list, then for no text, then over 15 characters.
    void namesAndWords()
    {
        QCOMPARE(CheckListName(QStringLiteral(" A  2 ")).name, QStringLiteral("a  2"));
        for (const QString typed : {"my-list", "my_list", "\tzoo", "CAF\u00c9"})
            QCOMPARE(CheckListName(typed).outcome, NameCheck::Invalid);
        QCOMPARE(CheckListName(QStringLiteral("    ")).outcome, NameCheck::Abandon);
        using O = MadeWordOutcome;
        const struct {
            QString typed;
            int words;
            O outcome;
            QString word;
        } cases[] = {{" Ice Cream Cones ", 39, O::Word, "icecreamcones"},
                     {"O'B,2", 0, O::Word, "o'b,2"},
                     {"ice cream  cones", 39, O::TooLong, ""},
                     {"  ", 39, O::NoWord, ""},
                     {"", 40, O::ListFull, ""},
                     {"ice cream  cones", 40, O::ListFull, ""}};
        for (const auto &c : cases) {
            QCOMPARE(MakeWord(c.typed, c.words).outcome, c.outcome);
            QCOMPARE(MakeWord(c.typed, c.words).word, c.word);
        }
    }
};

QTEST_GUILESS_MAIN(TestWordListFiles)
#include "tst_wordlistfiles.moc"
