#pragma once

// A navigator that records where the windows send the player instead of
// opening anything; every open* reports the next window as opened.

#include "core/navigator.h"
#include "play/frmlist.h"

#include <memory>

namespace lexicove::test {

class FakeNavigator final : public Navigator {
public:
    void showMainMenu() override { ++mainMenuShown; }
    bool openChooser() override { return opened(choosersOpened); }
    bool openEditor() override { return opened(editorsOpened); }
    bool openOptions() override { return opened(optionsOpened); }
    bool openPuzzle() override { return opened(puzzlesOpened); }
    // The shared list window, made when first asked for.
    FrmList &listWindow() override
    {
        if (!m_list)
            m_list = std::make_unique<FrmList>();
        return *m_list;
    }
    void endProgram() override { ++ended; }

    int mainMenuShown = 0;
    int choosersOpened = 0;
    int editorsOpened = 0;
    int optionsOpened = 0;
    int puzzlesOpened = 0;
    int ended = 0;

private:
    static bool opened(int &count) { return ++count > 0; }
    std::unique_ptr<FrmList> m_list;
};

} // namespace lexicove::test
