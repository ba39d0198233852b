#include "play/frmsearch.h"

#include "core/gamestate.h"
#include "core/navigator.h"
#include "output/pagelayout.h"
#include "output/puzzlefile.h"
#include "platform/platform.h"
#include "play/frmlist.h"
#include "play/timereport.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QSet>

#include <algorithm>

namespace lexicove {

namespace {

// Character codes the window acts on when typed in the grid.
enum class KeyCode { Escape = 27, Space = 32 };

// Each letter column is 200 twips wide (a twip is 1/1440 inch).
constexpr double kLetterColumnTwips = 200.0;
constexpr double kTwipsPerInch = 1440.0;

const QString kExitQuestion = QStringLiteral("Really exit this word search?");
const QString kExitTitle = QStringLiteral("Confirmation");
const QString kListTitle = QStringLiteral("Word List - Words Remaining");
const QString kNoneToFind = QStringLiteral("You've found all the words!");

} // namespace

FrmSearch::FrmSearch(GameState &state, Platform &platform, Navigator &navigator)
    : m_state(state), m_platform(platform), m_navigator(navigator), m_play(state, platform.clock)
{
    setObjectName(QStringLiteral("frmSearch"));
    setWindowTitle(kAppTitle);

    flex = new PuzzleGrid(this);
    flex->setObjectName(QStringLiteral("flex"));
    flex->setEditTriggers(QAbstractItemView::NoEditTriggers);
    flex->setSelectionMode(QAbstractItemView::SingleSelection);
    flex->setSelectionBehavior(QAbstractItemView::SelectItems);
    // Tab leaves the grid alone; only the cursor keys move over the letters.
    flex->setTabKeyNavigation(false);
    flex->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    flex->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    flex->installEventFilter(this);
    setCentralWidget(flex);
    connect(flex, &PuzzleGrid::focusEntered, this, &FrmSearch::ReplayLetterSoon);
    connect(flex, &PuzzleGrid::focusLeft, this, [this] { ++m_gridEvents; });

    BuildMenu();
}

void FrmSearch::BuildMenu()
{
    menuBar()->setAccessibleName(QStringLiteral("Menu"));
    mnuPuzzle = menuBar()->addMenu(QStringLiteral("&Puzzle"));
    mnuPuzzle->setObjectName(QStringLiteral("mnuPuzzle"));
    mnuPuzzle->setAccessibleName(QStringLiteral("Puzzle"));

    const auto add = [this](const char *name, const QString &caption, const QKeySequence &keys,
                            void (FrmSearch::*handler)()) {
        QAction *action = mnuPuzzle->addAction(caption);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, handler);
        return action;
    };
    mnuFind = add("mnuFind", QStringLiteral("&Words To Find"), QKeySequence(Qt::CTRL | Qt::Key_W),
                  &FrmSearch::mnuFind_Click);
    mnuTimeRemaining = add("mnuTimeRemaining", QStringLiteral("&Time Remaining"),
                           QKeySequence(Qt::CTRL | Qt::Key_T), &FrmSearch::mnuTimeRemaining_Click);
    mnuSavePuzzle = add("mnuSavePuzzle", QStringLiteral("&Save Puzzle"),
                        QKeySequence(Qt::CTRL | Qt::Key_S), &FrmSearch::mnuSavePuzzle_Click);
    mnuPrintPuzzle = add("mnuPrintPuzzle", QStringLiteral("&Print Puzzle"),
                         QKeySequence(Qt::CTRL | Qt::Key_P), &FrmSearch::mnuPrintPuzzle_Click);
    mnuBraillePuzzle = add("mnuBraillePuzzle", QStringLiteral("&Braille Puzzle"),
                           QKeySequence(Qt::CTRL | Qt::Key_B), &FrmSearch::mnuBraillePuzzle_Click);
    mnuExit =
        add("mnuExit", QStringLiteral("E&xit Puzzle"), QKeySequence(), &FrmSearch::mnuExit_Click);
}

bool FrmSearch::Form_Load()
{
    m_play.ClearFound();
    FillGridView();
    PrepareSounds();
    // The cursor starts on the first letter; it is heard once the window is
    // active and the grid has the focus.
    flex->setCurrentCell(0, 0);
    connect(flex, &PuzzleGrid::cursorMoved, this, &FrmSearch::flex_RowColChange);
    // A new window starts with every word to find and no mark pending.
    m_play.Begin();
    SizeToGrid();
    flex->setFocus();
    return true;
}

void FrmSearch::FillGridView()
{
    const int rows = std::clamp(static_cast<int>(m_state.rows), 0, GameState::kMaxSide);
    const int columns = std::clamp(static_cast<int>(m_state.columns), 0, GameState::kMaxSide);
    flex->clear();
    flex->setRowCount(rows);
    flex->setColumnCount(columns);

    QStringList rowNumbers;
    for (int r = 1; r <= rows; ++r)
        rowNumbers.append(QString::number(r));
    QStringList columnNumbers;
    for (int c = 1; c <= columns; ++c)
        columnNumbers.append(QString::number(c));
    flex->setVerticalHeaderLabels(rowNumbers);
    flex->setHorizontalHeaderLabels(columnNumbers);

    const int letterWidth = qRound(kLetterColumnTwips / kTwipsPerInch * logicalDpiX());
    QHeaderView *columnHeader = flex->horizontalHeader();
    columnHeader->setMinimumSectionSize(1);
    columnHeader->setDefaultSectionSize(letterWidth);
    // Column numbers up to two digits fit the narrow letter columns in a
    // smaller type without margins.
    columnHeader->setStyleSheet(QStringLiteral("QHeaderView::section { padding: 0px; }"));
    QFont numberFont = columnHeader->font();
    while (numberFont.pointSizeF() > 5.0 &&
           QFontMetrics(numberFont).horizontalAdvance(QString::number(columns)) > letterWidth - 2)
        numberFont.setPointSizeF(numberFont.pointSizeF() - 0.5);
    columnHeader->setFont(numberFont);
    flex->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);

    for (int r = 1; r <= rows; ++r) {
        for (int c = 1; c <= columns; ++c) {
            const QString &letter = m_state.grid[r][c];
            auto *cell = new QTableWidgetItem(letter);
            cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            cell->setTextAlignment(Qt::AlignCenter);
            flex->setItem(r - 1, c - 1, cell);
        }
    }
}

void FrmSearch::PrepareSounds()
{
    QSet<QString> letters;
    for (int r = 1; r <= flex->rowCount(); ++r)
        for (int c = 1; c <= flex->columnCount(); ++c)
            letters.insert(m_state.grid[r][c].trimmed());
    QStringList paths;
    const QString folder = m_platform.system.programFolder();
    for (const QString &letter : std::as_const(letters)) {
        if (!letter.isEmpty())
            paths.append(joinPath(folder, letter + QStringLiteral(".wav")));
    }
    for (const QString &name : Marking::Sounds())
        paths.append(joinPath(folder, name));
    m_platform.sound.prepare(paths);
}

void FrmSearch::SizeToGrid()
{
    const int width = flex->verticalHeader()->sizeHint().width() +
                      flex->horizontalHeader()->length() + 2 * flex->frameWidth() + 4;
    const int height = menuBar()->sizeHint().height() +
                       flex->horizontalHeader()->sizeHint().height() +
                       flex->verticalHeader()->length() + 2 * flex->frameWidth() + 4;
    QSize size(std::max(width, 240), std::max(height, 160));
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableGeometry().size() * 9 / 10);
    resize(size);
}

bool FrmSearch::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == flex && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        int code = -1;
        if (key->key() == Qt::Key_Escape)
            code = static_cast<int>(KeyCode::Escape);
        else if (key->text().size() == 1)
            code = key->text().at(0).unicode();
        // The grid would do nothing with these characters anyway; keeping
        // them from it means a window that is closing is not touched again.
        if (Form_KeyPress(code))
            return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

bool FrmSearch::Form_KeyPress(int code)
{
    switch (static_cast<KeyCode>(code)) {
    case KeyCode::Space:
        MarkLetter();
        return true;
    case KeyCode::Escape:
        ConfirmExit();
        return true;
    }
    return false;
}

void FrmSearch::flex_RowColChange()
{
    ++m_gridEvents;
    PlayCurrentLetter();
}

void FrmSearch::PlayCurrentLetter()
{
    // A cell without a letter says nothing.
    const QString letter = flex->currentLetter();
    if (!letter.isEmpty())
        PlaySound(letter + QStringLiteral(".wav"));
}

void FrmSearch::ReplayLetterSoon()
{
    const quint64 ticket = ++m_gridEvents;
    // A screen reader names the window first; without one the letter comes at
    // once.
    const int wait = m_platform.system.screenReaderRunning() ? kLetterAfterFocusMs : 0;
    m_platform.clock.callAfter(wait, this, [this, ticket] {
        if (ticket != m_gridEvents || !flex->hasFocus() || !isActiveWindow())
            return;
        flex->focusAnnounced();
        PlayCurrentLetter();
    });
}

void FrmSearch::MarkLetter()
{
    const int row = flex->currentRow();
    const int column = flex->currentColumn();
    if (row < 0 || column < 0)
        return;
    Perform(m_play.MarkLetter(row + 1, column + 1));
}

void FrmSearch::Perform(const Replies &replies)
{
    for (const Reply &reply : replies) {
        switch (reply.kind) {
        case Reply::Kind::Sound:
            PlaySound(reply.text);
            break;
        case Reply::Kind::ClosingSound:
            PlaySound(m_play.ClosingSound());
            break;
        case Reply::Kind::Message:
            ShowMessage(reply.text);
            break;
        }
    }
}

void FrmSearch::PlaySound(const QString &name)
{
    m_platform.sound.play(joinPath(m_platform.system.programFolder(), name));
}

void FrmSearch::ShowMessage(const QString &text)
{
    m_platform.dialogs.message(this, text);
}

void FrmSearch::mnuFind_Click()
{
    if (m_play.wordsRemaining() == 0) {
        ShowMessage(kNoneToFind);
        return;
    }
    FrmList &list = m_navigator.listWindow();
    list.fill(WordsToFind(m_state, m_play.wordFound()));
    list.list()->setAccessibleName(QStringLiteral("Words to find"));
    list.setWindowTitle(kListTitle);
    const QPointer<FrmSearch> self(this);
    list.setAfterOk([self] {
        if (self)
            self->ShowAgain();
    });
    list.show();
    list.raise();
    list.activateWindow();
    list.list()->setFocus();
    hide();
}

void FrmSearch::ShowAgain()
{
    show();
    raise();
    activateWindow();
    flex->setFocus();
}

void FrmSearch::mnuTimeRemaining_Click()
{
    ShowMessage(TimeReport(m_state.timeLimit, m_play.elapsed()));
}

void FrmSearch::mnuSavePuzzle_Click()
{
    const QString failure = SaveMessage(SavePuzzle(m_state, m_platform, this));
    if (!failure.isEmpty())
        ShowMessage(failure);
    BackToGrid();
}

void FrmSearch::mnuPrintPuzzle_Click()
{
    RunOutputJob(OutputMode::Print);
}

void FrmSearch::mnuBraillePuzzle_Click()
{
    AskBraillePage(m_state, m_platform.dialogs, this);
    RunOutputJob(OutputMode::Braille);
}

void FrmSearch::RunOutputJob(OutputMode mode)
{
    JobWindow window;
    window.parent = this;
    window.chooseFromList = [this](const QString &title, const QStringList &entries, int selected) {
        return ChooseFromList(title, entries, selected);
    };
    // Repaints and the like, but no keys: the player can't leave the puzzle
    // while its pages are being made.
    window.yield = [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
    OutputJob job(m_state, m_platform, std::move(window));
    const QString message = JobMessage(job.OutputPuzzle(mode));
    if (!message.isEmpty())
        ShowMessage(message);
    BackToGrid();
}

QString FrmSearch::ChooseFromList(const QString &title, const QStringList &entries, int selected)
{
    FrmList &list = m_navigator.listWindow();
    list.fill(entries);
    list.list()->setCurrentRow(selected);
    list.list()->setAccessibleName(QStringLiteral("Font sizes"));
    list.setWindowTitle(title);
    // OK (or Escape, or the close box) only hides the list; this window stays
    // as it is underneath.
    list.setAfterOk(nullptr);
    list.list()->setFocus();
    list.exec();
    const QListWidgetItem *chosen = list.list()->currentItem();
    return chosen ? chosen->text() : entries.value(selected);
}

void FrmSearch::BackToGrid()
{
    raise();
    activateWindow();
    flex->setFocus();
    ReplayLetterSoon();
}

void FrmSearch::mnuExit_Click()
{
    ConfirmExit();
}

bool FrmSearch::AskExit()
{
    return m_platform.dialogs.message(this, kExitQuestion, MessageButtons::YesNo, kExitTitle) ==
           MessageResult::Yes;
}

void FrmSearch::ConfirmExit()
{
    if (m_leaving || !AskExit())
        return;
    m_leaving = true;
    m_navigator.showMainMenu();
    close();
}

void FrmSearch::closeEvent(QCloseEvent *event)
{
    // The close box asks as Escape does, so that leaving always brings the
    // main menu back; No goes on with the game untouched.
    if (!m_leaving) {
        if (!AskExit()) {
            event->ignore();
            return;
        }
        m_leaving = true;
        m_navigator.showMainMenu();
    }
    event->accept();
}

} // namespace lexicove
