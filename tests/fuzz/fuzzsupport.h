#pragma once

// What the fuzz targets share: a property check that stops the run with a
// report (libFuzzer then saves the input), and one file held in memory,
// served in pieces of a chosen size.

#include "platform/platform.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>

#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "property failed: %s (%s:%d)\n", #condition, __FILE__, __LINE__); \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

namespace lexicove::fuzz {

// Hands bytes to take in pieces of the given size, while take asks for more.
template <typename Take> void inPieces(QByteArrayView bytes, qsizetype piece, Take take)
{
    for (qsizetype at = 0; at < bytes.size(); at += piece)
        if (!take(bytes.sliced(at, qMin(piece, bytes.size() - at))))
            break;
}

// Every path names the one file; nothing can be written or removed.
class MemoryFile final : public Files {
public:
    MemoryFile(QByteArray bytes, qsizetype pieceSize)
        : m_bytes(std::move(bytes)), m_piece(pieceSize)
    {
    }
    QStringList list(const QString &, const QString &) override { return {}; }
    bool readPieces(const QString &, const PieceReader &take, QString &) override
    {
        inPieces(m_bytes, m_piece, take);
        return true;
    }
    bool write(const QString &, const QByteArray &, QString &) override { return false; }
    bool remove(const QString &, QString &) override { return false; }

private:
    QByteArray m_bytes;
    qsizetype m_piece;
};

} // namespace lexicove::fuzz
