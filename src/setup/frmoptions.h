#pragma once

#include "core/activitywindow.h"
#include "setup/placement.h"

#include <memory>

class QCheckBox;
class QPushButton;

namespace lexicove {

struct GameState;
struct Platform;

// The puzzle options window: the last step before a puzzle is made. It loads
// the chosen list's words as it opens, lets the player set the grid size, the
// time limit, the directions and whether the words are hidden, and on OK lays
// the words, fills the grid and hands over to the puzzle window.
class FrmOptions : public ActivityWindow {
    Q_OBJECT
public:
    FrmOptions(GameState &state, Platform &platform, Navigator &navigator);
    ~FrmOptions() override;

    // Resets the size and time settings and loads the words. Returns false
    // when the list can't be played (unreadable or without words); the reason
    // has been shown and the main menu is back.
    bool Form_Load();

    void cmdRows_Click();
    void cmdCols_Click();
    void cmdTimeLimit_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    enum class Question { Rows, Columns, TimeLimit };

    // Asks the question until the reply is a whole number in its range.
    qint64 AskNumber(Question question);
    void ShowCaptions();

    GameState &m_state;
    Platform &m_platform;
    std::unique_ptr<WordPlacer> m_placer;
    QPushButton *cmdRows;
    QPushButton *cmdCols;
    QPushButton *cmdTimeLimit;
    QCheckBox *chkHorizontal;
    QCheckBox *chkVertical;
    QCheckBox *chkDiagonal;
    QCheckBox *chkHide;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
};

} // namespace lexicove
