#include "form/Property.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <utility>

namespace kt500::form {

namespace {

constexpr std::array<std::pair<PropertyId, std::string_view>, 38> kNames{{
    {PropertyId::Name, "Name"},
    {PropertyId::Index, "Index"},
    {PropertyId::Container, "Container"},
    {PropertyId::Text, "Text"},
    {PropertyId::Caption, "Caption"},
    {PropertyId::Tag, "Tag"},
    {PropertyId::ForeColor, "ForeColor"},
    {PropertyId::BackColor, "BackColor"},
    {PropertyId::Visible, "Visible"},
    {PropertyId::Enabled, "Enabled"},
    {PropertyId::ListIndex, "ListIndex"},
    {PropertyId::List, "List"},
    {PropertyId::ItemData, "ItemData"},
    {PropertyId::ListCount, "ListCount"},
    {PropertyId::NewIndex, "NewIndex"},
    {PropertyId::Value, "Value"},
    {PropertyId::BorderStyle, "BorderStyle"},
    {PropertyId::Picture, "Picture"},
    {PropertyId::Left, "Left"},
    {PropertyId::Top, "Top"},
    {PropertyId::Width, "Width"},
    {PropertyId::Height, "Height"},
    {PropertyId::Max, "Max"},
    {PropertyId::Min, "Min"},
    {PropertyId::ToolTipText, "ToolTipText"},
    {PropertyId::MousePointer, "MousePointer"},
    {PropertyId::Interval, "Interval"},
    {PropertyId::Checked, "Checked"},
    {PropertyId::CheckBoxes, "CheckBoxes"},
    {PropertyId::Drive, "Drive"},
    {PropertyId::Path, "Path"},
    {PropertyId::Pattern, "Pattern"},
    {PropertyId::FileName, "FileName"},
    {PropertyId::ListItems, "ListItems"},
    {PropertyId::ColumnHeaders, "ColumnHeaders"},
    {PropertyId::Nodes, "Nodes"},
    {PropertyId::Buttons, "Buttons"},
    {PropertyId::ChartData, "ChartData"},
}};

using Mask = std::uint64_t;

constexpr Mask bit(PropertyId id) {
    return Mask{1} << static_cast<unsigned>(id);
}

template <typename... Ids>
constexpr Mask bits(Ids... ids) {
    return (bit(ids) | ...);
}

using P = PropertyId;

// What every placed control has: identity, place and state.
constexpr Mask kPlaced =
    bits(P::Name, P::Index, P::Container, P::Tag, P::Visible, P::Enabled, P::Left, P::Top, P::Width,
         P::Height, P::ToolTipText, P::MousePointer);
constexpr Mask kColours = bits(P::ForeColor, P::BackColor);
constexpr Mask kListBox =
    bits(P::ListIndex, P::List, P::ItemData, P::ListCount, P::NewIndex, P::Text);

constexpr Mask maskOf(ControlKind kind) {
    switch (kind) {
        case ControlKind::UserControl:
            return bits(P::Name, P::Visible, P::Enabled, P::Width, P::Height, P::MousePointer) |
                   kColours;
        case ControlKind::TextBox:
            return kPlaced | kColours | bits(P::Text, P::BorderStyle);
        case ControlKind::ComboBox:
            return kPlaced | kColours | kListBox;
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
            return kPlaced | kColours | bits(P::Caption, P::Value, P::Picture);
        case ControlKind::Label:
        case ControlKind::Frame:
            return kPlaced | kColours | bits(P::Caption, P::BorderStyle);
        case ControlKind::Image:
            return kPlaced | bits(P::Picture, P::BorderStyle);
        case ControlKind::CommandButton:
            return kPlaced | bits(P::Caption, P::Picture, P::BackColor);
        case ControlKind::ListView:
            return kPlaced | kColours |
                   bits(P::BorderStyle, P::CheckBoxes, P::ListItems, P::ColumnHeaders);
        case ControlKind::TreeView:
            return kPlaced | kColours | bits(P::BorderStyle, P::Nodes);
        case ControlKind::Toolbar:
            return kPlaced | bits(P::BackColor, P::Buttons);
        case ControlKind::ProgressBar:
            return kPlaced | bits(P::Value, P::Min, P::Max, P::BorderStyle);
        case ControlKind::Timer:
            return bits(P::Name, P::Index, P::Tag, P::Enabled, P::Interval);
        case ControlKind::Chart:
            return kPlaced | bits(P::BackColor, P::ChartData);
        case ControlKind::Menu:
            return bits(P::Name, P::Index, P::Tag, P::Caption, P::Checked, P::Enabled, P::Visible);
        case ControlKind::DriveList:
            return kPlaced | kColours | bits(P::Drive);
        case ControlKind::DirList:
            return kPlaced | kColours | bits(P::Path);
        case ControlKind::FileList:
            return kPlaced | kColours | bits(P::Path, P::Pattern, P::FileName);
    }
    return 0;
}

char lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lower(a[i]) != lower(b[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string_view propertyName(PropertyId id) noexcept {
    for (const auto& [p, name] : kNames) {
        if (p == id) {
            return name;
        }
    }
    return "?";
}

std::optional<PropertyId> propertyFromName(std::string_view name) noexcept {
    for (const auto& [id, n] : kNames) {
        if (equalsNoCase(n, name)) {
            return id;
        }
    }
    return std::nullopt;
}

bool kindHasProperty(ControlKind kind, PropertyId id) noexcept {
    return (maskOf(kind) & bit(id)) != 0;
}

bool isReadOnly(PropertyId id) noexcept {
    switch (id) {
        case PropertyId::Name:
        case PropertyId::Index:
        case PropertyId::Container:
        case PropertyId::ListCount:
        case PropertyId::NewIndex:
        case PropertyId::ListItems:
        case PropertyId::ColumnHeaders:
        case PropertyId::Nodes:
        case PropertyId::Buttons:
        case PropertyId::ChartData:
            return true;
        default:
            return false;
    }
}

std::string formatBoolean(bool value) {
    return value ? "True" : "False";
}

std::string formatNumber(double value) {
    if (std::isfinite(value) && value == std::trunc(value) && std::fabs(value) < 1e15) {
        return std::to_string(static_cast<long long>(value));
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}

std::optional<bool> parseBoolean(std::string_view text) noexcept {
    if (equalsNoCase(text, "true") || text == "1" || text == "-1") {
        return true;
    }
    if (equalsNoCase(text, "false") || text == "0") {
        return false;
    }
    return std::nullopt;
}

std::optional<double> parseNumber(std::string_view text) noexcept {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    bool negative = false;
    std::string_view digits = text;
    if (!digits.empty() && digits.front() == '-') {
        negative = true;
        digits.remove_prefix(1);
    }
    const bool hex = digits.size() > 2 && ((digits[0] == '0' && lower(digits[1]) == 'x') ||
                                           (digits[0] == '&' && lower(digits[1]) == 'h'));
    if (hex) {
        digits.remove_prefix(2);
        unsigned long long value = 0;
        const auto [end, ec] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (ec != std::errc{} || end != digits.data() + digits.size()) {
            return std::nullopt;
        }
        const auto number = static_cast<double>(value);
        return negative ? -number : number;
    }
    if (text.empty()) {
        return std::nullopt;
    }
    double value = 0.0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

}  // namespace kt500::form
