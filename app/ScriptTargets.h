// What the targets of a script name, resolved against a running session:
// controls (NAME, NAME[INDEX], @TAG) for the user's commands, and the
// TARGET.PROPERTY forms that `get` and `expect` read:
//
//   CONTROL.PROPERTY         a control property ("Text", "List(2)")
//   doc.PARAM.ATTRIBUTE      an attribute of a parameter of the live document
//   bl.PARAM                 the device's own value in the built-in BL
//   tools.MEMBER             the session state (clsTools)
//   device.MEMBER            a member of the device class
//   toolbar.KEY.PROPERTY     a toolbar item
//   tree.KEY.PROPERTY        a node of the navigation tree
//   statusTree.KEY.PROPERTY  a node of the status tree
//   control.MEMBER           the control's own members
//
// A target that does not exist throws TargetError, which a script reports
// with its line as a script that cannot run.
#pragma once

#include "app/ControlSession.h"
#include "form/Control.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace kt500::app {

class TargetError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class ScriptTargets {
public:
    // The navigation tree, the status tree and the header toolbar.
    static constexpr const char* kNavigationTree = "treeNavigation";
    static constexpr const char* kStatusTree = "TreeView3";
    static constexpr const char* kToolbar = "smuiDTM";
    static constexpr int kToolbarIndex = 1;

    explicit ScriptTargets(const ControlSession& session) : m_session(session) {}

    // NAME, NAME[INDEX] or @TAG; throws TargetError ("unknown control").
    [[nodiscard]] form::Control& control(std::string_view reference) const;
    // The value of TARGET.PROPERTY as the system holds it.
    [[nodiscard]] std::string read(std::string_view target) const;

    [[nodiscard]] form::Control& navigationTree() const;
    [[nodiscard]] form::Control& statusTree() const;
    [[nodiscard]] form::Control& toolbar() const;

    // The family whose frames @TAG walks: KT520, KT540 or PL500.
    [[nodiscard]] std::string family() const;

private:
    [[nodiscard]] form::Control& byTag(std::string_view tag) const;
    [[nodiscard]] std::string readDocument(std::string_view rest) const;
    [[nodiscard]] std::string readDevice(std::string_view parameter) const;
    [[nodiscard]] std::string readDeviceClass(std::string_view member) const;
    [[nodiscard]] std::string readTools(std::string_view member) const;
    [[nodiscard]] std::string readControlMember(std::string_view member) const;
    [[nodiscard]] std::string readTreeNode(const form::Control& tree, std::string_view rest) const;
    [[nodiscard]] std::string readToolbarItem(std::string_view rest) const;
    [[nodiscard]] std::string readControlProperty(std::string_view target) const;

    const ControlSession& m_session;
};

}  // namespace kt500::app
