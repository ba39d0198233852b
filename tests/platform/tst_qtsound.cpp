#include "platform/qtsound.h"
#include "platform/soundfolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

using namespace lexicove;

namespace {

const QString kShipped = QStringLiteral(LEXICOVE_SOURCE_DIR "/assets/sounds");

void copySound(const QString &from, const QString &folder, const QString &name)
{
    QVERIFY(QFile::copy(QDir(kShipped).filePath(from), QDir(folder).filePath(name)));
}

// Every lower-case letter the game gives a voice of its own, by script.
QList<char32_t> shippedLetters()
{
    QList<char32_t> letters;
    const auto add = [&](char32_t first, char32_t last) {
        for (char32_t c = first; c <= last; ++c)
            letters.append(c);
    };
    add(U'a', U'z');
    add(U'ß', U'ÿ'); // Latin-1
    letters.removeOne(U'÷');
    for (char32_t c = 0x0100; c <= 0x017F; ++c) { // Latin Extended-A
        if (QChar::category(c) == QChar::Letter_Lowercase)
            letters.append(c);
    }
    letters.append(U'ΐ'); // Greek
    add(U'ά', U'ώ');
    add(U'а', U'џ'); // Cyrillic
    letters.append(U'ґ');
    return letters;
}

// The samples of a RIFF wave file of 16-bit PCM, and its rate; none when it
// is not one or is cut short.
QList<qint16> samplesOf(const QByteArray &file, int &rate)
{
    if (!file.startsWith("RIFF") || file.mid(8, 4) != "WAVE")
        return {};
    bool pcm16 = false;
    for (qsizetype at = 12; at + 8 <= file.size();) {
        const QByteArray id = file.mid(at, 4);
        const qsizetype length = qFromLittleEndian<quint32>(file.constData() + at + 4);
        if (at + 8 + length > file.size())
            return {};
        const char *body = file.constData() + at + 8;
        if (id == "fmt ") {
            pcm16 = qFromLittleEndian<quint16>(body) == 1 &&
                    qFromLittleEndian<quint16>(body + 2) == 1 &&
                    qFromLittleEndian<quint16>(body + 14) == 16;
            rate = int(qFromLittleEndian<quint32>(body + 4));
        } else if (id == "data" && pcm16) {
            QList<qint16> samples(length / 2);
            for (qsizetype i = 0; i < samples.size(); ++i)
                samples[i] = qFromLittleEndian<qint16>(body + 2 * i);
            return samples;
        }
        at += 8 + length + (length & 1);
    }
    return {};
}

} // namespace

class TestQtSound : public QObject {
    Q_OBJECT

private slots:
    void playsNeverWaitAndShutdownNeverHangs();
    void findsALetterWhateverItsCase();
    void everyLetterHasAVoiceOfItsOwn();
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

// The game's sounds give every lower-case letter of Latin-1, Latin Extended-A, Greek and
// Cyrillic a whole, audible wave file of its own, found for its capital too; no two files share
// their bytes.
void TestQtSound::everyLetterHasAVoiceOfItsOwn()
{
    const SoundFolder shipped(kShipped);
    QStringList faults;
    for (const char32_t letter : shippedLetters()) {
        // A letter that folds to another is that letter where names ignore case (final sigma
        // and long s), so it is heard as that letter everywhere.
        const char32_t own = QChar::toCaseFolded(letter);
        const QString path = QDir(kShipped).filePath(QString::fromUcs4(&own, 1) + ".wav");
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            faults << path + " missing";
            continue;
        }
        int rate = 0;
        const QList<qint16> samples = samplesOf(file.readAll(), rate);
        // Longer than the 200 ms of silence at the end, and louder than -30 dBFS somewhere.
        const bool heard = std::any_of(samples.cbegin(), samples.cend(),
                                       [](qint16 s) { return std::abs(s) > 1000; });
        if (rate <= 0 || samples.size() <= rate / 5 || !heard)
            faults << path + " is not a whole, audible 16-bit PCM wave file";
        // Dotless ı's capital is I, which is i's too.
        const char32_t capital = QChar::toUpper(letter);
        for (const char32_t asked : {letter, capital}) {
            const QString name = QString::fromUcs4(&asked, 1) + ".wav";
            if (QChar::toCaseFolded(asked) == own && shipped.find(name) != path)
                faults << name + " finds " + shipped.find(name);
        }
    }
    QHash<QByteArray, QString> owners;
    const QStringList files = QDir(kShipped).entryList({QStringLiteral("*.wav")}, QDir::Files);
    for (const QString &name : files) {
        QFile file(QDir(kShipped).filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray digest =
            QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
        if (owners.contains(digest))
            faults << name + " has the bytes of " + owners.value(digest);
        owners.insert(digest, name);
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
}

QTEST_MAIN(TestQtSound)
#include "tst_qtsound.moc"
