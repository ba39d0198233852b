#include "platform/qtsound.h"

#include "platform/soundfolder.h"

#include <QApplication>
#include <QAudioDevice>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMediaDevices>
#include <QMutex>
#include <QMutexLocker>
#include <QSemaphore>
#include <QSet>
#include <QSoundEffect>
#include <QThread>
#include <QTimer>
#include <QUrl>
#include <QtEndian>

#include <atomic>
#include <optional>
#include <utility>

namespace lexicove {

namespace {

// How long the sound thread waits for files still loading before it lets go
// of the effects, and how long shutdown() waits for the sound thread.
constexpr int kLoadWaitMs = 1000;
constexpr int kThreadWaitMs = 3000;
// How long the sound thread lets the sound server answer the closing of its
// streams before the program may end. Qt's PulseAudio engine is torn down at
// exit without holding its main loop's lock, and crashes (about one exit in a
// hundred) when a message from the server is being handled at that moment.
constexpr int kSettleMs = 100;
// How often the sound thread looks whether files still loading have stalled.
constexpr int kStallMs = 30;

QString keyFor(const QString &path)
{
    return QDir::cleanPath(QDir::fromNativeSeparators(path));
}

// The system's default sound, made in the application's thread.
void beep()
{
    if (QCoreApplication *app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, [] { QApplication::beep(); }, Qt::QueuedConnection);
}

quint16 le16(const QByteArray &bytes, int at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

// Whether the file is a whole RIFF wave file of uncompressed samples. Qt's
// loader waits for ever on a file cut short (its header promises bytes that
// never come), and a sample that never loads makes releasing any effect hang;
// such files are refused here and beep instead.
bool isWholeWaveFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const qint64 size = file.size();
    const QByteArray riff = file.read(12);
    if (riff.size() != 12 || !riff.startsWith("RIFF") || riff.mid(8, 4) != "WAVE")
        return false;
    bool formatKnown = false;
    qint64 at = 12;
    while (at + 8 <= size && file.seek(at)) {
        const QByteArray chunk = file.read(8);
        if (chunk.size() != 8)
            return false;
        const qint64 length = qFromLittleEndian<quint32>(chunk.constData() + 4);
        if (chunk.startsWith("fmt ")) {
            const QByteArray format = file.read(qMin<qint64>(length, 18));
            if (format.size() < 16)
                return false;
            const quint16 tag = le16(format, 0);
            const quint16 channels = le16(format, 2);
            const quint16 bits = le16(format, 14);
            const bool pcm = (tag == 1 || tag == 0xFFFE)
                             && (bits == 8 || bits == 16 || bits == 24 || bits == 32);
            const bool floats = tag == 3 && bits == 32;
            formatKnown = (pcm || floats) && channels >= 1 && channels <= 8;
        } else if (chunk.startsWith("data")) {
            return formatKnown && length > 0 && at + 8 + length <= size;
        }
        at += 8 + length + (length & 1);
    }
    return false;
}

} // namespace

// The part of the player that lives in the sound thread.
//
// A request's path is resolved to a file through its folder's listing
// (m_folders, made when a folder is first met and again at each prepare);
// m_resolved remembers the answer, empty for none. m_sounds maps a file's
// cleaned path to what is known of it: when it last changed, whether it is a
// whole wave file, and an effect that holds its samples in Qt's cache (none
// when there is no audio device). That effect is never played: every play gets a fresh
// effect on the file, which finds the samples loaded, and the one before it
// is stopped and deleted. On PulseAudio a QSoundEffect that is played again
// opens its stream asking for the buffer granted last time, which the server
// shrinks on every replay, until around the tenth replay the sound stutters
// and then never starts (while the effect still reports that it plays).
//
// Qt's sample cache (6.4) loads in a thread of its own that ends after its
// last load, and can be left stopped with samples waiting: one asked for
// just as the thread ends is never loaded, and the thread is started again
// only for a sample it has never seen (a puzzle's letters then stay silent).
// While anything loads, the sound thread looks every kStallMs; when no load
// has ended since the last look, it asks for a file still loading under a
// name never used (a query added to its address), which starts the thread.
//
// Releasing a sample while another loads can deadlock in Qt's sample cache,
// so files that prepare() no longer needs, or that changed on disk, wait in
// m_unneeded until nothing is loading; finish() likewise deletes the effects
// only when none is still loading, and otherwise leaves them to the end of
// the process.
class SoundPlayer {
public:
    // context lives in the sound thread; the checks on loads run there.
    explicit SoundPlayer(QObject *context) : m_context(context) {}

    void prepare(const QStringList &paths)
    {
        m_folders.clear();
        m_resolved.clear();
        QStringList files;
        for (const QString &path : paths) {
            const QString file = resolve(keyFor(path));
            if (!file.isEmpty())
                files.append(file);
        }
        const QSet<QString> needed(files.cbegin(), files.cend());
        for (auto sound = m_sounds.cbegin(); sound != m_sounds.cend(); ++sound) {
            // A file replaced since it was loaded (a teacher's new recording)
            // is loaded again.
            if (!needed.contains(sound.key()) || sound->stamp != stampOf(sound.key()))
                m_unneeded.insert(sound.key());
        }
        // The old samples go first, while nothing loads; a file still needed
        // that can't be let go of yet keeps its old samples.
        releaseUnneeded();
        m_unneeded -= needed;
        for (const QString &file : std::as_const(files))
            soundFor(file);
        watchLoads();
    }

    // From the application's thread: the newest request not yet served
    // replaces the one before, which it would cut off at once anyway.
    // Returns whether the sound thread must be asked to serve.
    bool request(const QString &path)
    {
        QMutexLocker lock(&m_requestMutex);
        m_request = path;
        return !std::exchange(m_servePosted, true);
    }

    void serve()
    {
        QMutexLocker lock(&m_requestMutex);
        const std::optional<QString> request = std::exchange(m_request, std::nullopt);
        m_servePosted = false;
        lock.unlock();
        if (request)
            play(keyFor(*request));
    }

    void play(const QString &key)
    {
        stopPlaying();
        QString file = resolve(key);
        const File *sound = file.isEmpty() ? nullptr : &soundFor(file);
        if (!sound || !sound->playable ||
            (sound->samples && sound->samples->status() == QSoundEffect::Error)) {
            beep();
            file.clear();
        } else if (sound->samples) {
            m_playing = makeEffect(file);
            m_playing->play(); // one still loading starts once it has loaded
            m_streamed = true;
        }
        {
            QMutexLocker lock(&m_requestMutex);
            m_lastFile = file;
        }
        ++handled;
        releaseUnneeded();
        watchLoads();
    }

    // The number of effects still loading, and the file of one of them.
    int loading(QString *file = nullptr) const
    {
        int count = 0;
        for (auto sound = m_sounds.cbegin(); sound != m_sounds.cend(); ++sound) {
            if (sound->samples && sound->samples->status() == QSoundEffect::Loading) {
                ++count;
                if (file)
                    *file = sound.key();
            }
        }
        for (const QSoundEffect *effect : std::as_const(m_restarts))
            count += effect->status() == QSoundEffect::Loading;
        return count + (m_playing && m_playing->status() == QSoundEffect::Loading);
    }
    bool anyLoading() const { return loading() > 0; }

    // Runs this thread's events (the effects learn there that they have
    // loaded) until nothing is loading or the deadline passes.
    bool waitForLoads(QDeadlineTimer deadline)
    {
        while (anyLoading()) {
            if (deadline.hasExpired())
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            QThread::msleep(1);
        }
        releaseUnneeded();
        return true;
    }

    void finish()
    {
        if (m_playing)
            m_playing->stop();
        if (waitForLoads(QDeadlineTimer(kLoadWaitMs))) {
            delete std::exchange(m_playing, nullptr);
            for (const File &sound : std::as_const(m_sounds))
                delete sound.samples;
            qDeleteAll(std::exchange(m_restarts, {}));
        } else {
            qWarning("Lexicove: a sound file is still loading; its sounds are left to the end "
                     "of the program");
        }
        m_sounds.clear();
        if (m_streamed)
            QThread::msleep(kSettleMs);
    }

    QString lastFile()
    {
        QMutexLocker lock(&m_requestMutex);
        return m_lastFile;
    }

    std::atomic<int> handled{0};

private:
    // When a file was last changed, and its size.
    using Stamp = std::pair<QDateTime, qint64>;
    static Stamp stampOf(const QString &file)
    {
        const QFileInfo info(file);
        return {info.lastModified(), info.size()};
    }

    struct File {
        Stamp stamp;
        bool playable = false;           // a whole wave file
        QSoundEffect *samples = nullptr; // none without an audio device
    };

    // Asked once: without an audio device QSoundEffect can't sound, and
    // warns about it for every effect made.
    bool hasAudioDevice()
    {
        if (!m_hasAudioDevice)
            m_hasAudioDevice = !QMediaDevices::defaultAudioOutput().isNull();
        return *m_hasAudioDevice;
    }

    static QSoundEffect *makeEffect(const QString &file)
    {
        auto *effect = new QSoundEffect;
        // The samples are decoded in Qt's loading thread, once per file.
        effect->setSource(QUrl::fromLocalFile(file));
        return effect;
    }

    // The cleaned path of the file that plays for the request key, or empty.
    QString resolve(const QString &key)
    {
        const auto known = m_resolved.constFind(key);
        if (known != m_resolved.cend())
            return *known;
        const QFileInfo request(key);
        auto listed = m_folders.find(request.path());
        if (listed == m_folders.end())
            listed = m_folders.insert(request.path(), SoundFolder(request.path()));
        const QString file = listed->find(request.fileName());
        return *m_resolved.insert(key, file.isEmpty() ? file : keyFor(file));
    }

    const File &soundFor(const QString &file)
    {
        auto found = m_sounds.find(file);
        if (found != m_sounds.end())
            return *found;
        // Looked at once and remembered either way.
        File sound;
        sound.stamp = stampOf(file);
        sound.playable = isWholeWaveFile(file);
        if (sound.playable && hasAudioDevice())
            sound.samples = makeEffect(file);
        return *m_sounds.insert(file, sound);
    }

    // Lets go of the samples prepare() no longer needs, and of those asked
    // for to restart Qt's loading, once nothing loads.
    void releaseUnneeded()
    {
        if ((m_unneeded.isEmpty() && m_restarts.isEmpty()) || anyLoading())
            return;
        for (const QString &file : std::as_const(m_unneeded))
            delete m_sounds.take(file).samples;
        m_unneeded.clear();
        qDeleteAll(std::exchange(m_restarts, {}));
    }

    // Looks at the loads in kStallMs, unless a look is due already.
    void watchLoads()
    {
        if (m_watching || !anyLoading())
            return;
        m_watching = true;
        m_loadingAtLastLook = -1;
        QTimer::singleShot(kStallMs, m_context, [this] { lookAtLoads(); });
    }

    void lookAtLoads()
    {
        m_watching = false;
        QString file;
        const int count = loading(&file);
        if (count == 0) {
            releaseUnneeded();
            return;
        }
        if (count == m_loadingAtLastLook && !file.isEmpty()) {
            QUrl again = QUrl::fromLocalFile(file);
            again.setQuery(QStringLiteral("again=%1").arg(++m_restartCount));
            auto *effect = new QSoundEffect;
            effect->setSource(again);
            m_restarts.append(effect);
        }
        m_loadingAtLastLook = count;
        m_watching = true;
        QTimer::singleShot(kStallMs, m_context, [this] { lookAtLoads(); });
    }

    // Stops the sound still playing, if any, and lets go of its effect; the
    // samples stay with the file's own effect.
    void stopPlaying()
    {
        if (!m_playing)
            return;
        m_playing->stop();
        delete std::exchange(m_playing, nullptr);
    }

    QObject *m_context;                    // in the sound thread
    QHash<QString, SoundFolder> m_folders; // by cleaned folder path
    QHash<QString, QString> m_resolved;    // cleaned request path -> file, or empty
    QHash<QString, File> m_sounds;         // by the file's cleaned path
    QSet<QString> m_unneeded;              // files of m_sounds to let go of
    QSoundEffect *m_playing = nullptr;     // the effect of the last play
    std::optional<bool> m_hasAudioDevice;
    bool m_streamed = false; // an effect has been started on an audio device
    bool m_watching = false; // a look at the loads is due
    int m_loadingAtLastLook = -1;
    QList<QSoundEffect *> m_restarts; // asked for to restart Qt's loading
    int m_restartCount = 0;

    QMutex m_requestMutex; // guards the three below
    std::optional<QString> m_request;
    bool m_servePosted = false;
    QString m_lastFile;
};

QtSound::QtSound()
{
    m_thread = new QThread;
    m_thread->setObjectName(QStringLiteral("Lexicove sound"));
    m_context = new QObject;
    m_context->moveToThread(m_thread);
    m_player = std::make_unique<SoundPlayer>(m_context);
    m_thread->start(QThread::HighPriority);
}

QtSound::~QtSound()
{
    shutdown();
}

void QtSound::shutdown()
{
    if (m_shutDown)
        return;
    m_shutDown = true;
    SoundPlayer *player = m_player.get();
    QMetaObject::invokeMethod(
        m_context,
        [player] {
            player->finish();
            QThread::currentThread()->quit();
        },
        Qt::QueuedConnection);
    if (m_thread->wait(QDeadlineTimer(kThreadWaitMs))) {
        delete m_context;
        delete m_thread;
        m_player.reset();
    } else {
        // The sound thread is stuck in the audio system. Deleting it would
        // abort the program; leave it to the end of the process instead.
        qWarning("Lexicove: the sound thread did not end; the program ends without it");
        (void)m_player.release();
    }
    m_context = nullptr;
    m_thread = nullptr;
}

void QtSound::prepare(const QStringList &paths)
{
    if (m_shutDown)
        return;
    SoundPlayer *player = m_player.get();
    QMetaObject::invokeMethod(
        m_context, [player, paths] { player->prepare(paths); }, Qt::QueuedConnection);
}

void QtSound::play(const QString &path)
{
    if (m_shutDown)
        return;
    SoundPlayer *player = m_player.get();
    if (player->request(path))
        QMetaObject::invokeMethod(m_context, [player] { player->serve(); }, Qt::QueuedConnection);
}

bool QtSound::waitUntilIdle(int timeoutMs)
{
    if (m_shutDown)
        return true;
    const QDeadlineTimer deadline(timeoutMs);
    // Shared, so that a sound thread that answers after the timeout finds it.
    auto done = std::make_shared<QSemaphore>();
    auto loaded = std::make_shared<std::atomic<bool>>(false);
    SoundPlayer *player = m_player.get();
    QMetaObject::invokeMethod(
        m_context,
        [player, done, loaded, deadline] {
            *loaded = player->waitForLoads(deadline);
            done->release();
        },
        Qt::QueuedConnection);
    return done->tryAcquire(1, qMax<qint64>(0, deadline.remainingTime())) && *loaded;
}

int QtSound::handledCount() const
{
    return m_player ? m_player->handled.load() : 0;
}

QString QtSound::lastFile() const
{
    return m_player ? m_player->lastFile() : QString();
}

} // namespace lexicove
