// m_pDialogs: the message and question boxes. The pairs in use are 0, 1, 4
// (a message with OK) and 0, 4, 6 (a yes/no question); the pressed button
// comes back in buttonPressed: 1 OK, 2 Cancel, 6 Yes, 7 No.
#pragma once

#include <string>

namespace kt500::services {

enum DialogButton : int {
    ButtonOk = 1,
    ButtonCancel = 2,
    ButtonYes = 6,
    ButtonNo = 7,
};

class IDtmDialogs {
public:
    virtual ~IDtmDialogs() = default;

    virtual void ShowMessage(int intDialogKind, int intButtonSet, int intDefaultButton,
                             const std::string& strHeader, const std::string& strText,
                             int& intButtonPressed, int& intResult) = 0;
};

}  // namespace kt500::services
