#pragma once

// One activity window opened straight on a scripted platform and a recording
// navigator, loaded and shown as the game shows it: deleted when it closes.

#include "core/gamestate.h"
#include "fakenavigator.h"
#include "fakeplatform.h"

#include <QApplication>
#include <QPointer>
#include <QTest>

namespace lexicove::test {

// What a real message box does to the focus, for the scripted boxes: a
// window of its own takes it while the box is up, and when the box closes
// the window manager gives it back to the window below.
inline void standInBox()
{
    QPointer<QWidget> below = QApplication::activeWindow();
    QWidget box;
    box.setWindowTitle(QStringLiteral("Stand-in box"));
    box.show();
    box.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    box.hide();
    if (below) {
        below->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(below));
    }
}

template <typename Window>
struct WindowRig {
    WindowRig() = default;
    WindowRig(const WindowRig &) = delete;
    WindowRig &operator=(const WindowRig &) = delete;
    ~WindowRig() { delete window.data(); }

    // Loads and shows the window; false when it ended itself while loading
    // (then `loaded` is false too) or never became active.
    bool open()
    {
        window = new Window(state, fp.platform, navigator);
        window->setAttribute(Qt::WA_DeleteOnClose);
        loaded = window->Form_Load();
        if (!loaded) {
            delete window.data();
            return false;
        }
        window->show();
        window->activateWindow();
        return QTest::qWaitForWindowActive(window);
    }

    // Every scripted box moves the focus to the named control while it is up,
    // as a real box takes it from the window; the window must give it back.
    void messagesTakeFocus(const QString &name = QStringLiteral("cmdCancel"))
    {
        fp.dialogs.onShow = [this, name](const ShownDialog &) {
            if (QWidget *control = window ? window->template findChild<QWidget *>(name) : nullptr)
                control->setFocus();
        };
    }

    FakePlatform fp;
    GameState state;
    FakeNavigator navigator;
    QPointer<Window> window;
    bool loaded = false;
};

} // namespace lexicove::test
