#pragma once

// The desktop a test's windows open on.

#include <QByteArray>
#include <QTemporaryFile>

namespace lexicove::test {

// Gives the offscreen platform one screen of width by height pixels, all of
// it free for windows. Call it from the test class's static initMain(), which
// runs before the application starts; other platforms keep their screens.
inline void useOffscreenScreen(int width, int height)
{
    if (qgetenv("QT_QPA_PLATFORM") != "offscreen")
        return;
    // Read as the application starts; removed when the test program ends.
    static QTemporaryFile config;
    if (!config.open())
        qFatal("no temporary file for the screen's description");
    config.write(QStringLiteral(R"({"screens": [{"name": "Desktop", "x": 0, "y": 0, )"
                                R"("width": %1, "height": %2, "logicalDpi": 96}]})")
                     .arg(width)
                     .arg(height)
                     .toUtf8());
    config.flush();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toUtf8());
}

} // namespace lexicove::test
