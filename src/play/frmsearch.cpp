#include "play/frmsearch.h"

#include "core/gamestate.h"
#include "core/navigator.h"
#include "output/pagelayout.h"
#include "output/puzzlefile.h"
#include "platform/platform.h"
#include "play/frmlist.h"
#include "play/timereport.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QSet>
#include <QStyle>
#include <QWindow>

#include <algorithm>
#include <array>

namespace lexicove {

namespace {

// Character codes the window acts on when typed in the grid.
enum class KeyCode { Escape = 27, Space = 32 };

// The sizes the puzzle is drawn at, in percent of the desktop's font size.
constexpr std::array kZoomSteps{100, 125, 150, 175, 200, 250, 300, 350, 400};
constexpr int kNormalZoom = 100;
enum class ZoomChange { None, In, Out, Reset };
// A zoom is too large when the screen can't show the smallest puzzle whole.
constexpr int kSmallestSide = 5;
// Room for a window's frame before the window system has drawn one, when no
// other window of the game shows what the frames are like.
constexpr QMargins kFrameGuess(8, 32, 8, 8);
constexpr QSize kSmallestWindow(240, 160);

// Ctrl with Plus or Equals (with or without Shift, on the keypad too), Minus
// or 0.
ZoomChange ZoomChangeOf(const QKeyEvent &key)
{
    if (!(key.modifiers() & Qt::ControlModifier) ||
        (key.modifiers() & (Qt::AltModifier | Qt::MetaModifier)))
        return ZoomChange::None;
    switch (key.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return ZoomChange::In;
    case Qt::Key_Minus:
        return ZoomChange::Out;
    case Qt::Key_0:
        return ZoomChange::Reset;
    default:
        return ZoomChange::None;
    }
}

// Ctrl+L, the braille status: the L of "location".
bool IsBrailleStatusKey(const QKeyEvent &key)
{
    return key.key() == Qt::Key_L && (key.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
}

// The step the change leads to from percent; percent itself when there is
// none further that way.
int ZoomAfter(int percent, ZoomChange change)
{
    switch (change) {
    case ZoomChange::In: {
        const auto next = std::upper_bound(kZoomSteps.begin(), kZoomSteps.end(), percent);
        return next != kZoomSteps.end() ? *next : percent;
    }
    case ZoomChange::Out: {
        const auto next = std::lower_bound(kZoomSteps.begin(), kZoomSteps.end(), percent);
        return next != kZoomSteps.begin() ? *(next - 1) : percent;
    }
    case ZoomChange::Reset:
        return kNormalZoom;
    case ZoomChange::None:
        break;
    }
    return percent;
}

const QString kZoomSetting = QStringLiteral("puzzle/zoom");

const QString kExitQuestion = QStringLiteral("Really exit this word search?");
const QString kExitTitle = QStringLiteral("Confirmation");
const QString kListTitle = QStringLiteral("Word List - Words Remaining");
const QString kNoneToFind = QStringLiteral("You've found all the words!");
const QString kZoomNotKept =
    QStringLiteral("The size of the letters could not be kept for your next game: %1.");

} // namespace

FrmSearch::FrmSearch(GameState &state, Platform &platform, Navigator &navigator)
    : m_state(state), m_platform(platform), m_navigator(navigator), m_play(state, platform.clock),
      m_frameGuess(kFrameGuess)
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
    flex->installEventFilter(this);
    setCentralWidget(flex);
    connect(flex, &PuzzleGrid::focusEntered, this, &FrmSearch::ReplayLetterSoon);
    connect(flex, &PuzzleGrid::focusEntered, this, &FrmSearch::TakeBraille);
    connect(flex, &PuzzleGrid::focusLeft, this, [this] {
        ++m_gridEvents;
        ReleaseBraille();
    });
    flex->setMarksSource([this](int row, int column) {
        const std::optional<GridCell> pending = m_play.pendingMark();
        return PuzzleGrid::CellMarks{m_play.isFound(row, column),
                                     pending && *pending == GridCell{row, column}};
    });

    BuildMenu();
}

FrmSearch::~FrmSearch()
{
    // The grid outlives this part of the window by a moment and loses the
    // focus on the way out: nothing of it may reach a window that is gone.
    flex->removeEventFilter(this);
    disconnect(flex, nullptr, this, nullptr);
    ReleaseBraille();
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
    OpenAtScreenSize();
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

void FrmSearch::OpenAtScreenSize()
{
    // On the screen the game is on: the one of the window that opens this one.
    const QWidget *opener = QApplication::activeWindow();
    if (QScreen *screen = opener ? opener->screen() : QGuiApplication::primaryScreen())
        setScreen(screen);
    // This window's frame will be like the opener's.
    if (const QWindow *handle = opener ? opener->windowHandle() : nullptr)
        if (!handle->frameMargins().isNull())
            m_frameGuess = handle->frameMargins();
    // The zoom chosen last time, or the largest step below it that the
    // screen can show.
    const int stored = m_platform.settings.number(kZoomSetting, kNormalZoom);
    int zoom = std::find(kZoomSteps.begin(), kZoomSteps.end(), stored) != kZoomSteps.end()
                   ? stored
                   : kNormalZoom;
    while (!ApplyZoom(zoom) && zoom != kNormalZoom)
        zoom = ZoomAfter(zoom, ZoomChange::Out);
    FitToGrid(true);
}

QMargins FrmSearch::FrameMargins() const
{
    const QWindow *handle = windowHandle();
    return handle && isVisible() ? handle->frameMargins() : m_frameGuess;
}

QRect FrmSearch::Room() const
{
    const QScreen *shown = screen();
    return shown ? shown->availableGeometry() : QRect(QPoint(0, 0), kSmallestWindow);
}

QSize FrmSearch::WindowSizeFor(const QSize &gridSize) const
{
    return gridSize + QSize(0, menuBar()->sizeHint().height());
}

bool FrmSearch::ApplyZoom(int percent)
{
    const int before = flex->zoom();
    flex->setZoom(percent);
    const QSize smallest = WindowSizeFor(flex->sizeFor(kSmallestSide, kSmallestSide));
    const QSize room = Room().marginsRemoved(FrameMargins()).size();
    if (percent == kNormalZoom ||
        (smallest.width() <= room.width() && smallest.height() <= room.height()))
        return true;
    flex->setZoom(before);
    return false;
}

void FrmSearch::FitToGrid(bool centre)
{
    // A window the player has maximised keeps its size; the grid scrolls.
    if (isMaximized() || isFullScreen())
        return;
    const QMargins frame = FrameMargins();
    const QRect room = Room();
    const QSize most = room.marginsRemoved(frame).size();
    QSize whole = WindowSizeFor(flex->sizeFor(flex->rowCount(), flex->columnCount()));
    // A scroll bar one way takes room the other way.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, flex);
    const bool down = whole.height() > most.height();
    if (down)
        whole.rwidth() += bar;
    if (whole.width() > most.width()) {
        whole.rheight() += bar;
        if (!down && whole.height() > most.height())
            whole.rwidth() += bar;
    }
    const QSize size = whole.expandedTo(kSmallestWindow).boundedTo(most);
    resize(size);

    const QSize outer = size.grownBy(frame);
    QPoint corner = centre ? room.topLeft() + QPoint((room.width() - outer.width()) / 2,
                                                     (room.height() - outer.height()) / 2)
                           : frameGeometry().topLeft();
    // Grown, the window stays on the screen.
    corner.setX(std::clamp(corner.x(), room.left(),
                           std::max(room.left(), room.right() + 1 - outer.width())));
    corner.setY(std::clamp(corner.y(), room.top(),
                           std::max(room.top(), room.bottom() + 1 - outer.height())));
    move(corner);
}

void FrmSearch::ChangeZoom(int percent)
{
    if (percent == flex->zoom() || !ApplyZoom(percent))
        return;
    FitToGrid(false);
    QString error;
    if (!m_platform.settings.setNumber(kZoomSetting, percent, error) && !m_toldZoomNotKept) {
        // Once per puzzle: the zoom still holds for this game.
        m_toldZoomNotKept = true;
        ShowMessage(kZoomNotKept.arg(error));
    }
}

bool FrmSearch::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == flex && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (const ZoomChange change = ZoomChangeOf(*key); change != ZoomChange::None) {
            ChangeZoom(ZoomAfter(flex->zoom(), change));
            return true;
        }
        if (IsBrailleStatusKey(*key)) {
            ShowStatusOnBraille();
            return true;
        }
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
    ShowRowOnBraille(true);
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

void FrmSearch::TakeBraille()
{
    m_brailleTaken = true;
    m_brailleReady = false;
    BrailleDisplay::Events events;
    events.ready = [this](int width) {
        m_brailleReady = true;
        m_braille.setWidth(width);
        ShowRowOnBraille(true);
    };
    events.key = [this](BrailleDisplay::Key key) { BrailleKeyPressed(key); };
    m_platform.braille.take(this, std::move(events));
}

void FrmSearch::ReleaseBraille()
{
    // Only this window's hold: the next puzzle's window may have taken the
    // display before this one is gone.
    if (!m_brailleTaken)
        return;
    m_brailleTaken = false;
    m_brailleReady = false;
    m_platform.braille.release();
}

void FrmSearch::ShowRowOnBraille(bool follow)
{
    const int row = flex->currentRow() + 1;
    const int column = flex->currentColumn() + 1;
    if (!m_brailleReady || row < 1 || column < 1)
        return;
    ++m_brailleShows;
    if (follow)
        m_braille.follow(column);
    m_platform.braille.show(m_braille.cells(RowOnBraille(m_state, m_play, row), column));
}

void FrmSearch::ShowStatusOnBraille()
{
    if (!m_brailleReady)
        return;
    BrailleCells status;
    status.text = BraillePresenter::status(flex->currentRow() + 1, flex->currentColumn() + 1,
                                           m_state.wordCount - m_play.wordsRemaining(),
                                           m_state.wordCount, m_braille.width());
    status.dots.fill('\0', status.text.size());
    const quint64 shown = ++m_brailleShows;
    m_platform.braille.show(status);
    m_platform.clock.callAfter(kBrailleStatusMs, this, [this, shown] {
        if (shown == m_brailleShows)
            ShowRowOnBraille(false);
    });
}

void FrmSearch::BrailleKeyPressed(BrailleDisplay::Key key)
{
    switch (key.kind) {
    case BrailleDisplay::KeyKind::Route:
        // Exactly a move: the letter plays and the display follows.
        if (const int column = m_braille.route(key.cell, flex->columnCount());
            column > 0 && column != flex->currentColumn() + 1) {
            flex->setCurrentCell(flex->currentRow(), column - 1);
            return;
        }
        break;
    case BrailleDisplay::KeyKind::PanLeft:
        m_braille.pan(BraillePresenter::Pan::Left, flex->columnCount());
        break;
    case BrailleDisplay::KeyKind::PanRight:
        m_braille.pan(BraillePresenter::Pan::Right, flex->columnCount());
        break;
    }
    // The row again, in place of a status.
    ShowRowOnBraille(false);
}

void FrmSearch::MarkLetter()
{
    const int row = flex->currentRow();
    const int column = flex->currentColumn();
    if (row < 0 || column < 0)
        return;
    const Replies replies = m_play.MarkLetter(row + 1, column + 1);
    // Seen (and felt) behind the message that tells the find.
    flex->showMarks();
    ShowRowOnBraille(false);
    Perform(replies);
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
