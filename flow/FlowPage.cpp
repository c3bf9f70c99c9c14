#include "flow/FlowPage.h"

#include "devices/MemberMissing.h"

namespace kt500::flow {

FlowPage FlowPageOf(const std::string& strPrefix, int intPoints, int intCurveList) {
    if (strPrefix != "HA" && strPrefix != "PA") {
        throw devices::MemberMissing("SetFlowModificationTable");
    }
    FlowPage page;
    page.points = "txt" + strPrefix + "FlowModification";
    page.commands = "cmd" + strPrefix + "FlowModification";
    page.label = "lbl" + strPrefix + "FlowModification";
    page.mark = "img" + strPrefix + "FlowModification";
    page.labelElement = strPrefix == "HA" ? 15 : 11;
    page.pointCount = intPoints;
    page.curveList = intCurveList;
    page.classKeepsProgress = strPrefix == "PA";
    return page;
}

FlowPage FlowPageOf(devices::DeviceClass& device) {
    return FlowPageOf(device.DevicePrefix(), device.ModificationPoints(),
                      device.FlowModificationIndex());
}

}  // namespace kt500::flow
