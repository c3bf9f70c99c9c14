// The flow curve table m_arrFlowCurves: 22 rows (the point index, row r
// standing for r x 5 %, rows 0 to 20 used) by four subsets (the role of a
// curve). Values are percent as 32-bit floats. A row or subset outside the
// table throws, as an index outside an array fails in the handlers.
#pragma once

#include <array>
#include <stdexcept>
#include <string>

namespace kt500::flow {

// The roles of the four subsets.
inline constexpr int kSignalModificationSubset = 0;  // the new curve for the device
inline constexpr int kDesiredSubset = 1;
inline constexpr int kInstalledSubset = 2;
inline constexpr int kWorkingSubset = 3;  // the result while it is being edited

inline constexpr int kCurveRows = 22;
inline constexpr int kCurveSubsets = 4;
// Rows 0 to 20: a full curve at 5 % steps.
inline constexpr int kUsedRows = 21;

// A curve of rows 0 to 20, the form a preset and a computed curve take.
using CurveRowList = std::array<float, kUsedRows>;

class CurveTable {
public:
    // Every slot starts as -1: not set.
    CurveTable() { fill(-1.0F); }

    void fill(float sngValue) {
        for (auto& row : m_values) {
            row.fill(sngValue);
        }
    }
    [[nodiscard]] float at(int intRow, int intSubset) const { return m_values[check(intRow, intSubset)][intSubset]; }
    float& at(int intRow, int intSubset) { return m_values[check(intRow, intSubset)][intSubset]; }

    // Rows 0 to 20 of one subset.
    [[nodiscard]] CurveRowList column(int intSubset) const {
        CurveRowList list{};
        for (int row = 0; row < kUsedRows; ++row) {
            list[static_cast<std::size_t>(row)] = at(row, intSubset);
        }
        return list;
    }
    void setColumn(int intSubset, const CurveRowList& list) {
        for (int row = 0; row < kUsedRows; ++row) {
            at(row, intSubset) = list[static_cast<std::size_t>(row)];
        }
    }

private:
    static int check(int intRow, int intSubset) {
        if (intRow < 0 || intRow >= kCurveRows || intSubset < 0 || intSubset >= kCurveSubsets) {
            throw std::out_of_range("Subscript out of range: m_arrFlowCurves(" +
                                    std::to_string(intRow) + ", " + std::to_string(intSubset) + ")");
        }
        return intRow;
    }

    std::array<std::array<float, kCurveSubsets>, kCurveRows> m_values{};
};

}  // namespace kt500::flow
