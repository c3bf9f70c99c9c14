#include "simulator/SessionOptions.h"

#include "xml/Document.h"

namespace kt500::simulator {

std::string BuildSessionData(const SessionOptions& options, const std::string& strDeviceType,
                             const std::string& strRevision) {
    xml::Document document =
        xml::Document::create("sessionData", "x-schema:QDLSessionDataSchema.xml");
    xml::Node session = document.root().appendElement("session");
    session.setAttribute("privateDialogEnabled", options.privateDialog ? "1" : "0");
    session.setAttribute("deviceType", strDeviceType);
    session.setAttribute("revision", strRevision);
    session.setAttribute("userRole", options.role);
    session.setAttribute("frameLanguage", options.frameLanguage);
    session.setAttribute("guiLanguage", options.language);
    session.setAttribute("online", options.online ? "1" : "0");
    session.setAttribute("savePath", options.savePath);
    return document.toXml();
}

}  // namespace kt500::simulator
