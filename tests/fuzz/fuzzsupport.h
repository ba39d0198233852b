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
        for (qsizetype at = 0; at < m_bytes.size(); at += m_piece) {
            if (!take(QByteArrayView(m_bytes).sliced(at, qMin(m_piece, m_bytes.size() - at))))
                break;
        }
        return true;
    }
    bool write(const QString &, const QByteArray &, QString &) override { return false; }
    bool remove(const QString &, QString &) override { return false; }

private:
    QByteArray m_bytes;
    qsizetype m_piece;
};

} // namespace lexicove::fuzz
