#include "platform/brlapidisplay.h"

#ifdef LEXICOVE_HAVE_BRLAPI

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QSocketNotifier>
#include <QThread>
#include <QWidget>

#include <brlapi.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <mutex>
#include <optional>

#include <sys/socket.h>

namespace lexicove {

namespace {

Q_LOGGING_CATEGORY(lcBraille, "lexicove.braille", QtWarningMsg)

// How long quitting waits for the link to finish, before and after cutting
// loose a connection that brltty does not answer.
constexpr int kStopMs = 500;

// The game's place in brltty's tty tree: its top-level X window, as a focus
// teller such as xbrlapi names it; elsewhere any number of the game's own.
int TtyOf(QWidget *window)
{
    if (window && QGuiApplication::platformName() == QLatin1String("xcb"))
        return static_cast<int>(window->window()->winId());
    return static_cast<int>(QCoreApplication::applicationPid());
}

// The last BrlAPI error of this thread, in words.
QByteArray LastError()
{
    char text[256];
    brlapi_strerror_r(&brlapi_error, text, sizeof text);
    return QByteArray(text);
}

// libbrlapi's default handler for an error brltty reports later (a refused
// write, say) aborts the program: the game only notes it.
void BRLAPI_STDCALL NoteException(brlapi_handle_t *handle, int error, brlapi_packetType_t type,
                                  const void *packet, size_t size)
{
    char text[256];
    brlapi__strexception(handle, text, sizeof text, error, type, packet, size);
    qCWarning(lcBraille, "the braille service refused a request: %s", text);
}

} // namespace

// What the window's thread and the link share.
struct BrlapiMailbox {
    std::mutex mutex;
    // The display, while it lives: the link's answers go to it.
    BrlapiDisplay *display = nullptr;
    // The cells the link is to write next, and the take they belong to.
    std::optional<BrailleCells> latest;
    quint64 latestSession = 0;
    bool flushQueued = false;
    // The connection's socket while it is open, to cut it loose at the end.
    int socket = -1;
};

// The connection to brltty, in a thread of its own: every BrlAPI call is made
// here.
class BrlapiLink final : public QObject {
public:
    explicit BrlapiLink(std::shared_ptr<BrlapiMailbox> mailbox) : m_mailbox(std::move(mailbox)) {}
    ~BrlapiLink() override { Disconnect(); }

    void Take(quint64 session, int tty)
    {
        m_session = session;
        if (!m_handle && !Connect())
            return;
        if (m_tty != tty && !EnterTty(tty))
            return Disconnect();
        if (!SetPriority(BRLAPI_PARAM_CLIENT_PRIORITY_DEFAULT))
            return Disconnect();
        m_holding = true;
        PostReady();
        ReadKeys();
    }

    void Release()
    {
        if (m_handle && m_holding)
            GiveBack();
        m_holding = false;
        ReadKeys();
    }

    void Flush()
    {
        std::optional<BrailleCells> cells;
        quint64 session = 0;
        {
            const std::lock_guard lock(m_mailbox->mutex);
            cells.swap(m_mailbox->latest);
            session = m_mailbox->latestSession;
            m_mailbox->flushQueued = false;
        }
        if (!cells || !m_handle || !m_holding || session != m_session)
            return;
        Write(*cells);
        ReadKeys();
    }

private:
    using Handle = std::unique_ptr<brlapi_handle_t, decltype(&std::free)>;

    bool Connect()
    {
        Handle handle(static_cast<brlapi_handle_t *>(std::malloc(brlapi_getHandleSize())),
                      &std::free);
        if (!handle)
            return false;
        // The host and the key come from BRLAPI_HOST and BRLAPI_AUTH, or
        // brltty's own defaults.
        const brlapi_connectionSettings_t settings = BRLAPI_SETTINGS_INITIALIZER;
        const int socket = brlapi__openConnection(handle.get(), &settings, nullptr);
        if (socket < 0) {
            qCDebug(lcBraille, "no braille service: %s", LastError().constData());
            return false;
        }
        brlapi__setExceptionHandler(handle.get(), NoteException);
        // The display's width now and whenever it changes: a display
        // plugged in, or brltty's driver coming up after the game.
        brlapi_param_displaySize_t size{};
        m_sizeWatch = brlapi__watchParameter(handle.get(), BRLAPI_PARAM_DISPLAY_SIZE, 0,
                                             BRLAPI_PARAMF_GLOBAL, &BrlapiLink::SizeChanged, this,
                                             &size, sizeof size);
        if (!m_sizeWatch) {
            brlapi__closeConnection(handle.get());
            return false;
        }
        m_width = static_cast<int>(size.columns);
        m_handle = std::move(handle);
        {
            const std::lock_guard lock(m_mailbox->mutex);
            m_mailbox->socket = socket;
        }
        m_notifier = new QSocketNotifier(socket, QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, [this] { ReadKeys(); });
        return true;
    }

    void Disconnect()
    {
        if (!m_handle)
            return;
        if (m_notifier) {
            // Perhaps from inside the notifier's own signal.
            m_notifier->setEnabled(false);
            m_notifier->deleteLater();
            m_notifier = nullptr;
        }
        bool cut = false;
        {
            const std::lock_guard lock(m_mailbox->mutex);
            cut = m_mailbox->socket < 0;
            m_mailbox->socket = -1;
        }
        // Leaving, the game's cells must not stay on the display; a
        // connection already cut loose can't be asked anything.
        if (m_holding && !cut)
            GiveBack();
        // libbrlapi keeps a watch's record until it is unwatched, even past
        // the connection's end; unwatching asks brltty, so not once cut.
        if (!cut)
            brlapi__unwatchParameter(m_handle.get(), m_sizeWatch);
        m_sizeWatch = nullptr;
        brlapi__closeConnection(m_handle.get());
        m_handle.reset();
        m_tty = -1;
        m_width = 0;
        m_holding = false;
    }

    // From libbrlapi, inside one of the link's own calls.
    static void SizeChanged(brlapi_param_t, brlapi_param_subparam_t, brlapi_param_flags_t,
                            void *link, const void *data, size_t size)
    {
        brlapi_param_displaySize_t value{};
        std::memcpy(&value, data, std::min(size, sizeof value));
        auto *self = static_cast<BrlapiLink *>(link);
        self->m_width = static_cast<int>(value.columns);
        if (self->m_holding)
            self->PostReady();
    }

    void PostReady()
    {
        if (m_width > 0)
            Post([session = m_session, width = m_width](BrlapiDisplay *display) {
                display->Ready(session, width);
            });
    }

    bool EnterTty(int tty)
    {
        if (m_tty >= 0)
            brlapi__leaveTtyMode(m_handle.get());
        m_tty = -1;
        if (brlapi__enterTtyModeWithPath(m_handle.get(), &tty, 1, nullptr) < 0)
            return false;
        m_tty = tty;
        // Only the routing keys and the two pan keys: every other key of the
        // display stays with the screen reader.
        constexpr brlapi_keyCode_t kCommand = BRLAPI_KEY_TYPE_CMD;
        const brlapi_range_t keys[] = {
            {kCommand | BRLAPI_KEY_CMD_ROUTE,
             kCommand | BRLAPI_KEY_CMD_ROUTE | BRLAPI_KEY_CMD_ARG_MASK},
            {kCommand | BRLAPI_KEY_CMD_FWINLT, kCommand | BRLAPI_KEY_CMD_FWINLT},
            {kCommand | BRLAPI_KEY_CMD_FWINRT, kCommand | BRLAPI_KEY_CMD_FWINRT},
        };
        return brlapi__ignoreAllKeys(m_handle.get()) >= 0 &&
               brlapi__acceptKeyRanges(m_handle.get(), keys, std::size(keys)) >= 0;
    }

    bool SetPriority(brlapi_param_clientPriority_t priority)
    {
        return brlapi__setParameter(m_handle.get(), BRLAPI_PARAM_CLIENT_PRIORITY, 0,
                                    BRLAPI_PARAMF_LOCAL, &priority, sizeof priority) >= 0;
    }

    void GiveBack()
    {
        // Priority 0 hides the game's cells and sends its keys elsewhere;
        // the focus change makes brltty show what lies below at once.
        if (SetPriority(BRLAPI_PARAM_CLIENT_PRIORITY_DISABLE))
            brlapi__setFocus(m_handle.get(), 0);
    }

    void Write(const BrailleCells &cells)
    {
        // One character a cell, the rest of the display blank.
        const QString text = cells.text.isEmpty() ? QStringLiteral(" ") : cells.text;
        const QByteArray utf8 = text.toUtf8();
        QByteArray dots = cells.dots;
        dots.resize(text.size(), '\0');
        brlapi_writeArguments_t arguments = BRLAPI_WRITEARGUMENTS_INITIALIZER;
        arguments.regionBegin = 1;
        arguments.regionSize = -static_cast<int>(text.size());
        arguments.text = utf8.constData();
        arguments.textSize = static_cast<int>(utf8.size());
        arguments.orMask = reinterpret_cast<const unsigned char *>(dots.constData());
        arguments.cursor = cells.cursor > 0 ? cells.cursor : BRLAPI_CURSOR_OFF;
        arguments.charset = "UTF-8";
        if (brlapi__write(m_handle.get(), &arguments) < 0)
            qCWarning(lcBraille, "a braille write failed: %s", LastError().constData());
    }

    // Every key read so far, also those libbrlapi kept while it waited for
    // an answer.
    void ReadKeys()
    {
        brlapi_keyCode_t code = 0;
        while (m_handle) {
            const int read = brlapi__readKey(m_handle.get(), 0, &code);
            if (read == 0)
                return;
            if (read < 0) {
                if (brlapi_errno == BRLAPI_ERROR_LIBCERR && brlapi_libcerrno == EINTR)
                    continue;
                qCInfo(lcBraille, "the braille service went away: %s", LastError().constData());
                return Disconnect();
            }
            if ((code & BRLAPI_KEY_TYPE_MASK) != BRLAPI_KEY_TYPE_CMD || !m_holding)
                continue;
            Key key;
            const brlapi_keyCode_t command = code & BRLAPI_KEY_CODE_MASK;
            if ((command & BRLAPI_KEY_CMD_BLK_MASK) == BRLAPI_KEY_CMD_ROUTE)
                key = {KeyKind::Route, static_cast<int>(command & BRLAPI_KEY_CMD_ARG_MASK)};
            else if (command == BRLAPI_KEY_CMD_FWINLT)
                key = {KeyKind::PanLeft, 0};
            else if (command == BRLAPI_KEY_CMD_FWINRT)
                key = {KeyKind::PanRight, 0};
            else
                continue;
            Post([session = m_session, key](BrlapiDisplay *display) {
                display->KeyPressed(session, key);
            });
        }
    }

    // Runs call in the window's thread, while the display lives.
    template <typename Call> void Post(Call call)
    {
        const std::lock_guard lock(m_mailbox->mutex);
        if (BrlapiDisplay *display = m_mailbox->display)
            QMetaObject::invokeMethod(
                &display->m_receiver, [display, call] { call(display); }, Qt::QueuedConnection);
    }

    using Key = BrailleDisplay::Key;
    using KeyKind = BrailleDisplay::KeyKind;

    std::shared_ptr<BrlapiMailbox> m_mailbox;
    Handle m_handle{nullptr, &std::free};
    brlapi_paramCallbackDescriptor_t m_sizeWatch = nullptr;
    QSocketNotifier *m_notifier = nullptr;
    int m_tty = -1;
    int m_width = 0;
    bool m_holding = false;
    quint64 m_session = 0;
};

BrlapiDisplay::BrlapiDisplay() : m_mailbox(std::make_shared<BrlapiMailbox>())
{
    m_mailbox->display = this;
}

BrlapiDisplay::~BrlapiDisplay()
{
    {
        const std::lock_guard lock(m_mailbox->mutex);
        m_mailbox->display = nullptr;
    }
    if (!m_thread)
        return;
    // Queued requests are dropped; the link gives the display back as it
    // closes.
    m_thread->quit();
    if (m_thread->wait(QDeadlineTimer(kStopMs))) {
        delete m_thread;
        return;
    }
    // A call waits on a braille service that does not answer: cutting the
    // connection ends the wait.
    {
        const std::lock_guard lock(m_mailbox->mutex);
        if (m_mailbox->socket >= 0)
            ::shutdown(m_mailbox->socket, SHUT_RDWR);
        m_mailbox->socket = -1;
    }
    if (m_thread->wait(QDeadlineTimer(kStopMs))) {
        delete m_thread;
        return;
    }
    // Still held up: the thread is left to the end of the program rather
    // than keep the player waiting.
    qCWarning(lcBraille, "the braille service does not answer");
}

void BrlapiDisplay::StartLink()
{
    if (m_thread)
        return;
    m_thread = new QThread;
    m_thread->setObjectName(QStringLiteral("braille"));
    m_link = new BrlapiLink(m_mailbox);
    m_link->moveToThread(m_thread);
    QObject::connect(m_thread, &QThread::finished, m_link, &QObject::deleteLater);
    m_thread->start();
}

void BrlapiDisplay::take(QWidget *window, Events events)
{
    StartLink();
    m_events = std::move(events);
    m_held = true;
    const quint64 session = ++m_session;
    {
        const std::lock_guard lock(m_mailbox->mutex);
        m_mailbox->latest.reset();
    }
    QMetaObject::invokeMethod(
        m_link, [link = m_link, session, tty = TtyOf(window)] { link->Take(session, tty); },
        Qt::QueuedConnection);
}

void BrlapiDisplay::show(const BrailleCells &cells)
{
    if (!m_held)
        return;
    const std::lock_guard lock(m_mailbox->mutex);
    m_mailbox->latest = cells;
    m_mailbox->latestSession = m_session;
    if (m_mailbox->flushQueued)
        return;
    m_mailbox->flushQueued = true;
    QMetaObject::invokeMethod(
        m_link, [link = m_link] { link->Flush(); }, Qt::QueuedConnection);
}

void BrlapiDisplay::release()
{
    if (!m_held)
        return;
    m_held = false;
    m_events = {};
    ++m_session;
    {
        const std::lock_guard lock(m_mailbox->mutex);
        m_mailbox->latest.reset();
    }
    QMetaObject::invokeMethod(
        m_link, [link = m_link] { link->Release(); }, Qt::QueuedConnection);
}

void BrlapiDisplay::Ready(quint64 session, int width)
{
    // A copy: the window may release the display from inside.
    const auto ready = m_events.ready;
    if (m_held && session == m_session && ready)
        ready(width);
}

void BrlapiDisplay::KeyPressed(quint64 session, Key key)
{
    const auto pressed = m_events.key;
    if (m_held && session == m_session && pressed)
        pressed(key);
}

} // namespace lexicove

#endif // LEXICOVE_HAVE_BRLAPI
