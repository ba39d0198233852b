#include "fakeprinter.h"

#include "platform/brailleprinter.h"

namespace lexicove::test {

RecordingPrinter::RecordingPrinter(const PrinterScript &script, PrintRecord &record)
    : DocumentPrinter(script.startPoints), m_script(script), m_record(record)
{
    m_record = PrintRecord{};
}

double RecordingPrinter::scale() const
{
    return m_script.scaled ? fontSize() / m_script.startPoints : 1.0;
}

void RecordingPrinter::setCopies(int copies)
{
    m_record.log << QStringLiteral("copies %1").arg(copies);
    DocumentPrinter::setCopies(copies);
}

void RecordingPrinter::setFontName(const QString &name)
{
    m_record.log << QStringLiteral("font ") + name;
    DocumentPrinter::setFontName(name);
}

void RecordingPrinter::setFontSize(double points)
{
    m_record.log << QStringLiteral("size %1").arg(points);
    DocumentPrinter::setFontSize(points);
}

void RecordingPrinter::setCurrentX(double x)
{
    m_record.log << QStringLiteral("x %1").arg(x);
    DocumentPrinter::setCurrentX(x);
}

double RecordingPrinter::textWidth(const QString &text) const
{
    return static_cast<double>(text.size()) * m_script.cellWidth * scale();
}

double RecordingPrinter::textHeight(const QString &) const
{
    return m_script.cellHeight * scale();
}

void RecordingPrinter::print(const QString &text, bool stayOnLine)
{
    m_record.log << QStringLiteral("print ") + text +
                        (stayOnLine ? QStringLiteral(";") : QString());
    DocumentPrinter::print(text, stayOnLine);
}

void RecordingPrinter::newPage()
{
    m_record.log << QStringLiteral("page");
    DocumentPrinter::newPage();
}

bool RecordingPrinter::endDocument(QString &error)
{
    m_record.log << QStringLiteral("end");
    m_record.pages = pages();
    m_record.ended = m_script.failure.isEmpty();
    error = m_script.failure;
    return m_record.ended;
}

void RecordingPrinter::abandonDocument()
{
    m_record.log << QStringLiteral("abandon");
    DocumentPrinter::abandonDocument();
}

QString PrintRecord::text() const
{
    return BraillePrinter::PagesAsText(pages);
}

QString FakeFileDialogs::saveFile(QWidget *, const QString &filter)
{
    filters << filter;
    if (savePaths.isEmpty()) {
        ++unexpected;
        return QString();
    }
    return savePaths.takeFirst();
}

PrintChoice FakeFileDialogs::choosePrinter(QWidget *, const PrintRequest &request)
{
    requests << request;
    if (makePrinter)
        return makePrinter(request);
    if (cancel)
        return {};
    PrintChoice choice;
    choice.printer = std::make_unique<RecordingPrinter>(script, record);
    choice.copies = copies;
    choice.destination = {PrintDestination::Kind::Queue, QStringLiteral("recorder")};
    return choice;
}

} // namespace lexicove::test
