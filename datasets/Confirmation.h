// Confirmation: the list of pending changes on the page "confirmation1".
// Every accepted edit of a writable value becomes a row of lsvConfirmation
// (text: the parameter's display name; sub-items: old value, new value,
// internal name, frame tag of its page). Nothing is written until the user
// ticks rows and presses send: online the checked rows go to the device
// with "write", offline to the data set with "writeOffline".
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <string>

namespace kt500::datasets {

// The columns of lsvConfirmation's sub-items.
inline constexpr int kOldValueColumn = 1;
inline constexpr int kNewValueColumn = 2;
inline constexpr int kNameColumn = 3;
inline constexpr int kPageColumn = 4;
// cmdSend's element on the confirmation page and on the flow page.
inline constexpr int kConfirmationSend = 8;
inline constexpr int kFlowPageSend = 11;

class Confirmation {
public:
    explicit Confirmation(devices::IUserControl& control) : m_control(control) {}

    // Records a pending change; see IUserControl::AddConfirmationRow.
    void AddConfirmationRow(const std::string& strName, const std::string& strFrame,
                            const std::string& strId, const std::string& strOldValue,
                            const std::string& strNewValue);
    // Writes the checked rows, one request per page, and drops them.
    void SendConfirmedValues();

    void cmdSend_Click(int Index);
    void cmdCancel_Click();
    void cmdAddAllValues_Click();
    void cmdUnSelectAll_Click();
    void lsvConfirmation_ItemCheck();

    void addHandlers(form::EventHandlers& handlers);

private:
    // A yes/no box; True for Yes.
    bool AskYesNo(const std::string& strTitle, const std::string& strText);
    // A checked row of a non-string parameter without a new value names
    // itself in a message and blocks the send.
    bool HasBlockingEmptyValue();
    // A page to be sent that holds a refused value (red) or an invalid
    // device date sends nothing: the message names the field.
    bool HasRefusedValue();
    // Whether "Add all values" may put a parameter of the data set on the
    // list: only what a write of its page can carry.
    bool Sendable(const xml::Node& parameter, const std::string& strPage,
                  const std::string& strValue);
    // Shows the page named strPage (a frame tag less its prefix).
    void ReturnToPage(const std::string& strPage);
    // Enables cmdSend element 8 when at least one row is checked.
    void UpdateSendButton();
    // The frame tag of the page a parameter stands on, for rows added
    // without an edit: the page holding its field, else its request group.
    std::string PageOfParameter(const std::string& strName);

    devices::IUserControl& m_control;
};

}  // namespace kt500::datasets
