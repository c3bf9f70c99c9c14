// clsPL500::Reply: the shared shape of the reply with the safety valve
// controller's differences: its trend and test groups, the test schedule
// items, the nodes of its two reset pages, the selection the device refuses
// quietly, and the target mode that the device has taken.
#include "devices/clsPL500.h"

#include <array>

namespace kt500::devices {

namespace {

// The schedule items of the two tests: each fills a two-part field (a
// number and its unit) of the page before the test's curve is read.
constexpr std::array<std::string_view, 4> kScheduleItems = {
    "valveTestInterval", "valveTestTimer", "pneumaticsTestInterval", "pneumaticsTestTimer"};

bool isScheduleItem(std::string_view name) {
    for (const std::string_view item : kScheduleItems) {
        if (item == name) {
            return true;
        }
    }
    return false;
}

}  // namespace

void clsPL500::Reply(xml::Document& xmlDoc) {
    replyShared(xmlDoc);
}

bool clsPL500::classItems(const std::string& strName, const std::vector<xml::Node>& items) {
    IUserControl& control = userControl();
    if (strName == "valveTest" || strName == "pneumaticsTest") {
        for (const xml::Node& item : items) {
            if (isScheduleItem(item.attribute("name"))) {
                control.SetItemValueToGUI(item, "", "", "", 0);
            }
        }
        const bool valve = strName == "valveTest";
        for (const xml::Node& item : items) {
            if (isScheduleItem(item.attribute("name"))) {
                continue;
            }
            if (valve) {
                control.AddValveTestValuePair(item);
            } else {
                control.AddPneumaticsTestValuePair(item);
            }
        }
        control.EnableTestKeyFigures(true);
        return true;
    }
    for (const xml::Node& item : items) {
        if (strName == "loadFactorTrend") {
            control.AddLoadFactorValuePair(item, false);
        } else if (strName == "breakawayPressureTrend") {
            control.AddBreakawayPressureValuePair(item, false);
        } else if (strName == "leakageSignalTrend") {
            control.AddLeakageSignalValuePair(item, false);
        } else {
            return false;
        }
    }
    return true;
}

void clsPL500::afterGoodReply(const std::string& /*strName*/, const std::string& /*strAccess*/,
                              bool /*isFinal*/, const std::vector<xml::Node>& items) {
    if (holdsItem(items, "targetMode")) {
        m_targetModeInReply = true;
    }
    if (!m_targetModeInReply) {
        return;
    }
    // The device has taken the target mode: the actual mode is what counts
    // now, shown changed with its mark, and the data set keeps no pending
    // target mode.
    for (form::Control* mark : userControl().form().elements("imgPLChanged")) {
        if (mark->tag() == "actualMode") {
            mark->setVisible(true);
        }
    }
    if (form::Control* actual = findElement(ActualModeList)) {
        actual->setForeColor(ColorChanged);
    }
    userControl().ResetTargetMode();
    m_targetModeInReply = false;
}

void clsPL500::monitoringStopped() {
    setElementText(MonitoringState, userControl().Translate("stopped"));
}

void clsPL500::LeakageSwitchChanged(int intListIndex) {
    if (intListIndex < 0) {
        return;
    }
    IUserControl& control = userControl();
    const bool on = intListIndex == 1;
    for (const int index : LeakageFields) {
        if (form::Control* field = findElement({"txtPLParams", index})) {
            field->setEnabled(on);
        }
    }
    // Off is a measurement time of 0 in the device: the time field takes it
    // as an edit of the user's, with its row in the confirmation list. On
    // leaves the time to be entered.
    form::Control* time = settingField("leakageMeasurementTime");
    if (on || time == nullptr || time->text() == "0") {
        return;
    }
    session::clsTools& tools = control.tools();
    // The old value is the time's own, not the switch's that has the focus.
    const std::string strOld = control.GetOldValue(time->tag(), tools.CurrentFrame);
    time->setText("0");
    control.AddConfirmationRow(time->tag(), tools.CurrentFrame, time->tag(), strOld, "0");
    tools.ConfirmFlag = true;
}

}  // namespace kt500::devices
