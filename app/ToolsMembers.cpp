#include "app/ToolsMembers.h"

#include "app/ScriptCompare.h"

#include "form/Property.h"

#include <array>
#include <cctype>
#include <charconv>
#include <functional>

namespace kt500::app {

namespace {

using session::clsTools;

std::string text(bool value) {
    return form::formatBoolean(value);
}
std::string text(std::int16_t value) {
    return std::to_string(value);
}
std::string text(std::int32_t value) {
    return std::to_string(value);
}
std::string text(const std::string& value) {
    return value;
}
// A Single in its shortest form: 0.1F prints as 0.1.
std::string text(float value) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

struct Member {
    std::string_view name;
    std::function<std::string(const clsTools&)> read;
};

#define KT500_MEMBER(name)                                    \
    Member {                                                  \
#name, [](const clsTools& t) { return text(t.name); } \
    }

const std::vector<Member>& members() {
    static const std::vector<Member> table = {
        KT500_MEMBER(DTMInitialized),
        KT500_MEMBER(OnlineConf),
        KT500_MEMBER(ActorRole),
        KT500_MEMBER(ConnectionID),
        KT500_MEMBER(DeviceType),
        KT500_MEMBER(DeviceName),
        KT500_MEMBER(DeviceRevision),
        KT500_MEMBER(DeviceTypeId),
        KT500_MEMBER(Language),
        KT500_MEMBER(FrameLanguage),
        KT500_MEMBER(DebugLevel),
        KT500_MEMBER(GUIxmlPath),
        KT500_MEMBER(GUIxmlSchemaPath),
        KT500_MEMBER(InstallPath),
        KT500_MEMBER(SavePath),
        KT500_MEMBER(SmartUIPaint),
        Member{"DeviceParameterXml", [](const clsTools& t) { return t.DeviceParameterXml(); }},
        KT500_MEMBER(CurrentFrame),
        KT500_MEMBER(LatestSelectedNode),
        KT500_MEMBER(ChangedFrame),
        KT500_MEMBER(value_saved),
        KT500_MEMBER(OldValueForConfirm),
        KT500_MEMBER(ConfirmFlag),
        KT500_MEMBER(NodeIcon),
        KT500_MEMBER(ItemIndex),
        KT500_MEMBER(ReplyItems),
        Member{"strDefaultFrame", [](const clsTools& t) { return t.strDefaultFrame(); }},
        Member{"old_values", [](const clsTools& t) { return t.old_values(); }},
        KT500_MEMBER(OnCommunication),
        KT500_MEMBER(ShowProgressbar),
        KT500_MEMBER(ReadGroup),
        KT500_MEMBER(TimerFlag),
        KT500_MEMBER(StatusRequesCount),
        KT500_MEMBER(MonitoringFlag),
        KT500_MEMBER(MonitoringValues),
        KT500_MEMBER(ComparedMonitoring),
        KT500_MEMBER(MonitorLog),
        KT500_MEMBER(CurrentAutoAction),
        KT500_MEMBER(CurrentCalibration),
        KT500_MEMBER(CalibrationStep),
        KT500_MEMBER(TestStep),
        KT500_MEMBER(CurrentTest),
        KT500_MEMBER(StepEndPoint),
        KT500_MEMBER(LastTargetMode),
        KT500_MEMBER(StepTestFlag),
        KT500_MEMBER(HysteresisTestFlag),
        KT500_MEMBER(PneumaticsTestFlag),
        KT500_MEMBER(ValveTestFlag),
        KT500_MEMBER(LoadFactorFlag),
        KT500_MEMBER(DeviationFlag),
        KT500_MEMBER(ShowDeviationAlert),
        KT500_MEMBER(BreakawayPressureLimitHigh),
        KT500_MEMBER(BreakawayPressureLimitLow),
        KT500_MEMBER(LoadFactorPLAlarmLimitHigh),
        KT500_MEMBER(LoadFactorPLAlarmLimitLow),
        KT500_MEMBER(LeakageAlarmLimit),
        KT500_MEMBER(SelectedCurve),
        KT500_MEMBER(InstalledFlowCurve),
        KT500_MEMBER(DesiredFlowCurve),
        KT500_MEMBER(FlowModificationStep),
        KT500_MEMBER(UpdateCurveFlag),
        KT500_MEMBER(ImportFromFile),
        KT500_MEMBER(OpenFileType),
    };
    return table;
}

#undef KT500_MEMBER

}  // namespace

std::optional<std::string> ToolsMember(const session::clsTools& tools, std::string_view strMember) {
    for (const Member& member : members()) {
        if (EqualsNoCase(member.name, strMember)) {
            return member.read(tools);
        }
    }
    return std::nullopt;
}

std::vector<std::string_view> ToolsMemberNames() {
    std::vector<std::string_view> names;
    for (const Member& member : members()) {
        names.push_back(member.name);
    }
    return names;
}

}  // namespace kt500::app
