#include "platform/qtfiledialogs.h"

#include "platform/brailleprinter.h"
#include "platform/pageprinter.h"
#include "platform/platform.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>

namespace lexicove {

namespace {

// A save dialog that takes a file name only in a folder that exists; for any
// other it says so and stays open. It asks before replacing a file.
class SaveDialog final : public QFileDialog {
public:
    SaveDialog(QWidget *parent, const QString &filter) : QFileDialog(parent)
    {
        setObjectName(QStringLiteral("saveDialog"));
        setOption(QFileDialog::DontUseNativeDialog);
        setAcceptMode(QFileDialog::AcceptSave);
        setFileMode(QFileDialog::AnyFile);
        setNameFilter(filter);
        setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    }

    void accept() override
    {
        const QStringList chosen = selectedFiles();
        if (!chosen.isEmpty()) {
            const QFileInfo file(chosen.first());
            if (!file.isDir() && !QFileInfo(file.absolutePath()).isDir()) {
                QMessageBox box(QMessageBox::NoIcon, windowTitle(),
                                QStringLiteral("The folder \"%1\" does not exist. Please choose "
                                               "a folder that exists.")
                                    .arg(QDir::toNativeSeparators(file.absolutePath())),
                                QMessageBox::Ok, this);
                box.setTextFormat(Qt::PlainText); // a folder's name as it is typed
                box.exec();
                // Back to the file name, to type another.
                activateWindow();
                if (auto *name = findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
                    name->setFocus();
                return;
            }
        }
        QFileDialog::accept();
    }
};

} // namespace

QString QtFileDialogs::saveFile(QWidget *parent, const QString &filter)
{
    SaveDialog dialog(parent, filter);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return QDir::toNativeSeparators(dialog.selectedFiles().first());
}

PrintChoice QtFileDialogs::choosePrinter(QWidget *parent, const PrintRequest &request)
{
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    QPrintDialog dialog(printer.get(), parent);
    dialog.setObjectName(QStringLiteral("printDialog"));
    dialog.setOption(QAbstractPrintDialog::PrintToFile, true);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    dialog.setOption(QAbstractPrintDialog::PrintCollateCopies, true);
    dialog.setOption(QAbstractPrintDialog::PrintShowPageSize, true);
    if (dialog.exec() != QDialog::Accepted)
        return {};

    PrintChoice choice;
    choice.copies = printer->copyCount();
    const bool toFile =
        printer->outputFormat() == QPrinter::PdfFormat && !printer->outputFileName().isEmpty();
    choice.destination =
        toFile ? PrintDestination{PrintDestination::Kind::File,
                                  QDir::toNativeSeparators(printer->outputFileName())}
               : PrintDestination{PrintDestination::Kind::Queue, printer->printerName()};
    if (request.mode == OutputMode::Braille) {
        choice.printer = std::make_unique<BraillePrinter>(
            request.brailleLineLength, request.brailleLinesPerPage, choice.destination);
        return choice;
    }
#ifdef Q_OS_WIN
    // A Windows printer takes the drawing itself, with the dialog's settings.
    if (!toFile) {
        choice.printer = std::make_unique<PagePrinter>(std::move(printer));
        return choice;
    }
#endif
    choice.printer = std::make_unique<PagePrinter>(printer->pageLayout(), choice.destination);
    return choice;
}

} // namespace lexicove
