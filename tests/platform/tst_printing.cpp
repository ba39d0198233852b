// The real printing path, end to end: documents laid out by the game, drawn
// or written by the real printers and handed to a real CUPS server that the
// test starts for itself, with its own folders and socket. A PDF queue and a
// braille embosser queue each write what they print to a file, which is read
// back: the PDF through pdftotext, the braille pages byte for byte.

#include "keys.h"
#include "puzzles.h"
#include "platform/brailleprinter.h"
#include "platform/pageprinter.h"
#include "platform/printqueue.h"
#include "platform/qtfiledialogs.h"

#include <QDir>
#include <QFile>
#include <QPageLayout>
#include <QPageSize>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <cups/cups.h>

#include <cstdio>

using namespace lexicove;
using namespace lexicove::test;

namespace {

const QStringList kWords = {"abc", "yxw", "agmsy", "zzz", "fgh", "klm"};

// Where the print system's programs are, for a machine whose PATH lacks sbin.
QString findProgram(const QString &name)
{
    QString path = QStandardPaths::findExecutable(name);
    if (path.isEmpty())
        path = QStandardPaths::findExecutable(name, {"/usr/sbin", "/sbin", "/usr/local/sbin"});
    return path;
}

QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(findProgram(program), arguments);
    process.waitForFinished(30000);
    return QString::fromLocal8Bit(process.readAll());
}

// A file that a job writes, once the job is done with it.
QByteArray waitForFile(const QString &path)
{
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 30000) {
        const bool pending = !run("lpstat", {"-W", "not-completed", "-o"}).trimmed().isEmpty();
        QFile file(path);
        if (!pending && file.size() > 0 && file.open(QIODevice::ReadOnly))
            return file.readAll();
        QTest::qWait(100);
    }
    return QByteArray("<no file after 30 s>");
}

// The lines pdftotext reads off a PDF laid out as on the page, each with its runs of blanks
// folded to one, empty lines left out, and "page" where a page ends.
QStringList pdfLines(const QString &pdf)
{
    QStringList lines;
    const QStringList pages = run("pdftotext", {"-layout", pdf, "-"}).split('\f');
    for (const QString &page : pages) {
        for (const QString &line : page.split('\n')) {
            if (!line.trimmed().isEmpty())
                lines << line.simplified();
        }
        lines << "page";
    }
    lines.removeLast(); // after the last page's form feed
    return lines;
}

const QPageLayout kA4(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(15, 15, 15, 15),
                      QPageLayout::Millimeter);

// A whole job on the puzzle, answering Yes to the solution page, printed on the real printer of
// the mode: A4 paper, or braille pages of 7 lines of 35 cells.
JobResult printPuzzle(OutputMode mode, const PrintDestination &destination,
                      const QString &fontSize = "12 point")
{
    OutputRig rig;
    setPuzzle(rig.state, kAlphabet, kWords);
    rig.fontSize = fontSize;
    rig.fp.fileDialogs.makePrinter = [&](const PrintRequest &) {
        std::unique_ptr<Printer> printer;
        if (mode == OutputMode::Print)
            printer = std::make_unique<PagePrinter>(kA4, destination);
        else
            printer = std::make_unique<BraillePrinter>(35, 7, destination);
        return PrintChoice{std::move(printer), 1, destination};
    };
    return mode == OutputMode::Print ? rig.run(mode, true) : rig.braille(35, 7, true);
}

// The list, then the grid on a page of its own, broken after its fourth row, then the solution
// page, whose lines run on to a further page.
const QByteArray kBraillePages = "             Word List\r\n\r\n\r\n"
                                 "abc         yxw         agmsy\r\nzzz         fgh         klm\r\n"
                                 "\f              Puzzle\r\n\r\n\r\n"
                                 "abcde\r\nfghij\r\nklmno\r\npqrst\r\n\fuvwxy\r\n"
                                 "\f          Puzzle Solution\r\n\r\n\r\n"
                                 "abc is at row 1, col 1\r\nyxw is at row 5, col 5\r\n"
                                 "agmsy is at row 1, col 1\r\nzzz is at row -1, col -1\r\n"
                                 "\ffgh is at row 2, col 1\r\nklm is at row 3, col 1\r\n";

// The lines of a printed page: at 12 points on A4 the list takes one line of seven columns.
const QStringList kPrintedLines =
    QString("Word List|abc yxw agmsy zzz fgh klm|Puzzle|abcde|fghij|klmno|pqrst|uvwxy|page|"
            "Puzzle Solution|abc is at row 1, col 1|yxw is at row 5, col 5|"
            "agmsy is at row 1, col 1|zzz is at row -1, col -1|fgh is at row 2, col 1|"
            "klm is at row 3, col 1|page")
        .split('|');

} // namespace

class TestPrinting : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void jobsReachQueuesAndFiles();
    void refusedJobsAreNamed();
    void printDialogByKeyboard();

private:
    void lpadmin(const QStringList &arguments);

    QTemporaryDir m_root{QDir::tempPath() + "/lexicove-cups-XXXXXX"};
    QString m_out;
    QProcess m_cupsd;
};

void TestPrinting::lpadmin(const QStringList &arguments)
{
    QProcess process;
    process.start(findProgram("lpadmin"), arguments);
    QVERIFY(process.waitForFinished(30000));
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
}

void TestPrinting::initTestCase()
{
    const QString root = m_root.path();
    // The scheduler's filters run as another user and must reach the spool.
    QFile::setPermissions(root, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                    QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                    QFile::ExeOther);
    for (const char *folder : {"conf", "spool", "cache", "state", "log", "out"})
        QVERIFY(QDir(root).mkpath(folder));
    m_out = root + "/out";
    QFile::setPermissions(m_out, QFile::Permissions(0x7777));
    const auto write = [&](const QString &name, const QString &text) {
        QFile file(root + "/conf/" + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    };
    write("cupsd.conf", QStringLiteral("Listen %1/cups.sock\nLogLevel warn\nWebInterface No\n"
                                       "<Location />\n  Order allow,deny\n  Allow all\n"
                                       "</Location>\n")
                            .arg(root));
    write("cups-files.conf",
          QStringLiteral("ServerRoot %1/conf\nRequestRoot %1/spool\nCacheDir %1/cache\n"
                         "StateDir %1/state\nTempDir %1/spool\nAccessLog %1/log/access_log\n"
                         "ErrorLog %1/log/error_log\nPageLog %1/log/page_log\nFileDevice Yes\n"
                         "ServerBin /usr/lib/cups\nDataDir /usr/share/cups\n"
                         "Printcap %1/state/printcap\n")
              .arg(root));
    qputenv("CUPS_SERVER", QFile::encodeName(root + "/cups.sock"));
    cupsSetServer(nullptr); // read CUPS_SERVER afresh
    m_cupsd.start(findProgram("cupsd"),
                  {"-f", "-c", root + "/conf/cupsd.conf", "-s", root + "/conf/cups-files.conf"});
    QVERIFY(m_cupsd.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(run("lpstat", {"-r"}).contains("scheduler is running"), 10000);

    lpadmin({"-p", "pdffile", "-E", "-v", "file://" + m_out + "/doc.pdf", "-m",
             "lsb/usr/cupsfilters/Generic-PDF_Printer-PDF.ppd"});
    lpadmin({"-p", "embosser", "-E", "-v", "file://" + m_out + "/emb.brf", "-m",
             "drv:///generic-brf.drv/gen-brf.ppd"});
    lpadmin({"-p", "embosser", "-o", "LibLouis=en-us-g1.ctb", "-o", "LibLouis2=None"});
    lpadmin({"-p", "closed", "-E", "-v", "file:///dev/null", "-m",
             "drv:///generic-brf.drv/gen-brf.ppd"});
    QCOMPARE(run("cupsreject", {"closed"}), QString());
}

void TestPrinting::cleanupTestCase()
{
    m_cupsd.terminate();
    if (!m_cupsd.waitForFinished(5000))
        m_cupsd.kill();
}

// A job reaches a queue or a file whole: the PDF laid out as on the page (the list in five columns
// at 18 points on A4, seven at 12), in an even-width typeface; the braille text byte for byte, a
// character a cell, CR LF after each line and a form feed wherever a braille page is full (CUPS
// ends a queued job with one \032). An abandoned document leaves no file at all.
void TestPrinting::jobsReachQueuesAndFiles()
{
    using enum PrintDestination::Kind;
    QTemporaryDir dir;
    QStringList at18 = kPrintedLines;
    at18.replace(1, "abc yxw agmsy zzz fgh");
    at18.insert(2, "klm");
    const struct {
        OutputMode mode;
        PrintDestination destination;
        QString fontSize, written;
    } jobs[] = {
        {OutputMode::Print, {Queue, "pdffile"}, "18 point", m_out + "/doc.pdf"},
        {OutputMode::Braille, {Queue, "embosser"}, "12 point", m_out + "/emb.brf"},
        {OutputMode::Print, {File, dir.filePath("p.pdf")}, "12 point", dir.filePath("p.pdf")},
        {OutputMode::Braille, {File, dir.filePath("p.brf")}, "12 point", dir.filePath("p.brf")}};
    for (const auto &job : jobs) {
        QCOMPARE(printPuzzle(job.mode, job.destination, job.fontSize).end, JobEnd::Printed);
        const QByteArray bytes = waitForFile(job.written);
        const bool queued = job.destination.kind == Queue;
        if (job.mode == OutputMode::Print)
            QCOMPARE(pdfLines(job.written), queued ? at18 : kPrintedLines);
        else
            QCOMPARE(bytes, kBraillePages + (queued ? "\032" : ""));
    }
    // "Courier New" is Liberation Mono here, with letters of equal width.
    QVERIFY(run("pdffonts", {dir.filePath("p.pdf")}).contains("LiberationMono"));

    PagePrinter page(kA4, {File, dir.filePath("dropped.pdf")});
    BraillePrinter braille(35, 23, {File, dir.filePath("dropped.brf")});
    for (Printer *printer : std::initializer_list<Printer *>{&page, &braille}) {
        printer->print("abc", false);
        printer->newPage();
        printer->print("def", false);
        printer->abandonDocument();
    }
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), (QStringList{"p.brf", "p.pdf"}));
}

// A queue that refuses jobs, a queue that is gone, no print system and a folder that is gone each
// fail the job with the reason in words, which the player hears with the printer's or file's name.
void TestPrinting::refusedJobsAreNamed()
{
    const struct {
        PrintDestination destination;
        QString server;
        QString reason;
    } table[] = {
        {{PrintDestination::Kind::Queue, "closed"}, {}, "not accepting jobs"},
        {{PrintDestination::Kind::Queue, "nowhere"}, {}, "no printer of that name"},
        {{PrintDestination::Kind::Queue, "embosser"}, "/nonexistent/cups.sock", "not running"},
        {{PrintDestination::Kind::File, m_out + "/gone/puzzle.brf"}, {}, "No such file"},
    };
    for (const auto &row : table) {
        if (!row.server.isEmpty())
            cupsSetServer(QFile::encodeName(row.server).constData());
        const JobResult result = printPuzzle(OutputMode::Braille, row.destination);
        cupsSetServer(nullptr);
        QCOMPARE(result.end, JobEnd::Failed);
        const QString message = JobMessage(result);
        QVERIFY2(message.contains("\"" + row.destination.name + "\": ") &&
                     message.contains(row.reason, Qt::CaseInsensitive),
                 qPrintable(message));
    }
}

// The print dialog opens on its list of the print system's printers; the player picks the embosser
// by typing its first letter, presses Enter, and what is then printed reaches the embosser.
void TestPrinting::printDialogByKeyboard()
{
    QtFileDialogs dialogs;
    QString focus;
    whenModal([&](QWidget *) {
        focus = focusName();
        type("e");
        press(Qt::Key_Return);
    });
    PrintChoice choice = dialogs.choosePrinter(nullptr, {OutputMode::Braille, 35, 23});
    QCOMPARE(focus, "printers");
    QVERIFY(dynamic_cast<BraillePrinter *>(choice.printer.get()));
    QCOMPARE(choice.destination.name, "embosser");
    QCOMPARE(choice.copies, 1);
    QFile::remove(m_out + "/emb.brf");
    choice.printer->print("abc", false);
    QString error;
    QVERIFY2(choice.printer->endDocument(error), qPrintable(error));
    QCOMPARE(waitForFile(m_out + "/emb.brf"), QByteArray("abc\r\n\032"));
}

int main(int argc, char *argv[])
{
    // Without a print system to start there is nothing to print through.
    for (const char *program : {"cupsd", "lpadmin", "lpstat"}) {
        if (findProgram(QString::fromLatin1(program)).isEmpty()) {
            std::printf("SKIP: %s is not installed, so no private print server can be started "
                        "(apt-get install cups-daemon cups-client)\n",
                        program);
            return 77;
        }
    }
    QApplication app(argc, argv);
    TestPrinting test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_printing.moc"
