#pragma once

#include "core/navigator.h"

#include <QPointer>
#include <QWidget>

#include <memory>

namespace lexicove {

struct GameState;
struct Platform;
class FrmChoose;
class FrmList;

// The running game: it owns the main menu and the list window, creates every
// other window afresh when the player goes to it, and ends the run.
class Game final : public Navigator {
public:
    Game(GameState &state, Platform &platform);
    ~Game() override;

    // Loads and shows the main menu. Returns false when the program must end
    // at once (the start-up check failed; its message has been shown).
    bool start();

    FrmChoose &mainMenu() { return *m_menu; }
    // The activity window in use (chooser, editor, options or puzzle), if any.
    QWidget *currentWindow() const { return m_current; }
    bool ended() const { return m_ended; }

    void showMainMenu() override;
    bool openChooser() override;
    bool openEditor() override;
    bool openOptions() override;
    bool openPuzzle() override;
    FrmList &listWindow() override;
    void endProgram() override;

private:
    // Creates a window afresh, loads it and shows it as the one in use.
    template <typename Window>
    bool open();
    void present(QWidget *window);

    GameState &m_state;
    Platform &m_platform;
    std::unique_ptr<FrmChoose> m_menu;
    std::unique_ptr<FrmList> m_list;
    QPointer<QWidget> m_current;
    bool m_ended = false;
};

} // namespace lexicove
