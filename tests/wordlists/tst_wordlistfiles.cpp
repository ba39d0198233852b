// The word list files: names, paths, the byte layout, the three readers and
// the name and word rules.

#include "fakeplatform.h"
#include "wordlists/wordlistformat.h"
#include "wordlists/wordlists.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace lexicove;
using namespace lexicove::test;

class TestWordListFiles : public QObject {
    Q_OBJECT

private slots:
    void writesEachWordThenCrLf();
    void readers();
    void namesAndWords();
    void enumerationAndCounting();
    void failuresLoseNothing();
};

// A list is written as each word then CR LF and nothing else, replacing the whole
// of a file of that name.
void TestWordListFiles::writesEachWordThenCrLf()
{
    FakePlatform fp;
    QString path;
    FileFailure failure;
    QVERIFY(WriteList(fp.files, fp.system.folder, "pets", {"cat", "dog"}, path, failure));
    QCOMPARE(path, fp.path(QStringLiteral("pets.wds")));
    QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\ndog\r\n"));
    // Repeats and entries loaded from other files are written as they stand.
    QVERIFY(WriteList(fp.files, fp.system.folder, "pets",
                      {"cat", "cat", "", "a,b", QStringLiteral("caf\u00e9")}, path, failure));
    QCOMPARE(fp.readFile(QStringLiteral("pets.wds")),
             QByteArray("cat\r\ncat\r\n\r\na,b\r\ncaf\xe9\r\n"));
}

// The line counter, the editor's reader and the puzzle's line reader agree on
// the editor's files and differ, as tabled, on blank lines, commas and quotes.
void TestWordListFiles::readers()
{
    const struct {
        QByteArray bytes;
        int count;
        QStringList entries;
        QStringList lines;
    } files[] = {
        {"", 0, {}, {}},
        {"cat\r\n", 1, {"cat"}, {"cat"}},
        {"a\r\n\r\nb\r\n", 3, {"a", "", "b"}, {"a", "", "b"}},
        {"cat\r\ndog", 2, {"cat", "dog"}, {"cat", "dog"}},
        {"x\r\na,b", 2, {"x", "a", "b"}, {"x", "a,b"}},
        {"\"a,b\"\r\nc\r\n", 2, {"a,b", "c"}, {"\"a,b\"", "c"}},
        {"\"ice\",cream\r\n", 1, {"ice", "cream"}, {"\"ice\",cream"}},
        {"caf\xe9\r\n", 1, {QStringLiteral("caf\u00e9")}, {QStringLiteral("caf\u00e9")}},
    };
    for (const auto &file : files) {
        FakePlatform fp;
        fp.writeFile(QStringLiteral("list.wds"), file.bytes);
        qint32 counted = -1;
        QStringList read;
        FileFailure failure;
        QVERIFY(CountWords(fp.files, fp.system.folder, "list.wds", counted, failure));
        QCOMPARE(counted, file.count);
        QVERIFY(ReadForEditing(fp.files, fp.path(QStringLiteral("list.wds")), read, failure));
        QCOMPARE(read, file.entries);
        QCOMPARE(ReadLines(file.bytes), file.lines);
    }
}

// List names drop a file's last four characters; a saved name is lower-cased and
// trimmed, blanks alone abandon, and only a-z, 0-9 and blank pass (the editor's
// tests go through the rest); a word keeps every other character, lower-cased.
void TestWordListFiles::namesAndWords()
{
    QCOMPARE(ListNameOfFileName(QStringLiteral("my-list.WDS")), QStringLiteral("my-list"));
    const QString path = ListPath(QStringLiteral("/games/a.b"), QStringLiteral("my list 2"));
    QCOMPARE(path, QStringLiteral("/games/a.b") + QDir::separator() + "my list 2.wds");
    QCOMPARE(ListNameOfPath(path), QStringLiteral("my list 2"));

    QCOMPARE(CheckListName(QStringLiteral(" A  2 ")).name, QStringLiteral("a  2"));
    for (const QString typed : {"my.list", "my_list", "\tzoo", "a/b", "CAF\u00c9"})
        QCOMPARE(CheckListName(typed).outcome, NameCheck::Invalid);
    QCOMPARE(CheckListName(QStringLiteral("    ")).outcome, NameCheck::Abandon);
    QCOMPARE(MakeWord(QStringLiteral("O'Brien-Smith,2"), 0).word,
             QStringLiteral("o'brien-smith,2"));
    QCOMPARE(MakeWord(QStringLiteral("\tCAF\u00c9"), 0).word, QStringLiteral("\tcaf\u00e9"));
}

// The lists are the .wds files of the folder in any case, sorted without regard
// to case and read afresh, so a save or a delete is counted at once.
void TestWordListFiles::enumerationAndCounting()
{
    FakePlatform fp;
    for (const char *name : {"Zoo.WDS", "apple.wds", "Birds.wds", "notes.txt", "old.wds.bak"})
        fp.writeFile(QString::fromLatin1(name), "a\r\n");
    QVERIFY(QDir(fp.dir.path()).mkdir(QStringLiteral("folder.wds")));
    QCOMPARE(EnumerateLists(fp.files, fp.system.folder),
             (QStringList{"apple.wds", "Birds.wds", "Zoo.WDS"}));
    qint32 count = 0;
    QString path;
    FileFailure failure;
    QVERIFY(CountWords(fp.files, fp.system.folder, "Zoo.WDS", count, failure));
    QCOMPARE(count, 1);
    QVERIFY(WriteList(fp.files, fp.system.folder, "cat", {"x"}, path, failure));
    QCOMPARE(CountLists(fp.files, fp.system.folder), 4);
    QVERIFY(DeleteList(fp.files, fp.system.folder, "apple.wds", failure));
    QCOMPARE(EnumerateLists(fp.files, fp.system.folder),
             (QStringList{"Birds.wds", "cat.wds", "Zoo.WDS"}));
    QVERIFY(!QFile::exists(fp.path(QStringLiteral("apple.wds"))));
}

// A file that can't be written (the folder is read-only) or read (it vanished) is
// reported with its path and the reason, and nothing is lost.
void TestWordListFiles::failuresLoseNothing()
{
    FakePlatform fp;
    fp.writeFile(QStringLiteral("pets.wds"), "cat\r\ndog\r\n");
    QString path;
    FileFailure failure;
    fp.files.failAllWrites = true;
    QVERIFY(!WriteList(fp.files, fp.system.folder, "pets", {"owl"}, path, failure));
    QCOMPARE(failure.path, fp.path(QStringLiteral("pets.wds")));
    QCOMPARE(failure.reason, QStringLiteral("Permission denied"));
    QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\ndog\r\n"));

    qint32 count = 7;
    QStringList entries{QStringLiteral("stale")};
    failure = {};
    QVERIFY(!CountWords(fp.files, fp.system.folder, "gone.wds", count, failure));
    QCOMPARE(count, 0);
    QCOMPARE(failure.path, fp.path(QStringLiteral("gone.wds")));
    failure = {};
    QVERIFY(!ReadForEditing(fp.files, fp.path(QStringLiteral("gone.wds")), entries, failure));
    QVERIFY(entries.isEmpty());
    QVERIFY(!failure.reason.isEmpty());
}

QTEST_GUILESS_MAIN(TestWordListFiles)
#include "tst_wordlistfiles.moc"
