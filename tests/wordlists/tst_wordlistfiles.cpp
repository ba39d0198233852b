// The word list files: the byte layout, the listing, the readers and the name and word rules.

#include "fakeplatform.h"
#include "setup/wordloading.h"
#include "wordlists/wordlistformat.h"
#include "wordlists/wordlists.h"

#include <QTest>

using namespace lexicove;
using namespace lexicove::test;

static const QByteArray kBom = "\xef\xbb\xbf"; // the UTF-8 byte order mark

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
        TextFormat format;
        QVERIFY(
            WriteList(fp.files, fp.system.folder, "pets", {"cat", "dog"}, format, path, failure));
        QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\ndog\r\n"));
        fp.files.failAllWrites = true;
        QVERIFY(!WriteList(fp.files, fp.system.folder, "pets", {"owl"}, format, path, failure));
        QCOMPARE(fp.readFile(QStringLiteral("pets.wds")), QByteArray("cat\r\ndog\r\n"));
        for (const char *name : {"Zoo.WDS", "apple.wds", "notes.txt", "old.wds.bak"})
            fp.writeFile(QString::fromLatin1(name), "a\r\n");
        QCOMPARE(EnumerateLists(fp.files, fp.system.folder),
                 (QStringList{"apple.wds", "pets.wds", "Zoo.WDS"}));
    }

    // The lines (counted, and a puzzle's words) and the editor's entries differ, as
    // tabled, on blank lines, a last line without a line end, commas and quotes; CR LF, a
    // lone CR and a lone LF each end a line, and a byte order mark is no part of the first.
    void readers()
    {
        const QStringList kPets = {"cat", "dog", "owl"};
        const struct {
            QByteArray bytes;
            QStringList lines, entries;
        } files[] = {{"a\r\n\r\nb,c", {"a", "", "b,c"}, {"a", "", "b", "c"}},
                     {"\"a,b\"\r\n\"i\",c\r\n", {"\"a,b\"", "\"i\",c"}, {"a,b", "i", "c"}},
                     {"cat\ndog\nowl\n", kPets, kPets},
                     {"cat\rdog\rowl", kPets, kPets},
                     {"cat\r\ndog\rowl\n", kPets, kPets},
                     {kBom + "cat\r\ndog\r\nowl\r\n", kPets, kPets},
                     {"\n\r\r\n", {"", "", ""}, {"", "", ""}},
                     {kBom, {}, {}},
                     {"\xef\xbb", {"\u00ef\u00bb"}, {"\u00ef\u00bb"}}};
        for (const auto &file : files) {
            QCOMPARE(ReadLines(file.bytes), file.lines);
            QCOMPARE(ReadEntries(file.bytes), file.entries);
            // Counted and loaded for a puzzle from the file, whole and split at every byte.
            for (const qsizetype piece : {Files::kPieceSize, qsizetype(1)}) {
                FakePlatform fp;
                fp.files.pieceSize = piece;
                fp.writeFile("list.wds", file.bytes);
                qint32 count = -1;
                FileFailure failure;
                QVERIFY(CountWords(fp.files, fp.system.folder, "list.wds", count, failure));
                QCOMPARE(count, file.lines.size());
                GameState state;
                state.wordListPath = fp.path("list.wds");
                QString error;
                QVERIFY(LoadWords(state, fp.files, error));
                QStringList loaded(state.words.begin() + 1,
                                   state.words.begin() + 1 + state.wordCount);
                loaded.sort();
                QStringList lines = file.lines;
                lines.sort();
                QCOMPARE(loaded, lines);
            }
        }
    }

    // No character is ever replaced: a list is written back in the encoding it was read in,
    // byte for byte when untouched, and in UTF-8 once it holds what that encoding can't; the
    // bytes written read back as the same words.
    void encodings()
    {
        const QString kMark(QChar(0xFEFF)); // a character, not a mark, inside a word
        const struct {
            QByteArray bytes; // as read; empty for a new list
            QString added;
            QStringList words;
            QByteArray written;
        } lists[] = {
            {"cat\r\n", {}, {"cat"}, "cat\r\n"},
            {"caf\xe9\r\n", {}, {"caf\u00e9"}, "caf\xe9\r\n"},
            {"caf\xe9\r\n", "\u0142", {"caf\u00e9", "\u0142"}, "caf\xc3\xa9\r\n\xc5\x82\r\n"},
            {"cat\r\n", "\u00e9", {"cat", "\u00e9"}, "cat\r\n\xe9\r\n"},
            {{}, "\u20ac", {"\u20ac"}, "\xe2\x82\xac\r\n"},
            {"\xce\xb1\r\n", "\u00e9", {"\u03b1", "\u00e9"}, "\xce\xb1\r\n\xc3\xa9\r\n"},
            {kBom + "cat\r\n", {}, {"cat"}, kBom + "cat\r\n"},
            {kBom + "\xe9\r\n", {}, {"\u00e9"}, kBom + "\xe9\r\n"},
            // Latin-1 "ß°" is valid UTF-8: shown as that, written back as it was.
            {"\xdf\xb0\r\n", {}, {"\u07f0"}, "\xdf\xb0\r\n"},
            // Typed, its Latin-1 bytes would read back as UTF-8: it is written in UTF-8.
            {{}, "\u00df\u00b0", {"\u00df\u00b0"}, "\xc3\x9f\xc2\xb0\r\n"},
            {{}, kMark + "a", {kMark + "a"}, kBom + kBom + "a\r\n"}};
        for (const auto &list : lists) {
            TextFormat format;
            QStringList words = ReadEntries(list.bytes, &format);
            if (!list.added.isEmpty())
                words << list.added;
            QCOMPARE(words, list.words);
            const QByteArray written = WriteWords(words, format);
            QCOMPARE(written, list.written);
            QCOMPARE(ReadEntries(written), words);
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
