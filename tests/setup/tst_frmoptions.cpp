#include "core/gamestate.h"
#include "keys.h"
#include "setup/frmoptions.h"
#include "windowrig.h"

#include <QCheckBox>
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

// Each number button's question: prompt, title, default text, caption.
struct Question {
    QString prompt, title, defaultText, caption;
};
const QHash<QString, Question> kQuestions{
    {"cmdRows",
     {"How many rows of letters would you like in the puzzle? The default is 20, minimum is 5, "
      "and maximum is 50",
      "Rows", "20", "&Rows of letters (%1)..."}},
    {"cmdCols",
     {"How many columns of letters would you like in the puzzle? The default is 20, minimum is "
      "5, and maximum is 50",
      "Columns", "20", "&Columns of letters (%1)..."}},
    {"cmdTimeLimit",
     {"How many minutes would you like to have to complete the puzzle? The default is 0, "
      "meaining that you have as much time as you want. The minimum you can set is 1, and "
      "maximum is 60.",
      "Time Limit", "0", "&Time Limit (%1)..."}}};

QByteArray listOf(const QStringList &words)
{
    return words.isEmpty() ? QByteArray() : words.join("\r\n").toLatin1() + "\r\n";
}

// One options window over a list file, driven through a recording navigator.
// A box asked past the script gets its default text, which every question
// accepts, so a question that keeps coming back can't hang the run.
struct OptionsWindow : WindowRig<FrmOptions> {
    explicit OptionsWindow(const QByteArray &list)
    {
        fp.writeFile(QStringLiteral("test.wds"), list);
        state.wordListPath = fp.path(QStringLiteral("test.wds"));
    }
    QPushButton *button(const QString &name) { return window->findChild<QPushButton *>(name); }
    QCheckBox *box(const QString &name) { return window->findChild<QCheckBox *>(name); }

    // Answers the rows and columns questions through the buttons.
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
        fp.dialogs.clear();
    }
    // Flags the window must not write before OK copies the check boxes.
    void markFlags()
    {
        state.hideWords = state.allowDiagonal = true;
        state.allowHorizontal = state.allowVertical = false;
    }
    bool flagsUntouched() const
    {
        return state.hideWords && state.allowDiagonal && !state.allowHorizontal
            && !state.allowVertical;
    }
    // The window stayed open with its settings after OK showed `message`.
    void checkStoppedWith(const QString &message)
    {
        QCOMPARE(fp.dialogs.prompts(), QStringList{message});
        QCOMPARE(fp.dialogs.shown.first().title, kAppTitle);
        QCOMPARE(navigator.puzzlesOpened + navigator.mainMenuShown, 0);
        QVERIFY(window && window->isVisible());
        QCOMPARE(focusName(), QStringLiteral("cmdOK"));
        QCOMPARE(button("cmdRows")->text(), kQuestions["cmdRows"].caption.arg(state.rows));
        fp.dialogs.clear();
    }
};

} // namespace

class TestFrmOptions : public QObject {
    Q_OBJECT

private slots:
    void init() { QTest::qWait(0); } // no window of an earlier test may keep the focus

    void opensWithItsDefaults()
    {
        // Opening resets rows, columns and time limit to 20, 20 and 0, loads the words, and
        // shows the nine controls with their captions, names, states and tab order, the focus
        // on cmdRows.
        OptionsWindow t(listOf({"dog", "horse", "cat", "mouse"}));
        t.state.rows = 7;
        t.state.columns = 9;
        t.state.timeLimit = 33;
        QVERIFY(t.open());
        QCOMPARE(t.window->windowTitle(), QStringLiteral("Lexicove - Set Options"));
        QCOMPARE((QList<int>{t.state.rows, t.state.columns, t.state.timeLimit}),
                 (QList<int>{20, 20, 0}));
        QCOMPARE(t.state.words[1], QStringLiteral("horse"));
        QVERIFY(t.fp.dialogs.shown.isEmpty());

        const QList<std::pair<QString, QString>> order{
            {"cmdRows", "&Rows of letters (20)..."}, {"cmdCols", "&Columns of letters (20)..."},
            {"cmdTimeLimit", "&Time Limit (0)..."},  {"chkHorizontal", "&Horizontal Words"},
            {"chkVertical", "&Vertical Words"},      {"chkDiagonal", "&Diagonal Words"},
            {"chkHide", "&Hide Words"},              {"cmdOK", "&OK"},
            {"cmdCancel", "&Cancel"}};
        const QSet<QString> checkedAtStart{"chkHorizontal", "chkVertical"};
        for (const auto &[name, caption] : order) {
            QCOMPARE(focusName(), name);
            const auto *control = qobject_cast<QAbstractButton *>(focused());
            QVERIFY(control);
            QCOMPARE(control->text(), caption);
            QCOMPARE(control->accessibleName(), QString(caption).remove('&'));
            if (const auto *box = qobject_cast<const QCheckBox *>(control))
                QCOMPARE(box->checkState(),
                         checkedAtStart.contains(name) ? Qt::Checked : Qt::Unchecked);
            press(Qt::Key_Tab);
        }
        QCOMPARE(focusName(), QStringLiteral("cmdRows"));
    }

    void numberQuestionsAskUntilInRange_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("accessKey"); // 0: Tab to the button and press Space
        QTest::addColumn<QStringList>("replies");
        QTest::addColumn<int>("stored");

        QTest::newRow("rows: cancelled twice, then 12") << "cmdRows" << int(Qt::Key_R)
                                                        << QStringList{"", "", "12"} << 12;
        QTest::newRow("rows: abc, 4.5 and 4 refused, 5.5 gives 6")
            << "cmdRows" << 0 << QStringList{"abc", "4.5", "4", "5.5"} << 6;
        QTest::newRow("rows: too large for a whole number or 16 bits, then 50")
            << "cmdRows" << int(Qt::Key_R) << QStringList{"99999999999999999999", "65541", "50"}
            << 50;
        QTest::newRow("columns: cancelled, 51 refused, 50.5 gives 50")
            << "cmdCols" << 0 << QStringList{"", "51", "50.5"} << 50;
        QTest::newRow("time limit: cancelled means no limit") << "cmdTimeLimit" << int(Qt::Key_T)
                                                              << QStringList{""} << 0;
        QTest::newRow("time limit: 61 and -1 refused, then 60")
            << "cmdTimeLimit" << 0 << QStringList{"61", "-1", "60"} << 60;
    }

    void numberQuestionsAskUntilInRange()
    {
        // Each number button asks its own question, always with the default text of its table,
        // until the reply is a whole number in range; it stores the number, rebuilds its caption
        // and keeps the focus.
        QFETCH(QString, button);
        QFETCH(int, accessKey);
        QFETCH(QStringList, replies);
        QFETCH(int, stored);

        OptionsWindow t(listOf({"cat"}));
        QVERIFY(t.open());
        t.fp.dialogs.replies = replies + replies;
        if (accessKey) {
            press(accessKey, Qt::AltModifier);
        } else {
            tabTo(button);
            press(Qt::Key_Space);
        }
        // Asked again, with the new value stored: the same questions.
        QTRY_COMPARE(t.fp.dialogs.shown.size(), replies.size());
        QCOMPARE(focusName(), button);
        press(Qt::Key_Space);
        QCOMPARE(t.fp.dialogs.shown.size(), 2 * replies.size());
        const Question &q = kQuestions[button];
        for (const ShownDialog &shown : std::as_const(t.fp.dialogs.shown))
            QCOMPARE((QStringList{shown.prompt, shown.title, shown.defaultText}),
                     (QStringList{q.prompt, q.title, q.defaultText}));
        // Only the button's own setting changes.
        QList<int> expected{20, 20, 0};
        expected[QStringList{"cmdRows", "cmdCols", "cmdTimeLimit"}.indexOf(button)] = stored;
        QCOMPARE((QList<int>{t.state.rows, t.state.columns, t.state.timeLimit}), expected);
        QCOMPARE(t.button(button)->text(), q.caption.arg(stored));
        QCOMPARE(t.button(button)->accessibleName(), q.caption.arg(stored).remove('&'));
        QCOMPARE(focusName(), button);
    }

    void directionsAreCheckedAfterTheSizeTest()
    {
        // OK tests the size first: with every direction cleared, an 18-letter word on the
        // default 20 x 20 grid gets the size message with nothing copied, the window kept with
        // its settings; on 21 x 21 the direction message, the check boxes copied and kept.
        OptionsWindow t(listOf({"abcdefghijklmnopqr", "cat"}));
        QVERIFY(t.open());
        tabTo(QStringLiteral("chkHorizontal"));
        press(Qt::Key_Space);
        press(Qt::Key_Tab);
        press(Qt::Key_Space);
        tabTo(QStringLiteral("chkHide"));
        press(Qt::Key_Space);
        t.markFlags();
        t.state.hideWords = false;
        press(Qt::Key_Return);
        t.checkStoppedWith(kTooBig);
        QVERIFY(!t.state.hideWords && t.state.allowDiagonal);

        t.setSize(21, 21); // 18 + 3 fits
        press(Qt::Key_O, Qt::AltModifier);
        QTRY_COMPARE(t.fp.dialogs.shown.size(), 1);
        t.checkStoppedWith(kNoDirection);
        QVERIFY(t.state.hideWords);
        QVERIFY(!t.state.allowDiagonal && !t.state.allowHorizontal && !t.state.allowVertical);
        QVERIFY(!t.box("chkHorizontal")->isChecked() && !t.box("chkVertical")->isChecked());
        QVERIFY(t.box("chkHide")->isChecked());
    }

    void placementFailureKeepsTheWindowThenOkMakesThePuzzle()
    {
        // Words that pass the size test but can't be laid give the size message and keep the
        // window, the check boxes copied; OK again with more directions makes the puzzle from the
        // words already loaded, fills every cell, asks for the puzzle window and closes this one.
        OptionsWindow t(listOf({"abcde", "fghij", "klmno", "pqrst", "uvwxy", "zabcd", "efghi",
                                "jklmn", "opqrs"}));
        QVERIFY(t.open());
        // 45 letters x 1.6 = 72 cells, just what 8 x 9 holds; but nine 5-letter words, one to a
        // row, need nine rows.
        t.setSize(8, 9);
        press(Qt::Key_V, Qt::AltModifier);
        QTRY_VERIFY(!t.box("chkVertical")->isChecked());
        press(Qt::Key_Return);
        t.checkStoppedWith(kTooBig);
        QVERIFY(t.state.allowHorizontal && !t.state.allowVertical && !t.state.allowDiagonal);

        QString error;
        QVERIFY(t.fp.files.remove(t.state.wordListPath, error));
        for (int r = 0; r <= GameState::kMaxSide; ++r)
            for (int c = 0; c <= GameState::kMaxSide; ++c)
                t.state.grid[r][c] = QStringLiteral("?");
        t.fp.dialogs.replies = {"15"};
        press(Qt::Key_T, Qt::AltModifier);
        QTRY_COMPARE(t.state.timeLimit, 15);
        press(Qt::Key_V, Qt::AltModifier);
        press(Qt::Key_D, Qt::AltModifier);
        QTRY_VERIFY(t.box("chkVertical")->isChecked() && t.box("chkDiagonal")->isChecked());
        tabTo(QStringLiteral("chkHide"));
        press(Qt::Key_Space);
        t.fp.dialogs.clear();
        press(Qt::Key_Return);
        QCOMPARE(t.navigator.puzzlesOpened, 1);
        QVERIFY(t.fp.dialogs.shown.isEmpty());
        QVERIFY(t.state.hideWords && t.state.allowHorizontal && t.state.allowVertical
                && t.state.allowDiagonal);
        for (int r = 1; r <= 8; ++r)
            for (int c = 1; c <= 9; ++c)
                QVERIFY2(t.state.grid[r][c].size() == 1 && t.state.grid[r][c] != "?",
                         "a cell was not made afresh");
        QTRY_VERIFY(t.window.isNull());
        QCOMPARE(t.navigator.mainMenuShown, 0);
    }

    void cancelEscapeAndCloseBoxReturnToTheMenu()
    {
        // Cancel, Escape and the close box each bring the main menu back once and close the
        // window, keeping the values the buttons stored and making no puzzle.
        for (const QString &way : QStringList{"cmdCancel", "chkDiagonal", "close box"}) {
            OptionsWindow t(listOf({"cat"}));
            QVERIFY(t.open());
            t.fp.dialogs.replies = {"12"};
            press(Qt::Key_Space);
            t.markFlags();
            if (way == "close box") {
                t.window->close();
            } else {
                tabTo(way); // Space on Cancel, Escape anywhere else
                press(way == "cmdCancel" ? Qt::Key_Space : Qt::Key_Escape);
            }
            QTRY_VERIFY(t.window.isNull());
            QCOMPARE(t.navigator.mainMenuShown, 1);
            QCOMPARE(t.navigator.puzzlesOpened, 0);
            QCOMPARE(t.state.rows, qint16(12));
            QVERIFY(t.flagsUntouched());
        }
    }

    void listsThatCantBePlayedReturnToTheMenu()
    {
        // A list without letters is refused and an unreadable one is named with the reason;
        // either way the window ends as it loads and the main menu comes back.
        for (const QByteArray &list : {QByteArray(), QByteArray("\r\n\r\n\r\n")}) {
            OptionsWindow t(list);
            QVERIFY(!t.open());
            QCOMPARE(t.fp.dialogs.prompts(), QStringList{kNoWords});
            QCOMPARE(t.fp.dialogs.shown.first().title, kAppTitle);
            QCOMPARE(t.navigator.mainMenuShown, 1);
        }
        OptionsWindow t(listOf({"cat"}));
        t.fp.files.failRead.insert(t.state.wordListPath);
        QVERIFY(!t.open());
        QCOMPARE(t.fp.dialogs.shown.size(), 1);
        const QString prompt = t.fp.dialogs.lastPrompt();
        QVERIFY2(prompt.contains(t.state.wordListPath) && prompt.contains("Permission denied"),
                 qPrintable(prompt));
        QCOMPARE(t.navigator.mainMenuShown, 1);
    }
};

QTEST_MAIN(TestFrmOptions)
#include "tst_frmoptions.moc"
