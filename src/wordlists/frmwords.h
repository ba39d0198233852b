#pragma once

#include "platform/platform.h"

#include <QDialog>

class QListWidget;
class QPushButton;

namespace lexicove {

struct GameState;
class Navigator;

// The word list chooser: one entry per list ("animals - 12 words") and, in
// play mode, "Choose random list" last. Each list entry keeps its file's real
// name beside its text (Qt::UserRole), so a list is opened and deleted by
// that name and never by parsing the text back; the random entry has none.
class FrmWords : public QDialog {
    Q_OBJECT
public:
    FrmWords(GameState &state, Platform &platform, Navigator &navigator);

    // Fills the list. With no lists at all it tells the player, brings the
    // main menu back and returns false; the window is then never shown.
    bool Form_Load();

    void cmdOK_Click();
    void cmdCancel_Click();
    void lstWords_KeyDown(int keyCode, Qt::KeyboardModifiers shift);

protected:
    void reject() override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool playMode() const;
    void AddListEntry(int row, const QString &fileName, qint32 wordCount);
    // A message box over this window; the focus goes back where it was.
    MessageResult tell(const QString &prompt, MessageButtons buttons = MessageButtons::Ok,
                       const QString &title = QString());
    // Leaves the window; whatever comes next has been opened already.
    void finish();

    GameState &m_state;
    Platform &m_platform;
    Navigator &m_navigator;
    QListWidget *lstWords;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    bool m_finished = false;
};

} // namespace lexicove
