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
    RecordingPrinter(const PrinterScript &script, PrintRecord &record)
        : DocumentPrinter(script.startPoints), m_script(script), m_record(record)
    {
        m_record = PrintRecord{};
    }

    void setCopies(int n) override
    {
        DocumentPrinter::setCopies(n);
        note("copies", n);
    }
    void setFontName(const QString &name) override
    {
        DocumentPrinter::setFontName(name);
        note("font " + name);
    }
    void setFontSize(double points) override
    {
        DocumentPrinter::setFontSize(points);
        note("size", points);
    }
    void setCurrentX(double x) override
    {
        DocumentPrinter::setCurrentX(x);
        note("x", x);
    }
    double printableWidth() const override { return m_script.width; }
    double printableHeight() const override { return m_script.height; }
    double textWidth(const QString &text) const override
    {
        return text.size() * m_script.cellWidth * scale();
    }
    double textHeight(const QString &) const override { return m_script.cellHeight * scale(); }
    void print(const QString &text, bool stay) override
    {
        note("print " + text + (stay ? ";" : ""));
        DocumentPrinter::print(text, stay);
    }
    void newPage() override
    {
        note("page");
        DocumentPrinter::newPage();
    }
    void abandonDocument() override
    {
        note("abandon");
        DocumentPrinter::abandonDocument();
    }
    bool endDocument(QString &error) override
    {
        note("end");
        m_record.pages = pages();
        m_record.ended = m_script.failure.isEmpty();
        error = m_script.failure;
        return m_record.ended;
    }

private:
    double scale() const { return m_script.scaled ? fontSize() / m_script.startPoints : 1.0; }
    void note(const QString &entry) { m_record.log << entry; }
    void note(const QString &what, double value) { note(what + ' ' + QString::number(value)); }

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
