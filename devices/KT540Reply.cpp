// clsKT540::Reply and its status handler: the shared shape of the reply with
// the PROFIBUS positioner's differences: the one test curve group, the meter
// groups that feed the alert settings page, the target mode in a reply, and
// the positioning value that decides the deviation alert.
#include "devices/Encodings.h"
#include "devices/clsKT540.h"

#include <cmath>

namespace kt500::devices {

void clsKT540::Reply(xml::Document& xmlDoc) {
    replyShared(xmlDoc);
}

void clsKT540::DeviceStatus(xml::Document& xmlDoc) {
    sharedDeviceStatus(xmlDoc);
}

void clsKT540::deviationAlertItem(xml::Node item) {
    if (item.attribute("name") != "positioningValue") {
        return;
    }
    session::clsTools& tools = userControl().tools();
    const std::string text = item.text();
    // Not a number (a PROFIBUS infinity or NaN, or nothing): no deviation
    // can be told, so the alert does not show.
    if (text == "-Inf" || text == "+Inf" || text == "NaN" ||
        text.find_first_not_of(' ') == std::string::npos) {
        tools.ShowDeviationAlert = false;
        return;
    }
    const double value = Str2Dbl(fDecimalSep(text, "."));
    const auto rounded = static_cast<float>(std::round(value * 1000.0) / 1000.0);
    tools.ShowDeviationAlert = rounded != 0.0F;
}

bool clsKT540::classItems(const std::string& strName, const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    if (strName == "testValues") {
        testValues(items);
        return true;
    }
    for (const xml::Node& item : items) {
        if (strName == "travelDeviation") {
            control.AddTravelDeviationValuePair(item, false);
        } else if (strName == "loadFactor") {
            control.AddLoadFactorValuePair(item, false);
        } else if (strName == "travelVsTime") {
            control.AddTravelVsTimeValuePair(item, false);
        } else {
            return false;
        }
    }
    return true;
}

void clsKT540::testValues(const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    for (const xml::Node& item : items) {
        const std::string name = item.attribute("name");
        const std::string head = name.substr(0, 12);
        if (head != "lastPosition" && head != "lastSpOrTime") {
            control.SetItemValueToGUI(item, "", "", "", 0);
            continue;
        }
        const std::int16_t test = SelectedTest();
        if (test == 1) {
            control.AddStepTestValuePair(item);
        } else if (test == 2) {
            control.AddHysteresisTestValuePair(item);
        }
    }
}

void clsKT540::afterGoodReply(const std::string& strName, const std::string& strAccess,
                              bool isFinal, const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    if (strAccess == "write") {
        return;
    }
    // The two meter groups fill the alert settings page with their limits.
    if ((strName == "valveMetersAndLimits" || strName == "actuatorMetersAndLimits") &&
        control.tools().OnlineConf && isFinal) {
        control.ChangeTreeIcon("alertSettings", "read");
    }
    if (strName == "operationMode" && holdsItem(items, "targetMode")) {
        m_targetModeInReply = true;
    }
    if (m_targetModeInReply) {
        // The device has told its target mode: its sign shows on the page,
        // which is arranged for that mode.
        if (form::Control* sign = findElement({"imgPAOperationMode2", 0})) {
            sign->setVisible(true);
        }
        ArrangeOperationModePage(control.tools().LastTargetMode);
        m_targetModeInReply = false;
    }
}

void clsKT540::monitoringStopped() {
    setElementText({"lblPAMonValue", 6}, userControl().Translate("Stopped"));
}

}  // namespace kt500::devices
