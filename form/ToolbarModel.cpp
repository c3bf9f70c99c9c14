#include "form/ToolbarModel.h"
#include "form/Assign.h"

#include <algorithm>
#include <stdexcept>

namespace kt500::form {

ToolbarModel::ToolbarModel(std::string owner, ChangeSink sink)
    : m_owner(std::move(owner)), m_sink(std::move(sink)) {}

void ToolbarModel::changed(std::string_view key) {
    if (m_sink) {
        m_sink(PropertyId::Buttons, key, -1);
    }
}

int ToolbarModel::addBand(std::string key) {
    m_bands.push_back(ToolbarBand{std::move(key), true});
    changed({});
    return static_cast<int>(m_bands.size()) - 1;
}

void ToolbarModel::setBandVisible(int band, bool visible) {
    if (band < 0 || band >= static_cast<int>(m_bands.size())) {
        throw std::out_of_range(m_owner + ": no band " + std::to_string(band));
    }
    ToolbarBand& b = m_bands[static_cast<std::size_t>(band)];
    if (b.visible != visible) {
        b.visible = visible;
        changed({});
    }
}

const ToolbarItem& ToolbarModel::addItem(ToolbarItem item) {
    if (item.key.empty()) {
        throw std::invalid_argument(m_owner + ": a toolbar item needs a key");
    }
    if (find(item.key) != nullptr) {
        throw std::invalid_argument(m_owner + ": toolbar item '" + item.key +
                                    "' is already on the toolbar");
    }
    if (item.band < 0 || item.band >= static_cast<int>(m_bands.size())) {
        throw std::out_of_range(m_owner + ": toolbar item '" + item.key + "' names band " +
                                std::to_string(item.band) + ", which does not exist");
    }
    m_items.push_back(std::move(item));
    changed(m_items.back().key);
    return m_items.back();
}

void ToolbarModel::clear() {
    m_items.clear();
    m_bands.clear();
    changed({});
}

const ToolbarItem* ToolbarModel::find(std::string_view key) const noexcept {
    const auto it = std::find_if(m_items.begin(), m_items.end(),
                                 [&](const ToolbarItem& i) { return i.key == key; });
    return it == m_items.end() ? nullptr : &*it;
}

const ToolbarItem& ToolbarModel::item(std::string_view key) const {
    if (const ToolbarItem* i = find(key)) {
        return *i;
    }
    throw std::out_of_range(m_owner + ": no toolbar item '" + std::string(key) + "'");
}

ToolbarItem& ToolbarModel::mutableItem(std::string_view key) {
    return const_cast<ToolbarItem&>(item(key));
}

std::vector<std::string> ToolbarModel::bandItems(int band) const {
    std::vector<std::string> keys;
    for (const ToolbarItem& i : m_items) {
        if (i.band == band) {
            keys.push_back(i.key);
        }
    }
    return keys;
}

void ToolbarModel::setEnabled(std::string_view key, bool enabled) {
    if (assign(mutableItem(key).enabled, enabled)) {
        changed(key);
    }
}

void ToolbarModel::setPressed(std::string_view key, bool pressed) {
    if (assign(mutableItem(key).pressed, pressed)) {
        changed(key);
    }
}

void ToolbarModel::setVisible(std::string_view key, bool visible) {
    if (assign(mutableItem(key).visible, visible)) {
        changed(key);
    }
}

void ToolbarModel::setText(std::string_view key, std::string text) {
    if (assign(mutableItem(key).text, std::move(text))) {
        changed(key);
    }
}

void ToolbarModel::setPicture(std::string_view key, std::string picture) {
    if (assign(mutableItem(key).picture, std::move(picture))) {
        changed(key);
    }
}

void ToolbarModel::setToolTip(std::string_view key, std::string toolTip) {
    if (assign(mutableItem(key).toolTip, std::move(toolTip))) {
        changed(key);
    }
}

std::string ToolbarModel::property(std::string_view key, std::string_view name) const {
    const ToolbarItem& i = item(key);
    if (name == "Enabled") {
        return formatBoolean(i.enabled);
    }
    if (name == "Pressed" || name == "Checked") {
        return formatBoolean(i.pressed);
    }
    if (name == "Visible") {
        return formatBoolean(i.visible);
    }
    if (name == "Text") {
        return i.text;
    }
    if (name == "Picture") {
        return i.picture;
    }
    if (name == "ToolTip" || name == "ToolTipText") {
        return i.toolTip;
    }
    if (name == "Band") {
        return std::to_string(i.band);
    }
    throw std::invalid_argument(m_owner + ": a toolbar item has no property '" + std::string(name) +
                                "'");
}

void ToolbarModel::setProperty(std::string_view key, std::string_view name,
                               std::string_view value) {
    const auto boolean = [&] {
        if (const auto b = parseBoolean(value)) {
            return *b;
        }
        throw std::invalid_argument(m_owner + ": toolbar item " + std::string(name) +
                                    " takes True or False, not '" + std::string(value) + "'");
    };
    if (name == "Enabled") {
        setEnabled(key, boolean());
    } else if (name == "Pressed" || name == "Checked") {
        setPressed(key, boolean());
    } else if (name == "Visible") {
        setVisible(key, boolean());
    } else if (name == "Text") {
        setText(key, std::string(value));
    } else if (name == "Picture") {
        setPicture(key, std::string(value));
    } else if (name == "ToolTip" || name == "ToolTipText") {
        setToolTip(key, std::string(value));
    } else {
        throw std::invalid_argument(m_owner + ": a toolbar item has no writable property '" +
                                    std::string(name) + "'");
    }
}

}  // namespace kt500::form
