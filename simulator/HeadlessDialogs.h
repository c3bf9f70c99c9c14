// m_pDialogs without a screen: every box is recorded, and each is answered
// from a queue of buttons. With the queue empty a yes/no question is
// answered Yes and a message OK.
#pragma once

#include "services/IDtmDialogs.h"

#include <deque>
#include <string>
#include <vector>

namespace kt500::simulator {

struct RecordedBox {
    int dialogKind = 0;
    int buttonSet = 0;
    int defaultButton = 0;
    std::string header;
    std::string text;
    int answer = 0;
};

class HeadlessDialogs final : public services::IDtmDialogs {
public:
    void ShowMessage(int intDialogKind, int intButtonSet, int intDefaultButton,
                     const std::string& strHeader, const std::string& strText,
                     int& intButtonPressed, int& intResult) override;

    // Queues the answers of the next boxes (ButtonYes, ButtonNo, ...).
    void queueAnswer(int intButton) { m_answers.push_back(intButton); }
    [[nodiscard]] const std::vector<RecordedBox>& boxes() const noexcept { return m_boxes; }
    // The boxes since the last call, and forgets them.
    std::vector<RecordedBox> takeBoxes();
    // Drops every recorded box, so that a long run does not keep them all.
    void forgetBoxes() noexcept;

private:
    std::deque<int> m_answers;
    std::vector<RecordedBox> m_boxes;
    std::size_t m_taken = 0;
};

}  // namespace kt500::simulator
