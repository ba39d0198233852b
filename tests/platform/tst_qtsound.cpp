#include "platform/qtsound.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace lexicove;

namespace {

const QString kShipped = QStringLiteral(LEXICOVE_SOURCE_DIR "/assets/sounds");

void copySound(const QString &from, const QString &folder, const QString &name)
{
    QVERIFY(QFile::copy(QDir(kShipped).filePath(from), QDir(folder).filePath(name)));
}

} // namespace

class TestQtSound : public QObject {
    Q_OBJECT

private slots:
    void playsNeverWaitAndShutdownNeverHangs();
    void findsALetterWhateverItsCase();
};

void TestQtSound::playsNeverWaitAndShutdownNeverHangs()
{
    // Starting a sound returns at once, whatever the file or the audio
    // device; every request is handled in the sound thread; missing and
    // broken files are no failure; shutting down right after a sound started
    // ends promptly, and a play after it does nothing.
    QTemporaryDir dir;
    const QString folder = dir.path();
    for (const char *name : {"a.wav", "b.wav", "mark.wav"})
        copySound(QString::fromLatin1(name), folder, QString::fromLatin1(name));
    QFile broken(QDir(folder).filePath(QStringLiteral("c.wav")));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("RIFF\x10\x00\x00\x00WAVE"); // cut short
    broken.close();

    QtSound sound;
    const QStringList names = {"a.wav", "b.wav", "c.wav", "missing.wav", "mark.wav"};
    QStringList paths;
    for (const QString &name : names)
        paths << QDir(folder).filePath(name);
    sound.prepare(paths);
    QVERIFY(sound.waitUntilIdle(5000));

    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 200; ++i)
        sound.play(paths.at(i % paths.size()));
    QVERIFY2(timer.elapsed() < 200, "200 play requests held up the caller");
    QVERIFY(sound.waitUntilIdle(5000));
    // Requests that pile up are coalesced: the newest is always played.
    QVERIFY(sound.handledCount() >= 1);
    QVERIFY(sound.handledCount() <= 200);
    QCOMPARE(sound.lastFile(), paths.last());

    sound.play(paths.first());
    timer.restart();
    sound.shutdown();
    QVERIFY2(timer.elapsed() < 3000, "shutting down after a sound hung");
    const int handled = sound.handledCount();
    sound.play(paths.at(1));
    sound.shutdown();
    QCOMPARE(sound.handledCount(), handled);
}

// A letter's sound is found as a file system that ignores case finds it: the file named exactly
// first, else one whose name differs only by case (composed or not), the one in lower case when
// there are several; none, or a broken one, gives the default sound. A file added or replaced
// while the game runs counts from the next prepare on.
void TestQtSound::findsALetterWhateverItsCase()
{
    QTemporaryDir dir;
    const QString folder = dir.path();
    for (const char *name : {"p.wav", "ä.wav", "σ.wav", "i.wav", "s.wav"})
        copySound(QStringLiteral("a.wav"), folder, QString::fromUtf8(name));
    QFile broken(QDir(folder).filePath(QStringLiteral("q.wav")));
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("RIFF") == 4);
    broken.close();
    // Names that differ only by case are one file where the file system ignores case.
    const bool caseSensitive = !QFileInfo::exists(QDir(folder).filePath(QStringLiteral("P.wav")));
    const struct {
        const char *asked;
        const char *found;           // empty: the default sound
        const char *added = nullptr; // a teacher's own recording, put in first
    } cases[] = {
        {"P.wav", "p.wav"},
        {"p.wav", "p.wav"},
        {"Ä.wav", "ä.wav"},
        {"A\u0308.wav", "ä.wav"},
        {"Σ.wav", "σ.wav"},
        {"ς.wav", "σ.wav"},
        {"İ.wav", "i.wav"},
        {"ł.wav", ""},
        {"Ł.wav", ""},
        {"q.wav", ""},
        {"q.wav", "q.wav", "q.wav"},
        {"P.wav", "P.wav", "P.wav"},
        {"p.wav", "p.wav"},
        {"ſ.wav", "s.wav", "S.wav"},
    };
    QtSound sound;
    QStringList actual, expected;
    for (const auto &step : cases) {
        if (step.added) {
            const QString added = QString::fromUtf8(step.added);
            if (!caseSensitive && added != added.toLower())
                break;
            QFile::remove(QDir(folder).filePath(added));
            copySound(QStringLiteral("b.wav"), folder, added);
            sound.prepare({QDir(folder).filePath(added)});
        }
        const QString asked = QString::fromUtf8(step.asked);
        sound.play(QDir(folder).filePath(asked));
        QVERIFY(sound.waitUntilIdle(5000));
        actual << asked + " -> " + QFileInfo(sound.lastFile()).fileName();
        expected << asked + " -> " + QString::fromUtf8(step.found);
    }
    QCOMPARE(actual, expected);
}

QTEST_MAIN(TestQtSound)
#include "tst_qtsound.moc"
