#pragma once

// The print side of the scripted platform: a save and print dialog that
// answer from a script, and a printer that records every operation and
// answers its measures from a script.

#include "platform/documentprinter.h"
#include "platform/printer.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace lexicove::test {

// What a recording printer was told, kept after the job has dropped it.
struct PrintRecord {
    // One entry an operation: "copies 2", "font Courier New", "size 12",
    // "x 13", "print cat;" (staying on the line), "print cat", "page", "end",
    // "abandon".
    QStringList log;
    // The finished document, when it ended.
    QList<DocumentPrinter::Page> pages;
    bool ended = false;
    // Its pages as text, a character a cell, a line a unit (braille-like).
    QString text() const;
};

// The printer's measures: the printable page, and the cell of "X" at the
// size the printer starts with; a cell grows with the font size when
// `scaled`, as on paper, and stays put when not, as on an embosser.
struct PrinterScript {
    double width = 35;
    double height = 23;
    double cellWidth = 1;
    double cellHeight = 1;
    double startPoints = 8;
    bool scaled = false;
    // endDocument() fails with this reason when it is set.
    QString failure;
};

class RecordingPrinter final : public DocumentPrinter {
public:
    RecordingPrinter(const PrinterScript &script, PrintRecord &record);

    void setCopies(int copies) override;
    void setFontName(const QString &name) override;
    void setFontSize(double points) override;
    void setCurrentX(double x) override;
    double printableWidth() const override { return m_script.width; }
    double printableHeight() const override { return m_script.height; }
    double textWidth(const QString &text) const override;
    double textHeight(const QString &text) const override;
    void print(const QString &text, bool stayOnLine) override;
    void newPage() override;
    bool endDocument(QString &error) override;
    void abandonDocument() override;

private:
    double scale() const;

    PrinterScript m_script;
    PrintRecord &m_record;
};

class FakeFileDialogs final : public FileDialogs {
public:
    QString saveFile(QWidget *parent, const QString &filter) override;
    PrintChoice choosePrinter(QWidget *parent, const PrintRequest &request) override;

    // Paths the save dialog gives, in order; an empty one is a cancel.
    QStringList savePaths;
    QStringList filters;
    // The print dialog's answer: a recording printer made from `script`
    // with `copies`, or, when `cancel` is set, none.
    PrinterScript script;
    int copies = 1;
    bool cancel = false;
    // Makes the printer instead of the script when set (a real one).
    std::function<PrintChoice(const PrintRequest &)> makePrinter;
    QList<PrintRequest> requests;
    PrintRecord record;
    // Dialogs that found nothing scripted.
    int unexpected = 0;
};

} // namespace lexicove::test
