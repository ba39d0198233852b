#pragma once

#include <QDialog>

#include <functional>

class QListWidget;
class QPushButton;

namespace lexicove {

// The shared list window: the words still to find, or the font sizes for
// printing. It is kept for the whole run, hidden by its OK and refilled by
// each use. OK is both the default and the cancel button, and its close box
// does what OK does, so the player always gets back to the window below.
class FrmList : public QDialog {
    Q_OBJECT
public:
    FrmList();

    // Empties the list and fills it with entries, the first selected.
    void fill(const QStringList &entries);
    QListWidget *list() const { return lstList; }
    // What OK does after hiding the window (the puzzle window shows itself
    // again).
    void setAfterOk(std::function<void()> afterOk) { m_afterOk = std::move(afterOk); }

    void cmdOK_Click();

protected:
    void reject() override;
    void closeEvent(QCloseEvent *event) override;

private:
    QListWidget *lstList;
    QPushButton *cmdOK;
    std::function<void()> m_afterOk;
};

} // namespace lexicove
