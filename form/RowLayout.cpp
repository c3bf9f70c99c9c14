#include "form/RowLayout.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kt500::form {

std::vector<RowGeometry> layoutRows(int rows, int frameWidth, int frameHeight,
                                    const RowMetrics& m) {
    if (rows < 0) {
        throw std::invalid_argument("a row layout cannot have " + std::to_string(rows) + " rows");
    }
    if (m.left < 0 || m.top < 0 || m.gap < 0 || m.rowHeight <= 0 || m.pitch < m.rowHeight ||
        m.labelWidth <= 0 || m.fieldWidth <= 0 || m.unitWidth < 0 || m.markWidth <= 0) {
        throw std::invalid_argument(
            "row layout measures must be positive, with a pitch of at least the row height");
    }
    const int labelLeft = m.left;
    const int fieldLeft = labelLeft + m.labelWidth + m.gap;
    const int unitLeft = fieldLeft + m.fieldWidth + m.gap;
    const int markLeft = unitLeft + m.unitWidth + (m.unitWidth > 0 ? m.gap : 0);
    const int right = markLeft + m.markWidth;
    if (right > frameWidth) {
        throw std::invalid_argument("the row columns need " + std::to_string(right) +
                                    " twips but the frame is " + std::to_string(frameWidth) +
                                    " wide");
    }
    const int bottom = rows == 0 ? 0 : m.top + (rows - 1) * m.pitch + m.rowHeight + m.bottomMargin;
    if (bottom > frameHeight) {
        throw std::invalid_argument(std::to_string(rows) + " rows need " + std::to_string(bottom) +
                                    " twips but the frame is " + std::to_string(frameHeight) +
                                    " high");
    }
    std::vector<RowGeometry> result;
    result.reserve(static_cast<std::size_t>(rows));
    for (int r = 0; r < rows; ++r) {
        const int top = m.top + r * m.pitch;
        // The mark is square, centred on the row.
        const int markSize = std::min(m.markWidth, m.rowHeight);
        const int markTop = top + (m.rowHeight - markSize) / 2;
        result.push_back(RowGeometry{
            Rect{labelLeft, top, m.labelWidth, m.rowHeight},
            Rect{fieldLeft, top, m.fieldWidth, m.rowHeight},
            Rect{unitLeft, top, m.unitWidth, m.rowHeight},
            Rect{markLeft, markTop, m.markWidth, markSize},
        });
    }
    return result;
}

}  // namespace kt500::form
