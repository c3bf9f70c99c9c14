// The event log items that come from a data file or an offline reply, and
// the clearing of the reset boxes after a reset was written: the same steps
// on every family, over the family's own arrays.
#include "devices/DeviceClass.h"
#include "devices/Encodings.h"

namespace kt500::devices {

void DeviceClass::eventLogItem(xml::Node xmlNode, bool blInit, bool blWithCount) {
    IUserControl& control = userControl();
    const std::string name = xmlNode.attribute("name");
    if (name.size() < 2) {
        return;
    }
    const std::string base = name.substr(0, name.size() - 2);
    if (base != "eventLogEvent" && base != "eventLogTime" &&
        !(blWithCount && base == "eventLogCount")) {
        return;
    }
    // The row is the item's number plus 1: "eventLogTime00" is row 1.
    const std::int16_t row = static_cast<std::int16_t>(ToInt16(name.substr(name.size() - 2)) + 1);
    const std::string value = blInit ? xmlNode.attribute("value") : xmlNode.text();
    if (base == "eventLogEvent") {
        control.AddEventLogEvent(value, "", "", row, 1);
    } else if (base == "eventLogTime") {
        control.AddEventLogEvent("", "", value, row, 1);
    } else {
        control.AddEventLogEvent("", value, "", row, 1);
    }
}

void DeviceClass::clearResetBoxes(std::string_view strArray, int intFirst, int intLast) const {
    for (int index = intFirst; index <= intLast; ++index) {
        if (form::Control* box = findElement({strArray, index})) {
            box->setValue(0);
        }
    }
}

}  // namespace kt500::devices
