#pragma once

#include "platform/documentprinter.h"

#include <QByteArray>

namespace lexicove {

// A braille embosser, which takes characters, not drawings: one character
// embosses one cell. Its unit is one cell across and one line down at every
// font size, and its printable page is the player's braille page, so a new
// page falls exactly where a braille page is full.
//
// The document reaches the embosser as text: each character in the cell its
// position gives, gaps as blanks, no blanks at a line's end, CR LF after
// every line and a form feed between pages.
class BraillePrinter final : public DocumentPrinter {
public:
    BraillePrinter(int lineLength, int linesPerPage, PrintDestination destination);

    double printableWidth() const override { return m_lineLength; }
    double printableHeight() const override { return m_linesPerPage; }
    double textWidth(const QString &text) const override;
    double textHeight(const QString &) const override { return 1.0; }
    bool endDocument(QString &error) override;

    // The document as the embosser gets it.
    QByteArray text() const;
    // Pages laid out in cells one unit wide and lines one unit high, as text.
    static QString PagesAsText(const QList<Page> &pages);
    const PrintDestination &destination() const { return m_destination; }

private:
    int m_lineLength;
    int m_linesPerPage;
    PrintDestination m_destination;
};

} // namespace lexicove
