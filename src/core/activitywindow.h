#pragma once

#include "core/navigator.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QPointer>

namespace lexicove {

// A window the player goes to from the main menu and leaves again: by OK (or
// Save), which opens whatever comes next, or by Cancel, Escape or the close
// box, which do the same thing. However the window is left, what comes next
// is opened once: the window is marked finished before it closes itself, so
// the close that follows does not count as the player leaving too.
//
// Kept to this header, without signals or slots of its own, because the
// windows see core through its headers only.
class ActivityWindow : public QDialog {
public:
    explicit ActivityWindow(Navigator &navigator, QWidget *parent = nullptr)
        : QDialog(parent), m_navigator(navigator)
    {
    }

    // Cancel: leaves the window, unless it is already on its way out.
    void cancel()
    {
        if (m_finished)
            return;
        leaveWithoutOK();
        close();
    }

protected:
    // What leaving without OK does. It runs once at most, however the
    // window is left (Cancel, Escape, the close box, a failed load).
    virtual void cancelled() { m_navigator.showMainMenu(); }

    Navigator &navigator() const { return m_navigator; }
    bool finished() const { return m_finished; }

    // From here on the buttons, Escape and the close box do nothing: set
    // before opening what comes next.
    void startLeaving() { m_finished = true; }
    // Closes the window once whatever comes next has been opened.
    void finish()
    {
        m_finished = true;
        close();
    }
    // Runs cancelled() unless the window is already on its way out.
    void leaveWithoutOK()
    {
        if (m_finished)
            return;
        m_finished = true;
        cancelled();
    }

    // Runs ask (a message or input box over this window) and gives back its
    // answer; the focus then goes back to the control it was in.
    template <typename Ask>
    auto keepingFocus(Ask ask)
    {
        QPointer<QWidget> focus = QApplication::focusWidget();
        if (focus && !isAncestorOf(focus))
            focus = nullptr;
        auto answer = ask();
        if (focus) {
            activateWindow();
            focus->setFocus();
        }
        return answer;
    }

    // The Delete key pressed in this list box goes to lstWords_KeyDown
    // instead of the list.
    void watchDeleteKey(QWidget *listBox)
    {
        m_listBox = listBox;
        listBox->installEventFilter(this);
    }
    virtual void lstWords_KeyDown(int /*keyCode*/, Qt::KeyboardModifiers /*shift*/) {}

    void reject() override { cancel(); }

    void closeEvent(QCloseEvent *event) override
    {
        event->accept();
        leaveWithoutOK();
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == m_listBox && event->type() == QEvent::KeyPress) {
            const auto *key = static_cast<QKeyEvent *>(event);
            if (key->key() == Qt::Key_Delete) {
                lstWords_KeyDown(key->key(), key->modifiers());
                return true;
            }
        }
        return QDialog::eventFilter(watched, event);
    }

private:
    Navigator &m_navigator;
    QWidget *m_listBox = nullptr;
    bool m_finished = false;
};

} // namespace lexicove
