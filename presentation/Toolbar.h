// Toolbar: the commands of the band toolbar smuiDTM (element 1) that belong
// to no single page, dispatched by the clicked item's key, and the role
// rules that limit them.
//
// "help" starts the help viewer as a separate process, without a shell and
// without waiting: the program helpViewer() (by default "xdg-open", which
// hands the file to the desktop's viewer) with the one argument
// InstallPath/DTMHelp.chm. It runs only when the session allows the control
// windows of its own (privateDialogEnabled); a viewer that fails to start is
// ignored.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"
#include "presentation/NavigationTree.h"

#include <functional>
#include <string>
#include <vector>

namespace kt500::presentation {

// Starts a program detached; False when it could not be started.
using ProcessStarter =
    std::function<bool(const std::string& strProgram, const std::vector<std::string>& arguments)>;

// The platform's starter: the program with its arguments, no shell.
bool StartDetached(const std::string& strProgram, const std::vector<std::string>& arguments);

class Toolbar {
public:
    static constexpr const char* kDefaultHelpViewer = "xdg-open";
    static constexpr const char* kHelpFile = "DTMHelp.chm";

    Toolbar(devices::IUserControl& control, NavigationTree& navigation,
            ProcessStarter starter = StartDetached)
        : m_control(control), m_navigation(navigation), m_starter(std::move(starter)) {}

    // A click on an item. Dropped while an auto action runs; an unknown key
    // does nothing.
    void smuiDTM_ToolbarClick(const std::string& strKey);
    // Cancels the request under way and gives the tools back.
    void Stop();
    // Disables what the role may not use; run once the session data are in.
    void ApplyRole(const std::string& strRole);

    [[nodiscard]] const std::string& helpViewer() const noexcept { return m_helpViewer; }
    void setHelpViewer(std::string strProgram) { m_helpViewer = std::move(strProgram); }

    void addHandlers(form::EventHandlers& handlers);

private:
    void ShowConfirmation();
    void ShowSettings();
    void UndoCurrentPage();
    void StartHelp();

    devices::IUserControl& m_control;
    NavigationTree& m_navigation;
    ProcessStarter m_starter;
    std::string m_helpViewer = kDefaultHelpViewer;
};

}  // namespace kt500::presentation
