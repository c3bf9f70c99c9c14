// clsKT520::Reply: the shared shape of a reply with the HART positioner's
// differences (its trend and test groups, the label of stopped monitoring),
// and the handler of the "deviceStatus" push.
#include "devices/Encodings.h"
#include "devices/clsKT520.h"

#include <cmath>
#include <stdexcept>

namespace kt500::devices {

namespace {

// "communicationResponse/item" under the document element.
std::vector<xml::Node> topItems(const xml::Document& document) {
    std::vector<xml::Node> items;
    for (const xml::Node& response : document.root().childElements("communicationResponse")) {
        for (const xml::Node& item : response.childElements("item")) {
            items.push_back(item);
        }
    }
    return items;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

}  // namespace

void clsKT520::Reply(xml::Document& xmlDoc) {
    replyShared(xmlDoc);
}

bool clsKT520::classItems(const std::string& strName, const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    using Route = void (*)(IUserControl&, xml::Node);
    static constexpr std::pair<std::string_view, Route> kRoutes[] = {
        {"travelDeviation", [](IUserControl& c, xml::Node i) { c.AddTravelDeviationValuePair(i, false); }},
        {"loadFactor", [](IUserControl& c, xml::Node i) { c.AddLoadFactorValuePair(i, false); }},
        {"travelVsTime", [](IUserControl& c, xml::Node i) { c.AddTravelVsTimeValuePair(i, false); }},
        {"stepTestValues", [](IUserControl& c, xml::Node i) { c.AddStepTestValuePair(i); }},
        {"hysteresisTestValues", [](IUserControl& c, xml::Node i) { c.AddHysteresisTestValuePair(i); }},
    };
    for (const auto& [group, route] : kRoutes) {
        if (group == strName) {
            for (const xml::Node& item : items) {
                route(control, item);
            }
            return true;
        }
    }
    return false;
}

void clsKT520::monitoringStopped() {
    setElementText({"lblHAMonitoringSettings", 6}, userControl().Translate("stopped"));
}

void clsKT520::deviceStatus(xml::Document& xmlDoc) {
    IUserControl& control = userControl();
    session::clsTools& tools = control.tools();
    const xml::Node response = xmlDoc.root().firstChildElement("communicationResponse");
    const std::int16_t revision = ToInt16(tools.DeviceRevision);
    if (response.attribute("responseStatus") != "ok") {
        control.UnKnownStatus();
        return;
    }
    const xml::Document* parameters = tools.RavikDTMParameters();
    if (parameters == nullptr) {
        throw std::logic_error("Object variable not set: RavikDTMParameters");
    }
    std::vector<xml::Node> statusList;
    for (const xml::Node& group :
         parameters->root().firstChildElement("deviceStatus").childElements("statusGroup")) {
        for (const xml::Node& status : group.childElements("status")) {
            statusList.push_back(status);
        }
    }
    // The software revision decides whether a revision 7 device has the
    // deviation alert; it must come before "travelSetpoint" in the reply.
    std::string swRevision;
    for (const xml::Node& item : topItems(xmlDoc)) {
        if (revision == 7) {
            const std::string itemName = item.attribute("name");
            const std::string text = item.text();
            if (itemName == "swRevision") {
                swRevision = isBlank(text) ? "7" : text;
            } else if (itemName == "travelSetpoint") {
                if (swRevision != "7") {
                    tools.ShowDeviationAlert = true;
                } else if (isBlank(text)) {
                    tools.ShowDeviationAlert = false;
                } else {
                    const double value = Str2Dbl(fDecimalSep(text, "."));
                    const auto rounded = static_cast<float>(std::round(value * 1000.0) / 1000.0);
                    tools.ShowDeviationAlert = rounded != 0.0F;
                }
            }
        }
        control.UpdateStatusTree(statusList, item);
    }
    control.UpdateStatusParentNodes();
    control.UpdateHeaderStatus();
}

}  // namespace kt500::devices
