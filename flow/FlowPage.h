// The controls of a flow modification page: the HART page ("HA", 11
// points) and the PROFIBUS PA page ("PA", 21 points) run the same procedure
// on arrays of their own. Which page a session has follows from its device
// class (DevicePrefix, ModificationPoints, FlowModificationIndex).
#pragma once

#include "devices/DeviceClass.h"

#include <string>

namespace kt500::flow {

struct FlowPage {
    std::string points;    // txtHAFlowModification: the point boxes
    std::string commands;  // cmdHAFlowModification: start, load, back, next, cancel, apply
    std::string label;     // lblHAFlowModification: the step's prompt
    std::string mark;      // imgHAFlowModification: the changed marks of the points
    int labelElement = 15;
    int pointCount = 11;   // ModificationPoints
    int curveList = 0;     // FlowModificationIndex: the element of comFlowModification
    // The PROFIBUS class keeps the procedure's step (FlowModProgress) and
    // whether the applied curve is the identity (FlowModCurveLinear).
    bool classKeepsProgress = false;
};

// The page of a prefix: "HA" or "PA"; a family without the page throws.
[[nodiscard]] FlowPage FlowPageOf(const std::string& strPrefix, int intPoints, int intCurveList);
[[nodiscard]] FlowPage FlowPageOf(devices::DeviceClass& device);

// The chart of the three curves on each page, an array by
// FlowModificationIndex beside the input signal chart of the same frame.
inline constexpr const char* kFlowChart = "pegoFlowModification";
// The elements of the commands.
inline constexpr int kStart = 0;
inline constexpr int kLoad = 1;
inline constexpr int kBack = 2;
inline constexpr int kNext = 3;
inline constexpr int kCancel = 4;
inline constexpr int kApply = 5;
// txtHAFlowModification element 11: "1" when the applied curve is not the identity.
inline constexpr int kCharacterizationElement = 11;

}  // namespace kt500::flow
