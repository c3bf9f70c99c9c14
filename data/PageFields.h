// PageFields: how a control of the pages is tied to its parameter. A field
// lies on the family's pages when its chain of containers reaches an
// element of the class's frame array; that element is its page. Each kind
// of field gives its value in one way (text box Text, list box item data or
// entry text, check box Value, label Caption).
#pragma once

#include "form/Form.h"

#include <string>
#include <string_view>
#include <vector>

namespace kt500::data {

// The element of frameArray that control lies in, directly or through
// frames within; nullptr when it lies elsewhere.
[[nodiscard]] form::Control* PageOf(const form::Control& control, std::string_view frameArray);
[[nodiscard]] inline bool LiesOn(const form::Control& control, std::string_view frameArray) {
    return PageOf(control, frameArray) != nullptr;
}

// The four kinds that hold a parameter's value.
[[nodiscard]] bool HoldsValue(const form::Control& control);

// The value of a field: a list box gives the item data of its entry, or its
// text with blCaption, and "" with no entry chosen.
[[nodiscard]] std::string FieldValue(const form::Control& control, bool blCaption);

// The node of a page from its frame tag: a family page's tag less the family
// prefix ("HAoperationUnit" is "operationUnit"); the common pages ("status",
// "hartAddress", "settings") carry their node's name as it stands.
[[nodiscard]] std::string NodeOfFrame(std::string_view strFrame, std::string_view strPrefix);

// The page of frameArray whose Tag is strFrame; nullptr when none.
[[nodiscard]] form::Control* FindPage(const form::Form& form, std::string_view frameArray,
                                      std::string_view strFrame);

// The fields of a page snapshot, in form order: the text boxes and list
// boxes that lie in the page. Field i of old_values belongs to element i.
[[nodiscard]] std::vector<form::Control*> SnapshotFields(const form::Form& form,
                                                         const form::Control& page);

// Shows or hides the changed marks of a parameter: the controls inside the
// page whose name begins with imagePrefix and whose Tag is strName.
void SetChangedMark(const form::Form& form, std::string_view imagePrefix, std::string_view strName,
                    const form::Control& page, bool blVisible);

}  // namespace kt500::data
