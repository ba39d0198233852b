#include "platform/pageprinter.h"

#include "platform/printqueue.h"
#include "platform/qtplatform.h"

#include <QFontMetricsF>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>

namespace lexicove {

namespace {

constexpr int kPdfResolution = 1200;
// The size the printer starts with, before a job sets one.
constexpr double kStartPoints = 12.0;

const QString kJobTitle = QStringLiteral("Lexicove Puzzle");

} // namespace

PagePrinter::PagePrinter(const QPageLayout &layout, PrintDestination destination)
    : DocumentPrinter(kStartPoints), m_destination(std::move(destination))
{
    m_pdf.open(QIODevice::WriteOnly);
    auto writer = std::make_unique<QPdfWriter>(&m_pdf);
    writer->setResolution(kPdfResolution);
    writer->setPageLayout(layout);
    writer->setCreator(kAppTitle);
    writer->setTitle(kJobTitle);
    m_device = std::move(writer);
}

PagePrinter::PagePrinter(std::unique_ptr<QPrinter> printer)
    : DocumentPrinter(kStartPoints), m_destination{PrintDestination::Kind::Queue,
                                                   printer->printerName()}
{
    printer->setDocName(kJobTitle);
    m_device = std::move(printer);
}

PagePrinter::~PagePrinter() = default;

QFont PagePrinter::font(double points) const
{
    // A face of the name asked for, or else another with letters of equal
    // width, so that the cells of the grid line up whatever is installed.
    QFont face(fontName());
    face.setStyleHint(QFont::TypeWriter);
    face.setFixedPitch(true);
    face.setPointSizeF(points);
    return face;
}

void PagePrinter::setFontName(const QString &name)
{
    m_metrics.clear();
    DocumentPrinter::setFontName(name);
}

const QFontMetricsF &PagePrinter::metrics() const
{
    auto known = m_metrics.find(fontSize());
    if (known == m_metrics.end())
        known =
            m_metrics.emplace(fontSize(), QFontMetricsF(font(fontSize()), m_device.get())).first;
    return known->second;
}

double PagePrinter::printableWidth() const
{
    return m_device->width();
}

double PagePrinter::printableHeight() const
{
    return m_device->height();
}

double PagePrinter::textWidth(const QString &text) const
{
    return metrics().horizontalAdvance(text);
}

double PagePrinter::textHeight(const QString &) const
{
    return metrics().height();
}

bool PagePrinter::draw(QString &error)
{
    if (auto *printer = dynamic_cast<QPrinter *>(m_device.get()))
        printer->setCopyCount(copies());
    QPainter painter;
    if (!painter.begin(m_device.get())) {
        error = QStringLiteral("the printer could not start the document");
        return false;
    }
    const qsizetype last = PagesToPrint(pages());
    for (qsizetype i = 0; i < last; ++i) {
        if (i > 0 && !m_device->newPage()) {
            error = QStringLiteral("the printer could not start a new page");
            return false;
        }
        for (const Placed &placed : pages().at(i).texts) {
            const QFont face = font(placed.points);
            painter.setFont(face);
            const double ascent = QFontMetricsF(face, m_device.get()).ascent();
            painter.drawText(QPointF(placed.x, placed.y + ascent), placed.text);
        }
    }
    if (!painter.end()) {
        error = QStringLiteral("the printer could not finish the document");
        return false;
    }
    return true;
}

bool PagePrinter::endDocument(QString &error)
{
    if (!draw(error))
        return false;
    if (!dynamic_cast<QPdfWriter *>(m_device.get()))
        return true; // drawn onto the printer itself
    if (m_destination.kind == PrintDestination::Kind::File)
        return WriteWholeFile(m_destination.name, m_pdf.data(), error);
    return SendToQueue(m_destination.name, kJobTitle, m_pdf.data(), DocumentFormat::Pdf, copies(),
                       error);
}

} // namespace lexicove
