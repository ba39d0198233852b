#include "fakeprinter.h"

#include "platform/brailleprinter.h"

namespace lexicove::test {

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
    return {std::make_unique<RecordingPrinter>(script, record), copies,
            {PrintDestination::Kind::Queue, QStringLiteral("recorder")}};
}

} // namespace lexicove::test
