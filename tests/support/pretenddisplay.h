#pragma once

// A braille display for brltty's virtual driver (`brltty -b vr -d
// server:PATH`), standing in for a player's: it tells brltty its size, keeps
// what brltty shows on it and presses its keys. The driver speaks lines of
// text over a Unix socket: brltty sends `Braille "1|12|78| "` (each cell's
// dots) and `Visual "ab  "` (the same cells as text), the display sends
// `cells 40` and key commands such as `Route 5` or `FWinRt`.

#include "platform/brailledisplay.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

namespace lexicove::test {

class PretendDisplay {
public:
    PretendDisplay() = default;
    PretendDisplay(const PretendDisplay &) = delete;
    PretendDisplay &operator=(const PretendDisplay &) = delete;
    ~PretendDisplay();

    // Connects to brltty's socket at path as a display of `cells` cells,
    // waiting up to timeoutMs for brltty to make the socket.
    bool open(const QString &path, int cells, int timeoutMs = 10000);
    // Takes in what brltty has sent, waiting up to waitMs for a new Braille
    // line (nothing else runs meanwhile); true when one came.
    bool read(int waitMs = 0);
    // Waits up to timeoutMs, letting the program's events run, until test()
    // holds for what the display shows.
    bool waitUntil(const std::function<bool()> &test, int timeoutMs = 5000);
    // Presses a key: "Route 5" (the routing key above cell 5, from 0),
    // "FWinLt", "FWinRt".
    void press(const QString &command);

    // What the display shows, as the game would have written it: the text
    // without the blanks after it, dots 7 and 8 by cell, and the cursor on
    // the cell with both (its dots 7 and 8 then taken as the cursor's).
    BrailleCells shown() const;

private:
    void Take(const QByteArray &line);

    int m_socket = -1;
    QByteArray m_input;
    QString m_text;
    QList<quint8> m_dots;
    int m_updates = 0;
};

} // namespace lexicove::test
