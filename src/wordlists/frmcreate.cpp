#include "wordlists/frmcreate.h"

#include "core/controls.h"

#include "core/gamestate.h"
#include "wordlists/wordlists.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

namespace lexicove {

namespace {

const QString kListFull = QStringLiteral("You have entered the maximum number of words");
const QString kNoWord = QStringLiteral(
    "You did not enter a word. Please enter a word into the edit box, then choose Add.");
const QString kTooLong = QStringLiteral("This word is too long. Please enter a shorter word");
const QString kNothingToRemove =
    QStringLiteral("Your word list is empty. There is nothing to remove.");
const QString kNothingToSave =
    QStringLiteral("You have not entered any words into the word list. Please type some "
                   "words into the edit box, and then choose save");
const QString kNamePrompt = QStringLiteral(
    "Please enter a name for this word list, using only letters, numbers, and spaces");
const QString kInvalidNamePrompt =
    QStringLiteral("Invalid word list name! Please enter a name for this word list, using "
                   "only letters, numbers, and spaces");
const QString kSaveTitle = QStringLiteral("Save");
const QString kSaved = QStringLiteral("Your word list has been saved");

} // namespace

FrmCreate::FrmCreate(GameState &state, Platform &platform, Navigator &navigator)
    : ActivityWindow(navigator), m_state(state), m_platform(platform)
{
    setObjectName(QStringLiteral("frmCreate"));
    setWindowTitle(QStringLiteral("Lexicove - Enter Words"));
    // Wide enough that the title bar shows the whole title.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + 160);

    // A view on the entries, not an item apiece, so that a list of millions
    // of words opens at once; keys and selection as in any list box.
    lstWords = new QListView(this);
    setUpList(lstWords, QStringLiteral("lstWords"), QStringLiteral("Words in the list"));
    lstWords->setUniformItemSizes(true);
    lstWords->setModel(&m_entries);
    watchDeleteKey(lstWords);

    txtWord = new QLineEdit(this);
    txtWord->setObjectName(QStringLiteral("txtWord"));
    txtWord->setAccessibleName(QStringLiteral("New word"));

    cmdAdd = makeButton(this, QStringLiteral("cmdAdd"), QStringLiteral("&Add"));
    cmdAdd->setDefault(true);
    cmdRemove = makeButton(this, QStringLiteral("cmdRemove"), QStringLiteral("&Remove"));
    cmdSave = makeButton(this, QStringLiteral("cmdSave"), QStringLiteral("&Save"));
    cmdCancel = makeButton(this, QStringLiteral("cmdCancel"), QStringLiteral("&Cancel"));

    auto *editRow = new QHBoxLayout;
    editRow->addWidget(cmdAdd);
    editRow->addWidget(cmdRemove);
    auto *saveRow = new QHBoxLayout;
    saveRow->addWidget(cmdSave);
    saveRow->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lstWords);
    layout->addWidget(txtWord);
    layout->addLayout(editRow);
    layout->addLayout(saveRow);

    setTabOrder(txtWord, cmdAdd);
    setTabOrder(cmdAdd, cmdRemove);
    setTabOrder(cmdRemove, lstWords);
    setTabOrder(lstWords, cmdSave);
    setTabOrder(cmdSave, cmdCancel);

    connect(cmdAdd, &QPushButton::clicked, this, &FrmCreate::cmdAdd_Click);
    connect(cmdRemove, &QPushButton::clicked, this, &FrmCreate::cmdRemove_Click);
    connect(cmdSave, &QPushButton::clicked, this, &FrmCreate::cmdSave_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmCreate::cmdCancel_Click);
}

bool FrmCreate::Form_Load()
{
    m_entries.load(QByteArray());
    if (m_state.editingList) {
        FileFailure failure;
        if (!ReadForEditing(m_platform.files, m_state.wordListPath, m_entries, m_format, failure)) {
            m_platform.dialogs.message(
                nullptr, QStringLiteral("The word list file \"%1\" could not be opened: %2.")
                             .arg(failure.path, failure.reason));
            leaveWithoutOK();
            return false;
        }
        if (m_entries.size() > 0)
            select(0);
    }
    txtWord->setFocus();
    return true;
}

void FrmCreate::select(qsizetype row)
{
    lstWords->setCurrentIndex(m_entries.index(static_cast<int>(row)));
}

void FrmCreate::tell(const QString &prompt)
{
    keepingFocus([&] { return m_platform.dialogs.message(this, prompt); });
}

QString FrmCreate::ask(const QString &prompt, const QString &defaultText)
{
    return keepingFocus(
        [&] { return m_platform.dialogs.input(this, prompt, kSaveTitle, defaultText); });
}

void FrmCreate::cmdAdd_Click()
{
    const MadeWord made = MakeWord(
        txtWord->text(), static_cast<int>(qMin<qsizetype>(m_entries.size(), kMaxListWords)));
    switch (made.outcome) {
    case MadeWordOutcome::ListFull:
        tell(kListFull);
        return;
    case MadeWordOutcome::NoWord:
        tell(kNoWord);
        return;
    case MadeWordOutcome::TooLong:
        tell(kTooLong);
        return;
    case MadeWordOutcome::Word:
        m_entries.append(made.word);
        select(m_entries.size() - 1);
        txtWord->clear();
        return;
    }
}

void FrmCreate::cmdRemove_Click()
{
    const qsizetype i = lstWords->currentIndex().row();
    if (m_entries.size() == 0 || i < 0) {
        tell(kNothingToRemove);
        return;
    }
    m_entries.removeAt(i);
    if (i < m_entries.size())
        select(i);
    else if (m_entries.size() > 0)
        select(m_entries.size() - 1);
}

void FrmCreate::lstWords_KeyDown(int keyCode, Qt::KeyboardModifiers)
{
    if (keyCode == Qt::Key_Delete)
        cmdRemove_Click();
}

void FrmCreate::cmdSave_Click()
{
    if (finished())
        return;
    if (m_entries.size() == 0) {
        tell(kNothingToSave);
        return;
    }
    const QString offered = m_state.editingList ? ListNameOfPath(m_state.wordListPath) : QString();
    CheckedName checked = CheckListName(ask(kNamePrompt, offered));
    while (checked.outcome == NameCheck::Invalid)
        checked = CheckListName(ask(kInvalidNamePrompt, QString()));
    if (checked.outcome == NameCheck::Abandon)
        return;

    QString path;
    FileFailure failure;
    const auto entryAt = [this](qsizetype row) { return m_entries.entry(row); };
    if (!WriteList(m_platform.files, m_platform.system.wordListFolder(), checked.name,
                   m_entries.size(), entryAt, m_format, path, failure)) {
        // Nothing is lost: the words stay here and any old file is whole.
        tell(QStringLiteral("The word list could not be saved in the file \"%1\": %2. Your "
                            "words are still in the list.")
                 .arg(failure.path, failure.reason));
        return;
    }
    tell(kSaved);
    navigator().showMainMenu();
    finish();
}

void FrmCreate::cmdCancel_Click()
{
    cancel();
}

} // namespace lexicove
