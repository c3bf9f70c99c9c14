// The row layout: aligned columns, rows that do not overlap, everything
// inside the frame.
#include "form/RowLayout.h"

#include <gtest/gtest.h>

namespace kt500::form {
namespace {

bool overlaps(const Rect& a, const Rect& b) {
    return a.left < b.right() && b.left < a.right() && a.top < b.bottom() && b.top < a.bottom();
}

TEST(RowLayout, ColumnsAlignAndRowsNeitherOverlapNorLeaveTheFrame) {
    const int width = 8415;
    const int height = 7245;
    const RowMetrics metrics;
    const auto rows = layoutRows(12, width, height, metrics);
    ASSERT_EQ(rows.size(), 12U);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const RowGeometry& g = rows[r];
        EXPECT_EQ(g.field.left, rows[0].field.left);
        EXPECT_EQ(g.mark.left, rows[0].mark.left);
        EXPECT_LT(g.label.right(), g.field.left);
        EXPECT_LT(g.field.right(), g.unit.left);
        EXPECT_LT(g.unit.right(), g.mark.left);
        EXPECT_LE(g.mark.right(), width);
        EXPECT_LE(g.label.bottom(), height);
        EXPECT_GE(g.mark.top, g.field.top);
        EXPECT_LE(g.mark.bottom(), g.field.bottom());
        if (r > 0) {
            EXPECT_EQ(g.field.top - rows[r - 1].field.top, metrics.pitch);
            EXPECT_FALSE(overlaps(g.field, rows[r - 1].field));
        }
    }
}

TEST(RowLayout, RefusesRowsOrColumnsThatDoNotFit) {
    RowMetrics metrics;
    const int fitting =
        (7245 - metrics.top - metrics.rowHeight - metrics.bottomMargin) / metrics.pitch + 1;
    EXPECT_NO_THROW((void)layoutRows(fitting, 8415, 7245, metrics));
    EXPECT_THROW((void)layoutRows(fitting + 1, 8415, 7245, metrics), std::invalid_argument);
    EXPECT_THROW((void)layoutRows(1, 5000, 7245, metrics), std::invalid_argument);
    metrics.pitch = metrics.rowHeight - 1;  // rows would overlap
    EXPECT_THROW((void)layoutRows(2, 8415, 7245, metrics), std::invalid_argument);
    EXPECT_TRUE(layoutRows(0, 8415, 0).empty());
    metrics = RowMetrics{};
    metrics.unitWidth = 0;  // no unit column: the mark goes beside the field
    const auto rows = layoutRows(1, 8415, 1000, metrics);
    EXPECT_EQ(rows[0].mark.left, rows[0].field.right() + metrics.gap);
}

}  // namespace
}  // namespace kt500::form
