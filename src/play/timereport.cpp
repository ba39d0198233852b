#include "play/timereport.h"

namespace lexicove {

namespace {

constexpr qint64 kMsPerMinute = 60000;
constexpr qint64 kMsPerSecond = 1000;
constexpr qint64 kSecondsPerMinute = 60;

qint64 LimitMs(qint32 timeLimit)
{
    return static_cast<qint64>(timeLimit) * kMsPerMinute;
}

} // namespace

bool IsPastLimit(qint32 timeLimit, quint32 elapsed)
{
    if (timeLimit == 0)
        return false;
    return static_cast<qint64>(elapsed) > LimitMs(timeLimit);
}

QString TimeReport(qint32 timeLimit, quint32 elapsed)
{
    if (timeLimit == 0)
        return QStringLiteral("You have as much time as necessary to complete this puzzle.");
    if (IsPastLimit(timeLimit, elapsed))
        return QStringLiteral("You've spent more than your allowed time on this puzzle.");

    // Whole seconds, rounded down: 0.001 s left is "0 seconds".
    const qint64 remainingSeconds = (LimitMs(timeLimit) - elapsed) / kMsPerSecond;
    if (remainingSeconds < kSecondsPerMinute)
        return QStringLiteral("You only have %1 seconds remaining!").arg(remainingSeconds);
    const qint64 minutes = remainingSeconds / kSecondsPerMinute;
    const qint64 seconds = remainingSeconds - kSecondsPerMinute * minutes;
    return QStringLiteral("You have %1 minutes, %2 seconds remaining.").arg(minutes).arg(seconds);
}

} // namespace lexicove
