#include "package/gb2312.h"

#include <QByteArray>
#include <QString>
#include <QTextCodec>

#include <algorithm>
#include <array>

namespace NelvoDevkit {

namespace {

//! A block of assigned cells: `first` to `last` in each of the rows.
struct Cells {
    int firstRow;
    int lastRow;
    int first;
    int last;
};

// Symbols, digits, kana, Greek, Cyrillic, pinyin and bopomofo, lines; then the ideographs of both levels.
constexpr std::array AssignedCells = {
    Cells{1, 1, 1, 94},   Cells{2, 2, 17, 66}, Cells{2, 2, 69, 78},  Cells{2, 2, 81, 92},
    Cells{3, 3, 1, 94},   Cells{4, 4, 1, 83},  Cells{5, 5, 1, 86},   Cells{6, 6, 1, 24},
    Cells{6, 6, 33, 56},  Cells{7, 7, 1, 33},  Cells{7, 7, 49, 81},  Cells{8, 8, 1, 26},
    Cells{8, 8, 37, 73},  Cells{9, 9, 4, 79},  Cells{16, 54, 1, 94}, Cells{55, 55, 1, 89},
    Cells{56, 87, 1, 94},
};

bool isAssigned(int row, int cell)
{
    return std::any_of(AssignedCells.begin(), AssignedCells.end(), [row, cell](const Cells& cells) {
        return row >= cells.firstRow && row <= cells.lastRow && cell >= cells.first && cell <= cells.last;
    });
}

bool isAssigned(const QByteArray& bytes)
{
    constexpr int offset = 0xA0; // of rows and cells in the encoded text
    const auto byte = [&bytes](int i) { return static_cast<unsigned char>(bytes.at(i)); };
    for (int i = 0; i < bytes.size(); ++i) {
        if (byte(i) < 0x80)
            continue;
        if (i + 1 == bytes.size() || !isAssigned(byte(i) - offset, byte(i + 1) - offset))
            return false;
        ++i;
    }
    return true;
}

} // namespace

bool isGb2312(const QString& text)
{
    const QTextCodec* codec = QTextCodec::codecForName("GB2312");
    const QByteArray encoded = codec->fromUnicode(text);
    return isAssigned(encoded) && codec->toUnicode(encoded) == text;
}

} // namespace NelvoDevkit
