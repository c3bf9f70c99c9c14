#include "data/ConfirmationRows.h"

#include <string>

namespace kt500::data {

namespace {

constexpr int kOldValueColumn = 1;
constexpr int kNewValueColumn = 2;
constexpr int kNameColumn = 3;
constexpr int kPageColumn = 4;

form::ListViewModel* Rows(const form::Form& form) {
    form::Control* list = form.find("lsvConfirmation");
    return list == nullptr ? nullptr : &list->listView();
}

}  // namespace

void RemoveGroupRows(const form::Form& form, const GroupFields& read) {
    form::ListViewModel* rows = Rows(form);
    if (rows == nullptr) {
        return;
    }
    for (int row = rows->count(); row >= 1; --row) {
        if (read.reads(rows->subItem(row, kNameColumn), rows->subItem(row, kPageColumn))) {
            rows->remove(row);
        }
    }
}

void RemoveParameterRow(const form::Form& form, std::string_view strName) {
    form::ListViewModel* rows = Rows(form);
    if (rows == nullptr) {
        return;
    }
    for (int row = rows->count(); row >= 1; --row) {
        if (rows->subItem(row, kNameColumn) == strName) {
            rows->remove(row);
        }
    }
}

void RemoveCheckedRows(const form::Form& form) {
    form::ListViewModel* rows = Rows(form);
    if (rows == nullptr) {
        return;
    }
    for (int row = rows->count(); row >= 1; --row) {
        if (rows->row(row).checked) {
            rows->remove(row);
        }
    }
}

bool HasRow(const form::Form& form, std::string_view strName, std::optional<bool> blChecked) {
    const form::ListViewModel* rows = Rows(form);
    if (rows == nullptr) {
        return false;
    }
    for (int row = 1; row <= rows->count(); ++row) {
        if ((!blChecked || rows->row(row).checked == *blChecked) &&
            rows->subItem(row, kNameColumn) == strName) {
            return true;
        }
    }
    return false;
}

bool HasCheckedRow(const form::Form& form, std::string_view strName) {
    return HasRow(form, strName, true);
}

bool HasCheckedDataSetRow(const form::Form& form, std::string_view strName) {
    const form::ListViewModel* rows = Rows(form);
    if (rows == nullptr) {
        return false;
    }
    for (int row = 1; row <= rows->count(); ++row) {
        if (rows->row(row).checked && rows->subItem(row, kNameColumn) == strName &&
            rows->subItem(row, kOldValueColumn) == rows->subItem(row, kNewValueColumn)) {
            return true;
        }
    }
    return false;
}

}  // namespace kt500::data
