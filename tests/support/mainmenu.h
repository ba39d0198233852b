#pragma once

// The whole game driven from its main menu, as the player drives it: the
// arrow keys to a choice, Enter to take it.

#include "core/frmchoose.h"
#include "core/game.h"
#include "keys.h"

#include <QListWidget>
#include <QTest>

namespace lexicove::test {

// The rows of the main menu, top to bottom.
enum class MenuChoice { PlayPuzzle = 0, CreateList = 1, EditList = 2, CountLists = 3 };

// Starts the game; true once its main menu is the active window.
[[nodiscard]] inline bool startGame(Game &game)
{
    return game.start() && QTest::qWaitForWindowActive(&game.mainMenu());
}

// Moves to the choice with the arrow keys (the focus in the menu's list) and
// presses Enter.
inline void pickFromMenu(Game &game, MenuChoice choice)
{
    const auto *list = game.mainMenu().findChild<QListWidget *>(QStringLiteral("lstStyle"));
    QVERIFY(list);
    const int row = static_cast<int>(choice);
    for (int step = 0; step < 4 && list->currentRow() != row; ++step)
        press(list->currentRow() < row ? Qt::Key_Down : Qt::Key_Up);
    QCOMPARE(list->currentRow(), row);
    press(Qt::Key_Return);
}

// Takes the choice and gives back the window that opened for it, once it is
// active; null when none did.
[[nodiscard]] inline QWidget *openFromMenu(Game &game, MenuChoice choice)
{
    pickFromMenu(game, choice);
    QWidget *window = game.currentWindow();
    return window && QTest::qWaitForWindowActive(window) ? window : nullptr;
}

} // namespace lexicove::test
