#pragma once

// The player at the keyboard: keys go to whatever control has the focus, as
// they would for someone who can't see the screen, and the checks name the
// controls by their object names.

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QAbstractItemView>
#include <QKeySequence>
#include <QTest>
#include <QWidget>

#include <functional>
#include <memory>

namespace lexicove::test {

inline QWidget *focused()
{
    return QApplication::focusWidget();
}

inline QString focusName()
{
    QWidget *focus = focused();
    return focus ? focus->objectName() : QStringLiteral("<none>");
}

// A key pressed by the player, into the control that has the focus.
inline void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget *focus = focused();
    QVERIFY2(focus, "no control has the focus");
    QTest::keyClick(focus, static_cast<Qt::Key>(key), modifiers);
}

// Keys named as a key sequence names them, pressed in turn ("Ctrl+T, Right").
inline void pressKeys(const QString &names)
{
    for (const QString &name : names.split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
        const QKeyCombination key = QKeySequence::fromString(name)[0];
        press(key.key(), key.keyboardModifiers());
    }
}

// Typed text; a character beyond ASCII comes as the text of a key with no
// key code of its own, as from a keyboard layout or an input method.
inline void type(const QString &text)
{
    QWidget *focus = focused();
    QVERIFY2(focus, "no control has the focus");
    for (const QChar ch : text) {
        if (ch.unicode() < 0x80)
            QTest::keyClick(focus, ch.toLatin1());
        else
            QTest::sendKeyEvent(QTest::Click, focus, Qt::Key_unknown, QString(ch), Qt::NoModifier);
    }
}

// Once the next modal window is up and active, runs `keys` (the player at
// that window). A window the keys did not close is closed after 2 s, so that
// a failed check can't hang the run.
inline void whenModal(std::function<void(QWidget *)> keys)
{
    auto *timer = new QTimer;
    auto waited = std::make_shared<QElapsedTimer>();
    waited->start();
    QObject::connect(timer, &QTimer::timeout, [timer, keys, waited] {
        QWidget *modal = QApplication::activeModalWidget();
        const bool ready = modal && QApplication::activeWindow() == modal;
        if (!ready && waited->elapsed() < 2000)
            return;
        timer->stop();
        timer->deleteLater();
        if (ready)
            keys(modal);
        else if (modal)
            modal->close();
    });
    timer->start(10);
}

// Tabs forward until the named control has the focus (at most once round).
inline void tabTo(const QString &name)
{
    for (int i = 0; i < 10 && focusName() != name; ++i)
        press(Qt::Key_Tab);
    QCOMPARE(focusName(), name);
}

// The active window when it is the named one, else null.
inline QWidget *activeWindowNamed(const QString &name)
{
    QWidget *window = QApplication::activeWindow();
    return window && window->objectName() == name ? window : nullptr;
}

// The entries of a list box, top to bottom, as it shows them.
inline QStringList entriesOf(const QAbstractItemView *list)
{
    QStringList texts;
    const QAbstractItemModel *model = list->model();
    for (int row = 0; row < model->rowCount(); ++row)
        texts.append(model->index(row, 0).data().toString());
    return texts;
}

} // namespace lexicove::test
