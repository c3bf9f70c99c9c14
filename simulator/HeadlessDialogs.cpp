#include "simulator/HeadlessDialogs.h"

namespace kt500::simulator {

namespace {

// The button set of a yes/no question (4) or of a message (anything else).
constexpr int kYesNoButtons = 4;

}  // namespace

void HeadlessDialogs::ShowMessage(int intDialogKind, int intButtonSet, int intDefaultButton,
                                  const std::string& strHeader, const std::string& strText,
                                  int& intButtonPressed, int& intResult) {
    int answer = intButtonSet == kYesNoButtons ? services::ButtonYes : services::ButtonOk;
    if (!m_answers.empty()) {
        answer = m_answers.front();
        m_answers.pop_front();
    }
    m_boxes.push_back({intDialogKind, intButtonSet, intDefaultButton, strHeader, strText, answer});
    intButtonPressed = answer;
    intResult = answer;
}

std::vector<RecordedBox> HeadlessDialogs::takeBoxes() {
    std::vector<RecordedBox> fresh(m_boxes.begin() + static_cast<std::ptrdiff_t>(m_taken),
                                   m_boxes.end());
    m_taken = m_boxes.size();
    return fresh;
}

void HeadlessDialogs::forgetBoxes() noexcept {
    m_boxes.clear();
    m_taken = 0;
}

}  // namespace kt500::simulator
