// What a chart holds, free of any drawing: subsets of points with X and Y
// data, labels, colours and line types per subset, titles and the three
// axes, and the library's numeric switches by name. The chart view draws
// from it; producers write into it. Every real change is reported through
// the sink as ChartData.
#pragma once

#include "form/Property.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kt500::form {

struct ChartAxis {
    std::string label;
    std::string labelKey;        // translation key of the label
    int manualScaleControl = 0;  // 0 automatic, 3 both limits manual
    double manualMin = 0.0;
    double manualMax = 0.0;
};

enum class ChartAxisId { X, Y, RightY };

class ChartModel {
public:
    explicit ChartModel(std::string owner, ChangeSink sink = {});

    // A scientific graph has its own X data per point; a graph plots over
    // the point index.
    [[nodiscard]] bool scientific() const noexcept { return m_scientific; }
    void setScientific(bool scientific);

    // The most values (subsets times points) a chart holds: the largest chart
    // of the product holds a few thousand, and a size from a file must not
    // take the memory of the machine.
    static constexpr long long kMaxValues = 1'000'000;

    // Resizing keeps the data that still fits; new points are 0. Negative
    // counts, or more than kMaxValues values, throw std::out_of_range
    // naming the chart and leave it as it was.
    void setSubsets(int subsets);
    void setPoints(int points);
    [[nodiscard]] int subsets() const noexcept { return m_subsets; }
    [[nodiscard]] int points() const noexcept { return m_points; }

    // Outside the subsets or points throws std::out_of_range naming the chart.
    [[nodiscard]] double y(int subset, int point) const;
    [[nodiscard]] double x(int subset, int point) const;
    void setY(int subset, int point, double value);
    void setX(int subset, int point, double value);

    [[nodiscard]] std::string subsetLabel(int subset) const;
    void setSubsetLabel(int subset, std::string label);
    // The translation key of a subset's label; "" keeps the label as written.
    [[nodiscard]] std::string subsetLabelKey(int subset) const;
    void setSubsetLabelKey(int subset, std::string key);
    [[nodiscard]] std::uint32_t subsetColor(int subset) const;
    void setSubsetColor(int subset, std::uint32_t bgr);
    [[nodiscard]] int subsetLineType(int subset) const;
    void setSubsetLineType(int subset, int lineType);
    [[nodiscard]] std::string pointLabel(int point) const;
    void setPointLabel(int point, std::string label);

    [[nodiscard]] const std::string& mainTitle() const noexcept { return m_mainTitle; }
    [[nodiscard]] const std::string& subTitle() const noexcept { return m_subTitle; }
    void setMainTitle(std::string title);
    void setSubTitle(std::string title);
    // Translation keys of the titles; "" keeps a title as written.
    [[nodiscard]] const std::string& mainTitleKey() const noexcept { return m_mainTitleKey; }
    [[nodiscard]] const std::string& subTitleKey() const noexcept { return m_subTitleKey; }
    void setMainTitleKey(std::string key) { m_mainTitleKey = std::move(key); }
    void setSubTitleKey(std::string key) { m_subTitleKey = std::move(key); }
    [[nodiscard]] const ChartAxis& axis(ChartAxisId id) const noexcept;
    void setAxis(ChartAxisId id, ChartAxis axis);

    // Numeric switches by the library's names (AllowZooming, PlottingMethod,
    // GraphBackColor, ...); absent reads as the fallback.
    [[nodiscard]] double option(std::string_view name, double fallback = 0.0) const;
    void setOption(std::string_view name, double value);
    [[nodiscard]] const std::map<std::string, double, std::less<>>& options() const noexcept {
        return m_options;
    }

private:
    struct Subset {
        std::string label;
        std::string labelKey;
        std::uint32_t color = 0;
        int lineType = 0;
        std::vector<double> x;
        std::vector<double> y;
    };
    const Subset& subset(int subset) const;
    Subset& subset(int subset);
    void checkPoint(int point) const;
    void checkSize(int subsets, int points) const;
    void changed();

    std::string m_owner;
    ChangeSink m_sink;
    bool m_scientific = false;
    int m_subsets = 0;
    int m_points = 0;
    std::vector<Subset> m_data;
    std::vector<std::string> m_pointLabels;
    std::string m_mainTitle;
    std::string m_subTitle;
    std::string m_mainTitleKey;
    std::string m_subTitleKey;
    ChartAxis m_axes[3];
    std::map<std::string, double, std::less<>> m_options;
};

}  // namespace kt500::form
