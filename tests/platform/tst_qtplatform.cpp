#include "platform/qtplatform.h"
#include "fakeplatform.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <fcntl.h>
#include <future>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace lexicove;
using namespace lexicove::test;

class TestQtPlatform : public QObject {
    Q_OBJECT

private slots:
    void listsAreRegularFilesByExtensionSortedWithoutCase();
    void writesReplaceWholeOrNotAtAll();
    void readingASpecialFileFailsAtOnce();
    void randomValuesLieInTheUnitIntervalAndRepeatForASeed();
    void aSettingThatCantBeWrittenSaysWhere();
};

void TestQtPlatform::listsAreRegularFilesByExtensionSortedWithoutCase()
{
    // Every regular file (or link to one) whose extension is .wds in any case is a list, the names
    // sorted without regard to case; other files, folders and named pipes are not lists.
    QTemporaryDir dir;
    QtFiles files;
    for (const char *name : {"Zoo.WDS", "apple.wds", "Birds.Wds", "notes.txt", "x.wdsx",
                             "planets.wds.bak", "cats.wds"}) {
        QFile file(dir.filePath(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("folder.wds")));
    QStringList lists = {"apple.wds", "Birds.Wds", "cats.wds", "Zoo.WDS"};
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(dir.filePath("pipe.wds")).constData(), 0600), 0);
    QVERIFY(QFile::link(dir.filePath("cats.wds"), dir.filePath("link.wds")));
    lists.insert(3, "link.wds");
#endif
    QCOMPARE(files.list(dir.path(), QStringLiteral(".wds")), lists);
    QCOMPARE(files.list(dir.filePath(QStringLiteral("missing")), QStringLiteral(".wds")),
             QStringList());
}

void TestQtPlatform::writesReplaceWholeOrNotAtAll()
{
    // A write replaces the file's bytes exactly; a write that can't be done (no folder, a folder
    // in the way, a full disk) says why and leaves the old file whole; reading or deleting a file
    // that is gone fails with a reason instead of crashing.
    QTemporaryDir dir;
    QtFiles files;
    const QString path = dir.filePath(QStringLiteral("cat.wds"));
    QString error;
    QByteArray bytes;
    const auto holds = [&](const QByteArray &expected) {
        return files.read(path, bytes, error) && bytes == expected;
    };
    QVERIFY(files.write(path, QByteArray("cat\r\ndog\r\n"), error) && holds("cat\r\ndog\r\n"));
    QVERIFY(files.write(path, QByteArray("owl\r\n"), error) && holds("owl\r\n"));
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("taken.wds")));
    for (const char *name : {"gone/a.wds", "taken.wds"}) {
        error.clear();
        QVERIFY(!files.write(dir.filePath(QString::fromLatin1(name)), "a\r\n", error));
        QVERIFY(!error.isEmpty());
    }
    QVERIFY(QFileInfo(dir.filePath(QStringLiteral("taken.wds"))).isDir());
    QVERIFY(holds("owl\r\n"));

#ifdef Q_OS_UNIX
    // A file size limit (like a full disk) makes the write short: the old file stays whole rather
    // than being replaced by what got through. The text is smaller than the write buffer, so only
    // the last flush fails.
    struct rlimit old {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = old;
    small.rlim_cur = 4096;
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool written = files.write(path, QByteArray(10000, 'z'), error);
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, oldHandler);
    QVERIFY(!written);
    QCOMPARE(error, QStringLiteral("File too large"));
    QVERIFY(holds("owl\r\n"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"cat.wds"});
#endif

    QVERIFY(files.remove(path, error));
    QVERIFY(!QFile::exists(path));
    for (const bool removing : {false, true}) {
        error.clear();
        QVERIFY(!(removing ? files.remove(path, error) : files.read(path, bytes, error)));
        QVERIFY(!error.isEmpty());
    }
}

void TestQtPlatform::readingASpecialFileFailsAtOnce()
{
    // Reading a named pipe or a folder called like a list fails at once with a reason.
#ifdef Q_OS_UNIX
    QTemporaryDir dir;
    const QString pipe = dir.filePath(QStringLiteral("pipe.wds"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("folder.wds")));
    QtFiles files;
    QString pipeError, folderError;
    // Read on a second thread: one stuck opening the pipe is set free by a writer, so that a
    // failure fails here instead of hanging the run.
    auto reading = std::async(std::launch::async, [&] {
        QByteArray bytes;
        return !files.read(pipe, bytes, pipeError) &&
               !files.read(dir.filePath(QStringLiteral("folder.wds")), bytes, folderError);
    });
    const bool returned = reading.wait_for(std::chrono::seconds(1)) == std::future_status::ready;
    if (!returned)
        close(open(QFile::encodeName(pipe).constData(), O_WRONLY | O_NONBLOCK));
    QVERIFY2(returned, "reading a named pipe blocked");
    QVERIFY(reading.get());
    QCOMPARE(pipeError + "|" + folderError,
             QStringLiteral("Not a regular file|Not a regular file"));
#endif
}

void TestQtPlatform::randomValuesLieInTheUnitIntervalAndRepeatForASeed()
{
    // Each draw r satisfies 0 <= r < 1; one seed gives one sequence and
    // another seed another.
    SystemRandom a, b, c;
    a.seed(45296.25);
    b.seed(45296.25);
    c.seed(45296.5);
    double sum = 0;
    bool differs = false;
    for (int i = 0; i < 10000; ++i) {
        const double r = a.next();
        QVERIFY(r >= 0.0 && r < 1.0);
        QCOMPARE(b.next(), r);
        differs = differs || c.next() != r;
        sum += r;
    }
    QVERIFY(differs);
    QVERIFY(qAbs(sum / 10000 - 0.5) < 0.02);
}

void TestQtPlatform::aSettingThatCantBeWrittenSaysWhere()
{
    // A settings file that can't be written (its folder is a file) fails the store at once and
    // names the file; the value still holds for the run.
    QTemporaryDir dir;
    QFile blocker(dir.filePath(QStringLiteral("folder")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    const QString path = dir.filePath(QStringLiteral("folder/settings.ini"));
    QtSettings settings(path);
    QString error;
    QVERIFY(!settings.setNumber(QStringLiteral("puzzle/zoom"), 150, error));
    QCOMPARE(error, "\"" + path + "\" could not be written");
    QCOMPARE(settings.number(QStringLiteral("puzzle/zoom"), 100), 150);
}

QTEST_MAIN(TestQtPlatform)
#include "tst_qtplatform.moc"
