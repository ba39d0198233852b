#pragma once

// Shared by the word list window tests: a navigator that records where the
// windows send the player, and keys typed into whatever has the focus.

#include "core/navigator.h"
#include "play/frmlist.h"

#include <QApplication>
#include <QListWidget>
#include <QTest>
#include <QWidget>

#include <memory>

namespace lexicove::test {

class FakeNavigator final : public Navigator {
public:
    void showMainMenu() override { ++mainMenuShown; }
    bool openChooser() override
    {
        ++choosersOpened;
        return true;
    }
    bool openEditor() override
    {
        ++editorsOpened;
        return true;
    }
    bool openOptions() override
    {
        ++optionsOpened;
        return true;
    }
    bool openPuzzle() override
    {
        ++puzzlesOpened;
        return true;
    }
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
    std::unique_ptr<FrmList> m_list;
};

inline QString focusName()
{
    QWidget *focus = QApplication::focusWidget();
    return focus ? focus->objectName() : QStringLiteral("<none>");
}

// A key pressed by the player, into the control that has the focus.
inline void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget *focus = QApplication::focusWidget();
    QVERIFY2(focus, "no control has the focus");
    QTest::keyClick(focus, static_cast<Qt::Key>(key), modifiers);
}

inline void type(const QString &text)
{
    QWidget *focus = QApplication::focusWidget();
    QVERIFY2(focus, "no control has the focus");
    QTest::keyClicks(focus, text);
}

inline QStringList entriesOf(const QListWidget *list)
{
    QStringList texts;
    for (int row = 0; row < list->count(); ++row)
        texts.append(list->item(row)->text());
    return texts;
}

} // namespace lexicove::test
