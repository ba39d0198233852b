#pragma once

#include <QString>

namespace lexicove {

// A word hidden as one "x" per character: "cat" -> "xxx" (printed pages).
inline QString MaskWord(const QString &word)
{
    return QString(word.size(), QLatin1Char('x'));
}

// A word hidden as "x " per character: "cat" -> "x x x " (the on-screen list).
inline QString MaskWordSpaced(const QString &word)
{
    return QStringLiteral("x ").repeated(word.size());
}

} // namespace lexicove
