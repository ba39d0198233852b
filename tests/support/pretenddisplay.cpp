#include "pretenddisplay.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#endif

namespace lexicove::test {

namespace {

// The text of a quoted string of the protocol: \\, \" and \Xhh escapes.
QByteArray Unquote(const QByteArray &quoted)
{
    QByteArray text;
    const qsizetype start = quoted.indexOf('"');
    const qsizetype end = quoted.lastIndexOf('"');
    for (qsizetype i = start + 1; i < end; ++i) {
        if (quoted.at(i) != '\\' || i + 1 >= end) {
            text += quoted.at(i);
        } else if ((quoted.at(i + 1) == 'X' || quoted.at(i + 1) == 'x') && i + 3 < end) {
            text += static_cast<char>(quoted.mid(i + 2, 2).toInt(nullptr, 16));
            i += 3;
        } else {
            text += quoted.at(++i);
        }
    }
    return text;
}

} // namespace

PretendDisplay::~PretendDisplay()
{
#ifdef Q_OS_UNIX
    if (m_socket >= 0)
        ::close(m_socket);
#endif
}

bool PretendDisplay::open(const QString &path, int cells, int timeoutMs)
{
#ifdef Q_OS_UNIX
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = path.toLocal8Bit();
    if (name.isEmpty() || name.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
    const QDeadlineTimer deadline(timeoutMs);
    while (m_socket < 0) {
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) {
            m_socket = socket;
            break;
        }
        ::close(socket);
        if (deadline.hasExpired())
            return false;
        QThread::msleep(50);
    }
    const QByteArray size = "cells " + QByteArray::number(cells) + "\n";
    return ::write(m_socket, size.constData(), static_cast<size_t>(size.size())) == size.size();
#else
    Q_UNUSED(path);
    Q_UNUSED(cells);
    Q_UNUSED(timeoutMs);
    return false;
#endif
}

bool PretendDisplay::read(int waitMs)
{
#ifdef Q_OS_UNIX
    const int before = m_updates;
    const QDeadlineTimer deadline(waitMs);
    while (m_socket >= 0) {
        pollfd ready{m_socket, POLLIN, 0};
        const int wait = m_updates != before ? 0 : static_cast<int>(deadline.remainingTime());
        const int polled = ::poll(&ready, 1, wait);
        if (polled < 0 && errno == EINTR)
            continue;
        if (polled <= 0)
            break;
        char buffer[4096];
        const ssize_t got = ::recv(m_socket, buffer, sizeof buffer, 0);
        if (got <= 0) {
            ::close(m_socket);
            m_socket = -1;
            break;
        }
        m_input.append(buffer, got);
        for (qsizetype end = m_input.indexOf('\n'); end >= 0; end = m_input.indexOf('\n')) {
            Take(m_input.left(end));
            m_input.remove(0, end + 1);
        }
    }
    return m_updates != before;
#else
    Q_UNUSED(waitMs);
    return false;
#endif
}

void PretendDisplay::Take(const QByteArray &line)
{
    if (line.startsWith("Visual ")) {
        m_text = QString::fromLatin1(Unquote(line));
    } else if (line.startsWith("Braille ")) {
        m_dots.clear();
        for (const QByteArray &cell : Unquote(line).split('|')) {
            quint8 dots = 0;
            for (const char dot : cell)
                if (dot >= '1' && dot <= '8')
                    dots |= static_cast<quint8>(1u << (dot - '1'));
            m_dots.append(dots);
        }
        ++m_updates;
    }
}

bool PretendDisplay::waitUntil(const std::function<bool()> &test, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    for (;;) {
        read();
        if (test())
            return true;
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        read(5);
    }
}

void PretendDisplay::press(const QString &command)
{
#ifdef Q_OS_UNIX
    const QByteArray line = command.toLatin1() + "\n";
    if (m_socket >= 0 &&
        ::write(m_socket, line.constData(), static_cast<size_t>(line.size())) != line.size())
        qWarning("the pretend display could not press %s", line.constData());
#else
    Q_UNUSED(command);
#endif
}

BrailleCells PretendDisplay::shown() const
{
    constexpr quint8 kBoth = BrailleCells::kDot7 | BrailleCells::kDot8;
    BrailleCells cells;
    cells.text = m_text;
    while (cells.text.endsWith(u' '))
        cells.text.chop(1);
    for (qsizetype i = 0; i < cells.text.size(); ++i) {
        quint8 dots = i < m_dots.size() ? m_dots.at(i) & kBoth : 0;
        if (dots == kBoth && cells.cursor == 0) {
            cells.cursor = static_cast<int>(i) + 1;
            dots = 0;
        }
        cells.dots.append(static_cast<char>(dots));
    }
    return cells;
}

} // namespace lexicove::test
