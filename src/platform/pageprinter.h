#pragma once

#include "platform/documentprinter.h"

#include <QBuffer>
#include <QFont>
#include <QFontMetricsF>

#include <map>
#include <memory>

class QPageLayout;
class QPagedPaintDevice;
class QPrinter;

namespace lexicove {

// The printer of an ordinary print job. Texts are measured in the units of
// the page they will be drawn on and drawn only when the document ends: into
// a PDF that goes to a CUPS queue or to the file the player chose, or, on
// Windows, straight onto the printer the print dialog set up.
class PagePrinter final : public DocumentPrinter {
public:
    // A PDF of pages laid out as `layout`, at 1200 units per inch.
    PagePrinter(const QPageLayout &layout, PrintDestination destination);
    // Drawn straight onto `printer` (a Windows printer).
    explicit PagePrinter(std::unique_ptr<QPrinter> printer);
    ~PagePrinter() override;

    void setFontName(const QString &name) override;
    double printableWidth() const override;
    double printableHeight() const override;
    double textWidth(const QString &text) const override;
    double textHeight(const QString &text) const override;
    bool endDocument(QString &error) override;

    // Where the document goes, for the player's messages.
    const PrintDestination &destination() const { return m_destination; }

private:
    QFont font(double points) const;
    // The measures of the current font, kept per size: a grid measures every
    // letter it prints.
    const QFontMetricsF &metrics() const;
    bool draw(QString &error);

    mutable std::map<double, QFontMetricsF> m_metrics;
    QBuffer m_pdf;
    std::unique_ptr<QPagedPaintDevice> m_device;
    PrintDestination m_destination;
};

} // namespace lexicove
