#include "flow/CurveFile.h"

#include "devices/Encodings.h"
#include "flow/PresetCurves.h"

#include <cmath>

namespace kt500::flow {

namespace {

constexpr std::size_t kTailLength = 4;
constexpr int kFilePoints = 11;

// UTF-8 without control characters other than tab, carriage return and
// line feed.
bool IsText(std::string_view bytes) {
    std::size_t i = 0;
    while (i < bytes.size()) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (byte < 0x80) {
            if ((byte < 0x20 && byte != '\t' && byte != '\r' && byte != '\n') || byte == 0x7F) {
                return false;
            }
            ++i;
            continue;
        }
        std::size_t length = 0;
        if ((byte & 0xE0) == 0xC0 && byte >= 0xC2) {
            length = 2;
        } else if ((byte & 0xF0) == 0xE0) {
            length = 3;
        } else if ((byte & 0xF8) == 0xF0 && byte <= 0xF4) {
            length = 4;
        } else {
            return false;
        }
        if (i + length > bytes.size()) {
            return false;
        }
        for (std::size_t next = 1; next < length; ++next) {
            if ((static_cast<unsigned char>(bytes[i + next]) & 0xC0) != 0x80) {
                return false;
            }
        }
        i += length;
    }
    return true;
}

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

CurveFileRead Refused(std::string key, int line) {
    CurveFileRead read;
    read.error = {std::move(key), line};
    return read;
}

}  // namespace

CurveFileRead ReadCurveFile(std::string_view bytes) {
    if (bytes.empty()) {
        return Refused("curveFileEmpty", 0);
    }
    if (bytes.size() > kCurveFileMaxBytes) {
        return Refused("curveFileTooLarge", 0);
    }
    if (!IsText(bytes)) {
        return Refused("curveFileNotText", 0);
    }
    CurveFileRead read;
    int lines = 0;
    std::size_t start = 0;
    while (start < bytes.size()) {
        std::size_t end = bytes.find('\n', start);
        if (end == std::string_view::npos) {
            end = bytes.size();
        }
        std::string_view line = bytes.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        ++lines;
        if (lines > static_cast<int>(read.chr.size())) {
            return Refused("curveFileTooManyLines", lines);
        }
        if (line.size() < kTailLength) {
            return Refused("curveFileLineTooShort", lines);
        }
        const std::string number(Trimmed(line.substr(0, line.size() - kTailLength)));
        if (number.empty() || number == "-" || !devices::IsNum(number)) {
            return Refused("curveFileNoNumber", lines);
        }
        const double value = devices::Str2Dbl(devices::fDecimalSep(number, ".")) * 100.0;
        if (!std::isfinite(value) || std::fabs(value) > 1.0e9) {
            return Refused("curveFileNoNumber", lines);
        }
        read.chr[static_cast<std::size_t>(lines - 1)] = static_cast<float>(value);
    }
    if (lines < kFilePoints) {
        return Refused("curveFileTooFewLines", lines);
    }
    read.ok = true;
    return read;
}

std::string CurveFileText(const CurveRowList& signalModification) {
    std::string text;
    for (int point = 0; point < kFilePoints; ++point) {
        const float percent = signalModification[static_cast<std::size_t>(2 * point)];
        text += devices::SingleText(percent / 100.0F) + " p.u\r\n";
    }
    return text;
}

void FillFromCurveFile(CurveTable& arrCurves, const CurveFilePoints& chr) {
    for (int j = 0; j < kFilePoints; ++j) {
        const float point = chr[static_cast<std::size_t>(j)];
        arrCurves.at(2 * j, kSignalModificationSubset) = point;
        arrCurves.at(2 * j + 1, kSignalModificationSubset) =
            (point + chr[static_cast<std::size_t>(j + 1)]) / 2.0F;
    }
    const CurveRowList& linear = *PresetCurve("Linear");
    for (int row = 0; row < kUsedRows; ++row) {
        arrCurves.at(row, kInstalledSubset) = arrCurves.at(row, kSignalModificationSubset);
        arrCurves.at(row, kDesiredSubset) = linear[static_cast<std::size_t>(row)];
    }
}

}  // namespace kt500::flow
