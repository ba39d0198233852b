#pragma once

#include "platform/brailledisplay.h"

#ifdef LEXICOVE_HAVE_BRLAPI

#include <QObject>

#include <memory>

class QThread;

namespace lexicove {

class BrlapiLink;
struct BrlapiMailbox;

// brltty's braille display, through its BrlAPI.
//
// Sharing the display with the screen reader: the game enters brltty's tty
// tree one level below the screen reader (the path of its top-level window;
// libbrlapi puts the X session's place in front), and brltty shows the
// deepest client that has written and whose priority is not 0. Taking the
// display sets the game's priority to the default and writes; giving it back
// sets it to 0 and moves brltty's focus, which makes brltty before 6.9 repaint
// the screen reader's cells at once instead of at its next write.
//
// Threads: every BrlAPI call runs in a thread of its own, the link, since some
// wait for brltty's answer and brltty may not answer at all (a display that
// hangs its driver). The window's thread only hands over requests, in order,
// and the latest cells, which replace any the link has not written yet; the
// link's answers (ready, keys) come back to the window's thread as queued
// calls, tagged with the take they belong to, so that none arrives after a
// release. The connection is made at the first take, and again at the next
// take after brltty has gone away.
class BrlapiDisplay final : public BrailleDisplay {
public:
    BrlapiDisplay();
    ~BrlapiDisplay() override;

    void take(QWidget *window, Events events) override;
    void show(const BrailleCells &cells) override;
    void release() override;

private:
    friend class BrlapiLink;
    void StartLink();
    // From the link, in this thread.
    void Ready(quint64 session, int width);
    void KeyPressed(quint64 session, Key key);

    // Lives in the window's thread: the link's calls are queued to it, and
    // dropped with it.
    QObject m_receiver;
    std::shared_ptr<BrlapiMailbox> m_mailbox;
    Events m_events;
    quint64 m_session = 0;
    bool m_held = false;
    QThread *m_thread = nullptr;
    BrlapiLink *m_link = nullptr;
};

} // namespace lexicove

#endif // LEXICOVE_HAVE_BRLAPI
