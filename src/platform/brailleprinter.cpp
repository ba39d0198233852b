#include "platform/brailleprinter.h"

#include "platform/platform.h"
#include "platform/printqueue.h"
#include "platform/qtplatform.h"

#include <QStringList>

#include <cmath>

namespace lexicove {

namespace {

// What starts a new sheet on an embosser.
constexpr char kFormFeed = '\f';
// The size the printer starts with; every size measures the same here.
constexpr double kStartPoints = 8.0;

const QString kJobTitle = QStringLiteral("Lexicove Braille Puzzle");

} // namespace

BraillePrinter::BraillePrinter(int lineLength, int linesPerPage, PrintDestination destination)
    : DocumentPrinter(kStartPoints), m_lineLength(lineLength), m_linesPerPage(linesPerPage),
      m_destination(std::move(destination))
{
}

double BraillePrinter::textWidth(const QString &text) const
{
    return static_cast<double>(text.size());
}

QByteArray BraillePrinter::text() const
{
    return encode8Bit(PagesAsText(pages()));
}

QString BraillePrinter::PagesAsText(const QList<Page> &pages)
{
    const qsizetype last = PagesToPrint(pages);
    QString document;
    for (qsizetype i = 0; i < last; ++i) {
        const Page &page = pages.at(i);
        QStringList lines(static_cast<qsizetype>(std::ceil(page.bottom)));
        for (const Placed &placed : page.texts) {
            const auto row = static_cast<qsizetype>(std::lround(placed.y));
            const auto cell = static_cast<qsizetype>(std::lround(placed.x));
            if (row >= lines.size())
                lines.resize(row + 1);
            QString &line = lines[row];
            if (line.size() < cell + placed.text.size())
                line = line.leftJustified(cell + placed.text.size(), QLatin1Char(' '));
            line.replace(cell, placed.text.size(), placed.text);
        }
        if (i > 0)
            document += QLatin1Char(kFormFeed);
        for (const QString &line : lines) {
            QString trimmed = line;
            while (trimmed.endsWith(QLatin1Char(' ')))
                trimmed.chop(1);
            document += trimmed + QStringLiteral("\r\n");
        }
    }
    return document;
}

bool BraillePrinter::endDocument(QString &error)
{
    const QByteArray document = text();
    if (m_destination.kind == PrintDestination::Kind::File)
        return WriteWholeFile(m_destination.name, document, error);
    return SendToQueue(m_destination.name, kJobTitle, document, DocumentFormat::BrailleText,
                       copies(), error);
}

} // namespace lexicove
