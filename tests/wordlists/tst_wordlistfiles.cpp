// The word list files: names, paths, the byte layout, the three readers and
// the name and word rules.

#include "fakeplatform.h"
#include "platform/qtplatform.h"
#include "wordlists/wordlistformat.h"
#include "wordlists/wordlists.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace lexicove;
using namespace lexicove::test;

Q_DECLARE_METATYPE(lexicove::NameCheck)
Q_DECLARE_METATYPE(lexicove::MadeWordOutcome)

class TestWordListFiles : public QObject {
    Q_OBJECT

private slots:
    void writtenBytes();
    void writeReplacesWholeFile();
    void readers_data();
    void readers();
    void namesOfFilesAndPaths();
    void checkListName_data();
    void checkListName();
    void savedNameMakesFileName();
    void makeWord_data();
    void makeWord();
    void enumerationOrderAndCase();
    void caseOfExistingFileIsKept();
    void countFollowsSavesAndDeletes();
    void failedWriteLosesNothing();
    void realWriteFailure();
    void vanishedFile();
    void failedDeleteKeepsFile();
};

// A list is written as each word then CR LF, nothing else: cat and dog are ten bytes.
void TestWordListFiles::writtenBytes()
{
    FakePlatform fp;
    QString path;
    FileFailure failure;
    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("pets"),
                      {QStringLiteral("cat"), QStringLiteral("dog")}, path, failure));
    QCOMPARE(path, fp.path(QStringLiteral("pets.wds")));
    const QByteArray bytes = fp.readFile(QStringLiteral("pets.wds"));
    QCOMPARE(bytes.size(), 10);
    QCOMPARE(bytes, QByteArray("cat\r\ndog\r\n"));

    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("one"), {QStringLiteral("owl")},
                      path, failure));
    QCOMPARE(fp.readFile(QStringLiteral("one.wds")), QByteArray("owl\r\n"));

    // Repeats and entries loaded from other files are written as they stand.
    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("odd"),
                      {QStringLiteral("cat"), QStringLiteral("cat"), QString(),
                       QStringLiteral("a,b"), QStringLiteral("caf\u00e9")},
                      path, failure));
    QCOMPARE(fp.readFile(QStringLiteral("odd.wds")),
             QByteArray("cat\r\ncat\r\n\r\na,b\r\ncaf\xe9\r\n"));
}

// Saving under an existing list's name replaces its whole content.
void TestWordListFiles::writeReplacesWholeFile()
{
    FakePlatform fp;
    fp.writeFile(QStringLiteral("animals.wds"), "elephant\r\ngiraffe\r\nhippopotamus\r\n");
    QString path;
    FileFailure failure;
    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("animals"),
                      {QStringLiteral("ox")}, path, failure));
    QCOMPARE(fp.readFile(QStringLiteral("animals.wds")), QByteArray("ox\r\n"));
}

void TestWordListFiles::readers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("empty file") << QByteArray() << 0 << QStringList() << QStringList();
    QTest::newRow("one word") << QByteArray("cat\r\n") << 1 << QStringList{"cat"}
                              << QStringList{"cat"};
    QTest::newRow("blank line") << QByteArray("a\r\n\r\nb\r\n") << 3 << QStringList{"a", "", "b"}
                                << QStringList{"a", "", "b"};
    QTest::newRow("only a line end") << QByteArray("\r\n") << 1 << QStringList{""}
                                     << QStringList{""};
    QTest::newRow("no final line end")
        << QByteArray("cat\r\ndog") << 2 << QStringList{"cat", "dog"} << QStringList{"cat", "dog"};
    QTest::newRow("final lone CR") << QByteArray("cat\r") << 1 << QStringList{"cat"}
                                   << QStringList{"cat"};
    QTest::newRow("comma") << QByteArray("a,b\r\n") << 1 << QStringList{"a", "b"}
                           << QStringList{"a,b"};
    QTest::newRow("comma, no final line end")
        << QByteArray("x\r\na,b") << 2 << QStringList{"x", "a", "b"} << QStringList{"x", "a,b"};
    QTest::newRow("quoted comma") << QByteArray("\"a,b\"\r\nc\r\n") << 2
                                  << QStringList{"a,b", "c"} << QStringList{"\"a,b\"", "c"};
    QTest::newRow("quotes then comma") << QByteArray("\"ice\",cream\r\n") << 1
                                       << QStringList{"ice", "cream"}
                                       << QStringList{"\"ice\",cream"};
    QTest::newRow("quoted, no final line end") << QByteArray("\"owl\"") << 1
                                               << QStringList{"owl"} << QStringList{"\"owl\""};
    QTest::newRow("repeated word") << QByteArray("cat\r\ncat\r\n") << 2
                                   << QStringList{"cat", "cat"} << QStringList{"cat", "cat"};
    QTest::newRow("8-bit letter") << QByteArray("caf\xe9\r\n") << 1
                                  << QStringList{QStringLiteral("caf\u00e9")}
                                  << QStringList{QStringLiteral("caf\u00e9")};
}

// The line counter, the editor's reader and the line reader agree on the
// editor's files and differ, as tabled, on blank lines, commas and quotes.
void TestWordListFiles::readers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, count);
    QFETCH(QStringList, entries);
    QFETCH(QStringList, lines);

    FakePlatform fp;
    fp.writeFile(QStringLiteral("list.wds"), bytes);
    qint32 counted = -1;
    FileFailure failure;
    QVERIFY(CountWords(fp.files, fp.system.folder, QStringLiteral("list.wds"), counted, failure));
    QCOMPARE(counted, count);

    QStringList read;
    QVERIFY(ReadForEditing(fp.files, fp.path(QStringLiteral("list.wds")), read, failure));
    QCOMPARE(read, entries);

    QCOMPARE(ReadLines(bytes), lines);
}

// File names and paths turn into list names by dropping the last four characters.
void TestWordListFiles::namesOfFilesAndPaths()
{
    QCOMPARE(ListNameOfFileName(QStringLiteral("animals.wds")), QStringLiteral("animals"));
    QCOMPARE(ListNameOfFileName(QStringLiteral("Zoo.WDS")), QStringLiteral("Zoo"));
    QCOMPARE(ListNameOfFileName(QStringLiteral("my-list.wds")), QStringLiteral("my-list"));
    QCOMPARE(ListNameOfFileName(QStringLiteral("my list 2.wds")), QStringLiteral("my list 2"));

    const QString folder = QDir::toNativeSeparators(QStringLiteral("/games/lexicove"));
    const QString path = ListPath(folder, QStringLiteral("my list 2"));
    QCOMPARE(path, folder + QDir::separator() + QStringLiteral("my list 2.wds"));
    QCOMPARE(ListNameOfPath(path), QStringLiteral("my list 2"));
    QCOMPARE(ListNameOfPath(QStringLiteral("/a.b/c-d/animals.wds")), QStringLiteral("animals"));
    QCOMPARE(ListNameOfPath(QStringLiteral("animals.wds")), QStringLiteral("animals"));
}

void TestWordListFiles::checkListName_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<NameCheck>("outcome");
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << "animals" << NameCheck::Valid << "animals";
    QTest::newRow("capitals and blanks") << "  My List 2  " << NameCheck::Valid << "my list 2";
    QTest::newRow("digits") << "2024" << NameCheck::Valid << "2024";
    QTest::newRow("blank inside") << "a  b" << NameCheck::Valid << "a  b";
    QTest::newRow("hyphen") << "my-list" << NameCheck::Invalid << "";
    QTest::newRow("accented") << QStringLiteral("caf\u00e9") << NameCheck::Invalid << "";
    QTest::newRow("accented capital") << QStringLiteral("CAF\u00c9") << NameCheck::Invalid << "";
    QTest::newRow("full stop") << "my.list" << NameCheck::Invalid << "";
    QTest::newRow("underscore") << "my_list" << NameCheck::Invalid << "";
    QTest::newRow("tab is no blank") << "\tanimals" << NameCheck::Invalid << "";
    QTest::newRow("slash") << "a/b" << NameCheck::Invalid << "";
    QTest::newRow("empty") << "" << NameCheck::Abandon << "";
    QTest::newRow("blanks only") << "    " << NameCheck::Abandon << "";
}

// A name is lower-cased and trimmed of blanks; empty abandons; only a-z, 0-9 and blank pass.
void TestWordListFiles::checkListName()
{
    QFETCH(QString, typed);
    QFETCH(NameCheck, outcome);
    QFETCH(QString, name);
    const CheckedName checked = CheckListName(typed);
    QCOMPARE(checked.outcome, outcome);
    QCOMPARE(checked.name, name);
}

// The name My List 2 is saved as the file "my list 2.wds" in the list folder.
void TestWordListFiles::savedNameMakesFileName()
{
    FakePlatform fp;
    const CheckedName checked = CheckListName(QStringLiteral("My List 2"));
    QCOMPARE(checked.outcome, NameCheck::Valid);
    QString path;
    FileFailure failure;
    QVERIFY(WriteList(fp.files, fp.system.folder, checked.name, {QStringLiteral("cat")}, path,
                      failure));
    QCOMPARE(path, fp.path(QStringLiteral("my list 2.wds")));
    QCOMPARE(EnumerateLists(fp.files, fp.system.folder), QStringList{"my list 2.wds"});
    QCOMPARE(fp.readFile(QStringLiteral("my list 2.wds")), QByteArray("cat\r\n"));
}

void TestWordListFiles::makeWord_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("inList");
    QTest::addColumn<MadeWordOutcome>("outcome");
    QTest::addColumn<QString>("word");

    QTest::newRow("blanks and capitals") << "  Ice Cream  " << 0 << MadeWordOutcome::Word
                                         << "icecream";
    QTest::newRow("15 with blanks") << "ice cream cones" << 0 << MadeWordOutcome::Word
                                    << "icecreamcones";
    QTest::newRow("15 inside blanks at ends") << "   abcdefghijklmno   " << 39
                                              << MadeWordOutcome::Word << "abcdefghijklmno";
    QTest::newRow("16 though 14 without blanks")
        << "ice cream  cones" << 0 << MadeWordOutcome::TooLong << "";
    QTest::newRow("16 letters") << "abcdefghijklmnop" << 0 << MadeWordOutcome::TooLong << "";
    QTest::newRow("other characters stay") << "O'Brien-Smith,2" << 0 << MadeWordOutcome::Word
                                           << "o'brien-smith,2";
    QTest::newRow("accented") << QStringLiteral("CAF\u00c9") << 0 << MadeWordOutcome::Word
                              << QStringLiteral("caf\u00e9");
    QTest::newRow("tab is no blank") << "\tcat" << 0 << MadeWordOutcome::Word << "\tcat";
    QTest::newRow("empty") << "" << 0 << MadeWordOutcome::NoWord << "";
    QTest::newRow("blanks only") << "     " << 39 << MadeWordOutcome::NoWord << "";
    QTest::newRow("full beats empty") << "" << 40 << MadeWordOutcome::ListFull << "";
    QTest::newRow("full beats too long") << "abcdefghijklmnopq" << 40 << MadeWordOutcome::ListFull
                                         << "";
    QTest::newRow("full with a good word") << "cat" << 40 << MadeWordOutcome::ListFull << "";
    QTest::newRow("over full") << "cat" << 41 << MadeWordOutcome::ListFull << "";
}

// Add's rule: list full, then no word, then too long (blanks inside count), then the word.
void TestWordListFiles::makeWord()
{
    QFETCH(QString, typed);
    QFETCH(int, inList);
    QFETCH(MadeWordOutcome, outcome);
    QFETCH(QString, word);
    const MadeWord made = MakeWord(typed, inList);
    QCOMPARE(made.outcome, outcome);
    QCOMPARE(made.word, word);
}

// Lists are the .wds files of the folder in any case, sorted without regard to case.
void TestWordListFiles::enumerationOrderAndCase()
{
    FakePlatform fp;
    for (const char *name : {"Zoo.WDS", "apple.wds", "Birds.wds", "cats.Wds", "notes.txt",
                             "old.wds.bak", "wds", "x.wdsx"})
        fp.writeFile(QString::fromLatin1(name), "a\r\n");
    QVERIFY(QDir(fp.dir.path()).mkdir(QStringLiteral("folder.wds")));
    QCOMPARE(EnumerateLists(fp.files, fp.system.folder),
             (QStringList{"apple.wds", "Birds.wds", "cats.Wds", "Zoo.WDS"}));
    QCOMPARE(CountLists(fp.files, fp.system.folder), 4);

    // Each is opened by its real name.
    qint32 count = 0;
    FileFailure failure;
    QVERIFY(CountWords(fp.files, fp.system.folder, QStringLiteral("Zoo.WDS"), count, failure));
    QCOMPARE(count, 1);
}

// A list saved under the name of an existing file with another case of name replaces that file.
void TestWordListFiles::caseOfExistingFileIsKept()
{
    FakePlatform fp;
    fp.writeFile(QStringLiteral("Zoo.WDS"), "lion\r\n");
    QCOMPARE(ExistingListPath(fp.files, fp.system.folder, QStringLiteral("zoo")),
             fp.path(QStringLiteral("Zoo.WDS")));
    QCOMPARE(ExistingListPath(fp.files, fp.system.folder, QStringLiteral("farm")),
             fp.path(QStringLiteral("farm.wds")));

    QString path;
    FileFailure failure;
    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("zoo"),
                      {QStringLiteral("seal")}, path, failure));
    QCOMPARE(path, fp.path(QStringLiteral("Zoo.WDS")));
    QCOMPARE(EnumerateLists(fp.files, fp.system.folder), QStringList{"Zoo.WDS"});
    QCOMPARE(fp.readFile(QStringLiteral("Zoo.WDS")), QByteArray("seal\r\n"));

    // An exact name wins over one that differs in case.
    fp.writeFile(QStringLiteral("zoo.wds"), "ant\r\n");
    QCOMPARE(ExistingListPath(fp.files, fp.system.folder, QStringLiteral("zoo")),
             fp.path(QStringLiteral("zoo.wds")));
}

// The folder is read afresh: a list saved or deleted is counted at once.
void TestWordListFiles::countFollowsSavesAndDeletes()
{
    FakePlatform fp;
    QCOMPARE(CountLists(fp.files, fp.system.folder), 0);
    QString path;
    FileFailure failure;
    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("b"), {QStringLiteral("x")},
                      path, failure));
    QCOMPARE(CountLists(fp.files, fp.system.folder), 1);
    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("a"), {QStringLiteral("x")},
                      path, failure));
    QCOMPARE(EnumerateLists(fp.files, fp.system.folder), (QStringList{"a.wds", "b.wds"}));
    // Replacing a list adds none.
    QVERIFY(WriteList(fp.files, fp.system.folder, QStringLiteral("a"), {QStringLiteral("y")},
                      path, failure));
    QCOMPARE(CountLists(fp.files, fp.system.folder), 2);
    QVERIFY(DeleteList(fp.files, fp.system.folder, QStringLiteral("b.wds"), failure));
    QCOMPARE(EnumerateLists(fp.files, fp.system.folder), QStringList{"a.wds"});
    QVERIFY(!QFile::exists(fp.path(QStringLiteral("b.wds"))));
}

// A write that fails names the file and why, and leaves the old file byte for byte.
void TestWordListFiles::failedWriteLosesNothing()
{
    FakePlatform fp;
    const QByteArray old("cat\r\ndog\r\n");
    fp.writeFile(QStringLiteral("pets.wds"), old);
    fp.files.failAllWrites = true;
    QString path;
    FileFailure failure;
    QVERIFY(!WriteList(fp.files, fp.system.folder, QStringLiteral("pets"),
                       {QStringLiteral("owl")}, path, failure));
    QCOMPARE(failure.path, fp.path(QStringLiteral("pets.wds")));
    QVERIFY(!failure.reason.isEmpty());
    QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), old);

    fp.files.failAllWrites = false;
    fp.files.failWrite.insert(fp.path(QStringLiteral("new.wds")));
    QVERIFY(!WriteList(fp.files, fp.system.folder, QStringLiteral("new"),
                       {QStringLiteral("owl")}, path, failure));
    QCOMPARE(failure.path, fp.path(QStringLiteral("new.wds")));
    QCOMPARE(CountLists(fp.files, fp.system.folder), 1);
}

// The real file layer reports a folder that isn't there, with the system's reason.
void TestWordListFiles::realWriteFailure()
{
    QTemporaryDir dir;
    const QString gone = QDir(dir.path()).filePath(QStringLiteral("gone"));
    QtFiles files;
    QString path;
    FileFailure failure;
    QVERIFY(!WriteList(files, gone, QStringLiteral("pets"), {QStringLiteral("owl")}, path,
                       failure));
    QCOMPARE(failure.path, ListPath(gone, QStringLiteral("pets")));
    QVERIFY(!failure.reason.isEmpty());
    QVERIFY(!QFile::exists(failure.path));
}

// A file that vanished can't be counted, read or deleted; each says which file and why.
void TestWordListFiles::vanishedFile()
{
    FakePlatform fp;
    qint32 count = 7;
    FileFailure failure;
    QVERIFY(!CountWords(fp.files, fp.system.folder, QStringLiteral("gone.wds"), count, failure));
    QCOMPARE(count, 0);
    QCOMPARE(failure.path, fp.path(QStringLiteral("gone.wds")));
    QVERIFY(!failure.reason.isEmpty());

    QStringList entries{QStringLiteral("stale")};
    failure = {};
    QVERIFY(!ReadForEditing(fp.files, fp.path(QStringLiteral("gone.wds")), entries, failure));
    QVERIFY(entries.isEmpty());
    QCOMPARE(failure.path, fp.path(QStringLiteral("gone.wds")));
    QVERIFY(!failure.reason.isEmpty());

    failure = {};
    QVERIFY(!DeleteList(fp.files, fp.system.folder, QStringLiteral("gone.wds"), failure));
    QCOMPARE(failure.path, fp.path(QStringLiteral("gone.wds")));
    QVERIFY(!failure.reason.isEmpty());
}

// A delete that fails leaves the file in place and says why.
void TestWordListFiles::failedDeleteKeepsFile()
{
    FakePlatform fp;
    fp.writeFile(QStringLiteral("pets.wds"), "cat\r\n");
    fp.files.failRemove.insert(fp.path(QStringLiteral("pets.wds")));
    FileFailure failure;
    QVERIFY(!DeleteList(fp.files, fp.system.folder, QStringLiteral("pets.wds"), failure));
    QCOMPARE(failure.path, fp.path(QStringLiteral("pets.wds")));
    QCOMPARE(failure.reason, QStringLiteral("Permission denied"));
    QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\n"));
}

QTEST_GUILESS_MAIN(TestWordListFiles)
#include "tst_wordlistfiles.moc"
