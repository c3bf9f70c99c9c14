#include "form/ListViewModel.h"

#include <algorithm>
#include <stdexcept>

namespace kt500::form {

ListViewModel::ListViewModel(std::string owner, ChangeSink sink)
    : m_owner(std::move(owner)), m_sink(std::move(sink)) {}

void ListViewModel::changed(int row) {
    if (m_sink) {
        m_sink(PropertyId::ListItems, {}, row);
    }
}

void ListViewModel::setCheckBoxes(bool on) {
    if (m_checkBoxes != on) {
        m_checkBoxes = on;
        if (m_sink) {
            m_sink(PropertyId::CheckBoxes, {}, -1);
        }
    }
}

void ListViewModel::addColumn(ListColumn column) {
    m_columns.push_back(std::move(column));
    if (m_sink) {
        m_sink(PropertyId::ColumnHeaders, {}, static_cast<int>(m_columns.size()));
    }
}

void ListViewModel::setColumnText(int column, std::string text) {
    if (column < 1 || column > static_cast<int>(m_columns.size())) {
        throw std::out_of_range(m_owner + ": column " + std::to_string(column) + " is outside 1.." +
                                std::to_string(m_columns.size()));
    }
    ListColumn& c = m_columns[static_cast<std::size_t>(column - 1)];
    if (c.text != text) {
        c.text = std::move(text);
        if (m_sink) {
            m_sink(PropertyId::ColumnHeaders, {}, column);
        }
    }
}

int ListViewModel::add(std::string text, std::string key) {
    if (!key.empty() && findKey(key) != 0) {
        throw std::invalid_argument(m_owner + ": row key '" + key + "' is already in the list");
    }
    ListRow row;
    row.key = std::move(key);
    row.text = std::move(text);
    m_rows.push_back(std::move(row));
    changed(count());
    return count();
}

ListRow& ListViewModel::mutableRow(int row) {
    return const_cast<ListRow&>(static_cast<const ListViewModel*>(this)->row(row));
}

const ListRow& ListViewModel::row(int row) const {
    if (row < 1 || row > count()) {
        throw std::out_of_range(m_owner + ": row " + std::to_string(row) + " is outside 1.." +
                                std::to_string(count()));
    }
    return m_rows[static_cast<std::size_t>(row - 1)];
}

void ListViewModel::remove(int row) {
    (void)this->row(row);
    m_rows.erase(m_rows.begin() + (row - 1));
    changed(-1);
}

void ListViewModel::clear() {
    if (!m_rows.empty()) {
        m_rows.clear();
        changed(-1);
    }
}

int ListViewModel::findKey(std::string_view key) const noexcept {
    for (int i = 0; i < count(); ++i) {
        if (m_rows[static_cast<std::size_t>(i)].key == key) {
            return i + 1;
        }
    }
    return 0;
}

int ListViewModel::checkedCount() const noexcept {
    return static_cast<int>(
        std::count_if(m_rows.begin(), m_rows.end(), [](const ListRow& r) { return r.checked; }));
}

void ListViewModel::setText(int row, std::string text) {
    ListRow& r = mutableRow(row);
    if (r.text != text) {
        r.text = std::move(text);
        changed(row);
    }
}

std::string ListViewModel::subItem(int row, int index) const {
    const ListRow& r = this->row(row);
    if (index < 1) {
        throw std::out_of_range(m_owner + ": sub-item " + std::to_string(index) + " of row " +
                                std::to_string(row) + " does not exist");
    }
    const auto at = static_cast<std::size_t>(index - 1);
    return at < r.subItems.size() ? r.subItems[at] : std::string();
}

void ListViewModel::setSubItem(int row, int index, std::string text) {
    ListRow& r = mutableRow(row);
    if (index < 1) {
        throw std::out_of_range(m_owner + ": sub-item " + std::to_string(index) + " of row " +
                                std::to_string(row) + " does not exist");
    }
    const auto at = static_cast<std::size_t>(index - 1);
    if (at >= r.subItems.size()) {
        r.subItems.resize(at + 1);
    } else if (r.subItems[at] == text) {
        return;
    }
    r.subItems[at] = std::move(text);
    changed(row);
}

void ListViewModel::setChecked(int row, bool checked) {
    ListRow& r = mutableRow(row);
    if (r.checked != checked) {
        r.checked = checked;
        changed(row);
    }
}

void ListViewModel::setSelected(int row, bool selected) {
    ListRow& r = mutableRow(row);
    if (r.selected != selected) {
        r.selected = selected;
        changed(row);
    }
}

void ListViewModel::setTag(int row, std::string tag) {
    ListRow& r = mutableRow(row);
    if (r.tag != tag) {
        r.tag = std::move(tag);
        changed(row);
    }
}

}  // namespace kt500::form
