#include "data/PageFields.h"

#include <cmath>

namespace kt500::data {

using form::ControlKind;

form::Control* PageOf(const form::Control& control, std::string_view frameArray) {
    for (form::Control* container = control.container(); container != nullptr;
         container = container->container()) {
        if (container->name() == frameArray) {
            return container;
        }
    }
    return nullptr;
}

bool HoldsValue(const form::Control& control) {
    switch (control.kind()) {
        case ControlKind::TextBox:
        case ControlKind::ComboBox:
        case ControlKind::CheckBox:
        case ControlKind::Label:
            return true;
        default:
            return false;
    }
}

std::string FieldValue(const form::Control& control, bool blCaption) {
    switch (control.kind()) {
        case ControlKind::TextBox:
            return control.text();
        case ControlKind::ComboBox: {
            const int entry = control.listIndex();
            if (entry < 0) {
                return {};
            }
            return blCaption ? control.list(entry) : std::to_string(control.itemData(entry));
        }
        case ControlKind::CheckBox:
            return std::to_string(std::lround(control.value()));
        case ControlKind::Label:
            return control.caption();
        default:
            return {};
    }
}

std::string NodeOfFrame(std::string_view strFrame, std::string_view strPrefix) {
    if (!strPrefix.empty() && strFrame.starts_with(strPrefix)) {
        strFrame.remove_prefix(strPrefix.size());
    }
    return std::string(strFrame);
}

form::Control* FindPage(const form::Form& form, std::string_view frameArray,
                        std::string_view strFrame) {
    const form::ControlArray* pages = form.findArray(frameArray);
    if (pages == nullptr) {
        return nullptr;
    }
    for (const int index : pages->indices()) {
        form::Control* page = pages->find(index);
        if (page != nullptr && page->tag() == strFrame) {
            return page;
        }
    }
    return nullptr;
}

std::vector<form::Control*> SnapshotFields(const form::Form& form, const form::Control& page) {
    std::vector<form::Control*> fields;
    for (form::Control* control : form.controls()) {
        const bool field =
            control->kind() == ControlKind::TextBox || control->kind() == ControlKind::ComboBox;
        if (field && form::Form::isInside(*control, page)) {
            fields.push_back(control);
        }
    }
    return fields;
}

void SetChangedMark(const form::Form& form, std::string_view imagePrefix, std::string_view strName,
                    const form::Control& page, bool blVisible) {
    for (form::Control* control : form.tagged(strName)) {
        if (control->name().starts_with(imagePrefix) && form::Form::isInside(*control, page)) {
            control->setVisible(blVisible);
        }
    }
}

}  // namespace kt500::data
