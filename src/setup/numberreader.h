#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace lexicove {

// The whole number that a reply typed into an input box begins with.
//
// Blanks, tabs and line feeds are skipped wherever they stand. Then either a
// decimal number is read (an optional sign, digits, an optional decimal point
// and fraction, an optional exponent written with E or D, such as E2 or d-1)
// or, after the prefix &H or &O, a hexadecimal or octal whole number. Reading
// stops at the first character that can't continue the number; a reply that
// doesn't begin with a number counts as 0. The value is rounded to a whole
// number, halves going to the even neighbour (6.5 gives 6, 7.5 gives 8),
// worked out on the exact value of the digits and exponent, however many
// there are (2.50000000000000000001 gives 3), with no floating point.
//
// Returns no value when the number is too large to hold as a whole number, so
// that the caller treats it as out of range like any other.
std::optional<qint64> ReadReplyNumber(const QString &reply);

} // namespace lexicove
