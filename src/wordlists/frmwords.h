#pragma once

#include "core/activitywindow.h"
#include "platform/platform.h"

class QListWidget;
class QPushButton;

namespace lexicove {

struct GameState;

// The word list chooser: one entry per list ("animals - 12 words") and, in
// play mode, "Choose random list" last. Each list entry keeps its file's real
// name beside its text (Qt::UserRole), so a list is opened and deleted by
// that name and never by parsing the text back; the random entry has none.
class FrmWords : public ActivityWindow {
    Q_OBJECT
public:
    FrmWords(GameState &state, Platform &platform, Navigator &navigator);

    // Fills the list. With no lists at all it tells the player, brings the
    // main menu back and returns false; the window is then never shown.
    bool Form_Load();

    void cmdOK_Click();
    void cmdCancel_Click();
    void lstWords_KeyDown(int keyCode, Qt::KeyboardModifiers shift) override;

private:
    bool playMode() const;
    void AddListEntry(int row, const QString &fileName, qint32 wordCount);
    // A message box over this window; the focus goes back where it was.
    MessageResult tell(const QString &prompt, MessageButtons buttons = MessageButtons::Ok,
                       const QString &title = QString());

    GameState &m_state;
    Platform &m_platform;
    QListWidget *lstWords;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
};

} // namespace lexicove
