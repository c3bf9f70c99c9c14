#include "form/ControlKind.h"

#include <array>
#include <utility>

namespace kt500::form {

namespace {

constexpr std::array<std::pair<ControlKind, std::string_view>, 18> kWords{{
    {ControlKind::TextBox, "txt"},
    {ControlKind::ComboBox, "com"},
    {ControlKind::CheckBox, "chk"},
    {ControlKind::OptionButton, "opt"},
    {ControlKind::Label, "lbl"},
    {ControlKind::Image, "img"},
    {ControlKind::CommandButton, "cmd"},
    {ControlKind::Frame, "fra"},
    {ControlKind::ListView, "lsv"},
    {ControlKind::TreeView, "tree"},
    {ControlKind::Toolbar, "smui"},
    {ControlKind::ProgressBar, "progress"},
    {ControlKind::Timer, "tmr"},
    {ControlKind::Chart, "chart"},
    {ControlKind::Menu, "mnu"},
    {ControlKind::DriveList, "drv"},
    {ControlKind::DirList, "dir"},
    {ControlKind::FileList, "fil"},
}};

}  // namespace

std::string_view kindWord(ControlKind kind) noexcept {
    for (const auto& [k, word] : kWords) {
        if (k == kind) {
            return word;
        }
    }
    return "usercontrol";
}

std::optional<ControlKind> kindFromWord(std::string_view word) noexcept {
    for (const auto& [kind, w] : kWords) {
        if (w == word) {
            return kind;
        }
    }
    return std::nullopt;
}

}  // namespace kt500::form
