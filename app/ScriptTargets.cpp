#include "app/ScriptTargets.h"

#include "app/DeviceMembers.h"

#include "app/ToolsMembers.h"
#include "data/ParameterDocument.h"

#include <charconv>
#include <utility>

namespace kt500::app {

namespace {

// "rest" after a prefix such as "doc.", or nothing.
std::optional<std::string_view> after(std::string_view text, std::string_view prefix) {
    if (text.size() > prefix.size() && text.substr(0, prefix.size()) == prefix) {
        return text.substr(prefix.size());
    }
    return std::nullopt;
}

// "KEY.PROPERTY" split at the last dot; throws when either part is empty.
std::pair<std::string_view, std::string_view> keyAndProperty(std::string_view text,
                                                             std::string_view whole) {
    const auto dot = text.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == text.size()) {
        throw TargetError("'" + std::string(whole) + "' names no property");
    }
    return {text.substr(0, dot), text.substr(dot + 1)};
}

}  // namespace

form::Control& ScriptTargets::navigationTree() const {
    return m_session.control().form().control(kNavigationTree);
}

form::Control& ScriptTargets::statusTree() const {
    return m_session.control().form().control(kStatusTree);
}

form::Control& ScriptTargets::toolbar() const {
    return m_session.control().form().control(kToolbar, kToolbarIndex);
}

std::string ScriptTargets::family() const {
    const std::string& key = m_session.options().deviceKey;
    if (key.starts_with("KT540")) {
        return "KT540";
    }
    if (key.starts_with("PL500")) {
        return "PL500";
    }
    return "KT520";  // the HART positioners, their PT and Q variants
}

form::Control& ScriptTargets::byTag(std::string_view tag) const {
    const form::Form& form = m_session.control().form();
    const form::ControlArray* frames = form.findArray("fra" + family());
    if (frames != nullptr) {
        for (form::Control* control : form.controls()) {
            if (!control->has(form::PropertyId::Tag) || control->tag() != tag) {
                continue;
            }
            for (const int index : frames->indices()) {
                if (form::Form::isInside(*control, (*frames)[index])) {
                    return *control;
                }
            }
        }
    }
    throw TargetError("unknown control '@" + std::string(tag) + "': no control of the " + family() +
                      " pages has that tag");
}

form::Control& ScriptTargets::control(std::string_view reference) const {
    if (reference.starts_with('@')) {
        return byTag(reference.substr(1));
    }
    std::string_view name = reference;
    int index = -1;
    if (const auto open = reference.find('['); open != std::string_view::npos) {
        const std::string_view inner = reference.back() == ']'
                                           ? reference.substr(open + 1, reference.size() - open - 2)
                                           : std::string_view();
        const auto [end, error] = std::from_chars(inner.data(), inner.data() + inner.size(), index);
        if (inner.empty() || error != std::errc() || end != inner.data() + inner.size() ||
            index < 0) {
            throw TargetError("unknown control '" + std::string(reference) +
                              "': the index must be a whole number in [ ]");
        }
        name = reference.substr(0, open);
    }
    form::Control* found = m_session.control().form().find(name, index);
    if (found == nullptr) {
        throw TargetError("unknown control '" + std::string(reference) + "'");
    }
    return *found;
}

std::string ScriptTargets::read(std::string_view target) const {
    if (const auto rest = after(target, "doc.")) {
        return readDocument(*rest);
    }
    if (const auto rest = after(target, "bl.")) {
        return readDevice(*rest);
    }
    if (const auto rest = after(target, "tools.")) {
        return readTools(*rest);
    }
    if (const auto rest = after(target, "device.")) {
        return readDeviceClass(*rest);
    }
    if (const auto rest = after(target, "toolbar.")) {
        return readToolbarItem(*rest);
    }
    if (const auto rest = after(target, "tree.")) {
        return readTreeNode(navigationTree(), *rest);
    }
    if (const auto rest = after(target, "statusTree.")) {
        return readTreeNode(statusTree(), *rest);
    }
    if (const auto rest = after(target, "control.")) {
        return readControlMember(*rest);
    }
    return readControlProperty(target);
}

std::string ScriptTargets::readDocument(std::string_view rest) const {
    const auto [parameter, attribute] = keyAndProperty(rest, rest);
    host::RavikKT500& control = m_session.control();
    if (!control.parameterNode() || control.xmlDataFile() == nullptr) {
        throw TargetError("unknown target 'doc." + std::string(rest) +
                          "': the control holds no parameter document");
    }
    const xml::Node node = control.ParameterNodeByName(parameter);
    if (!node) {
        throw TargetError("unknown target 'doc." + std::string(rest) +
                          "': the parameter document has no parameter '" + std::string(parameter) +
                          "'");
    }
    return node.attribute(attribute);
}

std::string ScriptTargets::readDeviceClass(std::string_view member) const {
    host::RavikKT500& control = m_session.control();
    std::optional<std::string> value;
    try {
        value = DeviceMember(control.deviceClass(), member);
    } catch (const std::exception& failure) {
        throw TargetError("unknown target 'device." + std::string(member) + "': " + failure.what());
    }
    if (!value) {
        throw TargetError("unknown target 'device." + std::string(member) +
                          "': the device class has no such member");
    }
    return *value;
}

std::string ScriptTargets::readDevice(std::string_view parameter) const {
    const auto value = m_session.bl().simulatedControl().deviceValue(std::string(parameter));
    if (!value) {
        throw TargetError("unknown target 'bl." + std::string(parameter) +
                          "': the device has no such parameter (or is not connected)");
    }
    return *value;
}

std::string ScriptTargets::readTools(std::string_view member) const {
    const session::clsTools* tools = m_session.control().m_objTools.get();
    if (tools == nullptr) {
        throw TargetError("unknown target 'tools." + std::string(member) +
                          "': the session state is released");
    }
    const auto value = ToolsMember(*tools, member);
    if (!value) {
        throw TargetError("unknown target 'tools." + std::string(member) +
                          "': clsTools has no such member");
    }
    return *value;
}

std::string ScriptTargets::readControlMember(std::string_view member) const {
    const host::RavikKT500& control = m_session.control();
    if (member == "m_buttonPressed") {
        return std::to_string(control.m_buttonPressed);
    }
    if (member == "strPresetCurveValues") {
        return control.strPresetCurveValues;
    }
    if (member == "MousePointer") {
        // The user control's own pointer: 11 the hourglass of long work.
        return std::to_string(m_session.control().form().userControl().mousePointer());
    }
    throw TargetError("unknown target 'control." + std::string(member) +
                      "': the control has no such member");
}

std::string ScriptTargets::readTreeNode(const form::Control& tree, std::string_view rest) const {
    const auto [key, property] = keyAndProperty(rest, rest);
    if (tree.tree().find(key) == nullptr) {
        throw TargetError("unknown target: " + tree.name() + " has no node '" + std::string(key) +
                          "'");
    }
    try {
        return tree.tree().property(key, property);
    } catch (const std::invalid_argument& unknown) {
        throw TargetError(std::string("unknown property: ") + unknown.what());
    }
}

std::string ScriptTargets::readToolbarItem(std::string_view rest) const {
    const auto [key, property] = keyAndProperty(rest, rest);
    const form::Control& bar = toolbar();
    if (bar.toolbar().find(key) == nullptr) {
        throw TargetError("unknown target: the toolbar has no item '" + std::string(key) + "'");
    }
    try {
        return bar.toolbar().property(key, property);
    } catch (const std::invalid_argument& unknown) {
        throw TargetError(std::string("unknown property: ") + unknown.what());
    }
}

std::string ScriptTargets::readControlProperty(std::string_view target) const {
    // The reference ends at the first dot after its name (and index), so
    // that a property may carry an argument: comX.List(2).
    std::size_t dot = std::string_view::npos;
    if (target.starts_with('@')) {
        dot = target.find('.');
    } else if (const auto close = target.find(']');
               close != std::string_view::npos && target.find('.') > close) {
        dot = target.find('.', close);
    } else {
        dot = target.find('.');
    }
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == target.size()) {
        throw TargetError("unknown target '" + std::string(target) + "': it names no property");
    }
    const form::Control& found = control(target.substr(0, dot));
    try {
        return found.get(target.substr(dot + 1));
    } catch (const std::invalid_argument& unknown) {
        throw TargetError(std::string("unknown property: ") + unknown.what());
    }
}

}  // namespace kt500::app
