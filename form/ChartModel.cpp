#include "form/ChartModel.h"

#include <stdexcept>

namespace kt500::form {

ChartModel::ChartModel(std::string owner, ChangeSink sink)
    : m_owner(std::move(owner)), m_sink(std::move(sink)) {}

void ChartModel::changed() {
    if (m_sink) {
        m_sink(PropertyId::ChartData, {}, -1);
    }
}

void ChartModel::setScientific(bool scientific) {
    if (m_scientific != scientific) {
        m_scientific = scientific;
        changed();
    }
}

void ChartModel::checkSize(int subsets, int points) const {
    if (static_cast<long long>(subsets) * points > kMaxValues) {
        throw std::out_of_range(m_owner + ": " + std::to_string(subsets) + " subsets of " +
                                std::to_string(points) + " points are more than the " +
                                std::to_string(kMaxValues) + " values a chart holds");
    }
}

void ChartModel::setSubsets(int subsets) {
    if (subsets < 0) {
        throw std::out_of_range(m_owner + ": Subsets cannot be " + std::to_string(subsets));
    }
    checkSize(subsets, m_points);
    if (subsets == m_subsets) {
        return;
    }
    m_subsets = subsets;
    m_data.resize(static_cast<std::size_t>(subsets));
    for (Subset& s : m_data) {
        s.x.resize(static_cast<std::size_t>(m_points));
        s.y.resize(static_cast<std::size_t>(m_points));
    }
    changed();
}

void ChartModel::setPoints(int points) {
    if (points < 0) {
        throw std::out_of_range(m_owner + ": points cannot be " + std::to_string(points));
    }
    checkSize(m_subsets, points);
    if (points == m_points) {
        return;
    }
    m_points = points;
    for (Subset& s : m_data) {
        s.x.resize(static_cast<std::size_t>(points));
        s.y.resize(static_cast<std::size_t>(points));
    }
    m_pointLabels.resize(static_cast<std::size_t>(points));
    changed();
}

const ChartModel::Subset& ChartModel::subset(int subset) const {
    if (subset < 0 || subset >= m_subsets) {
        throw std::out_of_range(m_owner + ": subset " + std::to_string(subset) + " is outside 0.." +
                                std::to_string(m_subsets - 1));
    }
    return m_data[static_cast<std::size_t>(subset)];
}

ChartModel::Subset& ChartModel::subset(int index) {
    return const_cast<Subset&>(static_cast<const ChartModel*>(this)->subset(index));
}

void ChartModel::checkPoint(int point) const {
    if (point < 0 || point >= m_points) {
        throw std::out_of_range(m_owner + ": point " + std::to_string(point) + " is outside 0.." +
                                std::to_string(m_points - 1));
    }
}

double ChartModel::y(int subset, int point) const {
    const Subset& s = this->subset(subset);
    checkPoint(point);
    return s.y[static_cast<std::size_t>(point)];
}

double ChartModel::x(int subset, int point) const {
    const Subset& s = this->subset(subset);
    checkPoint(point);
    return s.x[static_cast<std::size_t>(point)];
}

void ChartModel::setY(int subset, int point, double value) {
    Subset& s = this->subset(subset);
    checkPoint(point);
    double& slot = s.y[static_cast<std::size_t>(point)];
    if (slot != value) {
        slot = value;
        changed();
    }
}

void ChartModel::setX(int subset, int point, double value) {
    Subset& s = this->subset(subset);
    checkPoint(point);
    double& slot = s.x[static_cast<std::size_t>(point)];
    if (slot != value) {
        slot = value;
        changed();
    }
}

std::string ChartModel::subsetLabel(int subset) const {
    return this->subset(subset).label;
}

void ChartModel::setSubsetLabel(int subset, std::string label) {
    Subset& s = this->subset(subset);
    if (s.label != label) {
        s.label = std::move(label);
        changed();
    }
}

std::string ChartModel::subsetLabelKey(int subset) const {
    return this->subset(subset).labelKey;
}

void ChartModel::setSubsetLabelKey(int subset, std::string key) {
    this->subset(subset).labelKey = std::move(key);
}

std::uint32_t ChartModel::subsetColor(int subset) const {
    return this->subset(subset).color;
}

void ChartModel::setSubsetColor(int subset, std::uint32_t bgr) {
    Subset& s = this->subset(subset);
    if (s.color != bgr) {
        s.color = bgr;
        changed();
    }
}

int ChartModel::subsetLineType(int subset) const {
    return this->subset(subset).lineType;
}

void ChartModel::setSubsetLineType(int subset, int lineType) {
    Subset& s = this->subset(subset);
    if (s.lineType != lineType) {
        s.lineType = lineType;
        changed();
    }
}

std::string ChartModel::pointLabel(int point) const {
    checkPoint(point);
    return m_pointLabels[static_cast<std::size_t>(point)];
}

void ChartModel::setPointLabel(int point, std::string label) {
    checkPoint(point);
    std::string& slot = m_pointLabels[static_cast<std::size_t>(point)];
    if (slot != label) {
        slot = std::move(label);
        changed();
    }
}

void ChartModel::setMainTitle(std::string title) {
    if (m_mainTitle != title) {
        m_mainTitle = std::move(title);
        changed();
    }
}

void ChartModel::setSubTitle(std::string title) {
    if (m_subTitle != title) {
        m_subTitle = std::move(title);
        changed();
    }
}

const ChartAxis& ChartModel::axis(ChartAxisId id) const noexcept {
    return m_axes[static_cast<int>(id)];
}

void ChartModel::setAxis(ChartAxisId id, ChartAxis axis) {
    ChartAxis& a = m_axes[static_cast<int>(id)];
    if (a.label != axis.label || a.labelKey != axis.labelKey ||
        a.manualScaleControl != axis.manualScaleControl || a.manualMin != axis.manualMin ||
        a.manualMax != axis.manualMax) {
        a = std::move(axis);
        changed();
    }
}

double ChartModel::option(std::string_view name, double fallback) const {
    const auto it = m_options.find(name);
    return it == m_options.end() ? fallback : it->second;
}

void ChartModel::setOption(std::string_view name, double value) {
    const auto it = m_options.find(name);
    if (it != m_options.end()) {
        if (it->second == value) {
            return;
        }
        it->second = value;
    } else {
        m_options.emplace(std::string(name), value);
    }
    changed();
}

}  // namespace kt500::form
