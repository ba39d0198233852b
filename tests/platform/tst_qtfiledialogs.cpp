#include "keys.h"
#include "platform/qtfiledialogs.h"

#include <QPrintDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QtTest>

using namespace lexicove;
using namespace lexicove::test;

class TestQtFileDialogs : public QObject {
    Q_OBJECT

private slots:
    void saveDialogByKeyboard();
    void printDialogOffersCopiesOnly();
};

// The save dialog opens with the focus in the file name box and gives back the name typed; it
// asks before replacing a file, refuses a folder that does not exist and stays open, and Escape
// gives nothing.
void TestQtFileDialogs::saveDialogByKeyboard()
{
    QTemporaryDir dir;
    QVERIFY(QFile(dir.filePath("old.txt")).open(QIODevice::WriteOnly));
    QtFileDialogs dialogs;
    const QString filter = QStringLiteral("Text Files (*.txt)");

    QString focusClass;
    whenModal([&](QWidget *) {
        focusClass = focused() ? focused()->metaObject()->className() : "none";
        type(dir.filePath("new.txt"));
        press(Qt::Key_Return);
    });
    QCOMPARE(dialogs.saveFile(nullptr, filter), QDir::toNativeSeparators(dir.filePath("new.txt")));
    QCOMPARE(focusClass, "QLineEdit");

    QString question;
    whenModal([&](QWidget *) {
        type(dir.filePath("old.txt"));
        whenModal([&](QWidget *box) {
            question = qobject_cast<QMessageBox *>(box) ? qobject_cast<QMessageBox *>(box)->text()
                                                        : QString();
            press(Qt::Key_Y, Qt::AltModifier);
        });
        press(Qt::Key_Return);
    });
    QCOMPARE(dialogs.saveFile(nullptr, filter), QDir::toNativeSeparators(dir.filePath("old.txt")));
    QVERIFY2(question.contains("already exists"), qPrintable(question));

    QString refusal, focusAfter;
    whenModal([&](QWidget *) {
        type(dir.filePath("gone/new.txt"));
        whenModal([&](QWidget *box) {
            refusal = qobject_cast<QMessageBox *>(box) ? qobject_cast<QMessageBox *>(box)->text()
                                                       : QString();
            press(Qt::Key_Return);
            whenModal([&](QWidget *) {
                focusAfter = focused() ? focused()->metaObject()->className() : "none";
                press(Qt::Key_Escape);
            });
        });
        press(Qt::Key_Return);
    });
    QCOMPARE(dialogs.saveFile(nullptr, filter), QString());
    QCOMPARE(refusal,
             QStringLiteral("The folder \"%1\" does not exist. Please choose a folder that exists.")
                 .arg(QDir::toNativeSeparators(dir.filePath("gone"))));
    QCOMPARE(focusAfter, "QLineEdit");
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"old.txt"});
}

// The print dialog offers no selection, no page range and no current page, only the printer and
// the copies; Escape cancels it and gives no printer.
void TestQtFileDialogs::printDialogOffersCopiesOnly()
{
    QtFileDialogs dialogs;
    QStringList offered;
    whenModal([&](QWidget *dialog) {
        auto *print = qobject_cast<QPrintDialog *>(dialog);
        QVERIFY(print);
        using enum QAbstractPrintDialog::PrintDialogOption;
        for (const auto &[option, name] : {std::pair{PrintSelection, "selection"},
                                           {PrintPageRange, "page range"},
                                           {PrintCurrentPage, "current page"},
                                           {PrintToFile, "to file"},
                                           {PrintCollateCopies, "collate"}})
            if (print->testOption(option))
                offered << name;
        press(Qt::Key_Escape);
    });
    const PrintChoice choice = dialogs.choosePrinter(nullptr, {OutputMode::Braille, 35, 23});
    QCOMPARE(offered, (QStringList{"to file", "collate"}));
    QVERIFY(!choice.printer);
}

QTEST_MAIN(TestQtFileDialogs)
#include "tst_qtfiledialogs.moc"
