#include "flow/CurveArithmetic.h"

#include "devices/Encodings.h"

#include <cmath>
#include <stdexcept>
#include <vector>

namespace kt500::flow {

namespace {

std::string trimmed(const std::string& strText) {
    const auto first = strText.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return {};
    }
    return strText.substr(first, strText.find_last_not_of(" \t") - first + 1);
}

// Points 0 to N - 1 of a subset, with one zeroed element past the end.
std::vector<float> PointsOf(const CurveTable& arrCurves, int intSubset, int intPoints) {
    std::vector<float> points(static_cast<std::size_t>(intPoints) + 1, 0.0F);
    for (int point = 0; point < intPoints; ++point) {
        points[static_cast<std::size_t>(point)] =
            arrCurves.at(RowOfPoint(intPoints, point), intSubset);
    }
    return points;
}

CurveRowList RowsOf(const std::vector<float>& points, int intPoints) {
    CurveRowList rows{};
    for (int point = 0; point < intPoints; ++point) {
        rows[static_cast<std::size_t>(RowOfPoint(intPoints, point))] =
            points[static_cast<std::size_t>(point)];
    }
    return rows;
}

float checkedQuotient(float sngNumerator, float sngDenominator) {
    if (sngDenominator == 0.0F) {
        throw std::domain_error("Division by zero");
    }
    return sngNumerator / sngDenominator;
}

}  // namespace

int RowOfPoint(int intPoints, int intPoint) {
    if ((intPoints != 11 && intPoints != 21) || intPoint < 0 || intPoint >= intPoints) {
        throw std::out_of_range("Subscript out of range: point " + std::to_string(intPoint) +
                                " of " + std::to_string(intPoints));
    }
    return intPoints == 11 ? 2 * intPoint : intPoint;
}

ModifiedCurve CalculateModifiedCurve(const CurveTable& arrCurves, int intPoints) {
    const std::vector<float> A = PointsOf(arrCurves, kInstalledSubset, intPoints);
    const std::vector<float> B = PointsOf(arrCurves, kDesiredSubset, intPoints);
    const int N = intPoints;
    const double spacing = 10.0 / (N - 1);
    std::vector<float> R(static_cast<std::size_t>(N) + 1, 0.0F);
    std::size_t k = 1;
    for (std::size_t j = 1; j < static_cast<std::size_t>(N); ++j) {
        // k walks on from point to point: the desired values rise.
        while (A[k] < B[j] && k < static_cast<std::size_t>(N)) {
            ++k;
        }
        const float share = checkedQuotient(B[j] - A[k - 1], A[k] - A[k - 1]);
        const auto below = static_cast<std::int16_t>((k - 1) * 10);
        R[j] = static_cast<float>(share * (spacing * 10.0) + spacing * below);
    }
    ModifiedCurve result;
    result.rows = RowsOf(R, N);
    for (int point = 0; point < N; ++point) {
        result.text += devices::SingleText(R[static_cast<std::size_t>(point)]) + " ";
        if (N == 11) {
            result.text += "0 ";
        }
    }
    return result;
}

CurveRowList CalculateDesiredCurve(const CurveTable& arrCurves, int intPoints) {
    const std::vector<float> A = PointsOf(arrCurves, kInstalledSubset, intPoints);
    const std::vector<float> C = PointsOf(arrCurves, kWorkingSubset, intPoints);
    const int N = intPoints;
    const double spacing = 10.0 / (N - 1);
    std::vector<float> D(static_cast<std::size_t>(N) + 1, 0.0F);
    for (int j = 1; j < N; ++j) {
        const double scaled = ((N - 1) / 100.0) * C[static_cast<std::size_t>(j)];
        if (!std::isfinite(scaled) || std::fabs(scaled) > 32767.0) {
            throw std::overflow_error("Overflow: flow point " + std::to_string(j));
        }
        int k = static_cast<int>(std::trunc(scaled)) + 1;
        if (k > N) {
            k = N;
        }
        if (k < 1) {
            // A negative value has no interval below the first point.
            throw std::out_of_range("Subscript out of range: flow point " + std::to_string(j));
        }
        const double f = C[static_cast<std::size_t>(j)] / (spacing * 10.0) - (k - 1);
        const float low = A[static_cast<std::size_t>(k - 1)];
        const float high = A[static_cast<std::size_t>(k)];
        D[static_cast<std::size_t>(j)] = static_cast<float>(f * (high - low) + low);
    }
    return RowsOf(D, N);
}

float PointValue(const std::string& strText) {
    const std::string text = trimmed(strText);
    if (text.empty() || text == "-" || !devices::IsNum(text)) {
        throw std::invalid_argument("Type mismatch: \"" + strText + "\"");
    }
    const double value = devices::Str2Dbl(devices::fDecimalSep(text, "."));
    if (value == devices::NoValue || std::fabs(value) > 3.4e38) {
        throw std::invalid_argument("Type mismatch: \"" + strText + "\"");
    }
    return static_cast<float>(value);
}

bool CurveRises(std::span<const std::string> strPoints) {
    for (std::size_t i = 0; i + 1 < strPoints.size(); ++i) {
        if (trimmed(strPoints[i]).empty()) {
            return false;
        }
        if (PointValue(strPoints[i + 1]) <= PointValue(strPoints[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace kt500::flow
