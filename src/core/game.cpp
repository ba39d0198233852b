#include "core/game.h"

#include "core/frmchoose.h"
#include "core/gamestate.h"
#include "platform/platform.h"
#include "play/frmlist.h"
#include "setup/frmoptions.h"
#include "play/frmsearch.h"
#include "wordlists/frmcreate.h"
#include "wordlists/frmwords.h"

#include <QCoreApplication>

namespace lexicove {

Game::Game(GameState &state, Platform &platform)
    : m_state(state), m_platform(platform),
      m_menu(std::make_unique<FrmChoose>(state, platform, *this))
{
}

Game::~Game()
{
    if (m_current)
        delete m_current.data();
}

bool Game::start()
{
    if (!m_menu->Form_Load()) {
        m_ended = true;
        return false;
    }
    m_menu->show();
    m_menu->activateWindow();
    return true;
}

void Game::present(QWidget *window)
{
    window->setAttribute(Qt::WA_DeleteOnClose);
    m_current = window;
    window->show();
    window->raise();
    window->activateWindow();
}

template <typename Window>
bool Game::open()
{
    auto *window = new Window(m_state, m_platform, *this);
    if (!window->Form_Load()) {
        // The window ended itself while loading and has brought the main
        // menu back; it was never shown.
        delete window;
        return false;
    }
    present(window);
    return true;
}

void Game::showMainMenu()
{
    if (m_ended)
        return;
    m_menu->showAgain();
}

bool Game::openChooser()
{
    return open<FrmWords>();
}

bool Game::openEditor()
{
    return open<FrmCreate>();
}

bool Game::openOptions()
{
    return open<FrmOptions>();
}

bool Game::openPuzzle()
{
    return open<FrmSearch>();
}

FrmList &Game::listWindow()
{
    if (!m_list)
        m_list = std::make_unique<FrmList>();
    return *m_list;
}

void Game::endProgram()
{
    if (m_ended)
        return;
    m_ended = true;
    if (m_current)
        delete m_current.data();
    if (m_list)
        m_list->hide();
    m_menu->hide();
    QCoreApplication::quit();
}

} // namespace lexicove
