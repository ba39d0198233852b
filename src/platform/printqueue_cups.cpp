// Printer queues through CUPS, where the system has it (Linux, BSD, macOS).
#include "platform/printqueue.h"

#ifndef Q_OS_WIN
#include <QtGlobal>

#include <cups/cups.h>

#include <memory>

namespace lexicove {

namespace {

// Seconds a silent print system is waited for, at most.
constexpr double kAnswerSeconds = 20.0;
constexpr int kConnectMilliseconds = 5000;

struct HttpClose {
    void operator()(http_t *http) const { httpClose(http); }
};

QString lastError()
{
    return QString::fromUtf8(cupsLastErrorString());
}

const char *mimeType(DocumentFormat format)
{
    // An embosser's driver takes braille-ready text and embosses it cell by
    // cell; given a drawing it would turn it back into text and reflow it.
    return format == DocumentFormat::Pdf ? "application/pdf" : "application/vnd.cups-brf";
}

} // namespace

bool SendToQueue(const QString &queue, const QString &title, const QByteArray &document,
                 DocumentFormat format, int copies, QString &error)
{
    std::unique_ptr<http_t, HttpClose> http(httpConnect2(cupsServer(), ippPort(), nullptr,
                                                         AF_UNSPEC, cupsEncryption(), 1,
                                                         kConnectMilliseconds, nullptr));
    if (!http) {
        error = QStringLiteral("the print system (CUPS) is not running or can't be reached");
        return false;
    }
    httpSetTimeout(
        http.get(), kAnswerSeconds, [](http_t *, void *) { return 0; }, nullptr);

    const QByteArray name = queue.toUtf8();
    const QByteArray jobTitle = title.toUtf8();
    cups_dest_t *dest = cupsGetNamedDest(http.get(), name.constData(), nullptr);
    if (!dest) {
        error = QStringLiteral("the print system has no printer of that name (it may have been "
                               "removed)");
        return false;
    }
    cupsFreeDests(1, dest);
    const QByteArray copyCount = QByteArray::number(qMax(1, copies));
    cups_option_t *options = nullptr;
    int optionCount = cupsAddOption("copies", copyCount.constData(), 0, &options);
    const int job =
        cupsCreateJob(http.get(), name.constData(), jobTitle.constData(), optionCount, options);
    cupsFreeOptions(optionCount, options);
    if (job == 0) {
        error = lastError();
        return false;
    }
    if (cupsStartDocument(http.get(), name.constData(), job, jobTitle.constData(), mimeType(format),
                          1) != HTTP_STATUS_CONTINUE ||
        cupsWriteRequestData(http.get(), document.constData(),
                             static_cast<size_t>(document.size())) != HTTP_STATUS_CONTINUE) {
        error = lastError();
        cupsFinishDocument(http.get(), name.constData());
        cupsCancelJob2(http.get(), name.constData(), job, 0);
        return false;
    }
    if (cupsFinishDocument(http.get(), name.constData()) > IPP_STATUS_OK_EVENTS_COMPLETE) {
        error = lastError();
        return false;
    }
    return true;
}

} // namespace lexicove
#endif
