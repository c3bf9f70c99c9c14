// The kinds of controls a page holds, and the words the form files use for
// them. The word of most kinds is also the prefix of the system's control
// names (txt, com, chk, ...).
#pragma once

#include <optional>
#include <string_view>

namespace kt500::form {

enum class ControlKind {
    UserControl,    // the control itself: the container of last resort
    TextBox,        // txt
    ComboBox,       // com: the list box, entries with item data
    CheckBox,       // chk: Value 0, 1 or 2
    OptionButton,   // opt: Value True or False, one per container
    Label,          // lbl
    Image,          // img: Picture is an image key
    CommandButton,  // cmd
    Frame,          // fra: a page or a group inside a page
    ListView,       // lsv: rows with sub-items and check boxes
    TreeView,       // tree: nodes by key
    Toolbar,        // smui: items by key in bands
    ProgressBar,    // progress: Min, Max, Value
    Timer,          // tmr: Enabled, Interval; the host ticks it
    Chart,          // chart: subsets of points, titles, axes
    Menu,           // mnu
    DriveList,      // drv: Drive
    DirList,        // dir: Path
    FileList,       // fil: Path, Pattern, FileName
};

// The form file word of a kind ("txt", "tree", ...).
[[nodiscard]] std::string_view kindWord(ControlKind kind) noexcept;
// The kind of a form file word; nothing for an unknown word. The user
// control has no word: it is never declared in a file.
[[nodiscard]] std::optional<ControlKind> kindFromWord(std::string_view word) noexcept;

}  // namespace kt500::form
