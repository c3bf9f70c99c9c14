// clsTools: the session state of one control, from construction to release.
// A plain object of public members; the only logic is in the members below
// that keep per-page and per-action state (DeviceParameterXml, old_values,
// ValuesOk, CommunicationSign, strDefaultFrame).
#pragma once

#include "xml/Document.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::session {

class clsTools {
public:
    clsTools();
    ~clsTools();
    clsTools(const clsTools&) = delete;
    clsTools& operator=(const clsTools&) = delete;

    // --- Session and connection ---
    bool DTMInitialized = false;
    bool OnlineConf = false;
    std::string ActorRole;
    std::int16_t ConnectionID = 0;
    std::string DeviceType;  // device key: deviceType & "_" & revision
    std::string DeviceName;
    std::string DeviceRevision;
    std::string DeviceTypeId;
    std::string Language;
    std::string FrameLanguage;
    std::int16_t DebugLevel = 0;
    std::string GUIxmlPath;
    std::string GUIxmlSchemaPath;
    std::string InstallPath;
    std::string SavePath;
    bool SmartUIPaint = false;

    // The GUIInit file name of a device key; a key outside the table keeps
    // the former name.
    void setDeviceParameterXml(std::string_view strDeviceKey);
    [[nodiscard]] const std::string& DeviceParameterXml() const noexcept {
        return m_deviceParameterXml;
    }

    // The GUIInit document; setting it releases the former one first.
    void setRavikDTMParameters(std::unique_ptr<xml::Document> document);
    [[nodiscard]] xml::Document* RavikDTMParameters() const noexcept {
        return m_ravikDTMParameters.get();
    }

    // --- Pages and change tracking ---
    std::string CurrentFrame;
    std::string LatestSelectedNode;  // key of the navigation node last selected
    std::string ChangedFrame;
    bool value_saved = false;
    std::string OldValueForConfirm;
    bool ConfirmFlag = false;
    std::string NodeIcon;
    std::int16_t ItemIndex = 0;
    std::string ReplyItems;

    // The page to show first: the monitoring page online, else the operation unit.
    [[nodiscard]] std::string strDefaultFrame() const;

    // The snapshot of the current page, keyed by CurrentFrame less its
    // family prefix. The setter throws when CurrentFrame is shorter than two
    // characters; a page outside the list drops the write.
    [[nodiscard]] std::string old_values() const;
    void set_old_values(std::string_view strValues);

    // Page validity: stores strIsOk ("1"/"0") when given; online returns the
    // stored state (False for a page outside the list), offline always True.
    bool ValuesOk(std::string_view strFrame, std::string_view strIsOk);
    // Communication signs of "read", "write", "calibration", "test",
    // "monitoring": stores strIsOk when given; returns False offline and for
    // an unknown action, else the stored sign.
    bool CommunicationSign(std::string_view strAction, std::string_view strIsOk);

    // --- Communication state ---
    bool OnCommunication = false;
    bool ShowProgressbar = false;
    bool ReadGroup = false;
    // The requests posted to the BL whose final reply has not come yet, by
    // the name they went out with. The final reply of the last of them
    // closes the busy state, whatever the progress bar counted.
    std::vector<std::string> OpenRequests;
    // Takes one request of that name off OpenRequests (a final reply of a
    // group that is not open takes none); True when none is open any more.
    bool CloseRequest(std::string_view strName);
    // Whether a request of that name is waiting for its final reply.
    [[nodiscard]] bool IsRequestOpen(std::string_view strName) const;
    bool TimerFlag = false;
    std::int16_t StatusRequesCount = 0;

    // --- Monitoring ---
    bool MonitoringFlag = false;
    std::string MonitoringValues;
    std::string ComparedMonitoring;
    bool MonitorLog = false;

    // --- Device actions and tests ---
    std::int16_t CurrentAutoAction = 0;
    std::int32_t CurrentCalibration = 0;
    std::int16_t CalibrationStep = 0;
    std::int16_t TestStep = 0;
    std::int16_t CurrentTest = 0;
    float StepEndPoint = 0.0F;
    std::int16_t LastTargetMode = 0;
    bool StepTestFlag = false;
    bool HysteresisTestFlag = false;
    bool PneumaticsTestFlag = false;
    bool ValveTestFlag = false;
    bool LoadFactorFlag = false;
    bool DeviationFlag = false;
    bool ShowDeviationAlert = false;
    float BreakawayPressureLimitHigh = 0.0F;
    float BreakawayPressureLimitLow = 0.0F;
    float LoadFactorPLAlarmLimitHigh = 0.0F;
    float LoadFactorPLAlarmLimitLow = 0.0F;
    float LeakageAlarmLimit = 0.0F;

    // --- Flow characteristic ---
    std::string SelectedCurve;
    std::string InstalledFlowCurve;
    std::string DesiredFlowCurve;
    std::int16_t FlowModificationStep = 0;
    bool UpdateCurveFlag = false;

    // --- Data files ---
    bool ImportFromFile = false;
    std::int16_t OpenFileType = 0;

    // The 23 pages that keep a snapshot; the first 17 also keep validity.
    static constexpr std::size_t PageCount = 23;
    static constexpr std::size_t ValidityPageCount = 17;
    static const std::array<std::string_view, PageCount>& SnapshotPages();
    // The five actions of CommunicationSign.
    static const std::array<std::string_view, 5>& SignActions();

private:
    std::string m_deviceParameterXml;
    std::unique_ptr<xml::Document> m_ravikDTMParameters;
    std::array<std::string, PageCount> m_oldValues;
    std::array<bool, ValidityPageCount> m_valuesOk{};
    std::array<bool, 5> m_communicationSigns{};
};

// "1"/"0", "True"/"False" (any case) and numbers (non-zero is True) convert;
// anything else is a type mismatch (std::invalid_argument).
bool ToBoolean(std::string_view strValue);

}  // namespace kt500::session
