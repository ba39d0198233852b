#pragma once

#include "core/activitywindow.h"
#include "platform/platform.h"
#include "platform/textencoding.h"
#include "wordlists/wordlistmodel.h"

class QLineEdit;
class QListView;
class QPushButton;

namespace lexicove {

struct GameState;

// The word list editor. The list being made exists only as the entries of
// lstWords (kept in m_entries), in the order they were added or loaded, until
// Save writes them; no file is touched before then.
class FrmCreate : public ActivityWindow {
    Q_OBJECT
public:
    FrmCreate(GameState &state, Platform &platform, Navigator &navigator);

    // Empties the list and, when editing, loads the list at wordListPath.
    // Returns false when that file can't be read: the player has been told,
    // the main menu is back and the window is never shown.
    bool Form_Load();

    void cmdAdd_Click();
    void cmdRemove_Click();
    void cmdSave_Click();
    void cmdCancel_Click();
    void lstWords_KeyDown(int keyCode, Qt::KeyboardModifiers shift) override;

private:
    // Selects the entry at row and shows it.
    void select(qsizetype row);
    // A message box over this window; the focus goes back where it was.
    void tell(const QString &prompt);
    QString ask(const QString &prompt, const QString &defaultText);

    GameState &m_state;
    Platform &m_platform;
    // How the list was read, and so how it is written back: a new list is
    // 8-bit text until it holds a character that needs UTF-8.
    TextFormat m_format;
    WordListModel m_entries;
    QListView *lstWords;
    QLineEdit *txtWord;
    QPushButton *cmdAdd;
    QPushButton *cmdRemove;
    QPushButton *cmdSave;
    QPushButton *cmdCancel;
};

} // namespace lexicove
