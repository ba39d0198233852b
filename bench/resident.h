#pragma once

#include <QFile>
#include <QList>
#include <QString>
#include <QtGlobal>

#ifdef Q_OS_LINUX
#include <unistd.h>
#endif

// The resident memory of process pid (0 for this one) in bytes; 0 where it
// can't be read (Linux only).
inline double residentBytes(qint64 pid = 0)
{
#ifdef Q_OS_LINUX
    QFile statm(pid ? QStringLiteral("/proc/%1/statm").arg(pid)
                    : QStringLiteral("/proc/self/statm"));
    if (statm.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> fields = statm.readAll().split(' ');
        if (fields.size() > 1)
            return fields[1].toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
    }
#else
    Q_UNUSED(pid);
#endif
    return 0;
}
