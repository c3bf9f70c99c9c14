// ProgramWrite: ConfirmFlag False while the program writes into a control,
// so that the control's own handler leaves the write alone; the flag is put
// back as it was when the write ends, also on a failure.
#pragma once

#include "session/clsTools.h"

namespace kt500::data {

class ProgramWrite {
public:
    explicit ProgramWrite(session::clsTools& tools) : m_tools(tools), m_saved(tools.ConfirmFlag) {
        m_tools.ConfirmFlag = false;
    }
    ~ProgramWrite() { m_tools.ConfirmFlag = m_saved; }
    ProgramWrite(const ProgramWrite&) = delete;
    ProgramWrite& operator=(const ProgramWrite&) = delete;

private:
    session::clsTools& m_tools;
    bool m_saved;
};

}  // namespace kt500::data
