// The entries of a list box: texts with 32-bit item data, the selection and
// the entry added last. Indices are 0-based as List(i) and ItemData(i) are;
// one outside the list throws std::out_of_range naming the owner.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::form {

struct ListEntry {
    std::string text;
    std::int32_t itemData = 0;
};

class ListModel {
public:
    explicit ListModel(std::string owner) : m_owner(std::move(owner)) {}

    [[nodiscard]] int count() const noexcept { return static_cast<int>(m_entries.size()); }
    [[nodiscard]] int listIndex() const noexcept { return m_listIndex; }
    [[nodiscard]] int newIndex() const noexcept { return m_newIndex; }
    [[nodiscard]] const std::vector<ListEntry>& entries() const noexcept { return m_entries; }

    [[nodiscard]] const std::string& text(int index) const;
    [[nodiscard]] std::int32_t itemData(int index) const;
    void setText(int index, std::string text);
    void setItemData(int index, std::int32_t value);
    // -1 clears the selection; anything else must name an entry.
    void setListIndex(int index);

    // Adds at the end, or before entry `index` (0..count). The selection
    // keeps its entry; NewIndex names the new one.
    int add(std::string text, int index = -1);
    // The selection moves with its entry, or becomes -1 when it goes.
    void remove(int index);
    void clear() noexcept;

    // The first entry with this item data or text, -1 when none.
    [[nodiscard]] int findItemData(std::int32_t value) const noexcept;
    [[nodiscard]] int findText(std::string_view text) const noexcept;

private:
    void check(int index, const char* what) const;

    std::string m_owner;
    std::vector<ListEntry> m_entries;
    int m_listIndex = -1;
    int m_newIndex = -1;
};

}  // namespace kt500::form
