#include "fakeplatform.h"

#include "platform/soundfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

namespace lexicove::test {

MessageResult FakeDialogs::message(QWidget *, const QString &prompt, MessageButtons buttons,
                                   const QString &title)
{
    ShownDialog dialog;
    dialog.kind = ShownDialog::Kind::Message;
    dialog.prompt = prompt;
    dialog.title = title.isEmpty() ? kAppTitle : title;
    dialog.buttons = buttons;
    shown.append(dialog);
    if (onShow)
        onShow(dialog);
    if (buttons == MessageButtons::Ok)
        return MessageResult::Ok;
    if (answers.isEmpty()) {
        unexpected.append(prompt);
        return MessageResult::No;
    }
    return answers.takeFirst();
}

QString FakeDialogs::input(QWidget *, const QString &prompt, const QString &title,
                           const QString &defaultText)
{
    ShownDialog dialog;
    dialog.kind = ShownDialog::Kind::Input;
    dialog.prompt = prompt;
    dialog.title = title;
    dialog.defaultText = defaultText;
    shown.append(dialog);
    if (onShow)
        onShow(dialog);
    if (replies.isEmpty()) {
        unexpected.append(prompt);
        return defaultText;
    }
    return replies.takeFirst();
}

QStringList FakeDialogs::prompts() const
{
    QStringList list;
    for (const ShownDialog &dialog : shown)
        list.append(dialog.prompt);
    return list;
}

QString FakeDialogs::lastPrompt() const
{
    return shown.isEmpty() ? QString() : shown.last().prompt;
}

void FakeDialogs::clear()
{
    shown.clear();
    answers.clear();
    replies.clear();
    unexpected.clear();
}

QStringList FakeSound::names() const
{
    QStringList list;
    for (const QString &path : played)
        list.append(QFileInfo(path).fileName());
    return list;
}

QStringList FakeSound::found() const
{
    QStringList list;
    for (const QString &path : played)
        list.append(FindSoundFile(path));
    return list;
}

void FakeClock::callAfter(int ms, QObject *receiver, std::function<void()> action)
{
    m_calls.append({ticks + static_cast<quint32>(qMax(ms, 0)), receiver, std::move(action)});
}

void FakeClock::advance(quint32 ms)
{
    const quint32 end = ticks + ms;
    for (;;) {
        // The earliest call due by the end; calls made on the way count too.
        qsizetype next = -1;
        for (qsizetype i = 0; i < m_calls.size(); ++i) {
            const quint32 wait = m_calls[i].due - ticks;
            if (wait <= end - ticks && (next < 0 || wait < m_calls[next].due - ticks))
                next = i;
        }
        if (next < 0)
            break;
        const Call call = m_calls.takeAt(next);
        ticks = call.due;
        if (call.receiver)
            call.action();
    }
    ticks = end;
}

double FakeRandom::next()
{
    if (!script.isEmpty())
        return script.takeFirst();
    return static_cast<double>(m_engine() >> 11) * 0x1.0p-53;
}

QStringList FakeFiles::list(const QString &folder, const QString &extension)
{
    return m_real.list(folder, extension);
}

bool FakeFiles::readPieces(const QString &path, const PieceReader &take, QString &error)
{
    if (failRead.contains(path)) {
        error = QStringLiteral("Permission denied");
        return false;
    }
    bytesRead = 0;
    return m_real.readPieces(
        path,
        [&](QByteArrayView piece) {
            for (qsizetype at = 0; at < piece.size(); at += pieceSize) {
                const QByteArrayView part = piece.sliced(at, qMin(pieceSize, piece.size() - at));
                bytesRead += part.size();
                if (!take(part))
                    return false;
            }
            return true;
        },
        error);
}

bool FakeFiles::write(const QString &path, const QByteArray &bytes, QString &error)
{
    if (failAllWrites) {
        error = QStringLiteral("Permission denied");
        return false;
    }
#ifdef Q_OS_UNIX
    if (writeLimit >= 0) {
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        rlimit limited = old;
        limited.rlim_cur = static_cast<rlim_t>(writeLimit);
        const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limited);
        const bool written = m_real.write(path, bytes, error);
        setrlimit(RLIMIT_FSIZE, &old);
        signal(SIGXFSZ, oldHandler);
        return written;
    }
#else
    if (writeLimit >= 0 && bytes.size() > writeLimit) {
        error = QStringLiteral("File too large");
        return false;
    }
#endif
    return m_real.write(path, bytes, error);
}

bool FakeFiles::remove(const QString &path, QString &error)
{
    return m_real.remove(path, error);
}

bool FakeSettings::setNumber(const QString &key, int value, QString &error)
{
    if (failWrites) {
        error = QStringLiteral("\"%1\" could not be written").arg(m_path);
        return false;
    }
    return m_real->setNumber(key, value, error);
}

FakePlatform::FakePlatform()
{
    system.folder = QDir::toNativeSeparators(dir.path());
}

QString FakePlatform::path(const QString &name) const
{
    return joinPath(dir.path(), name);
}

void FakePlatform::writeFile(const QString &name, const QByteArray &bytes) const
{
    QFile file(QDir(dir.path()).filePath(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

QByteArray FakePlatform::readFile(const QString &name) const
{
    QFile file(QDir(dir.path()).filePath(name));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray("<missing>");
    return file.readAll();
}

QString feel(const BrailleCells &cells)
{
    QString felt;
    for (qsizetype i = 0; i < cells.text.size(); ++i) {
        felt += cells.text.at(i);
        if (i + 1 == cells.cursor)
            felt += u'^';
        const auto dots = static_cast<quint8>(i < cells.dots.size() ? cells.dots.at(i) : 0);
        if (dots & BrailleCells::kDot7)
            felt += u'7';
        if (dots & BrailleCells::kDot8)
            felt += u'8';
    }
    return felt;
}

void FakeBrailleDisplay::take(QWidget *, Events events)
{
    m_events = std::move(events);
    m_held = true;
    if (m_events.ready)
        m_events.ready(kWidth);
}

void FakeBrailleDisplay::show(const BrailleCells &shown)
{
    if (m_held)
        m_shown = shown;
}

void FakeBrailleDisplay::release()
{
    m_held = false;
    m_events = {};
}

void FakeBrailleDisplay::press(Key key)
{
    const auto pressed = m_events.key;
    if (m_held && pressed)
        pressed(key);
}

} // namespace lexicove::test
