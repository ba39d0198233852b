#include "core/frmchoose.h"
#include "core/game.h"
#include "core/gamestate.h"
#include "fakeplatform.h"
#include "keys.h"
#include "mainmenu.h"
#include "setup/frmoptions.h"
#include "windowrig.h"

#include <QCheckBox>
#include <QDialog>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

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
const QString kRowsPrompt = QStringLiteral(
    "How many rows of letters would you like in the puzzle? The default is 20, minimum is 5, "
    "and maximum is 50");
const QString kColumnsPrompt = QStringLiteral(
    "How many columns of letters would you like in the puzzle? The default is 20, minimum is "
    "5, and maximum is 50");
const QString kTimePrompt = QStringLiteral(
    "How many minutes would you like to have to complete the puzzle? The default is 0, "
    "meaining that you have as much time as you want. The minimum you can set is 1, and "
    "maximum is 60.");

// Words as the lines of a list file.
QByteArray listOf(const QStringList &words)
{
    QByteArray bytes;
    for (const QString &word : words)
        bytes += word.toLatin1() + "\r\n";
    return bytes;
}

QStringList repeated(const QString &word, int times)
{
    QStringList words;
    for (int i = 0; i < times; ++i)
        words.append(word);
    return words;
}

// One options window over a list file in the fake program folder, driven
// through a recording navigator.
struct OptionsWindow : WindowRig<FrmOptions> {
    // Input boxes shown after the scripted replies ran out.
    int unscriptedBoxes = 0;

    explicit OptionsWindow(const QByteArray &list)
    {
        fp.writeFile(QStringLiteral("test.wds"), list);
        state.wordListPath = fp.path(QStringLiteral("test.wds"));
        // A box that keeps coming back must not hang the run: past the script
        // it gets a reply that every question accepts.
        fp.dialogs.onShow = [this](const ShownDialog &shown) {
            if (shown.kind == ShownDialog::Kind::Input && fp.dialogs.replies.isEmpty()) {
                ++unscriptedBoxes;
                fp.dialogs.replies.append(QStringLiteral("10"));
            }
        };
    }

    QPushButton *button(const char *name) const
    {
        return window->findChild<QPushButton *>(QLatin1String(name));
    }
    QCheckBox *checkBox(const char *name) const
    {
        return window->findChild<QCheckBox *>(QLatin1String(name));
    }

    // Answers the rows and columns questions through the buttons, as the
    // player would.
    void setSize(int rows, int columns)
    {
        tabTo(QStringLiteral("cmdRows"));
        fp.dialogs.replies = {QString::number(rows)};
        press(Qt::Key_Space);
        press(Qt::Key_Tab);
        fp.dialogs.replies = {QString::number(columns)};
        press(Qt::Key_Space);
        QCOMPARE(state.rows, qint16(rows));
        QCOMPARE(state.columns, qint16(columns));
    }

    // Values the window must not write until OK copies the check boxes.
    void markFlags()
    {
        state.hideWords = true;
        state.allowDiagonal = true;
        state.allowHorizontal = false;
        state.allowVertical = false;
    }
    bool flagsUntouched() const
    {
        return state.hideWords && state.allowDiagonal && !state.allowHorizontal
            && !state.allowVertical;
    }
};

// The whole game, brought to where the chooser leaves it just before it opens
// the options window: a list file of the folder chosen, the main menu hidden.
struct GameRun {
    FakePlatform fake;
    GameState state;
    Game game{state, fake.platform};

    [[nodiscard]] bool startWithList(const QString &file)
    {
        if (!startGame(game))
            return false;
        state.wordListPath = fake.path(file);
        game.mainMenu().hide();
        return true;
    }
    // The options window, opened by the game, once active; null when it did
    // not open.
    QWidget *openOptions()
    {
        if (!game.openOptions())
            return nullptr;
        QWidget *window = game.currentWindow();
        return window && QTest::qWaitForWindowActive(window) ? window : nullptr;
    }
};

} // namespace

class TestFrmOptions : public QObject {
    Q_OBJECT

private slots:
    void init();

    void opensWithItsDefaults();
    void tabOrderFollowsTheWindow();
    void numberQuestionsAskUntilInRange_data();
    void numberQuestionsAskUntilInRange();
    void defaultTextIsNotTheCurrentValue();
    void sharedAccessKeysOnlyMoveTheFocus();
    void sizeTest_data();
    void sizeTest();
    void directionsAreCheckedAfterTheSizeTest();
    void placementFailureKeepsTheWindow();
    void successfulOkAsksForThePuzzleAndCloses();
    void okThroughTheGameClosesTheOptionsWindow();
    void cancelEscapeAndCloseBoxReturnToTheMenu_data();
    void cancelEscapeAndCloseBoxReturnToTheMenu();
    void cancelThroughTheGameShowsTheMenu();
    void unreadableListReturnsToTheMenu();
    void listWithoutWordsReturnsToTheMenu_data();
    void listWithoutWordsReturnsToTheMenu();
    void onlyTheFirstFiftyLinesAreUsed();
};

void TestFrmOptions::init()
{
    // No window of an earlier test may hold the focus.
    QTest::qWait(0);
}

void TestFrmOptions::opensWithItsDefaults()
{
    // Opening resets rows, columns and time limit to 20, 20 and 0, loads the
    // words longest first, and shows the nine controls with their captions,
    // names, starting states and default button, the focus on cmdRows.
    OptionsWindow t(listOf({"dog", "horse", "cat", "mouse"}));
    t.state.rows = 7;
    t.state.columns = 9;
    t.state.timeLimit = 33;
    QVERIFY(t.open());

    QCOMPARE(t.window->objectName(), QStringLiteral("frmOptions"));
    QCOMPARE(t.window->windowTitle(), QStringLiteral("Lexicove - Set Options"));
    QCOMPARE(t.state.rows, qint16(20));
    QCOMPARE(t.state.columns, qint16(20));
    QCOMPARE(t.state.timeLimit, 0);
    QCOMPARE(t.state.wordCount, 4);
    QCOMPARE(t.state.letterCount, 16);
    QCOMPARE(t.state.words[1], QStringLiteral("horse"));
    QCOMPARE(t.state.words[4], QStringLiteral("cat"));

    const QList<std::pair<const char *, QString>> buttons{
        {"cmdRows", "&Rows of letters (20)..."},
        {"cmdCols", "&Columns of letters (20)..."},
        {"cmdTimeLimit", "&Time Limit (0)..."},
        {"cmdOK", "&OK"},
        {"cmdCancel", "&Cancel"}};
    for (const auto &[name, caption] : buttons) {
        QPushButton *button = t.button(name);
        QVERIFY2(button, name);
        QCOMPARE(button->text(), caption);
        QCOMPARE(button->accessibleName(), QString(caption).remove('&'));
    }
    const QList<std::tuple<const char *, QString, bool>> boxes{
        {"chkHorizontal", "&Horizontal Words", true},
        {"chkVertical", "&Vertical Words", true},
        {"chkDiagonal", "&Diagonal Words", false},
        {"chkHide", "&Hide Words", false}};
    for (const auto &[name, caption, checked] : boxes) {
        QCheckBox *box = t.checkBox(name);
        QVERIFY2(box, name);
        QCOMPARE(box->text(), caption);
        QCOMPARE(box->accessibleName(), QString(caption).remove('&'));
        QCOMPARE(box->checkState(), checked ? Qt::Checked : Qt::Unchecked);
    }
    QCOMPARE(focusName(), QStringLiteral("cmdRows"));
    QVERIFY(t.fp.dialogs.shown.isEmpty());
    // A focused button is pressed by Enter itself; elsewhere Enter presses OK.
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("chkHorizontal"));
    QVERIFY(t.button("cmdOK")->isDefault());
}

void TestFrmOptions::tabOrderFollowsTheWindow()
{
    // Tab visits the controls in the window's order and comes back round;
    // Shift+Tab goes the other way.
    OptionsWindow t(listOf({"cat"}));
    QVERIFY(t.open());
    const QStringList order{"cmdCols",     "cmdTimeLimit", "chkHorizontal",
                            "chkVertical", "chkDiagonal",  "chkHide",
                            "cmdOK",       "cmdCancel",    "cmdRows"};
    QStringList visited;
    for (int i = 0; i < order.size(); ++i) {
        press(Qt::Key_Tab);
        visited.append(focusName());
    }
    QCOMPARE(visited, order);
    press(Qt::Key_Backtab);
    QCOMPARE(focusName(), QStringLiteral("cmdCancel"));
}

void TestFrmOptions::numberQuestionsAskUntilInRange_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("byAccessKey");
    QTest::addColumn<int>("accessKey");
    QTest::addColumn<QStringList>("replies");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("prompt");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("defaultText");
    QTest::addColumn<QString>("caption");

    const QString rowsCaption = QStringLiteral("&Rows of letters (%1)...");
    const QString columnsCaption = QStringLiteral("&Columns of letters (%1)...");
    const QString timeCaption = QStringLiteral("&Time Limit (%1)...");

    QTest::newRow("rows: cancelled twice, then 12")
        << "cmdRows" << true << int(Qt::Key_R) << QStringList{"", "", "12"} << 12 << kRowsPrompt
        << "Rows"
        << "20" << rowsCaption.arg(12);
    QTest::newRow("rows: 12abc") << "cmdRows" << false << 0 << QStringList{"12abc"} << 12
                                 << kRowsPrompt << "Rows"
                                 << "20" << rowsCaption.arg(12);
    QTest::newRow("rows: abc, 4.5 and 4 refused, 5.5 gives 6")
        << "cmdRows" << true << int(Qt::Key_R) << QStringList{"abc", "4.5", "4", "5.5"} << 6
        << kRowsPrompt << "Rows"
        << "20" << rowsCaption.arg(6);
    QTest::newRow("rows: too large for any number, then 50")
        << "cmdRows" << true << int(Qt::Key_R)
        << QStringList{"99999999999999999999", "1e400", "65541", "50"} << 50 << kRowsPrompt
        << "Rows"
        << "20" << rowsCaption.arg(50);
    QTest::newRow("columns: 51 refused, 50.5 gives 50")
        << "cmdCols" << false << 0 << QStringList{"51", "50.5"} << 50 << kColumnsPrompt
        << "Columns"
        << "20" << columnsCaption.arg(50);
    QTest::newRow("columns: blank and 7, 1 blank 2")
        << "cmdCols" << false << 0 << QStringList{" 7"} << 7 << kColumnsPrompt << "Columns"
        << "20" << columnsCaption.arg(7);
    QTest::newRow("columns: cancelled, then 1 2") << "cmdCols" << false << 0
                                                  << QStringList{"", "1 2"} << 12
                                                  << kColumnsPrompt << "Columns"
                                                  << "20" << columnsCaption.arg(12);
    QTest::newRow("columns: &H and &O") << "cmdCols" << false << 0
                                        << QStringList{"&H40", "&O12"} << 10 << kColumnsPrompt
                                        << "Columns"
                                        << "20" << columnsCaption.arg(10);
    QTest::newRow("time limit: cancelled means no limit")
        << "cmdTimeLimit" << true << int(Qt::Key_T) << QStringList{""} << 0 << kTimePrompt
        << "Time Limit"
        << "0" << timeCaption.arg(0);
    QTest::newRow("time limit: 61 and -1 refused, 60") << "cmdTimeLimit" << false << 0
                                                       << QStringList{"61", "-1", "60"} << 60
                                                       << kTimePrompt << "Time Limit"
                                                       << "0" << timeCaption.arg(60);
    QTest::newRow("time limit: 0.4 gives 0") << "cmdTimeLimit" << true << int(Qt::Key_T)
                                             << QStringList{"0.4"} << 0 << kTimePrompt
                                             << "Time Limit"
                                             << "0" << timeCaption.arg(0);
    QTest::newRow("time limit: 1") << "cmdTimeLimit" << false << 0 << QStringList{"1"} << 1
                                   << kTimePrompt << "Time Limit"
                                   << "0" << timeCaption.arg(1);
}

void TestFrmOptions::numberQuestionsAskUntilInRange()
{
    // Each number button asks its question with its own prompt, title and
    // default text until the reply reads as a whole number in range, stores
    // it, rebuilds its caption and keeps the focus.
    QFETCH(QString, button);
    QFETCH(bool, byAccessKey);
    QFETCH(int, accessKey);
    QFETCH(QStringList, replies);
    QFETCH(int, stored);
    QFETCH(QString, prompt);
    QFETCH(QString, title);
    QFETCH(QString, defaultText);
    QFETCH(QString, caption);

    OptionsWindow t(listOf({"cat"}));
    QVERIFY(t.open());
    t.fp.dialogs.replies = replies;
    if (byAccessKey) {
        press(accessKey, Qt::AltModifier);
    } else {
        tabTo(button);
        press(Qt::Key_Space);
    }
    QTRY_COMPARE(t.fp.dialogs.shown.size(), replies.size());
    QCOMPARE(t.unscriptedBoxes, 0);
    for (const ShownDialog &shown : std::as_const(t.fp.dialogs.shown)) {
        QCOMPARE(shown.kind, ShownDialog::Kind::Input);
        QCOMPARE(shown.prompt, prompt);
        QCOMPARE(shown.title, title);
        QCOMPARE(shown.defaultText, defaultText);
    }

    const int value = button == "cmdRows"   ? t.state.rows
                      : button == "cmdCols" ? t.state.columns
                                            : t.state.timeLimit;
    QCOMPARE(value, stored);
    QPushButton *asked = t.button(button.toLatin1().constData());
    QCOMPARE(asked->text(), caption);
    QCOMPARE(asked->accessibleName(), QString(caption).remove('&'));
    QCOMPARE(focusName(), button);
    // The other settings are left alone.
    if (button != "cmdRows")
        QCOMPARE(t.state.rows, qint16(20));
    if (button != "cmdTimeLimit")
        QCOMPARE(t.state.timeLimit, 0);
}

void TestFrmOptions::defaultTextIsNotTheCurrentValue()
{
    // Asking again offers the table's default text, not the value stored by
    // the last answer.
    OptionsWindow t(listOf({"cat"}));
    QVERIFY(t.open());
    t.fp.dialogs.replies = {"9"};
    press(Qt::Key_Space);
    QCOMPARE(t.state.rows, qint16(9));
    t.fp.dialogs.replies = {"11"};
    press(Qt::Key_Return);
    QCOMPARE(t.state.rows, qint16(11));
    QCOMPARE(t.fp.dialogs.shown.size(), 2);
    QCOMPARE(t.fp.dialogs.shown.at(1).defaultText, QStringLiteral("20"));
    QCOMPARE(t.button("cmdRows")->text(), QStringLiteral("&Rows of letters (11)..."));
}

void TestFrmOptions::sharedAccessKeysOnlyMoveTheFocus()
{
    // C (Columns, Cancel) and H (Horizontal, Hide) each mark two controls:
    // the key moves the focus between them and neither asks, cancels nor
    // toggles, so the player can't leave the window by mistake.
    OptionsWindow t(listOf({"cat"}));
    QVERIFY(t.open());
    QSet<QString> reached;
    for (int i = 0; i < 2; ++i) {
        press(Qt::Key_C, Qt::AltModifier);
        QTest::qWait(150);
        reached.insert(focusName());
    }
    QCOMPARE(reached, (QSet<QString>{"cmdCols", "cmdCancel"}));
    reached.clear();
    for (int i = 0; i < 2; ++i) {
        press(Qt::Key_H, Qt::AltModifier);
        QTest::qWait(150);
        reached.insert(focusName());
    }
    QCOMPARE(reached, (QSet<QString>{"chkHorizontal", "chkHide"}));
    QVERIFY(t.window && t.window->isVisible());
    QCOMPARE(t.navigator.mainMenuShown, 0);
    QVERIFY(t.fp.dialogs.shown.isEmpty());
    QVERIFY(t.checkBox("chkHorizontal")->isChecked());
    QVERIFY(!t.checkBox("chkHide")->isChecked());

    // A key that marks one control alone acts at once: V clears the
    // vertical box.
    press(Qt::Key_V, Qt::AltModifier);
    QTRY_VERIFY(!t.checkBox("chkVertical")->isChecked());
}

void TestFrmOptions::sizeTest_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("columns");
    QTest::addColumn<bool>("passes");

    QTest::newRow("18 letters on 20 x 20") << QStringList{"abcdefghijklmnopqr", "ab"} << 20
                                           << 20 << false;
    QTest::newRow("17 letters on 20 x 20") << QStringList{"abcdefghijklmnopq", "ab"} << 20
                                           << 20 << true;
    QTest::newRow("10 letters, 12 columns") << QStringList{"abcdefghij"} << 20 << 12 << false;
    QTest::newRow("10 letters, 12 rows") << QStringList{"abcdefghij"} << 12 << 20 << false;
    QTest::newRow("10 letters, 13 x 13") << QStringList{"abcdefghij"} << 13 << 13 << true;
    // 25 letters x 1.6 = 40 cells, exactly the 5 x 8 grid.
    QTest::newRow("25 letters on 5 x 8") << (repeated("ab", 12) << "c") << 5 << 8 << true;
    // 26 letters x 1.6 = 41.6, rounded 42.
    QTest::newRow("26 letters on 5 x 8") << repeated("ab", 13) << 5 << 8 << false;
    // 22 letters x 1.6 = 35.2, rounded down to the 35 cells of 5 x 7.
    QTest::newRow("22 letters on 5 x 7") << repeated("ab", 11) << 5 << 7 << true;
    // 30 letters need 48 cells: 7 x 7 has 49.
    QTest::newRow("30 letters on 7 x 7") << repeated("abc", 10) << 7 << 7 << true;
}

void TestFrmOptions::sizeTest()
{
    // OK first compares the list with the grid: letters x 1.6, rounded, at
    // most the cells, and the longest word plus 3 at most the rows and the
    // columns; a failure gives the size message, copies nothing and keeps the
    // window with its settings, the focus back on OK.
    QFETCH(QStringList, words);
    QFETCH(int, rows);
    QFETCH(int, columns);
    QFETCH(bool, passes);

    OptionsWindow t(listOf(words));
    QVERIFY(t.open());
    t.setSize(rows, columns);
    t.markFlags();
    t.fp.dialogs.clear();

    tabTo(QStringLiteral("chkHide"));
    press(Qt::Key_Return);

    if (passes) {
        QVERIFY(t.fp.dialogs.shown.isEmpty());
        QCOMPARE(t.navigator.puzzlesOpened, 1);
        QTRY_VERIFY(t.window.isNull());
        return;
    }
    QCOMPARE(t.fp.dialogs.prompts(), QStringList{kTooBig});
    QCOMPARE(t.fp.dialogs.shown.first().title, kAppTitle);
    QCOMPARE(t.fp.dialogs.shown.first().buttons, MessageButtons::Ok);
    QVERIFY(t.flagsUntouched());
    QCOMPARE(t.navigator.puzzlesOpened, 0);
    QCOMPARE(t.navigator.mainMenuShown, 0);
    QVERIFY(t.window && t.window->isVisible());
    QCOMPARE(focusName(), QStringLiteral("cmdOK"));
    QCOMPARE(t.state.rows, qint16(rows));
    QCOMPARE(t.state.columns, qint16(columns));
    QCOMPARE(t.button("cmdRows")->text(), QStringLiteral("&Rows of letters (%1)...").arg(rows));
}

void TestFrmOptions::directionsAreCheckedAfterTheSizeTest()
{
    // With every direction cleared, a list too big for the grid still gets
    // the size message (nothing copied); one that fits gets the direction
    // message, with the check boxes already copied into the game state.
    OptionsWindow t(listOf({"abcdefghijklmnopqr", "cat"}));
    QVERIFY(t.open());
    tabTo(QStringLiteral("chkHorizontal"));
    press(Qt::Key_Space);
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    QCOMPARE(focusName(), QStringLiteral("chkHide"));
    QVERIFY(!t.checkBox("chkHorizontal")->isChecked());
    QVERIFY(!t.checkBox("chkVertical")->isChecked());
    QVERIFY(t.checkBox("chkHide")->isChecked());

    t.markFlags();
    t.state.hideWords = false;
    press(Qt::Key_Return);
    QCOMPARE(t.fp.dialogs.prompts(), QStringList{kTooBig});
    QVERIFY(!t.state.hideWords);
    QVERIFY(t.state.allowDiagonal);
    QCOMPARE(focusName(), QStringLiteral("cmdOK"));

    // 18 + 3 fits 21 x 21.
    t.setSize(21, 21);
    t.fp.dialogs.clear();
    press(Qt::Key_O, Qt::AltModifier);
    QTRY_COMPARE(t.fp.dialogs.prompts(), QStringList{kNoDirection});
    QCOMPARE(t.fp.dialogs.shown.first().title, kAppTitle);
    QVERIFY(t.state.hideWords);
    QVERIFY(!t.state.allowDiagonal);
    QVERIFY(!t.state.allowHorizontal);
    QVERIFY(!t.state.allowVertical);
    QCOMPARE(t.navigator.puzzlesOpened, 0);
    QVERIFY(t.window && t.window->isVisible());
    QCOMPARE(focusName(), QStringLiteral("cmdOK"));
    QVERIFY(!t.checkBox("chkHorizontal")->isChecked());
    QVERIFY(t.checkBox("chkHide")->isChecked());
}

void TestFrmOptions::placementFailureKeepsTheWindow()
{
    // Nine 5-letter words pass the size test of an 8 x 9 grid but can't all
    // be laid horizontally (one to a row): the size message, the flags
    // copied, the window kept; then with diagonals allowed too the same
    // loaded words make a puzzle.
    OptionsWindow t(listOf({"abcde", "fghij", "klmno", "pqrst", "uvwxy", "zabcd", "efghi",
                            "jklmn", "opqrs"}));
    QVERIFY(t.open());
    t.setSize(8, 9);
    tabTo(QStringLiteral("chkVertical"));
    press(Qt::Key_Space);
    QVERIFY(!t.checkBox("chkVertical")->isChecked());
    t.fp.dialogs.clear();

    press(Qt::Key_Return);
    QCOMPARE(t.fp.dialogs.prompts(), QStringList{kTooBig});
    QCOMPARE(t.fp.dialogs.shown.first().title, kAppTitle);
    QVERIFY(t.state.allowHorizontal);
    QVERIFY(!t.state.allowVertical);
    QVERIFY(!t.state.allowDiagonal);
    QCOMPARE(t.navigator.puzzlesOpened, 0);
    QCOMPARE(t.navigator.mainMenuShown, 0);
    QVERIFY(t.window && t.window->isVisible());
    QCOMPARE(focusName(), QStringLiteral("cmdOK"));
    QCOMPARE(t.button("cmdRows")->text(), QStringLiteral("&Rows of letters (8)..."));
    QCOMPARE(t.button("cmdCols")->text(), QStringLiteral("&Columns of letters (9)..."));

    // The words were loaded when the window opened; the file is not read
    // again.
    QString error;
    QVERIFY(t.fp.files.remove(t.state.wordListPath, error));
    t.fp.dialogs.clear();
    press(Qt::Key_V, Qt::AltModifier);
    QTRY_VERIFY(t.checkBox("chkVertical")->isChecked());
    press(Qt::Key_O, Qt::AltModifier);
    QTRY_COMPARE(t.navigator.puzzlesOpened, 1);
    QVERIFY(t.fp.dialogs.shown.isEmpty());
    QTRY_VERIFY(t.window.isNull());
}

void TestFrmOptions::successfulOkAsksForThePuzzleAndCloses()
{
    // A successful OK copies the check boxes, lays the words, fills every
    // cell of the grid, asks for the puzzle window and closes this window
    // without bringing the main menu back.
    OptionsWindow t(listOf({"cat", "horse", "dog"}));
    QVERIFY(t.open());
    t.setSize(8, 9);
    t.fp.dialogs.replies = {"15"};
    press(Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(t.state.timeLimit, 15);
    press(Qt::Key_D, Qt::AltModifier);
    QTRY_VERIFY(t.checkBox("chkDiagonal")->isChecked());
    tabTo(QStringLiteral("chkHide"));
    press(Qt::Key_Space);
    t.fp.dialogs.clear();
    for (int r = 0; r <= GameState::kMaxSide; ++r)
        for (int c = 0; c <= GameState::kMaxSide; ++c)
            t.state.grid[r][c] = QStringLiteral("?");

    tabTo(QStringLiteral("cmdOK"));
    press(Qt::Key_Return);
    QCOMPARE(t.navigator.puzzlesOpened, 1);
    QVERIFY(t.fp.dialogs.shown.isEmpty());
    QVERIFY(t.state.hideWords);
    QVERIFY(t.state.allowHorizontal);
    QVERIFY(t.state.allowVertical);
    QVERIFY(t.state.allowDiagonal);
    QCOMPARE(t.state.timeLimit, 15);

    int letters = 0;
    for (int r = 1; r <= 8; ++r) {
        for (int c = 1; c <= 9; ++c) {
            QCOMPARE(t.state.grid[r][c].size(), 1);
            QVERIFY2(t.state.grid[r][c] != QStringLiteral("?"), "a cell was not made afresh");
            ++letters;
        }
    }
    QCOMPARE(letters, 72);
    QTRY_VERIFY(t.window.isNull());
    QCOMPARE(t.navigator.mainMenuShown, 0);
}

void TestFrmOptions::okThroughTheGameClosesTheOptionsWindow()
{
    // Opened by the game, a successful OK leaves the options window closed
    // and the puzzle window as the one in use, the main menu still hidden.
    GameRun run;
    run.fake.writeFile(QStringLiteral("animals.wds"), listOf({"cat", "dog", "horse"}));
    QVERIFY(run.startWithList(QStringLiteral("animals.wds")));
    QPointer<QWidget> options = run.openOptions();
    QVERIFY(options);
    QCOMPARE(options->objectName(), QStringLiteral("frmOptions"));
    QCOMPARE(focusName(), QStringLiteral("cmdRows"));

    press(Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(options.isNull());
    QVERIFY(run.fake.dialogs.unexpected.isEmpty());
    QWidget *puzzle = run.game.currentWindow();
    QVERIFY(puzzle);
    QCOMPARE(puzzle->objectName(), QStringLiteral("frmSearch"));
    QVERIFY(puzzle->isVisible());
    QVERIFY(!run.game.mainMenu().isVisible());
}

void TestFrmOptions::cancelEscapeAndCloseBoxReturnToTheMenu_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("Cancel button") << "cancel";
    QTest::newRow("Escape") << "escape";
    QTest::newRow("close box") << "close";
}

void TestFrmOptions::cancelEscapeAndCloseBoxReturnToTheMenu()
{
    // Cancel, Escape and the close box each bring the main menu back once and
    // close the window, keeping the values already stored by the buttons and
    // making no puzzle.
    QFETCH(QString, how);
    OptionsWindow t(listOf({"cat"}));
    QVERIFY(t.open());
    t.fp.dialogs.replies = {"12"};
    press(Qt::Key_Space);
    QCOMPARE(t.state.rows, qint16(12));
    t.markFlags();

    if (how == "cancel") {
        tabTo(QStringLiteral("cmdCancel"));
        press(Qt::Key_Space);
    } else if (how == "escape") {
        tabTo(QStringLiteral("chkDiagonal"));
        press(Qt::Key_Escape);
    } else {
        t.window->close();
    }
    QCOMPARE(t.navigator.mainMenuShown, 1);
    QTRY_VERIFY(t.window.isNull());
    QCOMPARE(t.navigator.mainMenuShown, 1);
    QCOMPARE(t.navigator.puzzlesOpened, 0);
    QCOMPARE(t.state.rows, qint16(12));
    QVERIFY(t.flagsUntouched());
}

void TestFrmOptions::cancelThroughTheGameShowsTheMenu()
{
    // Leaving the options window by Cancel or its close box shows the main
    // menu again with the focus in its list.
    for (const bool byCloseBox : {false, true}) {
        GameRun run;
        run.fake.writeFile(QStringLiteral("animals.wds"), listOf({"cat"}));
        QVERIFY(run.startWithList(QStringLiteral("animals.wds")));
        QPointer<QWidget> options = run.openOptions();
        QVERIFY(options);
        if (byCloseBox) {
            options->close();
        } else {
            tabTo(QStringLiteral("cmdCancel"));
            press(Qt::Key_Return);
        }
        QTRY_VERIFY(options.isNull());
        QVERIFY(run.game.mainMenu().isVisible());
        QVERIFY(QTest::qWaitForWindowActive(&run.game.mainMenu()));
        QCOMPARE(focusName(), QStringLiteral("lstStyle"));
        QVERIFY(!run.game.ended());
    }
}

void TestFrmOptions::unreadableListReturnsToTheMenu()
{
    // A list file that can't be read is named in a message with the reason,
    // and the player is back at the main menu with no options window.
    {
        OptionsWindow t(listOf({"cat"}));
        t.fp.files.failRead.insert(t.state.wordListPath);
        QVERIFY(!t.open());
        QVERIFY(!t.loaded);
        QCOMPARE(t.fp.dialogs.shown.size(), 1);
        const QString prompt = t.fp.dialogs.lastPrompt();
        QVERIFY2(prompt.contains(t.state.wordListPath), qPrintable(prompt));
        QVERIFY2(prompt.contains(QStringLiteral("Permission denied")), qPrintable(prompt));
        QCOMPARE(t.navigator.mainMenuShown, 1);
    }

    GameRun run;
    QVERIFY(run.startWithList(QStringLiteral("gone.wds")));
    // As the chooser would be, another window is in use when the options
    // window fails to load.
    QDialog chooser;
    chooser.show();
    QVERIFY(QTest::qWaitForWindowActive(&chooser));
    QVERIFY(!run.game.openOptions());
    QCOMPARE(run.fake.dialogs.shown.size(), 1);
    QVERIFY(run.fake.dialogs.lastPrompt().contains(run.state.wordListPath));
    QVERIFY(!run.game.currentWindow());
    QVERIFY(run.game.mainMenu().isVisible());
    chooser.close();
    QVERIFY(QTest::qWaitForWindowActive(&run.game.mainMenu()));
    QCOMPARE(focusName(), QStringLiteral("lstStyle"));
}

void TestFrmOptions::listWithoutWordsReturnsToTheMenu_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("only empty lines") << QByteArray("\r\n\r\n\r\n");
}

void TestFrmOptions::listWithoutWordsReturnsToTheMenu()
{
    // A list with no letters to lay is refused plainly, and the player is
    // back at the main menu.
    QFETCH(QByteArray, list);
    OptionsWindow t(list);
    QVERIFY(!t.open());
    QCOMPARE(t.fp.dialogs.prompts(), QStringList{kNoWords});
    QCOMPARE(t.fp.dialogs.shown.first().title, kAppTitle);
    QCOMPARE(t.navigator.mainMenuShown, 1);
    QCOMPARE(t.state.letterCount, 0);
}

void TestFrmOptions::onlyTheFirstFiftyLinesAreUsed()
{
    // A list longer than the word table plays its first fifty words.
    QStringList words;
    for (int i = 0; i < 60; ++i)
        words.append(i < 50 ? QStringLiteral("a") : QStringLiteral("bbbbbb"));
    OptionsWindow t(listOf(words));
    QVERIFY(t.open());
    QCOMPARE(t.state.wordCount, 50);
    QCOMPARE(t.state.letterCount, 50);
    QCOMPARE(t.state.words[1], QStringLiteral("a"));
}

QTEST_MAIN(TestFrmOptions)
#include "tst_frmoptions.moc"
