// The arithmetic of the flow characteristic, free of pages and files: the
// signal modification curve that turns an installed curve into a desired
// one (the installed curve inverted at the desired values), and the desired
// curve that a modification curve gives on an installed one. A page of N
// points (11 on the HART page, 21 on the PROFIBUS page) reads its points
// from the rows RowOfPoint names.
#pragma once

#include "flow/CurveTable.h"

#include <span>
#include <string>

namespace kt500::flow {

// The row of m_arrFlowCurves behind point i of a page with N points: the
// even rows for 11 points, every row for 21. Any other N or a point outside
// the page throws.
[[nodiscard]] int RowOfPoint(int intPoints, int intPoint);

struct ModifiedCurve {
    // The curve in rows 0 to 20 in the page's layout: with 11 points the
    // values stand in the even rows and the odd rows hold 0.
    CurveRowList rows{};
    // The values as text, each followed by a blank; with 11 points each
    // value is followed by a "0" word as well (strPresetCurveValues).
    std::string text;
};

// Inverts the installed curve (subset 2) at the desired values (subset 1).
// A desired value beyond the last installed one is taken with k = N, where
// the installed value is 0. Equal installed neighbours at the interval used
// are a division by zero (std::domain_error).
[[nodiscard]] ModifiedCurve CalculateModifiedCurve(const CurveTable& arrCurves, int intPoints);

// Applies the installed curve (subset 2) to the modification values of the
// working copy (subset 3): the desired curve behind an edited result, in the
// layout of CalculateModifiedCurve's rows.
[[nodiscard]] CurveRowList CalculateDesiredCurve(const CurveTable& arrCurves, int intPoints);

// The rule of ValidateCurve over the texts of a page's point boxes: each box
// but the last must hold text, and each value must be above the one before.
// A box whose text is no number where it is converted is a type mismatch
// (std::invalid_argument), so a blank last box fails that way.
[[nodiscard]] bool CurveRises(std::span<const std::string> strPoints);

// A page text as a number: the page's decimal sign or a point; a text that
// is no number is a type mismatch (std::invalid_argument).
[[nodiscard]] float PointValue(const std::string& strText);

}  // namespace kt500::flow
