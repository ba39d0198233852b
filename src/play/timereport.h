#pragma once

#include <QString>
#include <QtGlobal>

namespace lexicove {

// Milliseconds of play between two readings of the tick counter. The counter
// is a 32-bit count that wraps, so the difference is taken modulo 2^32: a
// puzzle started just before the wrap measures the same as any other.
inline quint32 ElapsedSince(quint32 startTick, quint32 nowTick)
{
    return nowTick - startTick;
}

// Whether elapsed milliseconds have gone past a limit of timeLimit minutes
// (0: no limit, never late). Exactly at the limit is still in time.
bool IsPastLimit(qint32 timeLimit, quint32 elapsed);

// The answer of "Time Remaining" for a limit of timeLimit minutes (0: none)
// after elapsed milliseconds of play.
QString TimeReport(qint32 timeLimit, quint32 elapsed);

} // namespace lexicove
