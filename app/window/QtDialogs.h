// m_pDialogs of the window: Qt message boxes. A message (any button set but
// the question's) has one OK button; the yes/no question (button set 4) has
// Yes and No, with the default button it names (6 Yes, 7 No). The pressed
// button comes back as the service's codes: 1 OK, 6 Yes, 7 No; closing a
// question's box with Escape answers No. Each box shows the icon of its
// kind (MessageKindOf): question, error, warning or information.
#pragma once

#include "app/window/MessageKind.h"
#include "services/IDtmDialogs.h"

#include <functional>

class QWidget;

namespace kt500::window {

class QtDialogs final : public services::IDtmDialogs {
public:
    // The boxes are modal over parent (nullptr: over the application).
    explicit QtDialogs(QWidget* parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget* parent) { m_parent = parent; }
    // Where the texts that mark a kind come from: the running session's
    // translations. Without it only the language-neutral marks count.
    void setTexts(std::function<MessageTexts()> texts) { m_texts = std::move(texts); }
    // The kind of the box that these arguments would show.
    [[nodiscard]] MessageKind kindOf(int intDialogKind, int intButtonSet,
                                     const std::string& strHeader,
                                     const std::string& strText) const;

    void ShowMessage(int intDialogKind, int intButtonSet, int intDefaultButton,
                     const std::string& strHeader, const std::string& strText,
                     int& intButtonPressed, int& intResult) override;

private:
    QWidget* m_parent;
    std::function<MessageTexts()> m_texts;
};

}  // namespace kt500::window
