#include "flow/PresetCurves.h"

#include <array>
#include <utility>

namespace kt500::flow {

namespace {

constexpr std::array<std::string_view, 12> kNames = {
    "",     "Linear",     "1/25",     "Quick 1/25", "1/33",    "Quick 1/33",
    "1/50", "Quick 1/50", "Dovra L1", "Dovra R",    "Dovra M", "Custom",
};

using Preset = std::pair<std::string_view, CurveRowList>;

// clang-format off
const std::array<Preset, 10> kPresets{{
    {"Linear", {0, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75, 80, 85, 90, 95, 100}},
    {"1/25", {0, 0.7F, 1.52F, 2.48F, 3.61F, 4.94F, 6.51F, 8.34F, 10.5F, 13.03F, 16, 19.49F, 23.59F,
              28.41F, 34.07F, 40.72F, 48.53F, 57.7F, 68.48F, 81.13F, 100}},
    {"Quick 1/25", {0, 25.18F, 38.85F, 48.32F, 55.62F, 61.46F, 66.4F, 70.7F, 74.46F, 77.74F, 80.8F,
                    83.53F, 86.07F, 88.39F, 90.6F, 92.58F, 94.55F, 96.02F, 97.35F, 98.67F, 100}},
    {"1/33", {0, 0.58F, 1.27F, 2.09F, 3.07F, 4.23F, 5.62F, 7.27F, 9.24F, 11.59F, 14.38F, 17.7F,
              21.66F, 26.38F, 32, 38.69F, 46.66F, 56.16F, 67.46F, 80.93F, 100}},
    {"Quick 1/33", {0, 27.77F, 41.62F, 50.94F, 57.9F, 63.54F, 68.22F, 72.24F, 75.82F, 78.96F, 81.76F,
                    84.39F, 86.7F, 88.91F, 90.94F, 92.8F, 94.65F, 96.07F, 97.38F, 98.69F, 100}},
    {"1/50", {0, 0.43F, 0.96F, 1.6F, 2.37F, 3.32F, 4.47F, 5.86F, 7.56F, 9.63F, 12.14F, 15.2F, 18.91F,
              23.43F, 28.92F, 35.61F, 43.73F, 53.61F, 65.62F, 80.23F, 100}},
    {"Quick 1/50", {0, 31.91F, 45.74F, 54.68F, 61.2F, 66.43F, 70.8F, 74.55F, 77.7F, 80.64F, 83.17F,
                    85.58F, 87.66F, 89.74F, 91.5F, 93.21F, 94.92F, 96.21F, 97.47F, 98.74F, 100}},
    {"Dovra L1", {0, 1.877778F, 3.777778F, 6.355556F, 8.977777F, 12.57778F, 16.22222F, 20.11111F, 24,
                  28.86667F, 33.77778F, 38.84444F, 44, 50.31111F, 56.66667F, 64, 71.33334F,
                  81.51111F, 91.77778F, 95.86667F, 100}},
    {"Dovra R", {0, 0.616129F, 1.290323F, 2.106452F, 3.064516F, 4.46129F, 5.967742F, 8.064516F,
                 10.16129F, 12.98387F, 15.80645F, 19.25806F, 22.74194F, 26.90322F, 31.12903F,
                 36.82258F, 42.58065F, 52.8871F, 63.3871F, 81.66129F, 100}},
    {"Dovra M", {0, 0.2209091F, 0.4545455F, 0.8086364F, 1.181818F, 1.690909F, 2.227273F, 2.940909F,
                 3.681818F, 4.656818F, 5.636364F, 6.879546F, 8.136364F, 11.16364F, 14.22727F,
                 19.46818F, 24.77273F, 34.83182F, 44.95454F, 72.28636F, 100}},
}};
// clang-format on

}  // namespace

std::span<const std::string_view> CurveListNames() {
    return kNames;
}

const CurveRowList* PresetCurve(std::string_view strName) {
    for (const Preset& preset : kPresets) {
        if (preset.first == strName) {
            return &preset.second;
        }
    }
    return nullptr;
}

}  // namespace kt500::flow
