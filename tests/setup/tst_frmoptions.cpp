#include "keys.h"
#include "setup/frmoptions.h"
#include "windowrig.h"

#include <QCheckBox>
#include <QtTest>

using namespace lexicove::test;

const QString kTooBig =
    QStringLiteral("The puzzle you have chosen is too big for these "
                   "credentials. Please modify the settings on this screen, and try again");
// No direction to lay words in.
const QString kNoWay = QStringLiteral(
    "You must select at least one method of placing words, from horizontal, vertical, or diagonal");
const QString kNoWords = QStringLiteral("This word list has no words to play. Please choose "
                                        "another list, or add words to it first.");

// Sizes and time limit that opening must reset; hide and diagonal on, the rest off (so on no
// case's check boxes, to show whether OK copied them); a box takes the focus to Cancel.
struct Options : WindowRig<lexicove::FrmOptions> {
    explicit Options(const QByteArray &list)
    {
        fp.writeFile("test.wds", list);
        state.wordListPath = fp.path("test.wds");
        state.timeLimit = state.rows = state.columns = 7;
        state.hideWords = state.allowDiagonal = true;
        messagesTakeFocus();
    }
};

// The focused button's name and caption (+ or - for a check box's state) if named by its caption.
static QString focusedControl()
{
    const auto *b = qobject_cast<QAbstractButton *>(focused());
    const auto *box = qobject_cast<const QCheckBox *>(b);
    return !b || b->accessibleName() != QString(b->text()).remove('&')
               ? "?"
               : b->objectName() + ' ' + b->text() + (box ? box->isChecked() ? " +" : " -" : "");
}

class TestFrmOptions : public QObject {
    Q_OBJECT

private slots:
    void opensWithDefaultsAndAsksSizesUntilInRange()
    {
        // Opening shows 20 x 20 with no time limit and nine controls in tab order; a size question
        // comes back unchanged until the reply is in range, which its button shows, keeping focus.
        Options t("cat");
        QVERIFY(t.open());
        QStringList order;
        for (int i = 0; i < 9; ++i, press(Qt::Key_Tab)) // and round to cmdRows
            order << focusedControl();
        QCOMPARE(order.join(" | "),
                 "cmdRows &Rows of letters (20)... | cmdCols &Columns of letters (20)... | "
                 "cmdTimeLimit &Time Limit (0)... | chkHorizontal &Horizontal Words + | "
                 "chkVertical &Vertical Words + | chkDiagonal &Diagonal Words - | "
                 "chkHide Hide &Words - | cmdOK &OK | cmdCancel C&ancel");
        t.fp.dialogs.replies = {"", "4.5", "65541", "5.5"}; // cancelled, 4, too large, 6
        press(Qt::Key_Space);
        QCOMPARE(focusedControl(), "cmdRows &Rows of letters (6)...");
        QCOMPARE(t.fp.dialogs.prompts(),
                 QStringList(4,
                             "How many rows of letters would you like "
                             "in the puzzle? The default is 20, minimum is 5, and maximum is 50"));
        QCOMPARE(t.fp.dialogs.shown.last().title + t.fp.dialogs.shown.last().defaultText, "Rows20");
    }

    void okTestsSizeThenDirectionsThenPlacement()
    {
        // OK gives the size message, copying nothing, while letters x 1.6 exceed the cells or the
        // longest word + 3 the rows or columns; then copies the boxes and gives the direction or,
        // if the words can't be laid, the size message, keeping the window; else makes the puzzle.
        const QStringList longest{"abcdefghijklmnopqr", "cat"}, forty(10, "abcd");
        const struct {
            QStringList words;
            int rows, cols;
            QStringList toggled;
            QString message;
            QList<bool> flags; /* hide, diagonal, horizontal, vertical */
        } cases[] = {
            {longest, 20, 20, {"chkHorizontal", "chkVertical"}, kTooBig, {1, 1, 0, 0}},
            {longest, 21, 21, {"chkHorizontal", "chkVertical", "chkHide"}, kNoWay, {1, 0, 0, 0}},
            {forty, 7, 9, {"chkHide"}, kTooBig, {1, 1, 0, 0}}, // 64 cells wanted, 63 there
            {forty, 8, 8, {"chkDiagonal"}, {}, {0, 1, 1, 1}},  // just enough
            {QStringList(9, "abcde"), 8, 9, {"chkVertical"}, kTooBig, {0, 0, 1, 0}}, // 9 rows
        };
        for (const auto &k : cases) {
            Options t(k.words.join("\r\n").toLatin1());
            QVERIFY(t.open());
            t.fp.dialogs.replies = {QString::number(k.rows), QString::number(k.cols)};
            for (const QString &control : QStringList{"cmdRows", "cmdCols"} + k.toggled) {
                tabTo(control);
                press(Qt::Key_Space);
            }
            press(Qt::Key_Return);
            QCOMPARE((QList<bool>{t.state.hideWords, t.state.allowDiagonal, t.state.allowHorizontal,
                                  t.state.allowVertical}),
                     k.flags);
            QCOMPARE(t.fp.dialogs.prompts().mid(2), QStringList(!k.message.isEmpty(), k.message));
            QCOMPARE((QList<int>{t.navigator.puzzlesOpened, t.navigator.mainMenuShown}),
                     (QList<int>{k.message.isEmpty(), 0}));
            QTRY_COMPARE(t.window.isNull(), k.message.isEmpty());
            QCOMPARE(focusName(), k.message.isEmpty() ? "<none>" : "cmdOK");
        }
    }

    void leavingWithoutAPuzzleReturnsToTheMenu()
    {
        // Cancel, Escape, the close box, and a list without letters or one deleted since it was
        // chosen (named with the reason) each end the window and bring the main menu back once.
        const struct {
            QString way;
            QByteArray list;
            QString message;
        } cases[] = {{"cmdCancel", "cat", {}},
                     {"Escape", "cat", {}},
                     {"close box", "cat", {}},
                     {{}, "", kNoWords},
                     {{}, "\r\n\r\n", kNoWords},
                     {"deleted", "cat",
                      "The word list file <> could not be opened: No such file or "
                      "directory."}};
        for (const auto &k : cases) {
            Options t(k.list);
            if (k.way == "deleted")
                QFile::remove(t.state.wordListPath);
            QCOMPARE(t.open(), k.message.isEmpty());
            if (k.way == "close box")
                t.window->close();
            else if (t.window) {
                tabTo("cmdCancel");
                press(k.way == "Escape" ? Qt::Key_Escape : Qt::Key_Space);
            }
            QTRY_VERIFY(t.window.isNull());
            QCOMPARE(t.fp.dialogs.prompts().join('|'),
                     QString(k.message).replace("<>", t.state.wordListPath));
            QCOMPARE(t.navigator.mainMenuShown, 1);
        }
    }
};

QTEST_MAIN(TestFrmOptions)
#include "tst_frmoptions.moc"
