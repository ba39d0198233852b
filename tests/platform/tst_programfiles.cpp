#include "platform/programfiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace lexicove;

namespace {

void makeFile(const QString &path, const QByteArray &bytes = "x")
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                                  QDir::Name);
}

} // namespace

class TestProgramFiles : public QObject {
    Q_OBJECT

private slots:
    void aProgramFolderKeepsSoundsAndListsBesideTheGame();
    void anInstalledGameWritesOnlyInThePlayersFolderAndFillsItOnce();
};

void TestProgramFiles::aProgramFolderKeepsSoundsAndListsBesideTheGame()
{
    // A folder with the sounds beside the executable (a build, a portable
    // install) is the program folder for sounds and lists alike, even when an
    // installed data folder is there too; an executable with no sounds
    // anywhere still looks beside itself for them, but never keeps lists
    // there.
    QTemporaryDir root;
    const QString program = root.filePath(QStringLiteral("games"));
    const QString user = root.filePath(QStringLiteral("user"));
    makeFile(QDir(program).filePath(QStringLiteral("mark.wav")));
    makeFile(QDir(program).filePath(QStringLiteral("cats.wds")));
    makeFile(QDir(InstalledDataFolder(program)).filePath(QStringLiteral("sounds/mark.wav")));

    ProgramFiles files = FindProgramFiles(program);
    QCOMPARE(files.sounds, program);
    QVERIFY(files.programFolder);
    QCOMPARE(PrepareWordListFolder(files, user), program);
    QVERIFY(!QFileInfo::exists(user));
    QCOMPARE(entries(program), (QStringList{"cats.wds", "mark.wav"}));

    const QString bare = root.filePath(QStringLiteral("bare/games"));
    QVERIFY(QDir().mkpath(bare));
    files = FindProgramFiles(bare);
    QCOMPARE(files.sounds, bare);
    QCOMPARE(PrepareWordListFolder(files, user), user);
    QVERIFY(entries(bare).isEmpty());
}

void TestProgramFiles::anInstalledGameWritesOnlyInThePlayersFolderAndFillsItOnce()
{
    // An installed game finds its sounds in the data folder beside its
    // executable's and never writes beside the executable, even where it
    // could. The player's folder is made with a writable copy of each starter
    // list; a later run (a new version, with changed starter lists) leaves
    // the player's deletions and edits as they are.
    QTemporaryDir root;
    const QString program = root.filePath(QStringLiteral("prefix/games"));
    const QString data = InstalledDataFolder(program);
    QVERIFY(data.startsWith(root.filePath(QStringLiteral("prefix/"))));
    QVERIFY(!data.startsWith(program));
    const QString user = root.filePath(QStringLiteral("home/.local/share/Lexicove"));
    QVERIFY(QDir().mkpath(program));
    makeFile(QDir(data).filePath(QStringLiteral("sounds/mark.wav")));
    makeFile(QDir(data).filePath(QStringLiteral("sounds/a.wav")));
    const QString starters = QDir(data).filePath(QStringLiteral("wordlists"));
    makeFile(QDir(starters).filePath(QStringLiteral("animals.wds")), "cat\r\ndog\r\n");
    makeFile(QDir(starters).filePath(QStringLiteral("fruit.wds")), "fig\r\n");
    QVERIFY(QFile::setPermissions(QDir(starters).filePath(QStringLiteral("fruit.wds")),
                                  QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));

    const ProgramFiles files = FindProgramFiles(program);
    QCOMPARE(files.sounds, QDir(data).filePath(QStringLiteral("sounds")));
    QVERIFY(!files.programFolder);
    QCOMPARE(PrepareWordListFolder(files, user), user);
    QCOMPARE(entries(user), (QStringList{"animals.wds", "fruit.wds"}));
    QCOMPARE(contents(QDir(user).filePath(QStringLiteral("animals.wds"))), "cat\r\ndog\r\n");
    QCOMPARE(contents(QDir(user).filePath(QStringLiteral("fruit.wds"))), "fig\r\n");
    QVERIFY(QFileInfo(QDir(user).filePath(QStringLiteral("fruit.wds"))).permissions() &
            QFile::WriteOwner);
    QVERIFY(entries(program).isEmpty());

    QVERIFY(QFile::remove(QDir(user).filePath(QStringLiteral("animals.wds"))));
    makeFile(QDir(user).filePath(QStringLiteral("fruit.wds")), "fig\r\nkiwi\r\n");
    makeFile(QDir(starters).filePath(QStringLiteral("planets.wds")), "mars\r\n");
    QCOMPARE(PrepareWordListFolder(FindProgramFiles(program), user), user);
    QCOMPARE(entries(user), QStringList{"fruit.wds"});
    QCOMPARE(contents(QDir(user).filePath(QStringLiteral("fruit.wds"))), "fig\r\nkiwi\r\n");
    QVERIFY(entries(program).isEmpty());
}

QTEST_GUILESS_MAIN(TestProgramFiles)
#include "tst_programfiles.moc"
