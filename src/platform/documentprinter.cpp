#include "platform/documentprinter.h"

#include <algorithm>

namespace lexicove {

namespace {

// Positions are sums of measured widths; a line that ends a hair below the
// bottom still fits.
constexpr double kSlack = 1e-6;

} // namespace

void DocumentPrinter::print(const QString &text, bool stayOnLine)
{
    const double lineHeight = textHeight(QStringLiteral("X"));
    if (m_y > 0 && m_y + lineHeight > printableHeight() + kSlack)
        newPage();
    Page &page = m_pages.last();
    if (!text.isEmpty())
        page.texts.append({std::max(m_x, 0.0), m_y, m_points, text});
    if (stayOnLine) {
        m_x += textWidth(text);
        page.bottom = std::max(page.bottom, m_y + lineHeight);
        return;
    }
    m_x = 0;
    m_y += lineHeight;
    page.bottom = std::max(page.bottom, m_y);
}

qsizetype DocumentPrinter::PagesToPrint(const QList<Page> &pages)
{
    qsizetype count = pages.size();
    while (count > 1 && pages.at(count - 1).texts.isEmpty())
        --count;
    return count;
}

void DocumentPrinter::newPage()
{
    m_pages.append(Page{});
    m_x = 0;
    m_y = 0;
}

void DocumentPrinter::abandonDocument()
{
    m_pages = {Page{}};
    m_x = 0;
    m_y = 0;
}

} // namespace lexicove
