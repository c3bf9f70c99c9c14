#include "form/ListModel.h"

#include <stdexcept>

namespace kt500::form {

void ListModel::check(int index, const char* what) const {
    if (index < 0 || index >= count()) {
        throw std::out_of_range(m_owner + ": " + what + " index " + std::to_string(index) +
                                " is outside the list of " + std::to_string(count()) + " entries");
    }
}

const std::string& ListModel::text(int index) const {
    check(index, "List");
    return m_entries[static_cast<std::size_t>(index)].text;
}

std::int32_t ListModel::itemData(int index) const {
    check(index, "ItemData");
    return m_entries[static_cast<std::size_t>(index)].itemData;
}

void ListModel::setText(int index, std::string text) {
    check(index, "List");
    m_entries[static_cast<std::size_t>(index)].text = std::move(text);
}

void ListModel::setItemData(int index, std::int32_t value) {
    check(index, "ItemData");
    m_entries[static_cast<std::size_t>(index)].itemData = value;
}

void ListModel::setListIndex(int index) {
    if (index != -1) {
        check(index, "ListIndex");
    }
    m_listIndex = index;
}

int ListModel::add(std::string text, int index) {
    if (index == -1) {
        index = count();
    } else if (index < 0 || index > count()) {
        throw std::out_of_range(m_owner + ": AddItem index " + std::to_string(index) +
                                " is outside 0.." + std::to_string(count()));
    }
    m_entries.insert(m_entries.begin() + index, ListEntry{std::move(text), 0});
    if (m_listIndex >= index) {
        ++m_listIndex;
    }
    m_newIndex = index;
    return index;
}

void ListModel::remove(int index) {
    check(index, "RemoveItem");
    m_entries.erase(m_entries.begin() + index);
    if (m_listIndex == index) {
        m_listIndex = -1;
    } else if (m_listIndex > index) {
        --m_listIndex;
    }
    m_newIndex = -1;
}

void ListModel::clear() noexcept {
    m_entries.clear();
    m_listIndex = -1;
    m_newIndex = -1;
}

int ListModel::findItemData(std::int32_t value) const noexcept {
    for (int i = 0; i < count(); ++i) {
        if (m_entries[static_cast<std::size_t>(i)].itemData == value) {
            return i;
        }
    }
    return -1;
}

int ListModel::findText(std::string_view text) const noexcept {
    for (int i = 0; i < count(); ++i) {
        if (m_entries[static_cast<std::size_t>(i)].text == text) {
            return i;
        }
    }
    return -1;
}

}  // namespace kt500::form
