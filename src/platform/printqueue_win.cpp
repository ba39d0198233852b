// Printer queues on Windows: braille text goes to the printer as it is (RAW),
// so the embosser gets one character per cell. Ordinary print jobs are drawn
// straight onto the Windows printer and never come here.
#include "platform/printqueue.h"

#ifdef Q_OS_WIN
#include <windows.h>

namespace lexicove {

namespace {

QString systemError()
{
    return QString::fromWCharArray(_wcserror(static_cast<int>(GetLastError())));
}

} // namespace

bool SendToQueue(const QString &queue, const QString &title, const QByteArray &document,
                 DocumentFormat format, int copies, QString &error)
{
    if (format != DocumentFormat::BrailleText) {
        error = QStringLiteral("this printer takes drawings through the Windows printer only");
        return false;
    }
    std::wstring name = queue.toStdWString();
    HANDLE printer = nullptr;
    if (!OpenPrinterW(name.data(), &printer, nullptr)) {
        error = systemError();
        return false;
    }
    std::wstring docName = title.toStdWString();
    wchar_t raw[] = L"RAW";
    DOC_INFO_1W info{docName.data(), nullptr, raw};
    bool ok = true;
    for (int copy = 0; ok && copy < qMax(1, copies); ++copy) {
        if (StartDocPrinterW(printer, 1, reinterpret_cast<LPBYTE>(&info)) == 0) {
            ok = false;
        } else {
            DWORD written = 0;
            ok = WritePrinter(printer, const_cast<char *>(document.constData()),
                              static_cast<DWORD>(document.size()), &written) &&
                 written == static_cast<DWORD>(document.size());
            EndDocPrinter(printer);
        }
        if (!ok)
            error = systemError();
    }
    ClosePrinter(printer);
    return ok;
}

} // namespace lexicove
#endif
