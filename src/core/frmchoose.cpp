#include "core/frmchoose.h"

#include "core/controls.h"
#include "core/gamestate.h"
#include "core/navigator.h"
#include "platform/platform.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace lexicove {

namespace {

enum class Choice { Play = 0, Create = 1, Edit = 2, Count = 3 };

const QString kSystemError = QStringLiteral(
    "There was an error starting the program, please try again. The program will now exit.");

} // namespace

FrmChoose::FrmChoose(GameState &state, Platform &platform, Navigator &navigator)
    : m_state(state), m_platform(platform), m_navigator(navigator)
{
    setObjectName(QStringLiteral("frmChoose"));
    setWindowTitle(QStringLiteral("Lexicove - Select Option"));

    lstStyle = makeList(this, QStringLiteral("lstStyle"), QStringLiteral("Options"));
    cmdOK = makeButton(this, QStringLiteral("cmdOK"), QStringLiteral("&OK"));
    cmdOK->setDefault(true);
    cmdExit = makeButton(this, QStringLiteral("cmdExit"), QStringLiteral("E&xit"));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdExit);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lstStyle);
    layout->addLayout(buttons);

    setTabOrder(lstStyle, cmdOK);
    setTabOrder(cmdOK, cmdExit);

    connect(cmdOK, &QPushButton::clicked, this, &FrmChoose::cmdOK_Click);
    connect(cmdExit, &QPushButton::clicked, this, &FrmChoose::cmdExit_Click);
}

bool FrmChoose::CheckSystemDirectory()
{
    m_state.systemDirectory = m_platform.system.systemDirectory();
    if (m_state.systemDirectory.size() < 3) {
        m_platform.dialogs.message(nullptr, kSystemError, MessageButtons::Ok,
                                   QStringLiteral("Error"));
        return false;
    }
    return true;
}

bool FrmChoose::Form_Load()
{
    if (!CheckSystemDirectory())
        return false;
    m_platform.random.seed(m_platform.clock.secondsSinceMidnight());
    lstStyle->clear();
    lstStyle->addItems({QStringLiteral("Play a Puzzle"), QStringLiteral("Create Word List"),
                        QStringLiteral("Edit Existing Word List"),
                        QStringLiteral("Count Word Lists")});
    lstStyle->setCurrentRow(0);
    lstStyle->setFocus();
    return true;
}

void FrmChoose::showAgain()
{
    show();
    raise();
    activateWindow();
    lstStyle->setFocus();
}

void FrmChoose::cmdOK_Click()
{
    const QList<QListWidgetItem *> selected = lstStyle->selectedItems();
    if (!selected.isEmpty()) {
        switch (static_cast<Choice>(lstStyle->row(selected.first()))) {
        case Choice::Play:
            m_state.editingList = false;
            m_state.chooserMode = kChooserOptions;
            // A chooser that finds no lists brings the menu straight back:
            // then the menu must not hide itself.
            if (m_navigator.openChooser())
                hide();
            break;
        case Choice::Create:
            m_state.editingList = false;
            if (m_navigator.openEditor())
                hide();
            break;
        case Choice::Edit:
            m_state.chooserMode = kChooserEdit;
            m_state.editingList = true;
            if (m_navigator.openChooser())
                hide();
            break;
        case Choice::Count: {
            const int count = m_platform.files
                                  .list(m_platform.system.wordListFolder(), QStringLiteral(".wds"))
                                  .size();
            m_platform.dialogs.message(
                this, QStringLiteral("You have a total of %1 word lists.").arg(count));
            break;
        }
        }
    }
    if (isVisible()) {
        activateWindow();
        lstStyle->setFocus();
    }
}

void FrmChoose::cmdExit_Click()
{
    if (m_ending)
        return;
    m_ending = true;
    m_navigator.endProgram();
}

void FrmChoose::reject()
{
    cmdExit_Click();
}

void FrmChoose::closeEvent(QCloseEvent *event)
{
    event->accept();
    cmdExit_Click();
}

} // namespace lexicove
