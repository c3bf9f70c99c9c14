// The items of the band toolbar by key: command buttons, the pressed
// "hideTree" button, and the status items (pictures and texts) of the
// header. Items live in bands; band 0 is the first. An unknown key throws
// std::out_of_range naming the toolbar and the key. Every real change is
// reported through the sink with the item's key.
#pragma once

#include "form/Property.h"

#include <string>
#include <string_view>
#include <vector>

namespace kt500::form {

enum class ToolbarItemStyle {
    Button,  // a command
    Check,   // a button that stays pressed
    Label,   // a text, such as "strDtmStatus"
    Image,   // a picture, such as "imgDtmStatus"
    Separator,
};

struct ToolbarItem {
    std::string key;
    int band = 0;
    ToolbarItemStyle style = ToolbarItemStyle::Button;
    std::string captionKey;  // translation key of Text
    std::string text;
    std::string picture;  // an image key
    std::string toolTipKey;
    std::string toolTip;
    bool enabled = true;
    bool pressed = false;
    bool visible = true;
};

struct ToolbarBand {
    std::string key;
    bool visible = true;
};

class ToolbarModel {
public:
    explicit ToolbarModel(std::string owner, ChangeSink sink = {});

    int addBand(std::string key);
    [[nodiscard]] const std::vector<ToolbarBand>& bands() const noexcept { return m_bands; }
    void setBandVisible(int band, bool visible);

    // A duplicate key throws std::invalid_argument, a band that was not
    // added std::out_of_range.
    const ToolbarItem& addItem(ToolbarItem item);
    void clear();

    [[nodiscard]] const std::vector<ToolbarItem>& items() const noexcept { return m_items; }
    [[nodiscard]] const ToolbarItem& item(std::string_view key) const;
    [[nodiscard]] const ToolbarItem* find(std::string_view key) const noexcept;
    // Keys of a band's items, in toolbar order.
    [[nodiscard]] std::vector<std::string> bandItems(int band) const;

    void setEnabled(std::string_view key, bool enabled);
    void setPressed(std::string_view key, bool pressed);
    void setVisible(std::string_view key, bool visible);
    void setText(std::string_view key, std::string text);
    void setPicture(std::string_view key, std::string picture);
    void setToolTip(std::string_view key, std::string toolTip);

    // Script access to one item: Enabled, Pressed (or Checked), Visible,
    // Text, Picture, ToolTip (or ToolTipText), Band. Unknown names throw
    // std::invalid_argument.
    [[nodiscard]] std::string property(std::string_view key, std::string_view name) const;
    void setProperty(std::string_view key, std::string_view name, std::string_view value);

private:
    ToolbarItem& mutableItem(std::string_view key);
    void changed(std::string_view key);

    std::string m_owner;
    ChangeSink m_sink;
    std::vector<ToolbarBand> m_bands;
    std::vector<ToolbarItem> m_items;
};

}  // namespace kt500::form
