#include "session/clsTools.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <utility>

namespace kt500::session {

namespace {

constexpr std::array<std::string_view, clsTools::PageCount> kSnapshotPages = {
    "operationUnit",
    "valveRelatedConfigurations",
    "alertSettings",
    "flowModification",
    "assemblyRelatedConfiguration",
    "operationMode",
    "actuatorInformation",
    "inputValueConfiguration",
    "workingRangeConfiguration",
    "loadFactor",
    "simulation",
    "writeProtection",
    "maintenance",
    "failSafeAction",
    "valveInformation",
    "positionerInformation",
    "factoryReset",
    "general",
    "assemblyRelated",
    "leakageMeasurement",
    "deviceAlertSettings",
    "statisticAlertSettings",
    "hartConfiguration",
};

constexpr std::array<std::string_view, 5> kSignActions = {"read", "write", "calibration", "test",
                                                          "monitoring"};

struct GuiInitFile {
    std::string_view deviceKey;
    std::string_view fileName;
};

// The Q variant shares the plain model's documents for revisions 6 and 7
// only: a revision 4 or 5 Q key has no document of its own.
constexpr std::array<GuiInitFile, 15> kGuiInitFiles = {{
    {"KT520_7", "GUIInit_KT520_7.xml"},
    {"KTQ500_7", "GUIInit_KT520_7.xml"},
    {"KT520_6", "GUIInit_KT520_6.xml"},
    {"KTQ500_6", "GUIInit_KT520_6.xml"},
    {"KT520_5", "GUIInit_KT520_5.xml"},
    {"KT520_4", "GUIInit_KT520_4.xml"},
    {"KT520_PT_7", "GUIInit_KT520PT_7.xml"},
    {"KTQ500_PT_7", "GUIInit_KT520PT_7.xml"},
    {"KT520_PT_6", "GUIInit_KT520PT_6.xml"},
    {"KTQ500_PT_6", "GUIInit_KT520PT_6.xml"},
    {"KT520_PT_5", "GUIInit_KT520PT_5.xml"},
    {"KT520_PT_4", "GUIInit_KT520PT_4.xml"},
    {"PL500_1", "GUIInit_PL500_1.xml"},
    {"PL500_2", "GUIInit_PL500_2.xml"},
    {"KT540_1.0", "GUIInit_KT540_1.0.xml"},
}};

template <std::size_t N>
std::optional<std::size_t> indexOf(const std::array<std::string_view, N>& keys,
                                   std::string_view key, std::size_t limit = N) {
    const auto end = keys.begin() + static_cast<std::ptrdiff_t>(limit);
    const auto it = std::find(keys.begin(), end, key);
    if (it == end) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(it - keys.begin());
}

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

}  // namespace

bool ToBoolean(std::string_view strValue) {
    std::string_view text = strValue;
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    const std::string word = lower(text);
    if (word == "true") {
        return true;
    }
    if (word == "false") {
        return false;
    }
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size() && !text.empty()) {
        return number != 0.0;
    }
    throw std::invalid_argument("Type mismatch: '" + std::string(strValue) + "' is not a Boolean");
}

clsTools::clsTools() = default;
clsTools::~clsTools() = default;

const std::array<std::string_view, clsTools::PageCount>& clsTools::SnapshotPages() {
    return kSnapshotPages;
}

const std::array<std::string_view, 5>& clsTools::SignActions() {
    return kSignActions;
}

void clsTools::setDeviceParameterXml(std::string_view strDeviceKey) {
    for (const auto& entry : kGuiInitFiles) {
        if (entry.deviceKey == strDeviceKey) {
            m_deviceParameterXml = std::string(entry.fileName);
            return;
        }
    }
}

void clsTools::setRavikDTMParameters(std::unique_ptr<xml::Document> document) {
    m_ravikDTMParameters.reset();
    m_ravikDTMParameters = std::move(document);
}

std::string clsTools::strDefaultFrame() const {
    return OnlineConf ? "monitoringVariables" : "operationUnit";
}

std::string clsTools::old_values() const {
    if (CurrentFrame.size() < 3) {
        return {};
    }
    const auto index = indexOf(kSnapshotPages, std::string_view(CurrentFrame).substr(2));
    return index ? m_oldValues[*index] : std::string();
}

void clsTools::set_old_values(std::string_view strValues) {
    if (CurrentFrame.size() < 2) {
        throw std::out_of_range("old_values: the current page '" + CurrentFrame +
                                "' has no family prefix");
    }
    const auto index = indexOf(kSnapshotPages, std::string_view(CurrentFrame).substr(2));
    if (index) {
        m_oldValues[*index] = std::string(strValues);
    }
}

bool clsTools::ValuesOk(std::string_view strFrame, std::string_view strIsOk) {
    const auto index = indexOf(kSnapshotPages, strFrame, ValidityPageCount);
    if (!strIsOk.empty()) {
        const bool isOk = ToBoolean(strIsOk);
        if (index) {
            m_valuesOk[*index] = isOk;
        }
    }
    // Offline there is no read that could have failed: every page counts as valid.
    if (!OnlineConf) {
        return true;
    }
    return index ? m_valuesOk[*index] : false;
}

bool clsTools::CloseRequest(std::string_view strName) {
    const auto open = std::find(OpenRequests.begin(), OpenRequests.end(), strName);
    if (open != OpenRequests.end()) {
        OpenRequests.erase(open);
    }
    return OpenRequests.empty();
}

bool clsTools::IsRequestOpen(std::string_view strName) const {
    return std::find(OpenRequests.begin(), OpenRequests.end(), strName) != OpenRequests.end();
}

bool clsTools::CommunicationSign(std::string_view strAction, std::string_view strIsOk) {
    const auto index = indexOf(kSignActions, strAction);
    if (!index) {
        return false;
    }
    if (!strIsOk.empty()) {
        m_communicationSigns[*index] = ToBoolean(strIsOk);
    }
    // Offline nothing talks to a device, so no sign ever shows.
    return OnlineConf && m_communicationSigns[*index];
}

}  // namespace kt500::session
