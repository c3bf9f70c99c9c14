// The menu bar of the window: the toolbar's commands grouped in menus
// (File, Device, View, Help) with their standard shortcuts. A menu command
// of a toolbar item is that item: it is enabled, shown and pressed exactly
// as the item is (the menus follow every change of the toolbar model), and
// choosing it clicks the item. Previous and next page click the navigation
// buttons, as the tree-hidden layout offers them.
#pragma once

#include "app/window/FormView.h"
#include "app/window/FrameTexts.h"
#include "app/window/Mnemonics.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <map>
#include <string>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace kt500::window {

// The window's own commands that the menus carry beside the toolbar's.
struct WindowCommands {
    std::function<void()> newSession;
    std::function<void()> quit;
    std::function<void()> about;
};

class CommandMenus final : public QObject {
public:
    // The keys of the page commands beside the toolbar's keys.
    static constexpr const char* kPreviousPage = "previousPage";
    static constexpr const char* kNextPage = "nextPage";

    CommandMenus(QMenuBar& bar, FormView& view, const FrameTexts& texts, WindowCommands commands);
    ~CommandMenus() override;
    CommandMenus(const CommandMenus&) = delete;
    CommandMenus& operator=(const CommandMenus&) = delete;

    // The menu command of a toolbar key or of a page command; nullptr when
    // the menus have none.
    [[nodiscard]] QAction* action(const std::string& key) const;
    // Brings every command in step with its toolbar item.
    void sync();

private:
    QMenu* addMenu(FrameText title);
    void addToolbarCommand(QMenu& menu, const std::string& key, const QKeySequence& shortcut);
    void addPageCommand(QMenu& menu, const char* key, FrameText text, const QKeySequence& shortcut,
                        int navigationIndex);
    void addWindowCommand(QMenu& menu, FrameText text, const QKeySequence& shortcut,
                          const std::function<void()>& command);

    QMenuBar& m_bar;
    FormView& m_view;
    const FrameTexts& m_texts;
    std::map<std::string, QAction*> m_actions;
    std::vector<QPointer<QMenu>> m_menus;
    std::size_t m_observer = 0;
};

}  // namespace kt500::window
