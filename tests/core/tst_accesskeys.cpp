#include "core/frmchoose.h"
#include "fakenavigator.h"
#include "fakeplatform.h"
#include "play/frmsearch.h"
#include "puzzles.h"
#include "setup/frmoptions.h"
#include "wordlists/frmcreate.h"
#include "wordlists/frmwords.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

#include <memory>

using namespace lexicove;
using namespace lexicove::test;

class TestAccessKeys : public QObject {
    Q_OBJECT

private slots:
    void noWindowRepeatsAnAccessKey();
};

// In every window each access key belongs to one control, so that Alt and the letter does that
// control's work instead of only moving the focus: the window's buttons, check boxes, labels and
// menu bar share one set of keys, and each menu's commands another.
void TestAccessKeys::noWindowRepeatsAnAccessKey()
{
    FakePlatform fp;
    GameState state;
    setPuzzle(state, kAlphabet, {"abc"});
    FakeNavigator navigator;
    std::vector<std::unique_ptr<QWidget>> windows;
    windows.emplace_back(new FrmChoose(state, fp.platform, navigator));
    windows.emplace_back(new FrmWords(state, fp.platform, navigator));
    windows.emplace_back(new FrmCreate(state, fp.platform, navigator));
    windows.emplace_back(new FrmOptions(state, fp.platform, navigator));
    windows.emplace_back(new FrmSearch(state, fp.platform, navigator));
    windows.emplace_back(new FrmList);

    QStringList repeated;
    for (const auto &window : windows) {
        QMap<QString, QMap<QString, QStringList>> scopes; // scope, key: captions
        const auto add = [&](const QString &scope, const QString &caption) {
            const QString key = QKeySequence::mnemonic(caption).toString();
            if (!key.isEmpty())
                scopes[scope][key] << caption;
        };
        const QString name = window->objectName();
        for (const QAbstractButton *button : window->findChildren<QAbstractButton *>())
            add(name, button->text());
        for (const QLabel *label : window->findChildren<QLabel *>())
            if (label->buddy())
                add(name, label->text());
        for (const QMenuBar *bar : window->findChildren<QMenuBar *>())
            for (const QAction *entry : bar->actions())
                add(name, entry->text());
        for (const QMenu *menu : window->findChildren<QMenu *>())
            for (const QAction *command : menu->actions())
                add(name + " " + menu->title(), command->text());
        QVERIFY2(!scopes.isEmpty(), qPrintable(name + " has no access keys"));
        for (auto scope = scopes.cbegin(); scope != scopes.cend(); ++scope)
            for (auto key = scope->cbegin(); key != scope->cend(); ++key)
                if (key->size() > 1)
                    repeated << scope.key() + ": " + key.key() + " " + key->join(" / ");
    }
    QVERIFY2(repeated.isEmpty(), qPrintable(repeated.join(" | ")));
}

QTEST_MAIN(TestAccessKeys)
#include "tst_accesskeys.moc"
