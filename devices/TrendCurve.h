// TrendCurve: one history array of the user control (arrLoadFactor,
// arrDeviation, arrBreakawayPressure, arrLeakageSignal, arrTravelVsTime):
// two rows of 32-bit floats, row 0 the values and row 1 the time steps.
// The trends over time hold 22 entries of which 20 are in use; travel
// versus time holds 10. An index outside the row is a bounds failure
// (std::out_of_range), which the handler of the caller shows.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace kt500::devices {

class TrendCurve {
public:
    static constexpr int kTimeEntries = 22;
    static constexpr int kTimeInUse = 20;
    static constexpr int kTravelEntries = 10;

    explicit TrendCurve(int intEntries = kTimeEntries)
        : m_rows{std::vector<float>(static_cast<std::size_t>(intEntries), 0.0F),
                 std::vector<float>(static_cast<std::size_t>(intEntries), 0.0F)} {}

    [[nodiscard]] int entries() const noexcept { return static_cast<int>(m_rows[0].size()); }

    [[nodiscard]] float& at(int intRow, int intIndex) { return slot(intRow, intIndex); }
    [[nodiscard]] float at(int intRow, int intIndex) const {
        return const_cast<TrendCurve*>(this)->slot(intRow, intIndex);
    }

private:
    float& slot(int intRow, int intIndex) {
        if (intRow < 0 || intRow > 1 || intIndex < 0 || intIndex >= entries()) {
            throw std::out_of_range("Subscript out of range (" + std::to_string(intRow) + ", " +
                                    std::to_string(intIndex) + ")");
        }
        return m_rows[static_cast<std::size_t>(intRow)][static_cast<std::size_t>(intIndex)];
    }

    std::array<std::vector<float>, 2> m_rows;
};

}  // namespace kt500::devices
