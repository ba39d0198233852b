#include "platform/qtsound.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace lexicove;

class TestQtSound : public QObject {
    Q_OBJECT

private slots:
    void playsNeverWaitAndShutdownNeverHangs();
};

void TestQtSound::playsNeverWaitAndShutdownNeverHangs()
{
    // Starting a sound returns at once, whatever the file or the audio
    // device; every request is handled in the sound thread; missing and
    // broken files are no failure; shutting down right after a sound started
    // ends promptly, and a play after it does nothing.
    QTemporaryDir dir;
    const QString folder = dir.path();
    const QString letters = QStringLiteral(LEXICOVE_SOURCE_DIR "/assets/sounds");
    for (const char *name : {"a.wav", "b.wav", "mark.wav"})
        QVERIFY(QFile::copy(QDir(letters).filePath(QString::fromLatin1(name)),
                            QDir(folder).filePath(QString::fromLatin1(name))));
    QFile broken(QDir(folder).filePath(QStringLiteral("c.wav")));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("RIFF\x10\x00\x00\x00WAVE"); // cut short
    broken.close();

    QtSound sound;
    sound.preloadFolder(folder);
    QVERIFY(sound.waitUntilIdle(5000));

    QElapsedTimer timer;
    timer.start();
    const QStringList names = {"a.wav", "b.wav", "c.wav", "missing.wav", "mark.wav"};
    for (int i = 0; i < 200; ++i)
        sound.play(QDir(folder).filePath(names.at(i % names.size())));
    QVERIFY2(timer.elapsed() < 200, "200 play requests held up the caller");
    QVERIFY(sound.waitUntilIdle(5000));
    // Requests that pile up are coalesced: the newest is always played.
    QVERIFY(sound.handledCount() >= 1);
    QVERIFY(sound.handledCount() <= 200);

    sound.play(QDir(folder).filePath(QStringLiteral("a.wav")));
    timer.restart();
    sound.shutdown();
    QVERIFY2(timer.elapsed() < 3000, "shutting down after a sound hung");
    const int handled = sound.handledCount();
    sound.play(QDir(folder).filePath(QStringLiteral("b.wav")));
    sound.shutdown();
    QCOMPARE(sound.handledCount(), handled);
}

QTEST_MAIN(TestQtSound)
#include "tst_qtsound.moc"
