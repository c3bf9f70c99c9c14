// Property access by name, for scripts and the form files' <property>
// entries: "Text", "ForeColor", "List(2)", "ItemData(0)".
#include "form/Control.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace kt500::form {

namespace {

struct PropertyRef {
    PropertyId id;
    std::optional<int> argument;
};

[[noreturn]] void fail(const Control& control, std::string_view property, const std::string& why) {
    throw std::invalid_argument(control.displayName() + "." + std::string(property) + ": " + why);
}

PropertyRef parseRef(const Control& control, std::string_view property) {
    std::string_view name = property;
    std::optional<int> argument;
    if (const auto open = property.find('('); open != std::string_view::npos) {
        if (property.back() != ')') {
            fail(control, property, "not a property name");
        }
        const auto inner = property.substr(open + 1, property.size() - open - 2);
        const auto number = parseNumber(inner);
        if (!number || *number != std::trunc(*number) || std::fabs(*number) > 1e9) {
            fail(control, property, "the index must be a whole number");
        }
        argument = static_cast<int>(*number);
        name = property.substr(0, open);
    }
    const auto id = propertyFromName(name);
    if (!id) {
        fail(control, property, "no such property");
    }
    if (!control.has(*id)) {
        fail(control, property,
             "a control of kind '" + std::string(kindWord(control.kind())) + "' lacks it");
    }
    if (argument && *id != PropertyId::List && *id != PropertyId::ItemData) {
        fail(control, property, "takes no index");
    }
    return {*id, argument};
}

// List(i) and ItemData(i) without an index mean the selected entry.
int entryIndex(const Control& control, const PropertyRef& ref) {
    if (ref.argument) {
        return *ref.argument;
    }
    const int selected = control.listIndex();
    if (selected < 0) {
        throw std::out_of_range(control.displayName() + ": no entry is selected (ListIndex -1)");
    }
    return selected;
}

}  // namespace

std::string Control::get(std::string_view property) const {
    const PropertyRef ref = parseRef(*this, property);
    switch (ref.id) {
        case PropertyId::Name:
            return m_name;
        case PropertyId::Index:
            return std::to_string(m_index);
        case PropertyId::Container:
            return m_container != nullptr ? m_container->displayName() : std::string();
        case PropertyId::Text:
            return text();
        case PropertyId::Caption:
            return caption();
        case PropertyId::Tag:
            return tag();
        case PropertyId::ForeColor:
            return std::to_string(foreColor());
        case PropertyId::BackColor:
            return std::to_string(backColor());
        case PropertyId::Visible:
            return formatBoolean(visible());
        case PropertyId::Enabled:
            return formatBoolean(enabled());
        case PropertyId::ListIndex:
            return std::to_string(listIndex());
        case PropertyId::List:
            return list(entryIndex(*this, ref));
        case PropertyId::ItemData:
            return std::to_string(itemData(entryIndex(*this, ref)));
        case PropertyId::ListCount:
            return std::to_string(listCount());
        case PropertyId::NewIndex:
            return std::to_string(newIndex());
        case PropertyId::Value:
            return m_kind == ControlKind::OptionButton ? formatBoolean(value() != 0.0)
                                                       : formatNumber(value());
        case PropertyId::BorderStyle:
            return std::to_string(borderStyle());
        case PropertyId::Picture:
            return picture();
        case PropertyId::Left:
            return std::to_string(left());
        case PropertyId::Top:
            return std::to_string(top());
        case PropertyId::Width:
            return std::to_string(width());
        case PropertyId::Height:
            return std::to_string(height());
        case PropertyId::Max:
            return formatNumber(max());
        case PropertyId::Min:
            return formatNumber(min());
        case PropertyId::ToolTipText:
            return toolTipText();
        case PropertyId::MousePointer:
            return std::to_string(mousePointer());
        case PropertyId::Interval:
            return std::to_string(interval());
        case PropertyId::Checked:
            return formatBoolean(checked());
        case PropertyId::CheckBoxes:
            return formatBoolean(listView().checkBoxes());
        case PropertyId::Drive:
            return drive();
        case PropertyId::Path:
            return path();
        case PropertyId::Pattern:
            return pattern();
        case PropertyId::FileName:
            return fileName();
        case PropertyId::ListItems:
            return std::to_string(listView().count());
        case PropertyId::ColumnHeaders:
            return std::to_string(listView().columns().size());
        case PropertyId::Nodes:
            return std::to_string(tree().count());
        case PropertyId::Buttons:
            return std::to_string(toolbar().items().size());
        case PropertyId::ChartData:
            return std::to_string(chart().subsets());
    }
    fail(*this, property, "no such property");
}

void Control::set(std::string_view property, std::string_view value) {
    const PropertyRef ref = parseRef(*this, property);
    if (isReadOnly(ref.id)) {
        fail(*this, property, "is read only");
    }
    const auto boolean = [&] {
        if (const auto b = parseBoolean(value)) {
            return *b;
        }
        fail(*this, property, "takes True or False, not '" + std::string(value) + "'");
    };
    const auto number = [&] {
        if (const auto n = parseNumber(value)) {
            return *n;
        }
        fail(*this, property, "takes a number, not '" + std::string(value) + "'");
    };
    const auto whole = [&](double low, double high) {
        const double n = number();
        if (n != std::trunc(n) || n < low || n > high) {
            fail(*this, property,
                 "takes a whole number from " + formatNumber(low) + " to " + formatNumber(high) +
                     ", not '" + std::string(value) + "'");
        }
        return n;
    };
    constexpr double kIntMax = std::numeric_limits<int>::max();
    constexpr double kIntMin = std::numeric_limits<int>::min();
    const auto integer = [&] { return static_cast<int>(whole(kIntMin, kIntMax)); };
    // Colours are 32-bit; system colours are written as negative Longs.
    const auto colour = [&] {
        const double n = whole(kIntMin, 4294967295.0);
        return static_cast<std::uint32_t>(static_cast<std::int64_t>(n));
    };
    const std::string text(value);
    switch (ref.id) {
        case PropertyId::Text:
            return setText(text);
        case PropertyId::Caption:
            return setCaption(text);
        case PropertyId::Tag:
            return setTag(text);
        case PropertyId::ForeColor:
            return setForeColor(colour());
        case PropertyId::BackColor:
            return setBackColor(colour());
        case PropertyId::Visible:
            return setVisible(boolean());
        case PropertyId::Enabled:
            return setEnabled(boolean());
        case PropertyId::ListIndex:
            return setListIndex(integer());
        case PropertyId::List:
            return setList(entryIndex(*this, ref), text);
        case PropertyId::ItemData:
            return setItemData(entryIndex(*this, ref), integer());
        case PropertyId::Value:
            if (m_kind == ControlKind::OptionButton) {
                return setValue(boolean() ? 1.0 : 0.0);
            }
            return setValue(number());
        case PropertyId::BorderStyle:
            return setBorderStyle(integer());
        case PropertyId::Picture:
            return setPicture(text);
        case PropertyId::Left:
            return setLeft(integer());
        case PropertyId::Top:
            return setTop(integer());
        case PropertyId::Width:
            return setWidth(integer());
        case PropertyId::Height:
            return setHeight(integer());
        case PropertyId::Max:
            return setMax(number());
        case PropertyId::Min:
            return setMin(number());
        case PropertyId::ToolTipText:
            return setToolTipText(text);
        case PropertyId::MousePointer:
            return setMousePointer(integer());
        case PropertyId::Interval:
            return setInterval(integer());
        case PropertyId::Checked:
            return setChecked(boolean());
        case PropertyId::CheckBoxes:
            return listView().setCheckBoxes(boolean());
        case PropertyId::Drive:
            return setDrive(text);
        case PropertyId::Path:
            return setPath(text);
        case PropertyId::Pattern:
            return setPattern(text);
        case PropertyId::FileName:
            return setFileName(text);
        default:
            break;
    }
    fail(*this, property, "is read only");
}

}  // namespace kt500::form
