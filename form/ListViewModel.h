// The rows of a list view (confirmation list, event log): a text, sub-items
// under the further columns, and a check box. Rows are numbered from 1 as
// ListItems(i) is; a row outside 1..count throws std::out_of_range naming
// the owner. Every real change is reported through the sink.
#pragma once

#include "form/Property.h"

#include <string>
#include <string_view>
#include <vector>

namespace kt500::form {

struct ListColumn {
    std::string captionKey;  // translation key of the header
    std::string text;        // the header as shown
    int width = 1440;        // twips
};

struct ListRow {
    std::string key;
    std::string text;
    std::vector<std::string> subItems;  // SubItems(1) is subItems[0]
    std::string tag;
    bool checked = false;
    bool selected = false;
};

class ListViewModel {
public:
    explicit ListViewModel(std::string owner, ChangeSink sink = {});

    [[nodiscard]] bool checkBoxes() const noexcept { return m_checkBoxes; }
    void setCheckBoxes(bool on);

    void addColumn(ListColumn column);
    void setColumnText(int column, std::string text);  // 1-based
    [[nodiscard]] const std::vector<ListColumn>& columns() const noexcept { return m_columns; }

    // Adds a row at the end and returns its number.
    int add(std::string text, std::string key = {});
    void remove(int row);
    void clear();

    [[nodiscard]] int count() const noexcept { return static_cast<int>(m_rows.size()); }
    [[nodiscard]] const std::vector<ListRow>& rows() const noexcept { return m_rows; }
    [[nodiscard]] const ListRow& row(int row) const;
    // The row of a key, 0 when none.
    [[nodiscard]] int findKey(std::string_view key) const noexcept;
    [[nodiscard]] int checkedCount() const noexcept;

    void setText(int row, std::string text);
    // SubItems(i), i from 1; writing past the last sub-item extends the row.
    [[nodiscard]] std::string subItem(int row, int index) const;
    void setSubItem(int row, int index, std::string text);
    void setChecked(int row, bool checked);
    void setSelected(int row, bool selected);
    void setTag(int row, std::string tag);

private:
    ListRow& mutableRow(int row);
    void changed(int row);

    std::string m_owner;
    ChangeSink m_sink;
    bool m_checkBoxes = false;
    std::vector<ListColumn> m_columns;
    std::vector<ListRow> m_rows;
};

}  // namespace kt500::form
