// PageHandlers: the events of the value fields on the configuration pages.
// Every page runs the same small machine on its list boxes and text boxes:
// the snapshot of the pages is taken before the first edit, an edited field
// turns blue with its page's changed mark and the page's tree node turns
// "changed", the value is validated when the focus leaves, and a good
// change joins the confirmation list.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <span>
#include <string_view>

namespace kt500::data {

class PageHandlers {
public:
    explicit PageHandlers(devices::IUserControl& control) : m_control(control) {}

    // Adds the handlers of every page field array that the form holds.
    void addHandlers(form::EventHandlers& handlers);

    // The handler families; marks are the page's changed mark arrays.
    void ListBox_GotFocus(form::Control& list);
    void ListBox_LostFocus(form::Control& list, std::span<const std::string_view> marks);
    void TextBox_GotFocus();
    void TextBox_KeyPress(form::Control& text);
    void TextBox_Change(form::Control& text, std::span<const std::string_view> marks);
    void TextBox_LostFocus(form::Control& text, bool blDateField);
    // The year of the device date: a date the device cannot hold is told and
    // refused like any value that fails its check (red, the "error" mark).
    bool CheckDeviceDate(form::Control& year);

private:
    // The snapshot is taken once per edit session.
    void SaveOnce();
    // The former and the present value of a field into the confirmation list.
    void AddRow(const form::Control& field, const std::string& strNewValue);
    // The navigation node of the page the field lies on.
    [[nodiscard]] std::string PageNode(const form::Control& field);
    void ShowMark(const form::Control& field, std::span<const std::string_view> marks,
                  bool blVisible);

    devices::IUserControl& m_control;
};

}  // namespace kt500::data
