#pragma once

// The printer, as the layout of a printed or brailled puzzle sees it, and the
// save and print dialogs that lead to it.

#include <QString>

#include <memory>

class QWidget;

namespace lexicove {

// A document being laid out on a printer. Positions, widths and heights are
// in the printer's own units, one unit for both directions; (0, 0) is the
// top left corner of the printable area of the current page.
//
// Printing a text puts it at the current position. With stayOnLine the
// position moves on by the text's width; without it the line ends: the next
// line starts at the left edge, one line height of the current font lower.
// A line that would run past the bottom of the page starts a new page first.
//
// Nothing reaches the printer before endDocument(); abandonDocument() drops
// everything, so nothing at all is printed and no file is left behind.
class Printer {
public:
    virtual ~Printer() = default;

    virtual void setCopies(int copies) = 0;
    virtual void setFontName(const QString &name) = 0;
    // Points, fractions allowed.
    virtual void setFontSize(double points) = 0;

    virtual double printableWidth() const = 0;
    virtual double printableHeight() const = 0;
    virtual double currentX() const = 0;
    virtual double currentY() const = 0;
    virtual void setCurrentX(double x) = 0;
    virtual double textWidth(const QString &text) const = 0;
    virtual double textHeight(const QString &text) const = 0;

    virtual void print(const QString &text, bool stayOnLine) = 0;
    virtual void newPage() = 0;
    // Prints the document. On failure returns false with the reason, in
    // plain words, in error.
    virtual bool endDocument(QString &error) = 0;
    virtual void abandonDocument() = 0;
};

enum class OutputMode { Print, Braille };

// What the printer chosen in the print dialog must be made for. A braille
// embosser's page is the player's: lineLength cells by linesPerPage lines.
struct PrintRequest {
    OutputMode mode = OutputMode::Print;
    int brailleLineLength = 0;
    int brailleLinesPerPage = 0;
};

// Where a document goes: a printer queue, or a file (the print dialog's
// print to file).
struct PrintDestination {
    enum class Kind { Queue, File };
    Kind kind = Kind::Queue;
    QString name; // the queue's name or the file's path
};

// The print dialog's answer: no printer when it was cancelled.
struct PrintChoice {
    std::unique_ptr<Printer> printer;
    int copies = 1;
    PrintDestination destination;
};

class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    // The save dialog: `filter` as Qt writes it ("Text Files (*.txt)"). It
    // asks before replacing a file and accepts only a folder that exists.
    // Returns the chosen path, or the empty text when cancelled.
    virtual QString saveFile(QWidget *parent, const QString &filter) = 0;
    // The print dialog, with no selection and no page range to choose, and
    // the number of copies.
    virtual PrintChoice choosePrinter(QWidget *parent, const PrintRequest &request) = 0;
};

} // namespace lexicove
