#include "data/RoleRules.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace kt500::data {

namespace {

enum class Mode { Any, Online, Offline };

struct Rule {
    Right right;
    bool observer;  // allowed for "observer"
    bool operator_; // allowed for "operator"
    Mode mode;
};

// The table. Every other role ("maintenance", "planningEngineer",
// "administrator", "oemService") may do everything the mode allows.
constexpr std::array kRules = {
    Rule{Right::Send, false, true, Mode::Any},
    Rule{Right::OfflineConfiguration, false, true, Mode::Offline},
    Rule{Right::Upload, true, true, Mode::Online},
    Rule{Right::Settings, true, true, Mode::Any},
    Rule{Right::Monitoring, true, true, Mode::Online},
    Rule{Right::Test, false, true, Mode::Online},
    Rule{Right::PLTest, false, false, Mode::Online},
    Rule{Right::Calibration, false, false, Mode::Any},
    Rule{Right::ResetDiagnostics, false, false, Mode::Any},
    Rule{Right::FactoryReset, false, false, Mode::Any},
};

constexpr std::string_view kMonitoringCommands[] = {"cmdHAMonitoring", "cmdPAMonitoring",
                                                    "cmdPLMonitoring"};
constexpr std::string_view kTestCommands[] = {"cmdStartTest"};
constexpr std::string_view kPLTestCommands[] = {"cmdPLStartTest", "cmdPLSetTestSettings"};
constexpr std::string_view kCalibrationCommands[] = {"cmdHAAutoTravelCalibration",
                                                     "cmdHAInputSignalMeasurementCalibration",
                                                     "cmdHAPositionTransmitterCalibration",
                                                     "cmdHAPressureSensorCalibration",
                                                     "cmdHATemperatureSensorCalibration",
                                                     "cmdPAAutoTravelCalStart",
                                                     "cmdPAPositionSensorCalibration",
                                                     "cmdPAPressureSensorCalibration",
                                                     "cmdPATemperatureSensorCalibration",
                                                     "cmdPLAutocalibration"};
constexpr std::string_view kResetCommands[] = {"cmdResetDiagnostics"};
constexpr std::string_view kFactoryResetCommands[] = {"cmdPAFactoryReset"};

bool SameWord(std::string_view strLeft, std::string_view strRight) noexcept {
    return std::ranges::equal(strLeft, strRight, [](char left, char right) {
        return std::tolower(static_cast<unsigned char>(left)) ==
               std::tolower(static_cast<unsigned char>(right));
    });
}

const Rule& RuleOf(Right right) noexcept {
    return *std::ranges::find(kRules, right, &Rule::right);
}

}  // namespace

bool RoleAllows(std::string_view strRole, Right right) noexcept {
    const Rule& rule = RuleOf(right);
    if (SameWord(strRole, "observer")) {
        return rule.observer;
    }
    if (SameWord(strRole, "operator")) {
        return rule.operator_;
    }
    return true;
}

bool Allows(const session::clsTools& tools, Right right) noexcept {
    if (!RoleAllows(tools.ActorRole, right)) {
        return false;
    }
    switch (RuleOf(right).mode) {
        case Mode::Online:
            return tools.OnlineConf;
        case Mode::Offline:
            return !tools.OnlineConf;
        case Mode::Any:
            break;
    }
    return true;
}

std::span<const std::string_view> CommandsOf(Right right) noexcept {
    switch (right) {
        case Right::Monitoring:
            return kMonitoringCommands;
        case Right::Test:
            return kTestCommands;
        case Right::PLTest:
            return kPLTestCommands;
        case Right::Calibration:
            return kCalibrationCommands;
        case Right::ResetDiagnostics:
            return kResetCommands;
        case Right::FactoryReset:
            return kFactoryResetCommands;
        default:
            return {};
    }
}

void EnableCommands(const form::Form& form, const session::clsTools& tools, Right right,
                    bool blWanted) {
    const bool enabled = blWanted && Allows(tools, right);
    for (const std::string_view name : CommandsOf(right)) {
        for (form::Control* command : form.elements(name)) {
            command->setEnabled(enabled);
        }
    }
}

}  // namespace kt500::data
