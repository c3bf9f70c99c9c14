#include "app/DeviceMembers.h"

#include "app/ScriptCompare.h"
#include "form/Property.h"

#include <charconv>
#include <functional>
#include <vector>

namespace kt500::app {

namespace {

using devices::DeviceClass;

std::string text(std::int16_t value) {
    return std::to_string(value);
}
std::string text(bool value) {
    return form::formatBoolean(value);
}
std::string text(float value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return {buffer, result.ptr};
}
std::string text(std::string value) {
    return value;
}

struct Member {
    std::string_view name;
    std::function<std::string(DeviceClass&)> read;
};

#define KT500_DEVICE_MEMBER(name)                             \
    Member {                                                  \
#name, [](DeviceClass & d) { return text(d.name()); } \
    }

const std::vector<Member>& members() {
    static const std::vector<Member> table = {
        KT500_DEVICE_MEMBER(ImagePrefix),        KT500_DEVICE_MEMBER(DevicePrefix),
        KT500_DEVICE_MEMBER(EventLogTableIndex), KT500_DEVICE_MEMBER(FrameArrayName),
        KT500_DEVICE_MEMBER(ModificationPoints), KT500_DEVICE_MEMBER(FlowModificationIndex),
        KT500_DEVICE_MEMBER(StepTestTime),       KT500_DEVICE_MEMBER(HysteresisTestSetpoint),
        KT500_DEVICE_MEMBER(StepTestValues),     KT500_DEVICE_MEMBER(HysteresisTestValues),
        KT500_DEVICE_MEMBER(MonitorGraphHeight), KT500_DEVICE_MEMBER(MonitoringFrame),
        KT500_DEVICE_MEMBER(DefaultNodeIndex),   KT500_DEVICE_MEMBER(UseDataPoints),
        KT500_DEVICE_MEMBER(SelectedTest),       KT500_DEVICE_MEMBER(CurrentStepEndPoint),
        KT500_DEVICE_MEMBER(DeviceDate),         KT500_DEVICE_MEMBER(GetDeviceDate),
        KT500_DEVICE_MEMBER(SavedFrames),        KT500_DEVICE_MEMBER(MonitoringHeaders),
        KT500_DEVICE_MEMBER(CancelledGroups),    KT500_DEVICE_MEMBER(SmuiStopPressed),
        KT500_DEVICE_MEMBER(ResetingFrame),      KT500_DEVICE_MEMBER(FlowModCurveLinear),
        KT500_DEVICE_MEMBER(FlowModProgress),
        // The trend time spans as the class last wrote them.
        Member{"LoadFactorTime", [](DeviceClass& d) { return d.trendTime("LoadFactorTime"); }},
        Member{"TravelDeviationTime",
               [](DeviceClass& d) { return d.trendTime("TravelDeviationTime"); }},
        Member{"TravelVsTimeTime", [](DeviceClass& d) { return d.trendTime("TravelVsTimeTime"); }},
        Member{"BreakawayPressureTime",
               [](DeviceClass& d) { return d.trendTime("BreakawayPressureTime"); }},
        Member{"LeakageSignalTime",
               [](DeviceClass& d) { return d.trendTime("LeakageSignalTime"); }},
    };
    return table;
}

#undef KT500_DEVICE_MEMBER

}  // namespace

std::optional<std::string> DeviceMember(DeviceClass& device, std::string_view strMember) {
    for (const Member& member : members()) {
        if (EqualsNoCase(member.name, strMember)) {
            return member.read(device);
        }
    }
    return std::nullopt;
}

}  // namespace kt500::app
