#include "wordlists/frmwords.h"

#include "core/controls.h"

#include "core/gamestate.h"
#include "wordlists/wordlists.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

namespace lexicove {

namespace {

const QString kRandomEntry = QStringLiteral("Choose random list");
const QString kNoLists = QStringLiteral(
    "No word lists are available. Please choose the Create Word List option first.");
const QString kNothingToOpen = QStringLiteral("There is no word list to open.");
const QString kNothingToRemove =
    QStringLiteral("Your list of files is empty. There is nothing to remove.");
const QString kDeleted = QStringLiteral("The word list was deleted.");
const QString kDeleteTitle = QStringLiteral("Delete Word List");

// The entry's file name; empty for the random entry.
constexpr int kFileNameRole = Qt::UserRole;

} // namespace

FrmWords::FrmWords(GameState &state, Platform &platform, Navigator &navigator)
    : ActivityWindow(navigator), m_state(state), m_platform(platform)
{
    setObjectName(QStringLiteral("frmWords"));
    setWindowTitle(QStringLiteral("Lexicove - Select Word List"));
    // Wide enough that the title bar shows the whole title.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + 160);

    lstWords = makeList(this, QStringLiteral("lstWords"), QStringLiteral("Word lists"));
    watchDeleteKey(lstWords);

    cmdOK = makeButton(this, QStringLiteral("cmdOK"), QStringLiteral("&OK"));
    cmdOK->setDefault(true);
    cmdCancel = makeButton(this, QStringLiteral("cmdCancel"), QStringLiteral("&Cancel"));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lstWords);
    layout->addLayout(buttons);

    setTabOrder(lstWords, cmdOK);
    setTabOrder(cmdOK, cmdCancel);

    connect(cmdOK, &QPushButton::clicked, this, &FrmWords::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmWords::cmdCancel_Click);
}

bool FrmWords::playMode() const
{
    return m_state.chooserMode != kChooserEdit;
}

void FrmWords::AddListEntry(int row, const QString &fileName, qint32 wordCount)
{
    // One arg() for both: a name holding "%1" or "%2" is shown as it is.
    auto *item =
        new QListWidgetItem(QStringLiteral("%1 - %2 words")
                                .arg(ListNameOfFileName(fileName), QString::number(wordCount)));
    item->setData(kFileNameRole, fileName);
    lstWords->insertItem(row, item);
}

bool FrmWords::Form_Load()
{
    lstWords->clear();
    const QString folder = m_platform.system.wordListFolder();
    const QStringList names = EnumerateLists(m_platform.files, folder);
    if (names.isEmpty()) {
        m_platform.dialogs.message(nullptr, kNoLists);
        leaveWithoutOK();
        return false;
    }
    for (const QString &fileName : names) {
        qint32 count = 0;
        FileFailure failure;
        // A file that can't be read shows as holding no words; it can still
        // be chosen, and whoever opens it says why it can't be read.
        if (!CountWords(m_platform.files, folder, fileName, count, failure))
            count = 0;
        AddListEntry(lstWords->count(), fileName, count);
    }
    if (playMode())
        lstWords->addItem(kRandomEntry);
    lstWords->setCurrentRow(0);
    lstWords->setFocus();
    return true;
}

MessageResult FrmWords::tell(const QString &prompt, MessageButtons buttons, const QString &title)
{
    return keepingFocus([&] { return m_platform.dialogs.message(this, prompt, buttons, title); });
}

void FrmWords::cmdOK_Click()
{
    if (finished())
        return;
    const int n = lstWords->count();
    int i = lstWords->currentRow();
    if (n == 0) {
        // Every list was deleted while choosing one to edit.
        tell(kNothingToOpen);
        return;
    }
    if (i < 0)
        return;
    if (m_state.chooserMode == kChooserOptions && i == n - 1) {
        // i is the number of real lists: Int(r * i) is one of them, each as
        // likely as the others, and never the random entry itself.
        i = static_cast<int>(m_platform.random.next() * i);
    }
    const QString fileName = lstWords->item(i)->data(kFileNameRole).toString();
    if (fileName.isEmpty())
        return;
    m_state.wordListPath = joinPath(m_platform.system.wordListFolder(), fileName);

    startLeaving();
    if (m_state.chooserMode == kChooserOptions) {
        navigator().openOptions();
    } else if (m_state.chooserMode == kChooserEdit) {
        m_state.editingList = true;
        navigator().openEditor();
    } else {
        navigator().showMainMenu();
    }
    finish();
}

void FrmWords::cmdCancel_Click()
{
    cancel();
}

void FrmWords::lstWords_KeyDown(int keyCode, Qt::KeyboardModifiers)
{
    if (keyCode != Qt::Key_Delete || !m_state.editingList)
        return;
    const int i = lstWords->currentRow();
    if (lstWords->count() == 0 || i < 0) {
        tell(kNothingToRemove);
        return;
    }
    const QString fileName = lstWords->item(i)->data(kFileNameRole).toString();
    if (fileName.isEmpty())
        return;
    const QString listName = ListNameOfFileName(fileName);
    const MessageResult answer =
        tell(QStringLiteral("Are you sure you want to delete the %1 word list?").arg(listName),
             MessageButtons::YesNo, kDeleteTitle);
    if (answer != MessageResult::Yes)
        return;

    std::unique_ptr<QListWidgetItem> removed(lstWords->takeItem(i));
    if (i < lstWords->count())
        lstWords->setCurrentRow(i);
    else if (lstWords->count() > 0)
        lstWords->setCurrentRow(lstWords->count() - 1);

    FileFailure failure;
    if (!DeleteList(m_platform.files, m_platform.system.wordListFolder(), fileName, failure)) {
        // The list is still there: its entry comes back where it was.
        lstWords->insertItem(i, removed.release());
        lstWords->setCurrentRow(i);
        tell(QStringLiteral("The word list file \"%1\" could not be deleted: %2.")
                 .arg(failure.path, failure.reason));
        return;
    }
    tell(kDeleted);
}

} // namespace lexicove
