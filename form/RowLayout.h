// The row layout of a page: each row a caption label, a field, an optional
// unit label and the changed mark, in four aligned columns at a fixed
// pitch. The form loader turns a <rows> block into geometry with it.
#pragma once

#include <vector>

namespace kt500::form {

struct Rect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    [[nodiscard]] int right() const noexcept { return left + width; }
    [[nodiscard]] int bottom() const noexcept { return top + height; }
};

// Measures in twips. The defaults suit a page of 8415 twips wide.
struct RowMetrics {
    int left = 240;       // margin before the label column
    int top = 360;        // first row's top inside the frame
    int pitch = 375;      // from one row's top to the next
    int rowHeight = 315;  // height of fields and labels
    int labelWidth = 3600;
    int fieldWidth = 2400;
    int unitWidth = 1200;
    int markWidth = 240;
    int gap = 120;           // between columns
    int bottomMargin = 120;  // kept free under the last row
};

struct RowGeometry {
    Rect label;
    Rect field;
    Rect unit;
    Rect mark;
};

// Geometry of `rows` rows in a frame of the given size. Throws
// std::invalid_argument when the columns do not fit the frame's width or
// the rows its height, naming the measure that overflows.
[[nodiscard]] std::vector<RowGeometry> layoutRows(int rows, int frameWidth, int frameHeight,
                                                  const RowMetrics& metrics = {});

}  // namespace kt500::form
