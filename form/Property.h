// Property identities, which kind has which, and the text form in which
// scripts read and write them: numbers in decimal, Booleans "True"/"False".
#pragma once

#include "form/ControlKind.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kt500::form {

enum class PropertyId {
    Name,   // read only; a change of it: the control is leaving the form
    Index,  // read only: element of a control array, -1 outside one
    Container,
    Text,
    Caption,
    Tag,
    ForeColor,  // 32-bit BGR as the system holds colours: blue 0xff0000
    BackColor,
    Visible,
    Enabled,
    ListIndex,
    List,       // List(i): the text of entry i
    ItemData,   // ItemData(i)
    ListCount,  // read only
    NewIndex,   // read only: the entry AddItem added last, -1 before
    Value,
    BorderStyle,
    Picture,  // an image key
    Left,
    Top,
    Width,
    Height,
    Max,
    Min,
    ToolTipText,
    MousePointer,  // 0 default, 11 hourglass
    Interval,      // timer, milliseconds
    Checked,       // menu entry
    CheckBoxes,    // list view shows check boxes
    Drive,
    Path,
    Pattern,
    FileName,
    // Whole collections; a change notification with these names the item.
    ListItems,  // list view rows (item = 1-based row, -1 for all)
    ColumnHeaders,
    Nodes,      // tree nodes (key = node key, "" for all)
    Buttons,    // toolbar items (key = item key, "" for all)
    ChartData,  // chart subsets, points, titles, axes
};

// The property's name as scripts write it ("ForeColor").
[[nodiscard]] std::string_view propertyName(PropertyId id) noexcept;
// Case-insensitive, as the system's property names are; "left" is Left.
[[nodiscard]] std::optional<PropertyId> propertyFromName(std::string_view name) noexcept;
// Whether a control of this kind has the property at all.
[[nodiscard]] bool kindHasProperty(ControlKind kind, PropertyId id) noexcept;
// Properties a script may not write.
[[nodiscard]] bool isReadOnly(PropertyId id) noexcept;

// Text forms. parseBoolean takes True/False in any case, 1, 0 and -1;
// parseNumber takes decimal (with a point), 0x and &H hexadecimal.
[[nodiscard]] std::string formatBoolean(bool value);
[[nodiscard]] std::string formatNumber(double value);
[[nodiscard]] std::optional<bool> parseBoolean(std::string_view text) noexcept;
[[nodiscard]] std::optional<double> parseNumber(std::string_view text) noexcept;

// How a model inside a control (tree, list view, toolbar, chart) reports a
// real change to its control: the collection, the item's key (tree node,
// toolbar item) or its number (list view row), "" and -1 for the whole.
using ChangeSink = std::function<void(PropertyId id, std::string_view key, int item)>;

}  // namespace kt500::form
