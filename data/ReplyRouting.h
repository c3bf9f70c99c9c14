// ReplyRouting: where every reply of the BL enters. A reply is parsed and
// handed to Reply of the device class, which puts its values on the pages
// and closes its request group here (SetReadVariables). The progress bar of
// a running chain and the changed signs of written fields are kept here too.
#pragma once

#include "data/HeldValues.h"
#include "data/PageControls.h"
#include "devices/IUserControl.h"
#include "xml/Document.h"

#include <functional>
#include <string>

namespace kt500::data {

class ReplyRouting {
public:
    ReplyRouting(devices::IUserControl& control, HeldValues& held)
        : m_control(control), m_held(held) {}

    // Parses one reply string, validating it against the communication
    // schema, and passes it to Reply. A reply that does not parse is shown
    // and Reply runs on an empty document.
    void ItemListFromReply(const std::string& strReply);
    // Hands every reply that parsed to observer before Reply sees it.
    void setReplyObserver(std::function<void(const xml::Document&)> observer) {
        m_observer = std::move(observer);
    }
    // Replays the responses of a data file through Reply, one at a time,
    // with ImportFromFile set for the whole replay.
    void ReplayDataFile(const xml::Document& xmlDocument);
    // Closes a request group after its final reply: the page counts as
    // valid, the toolbar is given back once no chain is showing progress,
    // and the signs and confirmation rows of the group are dropped.
    void SetReadVariables(const std::string& strRequestName, bool IsFinal,
                          const std::string& strAccessType, bool blError);
    // Advances the progress bar for one reply (or one written item) and
    // hides it once the chain is through.
    void IncreaseProgress();
    // Drops the blue text and the marks of the group's fields that no
    // unchecked confirmation row still names.
    void ClearChangedSigns(const std::string& strRequestGroup);
    // Gives the marks of strTag on the pages of the frame array strContainer
    // the "error" picture (strImage "error") or the "changed" picture.
    void ChangeImage(const std::string& strTag, const std::string& strContainer,
                     const std::string& strImage);

private:
    // After Reply failed on a final reply: the request it answered closes,
    // as a failed group, so that the busy state ends.
    void closeFailedReply(const xml::Document& xmlDoc);
    // ClearChangedSigns on one field or mark the read answers for.
    void clearChangedSign(form::Control& control, const std::string& imagePrefix);
    devices::IUserControl& m_control;
    HeldValues& m_held;
    PageControls m_pageControls;
    std::function<void(const xml::Document&)> m_observer;
};

}  // namespace kt500::data
