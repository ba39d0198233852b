#pragma once

#include <QString>
#include <QtGlobal>

#include <array>

namespace lexicove {

// The one record through which the windows pass everything to each other.
// One instance lives for the whole run; every window gets a reference to it
// and reads and writes its fields directly. Nothing in it is ever saved.
//
// Sizes follow the game's own bounds: word slots 0 to 50 (slot 0 unused) and a
// letter grid of rows 0 to 50 by columns 0 to 50 (row 0 and column 0 unused).
// A grid cell holds one character, or the empty text for a free cell.
struct GameState {
    static constexpr int kMaxWords = 50;
    static constexpr int kMaxSide = 50;

    QString systemDirectory;
    QString wordListPath;
    qint16 rows = 0;
    qint16 columns = 0;
    bool allowDiagonal = false;
    bool allowHorizontal = false;
    bool allowVertical = false;
    std::array<QString, kMaxWords + 1> words{};
    qint32 wordCount = 0;
    qint32 letterCount = 0;
    std::array<std::array<QString, kMaxSide + 1>, kMaxSide + 1> grid{};
    QString chooserMode;
    bool editingList = false;
    qint16 brailleLinesPerPage = 0;
    qint16 brailleLineLength = 0;
    qint16 brailleSurplusLines = 0;
    qint32 timeLimit = 0;
    bool hideWords = false;
};

inline const QString kChooserOptions = QStringLiteral("options");
inline const QString kChooserEdit = QStringLiteral("edit");

} // namespace lexicove
