#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>

class QWidget;

namespace lexicove {

// What the game puts on a braille display: one character a cell from the
// first cell on, the rest of the display blank. The characters go through the
// player's own text table one to one (never contracted); the cursor is drawn
// in the player's own cursor style.
struct BrailleCells {
    // Dots added to a cell, numbered as braille displays number them: dot 1
    // is the lowest bit.
    static constexpr quint8 kDot7 = 0x40;
    static constexpr quint8 kDot8 = 0x80;

    QString text;
    // The cell of the cursor, from 1; 0 for none.
    int cursor = 0;
    // The dots added to each cell of text, one byte a cell.
    QByteArray dots;

    bool operator==(const BrailleCells &other) const = default;
};

// A refreshable braille display, which the screen reader keeps for itself
// except while the game borrows it: the game takes it while the puzzle grid
// has the keyboard focus and gives it back the moment the focus goes
// anywhere else. While the game holds it, the display's routing keys and pan
// keys come to the game; every other key of the display stays with the screen
// reader.
//
// Nothing here ever waits on the braille service: take() and show() return at
// once, and a display that is slow or gone simply shows nothing new. Events
// come in the thread that called take(), only while the display is held.
class BrailleDisplay {
public:
    enum class KeyKind { Route, PanLeft, PanRight };
    struct Key {
        KeyKind kind = KeyKind::Route;
        // For a routing key, the cell under it, from 0.
        int cell = 0;
        bool operator==(const Key &other) const = default;
    };
    struct Events {
        // The display is the game's now, `width` cells across: time to show
        // something on it. It comes again if the display changes.
        std::function<void(int width)> ready;
        std::function<void(Key key)> key;
    };

    virtual ~BrailleDisplay() = default;
    // Asks for the display for window, the game's window that has the focus.
    // Without a display or a braille service, ready never comes.
    virtual void take(QWidget *window, Events events) = 0;
    // Shows cells while the display is held; when cells come faster than
    // the display takes them, only the latest are written.
    virtual void show(const BrailleCells &cells) = 0;
    // Gives the display back to the screen reader; no event comes after.
    virtual void release() = 0;
};

// No braille display: the game plays by sound alone.
class NullBrailleDisplay final : public BrailleDisplay {
public:
    void take(QWidget *, Events) override {}
    void show(const BrailleCells &) override {}
    void release() override {}
};

// The system's braille display: brltty's (through BrlAPI) where the game was
// built with it; none elsewhere, for now (a Windows screen reader's braille
// would come in here).
std::unique_ptr<BrailleDisplay> MakeSystemBrailleDisplay();

} // namespace lexicove
