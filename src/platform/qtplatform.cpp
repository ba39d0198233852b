#include "platform/qtplatform.h"

#include <QAccessible>
#include <QApplication>
#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTemporaryFile>
#include <QTime>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <chrono>

#ifdef Q_OS_WIN
#include <windows.h>
#endif
#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace lexicove {

QString joinPath(const QString &folder, const QString &name)
{
    const QString native = QDir::toNativeSeparators(folder);
    if (native.isEmpty() || native.endsWith(QDir::separator()))
        return native + name;
    return native + QDir::separator() + name;
}

QByteArray encode8Bit(const QString &text)
{
#ifdef Q_OS_WIN
    return text.toLocal8Bit();
#else
    return text.toLatin1();
#endif
}

MessageResult QtDialogs::message(QWidget *parent, const QString &prompt, MessageButtons buttons,
                                 const QString &title)
{
    QMessageBox box(parent);
    box.setIcon(QMessageBox::NoIcon);
    box.setWindowTitle(title.isEmpty() ? kAppTitle : title);
    box.setText(prompt);
    box.setTextFormat(Qt::PlainText);
    if (buttons == MessageButtons::YesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
    } else {
        box.setStandardButtons(QMessageBox::Ok);
        box.setDefaultButton(QMessageBox::Ok);
        box.setEscapeButton(QMessageBox::Ok);
    }
    const int answer = box.exec();
    if (buttons == MessageButtons::YesNo)
        return answer == QMessageBox::Yes ? MessageResult::Yes : MessageResult::No;
    return MessageResult::Ok;
}

QString QtDialogs::input(QWidget *parent, const QString &prompt, const QString &title,
                         const QString &defaultText)
{
    bool ok = false;
    const QString text =
        QInputDialog::getText(parent, title, prompt, QLineEdit::Normal, defaultText, &ok);
    return ok ? text : QString();
}

quint32 SystemClock::tickCount()
{
    using namespace std::chrono;
    const auto ms = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    return static_cast<quint32>(static_cast<quint64>(ms));
}

double SystemClock::secondsSinceMidnight()
{
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

void SystemClock::callAfter(int ms, QObject *receiver, std::function<void()> action)
{
    QTimer::singleShot(ms, receiver, std::move(action));
}

void SystemRandom::seed(double value)
{
    m_engine.seed(std::bit_cast<quint64>(value));
}

double SystemRandom::next()
{
    // 53 random bits: every value is exactly representable and below 1.
    return static_cast<double>(m_engine() >> 11) * 0x1.0p-53;
}

QString QtSystemInfo::systemDirectory()
{
#ifdef Q_OS_WIN
    wchar_t buffer[MAX_PATH + 1];
    const UINT n = GetSystemDirectoryW(buffer, MAX_PATH + 1);
    if (n == 0 || n > MAX_PATH)
        return QString();
    return QString::fromWCharArray(buffer, static_cast<int>(n));
#else
    // The folder of the system's shared libraries.
    for (const char *candidate : {"/usr/lib", "/lib", "/usr/lib64", "/lib64"}) {
        const QFileInfo info(QString::fromLatin1(candidate));
        if (info.isDir())
            return info.absoluteFilePath();
    }
    return QString();
#endif
}

const ProgramFiles &QtSystemInfo::programFiles()
{
    if (!m_programFiles)
        m_programFiles = FindProgramFiles(QCoreApplication::applicationDirPath());
    return *m_programFiles;
}

QString QtSystemInfo::programFolder()
{
    return programFiles().sounds;
}

bool QtSystemInfo::screenReaderRunning()
{
    // Qt talks to assistive technology only while one is connected.
    return QAccessible::isActive();
}

QString QtSystemInfo::wordListFolder()
{
    if (m_wordListFolder.isEmpty())
        m_wordListFolder = PrepareWordListFolder(
            programFiles(), QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    return m_wordListFolder;
}

QStringList QtFiles::list(const QString &folder, const QString &extension)
{
    QStringList names;
    const QDir dir(folder);
    // Without QDir::System: no named pipes, sockets, devices or broken links.
    const QStringList entries = dir.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : entries) {
        if (name.endsWith(extension, Qt::CaseInsensitive))
            names.append(name);
    }
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

namespace {

const QString kNotAFile = QStringLiteral("Not a regular file");

// Opens path for reading when it is a regular file (or a link to one). On
// Unix the file is opened without waiting and looked at before it is read,
// since opening a named pipe would wait for a writer that never comes.
bool openRegularFile(const QString &path, QFile &file, QString &error)
{
#ifdef Q_OS_UNIX
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        error = qt_error_string(errno);
        return false;
    }
    struct stat info {};
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        error = S_ISREG(info.st_mode) || info.st_mode == 0 ? qt_error_string(errno) : kNotAFile;
        ::close(fd);
        return false;
    }
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        error = file.errorString();
        ::close(fd);
        return false;
    }
    return true;
#else
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        error = kNotAFile;
        return false;
    }
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = file.errorString();
        return false;
    }
    return true;
#endif
}

} // namespace

bool QtFiles::readPieces(const QString &path, const PieceReader &take, QString &error)
{
    QFile file;
    if (!openRegularFile(path, file, error))
        return false;
    QByteArray piece(kPieceSize, Qt::Uninitialized);
    for (;;) {
        const qint64 got = file.read(piece.data(), piece.size());
        if (got < 0) {
            error = file.errorString();
            return false;
        }
        if (got == 0 || !take(QByteArrayView(piece.constData(), got)))
            return true;
    }
}

bool WriteWholeFile(const QString &path, const QByteArray &bytes, QString &error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        error = file.errorString();
        return false;
    }
    // write() only fills a buffer, and commit() renames the file into place
    // even when its own flush failed: flush first, so that a short file never
    // replaces the old one.
    errno = 0;
    if (file.write(bytes) != bytes.size() || !file.flush() ||
        file.error() != QFileDevice::NoError) {
        const int systemError = errno;
        error = file.errorString();
#ifdef Q_OS_UNIX
        // A write cut short part way (a full disk, a file size limit) leaves
        // Qt with no reason but "Unknown error"; the system's says why.
        if (systemError != 0 && file.error() == QFileDevice::WriteError)
            error = qt_error_string(systemError);
#endif
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        error = file.errorString();
        return false;
    }
    return true;
}

bool QtFiles::write(const QString &path, const QByteArray &bytes, QString &error)
{
    return WriteWholeFile(path, bytes, error);
}

bool QtFiles::remove(const QString &path, QString &error)
{
    QFile file(path);
    if (!file.remove()) {
        error = file.errorString();
        return false;
    }
    return true;
}

QtSettings::QtSettings(const QString &path)
    : m_settings(path.isEmpty()
                     ? std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                                   kAppTitle, kAppTitle)
                     : std::make_unique<QSettings>(path, QSettings::IniFormat))
{
}

QtSettings::~QtSettings() = default;

int QtSettings::number(const QString &key, int fallback)
{
    bool ok = false;
    const int value = m_settings->value(key).toInt(&ok);
    return ok ? value : fallback;
}

bool QtSettings::setNumber(const QString &key, int value, QString &error)
{
    m_settings->setValue(key, value);
    m_settings->sync();
    if (m_settings->status() == QSettings::NoError)
        return true;
    error = QStringLiteral("\"%1\" could not be written").arg(m_settings->fileName());
    return false;
}

} // namespace lexicove
