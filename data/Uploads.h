// Uploads: the read chains of the toolbar's upload groups and the Reload of
// the page shown, the progress bar that counts their replies, and the
// blinking communication sign. A chain posts all its requests at once; the
// hourglass pointer keeps a second start out until the replies are in.
#pragma once

#include "devices/IUserControl.h"
#include "form/EventHandlers.h"

#include <string>
#include <string_view>

namespace kt500::data {

// What the Reload of a page reads: the request group (empty: nothing) and
// the translation key of the progress bar's caption.
struct ReloadTarget {
    std::string group;
    std::string caption;
};

// Whether the page of a frame tag ("HAresetDiagnostics") has nothing that
// its Reload could read: the reset, test result and calibration pages. The
// KT520's test settings page reads its settings.
[[nodiscard]] bool NothingToUploadOn(std::string_view strFrame);

// Every item of the upload band off ("uploadCurrent" and the upload groups),
// whatever the GUIInit document offers: nothing may read the device while
// an action owns it. Uploads::EnableUploadTools gives the band back.
void DisableUploadTools(form::Form& form);

class Uploads {
public:
    explicit Uploads(devices::IUserControl& control) : m_control(control) {}

    // The upload band for the mode: online "uploadCurrent" and the item of
    // every upload group of the GUIInit document, offline nothing.
    void EnableUploadTools();
    // Reads the request groups of one upload group ("uploadAll", ...) in a
    // chain. Returns at once while a chain runs.
    void RunUploadGroup(const std::string& strGroup);
    // Sets the bar up for a read of the request group and captions it with
    // the translation of strCaption.
    void SetProgressBar(const std::string& strRequestGroup, const std::string& strCaption);
    // The Reload of the page shown: asks before unsaved edits give way, then
    // reads the page's group and any further group whose fields it shows.
    void cmdReload();
    // The group that the Reload of a page (its frame tag) reads. A page with
    // nothing to upload says so and gives the empty group.
    ReloadTarget ResolveReloadGroup(const std::string& strFrame);
    // One tick of the communication sign: all signs off, or the signs of the
    // running communications on, in turn.
    void tmrIconBlink();

    void addHandlers(form::EventHandlers& handlers);

private:
    // The flow modification page before its reload: no curve chosen, the
    // points locked, the curve table empty.
    void resetFlowModification();

    devices::IUserControl& m_control;
};

}  // namespace kt500::data
