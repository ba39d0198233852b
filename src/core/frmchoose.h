#pragma once

#include <QDialog>

class QListWidget;
class QPushButton;

namespace lexicove {

struct GameState;
struct Platform;
class Navigator;

// The main menu: the start-up window and the hub every activity returns to.
// It is hidden, never closed, while another window is in use.
class FrmChoose : public QDialog {
    Q_OBJECT
public:
    FrmChoose(GameState &state, Platform &platform, Navigator &navigator);

    // The start-up steps. Returns false when the program must end (the
    // system folder could not be read); the error has then been shown.
    bool Form_Load();

    // Shows the menu again as it was left, the focus in its list.
    void showAgain();

    void cmdOK_Click();
    void cmdExit_Click();

protected:
    void reject() override;
    void closeEvent(QCloseEvent *event) override;

private:
    bool CheckSystemDirectory();

    GameState &m_state;
    Platform &m_platform;
    Navigator &m_navigator;
    QListWidget *lstStyle;
    QPushButton *cmdOK;
    QPushButton *cmdExit;
    bool m_ending = false;
};

} // namespace lexicove
