#include "setup/frmoptions.h"

#include "core/controls.h"

#include "core/gamestate.h"
#include "platform/platform.h"
#include "setup/numberreader.h"
#include "setup/wordloading.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QPushButton>

namespace lexicove {

namespace {

const QString kTooBig = QStringLiteral(
    "The puzzle you have chosen is too big for these credentials. Please modify the settings "
    "on this screen, and try again");
const QString kNoDirection = QStringLiteral(
    "You must select at least one method of placing words, from horizontal, vertical, or "
    "diagonal");
const QString kNoWords = QStringLiteral(
    "This word list has no words to play. Please choose another list, or add words to it "
    "first.");

struct NumberQuestion {
    QString prompt;
    QString title;
    QString defaultText;
    qint64 minimum;
    qint64 maximum;
};

void setCaption(QPushButton *button, const QString &caption)
{
    button->setText(caption);
    button->setAccessibleName(spoken(caption));
}

bool isChecked(const QCheckBox *box)
{
    // A greyed box does not count as checked.
    return box->checkState() == Qt::Checked;
}

// The placement's time limits count on the platform's tick counter; the
// running total survives the counter's wrap.
WordPlacer::TimeSource tickTime(Clock &clock)
{
    return [&clock, last = clock.tickCount(), total = 0.0]() mutable {
        const quint32 now = clock.tickCount();
        total += static_cast<quint32>(now - last);
        last = now;
        return total;
    };
}

// Making a puzzle can take a moment; the pointer says so meanwhile.
class BusyCursor {
public:
    BusyCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};

} // namespace

FrmOptions::FrmOptions(GameState &state, Platform &platform, Navigator &navigator)
    : ActivityWindow(navigator), m_state(state), m_platform(platform),
      m_placer(std::make_unique<WordPlacer>(state, platform.random, tickTime(platform.clock)))
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Lexicove - Set Options"));

    // Created in tab order; the captions of the three number buttons are set
    // again by Form_Load from the game state.
    cmdRows = makeButton(this, QStringLiteral("cmdRows"),
                         QStringLiteral("&Rows of letters (20)..."));
    cmdCols = makeButton(this, QStringLiteral("cmdCols"),
                         QStringLiteral("&Columns of letters (20)..."));
    cmdTimeLimit = makeButton(this, QStringLiteral("cmdTimeLimit"),
                              QStringLiteral("&Time Limit (0)..."));
    chkHorizontal = makeCheckBox(this, QStringLiteral("chkHorizontal"),
                                 QStringLiteral("&Horizontal Words"), true);
    chkVertical = makeCheckBox(this, QStringLiteral("chkVertical"),
                               QStringLiteral("&Vertical Words"), true);
    chkDiagonal = makeCheckBox(this, QStringLiteral("chkDiagonal"),
                               QStringLiteral("&Diagonal Words"), false);
    // Every access key does one thing: "Horizontal" and "Columns" keep H and
    // C, so "Hide Words" and "Cancel" take letters no other control uses.
    chkHide = makeCheckBox(this, QStringLiteral("chkHide"), QStringLiteral("Hide &Words"),
                           false);
    cmdOK = makeButton(this, QStringLiteral("cmdOK"), QStringLiteral("&OK"));
    cmdOK->setDefault(true);
    cmdCancel = makeButton(this, QStringLiteral("cmdCancel"), QStringLiteral("C&ancel"));

    // Two columns: the size buttons on top, the directions below them, the
    // time limit beside the diagonal box, then the hide box, then OK and
    // Cancel.
    auto *layout = new QGridLayout(this);
    layout->addWidget(cmdRows, 0, 0);
    layout->addWidget(cmdCols, 0, 1);
    layout->addWidget(chkHorizontal, 1, 0);
    layout->addWidget(chkVertical, 1, 1);
    layout->addWidget(chkDiagonal, 2, 0);
    layout->addWidget(cmdTimeLimit, 2, 1);
    layout->addWidget(chkHide, 3, 0);
    layout->addWidget(cmdOK, 4, 0);
    layout->addWidget(cmdCancel, 4, 1);

    const QList<QWidget *> tabOrder{cmdRows,     cmdCols,     cmdTimeLimit,
                                    chkHorizontal, chkVertical, chkDiagonal,
                                    chkHide,     cmdOK,       cmdCancel};
    for (qsizetype i = 1; i < tabOrder.size(); ++i)
        setTabOrder(tabOrder.at(i - 1), tabOrder.at(i));

    connect(cmdRows, &QPushButton::clicked, this, &FrmOptions::cmdRows_Click);
    connect(cmdCols, &QPushButton::clicked, this, &FrmOptions::cmdCols_Click);
    connect(cmdTimeLimit, &QPushButton::clicked, this, &FrmOptions::cmdTimeLimit_Click);
    connect(cmdOK, &QPushButton::clicked, this, &FrmOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmOptions::cmdCancel_Click);
}

FrmOptions::~FrmOptions() = default;

void FrmOptions::ShowCaptions()
{
    setCaption(cmdRows, QStringLiteral("&Rows of letters (%1)...").arg(m_state.rows));
    setCaption(cmdCols, QStringLiteral("&Columns of letters (%1)...").arg(m_state.columns));
    setCaption(cmdTimeLimit, QStringLiteral("&Time Limit (%1)...").arg(m_state.timeLimit));
}

bool FrmOptions::Form_Load()
{
    m_state.rows = 20;
    m_state.columns = 20;
    m_state.timeLimit = 0;
    ShowCaptions();

    QString error;
    if (!LoadWords(m_state, m_platform.files, error)) {
        m_platform.dialogs.message(nullptr, QStringLiteral("The word list file %1 could not be "
                                                           "opened: %2.")
                                                .arg(m_state.wordListPath, error));
        leaveWithoutOK();
        return false;
    }
    // A list of nothing but empty lines would make a puzzle of filler
    // letters alone, with nothing to find.
    if (m_state.wordCount == 0 || m_state.letterCount == 0) {
        m_platform.dialogs.message(nullptr, kNoWords);
        leaveWithoutOK();
        return false;
    }
    cmdRows->setFocus();
    return true;
}

qint64 FrmOptions::AskNumber(Question question)
{
    static const NumberQuestion kRows{
        QStringLiteral("How many rows of letters would you like in the puzzle? The default is "
                       "20, minimum is 5, and maximum is 50"),
        QStringLiteral("Rows"), QStringLiteral("20"), 5, 50};
    static const NumberQuestion kColumns{
        QStringLiteral("How many columns of letters would you like in the puzzle? The default "
                       "is 20, minimum is 5, and maximum is 50"),
        QStringLiteral("Columns"), QStringLiteral("20"), 5, 50};
    static const NumberQuestion kTimeLimit{
        QStringLiteral("How many minutes would you like to have to complete the puzzle? The "
                       "default is 0, meaining that you have as much time as you want. The "
                       "minimum you can set is 1, and maximum is 60."),
        QStringLiteral("Time Limit"), QStringLiteral("0"), 0, 60};

    const NumberQuestion &asked = question == Question::Rows      ? kRows
                                  : question == Question::Columns ? kColumns
                                                                  : kTimeLimit;
    // A cancelled box gives the empty reply, which reads as 0: asked again
    // for the sizes, no limit for the time.
    for (;;) {
        const QString reply =
            m_platform.dialogs.input(this, asked.prompt, asked.title, asked.defaultText);
        const std::optional<qint64> number = ReadReplyNumber(reply);
        if (number && *number >= asked.minimum && *number <= asked.maximum)
            return *number;
    }
}

void FrmOptions::cmdRows_Click()
{
    m_state.rows = static_cast<qint16>(AskNumber(Question::Rows));
    ShowCaptions();
    cmdRows->setFocus();
}

void FrmOptions::cmdCols_Click()
{
    m_state.columns = static_cast<qint16>(AskNumber(Question::Columns));
    ShowCaptions();
    cmdCols->setFocus();
}

void FrmOptions::cmdTimeLimit_Click()
{
    m_state.timeLimit = static_cast<qint32>(AskNumber(Question::TimeLimit));
    ShowCaptions();
    cmdTimeLimit->setFocus();
}

void FrmOptions::cmdOK_Click()
{
    if (finished())
        return;
    if (!PassesSizeTest(m_state)) {
        m_platform.dialogs.message(this, kTooBig);
        cmdOK->setFocus();
        return;
    }

    m_state.hideWords = isChecked(chkHide);
    m_state.allowDiagonal = isChecked(chkDiagonal);
    m_state.allowHorizontal = isChecked(chkHorizontal);
    m_state.allowVertical = isChecked(chkVertical);
    if (!m_state.allowHorizontal && !m_state.allowVertical && !m_state.allowDiagonal) {
        m_platform.dialogs.message(this, kNoDirection);
        cmdOK->setFocus();
        return;
    }

    PlacementStatus status;
    {
        const BusyCursor busy;
        m_placer->ClearPuzzle();
        m_placer->PlaceWord(1);
        status = m_placer->placementStatus();
    }
    if (status == PlacementStatus::Failed) {
        m_platform.dialogs.message(this, kTooBig);
        cmdOK->setFocus();
        return;
    }
    FillGrid(m_state, m_platform.random);

    startLeaving();
    navigator().openPuzzle();
    finish();
}

void FrmOptions::cmdCancel_Click()
{
    cancel();
}

} // namespace lexicove
