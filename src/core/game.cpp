#include "core/game.h"

#include "core/frmchoose.h"
#include "core/gamestate.h"
#include "platform/platform.h"
#include "play/frmlist.h"

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

void Game::showMainMenu()
{
    if (m_ended)
        return;
    m_menu->showAgain();
}

bool Game::openChooser()
{
    // The chooser comes with the word list windows; until then the player
    // stays on the main menu.
    showMainMenu();
    return false;
}

bool Game::openEditor()
{
    showMainMenu();
    return false;
}

bool Game::openOptions()
{
    showMainMenu();
    return false;
}

bool Game::openPuzzle()
{
    showMainMenu();
    return false;
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
