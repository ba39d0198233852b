#pragma once

#include <QByteArray>
#include <QString>

namespace lexicove {

// The formats a finished document is sent in: a drawing for an ordinary
// printer, or braille-ready text, one character per cell, for an embosser.
enum class DocumentFormat { Pdf, BrailleText };

// Hands a finished document to the system's printer queue `queue`, as a job
// named `title` with `copies` copies. Returns false with the reason, in plain
// words, when the job could not be handed over (no print system, no such
// queue, a queue that refuses jobs). It never waits long on a print system
// that does not answer.
bool SendToQueue(const QString &queue, const QString &title, const QByteArray &document,
                 DocumentFormat format, int copies, QString &error);

} // namespace lexicove
