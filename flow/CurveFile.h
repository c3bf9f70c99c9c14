// The *.chr curve file: plain text, one point of the signal modification
// curve a line, from the 0 % point to the 100 % point in steps of 10 %,
// eleven lines. Each line holds the point as a fraction of 1 followed by a
// tail of four characters that the reader drops whatever it holds; the
// writer puts " p.u" there. Reading and writing are pure: the caller does
// the file's I/O.
#pragma once

#include "flow/CurveTable.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kt500::flow {

// The points of a file: 11 (or 12) percent values in chr[0], chr[1], ...;
// the slot after the last line holds 0.
using CurveFilePoints = std::array<float, 12>;

// Why a file was refused: the language key of the reason, and the line
// (from 1) where it showed, 0 when the file as a whole is at fault.
struct CurveFileError {
    std::string key;
    int line = 0;
};

struct CurveFileRead {
    bool ok = false;
    CurveFilePoints chr{};
    CurveFileError error;
};

// The largest file that can hold a curve; anything longer is refused unread.
inline constexpr std::size_t kCurveFileMaxBytes = 4096;

// Reads the text of a file. Refused: an empty file ("curveFileEmpty"), bytes
// that are not text ("curveFileNotText"), more than kCurveFileMaxBytes
// ("curveFileTooLarge"), a line under four characters
// ("curveFileLineTooShort"), a line whose rest is no number
// ("curveFileNoNumber"), a thirteenth line ("curveFileTooManyLines") and
// fewer than eleven lines ("curveFileTooFewLines").
[[nodiscard]] CurveFileRead ReadCurveFile(std::string_view bytes);

// The signal modification curve (rows 0 to 20; the even rows are the
// file's points) as the text of a file that ReadCurveFile reads back.
[[nodiscard]] std::string CurveFileText(const CurveRowList& signalModification);

// The table as LoadCurveFile fills it from a file's points: subset 0 holds
// the points in the even rows and the means of neighbours in the odd rows,
// subset 2 the same curve, subset 1 the "Linear" preset.
void FillFromCurveFile(CurveTable& arrCurves, const CurveFilePoints& chr);

}  // namespace kt500::flow
