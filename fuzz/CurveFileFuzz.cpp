// Curve files from bytes: every input is either read into points or refused
// with one of the known reasons; a read curve goes through the inverse that
// LoadCurveFile runs, whose only failure is a division by zero on a flat
// stretch.
#include "flow/CurveArithmetic.h"
#include "flow/CurveFile.h"

#include <cstdint>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kt500::flow;
    static const std::set<std::string> reasons = {
        "curveFileEmpty",        "curveFileNotText",       "curveFileTooLarge",
        "curveFileLineTooShort", "curveFileNoNumber",      "curveFileTooManyLines",
        "curveFileTooFewLines",
    };
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const CurveFileRead read = ReadCurveFile(bytes);
    if (!read.ok) {
        if (reasons.count(read.error.key) == 0 || read.error.line < 0 || read.error.line > 13) {
            std::abort();
        }
        return 0;
    }
    CurveTable table;
    FillFromCurveFile(table, read.chr);
    for (const int points : {11, 21}) {
        try {
            const ModifiedCurve curve = CalculateModifiedCurve(table, points);
            if (curve.text.empty()) {
                std::abort();
            }
        } catch (const std::domain_error&) {
            // A flat stretch of the file's curve.
        }
    }
    return 0;
}
